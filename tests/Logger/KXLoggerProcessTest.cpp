// SPDX-License-Identifier: MIT
// What takes a process of its own: the console, being killed, ending, limits of the system, two runs at once.
#include "LogDirectory.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

using namespace kx::test;

namespace {

constexpr int patience = 20000; // milliseconds; reached only by a failing test

// The helper program with its commands.
class Child : public QProcess {
public:
    explicit Child(const QStringList &commands)
    {
        setProgram(QStringLiteral(LOG_CHILD));
        setArguments(commands);
        setReadChannel(QProcess::StandardOutput);
    }
    ~Child() override
    {
        kill();
        waitForFinished();
    }
    QString readLineSoon()
    {
        while (!canReadLine() && waitForReadyRead(patience)) { }
        return QString::fromLocal8Bit(readLine()).trimmed();
    }
    void go()
    {
        write("\n");
        waitForBytesWritten(patience);
    }
    bool endsWell() { return waitForFinished(patience) && exitStatus() == NormalExit && exitCode() == 0; }
};

// The child's standard output becomes a terminal; what it writes there is read from the other side.
class Terminal {
public:
    Terminal()
        : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK))
    {
        if (::grantpt(m_master) == 0 && ::unlockpt(m_master) == 0)
            m_slave = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~Terminal()
    {
        ::close(m_slave);
        ::close(m_master);
    }
    Q_DISABLE_COPY_MOVE(Terminal)
    void becomeOutputOf(QProcess &process, int descriptor)
    {
        process.setChildProcessModifier([slave = m_slave, descriptor] { ::dup2(slave, descriptor); });
    }
    [[nodiscard]] bool isReady() const { return m_slave >= 0; }
    [[nodiscard]] QByteArray shown() const
    {
        char bytes[4096];
        const ssize_t size = ::read(m_master, bytes, sizeof bytes);
        return size > 0 ? QByteArray(bytes, size) : QByteArray();
    }

private:
    int m_master;
    int m_slave = -1;
};

} // namespace

class KXLoggerProcessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<LogDirectory>();
    }

    // --- the console

    void showsLinesOnStandardErrorWhenTheOutputIsATerminal()
    {
        Terminal terminal;
        QVERIFY(terminal.isReady());
        Child child({base, dir(), line, QStringLiteral("first Ü"), line, QStringLiteral("second\n"),
            QStringLiteral("minimum"), QStringLiteral("3"), line, QStringLiteral("silenced"), save, QString()});
        terminal.becomeOutputOf(child, STDOUT_FILENO);
        child.start();
        QVERIFY(child.endsWell());
        QCOMPARE(child.readAllStandardError(), QByteArray("first Ü\nsecond\n\n"));
        QCOMPARE(terminal.shown(), QByteArray());
        QCOMPARE(onlyFile(), QByteArray("first Ü\nsecond\nforce eof\n")); // each once
    }

    void showsNothingWhenTheOutputIsNoTerminal()
    {
        Terminal terminal;
        QVERIFY(terminal.isReady());
        Child child({base, dir(), line, QStringLiteral("quiet"), save, QString()});
        terminal.becomeOutputOf(child, STDERR_FILENO);
        child.start();
        QVERIFY(child.endsWell());
        QCOMPARE(terminal.shown(), QByteArray());
        QCOMPARE(child.readAllStandardOutput(), QByteArray());
        QCOMPARE(onlyFile(), QByteArray("quiet\nforce eof\n"));
    }

    // --- the end of a process

    void losesOnlyTheUnfinishedBatchWhenKilled()
    {
        Child child({base, dir(), QStringLiteral("lines"), QStringLiteral("130"), say, QStringLiteral("logged"), pause,
            QString()});
        child.start();
        QCOMPARE(child.readLineSoon(), QStringLiteral("logged"));
        const auto lineCount = [this] {
            const QStringList files = LogDirectory::logFiles(dir());
            return files.isEmpty() ? 0 : fileLines(files.first()).size();
        };
        QTRY_COMPARE(lineCount(), 100);
        QCOMPARE(::kill(pid_t(child.processId()), SIGKILL), 0);
        QVERIFY(child.waitForFinished(patience));
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        const QStringList lines = fileLines(LogDirectory::logFiles(dir()).value(0));
        QCOMPARE(lines.size(), 100);
        for (int i = 0; i < 100; ++i)
            QVERIFY2(lines[i].endsWith(u"] [child] line " + QString::number(i)), qPrintable(lines[i]));
    }

    void losesNothingThatWasSavedWhenKilled()
    {
        Child child({base, dir(), QStringLiteral("lines"), QStringLiteral("130"), save, QString(), say,
            QStringLiteral("saved"), pause, QString()});
        child.start();
        QCOMPARE(child.readLineSoon(), QStringLiteral("saved"));
        QCOMPARE(::kill(pid_t(child.processId()), SIGKILL), 0);
        QVERIFY(child.waitForFinished(patience));
        QCOMPARE(fileLines(LogDirectory::logFiles(dir()).value(0)).size(), 131);
    }

    void writesNothingAtExit()
    {
        Child child({base, dir(), QStringLiteral("lines"), QStringLiteral("49")});
        child.start();
        QVERIFY(child.endsWell());
        QVERIFY(!QFile::exists(dir()));
    }

    void endsInTheMiddleOfItsWriting()
    {
        for (int i = 0; i < 10; ++i) {
            Child child({base, dir(), QStringLiteral("lines"), QStringLiteral("20000")});
            child.start();
            QVERIFY(child.endsWell());
        }
    }

    // --- limits

    void survivesAFileThatMayNotGrow()
    {
        const QString other = m_directory->path(QStringLiteral("other"));
        Child child({QStringLiteral("limit"), QStringLiteral("1000"), base, dir(), QStringLiteral("lines"),
            QStringLiteral("200"), save, QString(), base, other, line, QStringLiteral("again"), save, QString()});
        child.start();
        QVERIFY2(child.endsWell(), qPrintable(child.errorString()));
        QCOMPARE(onlyFile().size(), 1000);
        QCOMPARE(fileBytes(LogDirectory::logFiles(other).value(0)), QByteArray("again\nforce eof\n"));
    }

    void losesLinesInAFolderThatIsReadOnly()
    {
        const QString closed = m_directory->path(QStringLiteral("closed"));
        const QString open = m_directory->path(QStringLiteral("open"));
        QVERIFY(QDir().mkpath(closed) && QDir().mkpath(open));
        using Permission = QFileDevice::Permission;
        const QFile::Permissions search =
            Permission::ReadOwner | Permission::ExeOwner | Permission::ReadOther | Permission::ExeOther;
        QVERIFY(QFile::setPermissions(m_directory->path(QString()), search | Permission::WriteOwner));
        QVERIFY(QFile::setPermissions(closed, search));
        QVERIFY(QFile::setPermissions(open, search | Permission::WriteOwner | Permission::WriteOther));
        Child child({QStringLiteral("user"), QStringLiteral("65534"), base, closed, QStringLiteral("lines"),
            QStringLiteral("200"), save, QString(), base, open, line, QStringLiteral("again"), save, QString()});
        child.start();
        QVERIFY(child.endsWell());
        QVERIFY(QDir(closed).isEmpty());
        QCOMPARE(fileBytes(LogDirectory::logFiles(open).value(0)), QByteArray("again\nforce eof\n"));
        QVERIFY(QFile::setPermissions(closed, search | Permission::WriteOwner)); // so that it can be removed
    }

    // --- two runs in one second

    void leavesTheNameToTheLaterOfTwoRunsInOneSecond()
    {
        for (int attempt = 0;; ++attempt) {
            const QString shared = m_directory->path(QString::number(attempt));
            const QStringList commands{pause, QString(), base, shared, QStringLiteral("path"), QString(), pause,
                QString(), line, QStringLiteral("of the first"), save, QString(), say, QStringLiteral("written"), pause,
                QString()};
            QStringList secondCommands = commands;
            secondCommands.replaceInStrings(QStringLiteral("first"), QStringLiteral("second"));
            Child first(commands);
            Child second(secondCommands);
            first.start();
            second.start();
            first.go();
            const QString path = first.readLineSoon();
            first.go();
            QCOMPARE(first.readLineSoon(), QStringLiteral("written"));
            QCOMPARE(fileBytes(path), QByteArray("of the first\nforce eof\n"));
            second.go();
            if (second.readLineSoon() != path) // the clock went on in between
                continue;
            QCOMPARE(fileBytes(path), QByteArray());
            second.go();
            QCOMPARE(second.readLineSoon(), QStringLiteral("written"));
            first.go();
            second.go();
            QVERIFY(first.endsWell() && second.endsWell());
            QCOMPARE(fileBytes(path), QByteArray("of the second\nforce eof\n"));
            return;
        }
    }

    // Both make the file at once and write a lot: whoever has the name in the end, its file is whole.
    void leavesEachRunItsOwnLinesWhateverTheirOrder()
    {
        for (int round = 0; round < 20; ++round) {
            const QString shared = m_directory->path(QString::number(round));
            const QStringList commands{
                pause, QString(), base, shared, QStringLiteral("lines"), QStringLiteral("500"), save, QString()};
            Child first(commands);
            Child second(commands);
            first.start();
            second.start();
            first.write("\n");
            second.go();
            first.go();
            QVERIFY(first.endsWell() && second.endsWell());
            const QStringList files = LogDirectory::logFiles(shared);
            QVERIFY(files.size() == 1 || files.size() == 2);
            for (const QString &file : files) {
                const QStringList lines = fileLines(file);
                QCOMPARE(lines.size(), 501);
                for (int i = 0; i < 500; ++i)
                    QVERIFY2(lines[i].endsWith(u"] [child] line " + QString::number(i)), qPrintable(lines[i]));
            }
        }
    }

private:
    [[nodiscard]] QString dir() const { return m_directory->base(); }
    [[nodiscard]] QByteArray onlyFile() const
    {
        const QStringList files = LogDirectory::logFiles(dir());
        return files.size() == 1 ? fileBytes(files.first()) : QByteArray("not one file");
    }

    const QString base = QStringLiteral("base");
    const QString line = QStringLiteral("line");
    const QString save = QStringLiteral("save");
    const QString say = QStringLiteral("say");
    const QString pause = QStringLiteral("pause");

    std::unique_ptr<LogDirectory> m_directory;
};

QTEST_GUILESS_MAIN(KXLoggerProcessTest)
#include "KXLoggerProcessTest.moc"
