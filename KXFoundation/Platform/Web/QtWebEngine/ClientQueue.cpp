// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ClientQueue.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QPointer>

#include <utility>

namespace kx {

void ClientQueue::post(Call call)
{
    m_calls.push_back(std::move(call));
    wake();
}

void ClientQueue::wake()
{
    if (!m_awake && !m_calls.empty()) {
        m_awake = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

bool ClientQueue::event(QEvent *event)
{
    if (event->type() != QEvent::User)
        return QObject::event(event);
    drain();
    return true;
}

void ClientQueue::drain()
{
    m_awake = false;
    const QPointer<ClientQueue> alive(this);
    // Only what waits now: a client that answers each call with another must not keep the event loop from other work.
    for (auto left = m_calls.size(); left > 0 && !m_calls.empty(); --left) {
        const Call call = std::move(m_calls.front());
        m_calls.pop_front();
        wake(); // the call may run an event loop of its own, which then goes on with the others
        call();
        if (!alive)
            return;
    }
}

} // namespace kx
