// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextAttachment.h>

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

// Red above, blue below.
QImage flag(double scale = 1)
{
    QImage image(int(4 * scale), int(4 * scale), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::blue);
    QPainter(&image).fillRect(0, 0, image.width(), image.height() / 2, Qt::red);
    image.setDevicePixelRatio(scale);
    return image;
}

} // namespace

class TextAttachmentTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void takesThePlaceOfItsImage();
    void takesItsBounds();
    void takesNoPlaceThatIsNone_data();
    void takesNoPlaceThatIsNone();
    void wrapsItsImageUpright();
    void keepsTheResolutionOfWhatItWraps();
    void wrapsAnewEachTime();
    void doesNotPileUpWrappers();
    void wrapsAnImageSetInBetween();
    void wrapsNone();
};

void TextAttachmentTest::takesThePlaceOfItsImage()
{
    QCOMPARE(kx::TextAttachment().place(), QRectF(0, 0, 0, 0));
    QCOMPARE(kx::TextAttachment(flag()).place(), QRectF(0, 0, 4, 4));
    QCOMPARE(kx::TextAttachment(flag(2)).place(), QRectF(0, 0, 4, 4));
}

void TextAttachmentTest::takesItsBounds()
{
    kx::TextAttachment attachment(flag());
    attachment.setBounds(QRectF(1, -3, 20, 10));
    QCOMPARE(attachment.place(), QRectF(1, -3, 20, 10));
    attachment.setBounds(QRectF());
    QCOMPARE(attachment.place(), QRectF(0, 0, 4, 4));
}

void TextAttachmentTest::takesNoPlaceThatIsNone_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QRectF>("place");
    QTest::newRow("negative") << QRectF(1, 2, -3, -4) << QRectF(1, 2, 0, 0);
    QTest::newRow("no number") << QRectF(notANumber, notANumber, notANumber, 5) << QRectF(0, 0, 0, 5);
    QTest::newRow("endless") << QRectF(0, -infinite, infinite, 5) << QRectF(0, 0, 0, 5);
    QTest::newRow("huge") << QRectF(0, 0, 1e300, 5) << QRectF(0, 0, 100000, 5);
}

void TextAttachmentTest::takesNoPlaceThatIsNone()
{
    QFETCH(QRectF, bounds);
    kx::TextAttachment attachment(flag());
    attachment.setBounds(bounds);
    QTEST(attachment.place(), "place");
}

void TextAttachmentTest::wrapsItsImageUpright()
{
    kx::TextAttachment attachment(flag());
    attachment.wrapImage();
    QVERIFY(attachment.image().isFlipped());
    QVERIFY(attachment.image().hasDrawingHandler());
    QCOMPARE(attachment.image().size(), QSizeF(4, 4));
    QCOMPARE(attachment.image().toQImage(1), flag());
}

void TextAttachmentTest::keepsTheResolutionOfWhatItWraps()
{
    kx::TextAttachment attachment(flag(2));
    attachment.wrapImage();
    const QImage drawn = attachment.image().toQImage(2);
    QCOMPARE(drawn.size(), QSize(8, 8));
    QCOMPARE(drawn.pixelColor(3, 3), QColor(Qt::red));
    QCOMPARE(drawn.pixelColor(3, 4), QColor(Qt::blue));
}

void TextAttachmentTest::wrapsAnewEachTime()
{
    const kx::Image image = flag();
    kx::TextAttachment attachment(image);
    attachment.wrapImage();
    const kx::Image first = attachment.image();
    attachment.wrapImage();
    QVERIFY(first != image);
    QVERIFY(attachment.image() != first);
}

void TextAttachmentTest::doesNotPileUpWrappers()
{
    int depth = 0;
    int deepest = 0;
    kx::TextAttachment attachment(kx::Image::imageWithSize({4, 4}, false, [&](QPainter &, const QRectF &) {
        deepest = std::max(deepest, ++depth);
        return true;
    }));
    constexpr int oftenEnoughToOverflow = 100000;
    for (int i = 0; i < oftenEnoughToOverflow; ++i)
        attachment.wrapImage();
    QVERIFY(!attachment.image().toQImage(1).isNull());
    QCOMPARE(depth, 1);
    QCOMPARE(deepest, 1);
}

void TextAttachmentTest::wrapsAnImageSetInBetween()
{
    kx::TextAttachment attachment(flag());
    attachment.wrapImage();
    QImage green(2, 2, QImage::Format_ARGB32_Premultiplied);
    green.fill(Qt::green);
    attachment.setImage(green);
    attachment.wrapImage();
    QCOMPARE(attachment.image().size(), QSizeF(2, 2));
    QCOMPARE(attachment.image().toQImage(1), green);
}

void TextAttachmentTest::wrapsNone()
{
    kx::TextAttachment attachment;
    attachment.wrapImage();
    attachment.wrapImage();
    QVERIFY(bool(attachment.image()));
    QCOMPARE(attachment.place(), QRectF(0, 0, 0, 0));
    QVERIFY(attachment.image().toQImage(1).isNull());
}

QTEST_MAIN(TextAttachmentTest)
#include "TextAttachmentTest.moc"
