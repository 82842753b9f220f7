// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/HoverCursor.h>
#include <KXFoundation/Platform/UI/TrackingArea.h>
#include <KXFoundation/Platform/UI/ViewMap.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QSinglePointEvent;

namespace kx {

class Event;

/// Follows the pointer over the tracking areas of all views, and tells their owners.
///
/// Owners are told after Qt's own widgets: first of what was left, then of what was entered, then which cursor is
/// wanted, then of the move. A handler may do anything, delete views and run event loops included: what it makes
/// untrue is not told any more.
class PointerTracker {
public:
    [[nodiscard]] ViewMap &views() { return m_views; }
    [[nodiscard]] HoverCursor &cursor() { return m_cursor; }

    /// Qt has delivered an event of the pointer, which is at `position` from the top left of `window`.
    void pointerAt(QWidget &window, const QPointF &position, const QSinglePointEvent &event);
    /// The pointer has left the window, if that is where it was.
    void pointerLeft(const QWidget &window);
    /// Which areas are active may have changed: tells of those that the pointer left while they were not.
    void activityChanged();

    void areaAdded(ViewInterface &view, const TrackingAreaRef &area);
    void areaRemoved(const ViewInterface &view, const TrackingAreaRef &area);
    void viewDestroyed(const ViewInterface &view);

private:
    struct Entry {
        QPointer<QWidget> widget; // the view's
        ViewInterface *view;
        TrackingAreaRef area;
        bool told; // that it was entered

        bool operator==(const Entry &other) const { return view == other.view && area == other.area; }
    };

    void track(const QSinglePointEvent *event);
    [[nodiscard]] QList<Entry> areasUnderPointer();
    [[nodiscard]] QList<Entry> takeLeft(const QList<Entry> &present, bool dragging);
    [[nodiscard]] bool tellEntered(const QList<Entry> &present, bool dragging, const QPointF &global);
    [[nodiscard]] bool tellCursor(const QList<Entry> &present, const QPointF &global);
    [[nodiscard]] const Entry *wantsCursor(const QList<Entry> &present) const;
    /// False when a handler has led to another round.
    [[nodiscard]] bool tell(const Entry &entry, Event event);

    ViewMap m_views;
    bool m_followsDrags = false; // there was an area that takes part in them
    HoverCursor m_cursor;
    QPointer<QWidget> m_window; // that the pointer is in; null for none
    QPointF m_position; // in it, from the top left
    QList<Entry> m_inside; // areas that the pointer is in
    QPointer<QWidget> m_cursorPlace; // over which a cursor was last asked for
    const ViewInterface *m_cursorView = nullptr; // that was asked, compared only
    quint64 m_round = 0; // counts calls of track(): a handler may lead to another one
};

} // namespace kx
