// SPDX-License-Identifier: MIT
// How a task ends, by itself or by force, and what is left of it.
#include "TaskRun.h"

#include <KXFoundation/Platform/Core/ChildProcess.h>

#include <QtCore/QRegularExpression>

#include <csignal>

#include <sys/wait.h>

using namespace kx::test;

namespace {

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

qsizetype threads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
}

// Any child of this process that has ended and was not waited for, or that runs.
bool hasChildren()
{
    siginfo_t info{};
    return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0;
}

} // namespace

class KXAsyncTaskEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_threads = threads(); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // --- the end of the child

    void reportsTheExitStatus_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("line");
        QTest::newRow("success") << 0 << QStringLiteral("terminationStatus:0terminationReason:1");
        QTest::newRow("3") << 3 << QStringLiteral("terminationStatus:3terminationReason:1");
        QTest::newRow("255") << 255 << QStringLiteral("terminationStatus:255terminationReason:1");
    }
    void reportsTheExitStatus()
    {
        QFETCH(const int, status);
        QFETCH(const QString, line);
        TaskRun run({QStringLiteral("exit"), QString::number(status)});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), QStringList{line});
        QCOMPARE(run.task->terminationStatus(), status);
    }

    void reportsTheSignal()
    {
        TaskRun run({QStringLiteral("raise"), QString::number(SIGKILL)});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), QStringList{QStringLiteral("terminationStatus:9terminationReason:2")});
        QCOMPARE(run.task->terminationStatus(), 9);
    }

    void clearsTheTaskBeforeTheCompletion()
    {
        const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral(TASK_CHILD));
        task->setArguments({QStringLiteral("exit"), QStringLiteral("4")});
        struct Seen {
            qint32 inReceiver = -1;
            bool taskInReceiver = false;
            bool runningInReceiver = true;
            qint32 inCompletion = -1;
            bool taskInCompletion = true;
            const KXAsyncTask *given = nullptr;
            std::binary_semaphore done{0};
        } seen;
        const std::shared_ptr<kx::ChildProcess> process = task->task();
        task->setLogReveiver([&, weak = std::weak_ptr(task)](const QString &) {
            seen.inReceiver = weak.lock()->terminationStatus();
            seen.taskInReceiver = weak.lock()->task() != nullptr;
            seen.runningInReceiver = weak.lock()->isRunning();
        });
        QVERIFY(!task->execute([&](const std::shared_ptr<KXAsyncTask> &ended) {
            seen.inCompletion = ended->terminationStatus();
            seen.taskInCompletion = ended->task() != nullptr;
            seen.given = ended.get();
            seen.done.release();
        }));
        QVERIFY(seen.done.try_acquire_for(std::chrono::milliseconds(patience)));
        QCOMPARE(seen.inReceiver, 0); // the status line comes first
        QVERIFY(seen.taskInReceiver);
        QVERIFY(!seen.runningInReceiver);
        QCOMPARE(seen.inCompletion, 4);
        QVERIFY(!seen.taskInCompletion);
        QCOMPARE(seen.given, task.get());
        QCOMPARE(process->terminationStatus(), 4);
    }

    void completesOnAThreadOfItsOwnWhileTheCallerIsBlocked()
    {
        TaskRun run;
        QVERIFY(run.run()); // which runs no loop
        QVERIFY(run.completionThread() != std::this_thread::get_id());
        QCOMPARE(run.ended(), run.task.get());
    }

    void endsWithoutACompletion()
    {
        TaskRun run({QStringLiteral("exit"), QStringLiteral("6")});
        QVERIFY(!run.task->execute());
        QTRY_VERIFY_WITH_TIMEOUT(!run.task->task(), patience);
        QCOMPARE(run.task->terminationStatus(), 6);
    }

    void runsUntilTheChildHasEnded()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("await"), gate.path()});
        QVERIFY(!run.task->isRunning());
        QVERIFY(!run.execute());
        QVERIFY(run.task->isRunning());
        QVERIFY(run.task->task()->processIdentifier() > 0);
        gate.open();
        QVERIFY(run.wait());
        QVERIFY(!run.task->isRunning());
    }

    void endsAFloodFromItsReceiver()
    {
        TaskRun run({QStringLiteral("flood"), QStringLiteral("10000")}, true);
        run.task->setLogReveiver([&run](const QString &) { run.task->terminate(); });
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.completions(), 1, patience);
        QCOMPARE(run.task->terminationStatus(), SIGINT);
    }

    void waitsForAChildThatHasClosedItsOutput()
    {
        const Gate closed;
        const Gate gate;
        TaskRun run(
            {QStringLiteral("out"), QStringLiteral("text"), QStringLiteral("close"), QString(), QStringLiteral("tell"),
                closed.path(), QStringLiteral("await"), gate.path(), QStringLiteral("exit"), QStringLiteral("7")});
        QVERIFY(!run.execute());
        QVERIFY(closed.told());
        QVERIFY(run.task->isRunning());
        QCOMPARE(run.completions(), 0);
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(7)}));
    }

    void doesNotWaitForAProcessThatHoldsTheOutput()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("out"), QStringLiteral("text"), QStringLiteral("leave"), gate.path()});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(0)}));
        gate.open();
    }

    void doesNotWaitForAProcessThatFloodsTheOutput()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("leaveflooding"), gate.path(), QStringLiteral("exit"), QStringLiteral("8")});
        QVERIFY(run.run());
        QCOMPARE(run.texts().last(), exitLine(8));
        QVERIFY(gate.told()); // it meets a closed pipe in the end
    }

    // Where the host has the system forget its children, there is an end, but no status.
    void endsWhenTheHostTakesTheStatusAway()
    {
        const auto before = std::signal(SIGCHLD, SIG_IGN);
        TaskRun run({QStringLiteral("out"), QStringLiteral("text")});
        const bool well = run.run();
        std::signal(SIGCHLD, before);
        QVERIFY(well);
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(-1)}));
        QCOMPARE(run.task->terminationStatus(), -1);
    }

    // --- by force

    void interruptsFirst()
    {
        const Gate ready;
        const Gate gate;
        TaskRun run({QStringLiteral("tell"), ready.path(), QStringLiteral("await"), gate.path()});
        QVERIFY(!run.execute());
        QVERIFY(ready.told());
        run.task->terminate();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), QStringList{signalLine(SIGINT)});
        QCOMPARE(run.task->terminationStatus(), SIGINT);
    }

    void terminatesAtOnceWhatIgnoresTheInterrupt()
    {
        const Gate ready;
        const Gate gate;
        TaskRun run({QStringLiteral("ignore"), QString::number(SIGINT), QStringLiteral("tell"), ready.path(),
            QStringLiteral("await"), gate.path()});
        QVERIFY(!run.execute());
        QVERIFY(ready.told());
        run.task->terminate();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), QStringList{signalLine(SIGTERM)});
    }

    void sendsBothSignalsAndDoesNotWait()
    {
        const Gate ready;
        const Gate gate;
        TaskRun run({QStringLiteral("note"), QString::number(SIGINT), QStringLiteral("note"), QString::number(SIGTERM),
                        QStringLiteral("tell"), ready.path(), QStringLiteral("await"), gate.path()},
            true);
        QVERIFY(!run.execute());
        QVERIFY(ready.told());
        run.task->terminate();
        QTRY_COMPARE_WITH_TIMEOUT(run.texts().join(QString()).size(), 8, patience);
        QVERIFY(run.task->isRunning());
        gate.open();
        QVERIFY(run.wait());
        const QString notes = run.texts().join(QString());
        QVERIFY(notes.contains(QStringLiteral("<02>")) && notes.contains(QStringLiteral("<15>")));
        QVERIFY(notes.endsWith(exitLine(0)));
    }

    void doesNothingWhenThereIsNothingToStop()
    {
        TaskRun run({QStringLiteral("exit"), QStringLiteral("3")});
        run.task->terminate(); // not yet
        QVERIFY(run.run());
        run.task->terminate(); // not any more
        QCOMPARE(run.task->terminationStatus(), 3);
        QCOMPARE(run.completions(), 1);
        QCOMPARE(run.texts(), QStringList{exitLine(3)});
    }

    void canBeStoppedFromAnyThreadAtAnyTime()
    {
        for (int round = 0; round < 50; ++round) {
            TaskRun run({QStringLiteral("out"), QStringLiteral("text")}, true);
            QVERIFY(!run.execute());
            std::thread stopper([&] { run.task->terminate(); });
            const bool well = run.wait();
            stopper.join();
            QVERIFY(well);
            QCOMPARE(run.completions(), 1);
        }
    }

    // --- letting go

    void stopsTheChildOfADeletedTask()
    {
        const Gate ready;
        const Gate gate;
        TaskRun run({QStringLiteral("out"), QStringLiteral("text"), QStringLiteral("tell"), ready.path(),
                        QStringLiteral("await"), gate.path()},
            true);
        QVERIFY(!run.execute());
        QVERIFY(ready.told());
        const std::shared_ptr<kx::ChildProcess> process = run.task->task();
        run.task.reset();
        QVERIFY(run.wait());
        QCOMPARE(run.ended(), nullptr);
        QCOMPARE(process->terminationStatus(), SIGINT);
        QVERIFY(process->terminationReason() == kx::ChildProcess::TerminationReason::UncaughtSignal);
        QCoreApplication::processEvents(); // a live piece that was on its way goes nowhere
        QCOMPARE(run.texts(), QStringList());
    }

    void doesNotWaitForAChildThatDoesNotObey()
    {
        const Gate ready;
        const Gate gate;
        TaskRun run({QStringLiteral("ignore"), QString::number(SIGINT), QStringLiteral("ignore"),
            QString::number(SIGTERM), QStringLiteral("tell"), ready.path(), QStringLiteral("await"), gate.path(),
            QStringLiteral("flood"), QStringLiteral("1"), QStringLiteral("exit"), QStringLiteral("5")});
        QVERIFY(!run.execute());
        QVERIFY(ready.told());
        const std::shared_ptr<kx::ChildProcess> process = run.task->task();
        run.task.reset();
        QVERIFY(process->isRunning());
        QCOMPARE(run.completions(), 0);
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(process->terminationStatus(), 5);
        QCOMPARE(run.texts(), QStringList());
    }

    void mayBeDeletedByItsReceiver()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("out"), QStringLiteral("text"), QStringLiteral("await"), gate.path()}, true);
        run.task->setLogReveiver([&](const QString &) { run.task.reset(); });
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.completions(), 1, patience);
        QVERIFY(!run.task);
        QCOMPARE(run.ended(), nullptr);
    }

    void mayBeDeletedByItsCompletion()
    {
        auto *const task = new std::shared_ptr(KXAsyncTask::initWithExecutePath(QStringLiteral(TASK_CHILD)));
        std::atomic<bool> done = false;
        std::weak_ptr<KXAsyncTask> weak = *task;
        QVERIFY(!(*task)->execute([&done, task](const std::shared_ptr<KXAsyncTask> &) {
            delete task;
            done = true;
        }));
        QTRY_VERIFY_WITH_TIMEOUT(done && weak.expired(), patience);
    }

    void letsItsHostEndFirst_data()
    {
        QTest::addColumn<QStringList>("keeping");
        QTest::newRow("tasks that nobody ends") << QStringList();
        QTest::newRow("tasks that go with the last of the program") << QStringList{QStringLiteral("keep")};
    }
    void letsItsHostEndFirst()
    {
        QFETCH(const QStringList, keeping);
        for (int round = 0; round < (underSanitizer ? 2 : 10); ++round) { // the thread sanitizer ends late
            const Gate gate;
            TaskRun run(QStringList{gate.path()} + keeping);
            run.task->setExecutePath(QStringLiteral(TASK_HOST));
            QVERIFY(run.run());
            QCOMPARE(run.texts(), QStringList{exitLine(0)});
            gate.open();
        }
    }

    void keepsNothingOfWhatItWasGiven()
    {
        const auto token = std::make_shared<int>(0);
        TaskRun run;
        run.task->setLogReveiver([token](const QString &) {});
        std::binary_semaphore done{0};
        QVERIFY(!run.task->execute([token, &done](const std::shared_ptr<KXAsyncTask> &) { done.release(); }));
        QVERIFY(done.try_acquire_for(std::chrono::milliseconds(patience)));
        run.task.reset();
        QTRY_COMPARE_WITH_TIMEOUT(token.use_count(), 1, patience);
    }

    void leavesNothingBehind()
    {
        const int runs = underSanitizer || qEnvironmentVariableIsSet("KX_TEST_OLD_SYSTEM") ? 500 : 10000;
        QVERIFY(TaskRun().run());
        QTRY_VERIFY_WITH_TIMEOUT(!hasChildren(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(threads(), m_threads, patience);
        const qsizetype before = openDescriptors();
        for (int i = 0; i < runs; ++i) {
            TaskRun run({}, i % 2 == 0);
            if (i % 10 == 0)
                run.task->setExecutePath(QStringLiteral("/no/such/program")); // a failure leaves nothing either
            QVERIFY(run.execute().has_value() == (i % 10 == 0));
            QVERIFY(i % 10 == 0 || run.wait());
            QVERIFY(!hasChildren());
        }
        QCOMPARE(openDescriptors(), before);
        QTRY_COMPARE_WITH_TIMEOUT(threads(), m_threads, patience);
    }

private:
    qsizetype m_threads = 0; // before the first task
};

QTEST_GUILESS_MAIN(KXAsyncTaskEndTest)
#include "KXAsyncTaskEndTest.moc"
