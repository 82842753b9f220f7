// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Timer.h>

#include <Support/ManualTimerLoop.h>

#include <QtCore/QEventLoop>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>
#include <QtTest/QTest>

#include <limits>
#include <thread>

using namespace std::chrono_literals;
using kx::Timer;
using kx::test::ManualTimerLoop;

class TimerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void firesOnceAtItsDate()
    {
        ManualTimerLoop loop;
        int fired = 0;
        const auto timer = Timer::scheduled(
            2.5, [&](const auto &) { ++fired; }, false, &loop);
        QVERIFY(timer->fireDate() == loop.now() + 2500ms);
        loop.advance(2499ms);
        QCOMPARE(fired, 0);
        loop.advance(1ms);
        QCOMPARE(fired, 1);
        loop.advance(1h);
        QCOMPARE(fired, 1);
    }

    void isNeverEarlyBelowAMillisecond()
    {
        ManualTimerLoop loop;
        int fired = 0;
        Timer::scheduled(
            0.0015, [&](const auto &) { ++fired; }, false, &loop);
        QCOMPARE(loop.waits(), QList<std::chrono::milliseconds>{2ms});
        loop.advance(1500us);
        QCOMPARE(fired, 0);
        loop.advance(500us);
        QCOMPARE(fired, 1);
    }

    void aOneShotIsValidInItsBlockAndInvalidAfterIt()
    {
        ManualTimerLoop loop;
        bool validInside = false;
        const auto timer = Timer::scheduled(
            1, [&](const auto &t) { validInside = t->isValid(); }, false, &loop);
        QVERIFY(timer->isValid());
        loop.advance(1s);
        QVERIFY(validInside);
        QVERIFY(!timer->isValid());
    }

    void aOneShotCannotBeMovedByItsOwnBlock()
    {
        ManualTimerLoop loop;
        int fired = 0;
        const auto timer = Timer::scheduled(
            1,
            [&](const auto &t) {
                ++fired;
                t->setFireDateFromNow(1);
            },
            false, &loop);
        loop.advance(10s);
        QCOMPARE(fired, 1);
        QVERIFY(!timer->isValid());
        QCOMPARE(loop.pendingWaits(), 0);
    }

    void repeatsAtItsRate()
    {
        ManualTimerLoop loop;
        QList<qint64> at;
        const auto start = loop.now();
        const auto timer = Timer::scheduled(
            0.25, [&](const auto &) { at.append((loop.now() - start) / 1ms); }, true, &loop);
        loop.advance(1s);
        QCOMPARE(at, (QList<qint64>{250, 500, 750, 1000}));
        QVERIFY(timer->isValid());
        QVERIFY(timer->repeats());
    }

    void dropsMissedFiringsAndKeepsThePhase()
    {
        ManualTimerLoop loop;
        QList<qint64> at;
        const auto start = loop.now();
        Timer::scheduled(
            1, [&](const auto &) { at.append((loop.now() - start) / 1ms); }, true, &loop);
        loop.block(3300ms);
        loop.advance(1s);
        QCOMPARE(at, (QList<qint64>{3300, 4000}));
    }

    void aSlowBlockCountsFromItsEnd()
    {
        ManualTimerLoop loop;
        QList<qint64> at;
        const auto start = loop.now();
        Timer::scheduled(
            1,
            [&](const auto &) {
                at.append((loop.now() - start) / 1ms);
                loop.block(1500ms);
            },
            true, &loop);
        loop.advance(1s);
        loop.advance(1s);
        QCOMPARE(at, (QList<qint64>{1000, 3000}));
    }

    void movingTheFireDateShiftsThePhase()
    {
        ManualTimerLoop loop;
        QList<qint64> at;
        const auto start = loop.now();
        const auto timer = Timer::scheduled(
            1, [&](const auto &) { at.append((loop.now() - start) / 1ms); }, true, &loop);
        loop.advance(1200ms);
        timer->setFireDate(loop.now() + 300ms);
        loop.advance(2s);
        QCOMPARE(at, (QList<qint64>{1000, 1500, 2500}));
    }

    void aDateSetInTheBlockHolds()
    {
        ManualTimerLoop loop;
        QList<qint64> at;
        const auto start = loop.now();
        Timer::scheduled(
            1,
            [&](const auto &t) {
                at.append((loop.now() - start) / 1ms);
                if (at.size() == 1)
                    t->setFireDateFromNow(5);
            },
            true, &loop);
        loop.advance(7s);
        QCOMPARE(at, (QList<qint64>{1000, 6000, 7000}));
    }

    void aDateInThePastFiresAtOnce()
    {
        ManualTimerLoop loop;
        QList<qint64> at;
        const auto start = loop.now();
        const auto timer = Timer::scheduled(
            10, [&](const auto &) { at.append((loop.now() - start) / 1ms); }, true, &loop);
        timer->setFireDate(Timer::Date::min());
        loop.advance(0s);
        QCOMPARE(at, QList<qint64>{0});
        timer->setFireDateFromNow(-1.5);
        loop.advance(8500ms);
        QCOMPARE(at, (QList<qint64>{0, 0, 8500}));
        timer->setFireDateFromNow(std::numeric_limits<double>::quiet_NaN()); // no time at all
        loop.advance(0s);
        QCOMPARE(at, (QList<qint64>{0, 0, 8500, 8500}));
    }

    void theDistantFutureNeverComes()
    {
        ManualTimerLoop loop;
        int fired = 0;
        const auto timer = Timer::scheduled(
            1, [&](const auto &) { ++fired; }, true, &loop);
        timer->setFireDate(Timer::distantFuture);
        QCOMPARE(loop.pendingWaits(), 0);
        loop.advance(24h * 365 * 100);
        QCOMPARE(fired, 0);
        QVERIFY(timer->isValid());
        QVERIFY(timer->fireDate() == Timer::distantFuture);
    }

    void chainsWaitsThatAreTooLongForOne()
    {
        ManualTimerLoop loop;
        int fired = 0;
        Timer::scheduled(
            3600.0 * 24 * 45, [&](const auto &) { ++fired; }, false, &loop);
        loop.advance(24h * 45 - 1ms);
        QCOMPARE(fired, 0);
        loop.advance(1ms);
        QCOMPARE(fired, 1);
        QCOMPARE(loop.waits(), (QList<std::chrono::milliseconds>{24h * 20, 24h * 20, 24h * 5}));
    }

    void takesAnyNumberForAnInterval_data()
    {
        QTest::addColumn<double>("given");
        QTest::addColumn<double>("interval");
        QTest::addColumn<bool>("ever");
        QTest::newRow("zero") << 0.0 << 0.0001 << true;
        QTest::newRow("negative") << -3.0 << 0.0001 << true;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0.0001 << true;
        QTest::newRow("tiny") << 1e-300 << 1e-300 << true;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << std::numeric_limits<double>::infinity()
                                  << false;
        QTest::newRow("huge") << 1e300 << 1e300 << false;
        QTest::newRow("beyond the clock") << 9.21e9 << 9.21e9 << false;
    }
    void takesAnyNumberForAnInterval()
    {
        QFETCH(double, given);
        QFETCH(double, interval);
        QFETCH(bool, ever);
        ManualTimerLoop loop;
        int fired = 0;
        const auto timer = Timer::scheduled(
            given,
            [&](const auto &t) {
                if (++fired == 3)
                    t->invalidate();
            },
            true, &loop);
        QCOMPARE(timer->timeInterval(), interval);
        loop.advance(1s);
        QCOMPARE(fired, ever ? 3 : 0);
        QCOMPARE(timer->isValid(), !ever);
    }

    void invalidatingEndsItForGood()
    {
        ManualTimerLoop loop;
        int fired = 0;
        const auto timer = Timer::scheduled(
            1, [&](const auto &) { ++fired; }, true, &loop);
        timer->invalidate();
        timer->invalidate();
        QVERIFY(!timer->isValid());
        QCOMPARE(loop.pendingWaits(), 0);
        timer->setFireDateFromNow(0);
        timer->invokeBlock();
        loop.advance(10s);
        QCOMPARE(fired, 0);
    }

    void invalidatingInItsOwnBlockIsSafe()
    {
        ManualTimerLoop loop;
        int fired = 0;
        auto guarded = std::make_shared<int>(7);
        const std::weak_ptr<int> captured = guarded;
        Timer::scheduled(
            1,
            [&fired, guarded = std::move(guarded)](const auto &t) {
                t->invalidate();
                fired += *guarded; // the block and its captures live until it returns
            },
            true, &loop);
        loop.advance(5s);
        QCOMPARE(fired, 7);
        QVERIFY(captured.expired());
    }

    void theLoopKeepsItUntilItIsInvalid()
    {
        ManualTimerLoop loop;
        std::weak_ptr<Timer> repeating = Timer::scheduled(1, {}, true, &loop);
        const std::weak_ptr<Timer> once = Timer::scheduled(1, {}, false, &loop);
        QVERIFY(!repeating.expired());
        QVERIFY(!once.expired());
        loop.advance(1s);
        QVERIFY(!repeating.expired());
        QVERIFY(once.expired());
        repeating.lock()->invalidate();
        QVERIFY(repeating.expired());
    }

    void theEndOfTheLoopInvalidatesItsTimers()
    {
        std::shared_ptr<Timer> timer;
        std::weak_ptr<Timer> unowned;
        {
            ManualTimerLoop loop;
            timer = Timer::scheduled(1, {}, true, &loop);
            unowned = Timer::scheduled(1, {}, false, &loop);
        }
        QVERIFY(!timer->isValid());
        QVERIFY(unowned.expired());
        timer->setFireDateFromNow(0);
        timer->invalidate();
    }

    void withoutALoopItIsInvalidFromTheStart()
    {
        const auto timer = Timer::scheduled(1, {}, true, nullptr);
        QVERIFY(timer);
        QVERIFY(!timer->isValid());
    }

    void invokingTheBlockLeavesTheSchedule()
    {
        ManualTimerLoop loop;
        int fired = 0;
        const auto timer = Timer::scheduled(
            1, [&](const auto &) { ++fired; }, false, &loop);
        const auto date = timer->fireDate();
        timer->invokeBlock();
        QCOMPARE(fired, 1);
        QVERIFY(timer->isValid());
        QVERIFY(timer->fireDate() == date);
        loop.advance(1s);
        QCOMPARE(fired, 2);
    }

    // From here on: the event loop itself.

    void firesInTheEventLoop()
    {
        int fired = 0;
        const auto started = Timer::Clock::now();
        Timer::Clock::duration first{};
        const auto timer = Timer::scheduled(
            0.02,
            [&](const auto &t) {
                if (++fired == 1)
                    first = Timer::Clock::now() - started;
                if (fired == 3)
                    t->invalidate();
            },
            true);
        QTRY_COMPARE(fired, 3);
        QVERIFY(first >= 20ms);
        QVERIFY(!timer->isValid());
    }

    void firesInANestedLoopButNotInItsOwnBlock()
    {
        int own = 0;
        int deepest = 0;
        int depth = 0;
        int other = 0;
        const auto slow = Timer::scheduled(
            0.001,
            [&](const auto &t) {
                deepest = std::max(deepest, ++depth);
                QEventLoop nested;
                // Ends the nested loop when it has fired five times in it.
                const auto inner = Timer::scheduled(
                    0.002,
                    [&, count = 0](const auto &) mutable {
                        ++other;
                        if (++count == 5)
                            nested.quit();
                    },
                    true);
                nested.exec();
                inner->invalidate();
                --depth;
                if (++own == 2)
                    t->invalidate();
            },
            true);
        QTRY_VERIFY(!slow->isValid());
        QCOMPARE(own, 2);
        QCOMPARE(deepest, 1);
        QVERIFY(other >= 10);
    }

    void endsWithAThreadOfQt()
    {
        std::shared_ptr<Timer> timer;
        int fired = 0;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            QEventLoop loop;
            timer = Timer::scheduled(
                0.001,
                [&](const auto &) {
                    if (++fired == 2)
                        loop.quit();
                },
                true);
            loop.exec();
        }));
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(fired, 2);
        QVERIFY(!timer->isValid());
    }

    void worksInAThreadThatQtDidNotStart()
    {
        std::shared_ptr<Timer> timer;
        int fired = 0;
        std::thread thread([&] {
            timer = Timer::scheduled(
                0.001, [&](const auto &) { ++fired; }, true);
            QEventLoop loop;
            while (fired < 2)
                loop.processEvents(QEventLoop::WaitForMoreEvents);
        });
        thread.join();
        QVERIFY(fired >= 2);
        QVERIFY(!timer->isValid());
    }
};

QTEST_GUILESS_MAIN(TimerTest)
#include "TimerTest.moc"
