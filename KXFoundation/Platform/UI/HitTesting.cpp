// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/HitTesting.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenScale.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtCore/QScopedValueRollback>

#include <cmath>
#include <utility>

namespace kx {

namespace {

const ViewMap::Spots *underPointer = nullptr; // while the views are being asked

bool isSame(const QPointF &a, const QPointF &b)
{
    return std::abs(a.x() - b.x()) < 1e-6 && std::abs(a.y() - b.y()) < 1e-6;
}

// What a view in a plain widget says, its subviews included.
ViewInterface *hitAt(const ViewSpot &root)
{
    ViewInterface &view = *root.view;
    const QPointF point =
        view.isFlipped() ? pointerToYUp(root.point, view.bounds().height(), pixelRatio(*view.widget())) : root.point;
    return view.hitTest(view.frame().topLeft() + point);
}

const ViewSpot *spotOf(const ViewInterface *view, const ViewMap::Spots &spots)
{
    for (const ViewSpot &spot : spots) {
        if (spot.view == view)
            return &spot;
    }
    return nullptr;
}

} // namespace

QVarLengthArray<ViewInterface *, 8> HitTesting::subviewsAt(const ViewInterface &view, const QPointF &point)
{
    QVarLengthArray<ViewInterface *, 8> subviews;
    const ViewSpot *spot = underPointer ? spotOf(&view, *underPointer) : nullptr;
    if (spot && isSame(spot->point, point)) {
        for (qsizetype i = underPointer->size(); i-- > 0;) {
            const ViewSpot &inner = underPointer->at(i);
            if (inner.superview >= 0 && underPointer->at(inner.superview).view == &view)
                subviews.append(inner.view);
        }
        return subviews;
    }
    const QList<ViewInterface *> all = view.subviews();
    for (auto subview = all.crbegin(); subview != all.crend(); ++subview)
        subviews.append(*subview);
    return subviews;
}

void HitTesting::prepare(QWidget &host, const QPoint &position, const ViewMap::Spots &spots)
{
    restore();
    const QScopedValueRollback asking(underPointer, &spots);
    if (agrees(spots))
        return;
    while (QWidget *found = host.childAt(position)) {
        QWidget *inTheWay = obstacle(host, *found, spots);
        if (!inTheWay)
            break;
        inTheWay->setAttribute(Qt::WA_TransparentForMouseEvents);
        m_bypassed.append(inTheWay);
    }
}

void HitTesting::restore()
{
    if (m_bypassed.isEmpty()) // as nearly always, and for every event of a widget
        return;
    for (const QPointer<QWidget> &widget : std::exchange(m_bypassed, {})) {
        if (widget)
            widget->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    }
}

// Whether every view says what geometry says. Then Qt finds the right widget by itself.
bool HitTesting::agrees(const ViewMap::Spots &spots) const
{
    for (const ViewSpot &spot : spots) {
        if (spot.superview >= 0)
            continue;
        const ViewSpot *innermost = &spot;
        while (innermost->topSubview >= 0)
            innermost = &spots[innermost->topSubview];
        if (hitAt(spot) != innermost->view)
            return false;
    }
    return true;
}

// The widget that keeps Qt from finding what it should find instead of `found`; null if that is right, or if Qt has no
// choice.
QWidget *HitTesting::obstacle(QWidget &host, QWidget &found, const ViewMap::Spots &spots) const
{
    QList<ViewInterface *> roots; // the views around it that are in plain widgets; the innermost is the first
    ViewInterface *view = nullptr; // that it is, or is in
    for (QWidget *widget = &found; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        ViewInterface *each = ViewInterface::of(widget);
        if (each && !view)
            view = each;
        if (each && !each->superview())
            roots.append(each);
    }
    ViewInterface *hit = nullptr;
    for (auto root = roots.crbegin(); root != roots.crend(); ++root) {
        const ViewSpot *spot = spotOf(*root, spots);
        hit = spot ? hitAt(*spot) : *root;
        if (!hit) {
            QWidget *missed = (*root)->widget();
            return missed != &host && host.isAncestorOf(missed) ? missed : nullptr;
        }
    }
    if (hit == view)
        return nullptr;
    QWidget *inTheWay = &found;
    while (inTheWay != &host && !inTheWay->parentWidget()->isAncestorOf(hit->widget()))
        inTheWay = inTheWay->parentWidget();
    return inTheWay == &host ? nullptr : inTheWay;
}

} // namespace kx
