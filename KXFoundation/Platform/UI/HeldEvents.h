// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Event.h>

#include <QtCore/QList>

#include <deque>
#include <optional>

class QEventLoop;

namespace kx {

/// The events that arrive while a window waits for some kinds of them, in their order. Main thread only.
class HeldEvents {
public:
    /// The first event of a kind in `mask`; it stays here unless `dequeue`. Runs an event loop until there is one. None
    /// when the waiting is cancelled, when the pointer moves with no button down, or when the application quits. The
    /// window may be gone afterwards.
    [[nodiscard]] std::optional<Event> next(const QWidget &window, EventMask mask, bool dequeue);
    [[nodiscard]] bool isWaiting() const { return !m_waits.isEmpty(); }
    /// Ends the waiting of a window, or of every window for null, where it has not found anything yet.
    void cancel(const QWidget *window);

    void add(Event event);
    [[nodiscard]] bool hasAny(EventMask mask) { return find(mask) != m_events.end(); }
    [[nodiscard]] bool isEmpty() const { return m_events.empty(); }
    [[nodiscard]] Event takeFirst();
    /// Drops what is held for a window.
    void drop(const QWidget &window);

private:
    enum class State { Waiting, Found, Cancelled };
    struct Wait {
        const QWidget *window; // compared only
        EventMask mask;
        QEventLoop &loop;
        State state = State::Waiting;
    };

    [[nodiscard]] std::deque<Event>::iterator find(EventMask mask);
    static void finish(Wait &wait, State state);

    std::deque<Event> m_events;
    QList<Wait *> m_waits; // the innermost is the last
};

} // namespace kx
