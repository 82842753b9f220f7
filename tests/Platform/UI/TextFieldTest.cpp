// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/MutableAttributedString.h>
#include <KXFoundation/Platform/UI/TextField.h>

#include "Support/AccessibleEvents.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

QFont textFont(int pixels = 20)
{
    QFont font(u"DejaVu Sans"_qs);
    font.setPixelSize(pixels);
    return font;
}

double advance(const QString &text)
{
    return QFontMetricsF(textFont()).horizontalAdvance(text);
}

double lineHeight(int pixels = 20)
{
    const QFontMetricsF metrics(textFont(pixels));
    return std::ceil(metrics.ascent()) + std::ceil(metrics.descent());
}

std::unique_ptr<kx::TextFieldCell> cell(const QString &text)
{
    auto made = std::make_unique<kx::TextFieldCell>(text);
    made->setFont(textFont());
    return made;
}

QImage drawn(const kx::TextFieldCell &cell, const QRectF &bounds)
{
    QImage image(200, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    cell.drawWithFrame(painter, bounds);
    return image;
}

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

} // namespace

class TextFieldTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void aCellStartsPlain();
    void aCellKeepsItsText();
    void aCellIsAsLargeAsItsText();
    void aCellBreaksItsLinesInTheBounds();
    void ownAttributesGoFirst();
    void drawsFromTheTopOfItsBounds();
    void drawsNothingOutsideOfItsBounds();
    void drawsNothingInBoundsThatAreNone_data();
    void drawsNothingInBoundsThatAreNone();
    void tellsOfChanges();

    void aFieldShowsItsCell();
    void aFieldTakesAnotherCell();
    void aFieldHintsAtItsSize();
    void aFieldFollowsItsFont();
    void aFieldCanBeRead();
};

void TextFieldTest::aCellStartsPlain()
{
    const kx::TextFieldCell plain;
    QVERIFY(plain.stringValue().isNull());
    QVERIFY(!plain.font());
    QVERIFY(!plain.textColor());
    QCOMPARE(plain.alignment(), kx::TextAlignment::Natural);
    QCOMPARE(plain.lineBreakMode(), kx::LineBreakMode::WordWrapping);
    QCOMPARE(plain.drawingRectForBounds(QRectF(1, 2, 30, 40)), QRectF(1, 2, 30, 40));
    QVERIFY(plain.cellSizeForBounds(QRectF(0, 0, 10, 10)).height() > 0);
}

void TextFieldTest::aCellKeepsItsText()
{
    kx::TextFieldCell cell(u"One"_qs);
    QCOMPARE(cell.stringValue(), u"One"_qs);
    cell.setAttributedStringValue(kx::AttributedString(u"Two"_qs, {.baselineOffset = 1}));
    QCOMPARE(cell.stringValue(), u"Two"_qs);
    QCOMPARE(cell.attributedStringValue().attributesAt(0).baselineOffset, 1.0);
    cell.setStringValue(u"Three"_qs);
    QCOMPARE(cell.attributedStringValue().attributesAt(0), kx::TextAttributes());
}

void TextFieldTest::aCellIsAsLargeAsItsText()
{
    const QSizeF size = cell(u"One"_qs)->cellSizeForBounds(QRectF(0, 0, 500, 5));
    QVERIFY(qAbs(size.width() - advance(u"One"_qs)) < 0.1);
    QCOMPARE(size.height(), lineHeight());
    QCOMPARE(cell(u"One\ntwo"_qs)->cellSizeForBounds(QRectF(0, 0, 500, 5)).height(), 2 * lineHeight());
}

void TextFieldTest::aCellBreaksItsLinesInTheBounds()
{
    const auto text = cell(u"some words"_qs);
    const QRectF narrow(0, 0, advance(u"some wo"_qs), 100);
    QCOMPARE(text->cellSizeForBounds(narrow).height(), 2 * lineHeight());
    text->setLineBreakMode(kx::LineBreakMode::TruncatingTail);
    QCOMPARE(text->cellSizeForBounds(narrow).height(), lineHeight());
    QVERIFY(text->cellSizeForBounds(narrow).width() <= narrow.width());
}

void TextFieldTest::ownAttributesGoFirst()
{
    kx::MutableAttributedString string(kx::AttributedString(u"small tall"_qs));
    string.addAttribute(&kx::TextAttributes::font, textFont(40), {6, 4});
    string.addAttribute(&kx::TextAttributes::foregroundColor, Qt::blue, {6, 4});
    kx::TextFieldCell text;
    text.setAttributedStringValue(string);
    text.setFont(textFont());
    text.setTextColor(Qt::red);
    QCOMPARE(text.cellSizeForBounds(QRectF(0, 0, 500, 5)).height(), lineHeight(40));
    const QImage image = drawn(text, QRectF(0, 0, 200, 100));
    bool red = false;
    bool blue = false;
    for (int x = 0; x < 200; ++x) {
        for (int y = 0; y < 100; ++y) {
            red = red || image.pixelColor(x, y) == QColor(Qt::red);
            blue = blue || image.pixelColor(x, y) == QColor(Qt::blue);
        }
    }
    QVERIFY(red && blue);
    QCOMPARE(text.attributedStringValue().runs(), string.runs());
}

void TextFieldTest::drawsFromTheTopOfItsBounds()
{
    const auto text = cell(u"One"_qs);
    const QRect area = ink(drawn(*text, QRectF(20, 30, 150, 60)));
    QVERIFY(QRectF(20, 30, advance(u"One"_qs), lineHeight()).contains(QRectF(area)));
    text->setAlignment(kx::TextAlignment::Right);
    const QRect right = ink(drawn(*text, QRectF(20, 30, 150, 60)));
    QCOMPARE(right.top(), area.top());
    QVERIFY(right.right() > 160 && right.right() <= 170);
}

void TextFieldTest::drawsNothingOutsideOfItsBounds()
{
    const auto text = cell(u"A text of several words"_qs);
    const QRect bounds(20, 30, 50, 30);
    QVERIFY(bounds.contains(ink(drawn(*text, bounds))));
    text->setLineBreakMode(kx::LineBreakMode::Clipping);
    QVERIFY(bounds.contains(ink(drawn(*text, bounds))));
}

void TextFieldTest::drawsNothingInBoundsThatAreNone_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::newRow("empty") << QRectF();
    QTest::newRow("negative") << QRectF(50, 50, -20, -20);
    QTest::newRow("no number") << QRectF(notANumber, 0, 50, 50);
    QTest::newRow("size of no number") << QRectF(0, 0, notANumber, notANumber);
    QTest::newRow("endless") << QRectF(0, 0, infinite, infinite);
}

void TextFieldTest::drawsNothingInBoundsThatAreNone()
{
    QFETCH(QRectF, bounds);
    QVERIFY(ink(drawn(*cell(u"One"_qs), bounds)).isEmpty());
    QVERIFY(std::isfinite(cell(u"One"_qs)->cellSizeForBounds(bounds).height()));
}

void TextFieldTest::tellsOfChanges()
{
    int changes = 0;
    kx::TextFieldCell cell;
    cell.setChangeHandler([&] { ++changes; });
    cell.setStringValue(u"One"_qs);
    cell.setAttributedStringValue(kx::AttributedString());
    cell.setFont(textFont());
    cell.setTextColor(Qt::red);
    cell.setAlignment(kx::TextAlignment::Center);
    cell.setLineBreakMode(kx::LineBreakMode::Clipping);
    cell.setHostFont(textFont());
    QCOMPARE(changes, 7);
}

void TextFieldTest::aFieldShowsItsCell()
{
    kx::TextField field;
    QVERIFY(field.isFlipped());
    field.setFont(textFont());
    field.setStringValue(u"One"_qs);
    QCOMPARE(field.cell().stringValue(), u"One"_qs);
    QCOMPARE(field.property("stringValue").toString(), u"One"_qs);
    field.resize(200, 100);
    QImage image(200, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    field.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(ink(image), ink(drawn(*cell(u"One"_qs), QRectF(0, 0, 200, 100))));
}

void TextFieldTest::aFieldTakesAnotherCell()
{
    kx::TextField field;
    QSignalSpy changed(&field, &kx::TextField::valueChanged);
    auto made = cell(u"Other"_qs);
    kx::TextFieldCell *const other = made.get();
    field.setCell(std::move(made));
    QCOMPARE(&field.cell(), other);
    QCOMPARE(changed.size(), 1);
    other->setStringValue(u"Changed"_qs);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(field.stringValue(), u"Changed"_qs);
    field.setCell(nullptr);
    QVERIFY(field.stringValue().isNull());
}

void TextFieldTest::aFieldHintsAtItsSize()
{
    kx::TextField field;
    field.setFont(textFont());
    field.setStringValue(u"several words"_qs);
    QVERIFY(qAbs(field.intrinsicContentSize().width() - advance(u"several words"_qs)) < 0.1);
    QCOMPARE(field.sizeHint(), QSize(int(std::ceil(field.intrinsicContentSize().width())), int(lineHeight())));
}

void TextFieldTest::aFieldFollowsItsFont()
{
    kx::TextField field;
    field.setFont(textFont());
    field.setStringValue(u"One"_qs);
    field.setFont(textFont(40));
    QCOMPARE(field.intrinsicContentSize().height(), lineHeight(40));
    field.cell().setFont(textFont(30));
    QCOMPARE(field.intrinsicContentSize().height(), lineHeight(30));
}

void TextFieldTest::aFieldCanBeRead()
{
    kx::TextField field;
    field.setStringValue(u"One"_qs);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&field);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::StaticText);
    QCOMPARE(accessible->text(QAccessible::Name), u"One"_qs);
    field.setAccessibleName(u"Title"_qs);
    QCOMPARE(accessible->text(QAccessible::Name), u"Title"_qs);
    QList<QAccessible::Event> told;
    const AccessibleEvents events([&](QAccessibleEvent &event) { told.append(event.type()); });
    field.setStringValue(u"Two"_qs);
    QCOMPARE(told, QList<QAccessible::Event>{QAccessible::NameChanged});
}

QTEST_MAIN(TextFieldTest)
#include "TextFieldTest.moc"
