// SPDX-License-Identifier: MIT
// Directories, paths and files of the logger; how it gets along when they fail.
#include "LogDirectory.h"

#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/Core/SerialQueue.h>

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <atomic>
#include <semaphore>
#include <thread>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kx::test;

namespace {

constexpr qint64 day = 24 * 60 * 60;

// Sets the entry's own time, that of a link too.
bool makeOld(const QString &path, qint64 seconds)
{
    const timespec then{QDateTime::currentSecsSinceEpoch() - seconds, 0};
    const timespec times[] = {then, then};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

class KXLoggerFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<LogDirectory>();
        m_logger = std::make_unique<KXLogger>();
    }

    void cleanup() { m_logger.reset(); }

    // --- paths

    void namesFoldersByDayAndFilesByTime()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        QString expectedBefore, path, expectedAfter;
        const auto expected = [this] {
            return QDateTime::currentDateTime().toString(u"'" + m_directory->base() + u"/'yyyy-MM-dd/HH-mm-ss'.log'");
        };
        do {
            expectedBefore = expected();
            path = m_logger->makeLogFilePath();
            expectedAfter = expected();
        } while (expectedBefore != expectedAfter);
        QCOMPARE(path, expectedBefore);
        QVERIFY(QFile::exists(path));
        QCOMPARE(QFileInfo(path).size(), 0);
    }

    void makesThePathOnce()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        QVERIFY(!QFile::exists(m_directory->base()));
        const QString path = m_logger->logPath();
        QVERIFY(QFile::exists(path));
        m_logger->save();
        QCOMPARE(m_logger->logPath(), path);
        QCOMPARE(LogDirectory::logFiles(m_directory->base()), QStringList{path});
    }

    void putsAnEmptyFileInThePlaceOfOneWithTheSameName()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        QString first, second;
        do {
            first = m_logger->makeLogFilePath();
            QVERIFY(writeFile(first, "older"));
            second = m_logger->makeLogFilePath();
        } while (first != second); // a second has passed in between
        QCOMPARE(fileBytes(second), QByteArray());
    }

    void findsTheNewestEntry()
    {
        const QString directory = m_directory->path(QStringLiteral("entries"));
        QVERIFY(QDir().mkpath(directory));
        QCOMPARE(KXLogger::previousFileWithDir(directory), QString());
        const auto newestWith = [&](const char *name) {
            writeFile(directory + u'/' + QString::fromUtf8(name), {});
            return KXLogger::previousFileWithDir(directory).sliced(directory.size());
        };
        QVERIFY(writeFile(directory + u"/.zzz", {}));
        QVERIFY(KXLogger::previousFileWithDir(directory).isNull());
        QCOMPARE(newestWith("2024-03-09"), QStringLiteral("/2024-03-09"));
        QCOMPARE(newestWith("2024-03-10"), QStringLiteral("/2024-03-10"));
        QCOMPARE(newestWith("999-12-31"), QStringLiteral("/2024-03-10"));
        QCOMPARE(newestWith(".9999-01-01"), QStringLiteral("/2024-03-10"));
        QVERIFY(QDir().mkpath(directory + u"/2024-11-02"));
        QCOMPARE(KXLogger::previousFileWithDir(directory + u'/'), QString(directory + u"/2024-11-02"));
        QCOMPARE(KXLogger::previousFileWithDir(QString()), QString());
        QCOMPARE(KXLogger::previousFileWithDir(QStringLiteral("")), QString());
        QCOMPARE(KXLogger::previousFileWithDir(directory + u"/missing"), QString());
        QCOMPARE(KXLogger::previousFileWithDir(directory + u"/2024-03-09"), QString());
    }

    void remembersTheNewestFileOfAnEarlierRun()
    {
        const QString base = m_directory->base();
        for (const char *name : {"2024-03-09/23-59-59.log", "2024-03-10/09-15-02.log", "2024-03-10/10-00-00.log"}) {
            const QString path = base + u'/' + QString::fromLatin1(name);
            QVERIFY(QDir().mkpath(QFileInfo(path).path()));
            QVERIFY(writeFile(path, {}));
        }
        m_logger->setExpireInterval(1e12);
        m_logger->setLogBaseDirectory(base);
        m_logger->save();
        QCOMPARE(m_logger->previousLogPath(), QString(base + u"/2024-03-10/10-00-00.log"));
        QVERIFY(m_logger->logPath() != m_logger->previousLogPath());
    }

    void hasNoEarlierFileAtFirst()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        QVERIFY(m_logger->previousLogPath().isNull());
        // Deliberate: that there was none is not kept.
        m_logger->save();
        QCOMPARE(m_logger->previousLogPath(), m_logger->logPath());
    }

    // --- switching

    void losesNothingThatWasLoggedBeforeTheDirectoryIsKnown()
    {
        const QStringList lines = numbered(QStringLiteral("early "), 0, 10);
        for (const QString &line : lines)
            m_logger->writeLog(0, line);
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->save();
        QCOMPARE(fileLines(m_logger->logPath()), lines + QStringList{QStringLiteral("force eof")});
    }

    void writesToTheNewDirectoryAfterASwitch()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->writeLog(0, QStringLiteral("one"));
        m_logger->save();
        const QString first = m_logger->logPath();
        m_logger->writeLog(0, QStringLiteral("two"));
        const QString other = m_directory->path(QStringLiteral("other"));
        m_logger->setLogBaseDirectory(other);
        QCOMPARE(m_logger->logBasePath(), other);
        QVERIFY(!QFile::exists(other));
        m_logger->save();
        QVERIFY(m_logger->logPath().startsWith(other));
        QCOMPARE(fileBytes(first), QByteArray("one\nforce eof\n"));
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("two\nforce eof\n"));
    }

    // A pipe that nobody empties holds the writer up in the middle of a batch.
    void endsARunningBatchInItsOwnFile()
    {
        const QString pipe = m_directory->path(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->setLogPath(pipe);
        const int reader = ::open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(reader >= 0);
        QByteArray expected;
        for (int i = 0; i < 50; ++i) {
            const QString line = QString::number(i) + QString(8000, u'x');
            expected += line.toUtf8() + '\n';
            m_logger->writeLog(0, line);
        }
        const auto waiting = [&] {
            int count = 0;
            ::ioctl(reader, FIONREAD, &count);
            return count;
        };
        QTRY_VERIFY(waiting() > 0); // the batch has begun
        for (const QString &line : numbered(QStringLiteral("behind "), 0, 120))
            m_logger->writeLog(0, line);
        QCOMPARE(m_logger->memoryLogs(), QStringList());
        const QString other = m_directory->path(QStringLiteral("other"));
        m_logger->setLogBaseDirectory(other); // would hang if it waited for the batch
        m_logger->writeLog(0, QStringLiteral("after"));
        QByteArray found;
        const auto drain = [&] {
            QByteArray chunk(1 << 16, Qt::Uninitialized);
            const ssize_t size = ::read(reader, chunk.data(), size_t(chunk.size()));
            if (size > 0)
                found += chunk.first(size);
            return found.size();
        };
        QTRY_COMPARE(drain(), expected.size());
        QVERIFY(found == expected);
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("after\nforce eof\n")); // the lines behind are lost
        QVERIFY(m_logger->logPath().startsWith(other));
        char byte = 0;
        QCOMPARE(::read(reader, &byte, 1), ssize_t(0)); // end of the pipe: the old file is closed
        ::close(reader);
    }

    void switchesWhileOthersLog()
    {
        constexpr int lineCount = 3000;
        std::atomic<int> running = 2;
        std::vector<std::jthread> threads;
        for (int t = 0; t < 2; ++t)
            threads.emplace_back([this, t, &running] {
                for (int i = 0; i < lineCount; ++i)
                    m_logger->writeLogFormat(0, nullptr, "%d %d", t, i);
                --running;
            });
        int turn = 0;
        do {
            m_logger->setLogBaseDirectory(m_directory->path(QString::number(turn++ % 40)));
            (void)m_logger->memoryLogs();
            (void)m_logger->logPath();
        } while (running > 0);
        threads.clear();
        m_logger->save();
        // Lines may be lost, but none is torn or doubled.
        QSet<QString> seen;
        const QRegularExpression form(QStringLiteral("^\\[[^]]{14}\\] [01] \\d+$"));
        for (int i = 0; i < 40; ++i) {
            for (const QString &file : LogDirectory::logFiles(m_directory->path(QString::number(i)))) {
                for (const QString &line : fileLines(file)) {
                    if (line == u"force eof")
                        continue;
                    QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
                    QVERIFY2(!seen.contains(line.sliced(17)), qPrintable(line));
                    seen.insert(line.sliced(17));
                }
            }
        }
    }

    // --- removing

    void deletesExpiredEntriesInTheBackground()
    {
        const QString base = m_directory->base();
        const QString kept = m_directory->path(QStringLiteral("kept"));
        QVERIFY(QDir().mkpath(kept));
        QVERIFY(writeFile(kept + u"/file", "precious"));
        for (const char *name : {"old", ".hidden-old", "young", "old-with-young-file"})
            QVERIFY(QDir().mkpath(base + u'/' + QString::fromLatin1(name) + u"/deep"));
        QVERIFY(writeFile(base + u"/old/deep/a.log", "a"));
        QVERIFY(QFile::link(kept, base + u"/old/link-out"));
        QVERIFY(writeFile(base + u"/old-file", "b"));
        QVERIFY(QFile::link(kept, base + u"/old-link"));
        QVERIFY(QFile::link(kept, base + u"/young-link"));
        QVERIFY(makeOld(kept, 100 * day));
        for (const char *name : {"old", ".hidden-old", "old-with-young-file", "old-file", "old-link"})
            QVERIFY(makeOld(base + u'/' + QString::fromLatin1(name), 14 * day + 60));
        QVERIFY(makeOld(base + u"/young", 14 * day - 60));
        m_logger->setLogBaseDirectory(base);
        const auto names = [&] {
            return QDir(base).entryList(
                QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        };
        QTRY_COMPARE(names(), (QStringList{QStringLiteral("young"), QStringLiteral("young-link")}));
        QCOMPARE(fileBytes(kept + u"/file"), QByteArray("precious"));
    }

    void takesTheIntervalOfTheMoment()
    {
        const QString base = m_directory->base();
        QVERIFY(QDir().mkpath(base + u"/entry"));
        QVERIFY(makeOld(base + u"/entry", 100));
        m_logger->setLogBaseDirectory(base);
        m_logger->setExpireInterval(50);
        QVERIFY(QFile::exists(base + u"/entry"));
        m_logger->cleanOldLogIfNeed();
        m_logger->setExpireInterval(1e9);
        QTRY_VERIFY(!QFile::exists(base + u"/entry"));
    }

    void deletesAllLogs()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->save();
        const QString path = m_logger->logPath();
        m_logger->writeLog(0, QStringLiteral("in memory"));
        m_logger->cleanLogFiles();
        QTRY_VERIFY(!QFile::exists(m_directory->base()));
        m_logger->save();
        QVERIFY(!QFile::exists(m_directory->base())); // dropped
        QCOMPARE(m_logger->logPath(), path);
        QVERIFY(!m_logger->logFile());
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->writeLog(0, QStringLiteral("again"));
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("again\nforce eof\n"));
    }

    void dropsTheLinesThatWaitWhenDeletingAllLogs()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->writeLog(0, QStringLiteral("in memory"));
        std::binary_semaphore goOn(0);
        m_logger->logQueue()->addOperation([&goOn] { goOn.acquire(); });
        m_logger->writeLog(0, QStringLiteral("waiting"));
        m_logger->cleanLogFiles();
        goOn.release();
        m_logger->logQueue()->waitUntilAllOperationsAreFinished();
        QCOMPARE(m_logger->memoryLogs(), QStringList{QStringLiteral("in memory\n")});
    }

    void neverFollowsALinkWhenDeletingAllLogs()
    {
        const QString kept = m_directory->path(QStringLiteral("kept"));
        QVERIFY(QDir().mkpath(kept));
        QVERIFY(writeFile(kept + u"/file", "precious"));
        QVERIFY(QDir().mkpath(m_directory->base()));
        QVERIFY(QFile::link(kept, m_directory->base() + u"/link"));
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->cleanLogFiles();
        QTRY_VERIFY(!QFile::exists(m_directory->base()));
        QCOMPARE(fileBytes(kept + u"/file"), QByteArray("precious"));
        QVERIFY(QFile::link(kept, m_directory->base()));
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->cleanLogFiles();
        QTRY_VERIFY(!QFileInfo(m_directory->base()).isSymLink());
        QCOMPARE(fileBytes(kept + u"/file"), QByteArray("precious"));
        QVERIFY(QFile::link(kept, m_directory->base()));
        m_logger->setLogBaseDirectory(QString(m_directory->base() + u'/'));
        m_logger->cleanLogFiles();
        QTRY_VERIFY(!QFileInfo(m_directory->base()).isSymLink());
        QCOMPARE(fileBytes(kept + u"/file"), QByteArray("precious"));
    }

    // --- failures

    void losesLinesItCannotWrite_data()
    {
        QTest::addColumn<QString>("base");
        QTest::newRow("under a file") << m_shared.path(QStringLiteral("file")) + u"/below";
        QTest::newRow("in a folder that takes no entries") << QStringLiteral("/proc/self/fd");
        QTest::newRow("name too long") << m_shared.path(QString(300, u'n'));
        QTest::newRow("empty") << QStringLiteral("");
        QVERIFY(writeFile(m_shared.path(QStringLiteral("file")), "x"));
    }

    void losesLinesItCannotWrite()
    {
        QFETCH(QString, base);
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(QStringLiteral("/proc"))); // an empty base is relative
        m_logger->setLogBaseDirectory(base);
        for (const QString &line : numbered(QStringLiteral("lost "), 0, 120))
            m_logger->writeLog(0, line);
        m_logger->save();
        QVERIFY(!m_logger->logFile());
        QCOMPARE(m_logger->memoryLogs(), QStringList());
        QVERIFY(m_logger->previousLogPath().isNull());
        QVERIFY(QDir::setCurrent(before));
        writesAgain();
    }

    void losesLinesOnAFullDisk()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->setLogPath(QStringLiteral("/dev/full"));
        for (const QString &line : numbered(QStringLiteral("lost "), 0, 120))
            m_logger->writeLog(0, line);
        m_logger->save();
        QCOMPARE(m_logger->memoryLogs(), QStringList());
        writesAgain();
    }

    void survivesTheRemovalOfItsFolder()
    {
        m_logger->setLogBaseDirectory(m_directory->base());
        m_logger->save();
        QVERIFY(QDir(m_directory->base()).removeRecursively());
        m_logger->writeLog(0, QStringLiteral("into the open file, which has no name any more"));
        m_logger->save();
        m_logger->setLogFile(nullptr);
        m_logger->writeLog(0, QStringLiteral("lost"));
        m_logger->save();
        QVERIFY(!QFile::exists(m_directory->base())); // neither folder nor file comes back by itself
        writesAgain();
    }

private:
    void writesAgain()
    {
        const QString base = m_directory->path(QStringLiteral("good"));
        m_logger->setLogBaseDirectory(base);
        m_logger->writeLog(0, QStringLiteral("again"));
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("again\nforce eof\n"));
    }

    LogDirectory m_shared; // of all rows
    std::unique_ptr<LogDirectory> m_directory;
    std::unique_ptr<KXLogger> m_logger;
};

QTEST_GUILESS_MAIN(KXLoggerFilesTest)
#include "KXLoggerFilesTest.moc"
