// SPDX-License-Identifier: MIT
// What a task is made of, and how the child is started.
#include "TaskRun.h"

#include <KXFoundation/Platform/Core/ChildProcess.h>
#include <KXFoundation/Platform/Core/SystemVersion.h>

#include <QtCore/QRegularExpression>

#include <csignal>

#include <pthread.h>

using namespace kx::test;

namespace {

// While it lives, the process's current directory is another one.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const QString &path) { QDir::setCurrent(path); }
    ~CurrentDirectory() { QDir::setCurrent(m_before); }
    Q_DISABLE_COPY_MOVE(CurrentDirectory)

private:
    QString m_before = QDir::currentPath();
};

} // namespace

class KXAsyncTaskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        kx::setSystemVersion({11, 0, 0});
    }

    // --- properties

    void startsWithTheDefaults()
    {
        const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral("/some/program"));
        QVERIFY(task->task());
        QCOMPARE(task->terminationStatus(), 0);
        QCOMPARE(task->executePath(), QStringLiteral("/some/program"));
        QCOMPARE(task->arguments(), QStringList());
        QVERIFY(!task->environment());
        QVERIFY(!task->realTimeLog());
        QVERIFY(!task->logReveiver());
        QVERIFY(!task->isRunning());
    }

    void standsForSystemElevenUnlessToldOtherwise() { QVERIFY(kx::systemVersion() == (kx::SystemVersion{11, 0, 0})); }

    void passesThePathOnAtOnce_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::newRow("launch path") << 10 << 12;
        QTest::newRow("first with a file URL") << 10 << 13;
        QTest::newRow("today") << 11 << 0;
    }
    void passesThePathOnAtOnce()
    {
        QFETCH(const int, major);
        QFETCH(const int, minor);
        kx::setSystemVersion({major, minor, 0});
        const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral("/a b/%41/ü#?"));
        QCOMPARE(task->task()->launchPath(), QStringLiteral("/a b/%41/ü#?"));
        task->setExecutePath(QStringLiteral("/other"));
        QCOMPARE(task->executePath(), QStringLiteral("/other"));
        QCOMPARE(task->task()->launchPath(), QStringLiteral("/other"));
        task->setExecutePath(QString());
        QVERIFY(task->task()->launchPath().isNull());
    }

    // A file URL is absolute from the beginning, a launch path is looked at when it is used.
    void bindsARelativePathEarlierOnNewerSystems()
    {
        const QTemporaryDir directory;
        const QString expected = QDir::current().absoluteFilePath(QStringLiteral("program"));
        const auto newer = KXAsyncTask::initWithExecutePath(QStringLiteral("program"));
        kx::setSystemVersion({10, 12, 6});
        const auto older = KXAsyncTask::initWithExecutePath(QStringLiteral("program"));
        const CurrentDirectory elsewhere(directory.path());
        QCOMPARE(newer->task()->launchPath(), expected);
        QCOMPARE(older->task()->launchPath(), QStringLiteral("program"));
    }

    void runsTheTaskThatWasSet()
    {
        TaskRun run({QStringLiteral("exit"), QStringLiteral("1")});
        const auto process = kx::ChildProcess::create();
        process->setLaunchPath(QStringLiteral(TASK_CHILD));
        process->setArguments({QStringLiteral("exit"), QStringLiteral("2")});
        run.task->setTask(process);
        QCOMPARE(run.task->task(), process);
        QVERIFY(run.run());
        QCOMPARE(run.task->terminationStatus(), 2);
    }

    void doesNothingWithoutATask()
    {
        TaskRun run;
        run.task->setTask(nullptr);
        run.task->setExecutePath(QStringLiteral("/other"));
        run.task->setArguments({QStringLiteral("a")});
        run.task->setEnvironment(KXAsyncTask::Environment());
        run.task->terminate();
        QVERIFY(!run.task->isRunning());
        QVERIFY(!run.execute());
        kx::setSystemVersion({10, 11, 0});
        QVERIFY(!run.execute());
        QCOMPARE(run.completions(), 0);
        QCOMPARE(run.task->executePath(), QStringLiteral("/other"));
    }

    // --- arguments and environment

    void handsArgumentsOnAsTheyAre()
    {
        TaskRun run({QStringLiteral("arguments"), QString(), QStringLiteral("a b"), QStringLiteral("\"$HOME\" *"),
            QStringLiteral("größer 🎬"), QStringLiteral("-x\n")});
        QVERIFY(run.run());
        QCOMPARE(run.texts().first(), QStringLiteral(TASK_CHILD "\n[][a b][\"$HOME\" *][größer 🎬][-x\n]"));
    }

    void inheritsTheEnvironmentUnlessOneIsSet()
    {
        qputenv("KX_TASK_VARIABLE", "inherited ü");
        TaskRun run({QStringLiteral("variable"), QStringLiteral("KX_TASK_VARIABLE")});
        QVERIFY(run.run());
        QCOMPARE(run.texts().first(), QStringLiteral("inherited ü"));
        qunsetenv("KX_TASK_VARIABLE");
    }

    void replacesTheEnvironmentByTheOneThatIsSet()
    {
        qputenv("KX_TASK_VARIABLE", "inherited");
        TaskRun run({QStringLiteral("variables"), QString()});
        const KXAsyncTask::Environment environment{{QStringLiteral("NAME"), QStringLiteral("a=b ü")}};
        run.task->setEnvironment(environment);
        QVERIFY(run.task->environment() == environment);
        QVERIFY(run.run());
        QCOMPARE(run.texts().first(), QStringLiteral("NAME=a=b ü"));
        qunsetenv("KX_TASK_VARIABLE");
    }

    void givesNoVariablesWithAnEmptyEnvironment()
    {
        TaskRun run({QStringLiteral("variables"), QString()});
        run.task->setEnvironment(KXAsyncTask::Environment());
        QVERIFY(run.run());
        QCOMPARE(run.texts(), QStringList{exitLine(0)});
    }

    void refusesTextsThatCannotBePassed_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("variable");
        const QString bad = QStringLiteral("a") + QChar(0) + QStringLiteral("b");
        QTest::newRow("path") << bad << QString() << QString();
        QTest::newRow("argument") << QStringLiteral(TASK_CHILD) << bad << QString();
        QTest::newRow("variable") << QStringLiteral(TASK_CHILD) << QString() << bad;
    }
    void refusesTextsThatCannotBePassed()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, argument);
        QFETCH(const QString, variable);
        TaskRun run({argument});
        run.task->task()->setLaunchPath(path);
        run.task->setEnvironment(KXAsyncTask::Environment{{QStringLiteral("NAME"), variable}});
        const std::optional<KXError> error = run.execute();
        QVERIFY(error);
        QCOMPARE(error->domain, kx::POSIXErrorDomain);
        QCOMPARE(error->code, EINVAL);
    }

    // --- failures to launch

    void saysThatTheExecutableIsMissing_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        const struct {
            const char *name;
            int major;
            int minor;
        } systems[] = {{"10.11", 10, 11}, {"10.13", 10, 13}, {"10.112", 10, 112}, {"10.113", 10, 113}, {"11.0", 11, 0}};
        for (const auto &system : systems) {
            const auto row = [&](const char *path, const char *name) {
                QTest::addRow("%s %s", system.name, path)
                    << system.major << system.minor << QString::fromUtf8(path) << QString::fromUtf8(name);
            };
            row("/no such/folder/program", "program");
            row("/no such/überprüfung €", "überprüfung €");
            row("/no such/folder/", "folder");
            row("/no-such-file", "no-such-file");
        }
    }
    void saysThatTheExecutableIsMissing()
    {
        QFETCH(const int, major);
        QFETCH(const int, minor);
        QFETCH(const QString, path);
        QFETCH(const QString, name);
        kx::setSystemVersion({major, minor, 0});
        TaskRun run;
        run.task->setExecutePath(path);
        const std::shared_ptr<kx::ChildProcess> process = run.task->task();
        const std::optional<KXError> error = run.execute();
        QVERIFY(error);
        QCOMPARE(error->domain, QStringLiteral("NSCocoaErrorDomain"));
        QCOMPARE(error->code, 4);
        QCOMPARE(error->localizedDescription, QString(u"The file \u201c" + name + u"\u201d doesn\u2019t exist."));
        QCOMPARE(error->userInfo, (QVariantMap{{QStringLiteral("NSFilePath"), process->launchPath()}}));
        QCOMPARE(QDir::cleanPath(process->launchPath()), QDir::cleanPath(path));
        QCOMPARE(run.task->task(), process); // as it was
        QVERIFY(!run.task->isRunning());
        QCOMPARE(run.completions(), 0);
        QCOMPARE(run.texts(), QStringList());
    }

    void saysSoForNoPathAtAll()
    {
        kx::setSystemVersion({10, 12, 0});
        const auto absent = KXAsyncTask::initWithExecutePath(QString());
        QCOMPARE(absent->execute().value_or(KXError()).localizedDescription,
            QStringLiteral("The file “(null)” doesn’t exist."));
        const auto empty = KXAsyncTask::initWithExecutePath(QStringLiteral(""));
        QCOMPARE(
            empty->execute().value_or(KXError()).localizedDescription, QStringLiteral("The file “” doesn’t exist."));
    }

    void doesNotLookForABareNameInPath()
    {
        for (const kx::SystemVersion version : {kx::SystemVersion{10, 12}, kx::SystemVersion{11, 0}}) {
            kx::setSystemVersion(version);
            const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral("true"));
            const std::optional<KXError> error = task->execute();
            QVERIFY(error);
            QCOMPARE(error->code, 4);
            QCOMPARE(error->localizedDescription, QStringLiteral("The file “true” doesn’t exist."));
        }
    }

    void startsARelativePath()
    {
        const QFileInfo program(QStringLiteral(TASK_CHILD));
        const CurrentDirectory directory(program.path());
        for (const kx::SystemVersion version : {kx::SystemVersion{10, 12}, kx::SystemVersion{11, 0}}) {
            kx::setSystemVersion(version);
            TaskRun run({QStringLiteral("exit"), QStringLiteral("5")});
            run.task->setExecutePath(program.fileName());
            QVERIFY(run.run());
            QCOMPARE(run.task->terminationStatus(), 5);
        }
    }

    void reportsOtherFailuresOfTheSystem()
    {
        const QTemporaryDir directory;
        TaskRun run;
        run.task->setExecutePath(directory.path()); // a directory
        std::optional<KXError> error = run.execute();
        QVERIFY(error);
        QCOMPARE(error->domain, kx::POSIXErrorDomain);
        QCOMPARE(error->code, EACCES);

        const QString script = directory.filePath(QStringLiteral("script"));
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/no/such/interpreter\n");
        file.close();
        QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner));
        run.task->setExecutePath(script); // there, but not what it needs
        error = run.execute();
        QVERIFY(error);
        QCOMPARE(error->domain, kx::POSIXErrorDomain);
        QCOMPARE(error->code, ENOENT);
        QCOMPARE(run.completions(), 0);
    }

    void doesNotReportThemOnOlderSystems()
    {
        kx::setSystemVersion({10, 112, 0});
        const QTemporaryDir directory;
        TaskRun run;
        run.task->setExecutePath(directory.path());
        const std::shared_ptr<kx::ChildProcess> process = run.task->task();
        QVERIFY(!run.execute());
        QVERIFY(!run.task->isRunning());
        QVERIFY(!process->isLaunched());
        QCOMPARE(run.task->task(), process);
        QCOMPARE(run.completions(), 0);
    }

    void canBeTriedAgainAfterAFailure()
    {
        TaskRun run({QStringLiteral("out"), QStringLiteral("done")});
        run.task->setExecutePath(QStringLiteral("/no/such/program"));
        QVERIFY(run.execute());
        run.task->setExecutePath(QStringLiteral(TASK_CHILD));
        QVERIFY(run.run());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("done"), exitLine(0)}));
    }

    void letsGoOfTheCompletionAfterAFailure()
    {
        std::weak_ptr<KXAsyncTask> weak;
        {
            const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral("/no/such/program"));
            weak = task;
            QVERIFY(task->execute([task](const std::shared_ptr<KXAsyncTask> &) {}));
        }
        QVERIFY(weak.expired());
    }

    // --- once

    void doesNothingAfterTheEnd()
    {
        TaskRun run({QStringLiteral("exit"), QStringLiteral("3")});
        QVERIFY(run.run());
        for (const kx::SystemVersion version : {kx::SystemVersion{10, 12}, kx::SystemVersion{11, 0}}) {
            kx::setSystemVersion(version);
            QVERIFY(!run.execute());
        }
        QVERIFY(!run.task->task());
        QVERIFY(!run.task->isRunning());
        QCOMPARE(run.completions(), 1);
        QCOMPARE(run.task->terminationStatus(), 3);
        QCOMPARE(run.texts(), QStringList{exitLine(3)});
    }

    void refusesASecondLaunchWhileTheChildRuns()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("out"), QStringLiteral("one"), QStringLiteral("await"), gate.path()});
        QVERIFY(!run.execute());
        const std::optional<KXError> error = run.execute();
        QVERIFY(error);
        QCOMPARE(error->code, EALREADY);
        run.task->setArguments({QStringLiteral("exit"), QStringLiteral("9")}); // too late
        QVERIFY(run.task->isRunning());
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("one"), exitLine(0)}));
        QCOMPARE(run.completions(), 1);
    }

    // --- what the child starts with

    void getsOnlyTheStandardDescriptors()
    {
        const int left = ::open("/dev/null", O_RDONLY); // open for every child of this process
        TaskRun run({QStringLiteral("descriptors"), QString()});
        QVERIFY(run.run());
        ::close(left);
        QCOMPARE(run.texts().first(), QStringLiteral("0 1 2 "));
    }

    void startsWhenTheHostHasClosedItsOwn()
    {
        const int input = ::fcntl(0, F_DUPFD_CLOEXEC, 10);
        const int output = ::fcntl(1, F_DUPFD_CLOEXEC, 10);
        const int errors = ::fcntl(2, F_DUPFD_CLOEXEC, 10);
        TaskRun run({QStringLiteral("out"), QStringLiteral("out"), QStringLiteral("err"), QStringLiteral("err")});
        const Gate gate;
        ::close(0);
        ::close(1);
        ::close(2);
        const bool well = run.run();
        ::dup2(input, 0);
        ::dup2(output, 1);
        ::dup2(errors, 2);
        ::close(input);
        ::close(output);
        ::close(errors);
        QVERIFY(well);
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("outerr"), exitLine(0)}));
    }

    void startsWithFreshSignals()
    {
        sigset_t blocked;
        sigset_t before;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGTERM);
        sigaddset(&blocked, SIGUSR1);
        pthread_sigmask(SIG_BLOCK, &blocked, &before);
        const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
        const auto hangUpBefore = std::signal(SIGHUP, SIG_IGN);
        TaskRun run({QStringLiteral("signals"), QString()});
        const bool well = run.run();
        std::signal(SIGPIPE, pipeBefore);
        std::signal(SIGHUP, hangUpBefore);
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        QVERIFY(well);
        QCOMPARE(run.texts().first(), QStringLiteral("blocked: ignored:"));
    }
};

QTEST_GUILESS_MAIN(KXAsyncTaskTest)
#include "KXAsyncTaskTest.moc"
