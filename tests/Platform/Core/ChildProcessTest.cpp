// SPDX-License-Identifier: MIT
// What the tests of the task that is built on it do not reach.
#include "Support/Gate.h"
#include "Support/NoThreads.h"

#include <KXFoundation/Platform/Core/ChildProcess.h>

#include <KXFoundation/Platform/Core/ChildOutput.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <cerrno>
#include <csignal>
#include <semaphore>
#include <thread>

using kx::test::Gate;
using kx::test::patience;

namespace {

using Reason = kx::ChildProcess::TerminationReason;

// One process with its output and a wait for its end.
struct Run {
    explicit Run(const QStringList &arguments = {})
    {
        process->setLaunchPath(QStringLiteral(TASK_CHILD));
        process->setArguments(arguments);
        process->setOutput(output);
        process->setTerminationHandler(
            [ended = ended](const std::shared_ptr<kx::ChildProcess> &) { ended->release(); });
    }
    [[nodiscard]] bool wait() const { return ended->try_acquire_for(std::chrono::milliseconds(patience)); }

    std::shared_ptr<kx::ChildProcess> process = kx::ChildProcess::create();
    std::shared_ptr<kx::ChildOutput> output = kx::ChildOutput::create();
    std::shared_ptr<std::binary_semaphore> ended = std::make_shared<std::binary_semaphore>(0);
};

// One that runs until it is ended.
struct WaitingRun : Run {
    WaitingRun() { process->setArguments({QStringLiteral("await"), gate.path()}); }
    Gate gate;
};

} // namespace

class ChildProcessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void isNothingYet()
    {
        const auto process = kx::ChildProcess::create();
        QVERIFY(process->launchPath().isNull());
        QVERIFY(!process->output());
        QVERIFY(!process->isLaunched());
        QVERIFY(!process->isRunning());
        QCOMPARE(process->processIdentifier(), 0);
        QCOMPARE(process->terminationStatus(), 0);
        QVERIFY(process->terminationReason() == Reason::Exit);
        process->interrupt();
        process->terminate();
    }

    void takesAProgramAsAUrl()
    {
        const auto process = kx::ChildProcess::create();
        process->setExecutableURL(QUrl::fromLocalFile(QStringLiteral("/a b/%41/ü#?")));
        QCOMPARE(process->launchPath(), QStringLiteral("/a b/%41/ü#?"));
        process->setExecutableURL(QUrl::fromLocalFile(QStringLiteral("program")));
        QCOMPARE(process->launchPath(), QDir::current().absoluteFilePath(QStringLiteral("program")));
        process->setExecutableURL(QUrl());
        QVERIFY(process->launchPath().isNull());
    }

    void isTheSystemsProcessWhileItRuns()
    {
        const WaitingRun run;
        QVERIFY(!run.process->launch());
        QVERIFY(run.process->isLaunched());
        QVERIFY(run.process->isRunning());
        const qint64 number = run.process->processIdentifier();
        QCOMPARE(QFileInfo(QStringLiteral("/proc/%1/exe").arg(number)).symLinkTarget(),
            QFileInfo(QStringLiteral(TASK_CHILD)).canonicalFilePath());
        run.process->terminate();
        QVERIFY(run.wait());
        QVERIFY(run.process->isLaunched());
        QVERIFY(!run.process->isRunning());
        QCOMPARE(run.process->processIdentifier(), number);
        QVERIFY(!QFileInfo::exists(QStringLiteral("/proc/%1").arg(number)));
    }

    void sendsEitherSignalAlone_data()
    {
        QTest::addColumn<bool>("interrupt");
        QTest::addColumn<int>("signal");
        QTest::newRow("interrupt") << true << SIGINT;
        QTest::newRow("terminate") << false << SIGTERM;
    }
    void sendsEitherSignalAlone()
    {
        QFETCH(const bool, interrupt);
        QFETCH(const int, signal);
        const WaitingRun run;
        QVERIFY(!run.process->launch());
        interrupt ? run.process->interrupt() : run.process->terminate();
        QVERIFY(run.wait());
        QCOMPARE(run.process->terminationStatus(), signal);
        QVERIFY(run.process->terminationReason() == Reason::UncaughtSignal);
    }

    void hasAllOutputAtTheEnd()
    {
        const Run run({QStringLiteral("flood"), QStringLiteral("2"), QStringLiteral("err"), QStringLiteral("end")});
        QVERIFY(!run.process->launch());
        QVERIFY(run.wait());
        const QByteArray all = run.output->availableData();
        QCOMPARE(all.size(), 2 * 1024 * 1024 + 3);
        QVERIFY(all.endsWith("end"));
        QCOMPARE(run.output->availableData(), QByteArray());
    }

    void dropsTheOutputThatNobodyTakes()
    {
        const Run run({QStringLiteral("flood"), QStringLiteral("2"), QStringLiteral("exit"), QStringLiteral("6")});
        run.process->setOutput(nullptr);
        QVERIFY(!run.process->launch());
        QVERIFY(run.wait());
        QCOMPARE(run.process->terminationStatus(), 6);
        QCOMPARE(run.output->availableData(), QByteArray());
    }

    void sharesAnOutputWithOthers()
    {
        const Run one({QStringLiteral("out"), QStringLiteral("1")});
        const Run two({QStringLiteral("out"), QStringLiteral("2")});
        two.process->setOutput(one.output);
        QVERIFY(!one.process->launch());
        QVERIFY(one.wait());
        QVERIFY(!two.process->launch());
        QVERIFY(two.wait());
        QCOMPARE(one.output->availableData(), QByteArray("12"));
    }

    void staysAsItWasLaunched()
    {
        const WaitingRun run;
        QVERIFY(!run.process->launch());
        const std::optional<KXError> again = run.process->launch();
        QVERIFY(again);
        QCOMPARE(again->code, EALREADY);
        const auto changeEverything = [&run] {
            run.process->setLaunchPath(QStringLiteral("/other"));
            run.process->setExecutableURL(QUrl::fromLocalFile(QStringLiteral("/other")));
            run.process->setArguments({});
            run.process->setEnvironment(kx::ChildProcess::Environment());
            run.process->setOutput(nullptr);
            run.process->setTerminationHandler({});
        };
        changeEverything();
        QCOMPARE(run.process->launchPath(), QStringLiteral(TASK_CHILD));
        QCOMPARE(run.process->output(), run.output);
        run.process->terminate();
        QVERIFY(run.wait()); // the handler is the one from before
        changeEverything();
        QCOMPARE(run.process->launchPath(), QStringLiteral(TASK_CHILD));
        QVERIFY(run.process->launch());
    }

    void livesUntilItsChildHasEnded()
    {
        std::weak_ptr<kx::ChildProcess> weak;
        std::shared_ptr<std::binary_semaphore> ended;
        qint64 number = 0;
        const Gate gate;
        {
            const Run run({QStringLiteral("await"), gate.path()});
            QVERIFY(!run.process->launch());
            weak = run.process;
            ended = run.ended;
            number = run.process->processIdentifier();
        }
        QVERIFY(!weak.expired());
        QCOMPARE(::kill(pid_t(number), SIGTERM), 0);
        QVERIFY(ended->try_acquire_for(std::chrono::milliseconds(patience)));
        QTRY_VERIFY_WITH_TIMEOUT(weak.expired(), patience);
    }

    void needsAThread()
    {
        const Run run;
        {
            const kx::test::NoThreads none;
            const std::optional<KXError> error = run.process->launch();
            QVERIFY(error);
            QCOMPARE(*error, KXError::fromErrno(EAGAIN));
        }
        QVERIFY(!run.process->isLaunched());
        QVERIFY(!run.process->launch());
        QVERIFY(run.wait());
    }

    void callsItsHandlerOnAnotherThread()
    {
        const Run run;
        std::thread::id thread;
        std::shared_ptr<kx::ChildProcess> given;
        run.process->setTerminationHandler([&](const std::shared_ptr<kx::ChildProcess> &process) {
            thread = std::this_thread::get_id();
            given = process;
            run.ended->release();
        });
        QVERIFY(!run.process->launch());
        QVERIFY(run.wait());
        QVERIFY(thread != std::this_thread::get_id());
        QCOMPARE(given, run.process);
    }
};

QTEST_GUILESS_MAIN(ChildProcessTest)
#include "ChildProcessTest.moc"
