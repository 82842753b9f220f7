// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/DataUtil.h>
#include <KXFoundation/Category/StringUrlEncode.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <algorithm>

namespace {

const QString reserved = QStringLiteral("?!@#$^&%*+,:;='\"`<>()[]{}/\\| ");

bool isEmptyText(const QString &text)
{
    return text.isEmpty() && !text.isNull();
}

} // namespace

class StringUrlEncodeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void digestsTheUtf8FormUpToTheFirstNul()
    {
        QCOMPARE(kx::md5Hash(QString()), QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
        QCOMPARE(kx::md5Hash(QStringLiteral("abc")), QStringLiteral("900150983cd24fb0d6963f7d28e17f72"));
        QCOMPARE(kx::md5Hash(QStringLiteral("中")), kx::md5Hash(QByteArray("\xE4\xB8\xAD")));
        const QString withNul = QStringLiteral("abc") + QChar(u'\0') + u"def";
        QCOMPARE(kx::md5Hash(withNul), kx::md5Hash(QStringLiteral("abc")));
        QCOMPARE(kx::md5Hash(QString(QChar(u'\0'))), kx::md5Hash(QStringLiteral("")));
        QCOMPARE(kx::md5Hash(QString(u"a" + QString(QChar(0xD83D)))), kx::md5Hash(QStringLiteral("a?")));
    }

    void codes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("coded");
        QTest::newRow("space and slash") << QStringLiteral("a b/c") << QStringLiteral("a%20b%2Fc");
        QTest::newRow("percent") << QStringLiteral("100%") << QStringLiteral("100%25");
        QTest::newRow("an escape is coded again") << QStringLiteral("%2F") << QStringLiteral("%252F");
        QTest::newRow("unreserved") << QStringLiteral("aZ09-._~") << QStringLiteral("aZ09-._~");
        QTest::newRow("beyond ASCII") << QStringLiteral("é中😀") << QStringLiteral("é中😀");
        QTest::newRow("control characters")
            << QStringLiteral("\t\r\n\x7F") + QChar(u'\0') << QStringLiteral("\t\r\n\x7F") + QChar(u'\0');
        QTest::newRow("all reserved") << reserved
                                      << QStringLiteral("%3F%21%40%23%24%5E%26%25%2A%2B%2C%3A%3B%3D%27%22%60%3C%3E"
                                                        "%28%29%5B%5D%7B%7D%2F%5C%7C%20");
    }
    void codes()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, coded);
        QCOMPARE(kx::percentCodingString(text), coded);
        QCOMPARE(kx::DecodeUtf8String(coded), text);
    }

    void codesExactlyTwentyNineCharacters()
    {
        QCOMPARE(reserved.size(), 29);
        QString coded;
        for (char32_t point = 0; point <= QChar::LastValidCodePoint; ++point) {
            if (QChar::isSurrogate(point))
                continue;
            const QString text = QString::fromUcs4(&point, 1);
            const QString result = kx::percentCodingString(text);
            if (result == text)
                continue;
            QCOMPARE(result, u'%' + QString::number(uint(point), 16).toUpper());
            coded += text;
        }
        QString sorted = reserved;
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(coded, sorted);
    }

    void decodes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("decoded");
        QTest::newRow("three bytes") << QStringLiteral("%E4%B8%AD") << QStringLiteral("中");
        QTest::newRow("lower-case digits") << QStringLiteral("%e4%b8%ad") << QStringLiteral("中");
        QTest::newRow("four bytes") << QStringLiteral("%F0%9F%98%80") << QStringLiteral("😀");
        QTest::newRow("among text") << QStringLiteral("a%20b+é%2Fc") << QStringLiteral("a b+é/c");
        QTest::newRow("once only") << QStringLiteral("%2525") << QStringLiteral("%25");
        QTest::newRow("NUL") << QStringLiteral("a%00b") << QStringLiteral("a") + QChar(u'\0') + u"b";
        QTest::newRow("a byte order mark stays") << QStringLiteral("%EF%BB%BFa") << QChar(0xFEFF) + QStringLiteral("a");
        QTest::newRow("nothing to decode") << QStringLiteral("abc") << QStringLiteral("abc");
    }
    void decodes()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, decoded);
        QCOMPARE(kx::DecodeUtf8String(text), decoded);
    }

    void failsAsTheEmptyText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("no hex digits") << QStringLiteral("%ZZ");
        QTest::newRow("one hex digit") << QStringLiteral("%2Z");
        QTest::newRow("cut after the sign") << QStringLiteral("abc%");
        QTest::newRow("cut after a digit") << QStringLiteral("abc%2");
        QTest::newRow("a digit beyond ASCII") << QStringLiteral("%2é");
        QTest::newRow("a lone continuation byte") << QStringLiteral("%80");
        QTest::newRow("a sequence cut by its end") << QStringLiteral("%E4%B8");
        QTest::newRow("a sequence cut by a letter") << QStringLiteral("%E4%B8a");
        QTest::newRow("a sequence cut by an escape") << QStringLiteral("%E4%20");
        QTest::newRow("an overlong slash") << QStringLiteral("%C0%AF");
        QTest::newRow("a surrogate in UTF-8") << QStringLiteral("%ED%A0%80");
        QTest::newRow("beyond the last plane") << QStringLiteral("%F4%90%80%80");
        QTest::newRow("half a pair") << QString(QChar(0xD800)) + u"%20";
    }
    void failsAsTheEmptyText()
    {
        QFETCH(const QString, text);
        QVERIFY(isEmptyText(kx::DecodeUtf8String(text)));
    }

    void codingHalfAPairFailsAsTheEmptyText()
    {
        QVERIFY(isEmptyText(kx::percentCodingString(QStringLiteral("a") + QChar(0xD83D))));
        QVERIFY(isEmptyText(kx::percentCodingString(QChar(0xDE00) + QStringLiteral(" "))));
    }

    void absentAndEmptyGiveTheEmptyText()
    {
        for (const QString &text : {QString(), QStringLiteral("")}) {
            QVERIFY(isEmptyText(kx::percentCodingString(text)));
            QVERIFY(isEmptyText(kx::DecodeUtf8String(text)));
        }
    }
};

QTEST_GUILESS_MAIN(StringUrlEncodeTest)
#include "StringUrlEncodeTest.moc"
