// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Mailbox.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>

#include <utility>

namespace kx {

class Mailbox::Receiver final : public QObject {
public:
    explicit Receiver(Mailbox &box)
        : m_box(box)
    {
    }

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        m_box.runNext();
        return true;
    }

private:
    Mailbox &m_box;
};

struct Mailbox::ThreadEnd {
    std::shared_ptr<Mailbox> box;
    ~ThreadEnd() { box->close(); }
};

Mailbox::Mailbox()
    : m_receiver(std::make_unique<Receiver>(*this))
{
}

Mailbox::~Mailbox() = default;

std::shared_ptr<Mailbox> Mailbox::ofThisThread()
{
    static thread_local const ThreadEnd end{std::shared_ptr<Mailbox>(new Mailbox)};
    return end.box;
}

void Mailbox::post(Letter letter)
{
    const std::scoped_lock lock(m_mutex);
    if (!m_receiver)
        return;
    m_letters.push_back(std::move(letter));
    QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User));
}

void Mailbox::runNext()
{
    Letter letter;
    {
        const std::scoped_lock lock(m_mutex);
        letter = std::move(m_letters.front()); // every event has its letter
        m_letters.pop_front();
    }
    letter();
}

void Mailbox::close()
{
    std::unique_ptr<Receiver> receiver; // both die after the lock was given back
    std::deque<Letter> letters;
    const std::scoped_lock lock(m_mutex);
    receiver.swap(m_receiver);
    letters.swap(m_letters);
}

} // namespace kx
