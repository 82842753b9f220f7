// SPDX-License-Identifier: MIT
#include "LogDirectory.h"

#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/Core/SerialQueue.h>

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <filesystem>

#include <ctime>
#include <semaphore>
#include <thread>

using namespace kx::test;

namespace {

int describedCount = 0;
struct Counted { };
QString describe(const Counted &)
{
    ++describedCount;
    return QStringLiteral("counted");
}

// Holds a queue up until it is told, or until it goes.
class Blocker {
public:
    explicit Blocker(const std::shared_ptr<kx::SerialQueue> &queue)
    {
        queue->addOperation([shared = m_shared] { shared->acquire(); });
    }
    ~Blocker() { release(); }
    Q_DISABLE_COPY_MOVE(Blocker)
    void release()
    {
        if (!std::exchange(m_released, true))
            m_shared->release();
    }

private:
    std::shared_ptr<std::binary_semaphore> m_shared = std::make_shared<std::binary_semaphore>(0);
    bool m_released = false;
};

} // namespace

class KXLoggerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<LogDirectory>();
        m_logger = std::make_unique<KXLogger>();
        m_logger->setLogBaseDirectory(m_directory->base());
    }

    void cleanup() { m_logger.reset(); }

    // --- settings

    void startsWithTheDefaults()
    {
        const KXLogger logger;
        QCOMPARE(logger.maxFileSize(), 10);
        QCOMPARE(logger.expireInterval(), 1209600.0);
        QCOMPARE(logger.logType(), 0);
        QCOMPARE(logger.logBasePath(), QString(QDir::tempPath() + u"/Log"));
        QCOMPARE(logger.memoryLogs(), QStringList());
    }

    void sharesOneLogger()
    {
        std::vector<KXLogger *> found(8);
        {
            std::vector<std::jthread> threads;
            for (KXLogger *&each : found)
                threads.emplace_back([&each] { each = &KXLogger::sharedLogger(); });
        }
        for (const KXLogger *each : found) {
            QVERIFY(each);
            QCOMPARE(each, found.front());
        }
    }

    // --- what is recorded

    void recordsTypesFromTheMinimumOn_data()
    {
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("recorded");
        QTest::newRow("everything: zero") << 0 << 0 << true;
        QTest::newRow("everything: two") << 0 << 2 << true;
        QTest::newRow("everything: negative") << 0 << -7 << true;
        QTest::newRow("below") << 3 << 2 << false;
        QTest::newRow("equal") << 3 << 3 << true;
        QTest::newRow("above") << 3 << 4 << true;
        QTest::newRow("a negative type counts as large") << 3 << -1 << true;
        QTest::newRow("a negative minimum silences zero") << -1 << 0 << false;
        QTest::newRow("a negative minimum silences the largest") << -1 << INT_MAX << false;
        QTest::newRow("smallest minimum, largest type") << INT_MIN << INT_MAX << false;
        QTest::newRow("smallest minimum, same type") << INT_MIN << INT_MIN << true;
    }

    void recordsTypesFromTheMinimumOn()
    {
        QFETCH(int, minimum);
        QFETCH(int, type);
        QFETCH(bool, recorded);
        m_logger->setFileLogMinType(minimum);
        QCOMPARE(m_logger->logType(), minimum);
        m_logger->writeLog(type, QStringLiteral("a"));
        m_logger->writeLog(type, "tag", QStringLiteral("b"));
        m_logger->writeLogFormat(type, "tag", "c %d", 1);
        m_logger->writeLogFormat(type, "tag", u"d %d", 1);
        QCOMPARE(m_logger->memoryLogs().size(), recorded ? 4 : 0);
    }

    void leavesTheArgumentsOfAnUnrecordedLineAlone()
    {
        describedCount = 0;
        m_logger->setLogType(2);
        m_logger->writeLogFormat(1, nullptr, "%@", Counted());
        QCOMPARE(describedCount, 0);
        m_logger->writeLogFormat(2, nullptr, "%@", Counted());
        QCOMPARE(describedCount, 1);
    }

    // --- the form of a line

    void putsStampAndTagInFront_data()
    {
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<QString>("tagText");
        QTest::newRow("none") << QByteArray() << QString();
        QTest::newRow("empty") << QByteArray("") << QString();
        QTest::newRow("some") << QByteArray("wk") << QStringLiteral("[wk] ");
        QTest::newRow("beyond ASCII") << QByteArray("größe") << QStringLiteral("[größe] ");
        QTest::newRow("looks like a format") << QByteArray("%d%@") << QStringLiteral("[%d%@] ");
    }

    void putsStampAndTagInFront()
    {
        QFETCH(QByteArray, tag);
        QFETCH(QString, tagText);
        const char *tagBytes = tag.isNull() ? nullptr : tag.constData();
        const QDateTime before = QDateTime::fromSecsSinceEpoch(std::time(nullptr)); // the last clock tick
        m_logger->writeLog(0, tagBytes, QStringLiteral("100% %d %@"));
        m_logger->writeLogFormat(0, tagBytes, "%d of %s: %@", 3, "list", QStringLiteral("Ünïcode 🎬"));
        m_logger->writeLogFormat(0, tagBytes, u"%05.1f", 2.25);
        m_logger->writeLog(0, tagBytes, QString());
        const QDateTime after = QDateTime::currentDateTime();
        const QStringList lines = m_logger->memoryLogs();
        const QStringList messages{QStringLiteral("100% %d %@"), QStringLiteral("3 of list: Ünïcode 🎬"),
            QStringLiteral("002.2"), QStringLiteral("(null)")};
        QCOMPARE(lines.size(), messages.size());
        for (qsizetype i = 0; i < lines.size(); ++i) {
            QCOMPARE(lines[i].front(), u'[');
            QCOMPARE(lines[i].sliced(15), QString(u"] " + tagText + messages[i] + u'\n'));
            const QString stamp = lines[i].sliced(1, 14);
            const QString pattern = QStringLiteral("MM-dd HH:mm:ss");
            bool found = false;
            for (QDateTime moment = before; moment <= after.addSecs(1) && !found; moment = moment.addSecs(1))
                found = stamp == std::min(moment, after).toString(pattern);
            QVERIFY2(found, qPrintable(stamp));
        }
    }

    void followsTheTimeZone()
    {
        const QByteArray before = qgetenv("TZ");
        const auto hour = [this](const char *zone) {
            qputenv("TZ", zone);
            ::tzset();
            m_logger->setMemoryLogs({});
            const QDateTime utc = QDateTime::fromSecsSinceEpoch(std::time(nullptr), Qt::UTC);
            m_logger->writeLog(0, nullptr, QStringLiteral("x"));
            // A new hour between the two looks is no failure of the zone.
            const int since = utc.secsTo(QDateTime::currentDateTimeUtc()) > 0 ? -1 : utc.time().hour();
            return std::pair(since, m_logger->memoryLogs().value(0).sliced(7, 2).toInt());
        };
        for (const auto &[zone, offset] :
            {std::pair("UTC0", 0), {"AAA-9", 9}, {"BBB-5", 5}, {"CCC3", -3}, {"UTC0", 0}}) {
            std::pair<int, int> hours(-1, -1);
            while (hours.first < 0)
                hours = hour(zone);
            QCOMPARE(hours.second, (hours.first + offset + 24) % 24);
        }
        before.isNull() ? qunsetenv("TZ") : qputenv("TZ", before);
        ::tzset();
    }

    void endsEachLineWithOneLineFeed_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("stored");
        QTest::newRow("none") << QStringLiteral("a") << QStringList{QStringLiteral("a\n")};
        QTest::newRow("one") << QStringLiteral("a\n") << QStringList{QStringLiteral("a\n")};
        QTest::newRow("two") << QStringLiteral("a\n\n") << QStringList{QStringLiteral("a\n\n")};
        QTest::newRow("only one") << QStringLiteral("\n") << QStringList{QStringLiteral("\n")};
        QTest::newRow("carriage return") << QStringLiteral("a\r") << QStringList{QStringLiteral("a\r\n")};
        QTest::newRow("empty") << QStringLiteral("") << QStringList();
        QTest::newRow("absent") << QString() << QStringList();
    }

    void endsEachLineWithOneLineFeed()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, stored);
        m_logger->writeLog(0, line);
        QCOMPARE(m_logger->memoryLogs(), stored);
    }

    void writesUtf8()
    {
        m_logger->writeLog(0, QStringLiteral("Ünïcode 🎬 \0 null"));
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("Ünïcode 🎬 \0 null\nforce eof\n", 32));
    }

    void survivesALoneSurrogate()
    {
        m_logger->writeLog(0, QString(QChar(0xD83C)));
        m_logger->save();
        const QByteArray bytes = fileBytes(m_logger->logPath());
        QVERIFY(QString::fromUtf8(bytes).endsWith(QStringLiteral("\nforce eof\n")));
        QVERIFY(bytes.size() > 11);
    }

    // --- batches

    void leavesFortyNineLinesInMemory()
    {
        for (const QString &line : numbered(QStringLiteral("line "), 0, 49))
            m_logger->writeLog(0, line);
        m_logger->logQueue()->waitUntilAllOperationsAreFinished();
        QCOMPARE(m_logger->memoryLogs().size(), 49);
        QVERIFY(!QFile::exists(m_directory->base()));
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray());
    }

    void writesAllFiftyLinesWithTheFiftieth()
    {
        const QStringList lines = numbered(QStringLiteral("line "), 0, 50);
        for (const QString &line : lines)
            m_logger->writeLog(0, line);
        m_logger->logQueue()->waitUntilAllOperationsAreFinished();
        QCOMPARE(m_logger->memoryLogs(), QStringList());
        QCOMPARE(fileLines(m_logger->logPath()), lines);
    }

    void writesWholeBatchesOnly()
    {
        for (const QString &line : numbered(QStringLiteral("line "), 0, 1234))
            m_logger->writeLog(0, line);
        m_logger->logQueue()->waitUntilAllOperationsAreFinished();
        QCOMPARE(fileLines(m_logger->logPath()), numbered(QStringLiteral("line "), 0, 1200));
        QCOMPARE(m_logger->memoryLogs().size(), 34);
    }

    void savesWithAMarker()
    {
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("force eof\n"));
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("force eof\nforce eof\n"));
    }

    void savesEverythingQueuedBefore()
    {
        QStringList lines = numbered(QStringLiteral("line "), 0, 777);
        for (const QString &line : lines)
            m_logger->writeLog(0, line);
        m_logger->save();
        lines.append(QStringLiteral("force eof"));
        QCOMPARE(fileLines(m_logger->logPath()), lines);
        QCOMPARE(m_logger->memoryLogs(), QStringList());
    }

    void savesWhateverTheMinimumType()
    {
        m_logger->setLogType(-1);
        m_logger->save();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("force eof\n"));
    }

    void takesLinesAsTheyAreIntoTheQueue()
    {
        m_logger->setLogType(-1);
        m_logger->addLogToMemoryQueue(QStringLiteral("a"), false);
        m_logger->addLogToMemoryQueue(QStringLiteral("b\n"), true);
        m_logger->logQueue()->waitUntilAllOperationsAreFinished();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("ab\n"));
    }

    void returnsFromASaveInsideTheQueue()
    {
        m_logger->logQueue()->addOperation([this] { m_logger->save(); });
        m_logger->save();
        m_logger->logQueue()->waitUntilAllOperationsAreFinished(); // the inner marker may be the later one
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("force eof\nforce eof\n"));
    }

    void neverWaitsForTheQueue()
    {
        Blocker blocker(m_logger->logQueue());
        const QStringList lines = numbered(QStringLiteral("line "), 0, 1000);
        for (const QString &line : lines)
            m_logger->writeLog(0, line); // would hang if it did
        QCOMPARE(m_logger->memoryLogs(), QStringList());
        blocker.release();
        m_logger->logQueue()->waitUntilAllOperationsAreFinished();
        QCOMPARE(fileLines(m_logger->logPath()), lines);
    }

    void keepsTheOrderOfEachThread()
    {
        constexpr int threadCount = 4, linesPerThread = 2000;
        {
            std::vector<std::jthread> threads;
            for (int t = 0; t < threadCount; ++t)
                threads.emplace_back([this, t] {
                    for (int i = 0; i < linesPerThread; ++i)
                        m_logger->writeLogFormat(0, nullptr, "%d %d", t, i);
                });
        }
        m_logger->save();
        QList<int> next(threadCount, 0);
        for (const QString &line : fileLines(m_logger->logPath())) {
            if (line == u"force eof")
                continue;
            const QStringList words = line.split(u' ');
            QCOMPARE(words.value(3).toInt(), next[words.value(2).toInt()]++);
        }
        QCOMPARE(next, QList<int>(threadCount, linesPerThread));
    }

    // --- the size limit

    void startsOverAtTheSizeLimit_data()
    {
        QTest::addColumn<int>("mebibytes");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("startsOver");
        QTest::newRow("1 MiB, one byte less") << 1 << (1 << 20) - 1 << false;
        QTest::newRow("1 MiB, reached") << 1 << (1 << 20) << true;
        QTest::newRow("1 MiB, passed") << 1 << (1 << 20) + 1 << true;
        QTest::newRow("10 MiB, one byte less") << 10 << 10485759 << false;
        QTest::newRow("10 MiB, reached") << 10 << 10485760 << true;
        QTest::newRow("nothing") << 0 << 100 << true;
        QTest::newRow("negative") << -1 << 3000000 << false;
        QTest::newRow("negative: last negative limit") << -2048 << 3000000 << false;
        QTest::newRow("negative: 1 MiB") << -4095 << (1 << 20) << true;
        QTest::newRow("negative: none left") << -4096 << 100 << true;
        QTest::newRow("32 bits: negative limit") << 2048 << 3000000 << false;
        QTest::newRow("32 bits: last negative limit") << 4095 << 3000000 << false;
        QTest::newRow("32 bits: none left") << 4096 << 100 << true;
        QTest::newRow("32 bits: 1 MiB again") << 4097 << (1 << 20) << true;
    }

    void startsOverAtTheSizeLimit()
    {
        QFETCH(int, mebibytes);
        QFETCH(int, size);
        QFETCH(bool, startsOver);
        m_logger->setMaxFileSize(mebibytes);
        const QByteArray mark = "force eof\n";
        m_logger->writeLog(0, QString(size - mark.size() - 1, u'x'));
        m_logger->save();
        const QString path = m_logger->logPath();
        const QByteArray first = fileBytes(path);
        QCOMPARE(first.size(), size);
        m_logger->writeLog(0, QStringLiteral("second"));
        m_logger->save();
        QCOMPARE(m_logger->logPath(), path);
        const QByteArray added = "second\n" + mark;
        const QByteArray second = fileBytes(path);
        if (startsOver) {
            QCOMPARE(second.size(), first.size()); // older bytes behind stay in place
            QVERIFY(second.startsWith(added));
            QVERIFY(second.sliced(added.size()) == first.sliced(added.size()));
        } else {
            QVERIFY(second == first + added);
        }
    }

    // --- state that hosts may set

    void takesItsStateFromOutside()
    {
        m_logger->setMemoryLogs({QStringLiteral("a\n"), QStringLiteral("b\n")});
        QCOMPARE(m_logger->memoryLogs(), (QStringList{QStringLiteral("a\n"), QStringLiteral("b\n")}));
        const QString path = m_directory->path(QStringLiteral("own.txt"));
        QVERIFY(writeFile(path, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
        m_logger->setLogPath(path);
        QCOMPARE(m_logger->logPath(), path);
        m_logger->save();
        QCOMPARE(
            fileBytes(path), QByteArray("a\nb\nforce eof\nEFGHIJKLMNOPQRSTUVWXYZ")); // at its beginning, nothing cut
        const auto file = m_logger->logFile();
        QVERIFY(file);
        QCOMPARE(m_logger->logFile(), file);
        m_logger->setLogFile(nullptr);
        QVERIFY(m_logger->logFile() != file);
        m_logger->setPreviousLogPath(QStringLiteral("/p"));
        QCOMPARE(m_logger->previousLogPath(), QStringLiteral("/p"));
        m_logger->setLogBasePath(QStringLiteral("/b"));
        QCOMPARE(m_logger->logBasePath(), QStringLiteral("/b"));
        QCOMPARE(m_logger->logPath(), path);
    }

    void sharesAQueueWithOthers()
    {
        const auto queue = std::make_shared<kx::SerialQueue>();
        KXLogger other;
        other.setLogBaseDirectory(m_directory->path(QStringLiteral("other")));
        other.setLogQueue(queue);
        m_logger->setLogQueue(queue);
        QCOMPARE(m_logger->logQueue(), queue);
        m_logger->addLogToMemoryQueue(QStringLiteral("mine\n"), true);
        other.addLogToMemoryQueue(QStringLiteral("theirs\n"), true);
        queue->waitUntilAllOperationsAreFinished();
        QCOMPARE(fileBytes(m_logger->logPath()), QByteArray("mine\n"));
        QCOMPARE(fileBytes(other.logPath()), QByteArray("theirs\n"));
        m_logger->setLogQueue(nullptr);
        QVERIFY(m_logger->logQueue() && m_logger->logQueue() != queue);
    }

    void doesNothingInTheQueueOnceItIsGone()
    {
        const auto queue = std::make_shared<kx::SerialQueue>();
        m_logger->setLogQueue(queue);
        auto blocker = std::make_unique<Blocker>(queue);
        for (const QString &line : numbered(QStringLiteral("line "), 0, 200))
            m_logger->writeLog(0, line);
        std::jthread releasing([&] {
            // Only after the destructor has begun to wait, or just before: either way nothing may be written.
            blocker.reset();
        });
        m_logger.reset();
        queue->waitUntilAllOperationsAreFinished();
        for (const QString &file : LogDirectory::logFiles(m_directory->base()))
            QCOMPARE(fileLines(file).size() % 50, 0); // a batch is whole or not there
    }

    // --- volume

    void tellsTheSpaceOfTheVolume()
    {
        const QRegularExpression form(QStringLiteral("^\\d+\\.\\d\\dG/\\d+\\.\\d\\dG$"));
        QVERIFY(form.match(KXLogger::volumeAvailableCapacity()).hasMatch());
        const QString text = KXLogger::volumeAvailableCapacity(QDir::tempPath());
        QVERIFY2(form.match(text).hasMatch(), qPrintable(text));
        const QStringList parts = QString(text).remove(u'G').split(u'/');
        QVERIFY(parts[0].toDouble() <= parts[1].toDouble());
        QVERIFY(parts[1].toDouble() > 0);
        const auto total = double(std::filesystem::space(QDir::tempPath().toStdString()).capacity);
        QCOMPARE(parts[1], QString::number(double(float(total / (1 << 30))), 'f', 2));
        QCOMPARE(KXLogger::volumeAvailableCapacity(QStringLiteral("/proc")), QStringLiteral("0.00G/0.00G"));
    }

    void saysSoWhenTheSpaceIsUnknown()
    {
        QCOMPARE(
            KXLogger::volumeAvailableCapacity(m_directory->path(QStringLiteral("missing"))), QStringLiteral("--/--"));
        QCOMPARE(KXLogger::volumeAvailableCapacity(QString()), QStringLiteral("--/--"));
    }

private:
    std::unique_ptr<LogDirectory> m_directory;
    std::unique_ptr<KXLogger> m_logger;
};

QTEST_GUILESS_MAIN(KXLoggerTest)
#include "KXLoggerTest.moc"
