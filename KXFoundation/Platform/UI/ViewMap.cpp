// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewMap.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenScale.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <cmath>

namespace kx {

namespace {

constexpr int bandHeight = 32;

} // namespace

const ViewMap::Spots &ViewMap::viewsAt(QWidget &window, const QPointF &position)
{
    const bool known = m_valid && m_window == &window && m_size == window.size();
    if (!known)
        fill(window);
    if (!known || m_position != position) {
        m_position = position;
        findViews(window, position);
    }
    return m_spots;
}

void ViewMap::findViews(QWidget &window, const QPointF &position)
{
    m_spots.clear();
    const double ratio = pixelRatio(window);
    const QPointF point = pointerToYUp(position, m_size.height(), ratio);
    if (!pointInRect(point, window.rect()))
        return;
    const QPoint pixel(int(std::floor(point.x())), int(std::floor(point.y())));
    QVarLengthArray<qsizetype, 8> indices; // in m_places, of each spot
    for (const qsizetype i : m_bands[size_t(pixel.y() / bandHeight)]) {
        const Place &place = m_places[size_t(i)];
        if (!place.visible.contains(pixel))
            continue;
        const QPointF inside = point - place.origin;
        const bool flipped = place.view->isFlipped();
        m_spots.append({place.view, flipped ? pointerToYUp(inside, place.view->bounds().height(), ratio) : inside});
        indices.append(i);
        if (place.superview >= 0) {
            m_spots.last().superview = indices.indexOf(place.superview);
            m_spots[m_spots.last().superview].topSubview = m_spots.size() - 1;
        }
    }
}

void ViewMap::fill(QWidget &window)
{
    m_places.clear();

    m_window = &window;
    m_size = window.size();
    m_valid = true;
    m_bands.assign(size_t(m_size.height() / bandHeight + 1), {});
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
        const int height = m_size.height();
        const QRect upright(visible.x(), height - visible.y() - visible.height(), visible.width(), visible.height());
        m_places.push_back({view, upright, QPointF(area.x(), height - area.y() - area.height()), superview});
        for (int band = upright.top() / bandHeight; band <= upright.bottom() / bandHeight; ++band)
            m_bands[size_t(band)].push_back(index);
    }
    for (QObject *child : widget.children()) {
        auto *inner = qobject_cast<QWidget *>(child);
        if (inner && inner->isVisible() && !inner->isWindow())
            add(*inner, topLeft + inner->pos(), visible, index);
    }
}

} // namespace kx
