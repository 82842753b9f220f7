// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/TimerLoop.h>

#include <KXFoundation/Platform/Core/Timer.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QTimerEvent>

#include <utility>

namespace kx {

namespace {

// A child of the thread's event dispatcher, so that timers end with the loop that would have fired them.
class QtTimerLoop final : public QObject, public TimerLoop {
public:
    explicit QtTimerLoop(QAbstractEventDispatcher *dispatcher)
        : QObject(dispatcher)
    {
    }
    ~QtTimerLoop() override { close(); }

    Clock::time_point now() const override { return Clock::now(); }

protected:
    int startWait(std::chrono::milliseconds wait) override { return startTimer(wait, Qt::PreciseTimer); }
    void stopWait(int wait) override { killTimer(wait); }

    void timerEvent(QTimerEvent *event) override
    {
        const int wait = event->timerId();
        killTimer(wait);
        waitEnded(wait);
    }
};

QAbstractEventDispatcher *dispatcherOfThisThread()
{
    if (QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance())
        return dispatcher;
    // A thread that Qt did not start gets its dispatcher with its first event loop.
    if (!QCoreApplication::instance())
        return nullptr;
    const QEventLoop loop;
    return QAbstractEventDispatcher::instance();
}

} // namespace

TimerLoop *TimerLoop::current()
{
    static thread_local QPointer<QtTimerLoop> loop;
    if (!loop) {
        if (QAbstractEventDispatcher *dispatcher = dispatcherOfThisThread())
            loop = new QtTimerLoop(dispatcher);
    }
    return loop.data();
}

TimerLoop::~TimerLoop() = default;

void TimerLoop::keep(std::shared_ptr<Timer> timer)
{
    Timer *const key = timer.get();
    m_timers.emplace(key, std::move(timer));
}

void TimerLoop::release(Timer *timer)
{
    const auto node = m_timers.extract(timer); // dies after the table is whole again
}

int TimerLoop::wake(Timer *timer, std::chrono::milliseconds wait)
{
    const int number = startWait(wait);
    m_waits.emplace(number, timer);
    return number;
}

void TimerLoop::cancelWake(int wait)
{
    if (m_waits.erase(wait) > 0)
        stopWait(wait);
}

void TimerLoop::waitEnded(int wait)
{
    const auto node = m_waits.extract(wait);
    if (node)
        node.mapped()->wakeUp();
}

void TimerLoop::close()
{
    while (!m_timers.empty()) {
        const std::shared_ptr<Timer> timer = m_timers.begin()->second;
        timer->invalidate();
    }
}

} // namespace kx
