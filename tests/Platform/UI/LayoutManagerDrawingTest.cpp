// SPDX-License-Identifier: MIT
#include "LaidOutText.h"

#include <QtCore/QRandomGenerator>
#include <QtGui/QFontMetricsF>
#include <QtGui/QTextLayout>
#include <QtTest/QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using kx::AttributedString;
using kx::MutableAttributedString;
using kx::TextAttributes;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Where the image is not white, in its pixels.
QRect ink(const QImage &image)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

/// The same text as Qt's own layout draws it, each line by itself: the letters of one do not order those of the next.
QImage drawnByQt(const AttributedString &text, const QSize &size, double scale)
{
    QImage image = LaidOutText::blank(size, scale);
    QPainter painter(&image);
    const QStringList lines = text.string().split(u'\n');
    qsizetype start = 0;
    double top = 0;
    for (const QString &string : lines) {
        // An empty line has the font of its end.
        const auto last = quint64(std::max<qsizetype>(text.string().size() - 1, 0));
        const kx::Font font = text.attributesAt(std::min(quint64(start), last)).font;
        QTextLayout layout(string, font && string.isEmpty() ? *font : LaidOutText::font());
        QList<QTextLayout::FormatRange> formats;
        for (qsizetype i = 0; i < text.runs().size(); ++i) {
            const kx::TextRange range = text.rangeOfRun(i);
            const TextAttributes &attributes = text.runs().at(i).attributes;
            QTextLayout::FormatRange format;
            const qsizetype from = std::max(qsizetype(range.location), start);
            const qsizetype to = std::min(qsizetype(range.location + range.length), start + string.size());
            if (from >= to)
                continue;
            format.start = int(from - start);
            format.length = int(to - from);
            if (attributes.font)
                format.format.setFont(*attributes.font);
            if (attributes.foregroundColor)
                format.format.setForeground(attributes.foregroundColor.toQColor());
            formats.append(format);
        }
        layout.setFormats(formats);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(1e6);
        const double ascent = std::ceil(line.ascent());
        line.setPosition(QPointF(0, top + ascent - line.ascent()));
        layout.endLayout();
        layout.draw(&painter, QPointF(0, 0));
        top += ascent + std::ceil(line.descent());
        start += string.size() + 1;
    }
    return image;
}

} // namespace

class LayoutManagerDrawingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void drawsWhatQtDraws_data();
    void drawsWhatQtDraws();
    void drawsAnyMixtureOfRunsAsQtDoes_data();
    void drawsAnyMixtureOfRunsAsQtDoes();
    void drawsAtAPoint();
    void drawsAPartOfTheText();
    void takesThePensColorWithoutOne();
    void leavesThePainterAsItWas();
    void raisesCharactersAboveTheBaseline();
    void fillsBackgroundsLineByLine_data();
    void fillsBackgroundsLineByLine();
    void translucentNeighboursLeaveNoSeam_data();
    void translucentNeighboursLeaveNoSeam();
    void aTransparentBackgroundPaintsNothing();
    void drawsAttachmentsUpright_data();
    void drawsAttachmentsUpright();
    void drawsLinesInTheDirtyRectangleOnly();
    void drawsRunsInTheDirtyRectangleOnly();
    void drawsNothingNowhere_data();
    void drawsNothingNowhere();
    void drawsEmptyTexts();
};

void LayoutManagerDrawingTest::drawsWhatQtDraws_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 1.5, 2.0}) {
        const auto row = [&](const char *name, const QString &text) {
            QTest::addRow("%s at %g", name, scale) << text << scale;
        };
        row("latin", u"Quick fox, fi ffl"_qs);
        row("several lines", u"One\nTwo\n\nFour"_qs);
        row("hebrew", QString::fromUtf8("שלום עולם"));
        row("arabic", QString::fromUtf8("السلام عليكم"));
        row("mixed", QString::fromUtf8("abc שלום 12 def"));
        row("marks", QString::fromUtf8("e\u0301 a\u0308o"));
        row("emoji", QString::fromUtf8("hi 😀 there"));
        row("tab", u"a\tb"_qs);
        row("control characters", u"a\x01\u200E\u200Bb"_qs);
    }
}

void LayoutManagerDrawingTest::drawsWhatQtDraws()
{
    QFETCH(QString, text);
    QFETCH(double, scale);
    const AttributedString string(text);
    const QImage drawn = LaidOutText(string).drawn(QSize(260, 100), scale);
    QVERIFY(!ink(drawn).isEmpty());
    QCOMPARE(drawn, drawnByQt(string, QSize(260, 100), scale));
}

void LayoutManagerDrawingTest::drawsAnyMixtureOfRunsAsQtDoes_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 60; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void LayoutManagerDrawingTest::drawsAnyMixtureOfRunsAsQtDoes()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QStringList words{u"fi"_qs, u" "_qs, u"word"_qs, u"12"_qs, u"-"_qs, u"\n"_qs, QString::fromUtf8("שלום"),
        QString::fromUtf8("سلام"), QString::fromUtf8("😀"), QString::fromUtf8("e\u0301"), u"("_qs};
    MutableAttributedString text;
    for (int i = 0; i < 12; ++i) {
        QString run;
        for (int word = random.bounded(1, 4); word > 0; --word)
            run += words.at(random.bounded(int(words.size())));
        TextAttributes attributes;
        attributes.foregroundColor = QColor::fromHsv(random.bounded(360), 255, 160);
        if (random.bounded(4) == 0)
            attributes.font = LaidOutText::font(random.bounded(8, 30));
        text.appendAttributedString(AttributedString(run, attributes));
    }
    const QSize size(700, 400);
    const QImage drawn = LaidOutText(text).drawn(size);
    QVERIFY(!ink(drawn).isEmpty());
    QCOMPARE(drawn, drawnByQt(text, size, 1));
}

void LayoutManagerDrawingTest::drawsAtAPoint()
{
    LaidOutText text(u"Text\nlines"_qs);
    const QImage drawn = text.drawn(QSize(100, 90), 1, QPointF(5, 5));
    const QImage moved = text.drawn(QSize(100, 90), 1, QPointF(12, 16));
    QCOMPARE(moved.copy(7, 11, 93, 79), drawn.copy(0, 0, 93, 79));
}

void LayoutManagerDrawingTest::drawsAPartOfTheText()
{
    LaidOutText text(u"abc\ndef"_qs);
    const QSize size(60, 60);
    const auto inkOf = [&](quint64 location, quint64 length) { return ink(text.drawnRange({location, length}, size)); };
    const QRectF b = text.rectOf(1, 1);
    QVERIFY(b.adjusted(-1, 0, 1, 0).contains(QRectF(inkOf(1, 1))));
    QCOMPARE(inkOf(0, 3) | inkOf(4, 3), inkOf(0, 7));
    QVERIFY(inkOf(3, 1).isEmpty());
    QVERIFY(inkOf(1, 0).isEmpty());
}

void LayoutManagerDrawingTest::takesThePensColorWithoutOne()
{
    MutableAttributedString string(AttributedString(u"a"_qs));
    string.appendAttributedString(AttributedString(u"b"_qs, {.foregroundColor = Qt::blue}));
    string.appendAttributedString(AttributedString(u"c"_qs));
    LaidOutText text(string);
    QImage image = LaidOutText::blank(QSize(60, 30));
    QPainter painter(&image);
    painter.setPen(Qt::red);
    text.manager.drawGlyphsForGlyphRange(painter, {0, 3}, {});
    painter.end();
    const auto strongest = [&](quint64 character) {
        const QRect area = text.rectOf(character, 1).toRect();
        QColor darkest = Qt::white;
        for (int x = area.left(); x < area.right(); ++x) {
            for (int y = area.top(); y < area.bottom(); ++y) {
                if (image.pixelColor(x, y).green() < darkest.green())
                    darkest = image.pixelColor(x, y);
            }
        }
        return darkest;
    };
    for (const quint64 withoutColor : {0U, 2U})
        QVERIFY(strongest(withoutColor).red() > 200 && strongest(withoutColor).blue() < 100);
    QVERIFY(strongest(1).blue() > 200 && strongest(1).red() < 100);
}

void LayoutManagerDrawingTest::leavesThePainterAsItWas()
{
    LaidOutText text(AttributedString(u"a"_qs, {.foregroundColor = Qt::blue, .backgroundColor = Qt::red}));
    QImage image = LaidOutText::blank(QSize(60, 30));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPen pen(Qt::green, 3);
    painter.setPen(pen);
    text.manager.drawBackgroundForGlyphRange(painter, {0, 1}, {});
    text.manager.drawGlyphsForGlyphRange(painter, {0, 1}, {});
    QCOMPARE(painter.pen(), pen);
    QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
    QCOMPARE(painter.transform(), QTransform());
}

void LayoutManagerDrawingTest::raisesCharactersAboveTheBaseline()
{
    const QSize size(60, 60);
    const QRect plain = ink(LaidOutText(u"ax"_qs).drawnRange({1, 1}, size));
    MutableAttributedString string(AttributedString(u"ax"_qs));
    string.addAttribute(&TextAttributes::baselineOffset, -4, {1, 1});
    QCOMPARE(ink(LaidOutText(string).drawnRange({1, 1}, size)), plain.translated(0, 4));
    string.addAttribute(&TextAttributes::baselineOffset, 4, {1, 1});
    LaidOutText raised(string);
    QCOMPARE(ink(raised.drawnRange({1, 1}, size)), plain); // the line grew upwards by as much
    QCOMPARE(ink(raised.drawnRange({0, 1}, size)).bottom(), plain.bottom() + 4);
}

void LayoutManagerDrawingTest::fillsBackgroundsLineByLine_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

void LayoutManagerDrawingTest::fillsBackgroundsLineByLine()
{
    QFETCH(double, scale);
    MutableAttributedString string(AttributedString(u"iii\nwide\n"_qs));
    string.addAttribute(&TextAttributes::backgroundColor, Qt::red, {1, 6});
    LaidOutText text(string);
    QImage image = LaidOutText::blank(QSize(80, 90), scale);
    QPainter painter(&image);
    text.manager.drawBackgroundForGlyphRange(painter, {0, string.length()}, QPointF(10, 4));
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QPointF center((x + 0.5) / scale - 10, (y + 0.5) / scale - 4);
            const auto within = [&](const QRectF &rect) {
                constexpr double edge = 0.51; // rounded to device pixels
                if (rect.adjusted(edge, 0, -edge, 0).contains(center))
                    return 1;
                return rect.adjusted(-edge, 0, edge, 0).contains(center) ? 0 : -1;
            };
            const int inside = std::max(within(text.rectOf(1, 2)), within(text.rectOf(4, 3)));
            if (inside != 0)
                QCOMPARE(image.pixelColor(x, y), inside > 0 ? QColor(Qt::red) : QColor(Qt::white));
        }
    }
}

void LayoutManagerDrawingTest::translucentNeighboursLeaveNoSeam_data()
{
    fillsBackgroundsLineByLine_data();
}

void LayoutManagerDrawingTest::translucentNeighboursLeaveNoSeam()
{
    QFETCH(double, scale);
    MutableAttributedString string;
    for (int i = 0; i < 12; ++i) {
        string.appendAttributedString(
            AttributedString(u"   "_qs, {.backgroundColor = kx::Color::rgba(0, 0, 1, 0.5), .baselineOffset = i % 2}));
    }
    const QImage image = LaidOutText(string).drawn(QSize(300, 20), scale);
    const QRect area = ink(image);
    const QColor blended = image.pixelColor(area.topLeft());
    for (int x = area.left(); x <= area.right(); ++x)
        QCOMPARE(image.pixelColor(x, area.top() + 2), blended);
    QVERIFY(blended.red() > 120 && blended.red() < 135);
}

void LayoutManagerDrawingTest::aTransparentBackgroundPaintsNothing()
{
    LaidOutText text(AttributedString(u"   "_qs, {.backgroundColor = kx::Color::clear()}));
    QVERIFY(ink(text.drawn(QSize(60, 30))).isEmpty());
}

void LayoutManagerDrawingTest::drawsAttachmentsUpright_data()
{
    fillsBackgroundsLineByLine_data();
}

void LayoutManagerDrawingTest::drawsAttachmentsUpright()
{
    QFETCH(double, scale);
    const auto attachment = std::make_shared<kx::TextAttachment>(
        kx::Image::imageWithSize({10, 20}, true, [](QPainter &painter, const QRectF &rect) {
            painter.fillRect(rect, Qt::blue);
            painter.fillRect(QRectF(0, 0, 10, 10), Qt::red);
            return true;
        }));
    attachment->setBounds(QRectF(4, -6, 20, 40));
    LaidOutText text{AttributedString(attachment)};
    const QImage image = text.drawn(QSize(60, 60), scale, QPointF(2, 2));
    const double baseline = 2 + 34; // the image is what is highest
    const auto color = [&](double x, double y) { return image.pixelColor(int(x * scale), int(y * scale)); };
    QCOMPARE(color(2 + 4 + 10, baseline - 33), QColor(Qt::red));
    QCOMPARE(color(2 + 4 + 10, baseline - 15), QColor(Qt::red));
    QCOMPARE(color(2 + 4 + 10, baseline - 12), QColor(Qt::blue));
    QCOMPARE(color(2 + 4 + 10, baseline + 5), QColor(Qt::blue));
    QCOMPARE(color(2 + 4 + 10, baseline + 7), QColor(Qt::white));
    QCOMPARE(color(2 + 2, baseline), QColor(Qt::white));
    QCOMPARE(color(2 + 4 + 19, baseline), QColor(Qt::blue));
    QCOMPARE(color(2 + 4 + 21, baseline), QColor(Qt::white));
}

void LayoutManagerDrawingTest::drawsLinesInTheDirtyRectangleOnly()
{
    QStringList lines;
    for (int i = 0; i < 200; ++i)
        lines.append(u"Line %1"_qs.arg(i));
    LaidOutText text(AttributedString(lines.join(u'\n'), {.backgroundColor = Qt::yellow}));
    const double height = text.rectOf(0, 1).height();
    const QSize size(120, int(200 * height));
    const QImage everything = text.drawn(size, 1, QPointF(3, 5));
    const QRectF dirty(0, 100 * height, 120, 2 * height);
    const QImage part = text.drawn(size, 1, QPointF(3, 5), dirty);
    QCOMPARE(part.copy(dirty.toRect()), everything.copy(dirty.toRect()));
    QVERIFY(ink(part).height() <= 7 * height); // and a line around them
    const QImage none = text.drawn(size, 1, QPointF(3, 5), QRectF(0, -5 * height, 120, height));
    QVERIFY(ink(none).height() <= 2 * height);
}

void LayoutManagerDrawingTest::drawsRunsInTheDirtyRectangleOnly()
{
    MutableAttributedString string;
    for (int i = 0; i < 40; ++i) {
        string.appendAttributedString(AttributedString(i % 3 == 0 ? QString::fromUtf8("שלום") : u"word "_qs,
            {.foregroundColor = QColor::fromHsv(i * 8, 255, 160)}));
    }
    LaidOutText text(string);
    const QSize size(int(text.manager.usedRect().width()) + 10, 30);
    const QImage everything = text.drawn(size, 1, QPointF(3, 2));
    const QRectF dirty(400, 0, 100, 30);
    const QImage part = text.drawn(size, 1, QPointF(3, 2), dirty);
    QCOMPARE(part.copy(dirty.toRect()), everything.copy(dirty.toRect()));
    QVERIFY(ink(part).width() < 400);
}

void LayoutManagerDrawingTest::drawsNothingNowhere_data()
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    QTest::addColumn<QPointF>("point");
    QTest::newRow("no number") << QPointF(notANumber, 0);
    QTest::newRow("no number down") << QPointF(0, notANumber);
    QTest::newRow("endless") << QPointF(infinite, -infinite);
    QTest::newRow("huge") << QPointF(1e300, 0);
    QTest::newRow("far") << QPointF(0, -99999);
}

void LayoutManagerDrawingTest::drawsNothingNowhere()
{
    QFETCH(QPointF, point);
    LaidOutText text(AttributedString(u"abc"_qs, {.backgroundColor = Qt::red}));
    QVERIFY(ink(text.drawn(QSize(60, 30), 1, point)).isEmpty());
}

void LayoutManagerDrawingTest::drawsEmptyTexts()
{
    QVERIFY(ink(LaidOutText(u""_qs).drawn(QSize(60, 30))).isEmpty());
    QVERIFY(ink(LaidOutText(u"\n\n"_qs).drawn(QSize(60, 90))).isEmpty());
}

QTEST_MAIN(LayoutManagerDrawingTest)
#include "LayoutManagerDrawingTest.moc"
