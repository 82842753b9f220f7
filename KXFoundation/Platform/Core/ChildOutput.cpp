// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/ChildOutput.h>

#include <KXFoundation/Platform/Core/Mailbox.h>

#include <utility>

namespace kx {

ChildOutput::ChildOutput() = default;

ChildOutput::~ChildOutput() = default;

std::shared_ptr<ChildOutput> ChildOutput::create()
{
    return std::shared_ptr<ChildOutput>(new ChildOutput);
}

QByteArray ChildOutput::availableData()
{
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_data, {});
}

void ChildOutput::notifyOnce(Ready ready)
{
    const std::scoped_lock lock(m_mutex);
    if (m_stopped)
        return;
    m_ready.swap(ready); // the old one dies after the lock was given back
    m_mailbox = Mailbox::ofThisThread();
    m_posted = false;
    if (!m_data.isEmpty())
        post();
}

void ChildOutput::stopNotifying()
{
    Ready ready; // dies after the lock was given back
    std::unique_lock lock(m_mutex);
    m_stopped = true;
    ready.swap(m_ready);
    m_returned.wait(lock, [this] { return m_running == std::thread::id() || m_running == std::this_thread::get_id(); });
}

void ChildOutput::discard()
{
    const std::scoped_lock lock(m_mutex);
    m_discarding = true;
    m_data.clear();
}

void ChildOutput::append(QByteArray &bytes)
{
    const std::scoped_lock lock(m_mutex);
    if (m_discarding || bytes.isEmpty()) {
        bytes.resize(0);
        return;
    }
    if (m_data.isEmpty()) {
        m_data.swap(bytes);
    } else {
        m_data += bytes;
    }
    bytes.resize(0);
    if (m_ready && !m_posted)
        post();
}

void ChildOutput::post()
{
    m_posted = true;
    m_mailbox->post([weak = weak_from_this()] {
        if (const std::shared_ptr<ChildOutput> self = weak.lock())
            self->notify();
    });
}

void ChildOutput::notify()
{
    Ready ready;
    {
        const std::scoped_lock lock(m_mutex);
        // A post may have been overtaken: by stopNotifying(), by availableData(), or by a wish from another thread.
        if (!m_posted || m_mailbox != Mailbox::ofThisThread())
            return;
        m_posted = false;
        if (!m_ready || m_data.isEmpty() || m_running != std::thread::id())
            return;
        ready.swap(m_ready);
        m_running = std::this_thread::get_id();
    }
    ready();
    ready = {};
    {
        const std::scoped_lock lock(m_mutex);
        m_running = {};
        if (m_ready && !m_posted && !m_data.isEmpty())
            post();
    }
    m_returned.notify_all();
}

} // namespace kx
