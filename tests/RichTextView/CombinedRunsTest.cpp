// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/CombinedRuns.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>

#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

using kx::AttributedString;
using kx::TextAttributes;
using kx::TextRange;
using Run = std::shared_ptr<KXAttributedString>;

Run run(const QString &text)
{
    return std::make_shared<KXAttributedString>(text);
}

QList<TextRange> backgrounds(const _KXAttributedItem &item)
{
    QList<TextRange> ranges;
    const auto items = item.bgRangArr().value_or(QList<_KXOtherAttributedItem>());
    for (const _KXOtherAttributedItem &background : items)
        ranges.append(background.bgColorRange());
    return ranges;
}

kx::Image dot()
{
    QImage image(2, 3, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    return image;
}

} // namespace

class CombinedRunsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void nothingMakesAnEmptyText();
    void recordsEachRunsPlaceAndBackgrounds();
    void recordsEachColorApart();
    void joinsEqualColors();
    void recordsEmptyRuns();
    void leavesOutRunsThatAreNone();
    void recordsARunForEachPlaceItIsIn();
    void countsIn32Bits_data();
    void countsIn32Bits();
    void wrapsTheImagesOfTheRunsOwnAttachments();
};

void CombinedRunsTest::nothingMakesAnEmptyText()
{
    const CombinedRuns nothing = combined({});
    QCOMPARE(nothing.text.length(), 0U);
    QVERIFY(nothing.items.isEmpty());
}

void CombinedRunsTest::recordsEachRunsPlaceAndBackgrounds()
{
    const Run first = run(u"ab"_qs);
    const Run second = run(u"cd"_qs);
    second->addAttribute(&TextAttributes::backgroundColor, Qt::red, {1, 1});
    const CombinedRuns both = combined({first, second});
    QCOMPARE(both.text.string(), u"abcd"_qs);
    QVERIFY(!both.text.attributesAt(2).backgroundColor);
    QVERIFY(bool(both.text.attributesAt(3).backgroundColor));
    QCOMPARE(both.items.size(), 2);
    QCOMPARE(both.items.at(0).kxas(), first);
    QCOMPARE(both.items.at(0).range(), (TextRange{0, 2}));
    QVERIFY(!both.items.at(0).bgRangArr());
    QCOMPARE(both.items.at(1).kxas(), second);
    QCOMPARE(both.items.at(1).range(), (TextRange{2, 2}));
    QCOMPARE(backgrounds(both.items.at(1)), (QList<TextRange>{{3, 1}}));
}

void CombinedRunsTest::recordsEachColorApart()
{
    const Run striped = run(u"abcd"_qs);
    striped->addAttribute(&TextAttributes::backgroundColor, Qt::red, {0, 2});
    striped->addAttribute(&TextAttributes::backgroundColor, Qt::blue, {2, 2});
    const CombinedRuns both = combined({run(u"-"_qs), striped});
    QCOMPARE(backgrounds(both.items.at(1)), (QList<TextRange>{{1, 2}, {3, 2}}));
}

void CombinedRunsTest::joinsEqualColors()
{
    const Run plain = run(u"abcd"_qs);
    plain->addAttribute(&TextAttributes::backgroundColor, QColor(Qt::red), {0, 2});
    plain->addAttribute(&TextAttributes::backgroundColor, QColor(Qt::red), {2, 2});
    plain->addAttribute(&TextAttributes::foregroundColor, Qt::blue, {1, 2});
    QCOMPARE(backgrounds(combined({plain}).items.at(0)), (QList<TextRange>{{0, 4}}));
}

void CombinedRunsTest::recordsEmptyRuns()
{
    const Run empty = run(u""_qs);
    empty->setBackgroundColor(Qt::red);
    const CombinedRuns all = combined({run(u"ab"_qs), empty, run(u"c"_qs)});
    QCOMPARE(all.items.at(1).range(), (TextRange{2, 0}));
    QVERIFY(!all.items.at(1).bgRangArr());
    QCOMPARE(all.items.at(2).range(), (TextRange{2, 1}));
}

void CombinedRunsTest::leavesOutRunsThatAreNone()
{
    const CombinedRuns all = combined({nullptr, run(u"ab"_qs), nullptr});
    QCOMPARE(all.text.string(), u"ab"_qs);
    QCOMPARE(all.items.size(), 1);
}

void CombinedRunsTest::recordsARunForEachPlaceItIsIn()
{
    const Run twice = run(u"ab"_qs);
    const CombinedRuns both = combined({twice, twice});
    QCOMPARE(both.text.string(), u"abab"_qs);
    QCOMPARE(both.items.at(1).range(), (TextRange{2, 2}));
    QCOMPARE(both.items.at(1).kxas(), twice);
}

void CombinedRunsTest::countsIn32Bits_data()
{
    constexpr qint32 largest = std::numeric_limits<qint32>::max();
    constexpr qint32 least = std::numeric_limits<qint32>::min();
    QTest::addColumn<qint32>("location");
    QTest::addColumn<quint64>("length");
    QTest::addColumn<qint32>("after");
    QTest::newRow("small") << 2 << quint64(3) << 5;
    QTest::newRow("up to the largest") << largest - 1 << quint64(1) << largest;
    QTest::newRow("beyond it") << largest << quint64(1) << least;
    QTest::newRow("once around") << 7 << (quint64(1) << 32) << 7;
    QTest::newRow("from a negative one") << -1 << quint64(3) << 2;
}

void CombinedRunsTest::countsIn32Bits()
{
    QFETCH(qint32, location);
    QFETCH(quint64, length);
    QTEST(locationAfter(location, length), "after");
}

void CombinedRunsTest::wrapsTheImagesOfTheRunsOwnAttachments()
{
    const kx::Image image = dot();
    const auto attachment = std::make_shared<kx::TextAttachment>(image);
    const auto shown = std::make_shared<KXAttributedString>(AttributedString(attachment));
    const CombinedRuns first = combined({shown});
    QCOMPARE(first.text.attributesAt(0).attachment, attachment);
    const kx::Image wrapper = attachment->image();
    QVERIFY(wrapper != image);
    QVERIFY(wrapper.isFlipped());
    QCOMPARE(wrapper.size(), image.size());
    QCOMPARE(wrapper.toQImage(1), image.toQImage(1));
    (void)combined({shown});
    QVERIFY(attachment->image() != wrapper);
    QCOMPARE(attachment->image().toQImage(1), image.toQImage(1));
}

QTEST_MAIN(CombinedRunsTest)
#include "CombinedRunsTest.moc"
