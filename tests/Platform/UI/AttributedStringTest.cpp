// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/MutableAttributedString.h>

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using kx::AttributedString;
using kx::MutableAttributedString;
using kx::TextAttributes;
using kx::TextRange;

/// The same operations on one attribute set per character.
class NaiveString {
public:
    static NaiveString of(const AttributedString &string)
    {
        NaiveString naive;
        for (quint64 i = 0; i < string.length(); ++i)
            naive.characters.push_back({string.string().at(qsizetype(i)), string.attributesAt(i)});
        return naive;
    }

    template <class Change> void change(const TextRange &range, Change change)
    {
        if (!fits(range))
            return;
        for (quint64 i = range.location; i < range.location + range.length; ++i)
            change(characters[i].attributes);
    }
    void replace(const TextRange &range, const NaiveString &with)
    {
        if (!fits(range))
            return;
        const auto first = characters.begin() + qptrdiff(range.location);
        const auto place = characters.erase(first, first + qptrdiff(range.length));
        characters.insert(place, with.characters.begin(), with.characters.end());
    }

    struct Character {
        QChar character;
        TextAttributes attributes;
        bool operator==(const Character &other) const = default;
    };
    std::vector<Character> characters;

private:
    bool fits(const TextRange &range) const
    {
        return range.location <= characters.size() && range.length <= characters.size() - range.location;
    }
};

bool isNormal(const AttributedString &string)
{
    const auto &runs = string.runs();
    if (runs.isEmpty())
        return string.length() == 0;
    for (qsizetype i = 1; i < runs.size(); ++i) {
        if (runs.at(i).start <= runs.at(i - 1).start || runs.at(i).attributes == runs.at(i - 1).attributes)
            return false;
    }
    return runs.first().start == 0 && runs.last().start < qsizetype(string.length());
}

struct Part {
    quint64 location;
    quint64 length;
    kx::Color value;
    bool operator==(const Part &other) const = default;
};

std::vector<Part> backgrounds(const AttributedString &string, const TextRange &range)
{
    std::vector<Part> parts;
    string.enumerateAttribute(
        &TextAttributes::backgroundColor, range, [&](const kx::Color &value, const TextRange &at) {
            parts.push_back({at.location, at.length, value});
        });
    return parts;
}

} // namespace

class AttributedStringTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void startsEmpty();
    void keepsANullTextApartFromAnEmptyOne();
    void givesTheWholeTextItsAttributes();
    void holdsAnAttachmentInOneCharacter();
    void addsAnAttributeToARange();
    void addsOnlyThoseThatArePresent();
    void removesAnAttribute();
    void ignoresAbsentValues();
    void ignoresRangesOutside_data();
    void ignoresRangesOutside();
    void takesNothingFromItsNeighbours();
    void addsItselfToItself();
    void copiesStay();
    void splitsSurrogatesWhereTold();
    void replacesAValueWithAnEqualOne();
    void enumeratesLongestParts();
    void enumeratesWithinTheRangeOnly();
    void mergesEqualValuesOfDifferentObjects();
    void enumeratesAttachmentsByIdentity();
    void mayBeChangedWhileItIsEnumerated();
    void agreesWithOneSetPerCharacter_data();
    void agreesWithOneSetPerCharacter();
    void thousandsOfRunsAreQuick();
};

void AttributedStringTest::startsEmpty()
{
    const AttributedString empty;
    QCOMPARE(empty.length(), 0U);
    QVERIFY(empty.runs().isEmpty());
    QCOMPARE(empty.attributesAt(0), TextAttributes());
    QVERIFY(backgrounds(empty, {0, 0}).empty());
}

void AttributedStringTest::keepsANullTextApartFromAnEmptyOne()
{
    QVERIFY(AttributedString(QString()).string().isNull());
    QVERIFY(!AttributedString(u""_qs).string().isNull());
    MutableAttributedString text(AttributedString(u"ab"_qs));
    text.deleteCharactersInRange({0, 2});
    QVERIFY(text.string().isEmpty());
    QVERIFY(!text.string().isNull());
    QVERIFY(text.runs().isEmpty());
}

void AttributedStringTest::givesTheWholeTextItsAttributes()
{
    const kx::Color red = Qt::red;
    const AttributedString text(u"abc"_qs, {.foregroundColor = red, .baselineOffset = 2});
    for (quint64 i = 0; i < 3; ++i) {
        QVERIFY(text.attributesAt(i).foregroundColor == red);
        QCOMPARE(text.attributesAt(i).baselineOffset, 2.0);
        QVERIFY(!text.attributesAt(i).font);
    }
    QVERIFY(!text.attributesAt(3).foregroundColor);
    QCOMPARE(text.rangeOfRun(0), (TextRange{0, 3}));
}

void AttributedStringTest::holdsAnAttachmentInOneCharacter()
{
    const auto attachment = std::make_shared<kx::TextAttachment>();
    const AttributedString text(attachment);
    QCOMPARE(text.string(), QString(QChar(0xFFFC)));
    QCOMPARE(text.attributesAt(0).attachment, attachment);
}

void AttributedStringTest::addsAnAttributeToARange()
{
    const kx::Color red = Qt::red;
    MutableAttributedString text(AttributedString(u"abcdef"_qs));
    text.addAttribute(&TextAttributes::backgroundColor, red, {2, 3});
    QCOMPARE(text.runs().size(), 3);
    QVERIFY(!text.attributesAt(1).backgroundColor);
    QVERIFY(text.attributesAt(2).backgroundColor == red);
    QVERIFY(text.attributesAt(4).backgroundColor == red);
    QVERIFY(!text.attributesAt(5).backgroundColor);
    text.addAttribute(&TextAttributes::backgroundColor, red, {0, 6});
    QCOMPARE(text.runs().size(), 1);
}

void AttributedStringTest::addsOnlyThoseThatArePresent()
{
    const kx::Color red = Qt::red;
    const kx::Font font = QFont();
    MutableAttributedString text(AttributedString(u"ab"_qs, {.foregroundColor = red, .baselineOffset = 1}));
    text.addAttributes({.font = font, .paragraphStyle = kx::ParagraphStyle(), .baselineOffset = 3}, {1, 1});
    QCOMPARE(text.attributesAt(0), (TextAttributes{.foregroundColor = red, .baselineOffset = 1}));
    QCOMPARE(text.attributesAt(1),
        (TextAttributes{
            .foregroundColor = red, .font = font, .paragraphStyle = kx::ParagraphStyle(), .baselineOffset = 3}));
}

void AttributedStringTest::removesAnAttribute()
{
    MutableAttributedString text(
        AttributedString(u"abc"_qs, {.foregroundColor = Qt::red, .backgroundColor = Qt::blue}));
    text.removeAttribute(&TextAttributes::backgroundColor, {1, 2});
    QVERIFY(bool(text.attributesAt(0).backgroundColor));
    QVERIFY(!text.attributesAt(1).backgroundColor);
    QVERIFY(!text.attributesAt(2).backgroundColor);
    QVERIFY(bool(text.attributesAt(2).foregroundColor));
}

void AttributedStringTest::ignoresAbsentValues()
{
    const TextAttributes all{.foregroundColor = Qt::red,
        .font = QFont(),
        .backgroundColor = Qt::blue,
        .attachment = std::make_shared<kx::TextAttachment>(),
        .paragraphStyle = kx::ParagraphStyle(),
        .baselineOffset = 1};
    MutableAttributedString text(AttributedString(u"abc"_qs, all));
    text.addAttribute(&TextAttributes::foregroundColor, nullptr, {0, 3});
    text.addAttribute(&TextAttributes::font, nullptr, {0, 3});
    text.addAttribute(&TextAttributes::attachment, nullptr, {0, 3});
    text.addAttribute(&TextAttributes::paragraphStyle, std::nullopt, {0, 3});
    text.addAttribute(&TextAttributes::baselineOffset, std::nullopt, {0, 3});
    text.addAttributes({}, {0, 3});
    QCOMPARE(text.attributesAt(1), all);
}

void AttributedStringTest::ignoresRangesOutside_data()
{
    constexpr quint64 most = std::numeric_limits<quint64>::max();
    QTest::addColumn<quint64>("location");
    QTest::addColumn<quint64>("length");
    QTest::newRow("beyond the end") << quint64(4) << quint64(0);
    QTest::newRow("over the end") << quint64(2) << quint64(2);
    QTest::newRow("too long") << quint64(0) << quint64(4);
    QTest::newRow("nowhere") << kx::notFound << quint64(1);
    QTest::newRow("sum beyond 64 bits") << quint64(2) << most;
    QTest::newRow("all ones") << most << most;
}

void AttributedStringTest::ignoresRangesOutside()
{
    QFETCH(quint64, location);
    QFETCH(quint64, length);
    const TextRange range{location, length};
    const AttributedString original(u"abc"_qs, {.foregroundColor = Qt::red});
    MutableAttributedString text(original);
    text.addAttribute(&TextAttributes::backgroundColor, Qt::blue, range);
    text.addAttributes({.backgroundColor = Qt::blue}, range);
    text.removeAttribute(&TextAttributes::foregroundColor, range);
    text.deleteCharactersInRange(range);
    text.replaceCharactersInRange(range, AttributedString(u"x"_qs));
    if (location > 3)
        text.insertAttributedString(AttributedString(u"x"_qs), location);
    QCOMPARE(text.string(), u"abc"_qs);
    QCOMPARE(text.runs(), original.runs());
    QVERIFY(backgrounds(text, range).empty());
}

void AttributedStringTest::takesNothingFromItsNeighbours()
{
    MutableAttributedString text(AttributedString(u"ad"_qs, {.foregroundColor = Qt::red}));
    text.insertAttributedString(AttributedString(u"b"_qs), 1);
    text.insertAttributedString(AttributedString(u"c"_qs, {.backgroundColor = Qt::blue}), 2);
    text.appendAttributedString(AttributedString(u"e"_qs));
    QCOMPARE(text.string(), u"abcde"_qs);
    QCOMPARE(text.attributesAt(1), TextAttributes());
    QVERIFY(!text.attributesAt(2).foregroundColor);
    QVERIFY(bool(text.attributesAt(3).foregroundColor));
    QCOMPARE(text.attributesAt(4), TextAttributes());
    text.replaceCharactersInRange({1, 3}, AttributedString(u"-"_qs));
    QCOMPARE(text.string(), u"a-e"_qs);
    QCOMPARE(text.runs().size(), 2);
}

void AttributedStringTest::addsItselfToItself()
{
    MutableAttributedString text(AttributedString(u"ab"_qs));
    text.addAttribute(&TextAttributes::foregroundColor, Qt::red, {0, 1});
    text.insertAttributedString(text, 1);
    QCOMPARE(text.string(), u"aabb"_qs);
    QVERIFY(bool(text.attributesAt(1).foregroundColor));
    QVERIFY(!text.attributesAt(2).foregroundColor);
    text.setAttributedString(text);
    QCOMPARE(text.string(), u"aabb"_qs);
}

void AttributedStringTest::copiesStay()
{
    MutableAttributedString text(AttributedString(u"ab"_qs));
    const AttributedString copy = text;
    text.addAttribute(&TextAttributes::foregroundColor, Qt::red, {0, 1});
    text.appendAttributedString(AttributedString(u"c"_qs));
    QCOMPARE(copy.string(), u"ab"_qs);
    QCOMPARE(copy.runs().size(), 1);
    QVERIFY(!copy.attributesAt(0).foregroundColor);
}

void AttributedStringTest::splitsSurrogatesWhereTold()
{
    MutableAttributedString text(AttributedString(QString::fromUtf8("a😀b")));
    text.addAttribute(&TextAttributes::foregroundColor, Qt::red, {2, 1});
    QCOMPARE(text.length(), 4U);
    QCOMPARE(text.runs().size(), 3);
    QCOMPARE(text.rangeOfRun(1), (TextRange{2, 1}));
}

void AttributedStringTest::replacesAValueWithAnEqualOne()
{
    const kx::Color first = QColor(Qt::red);
    const kx::Color second = QColor(Qt::red);
    MutableAttributedString text(AttributedString(u"ab"_qs, {.foregroundColor = first}));
    text.addAttribute(&TextAttributes::foregroundColor, second, {0, 2});
    QVERIFY(text.attributesAt(0).foregroundColor == second);
}

void AttributedStringTest::enumeratesLongestParts()
{
    const kx::Color red = Qt::red;
    MutableAttributedString text(AttributedString(u"abcdef"_qs));
    text.addAttribute(&TextAttributes::backgroundColor, red, {1, 4});
    text.addAttribute(&TextAttributes::foregroundColor, Qt::blue, {2, 1}); // parts the runs, not the background
    QCOMPARE(backgrounds(text, {0, 6}), (std::vector<Part>{{0, 1, nullptr}, {1, 4, red}, {5, 1, nullptr}}));
}

void AttributedStringTest::enumeratesWithinTheRangeOnly()
{
    const kx::Color red = Qt::red;
    const AttributedString text(u"abcdef"_qs, {.backgroundColor = red});
    QCOMPARE(backgrounds(text, {2, 3}), (std::vector<Part>{{2, 3, red}}));
    QVERIFY(backgrounds(text, {2, 0}).empty());
    QVERIFY(backgrounds(text, {6, 0}).empty());
}

void AttributedStringTest::mergesEqualValuesOfDifferentObjects()
{
    const kx::Color first = QColor(Qt::red);
    const kx::Color second = QColor(Qt::red);
    MutableAttributedString text(AttributedString(u"abcd"_qs, {.backgroundColor = first}));
    text.addAttribute(&TextAttributes::backgroundColor, second, {2, 2});
    QCOMPARE(backgrounds(text, {0, 4}), (std::vector<Part>{{0, 4, first}}));
    QVERIFY(text.attributesAt(3).backgroundColor == second);
}

void AttributedStringTest::enumeratesAttachmentsByIdentity()
{
    const auto one = std::make_shared<kx::TextAttachment>();
    const auto two = std::make_shared<kx::TextAttachment>();
    MutableAttributedString text;
    for (const auto &attachment : {one, one, two})
        text.appendAttributedString(AttributedString(attachment));
    QList<quint64> lengths;
    text.enumerateAttribute(&TextAttributes::attachment, {0, 3},
        [&](const kx::TextAttachmentRef &, const TextRange &range) { lengths.append(range.length); });
    QCOMPARE(lengths, (QList<quint64>{2, 1}));
}

void AttributedStringTest::mayBeChangedWhileItIsEnumerated()
{
    MutableAttributedString text(AttributedString(u"abcd"_qs));
    text.addAttribute(&TextAttributes::backgroundColor, Qt::red, {1, 1});
    int parts = 0;
    text.enumerateAttribute(&TextAttributes::backgroundColor, {0, 4}, [&](const kx::Color &, const TextRange &) {
        ++parts;
        text.setAttributedString(AttributedString());
    });
    QCOMPARE(parts, 3);
}

void AttributedStringTest::agreesWithOneSetPerCharacter_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void AttributedStringTest::agreesWithOneSetPerCharacter()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto below = [&](quint64 limit) { return quint64(random.bounded(double(limit))); };
    const QList<kx::Color> colors{QColor(Qt::red), QColor(Qt::red), QColor(Qt::blue), nullptr};
    const QList<kx::Font> fonts{QFont(), QFont(u"DejaVu Serif"_qs), nullptr};
    const auto attributes = [&]() -> TextAttributes {
        return {.foregroundColor = colors.at(qsizetype(below(4))), .font = fonts.at(qsizetype(below(3)))};
    };

    MutableAttributedString text;
    NaiveString naive;
    for (int step = 0; step < 400; ++step) {
        // Now and then a range that is not within the text.
        const quint64 location = below(text.length() + 2);
        const TextRange range{location, below(text.length() - std::min(location, text.length()) + 2)};
        MutableAttributedString other(
            AttributedString(QString(qsizetype(below(5)), QChar(u'a' + step % 26)), attributes()));
        other.appendAttributedString(AttributedString(u"xy"_qs, attributes()));
        const kx::Color color = colors.at(qsizetype(below(4)));
        const auto change = [&](TextAttributes &present) {
            if (color)
                present.foregroundColor = color;
        };
        switch (below(7)) {
        case 0:
            text.addAttribute(&TextAttributes::foregroundColor, color, range);
            naive.change(range, change);
            break;
        case 1:
            text.addAttributes({.foregroundColor = color}, range);
            naive.change(range, change);
            break;
        case 2:
            text.removeAttribute(&TextAttributes::foregroundColor, range);
            naive.change(range, [](TextAttributes &present) { present.foregroundColor = nullptr; });
            break;
        case 3:
            text.replaceCharactersInRange(range, other);
            naive.replace(range, NaiveString::of(other));
            break;
        case 4:
            text.insertAttributedString(other, location);
            naive.replace({location, 0}, NaiveString::of(other));
            break;
        case 5:
            text.appendAttributedString(other);
            naive.replace({naive.characters.size(), 0}, NaiveString::of(other));
            break;
        default: text.deleteCharactersInRange(range); naive.replace(range, NaiveString());
        }
        QVERIFY(isNormal(text));
        QVERIFY(NaiveString::of(text).characters == naive.characters);

        quint64 next = 0;
        text.enumerateAttribute(
            &TextAttributes::foregroundColor, {0, text.length()}, [&](const kx::Color &value, const TextRange &part) {
                QCOMPARE(part.location, next);
                next += part.length;
                for (quint64 i = part.location; i < next; ++i)
                    QVERIFY(naive.characters[i].attributes.foregroundColor.sameValue(value));
                if (next < naive.characters.size())
                    QVERIFY(!naive.characters[next].attributes.foregroundColor.sameValue(value));
            });
        QCOMPARE(next, text.length());
    }
}

void AttributedStringTest::thousandsOfRunsAreQuick()
{
    constexpr int count = 20000;
    const kx::Color red = Qt::red;
    MutableAttributedString text;
    for (int i = 0; i < count; ++i)
        text.appendAttributedString(AttributedString(u"run "_qs, {.baselineOffset = i}));
    QCOMPARE(text.runs().size(), count);
    for (quint64 i = 0; i < count; ++i)
        QCOMPARE(text.attributesAt(4 * i + 3).baselineOffset, double(i));
    text.addAttribute(&TextAttributes::backgroundColor, red, {0, text.length()});
    QCOMPARE(backgrounds(text, {0, text.length()}), (std::vector<Part>{{0, 4 * count, red}}));
    // What takes time with the square of the number would not end within the test's limit.
    for (int i = 0; i < count; ++i)
        text.deleteCharactersInRange({text.length() - 4, 4});
    QCOMPARE(text.length(), 0U);
}

QTEST_MAIN(AttributedStringTest)
#include "AttributedStringTest.moc"
