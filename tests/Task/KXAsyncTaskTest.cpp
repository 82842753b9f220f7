// SPDX-License-Identifier: MIT
// What a task is made of, and how the child is started.
#include "TaskRun.h"

#include <KXFoundation/Platform/Core/ChildProcess.h>
#include <KXFoundation/Platform/Core/SystemVersion.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include <csignal>

#include <pthread.h>
#include <sys/wait.h>

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

QSet<int> openDescriptors()
{
    QSet<int> numbers;
    for (int number = 0; number < 1024; ++number) {
        if (::fcntl(number, F_GETFD) >= 0)
            numbers.insert(number);
    }
    return numbers;
}

} // namespace

class KXAsyncTaskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        kx::setSystemVersion(m_systemVersion);
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

    void standsForSystemElevenUnlessToldOtherwise() { QVERIFY(m_systemVersion == (kx::SystemVersion{11, 0, 0})); }

    void passesThePathOnAtOnce_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::newRow("launch path") << 10 << 12;
        QTest::newRow("first with a file URL") << 10 << 13;
        QTest::newRow("last before 11") << 10 << 113;
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

    // What a URL would read as a host, a scheme or an end of its own.
    void namesTheSameFileOnEverySystem_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("name");
        QTest::newRow("two slashes") << QStringLiteral("/") << QStringLiteral("program");
        QTest::newRow("many slashes") << QStringLiteral("///") << QStringLiteral("program");
        QTest::newRow("upper case") << QStringLiteral("/") << QStringLiteral("Program");
        QTest::newRow("a colon") << QString() << QStringLiteral("c:program");
        QTest::newRow("a colon in front") << QString() << QStringLiteral(":program");
        QTest::newRow("percent, question mark, number sign") << QString() << QStringLiteral("%41?#");
        QTest::newRow("a space and beyond ASCII") << QString() << QStringLiteral("prüf programm 🎬");
        QTest::newRow("a backslash") << QString() << QStringLiteral("a\\b");
    }
    void namesTheSameFileOnEverySystem()
    {
        QFETCH(const QString, prefix);
        QFETCH(const QString, name);
        const QTemporaryDir folder;
        const QString upper = folder.filePath(QStringLiteral("UPPER"));
        QVERIFY(QDir().mkdir(upper));
        QCOMPARE(::symlink(TASK_CHILD, QFile::encodeName(QString(upper + u'/' + name)).constData()), 0);
        const CurrentDirectory directory(upper);
        for (const kx::SystemVersion version : {kx::SystemVersion{10, 12}, kx::SystemVersion{11, 0}}) {
            kx::setSystemVersion(version);
            for (const QString &path : {QString(prefix + upper + u'/' + name), name}) {
                TaskRun run({QStringLiteral("exit"), QStringLiteral("5")});
                run.task->setExecutePath(path);
                QCOMPARE(run.task->executePath(), path);
                QVERIFY2(run.run(), qPrintable(path));
                QCOMPARE(run.task->terminationStatus(), 5);
            }
        }
    }

    // A file URL is absolute from the beginning, a launch path is looked at when it is used.
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

    // What a program keeps for its forks (and the system's copying of its memory) is no concern of a launch.
    void isNotAForkOfTheHost()
    {
        static std::atomic<int> forks = 0;
        QCOMPARE(pthread_atfork([] { ++forks; }, nullptr, nullptr), 0);
        TaskRun run;
        QVERIFY(run.run());
        QCOMPARE(forks.load(), 0);
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(0);
        QCOMPARE(::waitpid(child, nullptr, 0), child);
        QCOMPARE(forks.load(), 1); // so that a fork would have shown
    }

    void keepsItsDescriptorsFromOtherChildren()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("await"), gate.path()});
        const QSet<int> before = openDescriptors();
        QVERIFY(!run.execute());
        const QSet<int> added = openDescriptors() - before;
        QVERIFY(!added.isEmpty());
        for (const int number : added)
            QVERIFY2((::fcntl(number, F_GETFD) & FD_CLOEXEC) != 0, qPrintable(QString::number(number)));
        gate.open();
        QVERIFY(run.wait());
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

private:
    const kx::SystemVersion m_systemVersion = kx::systemVersion(); // before anyone sets it
};

QTEST_GUILESS_MAIN(KXAsyncTaskTest)
#include "KXAsyncTaskTest.moc"
