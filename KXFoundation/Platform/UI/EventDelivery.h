// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Event.h>

#include <QtCore/QEvent>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <optional>

namespace kx {

/// Hands an event that a window has seen to Qt, which then finds the widget for it as if nobody had come before.
///
/// Qt keeps a state between a press and its release, which wants them in pairs; this class mends it where a window
/// passes events on twice, late or not at all. Main thread only.
class EventDelivery {
public:
    /// Does nothing for an event that Qt did not send, or whose receiver is gone. Answers whether somebody accepted it.
    bool deliver(const Event &event);

    /// Whether the event is one that deliver() hands over at present.
    [[nodiscard]] bool isPassing(const QEvent &event) const { return m_passing.contains(&event); }
    /// Whether an event that reaches a widget now does so because of deliver(), and not by itself.
    [[nodiscard]] bool isDelivering() const;
    /// To be told of every input event but moves that reaches a widget while isDelivering().
    void noteReached(QWidget &widget);

    /// Whether a press was delivered and no release after it.
    [[nodiscard]] bool isPressed() const { return m_press.receiver; }
    /// Takes such a press back: no release will come. The widget that got it hears QEvent::UngrabMouse, and a button is
    /// not down any more.
    void cancelPress();

private:
    struct Press {
        QPointer<QObject> receiver; // the QWindow
        QPointer<QWidget> widget; // where Qt took it
    };

    bool deliverCopy(const Event &event, QEvent &copy);
    bool send(QObject &receiver, QEvent &event);
    bool sendReleaseAgain(const Event &event, QEvent &copy);

    QList<const QEvent *> m_passing;
    QList<int> m_loopLevels; // of the deliveries under way
    QPointer<QWidget> m_reached;
    Press m_press;
    std::optional<Event> m_release; // the last one that was delivered
    QPointer<QWidget> m_releaseWidget;
};

} // namespace kx
