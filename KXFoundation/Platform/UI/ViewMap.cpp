// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewMap.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <cmath>

namespace kx {

const ViewMap::Spots &ViewMap::viewsAt(QWidget &window, const QPointF &position)
{
    const bool known = m_valid && m_window == &window;
    if (!known)
        fill(window);
    if (!known || m_position != position) {
        m_position = position;
        m_spots = findViews(window, position);
    }
    return m_spots;
}

ViewMap::Spots ViewMap::findViews(QWidget &window, const QPointF &position) const
{
    Spots spots;
    const double ratio = window.devicePixelRatioF();
    const QPointF point = pointerToYUp(position, window.height(), ratio);
    if (!pointInRect(point, window.rect()))
        return spots;
    const int x = int(std::floor(point.x()));
    const int y = int(std::floor(point.y()));
    QVarLengthArray<qsizetype, 8> indices; // in m_places, of each spot
    for (size_t i = 0; i < m_boxes.size(); ++i) {
        const Box &box = m_boxes[i];
        // A negative distance becomes a huge one.
        if (!((uint(x - box.left) < box.width) & (uint(y - box.bottom) < box.height)))
            continue;
        const Place &place = m_places[i];
        const QPointF inside = point - place.origin;
        const bool flipped = place.view->isFlipped();
        spots.append({place.view, flipped ? pointerToYUp(inside, place.view->bounds().height(), ratio) : inside});
        indices.append(qsizetype(i));
        if (place.superview >= 0) {
            spots.last().superview = indices.indexOf(place.superview);
            spots[spots.last().superview].topSubview = spots.size() - 1;
        }
    }
    return spots;
}

void ViewMap::fill(QWidget &window)
{
    m_boxes.clear();
    m_places.clear();
    m_window = &window;
    m_valid = true;
    if (window.isVisible())
        add(window, QPoint(0, 0), window.rect(), -1);
}

void ViewMap::add(QWidget &widget, const QPoint &topLeft, const QRect &clip, qsizetype superview)
{
    const QRect area(topLeft, widget.size());
    const QRect visible = area & clip;
    if (visible.isEmpty())
        return;
    ViewInterface *view = ViewInterface::of(&widget);
    const qsizetype index = view ? qsizetype(m_places.size()) : -1;
    if (view) {
        const int height = m_window->height();
        m_boxes.push_back(
            {visible.x(), height - visible.y() - visible.height(), uint(visible.width()), uint(visible.height())});
        m_places.push_back({view, QPointF(area.x(), height - area.y() - area.height()), superview});
    }
    for (QObject *child : widget.children()) {
        auto *inner = qobject_cast<QWidget *>(child);
        if (inner && inner->isVisible() && !inner->isWindow())
            add(*inner, topLeft + inner->pos(), visible, index);
    }
}

} // namespace kx
