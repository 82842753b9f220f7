// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <random>

using namespace std::chrono_literals;

namespace {

const QString ofNothing = QStringLiteral("d41d8cd98f00b204e9800998ecf8427e");

} // namespace

class KXUtilFileDigestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<QTemporaryDir>();
    }

    void digestsAFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("digest");
        QTest::newRow("empty") << QByteArray() << ofNothing;
        QTest::newRow("abc") << QByteArray("abc") << QStringLiteral("900150983cd24fb0d6963f7d28e17f72");
        QTest::newRow("a NUL is data") << QByteArray("\0", 1) << QStringLiteral("93b885adfe0da089cdf634904fd59f71");
        QTest::newRow("line ends stay") << QByteArray("a\r\nb\x1A\n")
                                        << QStringLiteral("26dbde690f25a875fc907ac06e23e4b4");
    }
    void digestsAFile()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, digest);
        put(content);
        QCOMPARE(KXUtil::getFileMD5StrFromPath(path()), digest);
    }

    void restsAfterEach2048Reads_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("rests");
        constexpr int twoMebibytes = 2048 * 1024;
        QTest::newRow("nothing") << 0 << 0;
        QTest::newRow("less than one read") << 1023 << 0;
        QTest::newRow("one read and a byte") << 1025 << 0;
        QTest::newRow("2047 reads, and one that finds the end") << twoMebibytes - 1024 << 0;
        QTest::newRow("2048 reads, the last one short") << twoMebibytes - 1023 << 1;
        QTest::newRow("2048 reads") << twoMebibytes << 1;
        QTest::newRow("one more") << twoMebibytes + 1 << 1;
        QTest::newRow("4095 reads") << 2 * twoMebibytes - 1024 << 1;
        QTest::newRow("4096 reads") << 2 * twoMebibytes << 2;
    }
    void restsAfterEach2048Reads()
    {
        QFETCH(const int, size);
        QFETCH(const int, rests);
        const QByteArray content = randomData(size);
        put(content);
        int counted = 0;
        const QString digest = KXUtil::getFileMD5StrFromPath(path(), [&](std::chrono::milliseconds time) {
            ++counted;
            QCOMPARE(time, 100ms);
        });
        QCOMPARE(counted, rests);
        QCOMPARE(digest, digestOf(content));
        QCOMPARE(KXUtil::getFileMD5StrFromPath(path(), {}), digestOf(content));
    }

    // A sleep is never shorter than asked for, so the clock may decide here.
    void sleepsByItself()
    {
        put(randomData(2048 * 1024));
        const auto start = std::chrono::steady_clock::now();
        QVERIFY(!KXUtil::getFileMD5StrFromPath(path()).isNull());
        QVERIFY(std::chrono::steady_clock::now() - start >= 100ms);
    }

    void hasNoneForWhatCannotBeOpened()
    {
        QVERIFY(KXUtil::getFileMD5StrFromPath(path()).isNull());
        QVERIFY(KXUtil::getFileMD5StrFromPath(m_directory->path()).isNull());
        QVERIFY(KXUtil::getFileMD5StrFromPath(QString()).isNull());
        QVERIFY(!QFile::exists(path()));
        put("abc");
        QVERIFY(KXUtil::getFileMD5StrFromPath(QString(path() + QChar(0) + u"x")).isNull());
        QVERIFY(KXUtil::getFileMD5StrFromPath(QString(path() + u'/')).isNull());
    }

    void hasNoneForAFileThatMayNotBeRead()
    {
        put("abc");
        QVERIFY(QFile::setPermissions(path(), QFile::Permissions()));
        const bool isRoot = ::geteuid() == 0; // who may read everything
        QVERIFY(!isRoot
            || (::chmod(QFile::encodeName(m_directory->path()).constData(), 0755) == 0 && ::seteuid(65534) == 0));
        const QString digest = KXUtil::getFileMD5StrFromPath(path());
        QVERIFY(!isRoot || ::seteuid(0) == 0);
        QVERIFY(digest.isNull());
    }

    void digestsWhatIsAddedMeanwhile()
    {
        const QByteArray content = randomData(2048 * 1024);
        put(content);
        const QByteArray addition("and more");
        const QString digest = KXUtil::getFileMD5StrFromPath(path(), [&](std::chrono::milliseconds) {
            QFile file(path());
            QVERIFY(file.open(QIODevice::Append) && file.write(addition) == addition.size());
        });
        QCOMPARE(digest, digestOf(content + addition));
    }

    void endsWhereTheFileIsCutMeanwhile()
    {
        const QByteArray content = randomData(2 * 2048 * 1024);
        put(content);
        const QString digest = KXUtil::getFileMD5StrFromPath(
            path(), [&](std::chrono::milliseconds) { QVERIFY(QFile::resize(path(), 2048 * 1024)); });
        QCOMPARE(digest, digestOf(content.first(2048 * 1024)));
    }

    // More than a 32-bit number counts; nearly all of it is a hole.
    void digestsAHugeFileInLittleMemory()
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.seek(2147483653) && file.write("end") == 3);
        file.close();
        const long before = peakMemoryInKilobytes();
        int rests = 0;
        const QString digest = KXUtil::getFileMD5StrFromPath(path(), [&](std::chrono::milliseconds) { ++rests; });
        QCOMPARE(digest, QStringLiteral("f9fcb3c28cfcfa1786dc149a5a21cd6a")); // by md5sum
        QCOMPARE(rests, 1024);
        QVERIFY(peakMemoryInKilobytes() - before < 16 * 1024);
    }

    // The first page of a process is never there.
    void endsAtAReadError() { QCOMPARE(KXUtil::getFileMD5StrFromPath(QStringLiteral("/proc/self/mem")), ofNothing); }

private:
    static QString digestOf(const QByteArray &data)
    {
        return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Md5).toHex());
    }

    static long peakMemoryInKilobytes()
    {
        rusage usage{};
        return ::getrusage(RUSAGE_SELF, &usage) == 0 ? usage.ru_maxrss : -1;
    }

    static QByteArray randomData(int size)
    {
        std::mt19937 random(5);
        QByteArray data(size, Qt::Uninitialized);
        for (char &byte : data)
            byte = static_cast<char>(random());
        return data;
    }

    [[nodiscard]] QString path() const { return m_directory->filePath(QStringLiteral("file")); }
    void put(const QByteArray &bytes) const
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(KXUtilFileDigestTest)
#include "KXUtilFileDigestTest.moc"
