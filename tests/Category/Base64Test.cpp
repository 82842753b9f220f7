// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/Base64.h>

#include "NaiveBase64.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

QByteArray encoded(const QByteArray &bytes, bool breakLines)
{
    std::size_t length = 12345;
    const std::unique_ptr<char, Free> text(
        NewBase64Encode(bytes.constData(), static_cast<std::size_t>(bytes.size()), breakLines, &length));
    // The NUL stands where the length says.
    return std::strlen(text.get()) == length ? QByteArray(text.get()) : QByteArrayLiteral("no NUL at the length");
}

QByteArray decoded(const QByteArray &text)
{
    std::size_t length = 12345;
    const std::unique_ptr<void, Free> bytes(
        NewBase64Decode(text.constData(), static_cast<std::size_t>(text.size()), &length));
    return QByteArray(static_cast<const char *>(bytes.get()), static_cast<qsizetype>(length));
}

} // namespace

class Base64Test : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void encodes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray("") << QByteArray("");
        QTest::newRow("one byte") << QByteArray("A") << QByteArray("QQ==");
        QTest::newRow("two bytes") << QByteArray("AB") << QByteArray("QUI=");
        QTest::newRow("three bytes") << QByteArray("ABC") << QByteArray("QUJD");
        QTest::newRow("four bytes") << QByteArray("ABCD") << QByteArray("QUJDRA==");
        QTest::newRow("the last two of the alphabet") << QByteArray("\xFB\xEF\xFF") << QByteArray("++//");
        QTest::newRow("NUL bytes") << QByteArray("\0\0\0", 3) << QByteArray("AAAA");
        QTest::newRow("a full line") << QByteArray(48, 'A') << QByteArray("QUFB").repeated(16);
        QTest::newRow("one byte more") << QByteArray(49, 'A') << QByteArray("QUFB").repeated(16) + "\r\nQQ==";
        QTest::newRow("two full lines") << QByteArray(96, 'A')
                                        << QByteArray("QUFB").repeated(16) + "\r\n" + QByteArray("QUFB").repeated(16);
    }
    void encodes()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QByteArray, text);
        QCOMPARE(encoded(bytes, true), text);
        QCOMPARE(encoded(bytes, false), QByteArray(text).replace("\r\n", ""));
    }

    void aFullLineHasSixtyFourCharacters()
    {
        QCOMPARE(encoded(QByteArray(48, 'x'), true).size(), 64);
        QCOMPARE(encoded(QByteArray(49, 'x'), true).size(), 64 + 2 + 4);
    }

    void decodes_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray("") << QByteArray("");
        QTest::newRow("a group") << QByteArray("QUJD") << QByteArray("ABC");
        QTest::newRow("trailing line feed") << QByteArray("QUJD\n") << QByteArray("AB");
        QTest::newRow("trailing CR LF") << QByteArray("QUJD\r\n") << QByteArray("AB");
        QTest::newRow("trailing padding after a full group") << QByteArray("QUJD=") << QByteArray("AB");
        QTest::newRow("spaced") << QByteArray("Q U J D") << QByteArray("ABC");
        QTest::newRow("leading spaces") << QByteArray("  QUJD") << QByteArray("ABC");
        QTest::newRow("two characters") << QByteArray("QQ") << QByteArray("A");
        QTest::newRow("padded") << QByteArray("QQ==") << QByteArray("A");
        QTest::newRow("padded, then a line feed") << QByteArray("QQ==\n") << QByteArray("A");
        QTest::newRow("three characters") << QByteArray("QUI") << QByteArray("AB");
        QTest::newRow("one character") << QByteArray("Q") << QByteArray("");
        QTest::newRow("one character after a group") << QByteArray("QUJDQ") << QByteArray("ABC");
        QTest::newRow("padding alone") << QByteArray("=") << QByteArray("");
        QTest::newRow("a line feed alone") << QByteArray("\n") << QByteArray("");
        QTest::newRow("much padding alone") << QByteArray("====") << QByteArray("");
        QTest::newRow("padding inside is skipped") << QByteArray("QQ==QQ") << QByteArray("A\x04\x10");
        QTest::newRow("padding at the end of that") << QByteArray("QQ==QQ==") << QByteArray("A\x04");
        QTest::newRow("bytes beyond ASCII are skipped") << QByteArray("Q\xC3\xA9UJD") << QByteArray("ABC");
        QTest::newRow("a NUL inside a given length is skipped") << QByteArray("QU\0JD", 5) << QByteArray("ABC");
        QTest::newRow("the URL alphabet is skipped") << QByteArray("-_QUJD") << QByteArray("ABC");
    }
    void decodes()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QByteArray, bytes);
        QCOMPARE(decoded(text), bytes);
        QCOMPARE(QByteArray::fromStdString(kx::test::naiveDecode(text.toStdString())), bytes);
    }

    void measuresATextWithoutALength()
    {
        std::size_t length = 0;
        const std::unique_ptr<void, Free> bytes(NewBase64Decode("QUJD\0QUJD", static_cast<std::size_t>(-1), &length));
        QCOMPARE(length, std::size_t(3));
        QVERIFY(std::memcmp(bytes.get(), "ABC", 3) == 0);
        const std::unique_ptr<void, Free> none(NewBase64Decode("", static_cast<std::size_t>(-1), &length));
        QCOMPARE(length, std::size_t(0));
        QVERIFY(none);
    }

    void theLengthNeedNotBeTaken()
    {
        const std::unique_ptr<char, Free> text(NewBase64Encode("ABC", 3, true, nullptr));
        QCOMPARE(QByteArray(text.get()), QByteArray("QUJD"));
        const std::unique_ptr<void, Free> bytes(NewBase64Decode("QUJD", 4, nullptr));
        QVERIFY(std::memcmp(bytes.get(), "ABC", 3) == 0);
    }

    // Lengths for which there is no room. The input is not looked at.
    void givesNullWhenMemoryIsExhausted_data()
    {
        QTest::addColumn<std::size_t>("length");
        constexpr auto most = std::numeric_limits<std::size_t>::max();
        QTest::newRow("half of all") << most / 2;
        QTest::newRow("all but one") << most - 1;
        QTest::newRow("text beyond all by one group") << most / 4 * 3 + 1;
        QTest::newRow("text beyond all by line ends") << most / 4 * 3 - 3;
    }
    void givesNullWhenMemoryIsExhausted()
    {
        QFETCH(const std::size_t, length);
        for (const bool breakLines : {false, true}) {
            std::size_t textLength = 1;
            const std::unique_ptr<char, Free> text(NewBase64Encode("A", length, breakLines, &textLength));
            QVERIFY(!text);
            QCOMPARE(textLength, std::size_t(0));
        }
        std::size_t bytesLength = 1;
        const std::unique_ptr<void, Free> bytes(NewBase64Decode("QUJD", length, &bytesLength));
        QVERIFY(!bytes);
        QCOMPARE(bytesLength, std::size_t(0));
        QVERIFY(!NewBase64Encode("A", length, true, nullptr));
        QVERIFY(!NewBase64Decode("QUJD", length, nullptr));
    }

    void nothingMayBeNull()
    {
        std::size_t length = 1;
        const std::unique_ptr<char, Free> text(NewBase64Encode(nullptr, 0, true, &length));
        QCOMPARE(QByteArray(text.get()), QByteArray(""));
        QCOMPARE(length, std::size_t(0));
        const std::unique_ptr<void, Free> bytes(NewBase64Decode(nullptr, 0, &length));
        QVERIFY(bytes);
        QCOMPARE(length, std::size_t(0));
    }
};

QTEST_GUILESS_MAIN(Base64Test)
#include "Base64Test.moc"
