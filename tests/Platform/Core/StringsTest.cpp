// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Strings.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <optional>
#include <random>
#include <string>

namespace {

// UTF-8 by its table of well-formed sequences (Unicode, table 3-7), one row at a time.
std::optional<std::u32string> decodeByTable(const std::string &bytes)
{
    struct Row {
        int lead[2];
        int second[2];
        int length;
    };
    static constexpr Row rows[] = {{{0x00, 0x7F}, {0, 0}, 1}, {{0xC2, 0xDF}, {0x80, 0xBF}, 2},
        {{0xE0, 0xE0}, {0xA0, 0xBF}, 3}, {{0xE1, 0xEC}, {0x80, 0xBF}, 3}, {{0xED, 0xED}, {0x80, 0x9F}, 3},
        {{0xEE, 0xEF}, {0x80, 0xBF}, 3}, {{0xF0, 0xF0}, {0x90, 0xBF}, 4}, {{0xF1, 0xF3}, {0x80, 0xBF}, 4},
        {{0xF4, 0xF4}, {0x80, 0x8F}, 4}};
    const auto in = [](int value, const int(&range)[2]) { return value >= range[0] && value <= range[1]; };
    const auto byte = [&](std::size_t i) { return i < bytes.size() ? int(static_cast<unsigned char>(bytes[i])) : -1; };
    static constexpr int payload[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    static constexpr int continuation[2] = {0x80, 0xBF};
    std::u32string text;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto row =
            std::find_if(std::begin(rows), std::end(rows), [&](const Row &r) { return in(byte(at), r.lead); });
        if (row == std::end(rows))
            return std::nullopt;
        char32_t point = char32_t(byte(at) & payload[row->length]);
        for (int i = 1; i < row->length; ++i) {
            if (!in(byte(at + std::size_t(i)), i == 1 ? row->second : continuation))
                return std::nullopt;
            point = (point << 6) | char32_t(byte(at + std::size_t(i)) & 0x3F);
        }
        text += point;
        at += std::size_t(row->length);
    }
    return text;
}

bool agrees(const std::string &bytes)
{
    const auto expected = decodeByTable(bytes);
    const std::optional<QString> found = kx::decodeUtf8(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
    if (expected.has_value() != found.has_value())
        return false;
    if (!expected)
        return true;
    QString text; // QString::fromUcs4 would leave a byte order mark out
    for (const char32_t point : *expected)
        text += QChar::fromUcs4(point);
    return *found == text;
}

} // namespace

class StringsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void tellsAbsentFromEmpty()
    {
        const QString absent;
        const QString empty = QLatin1String("");
        QVERIFY(absent == empty); // why same() exists
        QVERIFY(!kx::same(absent, empty));
        QVERIFY(!kx::same(empty, absent));
        QVERIFY(kx::same(absent, QString()));
        QVERIFY(kx::same(empty, QStringLiteral("")));
        QVERIFY(kx::same(QStringLiteral("a"), QStringLiteral("a")));
        QVERIFY(!kx::same(QStringLiteral("a"), QStringLiteral("A")));
    }

    void decodesEveryInputOfUpToThreeBytes()
    {
        std::string bytes;
        for (int a = 0; a < 256; ++a) {
            bytes = {char(a)};
            QVERIFY2(agrees(bytes), QByteArray::fromStdString(bytes).toHex().constData());
            for (int b = 0; b < 256; ++b) {
                bytes = {char(a), char(b)};
                QVERIFY2(agrees(bytes), QByteArray::fromStdString(bytes).toHex().constData());
                // The third byte matters only behind a lead of three or four.
                for (int c = a >= 0xE0 ? 0 : 256; c < 256; ++c) {
                    bytes = {char(a), char(b), char(c)};
                    if (!agrees(bytes))
                        QFAIL(QByteArray::fromStdString(bytes).toHex().constData());
                }
            }
        }
    }

    void decodesEverySequenceOfFourBytesAtItsEdges()
    {
        constexpr int edges[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF};
        for (int lead = 0xE0; lead < 256; ++lead) {
            for (int second = 0; second < 256; ++second) {
                for (const int third : edges) {
                    for (const int fourth : edges) {
                        const std::string bytes{char(lead), char(second), char(third), char(fourth)};
                        if (!agrees(bytes))
                            QFAIL(QByteArray::fromStdString(bytes).toHex().constData());
                    }
                }
            }
        }
    }

    void decodesEveryCodePoint()
    {
        for (char32_t point = 0; point <= 0x10FFFF; ++point) {
            if (point >= 0xD800 && point <= 0xDFFF)
                continue;
            const QString text = QStringView(QChar::fromUcs4(point)).toString();
            const std::optional<QString> decoded = kx::decodeUtf8(text.toUtf8());
            if (!decoded || *decoded != text)
                QFAIL(QByteArray::number(uint(point), 16).constData());
        }
    }

    void decodesRandomMixtures()
    {
        std::mt19937 random(7);
        const std::string pieces[] = {"a", "\x7F", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x8E\xAC", "\xEF\xBB\xBF",
            "\xC3", "\x80", "\xED\xA0\x80"};
        for (int i = 0; i < 20000; ++i) {
            std::string bytes;
            for (unsigned n = random() % 12; n > 0; --n)
                bytes += pieces[random() % (i % 2 ? std::size(pieces) : 6)];
            QVERIFY2(agrees(bytes), QByteArray::fromStdString(bytes).toHex().constData());
        }
    }

    void keepsAByteOrderMarkAndNulls()
    {
        QCOMPARE(kx::decodeUtf8("\xEF\xBB\xBFx"), std::optional(QStringLiteral("\uFEFFx")));
        QCOMPARE(kx::decodeUtf8(QByteArrayView("a\0b", 3)).value().size(), 3);
    }

    void decodesNothingToAnEmptyText()
    {
        for (const QByteArrayView nothing : {QByteArrayView(), QByteArrayView("")}) {
            const std::optional<QString> text = kx::decodeUtf8(nothing);
            QVERIFY(text && text->isEmpty() && !text->isNull());
        }
    }

    void ordersDigitRunsByValue_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("expected");
        const auto row = [](const char *name, const QString &a, const QString &b, int expected) {
            QTest::newRow(name) << a << b << expected;
        };
        row("both empty", {}, {}, 0);
        row("empty first", {}, QStringLiteral("a"), -1);
        row("equal", QStringLiteral("1.2"), QStringLiteral("1.2"), 0);
        row("by value", QStringLiteral("1.10"), QStringLiteral("1.9"), 1);
        row("longer", QStringLiteral("1.2"), QStringLiteral("1.2.0"), -1);
        row("first difference counts", QStringLiteral("1.3"), QStringLiteral("1.2.9"), 1);
        row("days", QStringLiteral("2024-03-09"), QStringLiteral("2024-03-10"), -1);
        row("years", QStringLiteral("999-12-31"), QStringLiteral("2024-01-01"), -1);
        row("leading zeros", QStringLiteral("a007"), QStringLiteral("a7"), 0);
        row("only zeros", QStringLiteral("000"), QStringLiteral("0"), 0);
        row("behind leading zeros", QStringLiteral("007a"), QStringLiteral("7b"), -1);
        row("zero and one", QStringLiteral("v00"), QStringLiteral("v1"), -1);
        row("letters by code", QStringLiteral("B"), QStringLiteral("a"), -1);
        row("digit and letter", QStringLiteral("1"), QStringLiteral("a"), -1);
        row("digit and blank", QStringLiteral("1"), QStringLiteral(" "), 1);
        row("other digits by code", QStringLiteral("\u0663"), QStringLiteral("\u0661"), 1);
        row("longer than any integer", QString(400, u'9'), QString(u'1' + QString(400, u'0')), -1);
        row("equal but for the last of many", QString(QString(400, u'9') + u'1'), QString(QString(400, u'9') + u'2'),
            -1);
    }

    void ordersDigitRunsByValue()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, expected);
        QCOMPARE(kx::compareNumeric(a, b), expected);
        QCOMPARE(kx::compareNumeric(b, a), -expected);
    }
};

QTEST_GUILESS_MAIN(StringsTest)
#include "StringsTest.moc"
