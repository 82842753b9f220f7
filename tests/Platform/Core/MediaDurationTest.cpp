// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/MediaDuration.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace std::chrono_literals;

// How long may it take? What durations there are is told in KXUtilVideoDurationTest.
class MediaDurationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // A file of a download that has just begun: its room is taken already, and holds zeros.
    void givesUpWhenTheTimeIsOver()
    {
        const QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("begun.flv")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(QByteArray("FLV\1\5\0\0\0\x09\0\0\0\0", 13)) == 13);
        QVERIFY(file.resize(64LL << 30));
        file.close();

        const auto start = std::chrono::steady_clock::now();
        QVERIFY(!kx::mediaDurationInSeconds(file.fileName(), 200ms));
        const auto time = std::chrono::steady_clock::now() - start;
        QVERIFY(time >= 200ms); // it did search
        QVERIFY(time < 20s); // all of the file would take minutes
    }
};

QTEST_GUILESS_MAIN(MediaDurationTest)
#include "MediaDurationTest.moc"
