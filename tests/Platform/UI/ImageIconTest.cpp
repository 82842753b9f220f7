// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageIcon.h>

#include "Support/TestImages.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

/// Any size, as from a drawing.
class ScalableEngine : public QIconEngine {
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->fillRect(rect, Qt::yellow);
        painter->fillRect(QRect(rect.topLeft(), rect.size() / 2), Qt::blue);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine *clone() const override { return new ScalableEngine(*this); }
};

QPixmap plainPixmap(const QSize &size, const QColor &color)
{
    return QPixmap::fromImage(kx::test::plainImage(size, color));
}

QImage opaque(const QImage &image)
{
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

double ratio()
{
    return qGuiApp->devicePixelRatio();
}

} // namespace

class ImageIconTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void noneIsANullIcon();
    void anIconHasTheImageAtOnePixelPerPoint();
    void anIconHasTheImageForTheSharpestScreen();
    void anIconOfADrawingIsSharp();
    void anImageIsOfTheSmallestSize_data();
    void anImageIsOfTheSmallestSize();
    void anImageHasEverySizeForItsScreens();
    void aScalableIconHasASizeOfItsOwn();
    void comesBackAsItWas();
};

void ImageIconTest::noneIsANullIcon()
{
    QVERIFY(kx::iconFromImage(nullptr).isNull());
    QVERIFY(kx::iconFromImage(kx::Image::withRepresentations(QSizeF(), {})).isNull()); // nothing to draw either
    QVERIFY(!kx::Image(QIcon()));
    QVERIFY(!kx::Image(QIcon(QPixmap())));
}

void ImageIconTest::anIconHasTheImageAtOnePixelPerPoint()
{
    const QImage picture = kx::test::sampleImage(8, 6);
    const QIcon icon = kx::iconFromImage(picture);
    QVERIFY(icon.availableSizes().contains(QSize(8, 6)));
    QCOMPARE(opaque(icon.pixmap(QSize(8, 6), 1.0).toImage()), picture);
}

void ImageIconTest::anIconHasTheImageForTheSharpestScreen()
{
    const QSize sharp = (QSizeF(8, 6) * ratio()).toSize();
    const QIcon icon = kx::iconFromImage(kx::Image::withRepresentations(QSizeF(8, 6),
        {kx::Bitmap(kx::test::plainImage({8, 6}, Qt::red), QSizeF(8, 6)),
            kx::Bitmap(kx::test::plainImage(sharp, Qt::blue), QSizeF(8, 6))}));
    QCOMPARE(icon.availableSizes().size(), ratio() > 1 ? 2 : 1);
    QVERIFY(icon.availableSizes().contains(sharp));
    QCOMPARE(icon.pixmap(sharp, 1.0).toImage().pixelColor(1, 1), QColor(ratio() > 1 ? Qt::blue : Qt::red));
}

void ImageIconTest::anIconOfADrawingIsSharp()
{
    const QIcon icon =
        kx::iconFromImage(kx::Image::imageWithSize(QSizeF(8, 6), false, [](QPainter &painter, const QRectF &rect) {
            painter.setRenderHint(QPainter::Antialiasing, false);
            painter.fillRect(rect, Qt::yellow);
            painter.fillRect(QRectF(0, 0, 4, 6), Qt::blue);
            return true;
        }));
    const QSize sharp = (QSizeF(8, 6) * ratio()).toSize();
    const QImage drawn = icon.pixmap(sharp, 1.0).toImage();
    QCOMPARE(drawn.size(), sharp);
    QCOMPARE(drawn.pixelColor(sharp.width() / 2 - 1, 2), QColor(Qt::blue));
    QCOMPARE(drawn.pixelColor(sharp.width() / 2, 2), QColor(Qt::yellow));
}

void ImageIconTest::anImageIsOfTheSmallestSize_data()
{
    QTest::addColumn<QList<QSize>>("sizes");
    QTest::newRow("one") << QList<QSize>{{16, 12}};
    QTest::newRow("growing") << QList<QSize>{{16, 12}, {32, 24}, {48, 36}};
    QTest::newRow("shrinking") << QList<QSize>{{48, 36}, {32, 24}, {16, 12}};
}

void ImageIconTest::anImageIsOfTheSmallestSize()
{
    QFETCH(QList<QSize>, sizes);
    QIcon icon;
    for (const QSize &size : sizes)
        icon.addPixmap(plainPixmap(size, QColor(size.width(), 0, 0)));
    const kx::Image image(icon);
    QCOMPARE(image.size(), QSizeF(16, 12));
    QCOMPARE(image.representations().size(), sizes.size());
    QCOMPARE(image.toQImage(1).pixelColor(3, 3), QColor(16, 0, 0));
}

void ImageIconTest::anImageHasEverySizeForItsScreens()
{
    QIcon icon(plainPixmap({16, 12}, Qt::red));
    icon.addPixmap(plainPixmap({32, 24}, Qt::blue));
    const kx::Image image(icon);
    QCOMPARE(image.pixelScale(), 2.0);
    QCOMPARE(image.toQImage(1).pixelColor(3, 3), QColor(Qt::red));
    QCOMPARE(image.toQImage(2).size(), QSize(32, 24));
    QCOMPARE(image.toQImage(2).pixelColor(3, 3), QColor(Qt::blue));
}

void ImageIconTest::aScalableIconHasASizeOfItsOwn()
{
    const kx::Image image(QIcon(new ScalableEngine));
    QCOMPARE(image.size(), QSizeF(32, 32));
    QCOMPARE(image.pixelScale(), ratio());
    const QImage shown = image.toQImage(ratio());
    const int middle = shown.width() / 2;
    QCOMPARE(shown.pixelColor(middle - 1, middle - 1), QColor(Qt::blue));
    QCOMPARE(shown.pixelColor(middle, middle), QColor(Qt::yellow));
}

void ImageIconTest::comesBackAsItWas()
{
    const QImage picture = kx::test::sampleImage(8, 6);
    const kx::Image image(kx::iconFromImage(picture));
    QCOMPARE(image.size(), QSizeF(8, 6));
    QCOMPARE(opaque(image.toQImage(1)), picture);
}

QTEST_MAIN(ImageIconTest)
#include "ImageIconTest.moc"
