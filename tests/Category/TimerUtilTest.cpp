// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/TimerUtil.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace std::chrono_literals;

class TimerUtilTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void schedulesATimerThatIsHandedToItsBlock()
    {
        std::shared_ptr<kx::Timer> seen;
        const auto timer = zq_scheduledTimerWithTimeInterval(
            0.005, [&](const auto &t) { seen = t; }, false);
        QCOMPARE(timer->timeInterval(), 0.005);
        QTRY_COMPARE(seen, timer);
        QVERIFY(!timer->isValid());
    }

    void runsTheBlockOnDemand()
    {
        QList<std::shared_ptr<kx::Timer>> seen;
        const auto timer = zq_scheduledTimerWithTimeInterval(
            1000, [&](const auto &t) { seen.append(t); }, false);
        zq_blockInvoke(timer);
        QCOMPARE(seen, QList{timer});
        QVERIFY(timer->isValid());
        timer->invalidate();
        zq_blockInvoke(timer);
        QCOMPARE(seen.size(), 1);
    }

    void aTimerWithoutABlockDoesNothing()
    {
        const auto timer = zq_scheduledTimerWithTimeInterval(0.001, {}, false);
        zq_blockInvoke(timer);
        QTRY_VERIFY(!timer->isValid());
    }

    void pausingKeepsItValidAndScheduled()
    {
        const auto timer = zq_scheduledTimerWithTimeInterval(1000, {}, true);
        zq_pause(timer);
        QVERIFY(timer->isValid());
        QVERIFY(timer->fireDate() == kx::Timer::distantFuture);
        timer->invalidate();
    }

    void aPausedTimerIsSilentUntilOneIntervalAfterItIsResumed()
    {
        QElapsedTimer clock;
        QList<qint64> at;
        const auto timer = zq_scheduledTimerWithTimeInterval(
            0.03, [&](const auto &) { at.append(clock.nsecsElapsed()); }, true);
        zq_pause(timer);
        // A later timer has fired several times, so the paused one would have had its turn.
        int other = 0;
        const auto witness = zq_scheduledTimerWithTimeInterval(
            0.03, [&](const auto &) { ++other; }, true);
        QTRY_VERIFY(other >= 3);
        witness->invalidate();
        QCOMPARE(at.size(), 0);

        clock.start();
        zq_resumeAfterAInterval(timer);
        QTRY_VERIFY(at.size() >= 3);
        timer->invalidate();
        for (qsizetype i = 0; i < at.size(); ++i)
            QVERIFY2(at[i] >= (i + 1) * 30'000'000, qPrintable(QString::number(at[i]))); // in step, never early
    }

    void resumingNowFiresWithoutWaiting()
    {
        int fired = 0;
        const auto timer = zq_scheduledTimerWithTimeInterval(
            1000, [&](const auto &) { ++fired; }, true);
        zq_pause(timer);
        zq_resumeNow(timer);
        QCOMPARE(fired, 0); // the loop fires it, not the call
        QTRY_COMPARE(fired, 1);
        QVERIFY(timer->fireDate() > kx::Timer::Clock::now() + 900s); // and then at its rate
        timer->invalidate();
    }

    void resumingAfterADelayMovesTheFireDate()
    {
        const auto timer = zq_scheduledTimerWithTimeInterval(1000, {}, true);
        const auto before = kx::Timer::Clock::now();
        zq_resumeAfterInterval(timer, 50);
        const auto after = kx::Timer::Clock::now();
        QVERIFY(timer->fireDate() >= before + 50s);
        QVERIFY(timer->fireDate() <= after + 50s);
        zq_resumeAfterAInterval(timer);
        QVERIFY(timer->fireDate() >= before + 1000s);
        timer->invalidate();
    }

    void leavesAnInvalidTimerAlone()
    {
        const auto timer = zq_scheduledTimerWithTimeInterval(1000, {}, true);
        const auto date = timer->fireDate();
        timer->invalidate();
        zq_pause(timer);
        zq_resumeNow(timer);
        zq_resumeAfterAInterval(timer);
        zq_resumeAfterInterval(timer, 1);
        QVERIFY(timer->fireDate() == date);
        QVERIFY(!timer->isValid());
    }

    void leavesNullAlone()
    {
        zq_blockInvoke(nullptr);
        zq_pause(nullptr);
        zq_resumeNow(nullptr);
        zq_resumeAfterAInterval(nullptr);
        zq_resumeAfterInterval(nullptr, 1);
    }
};

QTEST_GUILESS_MAIN(TimerUtilTest)
#include "TimerUtilTest.moc"
