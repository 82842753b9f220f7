// SPDX-License-Identifier: MIT
#include "LaidOutText.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QTextBoundaryFinder>
#include <QtGui/QFontMetricsF>
#include <QtTest/QTest>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using kx::AttributedString;
using kx::MutableAttributedString;
using kx::TextAttributes;
using kx::TextRange;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double tolerance = 0.1;

double advance(const QString &text, const QFont &font = LaidOutText::font())
{
    return QFontMetricsF(font).horizontalAdvance(text);
}

double lineHeight(int pixels = 20)
{
    const QFontMetricsF metrics(LaidOutText::font(pixels));
    return std::ceil(metrics.ascent()) + std::ceil(metrics.descent() + metrics.leading());
}

bool isClose(double a, double b)
{
    return qAbs(a - b) <= tolerance;
}

MutableAttributedString colored(const QStringList &runs)
{
    MutableAttributedString text;
    int number = 0;
    for (const QString &run : runs)
        text.appendAttributedString(
            AttributedString(run, {.foregroundColor = QColor::fromHsv(++number * 7 % 360, 255, 200)}));
    return text;
}

AttributedString image(const QSizeF &size, const QRectF &bounds = {}, double baselineOffset = 0)
{
    const auto attachment = std::make_shared<kx::TextAttachment>(
        kx::Image::imageWithSize(size, false, [](QPainter &, const QRectF &) { return true; }));
    attachment->setBounds(bounds);
    return AttributedString(
        QString(kx::attachmentCharacter), TextAttributes{.attachment = attachment, .baselineOffset = baselineOffset});
}

AttributedString styled(const QString &text, kx::TextAlignment alignment, kx::LineBreakMode mode)
{
    return AttributedString(text, {.paragraphStyle = kx::ParagraphStyle{alignment, mode}});
}

} // namespace

class LayoutManagerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void anEmptyTextIsOneLineHigh();
    void aLineIsAsWideAsItsText();
    void countsSpacesAtTheEnd();
    void linesEndWhereTheTextSaysSo_data();
    void linesEndWhereTheTextSaysSo();
    void everyLineStartsAtTheLeft_data();
    void everyLineStartsAtTheLeft();
    void aLineIsAsHighAsItsTallestFont();
    void marksDoNotRaiseTheLine();
    void anEmptyLineHasTheFontOfItsEnd();
    void neighboursMeet_data();
    void neighboursMeet();
    void aRangeOverSeveralLinesCoversThemAll();
    void placesCharactersThatRunRightToLeft();
    void givesEachPartOfMixedDirections();
    void partsALigature();
    void partsGlyphsEvenly_data();
    void partsGlyphsEvenly();
    void charactersFillTheirLine_data();
    void charactersFillTheirLine();
    void doesNotJoinLettersOfDifferentRuns();
    void keepsASurrogatePairTogether();
    void measuresTabs();
    void rangesWithoutWidthStandAtTheCaret();
    void cutsRanges_data();
    void cutsRanges();
    void laysOutAttachments();
    void placesAttachmentsByTheirBounds();
    void survivesAttachmentsWithoutSize();
    void anAttachmentCharacterAloneTakesNoRoom();
    void raisesTheLineForABaselineOffset();
    void survivesOffsetsThatAreNone();
    void followsItsStorageAndItsDefaultFont();
    void knowsItsGlyphs();
    void findsTheCharacterAtAPoint();
    void aLineOfManyRunsIsLaidOutAsOneOfFew();
    void manyRunsAreQuick_data();
    void manyRunsAreQuick();
    void breaksLines_data();
    void breaksLines();
    void alignsLines_data();
    void alignsLines();
    void truncates_data();
    void truncates();
    void truncatesBetweenGraphemes();
    void survivesOddWidths_data();
    void survivesOddWidths();
};

void LayoutManagerTest::anEmptyTextIsOneLineHigh()
{
    LaidOutText text(u""_qs);
    QCOMPARE(text.manager.usedRect(), QRectF(0, 0, 0, lineHeight()));
    QCOMPARE(text.rectOf(0, 0), QRectF(0, 0, 0, lineHeight()));
    QVERIFY(LaidOutText(QString()).manager.usedRect().height() > 0);
}

void LayoutManagerTest::aLineIsAsWideAsItsText()
{
    LaidOutText text(u"Plain text"_qs);
    const QRectF used = text.manager.usedRect();
    QCOMPARE(used.topLeft(), QPointF(0, 0));
    QVERIFY(isClose(used.width(), advance(u"Plain text"_qs)));
    QCOMPARE(used.height(), lineHeight());
    QVERIFY(isClose(text.rectOf(0, 10).width(), used.width()));
}

void LayoutManagerTest::countsSpacesAtTheEnd()
{
    QVERIFY(isClose(LaidOutText(u"a   "_qs).manager.usedRect().width(), advance(u"a   "_qs)));
}

void LayoutManagerTest::linesEndWhereTheTextSaysSo_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("lines");
    QTest::newRow("none") << u"a b"_qs << 1;
    QTest::newRow("line feed") << u"a\nb"_qs << 2;
    QTest::newRow("carriage return") << u"a\rb"_qs << 2;
    QTest::newRow("both are one") << u"a\r\nb"_qs << 2;
    QTest::newRow("the other way round they are two") << u"a\n\rb"_qs << 3;
    QTest::newRow("next line") << u"a\u0085b"_qs << 2;
    QTest::newRow("line separator") << u"a\u2028b"_qs << 2;
    QTest::newRow("paragraph separator") << u"a\u2029b"_qs << 2;
    QTest::newRow("an empty line") << u"a\n\nb"_qs << 3;
    QTest::newRow("at the start") << u"\na"_qs << 2;
    QTest::newRow("at the end") << u"a\n"_qs << 2;
    QTest::newRow("alone") << u"\n"_qs << 2;
    QTest::newRow("pair at the end") << u"a\r\n"_qs << 2;
}

void LayoutManagerTest::linesEndWhereTheTextSaysSo()
{
    QFETCH(QString, text);
    QFETCH(int, lines);
    LaidOutText laidOut(text);
    QCOMPARE(laidOut.manager.usedRect().height(), lines * lineHeight());
    const auto end = quint64(text.size());
    QCOMPARE(laidOut.rectOf(end, 0).top(), (lines - 1) * lineHeight());
    QCOMPARE(laidOut.rectOf(0, end).bottom(), laidOut.rectOf(end - 1, 1).bottom());
}

void LayoutManagerTest::everyLineStartsAtTheLeft_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("left to right") << u"abc\nd"_qs;
    QTest::newRow("right to left") << QString::fromUtf8("אבג\nד");
    QTest::newRow("right to left, space at the end") << QString::fromUtf8("אבג \nד ");
    QTest::newRow("arabic") << QString::fromUtf8("سلام\nس");
    QTest::newRow("each its own") << QString::fromUtf8("abc\nאבגד\nx");
}

void LayoutManagerTest::everyLineStartsAtTheLeft()
{
    QFETCH(QString, text);
    LaidOutText laidOut(text);
    QCOMPARE(laidOut.manager.usedRect().left(), 0.0);
    const QStringList lines = text.split(u'\n');
    quint64 start = 0;
    for (const QString &line : lines) {
        const QRectF rect = laidOut.rectOf(start, quint64(line.size()));
        QVERIFY(isClose(rect.left(), 0));
        QVERIFY(isClose(rect.width(), advance(line)));
        start += quint64(line.size()) + 1;
    }
}

void LayoutManagerTest::aLineIsAsHighAsItsTallestFont()
{
    MutableAttributedString string(AttributedString(u"small"_qs));
    string.appendAttributedString(AttributedString(u"tall"_qs, {.font = LaidOutText::font(40)}));
    string.appendAttributedString(AttributedString(u"\nsmall"_qs));
    LaidOutText text(string);
    QCOMPARE(text.manager.usedRect().height(), lineHeight(40) + lineHeight());
    QCOMPARE(text.rectOf(0, 1).height(), lineHeight(40));
    QCOMPARE(text.rectOf(10, 1), QRectF(0, lineHeight(40), text.rectOf(10, 1).width(), lineHeight()));
    QVERIFY(isClose(text.rectOf(5, 4).width(), advance(u"tall"_qs, LaidOutText::font(40))));
}

void LayoutManagerTest::marksDoNotRaiseTheLine()
{
    for (const char *marked : {"q\u0301", "q\u0301\u0302", "q\u0323", "שָׁ"})
        QCOMPARE(LaidOutText(QString::fromUtf8(marked)).manager.usedRect().height(), lineHeight());
}

void LayoutManagerTest::anEmptyLineHasTheFontOfItsEnd()
{
    const TextAttributes tall{.font = LaidOutText::font(40)};
    MutableAttributedString string(AttributedString(u"a\n"_qs));
    string.appendAttributedString(AttributedString(u"\n"_qs, tall));
    QCOMPARE(LaidOutText(string).manager.usedRect().height(), lineHeight() + 2 * lineHeight(40));
    QCOMPARE(LaidOutText(AttributedString(u"a\n"_qs, tall)).manager.usedRect().height(), 2 * lineHeight(40));
}

void LayoutManagerTest::neighboursMeet_data()
{
    QTest::addColumn<QString>("string");
    QTest::newRow("latin") << u"Two words"_qs;
    QTest::newRow("ligature") << u"fi ffi fl"_qs;
    QTest::newRow("marks") << QString::fromUtf8("e\u0301a\u0308");
    QTest::newRow("emoji") << QString::fromUtf8("a😀b😀😀");
    QTest::newRow("scripts") << QString::fromUtf8("aбγ");
}

void LayoutManagerTest::neighboursMeet()
{
    QFETCH(QString, string);
    LaidOutText text(string);
    const double end = text.manager.usedRect().right();
    for (quint64 i = 0; i <= quint64(string.size()); ++i) {
        const QRectF before = text.rectOf(0, i);
        const QRectF after = text.rectOf(i, quint64(string.size()) - i);
        QVERIFY(isClose(before.right(), after.left()) || before.right() > after.left()); // marks share their letter
        QVERIFY(isClose(before.left(), 0));
        QVERIFY(isClose(after.right(), end));
    }
}

void LayoutManagerTest::aRangeOverSeveralLinesCoversThemAll()
{
    LaidOutText text(u"one\ntwo and more\nthree"_qs);
    const QRectF rect = text.rectOf(2, 16);
    QCOMPARE(rect.top(), 0.0);
    QCOMPARE(rect.bottom(), 3 * lineHeight());
    QCOMPARE(rect.left(), 0.0);
    QVERIFY(isClose(rect.right(), advance(u"two and more"_qs)));
    QCOMPARE(text.manager.rectsForGlyphRange({2, 16}).size(), 3);
}

void LayoutManagerTest::placesCharactersThatRunRightToLeft()
{
    const QString letters = QString::fromUtf8("אבג");
    LaidOutText text(u"ab"_qs + letters + u"cd"_qs);
    const double start = advance(u"ab"_qs);
    const double end = start + advance(letters);
    const QRectF first = text.rectOf(2, 1);
    const QRectF last = text.rectOf(4, 1);
    QVERIFY(isClose(first.right(), end));
    QVERIFY(isClose(first.width(), advance(letters.first(1))));
    QVERIFY(isClose(last.left(), start));
    QVERIFY(isClose(text.rectOf(2, 3).left(), start));
    QVERIFY(isClose(text.rectOf(2, 3).right(), end));
    QVERIFY(isClose(text.rectOf(5, 1).left(), end));
    QVERIFY(text.rectOf(3, 1).right() < first.left() + tolerance);
}

void LayoutManagerTest::givesEachPartOfMixedDirections()
{
    LaidOutText text(QString::fromUtf8("abאבגcd"));
    const QList<QRectF> rects = text.manager.rectsForGlyphRange({1, 2}); // "b" and the rightmost letter
    QCOMPARE(rects.size(), 2);
    QVERIFY(isClose(rects.at(0).right(), advance(u"ab"_qs)));
    QVERIFY(rects.at(1).left() > rects.at(0).right() + tolerance);
    QCOMPARE(text.manager.rectsForGlyphRange({0, 7}).size(), 1);
}

void LayoutManagerTest::partsALigature()
{
    LaidOutText text(u"fi"_qs);
    QVERIFY(isClose(text.rectOf(0, 1).width(), text.rectOf(1, 1).width()));
    QVERIFY(isClose(text.rectOf(0, 1).right(), text.rectOf(1, 1).left()));
}

void LayoutManagerTest::partsGlyphsEvenly_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("glyph"); // one for several characters
    QTest::addColumn<QList<int>>("carets"); // the characters of it that can be meant
    const QString family = QString::fromUtf8("👨‍👩‍👧");
    QTest::newRow("two letters") << u"a"_qs << u"fi"_qs << QList<int>{0, 1};
    QTest::newRow("three letters") << u"a"_qs << u"ffi"_qs << QList<int>{0, 1, 2};
    QTest::newRow("first in the line") << u""_qs << u"ffl"_qs << QList<int>{0, 1, 2};
    QTest::newRow("right to left") << QString::fromUtf8("ب") << QString::fromUtf8("لا") << QList<int>{0, 1};
    QTest::newRow("surrogates") << u"a"_qs << QString::fromUtf8("😀") << QList<int>{0};
    QTest::newRow("a mark") << u"a"_qs << QString::fromUtf8("e\u0301") << QList<int>{0};
    QTest::newRow("two marks") << u"a"_qs << QString::fromUtf8("q\u0301\u0302") << QList<int>{0};
    QTest::newRow("two marks, right to left") << QString::fromUtf8("ב") << QString::fromUtf8("שָׁ") << QList<int>{0};
    QTest::newRow("joined pictures") << u"a"_qs << family << QList<int>{0};
}

void LayoutManagerTest::partsGlyphsEvenly()
{
    QFETCH(QString, before);
    QFETCH(QString, glyph);
    QFETCH(QList<int>, carets);
    const bool rightToLeft = glyph.isRightToLeft();
    LaidOutText text(before + glyph + before);
    const auto start = quint64(before.size());
    const auto length = quint64(glyph.size());
    const QRectF whole = text.rectOf(start, length);
    const double each = whole.width() / double(length);
    for (quint64 i = 0; i < length; ++i) {
        const QRectF part = text.rectOf(start + i, 1);
        QVERIFY(isClose(part.width(), each));
        const double shift = each * double(i);
        QVERIFY(isClose(part.left(), rightToLeft ? whole.right() - shift - each : whole.left() + shift));
        QVERIFY(isClose(text.rectOf(0, start + i).width(), text.rectOf(0, start).width() + shift));
        QVERIFY(isClose(text.rectOf(start + i, 2 * start + length).width(),
            text.manager.usedRect().width() - text.rectOf(0, start).width() - shift));
        const auto meant = std::find_if(carets.rbegin(), carets.rend(), [&](int caret) { return caret <= int(i); });
        QCOMPARE(text.manager.characterIndexForPoint(part.center()), start + quint64(*meant));
    }
}

void LayoutManagerTest::charactersFillTheirLine_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 100; ++seed)
        QTest::addRow("%u", seed) << seed;
}

// Whatever is mixed: they lie side by side, without gaps and overlaps, and each is found where it is.
void LayoutManagerTest::charactersFillTheirLine()
{
    QFETCH(quint32, seed);
    static const char *const samples[] = {"a", "ffi", "fl", "W", " ", "1", "-", "(", "שלום", "שָׁ", "بلا", "ع", "😀",
        "👨‍👩‍👧", "q\u0301\u0302", "❤️", "\u200F"};
    QRandomGenerator random(seed);
    MutableAttributedString string;
    for (int i = 0; i < 12; ++i) {
        const QString sample = QString::fromUtf8(samples[random.bounded(int(std::size(samples)))]);
        string.appendAttributedString(AttributedString(
            sample, {.foregroundColor = random.bounded(3) == 0 ? kx::Color(QColor(Qt::red)) : kx::Color()}));
    }
    LaidOutText text(string);
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, string.string());
    QList<QRectF> places;
    quint64 meant = 0; // the start of the grapheme
    for (quint64 i = 0; i < string.length(); ++i) {
        const QList<QRectF> parts = text.manager.rectsForGlyphRange({i, 1});
        QCOMPARE(parts.size(), 1);
        const QRectF place = parts.first();
        QVERIFY(place.width() >= 0);
        places.append(place);
        graphemes.setPosition(qsizetype(i));
        meant = graphemes.isAtBoundary() ? i : meant;
        if (place.width() > 1)
            QCOMPARE(text.manager.characterIndexForPoint(place.center()), meant);
    }
    std::sort(places.begin(), places.end(), [](const QRectF &a, const QRectF &b) {
        return a.left() != b.left() ? a.left() < b.left() : a.right() < b.right();
    });
    QCOMPARE(places.first().left(), 0.0);
    for (qsizetype i = 1; i < places.size(); ++i)
        QVERIFY(isClose(places.at(i - 1).right(), places.at(i).left()));
    const double overhang = text.manager.usedRect().right() - places.last().right(); // of the last letter
    QVERIFY(overhang > -tolerance && overhang < 3);
}

void LayoutManagerTest::doesNotJoinLettersOfDifferentRuns()
{
    LaidOutText text(colored({u"f"_qs, u"i"_qs}));
    QVERIFY(isClose(text.rectOf(0, 1).width(), advance(u"f"_qs)));
    QVERIFY(isClose(text.rectOf(1, 1).width(), advance(u"i"_qs)));
    // Also where the runs differ in what Qt's layout does not know.
    MutableAttributedString offset(AttributedString(u"fi"_qs));
    offset.addAttribute(&TextAttributes::baselineOffset, 3, {1, 1});
    QVERIFY(isClose(LaidOutText(offset).rectOf(1, 1).width(), advance(u"i"_qs)));
}

void LayoutManagerTest::keepsASurrogatePairTogether()
{
    const QString face = QString::fromUtf8("😀");
    LaidOutText text(u"a"_qs + face);
    QVERIFY(isClose(text.rectOf(1, 2).width(), advance(face)));
    QVERIFY(text.rectOf(1, 1).width() > 0);
    QVERIFY(isClose(text.rectOf(1, 1).right(), text.rectOf(2, 1).left()));
    MutableAttributedString parted(AttributedString(u"a"_qs + face));
    parted.addAttribute(&TextAttributes::foregroundColor, Qt::red, {2, 1});
    QVERIFY(std::isfinite(LaidOutText(parted).manager.usedRect().width()));
}

void LayoutManagerTest::measuresTabs()
{
    LaidOutText text(u"a\tb"_qs);
    QVERIFY(isClose(text.rectOf(1, 1).left(), advance(u"a"_qs)));
    QVERIFY(text.rectOf(1, 1).width() > 1);
    QVERIFY(isClose(text.rectOf(1, 1).right(), text.rectOf(2, 1).left()));
}

void LayoutManagerTest::rangesWithoutWidthStandAtTheCaret()
{
    LaidOutText text(QString::fromUtf8("ab\nאב"));
    QCOMPARE(text.rectOf(0, 0), QRectF(0, 0, 0, lineHeight()));
    QVERIFY(isClose(text.rectOf(1, 0).left(), advance(u"a"_qs)));
    const QRectF lineEnd = text.rectOf(2, 1);
    QVERIFY(isClose(lineEnd.left(), advance(u"ab"_qs)));
    QCOMPARE(lineEnd.width(), 0.0);
    const double right = text.rectOf(3, 2).right();
    QVERIFY(isClose(text.rectOf(3, 0).left(), right)); // before the first letter, which is the rightmost
    QVERIFY(isClose(text.rectOf(4, 0).left(), text.rectOf(3, 1).left()));
    QVERIFY(isClose(text.rectOf(5, 0).left(), 0));
}

void LayoutManagerTest::cutsRanges_data()
{
    constexpr quint64 most = std::numeric_limits<quint64>::max();
    QTest::addColumn<quint64>("location");
    QTest::addColumn<quint64>("length");
    QTest::addColumn<quint64>("cutLocation");
    QTest::addColumn<quint64>("cutLength");
    QTest::newRow("over the end") << quint64(2) << quint64(9) << quint64(2) << quint64(2);
    QTest::newRow("everything and more") << quint64(0) << most << quint64(0) << quint64(4);
    QTest::newRow("sum beyond 64 bits") << quint64(1) << most << quint64(1) << quint64(3);
    QTest::newRow("beyond the end") << quint64(5) << quint64(1) << quint64(4) << quint64(0);
    QTest::newRow("nowhere") << kx::notFound << quint64(1) << quint64(4) << quint64(0);
    QTest::newRow("all ones") << most << most << quint64(4) << quint64(0);
}

void LayoutManagerTest::cutsRanges()
{
    QFETCH(quint64, location);
    QFETCH(quint64, length);
    QFETCH(quint64, cutLocation);
    QFETCH(quint64, cutLength);
    LaidOutText text(u"abcd"_qs);
    QCOMPARE(text.rectOf(location, length), text.rectOf(cutLocation, cutLength));
    QCOMPARE(
        text.drawnRange({location, length}, QSize(80, 30)), text.drawnRange({cutLocation, cutLength}, QSize(80, 30)));
}

void LayoutManagerTest::laysOutAttachments()
{
    MutableAttributedString string(AttributedString(u"a"_qs));
    string.appendAttributedString(image({33, 50}));
    string.appendAttributedString(AttributedString(u"b"_qs));
    LaidOutText text(string);
    const double start = advance(u"a"_qs);
    QVERIFY(isClose(text.rectOf(1, 1).left(), start));
    QVERIFY(isClose(text.rectOf(1, 1).width(), 33));
    QVERIFY(isClose(text.rectOf(2, 1).left(), start + 33));
    const double descent = std::ceil(QFontMetricsF(LaidOutText::font()).descent());
    QCOMPARE(text.manager.usedRect().height(), 50 + descent);
}

void LayoutManagerTest::placesAttachmentsByTheirBounds()
{
    const QFontMetricsF metrics(LaidOutText::font());
    LaidOutText hanging(image({10, 10}, QRectF(0, -30, 20, 40)));
    QVERIFY(isClose(hanging.rectOf(0, 1).width(), 20));
    QCOMPARE(hanging.manager.usedRect().height(), std::ceil(metrics.ascent()) + 30);
    LaidOutText raised(image({10, 10}, QRectF(0, 0, 20, 40), 5));
    QCOMPARE(raised.manager.usedRect().height(), 45 + std::ceil(metrics.descent()));
}

void LayoutManagerTest::survivesAttachmentsWithoutSize()
{
    const QRectF odd[] = {
        QRectF(0, 0, -5, -5), QRectF(notANumber, notANumber, notANumber, notANumber), QRectF(0, infinite, 5, 5)};
    for (const QRectF &bounds : odd) {
        LaidOutText text(image({0, 0}, bounds));
        QVERIFY(std::isfinite(text.manager.usedRect().width()));
        QVERIFY(std::isfinite(text.manager.usedRect().height()));
        QVERIFY(text.manager.usedRect().width() <= 5 + tolerance);
    }
    QVERIFY(
        isClose(LaidOutText(AttributedString(std::make_shared<kx::TextAttachment>())).manager.usedRect().width(), 0));
}

void LayoutManagerTest::anAttachmentCharacterAloneTakesNoRoom()
{
    LaidOutText text(u"a\uFFFCb"_qs);
    QVERIFY(isClose(text.manager.usedRect().width(), advance(u"a"_qs) + advance(u"b"_qs)));
    QVERIFY(isClose(text.rectOf(2, 1).left(), advance(u"a"_qs)));
}

void LayoutManagerTest::raisesTheLineForABaselineOffset()
{
    MutableAttributedString string(AttributedString(u"ab"_qs));
    string.addAttribute(&TextAttributes::baselineOffset, 10, {1, 1});
    QCOMPARE(LaidOutText(string).manager.usedRect().height(), lineHeight() + 10);
    string.addAttribute(&TextAttributes::baselineOffset, -10, {1, 1});
    QCOMPARE(LaidOutText(string).manager.usedRect().height(), lineHeight() + 10);
}

void LayoutManagerTest::survivesOffsetsThatAreNone()
{
    for (const double offset : {notANumber, infinite, -infinite})
        QCOMPARE(LaidOutText(AttributedString(u"a"_qs, {.baselineOffset = offset})).manager.usedRect().height(),
            lineHeight());
    QVERIFY(
        std::isfinite(LaidOutText(AttributedString(u"a"_qs, {.baselineOffset = 1e300})).manager.usedRect().height()));
}

void LayoutManagerTest::followsItsStorageAndItsDefaultFont()
{
    LaidOutText text(u"a"_qs);
    QVERIFY(isClose(text.manager.usedRect().width(), advance(u"a"_qs)));
    text.storage.setAttributedString(AttributedString(u"abc"_qs));
    QVERIFY(isClose(text.manager.usedRect().width(), advance(u"abc"_qs)));
    text.manager.setDefaultFont(LaidOutText::font(40));
    QVERIFY(isClose(text.manager.usedRect().width(), advance(u"abc"_qs, LaidOutText::font(40))));
    text.container.setWidth(advance(u"ab"_qs, LaidOutText::font(40)) + 1);
    QCOMPARE(text.manager.usedRect().height(), 2 * lineHeight(40));
}

void LayoutManagerTest::knowsItsGlyphs()
{
    QCOMPARE(LaidOutText(u"a\nb"_qs).manager.glyphRange(), (TextRange{0, 3}));
    QCOMPARE(LaidOutText(u""_qs).manager.glyphRange(), (TextRange{kx::notFound, 0}));
}

void LayoutManagerTest::findsTheCharacterAtAPoint()
{
    const QString string = QString::fromUtf8("abאבג\n\nx");
    LaidOutText text(string);
    const auto at = [&](const QPointF &point) { return text.manager.characterIndexForPoint(point); };
    for (const quint64 i : {0, 1, 2, 3, 4, 7})
        QCOMPARE(at(text.rectOf(i, 1).center()), i);
    QCOMPARE(at({-50, 5}), 0U);
    QCOMPARE(at({500, 5}), 2U); // the rightmost letter
    QCOMPARE(at({5, lineHeight() + 5}), 6U);
    QCOMPARE(at({5, -1}), kx::notFound);
    QCOMPARE(at({5, 3 * lineHeight()}), kx::notFound);
    QCOMPARE(at({notANumber, notANumber}), kx::notFound);
    LaidOutText withImage(image({40, 10}));
    QCOMPARE(withImage.manager.characterIndexForPoint({39, 5}), 0U);
}

void LayoutManagerTest::aLineOfManyRunsIsLaidOutAsOneOfFew()
{
    QStringList runs;
    for (int i = 0; i < 300; ++i)
        runs.append(QString::number(i * 7919));
    LaidOutText text(colored(runs));
    double left = 0;
    quint64 start = 0;
    for (const QString &run : std::as_const(runs)) {
        const QRectF rect = text.rectOf(start, quint64(run.size()));
        QVERIFY(isClose(rect.left(), left));
        QVERIFY(isClose(rect.width(), advance(run)));
        left = rect.right();
        start += quint64(run.size());
    }
    QCOMPARE(text.manager.usedRect().height(), lineHeight());
    QVERIFY(isClose(text.manager.usedRect().width(), left));
    // Where directions mix, the line is ordered as a whole.
    runs.prepend(QString::fromUtf8("א"));
    LaidOutText mixed(colored(runs));
    QVERIFY(mixed.rectOf(0, 1).left() > mixed.rectOf(1, 1).right());
}

void LayoutManagerTest::manyRunsAreQuick_data()
{
    QTest::addColumn<QString>("run");
    QTest::newRow("in one line") << u"words and "_qs;
    QTest::newRow("a line for each") << u"words and\n"_qs;
    QTest::newRow("emoji in one line") << QString::fromUtf8("words 😀 ");
}

void LayoutManagerTest::manyRunsAreQuick()
{
    QFETCH(QString, run);
    const auto timeFor = [&](int count) {
        LaidOutText text(colored(QStringList(count, run)));
        const std::clock_t start = std::clock(); // processor time: other processes do not count
        (void)text.manager.usedRect();
        return std::clock() - start;
    };
    (void)timeFor(500); // loads what is loaded once
    const auto some = timeFor(500);
    const auto many = timeFor(8000);
    // 16 times the work; what grows with the square takes 256 times as long.
    QVERIFY2(many < 80 * some, qPrintable(u"%1 ticks, then %2"_qs.arg(some).arg(many)));
}

void LayoutManagerTest::breaksLines_data()
{
    QTest::addColumn<kx::LineBreakMode>("mode");
    QTest::addColumn<int>("lines");
    QTest::newRow("words") << kx::LineBreakMode::WordWrapping << 2;
    QTest::newRow("characters") << kx::LineBreakMode::CharWrapping << 2;
    QTest::newRow("not at all") << kx::LineBreakMode::Clipping << 1;
}

void LayoutManagerTest::breaksLines()
{
    QFETCH(kx::LineBreakMode, mode);
    QFETCH(int, lines);
    const QString string = u"some words that go on"_qs;
    LaidOutText text(styled(string, kx::TextAlignment::Left, mode));
    const double width = advance(u"some words"_qs) + 2;
    text.container.setWidth(width);
    const QRectF used = text.manager.usedRect();
    QCOMPARE(used.height(), lines * lineHeight());
    QCOMPARE(used.width() <= width, lines > 1);
    // Every character is in a line, in order.
    double top = 0;
    for (quint64 i = 0; i < quint64(string.size()); ++i) {
        QVERIFY(text.rectOf(i, 1).top() >= top);
        QVERIFY(text.rectOf(i, 1).width() > 0 || string.at(qsizetype(i)) == u' ');
        top = text.rectOf(i, 1).top();
    }
    QCOMPARE(text.rectOf(0, 10).bottom(), lineHeight());
}

void LayoutManagerTest::alignsLines_data()
{
    QTest::addColumn<QString>("string");
    QTest::addColumn<kx::TextAlignment>("alignment");
    QTest::addColumn<double>("place"); // the share of the free room that is at the left
    const QString hebrew = QString::fromUtf8("אבג");
    QTest::newRow("left") << u"abc"_qs << kx::TextAlignment::Left << 0.0;
    QTest::newRow("right") << u"abc"_qs << kx::TextAlignment::Right << 1.0;
    QTest::newRow("center") << u"abc"_qs << kx::TextAlignment::Center << 0.5;
    QTest::newRow("justified, last line") << u"abc"_qs << kx::TextAlignment::Justified << 0.0;
    QTest::newRow("natural") << u"abc"_qs << kx::TextAlignment::Natural << 0.0;
    QTest::newRow("right to left, left") << hebrew << kx::TextAlignment::Left << 0.0;
    QTest::newRow("right to left, right") << hebrew << kx::TextAlignment::Right << 1.0;
    QTest::newRow("right to left, center") << hebrew << kx::TextAlignment::Center << 0.5;
    QTest::newRow("right to left, natural") << hebrew << kx::TextAlignment::Natural << 1.0;
}

void LayoutManagerTest::alignsLines()
{
    QFETCH(QString, string);
    QFETCH(kx::TextAlignment, alignment);
    QFETCH(double, place);
    LaidOutText text(styled(string, alignment, kx::LineBreakMode::WordWrapping));
    text.container.setWidth(200);
    const QRectF used = text.manager.usedRect();
    QVERIFY(isClose(used.width(), advance(string)));
    QVERIFY(isClose(used.left(), place * (200 - used.width())));
    QVERIFY(isClose(text.rectOf(0, 3).left(), used.left()));
    // Without a limit there is nothing to align in.
    text.container.setWidth(infinite);
    QVERIFY(isClose(text.manager.usedRect().left(), 0));
}

void LayoutManagerTest::truncates_data()
{
    QTest::addColumn<kx::LineBreakMode>("mode");
    QTest::addColumn<double>("width");
    QTest::addColumn<int>("leftOutStart"); // of "abcdefghij"
    QTest::addColumn<int>("leftOutEnd");
    const double ellipsis = advance(u"…"_qs);
    QTest::newRow("fits") << kx::LineBreakMode::TruncatingTail << advance(u"abcdefghij"_qs) + 1 << 0 << 0;
    QTest::newRow("tail") << kx::LineBreakMode::TruncatingTail << advance(u"abcd"_qs) + ellipsis + 1 << 4 << 10;
    QTest::newRow("head") << kx::LineBreakMode::TruncatingHead << advance(u"hij"_qs) + ellipsis + 1 << 0 << 7;
    QTest::newRow("middle") << kx::LineBreakMode::TruncatingMiddle << advance(u"abij"_qs) + ellipsis + 1 << 2 << 8;
    QTest::newRow("no room") << kx::LineBreakMode::TruncatingTail << 3.0 << 0 << 10;
}

void LayoutManagerTest::truncates()
{
    QFETCH(kx::LineBreakMode, mode);
    QFETCH(double, width);
    QFETCH(int, leftOutStart);
    QFETCH(int, leftOutEnd);
    LaidOutText text(styled(u"abcdefghij"_qs, kx::TextAlignment::Left, mode));
    text.container.setWidth(width);
    QCOMPARE(text.manager.usedRect().height(), lineHeight());
    const QRectF ellipsis = text.rectOf(quint64(leftOutStart), 1);
    for (int i = leftOutStart; i < leftOutEnd; ++i)
        QCOMPARE(text.rectOf(quint64(i), 1), ellipsis);
    if (leftOutEnd > leftOutStart)
        QVERIFY(isClose(ellipsis.width(), advance(u"…"_qs)));
    for (int i = 0; i < 10; ++i) {
        if (i < leftOutStart || i >= leftOutEnd)
            QVERIFY(text.rectOf(quint64(i), 1) != ellipsis || leftOutEnd == 0);
    }
    if (leftOutEnd - leftOutStart < 10)
        QVERIFY(text.manager.usedRect().width() <= width);
}

void LayoutManagerTest::truncatesBetweenGraphemes()
{
    const QString string = QString::fromUtf8("ae\u0301😀b");
    for (double width = 0; width < 80; width += 1) {
        for (const auto mode : {kx::LineBreakMode::TruncatingHead, kx::LineBreakMode::TruncatingTail,
                 kx::LineBreakMode::TruncatingMiddle}) {
            LaidOutText text(styled(string, kx::TextAlignment::Left, mode));
            text.container.setWidth(width);
            // Both halves of a pair, and both parts of a letter with a mark, are kept or left out together.
            const bool faceKept = text.rectOf(3, 2).width() > advance(u"…"_qs) + tolerance;
            if (faceKept)
                QVERIFY(isClose(text.rectOf(3, 2).width(), advance(QString::fromUtf8("😀"))));
            else
                QCOMPARE(text.rectOf(3, 1), text.rectOf(4, 1));
            QVERIFY(text.manager.usedRect().height() >= lineHeight());
        }
    }
}

void LayoutManagerTest::survivesOddWidths_data()
{
    QTest::addColumn<double>("width");
    QTest::newRow("none") << 0.0;
    QTest::newRow("negative") << -20.0;
    QTest::newRow("no number") << notANumber;
    QTest::newRow("huge") << 1e300;
    QTest::newRow("tiny") << 1e-300;
}

void LayoutManagerTest::survivesOddWidths()
{
    QFETCH(double, width);
    for (int mode = 0; mode <= 5; ++mode) {
        LaidOutText text(styled(u"some words\nא and more"_qs, kx::TextAlignment::Center, kx::LineBreakMode(mode)));
        text.container.setWidth(width);
        const QRectF used = text.manager.usedRect();
        QVERIFY(std::isfinite(used.left()) && std::isfinite(used.width()) && used.width() >= 0);
        QVERIFY(used.height() >= 2 * lineHeight());
    }
}

QTEST_MAIN(LayoutManagerTest)
#include "LayoutManagerTest.moc"
