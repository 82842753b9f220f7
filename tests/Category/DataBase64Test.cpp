// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/DataBase64.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

class DataBase64Test : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void decodesBase64Text()
    {
        QCOMPARE(kx::dataFromBase64String(QStringLiteral("QUJD")), QByteArray("ABC"));
        QCOMPARE(kx::dataFromBase64String(QStringLiteral("QUJD\n")), QByteArray("AB"));
        QCOMPARE(kx::dataFromBase64String(QStringLiteral("Q")), QByteArray(""));
    }

    void textBeyondAsciiGivesEmptyData_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("Latin-1") << QStringLiteral("QUJDé");
        QTest::newRow("its first character, 0x80") << QStringLiteral("QUJD") + QChar(0x80);
        QTest::newRow("low byte of an ASCII character") << QStringLiteral("QUJD") + QChar(0x0141);
        QTest::newRow("outside the first plane") << QStringLiteral("QUJD😀");
    }
    void textBeyondAsciiGivesEmptyData()
    {
        QFETCH(const QString, text);
        const QByteArray data = kx::dataFromBase64String(text);
        QVERIFY(data.isEmpty());
        QVERIFY(!data.isNull());
    }

    void absentAndEmptyGiveEmptyResultsThatAreNotNull()
    {
        for (const QString &text : {QString(), QStringLiteral("")}) {
            const QByteArray data = kx::dataFromBase64String(text);
            QVERIFY(data.isEmpty() && !data.isNull());
        }
        for (const QByteArray &data : {QByteArray(), QByteArray("")}) {
            const QString text = kx::base64EncodedString(data);
            QVERIFY(text.isEmpty() && !text.isNull());
            const QByteArray reversed = kx::reversedData(data);
            QVERIFY(reversed.isEmpty() && !reversed.isNull());
        }
    }

    void encodesWithLineBreaks()
    {
        QCOMPARE(kx::base64EncodedString("A"), QStringLiteral("QQ=="));
        QCOMPARE(kx::base64EncodedString(QByteArray(49, 'A')), QStringLiteral("QUFB").repeated(16) + u"\r\nQQ==");
    }

    void decodesWhatItEncodes()
    {
        for (int length = 0; length < 200; ++length) {
            QByteArray data(length, '\0');
            for (int i = 0; i < length; ++i)
                data[i] = static_cast<char>(i * 37 + length);
            QCOMPARE(kx::dataFromBase64String(kx::base64EncodedString(data)), data);
        }
    }

    void reversesBytes()
    {
        QCOMPARE(kx::reversedData("\x01\x02\x03"), QByteArray("\x03\x02\x01"));
        QCOMPARE(kx::reversedData(QByteArray("\x00\x01", 2)), QByteArray("\x01\x00", 2));
        const QByteArray data("as it was");
        const QByteArray reversed = kx::reversedData(data);
        QCOMPARE(data, QByteArray("as it was"));
        QCOMPARE(kx::reversedData(reversed), data);
    }
};

QTEST_GUILESS_MAIN(DataBase64Test)
#include "DataBase64Test.moc"
