// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QEvent>
#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QWindow;

/// A mouse over a widget, acting on its window through the window system's interface as a device does: a position may
/// be a fraction, and an event knows where it is on the screen.
///
/// Positions are logical pixels from the top left of the widget, y growing downwards; shifts count on the screen.
/// Clicks follow each other slowly enough to be single ones, unless doubleClick() makes them. QCursor::pos() does not
/// follow.
class Pointer {
public:
    /// The widget's window must have been shown. The widget may vanish; the pointer then does nothing.
    explicit Pointer(QWidget &widget);

    /// From here on events wait for the event loop, so that a handler that runs a loop of its own meets them there. At
    /// first each one is delivered before its function returns.
    void queue() { m_queued = true; }
    /// Delivers what waits, and the next events at once again.
    void deliver();

    void moveTo(const QPointF &position);
    /// Moves on the screen, wherever the window is by now.
    void moveBy(const QPointF &shift);
    /// A move that tells of other buttons than the ones that went down here, as when a release went astray.
    void moveWithButtons(const QPointF &shift, Qt::MouseButtons buttons);
    void press(Qt::MouseButton button = Qt::LeftButton);
    void release(Qt::MouseButton button = Qt::LeftButton);
    void click(const QPointF &position, Qt::MouseButton button = Qt::LeftButton);
    void doubleClick(const QPointF &position, Qt::MouseButton button = Qt::LeftButton);
    /// A press, moves of equal length and a release.
    void drag(const QPointF &from, const QPointF &to, int steps = 4);
    /// In eighths of a degree, as QWheelEvent has it.
    void wheel(const QPoint &angleDelta);
    /// The pointer leaves the window. It comes back with the next move.
    void leave();

    void setModifiers(Qt::KeyboardModifiers modifiers) { m_modifiers = modifiers; }
    [[nodiscard]] Qt::MouseButtons buttons() const { return m_buttons; }
    /// In Qt's global coordinates.
    [[nodiscard]] QPointF globalPosition() const { return m_global; }

private:
    void send(QEvent::Type type, Qt::MouseButton button);
    [[nodiscard]] QWindow *window() const;
    [[nodiscard]] QPointF local(const QWindow &window) const;
    [[nodiscard]] QPointF global(const QWindow &window) const;

    QPointer<QWidget> m_widget;
    QPointF m_global;
    Qt::MouseButtons m_buttons;
    Qt::KeyboardModifiers m_modifiers;
    bool m_queued = false;
    bool m_inside = false;
};
