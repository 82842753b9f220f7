// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtCore/Qt>
#include <QtWidgets/QWidget>

#include <memory>
#include <optional>
#include <utility>

class QEvent;

namespace kx {

/// The kinds of events that windows and views tell apart. Each number is a bit of an EventMask.
enum class EventType {
    Other = 0,
    LeftMouseDown = 1,
    LeftMouseUp = 2,
    RightMouseDown = 3,
    RightMouseUp = 4,
    MouseMoved = 5,
    LeftMouseDragged = 6,
    RightMouseDragged = 7,
    MouseEntered = 8,
    MouseExited = 9,
    KeyDown = 10,
    KeyUp = 11,
    FlagsChanged = 12,
    CursorUpdate = 17,
    ScrollWheel = 22,
    OtherMouseDown = 25,
    OtherMouseUp = 26,
    OtherMouseDragged = 27,
};

/// A set of kinds of events, one bit for each: a left drag and its end are 0x44.
using EventMask = quint64;

[[nodiscard]] constexpr EventMask eventMask(EventType type)
{
    return EventMask(1) << static_cast<int>(type);
}

/// One event of the pointer or the keyboard, as a window and its views receive it. A value: it may be kept and copied.
///
/// Positions are logical pixels with y growing upwards. The point on the screen is what is kept; the location in the
/// window is derived from the window's present frame whenever it is asked for, so that a handler that moves its window
/// never reads a stale one. A press alone stays where it was made in the window, wherever that has gone. Main thread
/// only.
class KX_UI_EXPORT Event {
public:
    /// An event that no device sent, at a point of the screen. `window` may be null.
    Event(EventType type, QWidget *window, const QPointF &screenLocation);
    /// What Qt sent to the top-level widget `window`, or to a widget in it. An event without a position of its own,
    /// such as one of a key, gets the pointer's. `window` may be null. `receiver` is whom Qt sent it to, where that
    /// matters.
    Event(const QEvent &event, QWidget *window, QObject *receiver = nullptr);

    [[nodiscard]] EventType type() const { return m_type; }
    /// The top-level widget that the event belongs to; null without one, or when it is gone.
    [[nodiscard]] QWidget *window() const { return m_window; }
    /// From the bottom left of the primary screen.
    [[nodiscard]] QPointF screenLocation() const { return m_screenLocation; }
    /// From the bottom left of the window's frame: as it is now, and for a press as it was then. The point on the
    /// screen without a window.
    [[nodiscard]] QPointF locationInWindow() const;
    /// 1 for a press or release, 2 for the second press of a double click, 0 for what is no press or release.
    [[nodiscard]] int clickCount() const { return m_clickCount; }
    /// The buttons that are down after the event; none where Qt does not say, as with keys.
    [[nodiscard]] Qt::MouseButtons buttons() const { return m_buttons; }
    [[nodiscard]] Qt::KeyboardModifiers modifiers() const { return m_modifiers; }
    /// What Qt sent, for as long as this lives; null for an event that no device sent.
    [[nodiscard]] const QEvent *qtEvent() const { return m_original.get(); }
    /// Whom Qt sent it to: the window's QWindow, or a widget. Null when nobody said, or when that is gone.
    [[nodiscard]] QObject *receiver() const { return m_receiver; }
    /// Whether one is a copy of the other: two events that say the same are none.
    [[nodiscard]] bool isCopyOf(const Event &other) const { return m_number == other.m_number; }

private:
    friend class PointerTracker;
    friend class ViewInterface;
    friend class WindowEvents;

    /// What Qt sent: shared by all copies of an event, or still on its way, and then a copy takes its own.
    class KX_UI_EXPORT Original {
    public:
        explicit Original(std::shared_ptr<const QEvent> event = {})
            : m_event(std::move(event))
        {
        }
        Original(const Original &other)
            : m_event(other.kept())
        {
        }
        Original &operator=(const Original &other)
        {
            m_event = other.kept();
            return *this;
        }
        ~Original() = default;

        [[nodiscard]] const QEvent *get() const { return m_event.get(); }

    private:
        [[nodiscard]] std::shared_ptr<const QEvent> kept() const;

        std::shared_ptr<const QEvent> m_event; // without an owner while on its way
    };

    /// For handlers, while Qt sends the event: spares the copy unless they keep it.
    [[nodiscard]] static Event onItsWay(const QEvent &event, QWidget *window, QObject *receiver = nullptr);
    Event(const QEvent &event, std::shared_ptr<const QEvent> original, QWidget *window, QObject *receiver);
    [[nodiscard]] static EventType typeOf(const QEvent &event);

    quint64 m_number; // the same in all copies
    EventType m_type;
    QPointer<QWidget> m_window;
    QPointer<QObject> m_receiver;
    QPointF m_screenLocation;
    std::optional<QPointF> m_pressLocation; // in the window
    int m_clickCount = 0;
    Qt::MouseButtons m_buttons;
    Qt::KeyboardModifiers m_modifiers;
    Original m_original;
};

} // namespace kx
