// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/EventDelivery.h>
#include <KXFoundation/Platform/UI/HeldEvents.h>

#include <QtCore/QObject>

#include <optional>

namespace kx {

class Window;

/// Lets every mouse, wheel and key event of a kx::Window go through its sendEvent() before any widget gets it: what Qt
/// sends to its QWindow, and what anybody sends straight to a widget in it. While a window waits for an event, all
/// windows' events of these kinds are held back.
///
/// A filter on the application object, there as soon as there is a window, and gone with the application: filters of a
/// QWindow itself see what windows hand on, and nothing else. What belongs to an open popup stays Qt's. Main thread
/// only.
class WindowEvents : public QObject {
    Q_OBJECT

public:
    /// Does nothing without an application object, or when it has started already.
    static void start();

    /// What the base implementation of Window::sendEvent() does.
    static void deliver(const Event &event);
    /// See Window::nextEvent().
    [[nodiscard]] static std::optional<Event> next(const Window &window, EventMask mask, bool dequeue);
    /// Puts an event behind those that have arrived, as if it came from a device.
    static void hold(const Event &event);
    /// Ends what a window waits for: it goes, or gets no more events.
    static void cancel(const QWidget &window);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// An event that a window handles at present.
    struct Frame {
        const Window *window; // compared only
        Frame *outer;
        bool fromProgram; // sent straight to a widget
        bool waits = false; // has waited, and may wait again
        bool cancelled = false; // no release will come
        bool delivered = false;
        bool accepted = false;
    };

    explicit WindowEvents(QObject &application);

    [[nodiscard]] bool isTaken(const QObject &watched, const QWidget *window) const;
    void handle(QObject &watched, QEvent &event, QWidget *window);
    /// Answers whether somebody accepted it.
    bool dispatch(Event &event);
    void endWaiting(const QWidget *window);
    [[nodiscard]] bool isHolding() const;
    void postDrain();
    void drain();

    EventDelivery m_delivery;
    HeldEvents m_held;
    Frame *m_frame = nullptr;
    bool m_drainPosted = false;
};

} // namespace kx
