// SPDX-License-Identifier: MIT
// What a launch that fails says, and what it leaves as it was.
#include "TaskRun.h"

#include <KXFoundation/Platform/Core/ChildProcess.h>
#include <KXFoundation/Platform/Core/SystemVersion.h>

#include <QtCore/QRegularExpression>

#include <sys/resource.h>

using namespace kx::test;

namespace {

// While it lives, descriptors end at a number.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t count)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit lower{count, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &lower);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    Q_DISABLE_COPY_MOVE(DescriptorLimit)

private:
    rlimit m_before{};
};

} // namespace

class KXAsyncTaskFailureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        kx::setSystemVersion({11, 0, 0});
    }

    // --- texts and paths

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

    // The system would cut it there and start the program that stands in front.
    void startsNoProgramOfAPathThatIsCut()
    {
        kx::setSystemVersion({10, 12, 0});
        TaskRun run;
        run.task->setExecutePath(QStringLiteral(TASK_CHILD) + QChar(0) + QStringLiteral("x"));
        QCOMPARE(run.execute().value_or(KXError()).code, 4);
        QCOMPARE(run.completions(), 0);
    }

    // --- what is missing

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
            row("//No-Such/Program", "Program"); // not a host, whose name would be in lower case
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

    void takesALinkThatLeadsNowhereForMissing()
    {
        const QTemporaryDir directory;
        const QString link = directory.filePath(QStringLiteral("link"));
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("nowhere")), link));
        for (const kx::SystemVersion version : {kx::SystemVersion{10, 12}, kx::SystemVersion{11, 0}}) {
            kx::setSystemVersion(version);
            QCOMPARE(KXAsyncTask::initWithExecutePath(link)->execute().value_or(KXError()).localizedDescription,
                QStringLiteral("The file “link” doesn’t exist."));
        }
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

    // --- what the system refuses

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

    // A folder is there and cannot be started.
    void reportsThemFromTenDotOneHundredAndThirteenOn_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("patch");
        QTest::addColumn<bool>("reported");
        QTest::newRow("10.12.6") << 10 << 12 << 6 << false;
        QTest::newRow("10.13") << 10 << 13 << 0 << false;
        QTest::newRow("10.15.7") << 10 << 15 << 7 << false;
        QTest::newRow("10.112.9") << 10 << 112 << 9 << false;
        QTest::newRow("10.113") << 10 << 113 << 0 << true;
        QTest::newRow("11.0") << 11 << 0 << 0 << true;
    }
    void reportsThemFromTenDotOneHundredAndThirteenOn()
    {
        QFETCH(const int, major);
        QFETCH(const int, minor);
        QFETCH(const int, patch);
        QFETCH(const bool, reported);
        kx::setSystemVersion({major, minor, patch});
        const QTemporaryDir directory;
        TaskRun run;
        run.task->setExecutePath(directory.path());
        const std::shared_ptr<kx::ChildProcess> process = run.task->task();
        QCOMPARE(run.execute().has_value(), reported);
        QVERIFY(!run.task->isRunning());
        QVERIFY(!process->isLaunched());
        QCOMPARE(run.task->task(), process);
        QCOMPARE(run.completions(), 0);
    }

    void reportsThatNoDescriptorIsLeft()
    {
        TaskRun run({QStringLiteral("out"), QStringLiteral("text")});
        std::vector<int> taken;
        {
            const DescriptorLimit limit(100);
            for (int number = 0; (number = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
                taken.push_back(number);
            const std::optional<KXError> error = run.execute();
            for (const int number : taken)
                ::close(number);
            QVERIFY(error);
            QCOMPARE(error->domain, kx::POSIXErrorDomain);
            QCOMPARE(error->code, EMFILE);
        }
        QVERIFY(run.run());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(0)}));
    }

    // The system gives the pipe, but nothing that tells of the child's end.
    void endsWithoutADescriptorForTheChild()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("await"), gate.path(), QStringLiteral("out"), QStringLiteral("text"),
            QStringLiteral("exit"), QStringLiteral("4")});
        std::vector<int> taken;
        {
            const DescriptorLimit limit(100);
            for (int number = 0; (number = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
                taken.push_back(number);
            for (int i = 0; i < 2; ++i) { // for both ends of the pipe
                ::close(taken.back());
                taken.pop_back();
            }
            const std::optional<KXError> error = run.execute();
            for (const int number : taken)
                ::close(number);
            QVERIFY(!error);
        }
        QVERIFY(run.task->isRunning());
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(4)}));
    }

    void reportsThatTheArgumentsAreTooLong()
    {
        TaskRun run({QString(64 * 1024 * 1024, u'x')});
        const std::optional<KXError> error = run.execute();
        QVERIFY(error);
        QCOMPARE(error->domain, kx::POSIXErrorDomain);
        QCOMPARE(error->code, E2BIG);
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
};

QTEST_GUILESS_MAIN(KXAsyncTaskFailureTest)
#include "KXAsyncTaskFailureTest.moc"
