// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/HeldEvents.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QEventLoop>

#include <algorithm>
#include <utility>

namespace kx {

namespace {

// A move with no button down, which nobody waits for, comes when the release went astray.
constexpr EventMask lostRelease = eventMask(EventType::MouseMoved);

} // namespace

std::optional<Event> HeldEvents::next(const QWidget &window, EventMask mask, bool dequeue)
{
    if (!hasAny(mask)) {
        if (hasAny(lostRelease))
            return std::nullopt;
        QEventLoop loop;
        Wait wait{&window, mask, loop};
        m_waits.append(&wait);
        // What came together with the event that is being handled would otherwise wait until something else comes.
        QAbstractEventDispatcher::instance()->wakeUp();
        loop.exec(); // ends by itself when the application quits
        m_waits.removeLast();
        if (!m_waits.isEmpty() && hasAny(m_waits.last()->mask))
            finish(*m_waits.last(), State::Found);
        if (wait.state != State::Found)
            return std::nullopt;
    }
    const auto found = find(mask);
    if (found == m_events.end()) // taken by another window, which waited within this one's loop
        return std::nullopt;
    if (!dequeue)
        return *found;
    Event event = std::move(*found);
    m_events.erase(found);
    return event;
}

void HeldEvents::cancel(const QWidget *window)
{
    for (Wait *wait : std::as_const(m_waits)) {
        if (!window || wait->window == window)
            finish(*wait, State::Cancelled);
    }
}

void HeldEvents::add(Event event)
{
    const EventMask kind = eventMask(event.type());
    m_events.push_back(std::move(event));
    if (m_waits.isEmpty())
        return;
    Wait &wait = *m_waits.last();
    if (wait.mask & kind)
        finish(wait, State::Found);
    else if (kind & lostRelease)
        finish(wait, State::Cancelled);
}

Event HeldEvents::takeFirst()
{
    Event first = std::move(m_events.front());
    m_events.pop_front();
    return first;
}

void HeldEvents::drop(const QWidget &window)
{
    std::erase_if(m_events, [&](const Event &event) { return event.window() == &window; });
}

std::deque<Event>::iterator HeldEvents::find(EventMask mask)
{
    return std::find_if(
        m_events.begin(), m_events.end(), [&](const Event &event) { return eventMask(event.type()) & mask; });
}

void HeldEvents::finish(Wait &wait, State state)
{
    if (wait.state != State::Waiting)
        return;
    wait.state = state;
    wait.loop.exit();
}

} // namespace kx
