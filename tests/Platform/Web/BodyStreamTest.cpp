// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/BodyStream.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <thread>

using namespace Qt::StringLiterals;

class BodyStreamTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void readsAcrossChunks_data();
    void readsAcrossChunks();
    void waitsForMoreWithoutEnding();
    void announcesDataOnlyToAReaderThatWaits();
    void letsGoOfWhatWasRead();
    void sharesItsChunks();
    void readsAWholeBodyFromAnyPosition();
    void endsAfterTheLastByte();
    void isEmptyWhenNothingCame();
    void abortIsAnErrorAndNotAnEnd();
    void takesNothingAfterItsEnd();
    void takesNoWrites();
    void passesEveryByteBetweenThreads();
};

void BodyStreamTest::readsAcrossChunks_data()
{
    QTest::addColumn<int>("step");
    for (int step : {1, 2, 3, 4, 5, 9, 10, 11, 100})
        QTest::addRow("%d at a time", step) << step;
}

void BodyStreamTest::readsAcrossChunks()
{
    QFETCH(int, step);
    kx::BodyStream stream;
    for (const char *piece : {"012", "3", "", "4567", "89"})
        stream.append(piece);
    stream.finish();
    QByteArray all;
    while (!stream.atEnd()) {
        const QByteArray read = stream.read(step);
        QVERIFY(!read.isEmpty());
        all += read;
    }
    QCOMPARE(all, QByteArray("0123456789"));
}

void BodyStreamTest::waitsForMoreWithoutEnding()
{
    kx::BodyStream stream;
    char byte = 0;
    QCOMPARE(stream.read(&byte, 1), 0);
    QVERIFY(!stream.atEnd());
    stream.append("a");
    QCOMPARE(stream.bytesAvailable(), 1);
    QCOMPARE(stream.read(&byte, 1), 1);
    QCOMPARE(byte, 'a');
    QCOMPARE(stream.read(&byte, 1), 0);
    QVERIFY(!stream.atEnd());
    stream.finish();
    QVERIFY(stream.atEnd());
    QCOMPARE(stream.read(&byte, 1), -1);
}

void BodyStreamTest::announcesDataOnlyToAReaderThatWaits()
{
    kx::BodyStream stream;
    QSignalSpy ready(&stream, &QIODevice::readyRead);
    stream.append("a");
    QCOMPARE(ready.size(), 1);
    stream.append("b"); // the reader has not come to the end of "a"
    QCOMPARE(ready.size(), 1);
    QCOMPARE(stream.read(10), QByteArray("ab"));
    stream.append({});
    QCOMPARE(ready.size(), 1);
    stream.append("c");
    QCOMPARE(ready.size(), 2);
    stream.finish();
    QCOMPARE(ready.size(), 3);
}

void BodyStreamTest::letsGoOfWhatWasRead()
{
    kx::BodyStream stream;
    QByteArray chunk(100, 'a');
    stream.append(chunk);
    stream.append("b");
    QVERIFY(!chunk.isDetached());
    QCOMPARE(stream.read(99).size(), 99);
    QVERIFY(!chunk.isDetached());
    QCOMPARE(stream.read(1).size(), 1);
    QVERIFY(chunk.isDetached());
    QCOMPARE(stream.bytesAvailable(), 1);
}

void BodyStreamTest::sharesItsChunks()
{
    kx::BodyStream stream;
    const QByteArray chunk(1 << 20, 'a');
    for (int i = 0; i < 4096; ++i)
        stream.append(chunk); // 4 GB, if they were copies
    QCOMPARE(stream.bytesAvailable(), qint64(4096) << 20);
    stream.abort();
    QVERIFY(chunk.isDetached());
}

void BodyStreamTest::readsAWholeBodyFromAnyPosition()
{
    kx::BodyStream stream;
    for (const char *piece : {"012", "3456", "789"})
        stream.append(piece);
    QVERIFY(stream.isSequential());
    stream.finish();
    stream.setWhole();
    QVERIFY(!stream.isSequential());
    QCOMPARE(stream.size(), 10);
    for (int begin = 0; begin < 10; ++begin) {
        for (int count = 1; count <= 10 - begin; ++count) {
            QVERIFY(stream.seek(begin));
            QCOMPARE(stream.bytesAvailable(), 10 - begin);
            QCOMPARE(stream.read(count), QByteArray("0123456789").mid(begin, count));
        }
        QVERIFY(stream.atEnd());
    }
    QVERIFY(stream.seek(0));
    QVERIFY(!stream.atEnd());
    QCOMPARE(stream.readAll(), QByteArray("0123456789"));
}

void BodyStreamTest::endsAfterTheLastByte()
{
    kx::BodyStream stream;
    stream.append("ab");
    stream.finish();
    QVERIFY(!stream.atEnd());
    QCOMPARE(stream.read(2), QByteArray("ab"));
    QVERIFY(stream.atEnd());
}

void BodyStreamTest::isEmptyWhenNothingCame()
{
    kx::BodyStream stream;
    stream.finish();
    stream.setWhole();
    QVERIFY(stream.atEnd());
    QCOMPARE(stream.size(), 0);
    QCOMPARE(stream.readAll(), QByteArray());
}

void BodyStreamTest::abortIsAnErrorAndNotAnEnd()
{
    kx::BodyStream stream;
    QSignalSpy ready(&stream, &QIODevice::readyRead);
    stream.append("a");
    stream.abort();
    QCOMPARE(ready.size(), 2); // a waiting reader learns of it
    char byte = 0;
    QCOMPARE(stream.read(&byte, 1), -1);
    QVERIFY(!stream.atEnd());
    QCOMPARE(stream.bytesAvailable(), 0);
}

void BodyStreamTest::takesNothingAfterItsEnd()
{
    kx::BodyStream finished;
    finished.finish();
    finished.append("late");
    QCOMPARE(finished.readAll(), QByteArray());
    kx::BodyStream aborted;
    aborted.abort();
    aborted.append("late");
    QCOMPARE(aborted.bytesAvailable(), 0);
}

void BodyStreamTest::takesNoWrites()
{
    kx::BodyStream stream;
    QVERIFY(!stream.isWritable());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"ReadOnly device"_qs));
    QCOMPARE(stream.write("a"), -1);
}

void BodyStreamTest::passesEveryByteBetweenThreads()
{
    constexpr int Total = 3'000'000;
    kx::BodyStream stream;
    QByteArray received;
    std::jthread reader([&] {
        char buffer[4096];
        while (!stream.atEnd()) {
            const qint64 count = stream.read(buffer, sizeof buffer);
            if (count > 0)
                received.append(buffer, count);
            else
                std::this_thread::yield();
        }
    });
    QByteArray sent;
    for (int i = 0; sent.size() < Total; ++i) {
        const QByteArray piece(1 + i * 7919 % 5000, char('a' + i % 26));
        sent.append(piece.constData(), piece.size()); // a copy: the pieces are not shared with this thread
        stream.append(piece);
    }
    stream.finish();
    reader.join();
    QCOMPARE(received.size(), sent.size());
    QVERIFY(received == sent);
}

QTEST_GUILESS_MAIN(BodyStreamTest)

#include "BodyStreamTest.moc"
