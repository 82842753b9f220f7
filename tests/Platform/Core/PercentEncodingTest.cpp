// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/PercentEncoding.h>

#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtTest/QTest>

class PercentEncodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void encodesWhatAQueryMayNotHold()
    {
        // Every character below 0x80 against the grammar's own list.
        const QString allowed =
            QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/?");
        for (char16_t c = 0; c < 0x80; ++c) {
            const QString text(QChar{c});
            const QString expected =
                allowed.contains(text) ? text : QString::fromLatin1('%' + QByteArray(1, char(c)).toHex().toUpper());
            QCOMPARE(kx::addPercentEncoding(text, kx::urlQueryAllowed), std::optional(expected));
        }
    }

    void encodesUtf8Bytes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("encoded");
        QTest::newRow("nothing") << QStringLiteral("") << QStringLiteral("");
        QTest::newRow("two bytes") << QStringLiteral("a\u00E9b") << QStringLiteral("a%C3%A9b");
        QTest::newRow("three bytes") << QStringLiteral("中") << QStringLiteral("%E4%B8%AD");
        QTest::newRow("four bytes") << QStringLiteral("\U0001F600") << QStringLiteral("%F0%9F%98%80");
        QTest::newRow("an escape") << QStringLiteral("%41") << QStringLiteral("%2541");
        QTest::newRow("highest") << QStringLiteral("\U0010FFFF\uFFFF") << QStringLiteral("%F4%8F%BF%BF%EF%BF%BF");
    }
    void encodesUtf8Bytes()
    {
        QFETCH(QString, text);
        QFETCH(QString, encoded);
        QCOMPARE(kx::addPercentEncoding(text, kx::urlQueryAllowed), std::optional(encoded));
        QCOMPARE(kx::removePercentEncoding(encoded), std::optional(text));
    }

    void hasNoEncodingForALoneSurrogate_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("high at the end") << QString(QStringLiteral("a") + QChar(0xD83D));
        QTest::newRow("high before a letter") << QString(QChar(0xD83D) + QStringLiteral("a"));
        QTest::newRow("low") << QString(QStringLiteral("a") + QChar(0xDE00) + QStringLiteral("b"));
        QTest::newRow("in the wrong order") << QString(QString(QChar(0xDE00)) + QChar(0xD83D));
    }
    void hasNoEncodingForALoneSurrogate()
    {
        QFETCH(QString, text);
        QVERIFY(!kx::isPaired(text));
        QVERIFY(!kx::addPercentEncoding(text, kx::urlQueryAllowed));
    }

    void decodes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("decoded"); // null: not possible
        QTest::newRow("nothing") << QStringLiteral("") << QStringLiteral("");
        QTest::newRow("no escapes") << QStringLiteral("a b中") << QStringLiteral("a b中");
        QTest::newRow("either case") << QStringLiteral("%2f%2F") << QStringLiteral("//");
        QTest::newRow("one layer only") << QStringLiteral("%2541") << QStringLiteral("%41");
        QTest::newRow("a zero byte") << QStringLiteral("a%00b")
                                     << QString(QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
        QTest::newRow("runs beside ASCII escapes") << QStringLiteral("%41%E4%B8%AD%42") << QStringLiteral("A中B");
        QTest::newRow("mixed with its own kind") << QStringLiteral("é%C3%A9é") << QStringLiteral("ééé");
        QTest::newRow("a byte order mark") << QStringLiteral("%EF%BB%BFa") << QStringLiteral("\uFEFFa");
        QTest::newRow("bare percent") << QStringLiteral("100%") << QString();
        QTest::newRow("one digit") << QStringLiteral("%4") << QString();
        QTest::newRow("no digits") << QStringLiteral("%ZZ") << QString();
        QTest::newRow("wide digits") << QStringLiteral("%４１") << QString();
        QTest::newRow("no UTF-8") << QStringLiteral("%FF") << QString();
        QTest::newRow("cut off") << QStringLiteral("%E4%B8") << QString();
        QTest::newRow("cut off by a letter") << QStringLiteral("%E4%B8a%AD") << QString();
        QTest::newRow("then broken") << QStringLiteral("%E4%B8%AD%") << QString();
        QTest::newRow("overlong") << QStringLiteral("%C0%AF") << QString();
        QTest::newRow("a surrogate") << QStringLiteral("%ED%A0%80") << QString();
    }
    void decodes()
    {
        QFETCH(QString, text);
        QFETCH(QString, decoded);
        const std::optional<QString> result = kx::removePercentEncoding(text);
        QCOMPARE(result.has_value(), !decoded.isNull());
        if (result)
            QCOMPARE(*result, decoded);
    }

    void decodingUndoesEncoding()
    {
        QRandomGenerator random(20240601);
        for (int round = 0; round < 2000; ++round) {
            QString text;
            for (int i = random.bounded(40); i > 0; --i) {
                const char32_t point = random.bounded(3) ? random.bounded(0x80U) : random.bounded(0x110000U);
                if (!QChar::isSurrogate(point))
                    text += QChar::fromUcs4(point);
            }
            const std::optional<QString> encoded = kx::addPercentEncoding(text, kx::urlQueryAllowed);
            QVERIFY(encoded);
            QCOMPARE(
                *encoded, QString::fromLatin1(QUrl::toPercentEncoding(text, "!$&'()*+,;=:@/?"))); // a second opinion
            QCOMPARE(kx::removePercentEncoding(*encoded), std::optional(text));
        }
    }
};

QTEST_GUILESS_MAIN(PercentEncodingTest)
#include "PercentEncodingTest.moc"
