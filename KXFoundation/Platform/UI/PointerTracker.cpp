// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PointerTracker.h>

#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>

#include <utility>

namespace kx {

namespace {

bool has(const TrackingAreaRef &area, TrackingOption option)
{
    return area->options().testFlag(option);
}

bool isActive(const QWidget &view, const TrackingAreaRef &area)
{
    return has(area, TrackingOption::ActiveAlways)
        || (has(area, TrackingOption::ActiveInActiveApp) && applicationIsActive())
        || (has(area, TrackingOption::ActiveInKeyWindow) && view.isActiveWindow())
        || (has(area, TrackingOption::ActiveWhenFirstResponder) && view.hasFocus());
}

bool covers(const TrackingAreaRef &area, const QPointF &point)
{
    return has(area, TrackingOption::InVisibleRect) || pointInRect(point, area->rect());
}

Event eventFor(EventType type, const QWidget *view, const QPointF &global)
{
    QWidget *window = view ? view->window() : nullptr;
    return {type, window, screenPoint(global, window)};
}

} // namespace

void PointerTracker::pointerAt(QWidget &window, const QPointF &position, const QSinglePointEvent &event)
{
    if (m_window != &window)
        m_window = &window;
    m_position = position;
    track(&event);
}

void PointerTracker::pointerLeft(const QWidget &window)
{
    if (m_window != &window)
        return;
    m_window = nullptr;
    track(nullptr);
}

void PointerTracker::activityChanged()
{
    if (!m_inside.isEmpty())
        track(nullptr);
}

void PointerTracker::areaAdded(ViewInterface &view, const TrackingAreaRef &area)
{
    m_followsDrags |= has(area, TrackingOption::EnabledDuringMouseDrag);
    if (!m_window || !has(area, TrackingOption::AssumeInside) || view.widget()->window() != m_window)
        return;
    for (const ViewSpot &spot : m_views.viewsAt(*m_window, m_position)) {
        if (spot.view == &view && covers(area, spot.point))
            m_inside.append({view.widget(), &view, area, false});
    }
}

void PointerTracker::areaRemoved(const ViewInterface &view, const TrackingAreaRef &area)
{
    m_inside.removeIf([&](const Entry &entry) { return entry.view == &view && entry.area == area; });
}

void PointerTracker::viewDestroyed(const ViewInterface &view)
{
    m_views.invalidate();
    m_inside.removeIf([&](const Entry &entry) { return entry.view == &view; });
}

void PointerTracker::track(const QSinglePointEvent *event)
{
    ++m_round;
    // An "enter" event does not know of buttons.
    const bool dragging = event && event->type() != QEvent::Enter ? event->buttons() : QGuiApplication::mouseButtons();
    if (dragging && !m_followsDrags) {
        m_cursor.settle();
        m_cursor.renew();
        return;
    }
    const QPointF global = event ? event->globalPosition() : QPointF(QCursor::pos());
    const QList<Entry> present = areasUnderPointer();

    const QList<Entry> left = takeLeft(present, dragging);
    for (const Entry &entry : left) {
        if (!tell(entry, eventFor(EventType::MouseExited, entry.widget, global)))
            return;
    }
    m_cursor.settle();
    if (!tellEntered(present, dragging, global))
        return;
    if (!dragging && !tellCursor(present, global))
        return;
    m_cursor.renew();
    if (!event || event->type() != QEvent::MouseMove || dragging)
        return;
    for (const Entry &entry : present) {
        if (entry.widget && m_inside.contains(entry) && has(entry.area, TrackingOption::MouseMoved)
            && !tell(entry, Event::onItsWay(*event, entry.widget->window())))
            return;
    }
}

// Also those that are not active.
QList<PointerTracker::Entry> PointerTracker::areasUnderPointer()
{
    QList<Entry> areas;
    if (!m_window)
        return areas;
    for (const ViewSpot &spot : m_views.viewsAt(*m_window, m_position)) {
        for (const ViewInterface::CountedArea &counted : std::as_const(spot.view->m_trackingAreas)) {
            if (covers(counted.area, spot.point))
                areas.append({spot.view->widget(), spot.view, counted.area, true});
        }
    }
    return areas;
}

// Those that the pointer is in no longer, the innermost first. What waits for the end of a drag stays as it is, and so
// does what is not active, if it was told that it was entered.
QList<PointerTracker::Entry> PointerTracker::takeLeft(const QList<Entry> &present, bool dragging)
{
    QList<Entry> left;
    m_inside.removeIf([&](const Entry &entry) {
        if (!entry.widget)
            return true;
        if (present.contains(entry) || (dragging && !has(entry.area, TrackingOption::EnabledDuringMouseDrag)))
            return false;
        if (!isActive(*entry.widget, entry.area))
            return !entry.told;
        left.prepend(entry);
        return true;
    });
    return left;
}

bool PointerTracker::tellEntered(const QList<Entry> &present, bool dragging, const QPointF &global)
{
    for (const Entry &entry : present) {
        if (!entry.widget || m_inside.contains(entry) || !entry.view->hasTrackingArea(entry.area)
            || !isActive(*entry.widget, entry.area)
            || (dragging && !has(entry.area, TrackingOption::EnabledDuringMouseDrag)))
            continue;
        m_inside.append(entry);
        if (!tell(entry, eventFor(EventType::MouseEntered, entry.widget, global)))
            return false;
    }
    return true;
}

bool PointerTracker::tellCursor(const QList<Entry> &present, const QPointF &global)
{
    const Entry *entry = wantsCursor(present);
    const ViewInterface *view = entry ? entry->view : nullptr;
    const bool isSame = m_cursorPlace == m_cursor.hovered() && m_cursorView == view;
    m_cursorPlace = m_cursor.hovered();
    m_cursorView = view;
    return !entry || isSame || tell(*entry, eventFor(EventType::CursorUpdate, entry->widget, global));
}

// The area that decides about the cursor: the innermost one around the pointer, unless a widget with a cursor of its
// own lies within it.
const PointerTracker::Entry *PointerTracker::wantsCursor(const QList<Entry> &present) const
{
    for (const QWidget *widget = m_cursor.hovered(); widget; widget = widget->parentWidget()) {
        for (auto entry = present.crbegin(); entry != present.crend(); ++entry) {
            if (entry->widget == widget && has(entry->area, TrackingOption::CursorUpdate) && m_inside.contains(*entry)
                && isActive(*entry->widget, entry->area))
                return &*entry;
        }
        if (widget->testAttribute(Qt::WA_SetCursor) || widget->isWindow())
            return nullptr;
    }
    return nullptr;
}

bool PointerTracker::tell(const Entry &entry, Event event)
{
    ViewInterface *owner = entry.widget ? entry.area->owner() : nullptr;
    const bool wantsBorder = has(entry.area, TrackingOption::MouseEnteredAndExited);
    const quint64 round = m_round;
    switch (owner ? event.type() : EventType::Other) {
    case EventType::MouseEntered:
        if (wantsBorder)
            owner->mouseEntered(&event);
        break;
    case EventType::MouseExited:
        if (wantsBorder)
            owner->mouseExited(&event);
        break;
    case EventType::CursorUpdate: owner->cursorUpdate(&event); break;
    case EventType::MouseMoved: owner->mouseMoved(&event); break;
    default: break;
    }
    return m_round == round;
}

} // namespace kx
