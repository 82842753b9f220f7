// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ImageKXTools.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtTest/QTest>

#include "Support/TestImages.h"

using namespace Qt::StringLiterals;
using namespace kx::test;

// Run at several device pixel ratios of the screen.
class ImageKXToolsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void masksRoundTheirCorners();
    void masksKeepTheirCornersAtEverySize();
    void masksSurviveOddRadii_data();
    void masksSurviveOddRadii();
    void givesItsOwnPixels();
    void givesPixelsAtAScale();
    void givesNoPixelsAtABadScale_data();
    void givesNoPixelsAtABadScale();
    void givesPixelsForTheSharpestScreen();
    void fits_data();
    void fits();
    void fitsPixelForPixel();
    void fillsFromTheMiddle_data();
    void fillsFromTheMiddle();
    void fillsByReducingOverAllPixels();
    void takesPartsUpwards();
    void movesPartsByTheTargetsOrigin();
    void leavesOutPartsOutsideTheImage();
    void drawsHandlersAtTheScreensScale();
    void givesABitmap();
    void keepsTheColorSpace();
    void givesNoneForHostileSizes_data();
    void givesNoneForHostileSizes();
    void survivesHostileSources_data();
    void survivesHostileSources();
    void givesNoneForNone();
    void passesOverPixelsThatCannotBeRead();
    void keepsSizesAtOddOnes();
};

namespace {

double screenRatio()
{
    return qGuiApp->devicePixelRatio();
}

// A picture of this size in points, with the screen's pixels.
QImage screenSample(int width, int height)
{
    return sampleImage(qRound(width * screenRatio()), qRound(height * screenRatio()), screenRatio());
}

QImage onlyPixels(const kx::Image &image)
{
    return image.representations().value(0).toQImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QColor colorAt(const kx::Image &image, double x, double y)
{
    return onlyPixels(image).pixelColor(int(x * screenRatio()), int(y * screenRatio()));
}

QRect inPixels(int x, int y, int width, int height)
{
    const double ratio = screenRatio();
    return {qRound(x * ratio), qRound(y * ratio), qRound(width * ratio), qRound(height * ratio)};
}

QImage withoutRatio(QImage image)
{
    image.setDevicePixelRatio(1);
    return image;
}

kx::Image redByHandler(const QSizeF &size)
{
    return kx::Image::imageWithSize(size, false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::red);
        return true;
    });
}

} // namespace

void ImageKXToolsTest::masksRoundTheirCorners()
{
    const kx::Image mask = kx::imageWithSize(QSizeF(20, 30), 6);
    QCOMPARE(mask.size(), QSizeF(20, 30));
    QVERIFY(mask.hasDrawingHandler());
    QVERIFY(!mask.isFlipped());
    QCOMPARE(mask.capInsets(), QMarginsF(6, 6, 6, 6));
    QCOMPARE(mask.resizingMode(), kx::ResizingMode::Tile);
    QCOMPARE(int(mask.resizingMode()), 0);

    const QImage pixels = mask.toQImage(2);
    QCOMPARE(pixels.size(), QSize(40, 60));
    QCOMPARE(pixels.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(pixels.pixelColor(39, 0).alpha(), 0);
    QCOMPARE(pixels.pixelColor(0, 59).alpha(), 0);
    QCOMPARE(pixels.pixelColor(39, 59).alpha(), 0);
    QCOMPARE(pixels.pixelColor(20, 30), QColor(Qt::black));
    QCOMPARE(pixels.pixelColor(12, 0), QColor(Qt::black));
    QCOMPARE(pixels.pixelColor(0, 12), QColor(Qt::black));
}

void ImageKXToolsTest::masksKeepTheirCornersAtEverySize()
{
    const kx::Image mask = kx::imageWithSize(QSizeF(13, 13), 6);
    QImage small = blankImage(13, 13, 2);
    QPainter smallPainter(&small);
    mask.draw(smallPainter, QRectF(0, 0, 13, 13));
    smallPainter.end();
    QImage large = blankImage(90, 40, 2);
    QPainter largePainter(&large);
    mask.draw(largePainter, QRectF(0, 0, 90, 40));
    largePainter.end();

    QCOMPARE(large.copy(0, 0, 12, 12), small.copy(0, 0, 12, 12));
    QCOMPARE(large.copy(168, 68, 12, 12), small.copy(14, 14, 12, 12));
    QCOMPARE(large.pixelColor(12, 0), QColor(Qt::black));
    QCOMPARE(large.pixelColor(167, 79), QColor(Qt::black));
    QCOMPARE(large.pixelColor(0, 40), QColor(Qt::black));
    QCOMPARE(large.pixelColor(90, 40), QColor(Qt::black));
}

void ImageKXToolsTest::masksSurviveOddRadii_data()
{
    QTest::addColumn<float>("radius");
    QTest::addColumn<int>("corner");
    QTest::addColumn<int>("middle");
    QTest::newRow("none") << 0.0F << 255 << 255;
    QTest::newRow("half the side") << 10.0F << 0 << 255;
    QTest::newRow("more") << 1000.0F << 0 << 255;
    QTest::newRow("endless") << std::numeric_limits<float>::infinity() << 0 << 255;
    QTest::newRow("negative") << -1.0F << 0 << 0;
    QTest::newRow("no number") << float(notANumber) << 0 << 0;
}

void ImageKXToolsTest::masksSurviveOddRadii()
{
    QFETCH(float, radius);
    const kx::Image mask = kx::imageWithSize(QSizeF(20, 20), radius);
    const QImage pixels = mask.toQImage(1);
    QTEST(pixels.pixelColor(0, 0).alpha(), "corner");
    QTEST(pixels.pixelColor(10, 10).alpha(), "middle");
    for (const double side : {3.0, 7.0, 40.0}) {
        QImage target = blankImage(40, 40);
        QPainter painter(&target);
        mask.draw(painter, QRectF(0, 0, side, side));
        painter.end();
        QTEST(target.pixelColor(int(side / 2), int(side / 2)).alpha() > 127 ? 255 : 0, "middle");
    }
}

void ImageKXToolsTest::givesItsOwnPixels()
{
    const QImage pixels = sampleImage(30, 20, 2);
    const QImage given = kx::CGImageRef(pixels);
    QCOMPARE(given, pixels);
    QCOMPARE(given.constBits(), pixels.constBits());
    QCOMPARE(kx::CGImageRefWithScale(pixels, 1).constBits(), pixels.constBits());

    const QImage painted = kx::CGImageRef(redByHandler(QSizeF(8, 4)));
    QCOMPARE(painted.size(), QSize(8, 4) * screenRatio());
    QCOMPARE(painted.pixelColor(1, 1), QColor(Qt::red));
}

void ImageKXToolsTest::givesPixelsAtAScale()
{
    const QImage pixels = sampleImage(30, 20);
    const QImage twice = kx::CGImageRefWithScale(pixels, 2);
    QCOMPARE(twice.size(), QSize(60, 40)); // whatever the screen
    QCOMPARE(twice.devicePixelRatio(), 2.0);
    QCOMPARE(kx::CGImageRefWithScale(pixels, 0.5).size(), QSize(15, 10));
    // At the pixels' own scale, they come out as they went in.
    QCOMPARE(kx::CGImageRefWithScale(sampleImage(30, 20, 2), 2), sampleImage(30, 20, 2));
}

void ImageKXToolsTest::givesNoPixelsAtABadScale_data()
{
    QTest::addColumn<float>("scale");
    QTest::newRow("zero") << 0.0F;
    QTest::newRow("negative") << -1.0F;
    QTest::newRow("no number") << float(notANumber);
    QTest::newRow("endless") << std::numeric_limits<float>::infinity();
    QTest::newRow("huge") << 1e9F;
}

void ImageKXToolsTest::givesNoPixelsAtABadScale()
{
    QFETCH(float, scale);
    QVERIFY(kx::CGImageRefWithScale(sampleImage(8, 8), scale).isNull());
    QVERIFY(kx::CGImageRefWithScale(redByHandler(QSizeF(8, 8)), scale).isNull());
}

void ImageKXToolsTest::givesPixelsForTheSharpestScreen()
{
    const QImage pixels = kx::CGImageRef4PDF(sampleImage(60, 40));
    QCOMPARE(pixels.size(), QSize(60, 40) * screenRatio());
    QCOMPARE(kx::CGImageRef4PDF(screenSample(60, 40)), screenSample(60, 40));
}

void ImageKXToolsTest::fits_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("target");
    QTest::addColumn<QRect>("place");
    QTest::newRow("wide into square") << QSize(200, 100) << QSize(100, 100) << QRect(0, 25, 100, 50);
    QTest::newRow("tall into square") << QSize(100, 200) << QSize(100, 100) << QRect(25, 0, 50, 100);
    QTest::newRow("square into wide") << QSize(50, 50) << QSize(200, 100) << QRect(50, 0, 100, 100);
    QTest::newRow("same shape") << QSize(40, 20) << QSize(80, 40) << QRect(0, 0, 80, 40);
}

void ImageKXToolsTest::fits()
{
    QFETCH(QSize, size);
    QFETCH(QSize, target);
    QFETCH(QRect, place);
    const QImage red = plainImage(size, Qt::red);
    for (const kx::Image &image : {kx::Image(red), redByHandler(size)}) {
        const kx::Image plain = kx::resizeAspect(image, target);
        const kx::Image onBlue = kx::resizeAspect(image, target, Qt::blue);
        const kx::Image onGlass = kx::resizeAspect(image, target, kx::Color::rgba(0, 0, 1, 0.5));
        QCOMPARE(plain.size(), QSizeF(target));
        QCOMPARE(onlyPixels(plain).size(), target * screenRatio());
        for (int y = 0; y < target.height(); y += 5) {
            for (int x = 0; x < target.width(); x += 5) {
                const bool inside = place.contains(x, y);
                const bool edge =
                    place.adjusted(-1, -1, 1, 1).contains(x, y) && !place.adjusted(1, 1, -1, -1).contains(x, y);
                if (edge)
                    continue; // at ratio 1.5 it may share a pixel with the ground
                QCOMPARE(colorAt(plain, x, y), inside ? QColor(Qt::red) : QColor(0, 0, 0, 0));
                QCOMPARE(colorAt(onBlue, x, y), inside ? QColor(Qt::red) : QColor(Qt::blue));
                QCOMPARE(colorAt(onGlass, x, y), inside ? QColor(Qt::red) : QColor(0, 0, 255, 128));
            }
        }
    }
}

void ImageKXToolsTest::fitsPixelForPixel()
{
    const QImage pixels = screenSample(80, 40);
    const kx::Image image = kx::Image::withRepresentations(QSizeF(160, 80), {kx::Bitmap(pixels)});
    const QImage fitted = onlyPixels(kx::resizeAspect(image, QSizeF(80, 80)));
    QCOMPARE(fitted.copy(inPixels(0, 20, 80, 40)), withoutRatio(pixels));
    QCOMPARE(fitted.copy(inPixels(0, 0, 80, 20)), withoutRatio(blankImage(80, 20, screenRatio())));
    QCOMPARE(fitted.copy(inPixels(0, 60, 80, 20)), withoutRatio(blankImage(80, 20, screenRatio())));
}

void ImageKXToolsTest::fillsFromTheMiddle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("target");
    QTest::addColumn<QRect>("crop");
    QTest::newRow("square of wide") << QSize(200, 100) << QSize(100, 100) << QRect(50, 0, 100, 100);
    QTest::newRow("square of tall") << QSize(100, 200) << QSize(100, 100) << QRect(0, 50, 100, 100);
    QTest::newRow("wide of square") << QSize(100, 100) << QSize(100, 40) << QRect(0, 30, 100, 40);
    QTest::newRow("all of it") << QSize(60, 20) << QSize(60, 20) << QRect(0, 0, 60, 20);
}

void ImageKXToolsTest::fillsFromTheMiddle()
{
    QFETCH(QSize, size);
    QFETCH(QSize, target);
    QFETCH(QRect, crop);
    const QImage pixels = screenSample(size.width(), size.height());
    const kx::Image filled = kx::resize(pixels, target);
    QCOMPARE(filled.size(), QSizeF(target));
    QCOMPARE(withoutRatio(onlyPixels(filled)),
        withoutRatio(pixels.copy(inPixels(crop.x(), crop.y(), crop.width(), crop.height()))));

    // What is cut off leaves no trace, enlarged and painted by a handler.
    const auto paint = [crop](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::blue);
        painter.fillRect(crop, Qt::red);
        return true;
    };
    const kx::Image painted = kx::resize(kx::Image::imageWithSize(size, false, paint), target * 3);
    QCOMPARE(onlyPixels(painted), plainImage(target * 3 * screenRatio(), Qt::red));
}

void ImageKXToolsTest::fillsByReducingOverAllPixels()
{
    QImage columns(512, 512, QImage::Format_RGB32);
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x)
            columns.setPixel(x, y, x % 4 == 0 ? 0xFFFFFFFF : 0xFF000000);
    }
    const QImage filled = onlyPixels(kx::resize(columns, QSizeF(16, 16)));
    for (int x = 0; x < filled.width(); ++x)
        QVERIFY(qAbs(qRed(filled.pixel(x, 5)) - 64) < 12);
}

void ImageKXToolsTest::takesPartsUpwards()
{
    const QImage pixels = screenSample(40, 20);
    const auto part = [&pixels](const QRectF &rect) {
        return withoutRatio(onlyPixels(kx::fromRect(pixels, rect, QRectF(QPointF(0, 0), rect.size()))));
    };
    QCOMPARE(part(QRectF(0, 0, 10, 4)), withoutRatio(pixels.copy(inPixels(0, 16, 10, 4)))); // bottom left
    QCOMPARE(part(QRectF(30, 16, 10, 4)), withoutRatio(pixels.copy(inPixels(30, 0, 10, 4)))); // top right
    QCOMPARE(withoutRatio(onlyPixels(kx::fromRect(pixels, QRectF(), QRectF(0, 0, 40, 20)))), withoutRatio(pixels));
}

// Deliberate: the target's origin is not reset.
void ImageKXToolsTest::movesPartsByTheTargetsOrigin()
{
    const QImage pixels = screenSample(40, 20);
    const kx::Image moved = kx::fromRect(pixels, QRectF(0, 0, 40, 20), QRectF(10, 4, 40, 20));
    QCOMPARE(moved.size(), QSizeF(40, 20));
    const QImage drawn = onlyPixels(moved);
    // 10 to the right and 4 up: the bottom right part of the image is out, its top left is at the bottom.
    QCOMPARE(withoutRatio(drawn.copy(inPixels(10, 0, 30, 16))), withoutRatio(pixels.copy(inPixels(0, 4, 30, 16))));
    QCOMPARE(qAlpha(drawn.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(drawn.pixel(drawn.width() - 1, drawn.height() - 1)), 0);

    const kx::Image gone = kx::fromRect(pixels, QRectF(0, 0, 40, 20), QRectF(40, 0, 40, 20));
    QCOMPARE(onlyPixels(gone), withoutRatio(blankImage(40, 20, screenRatio())));
}

void ImageKXToolsTest::leavesOutPartsOutsideTheImage()
{
    const kx::Image red = plainImage(QSize(20, 20), Qt::red);
    const kx::Image part = kx::fromRect(red, QRectF(10, 10, 20, 20), QRectF(0, 0, 20, 20));
    QCOMPARE(colorAt(part, 4, 15), QColor(Qt::red)); // the bottom left quarter
    QCOMPARE(colorAt(part, 15, 15).alpha(), 0);
    QCOMPARE(colorAt(part, 4, 4).alpha(), 0);
}

void ImageKXToolsTest::drawsHandlersAtTheScreensScale()
{
    double scale = 0;
    const kx::Image image =
        kx::Image::imageWithSize(QSizeF(10, 10), false, [&scale](QPainter &painter, const QRectF &) {
            scale = painter.deviceTransform().m11();
            return true;
        });
    (void)kx::resizeAspect(image, QSizeF(40, 40));
    QCOMPARE(scale, 4 * screenRatio());
    (void)kx::resize(image, QSizeF(20, 20));
    QCOMPARE(scale, 2 * screenRatio());
    (void)kx::bitmap(image);
    QCOMPARE(scale, screenRatio());
}

void ImageKXToolsTest::givesABitmap()
{
    const kx::Image image = kx::Image::withRepresentations(QSizeF(10, 10),
        {kx::Bitmap(sampleImage(10, 10)), kx::Bitmap(sampleImage(20, 20, 2)), kx::Bitmap(sampleImage(15, 15, 1.5))});
    QVERIFY(kx::bitmap(image) == image.representations().at(1));

    const QImage pixels = sampleImage(6, 6);
    const kx::Bitmap stretched = kx::bitmap(kx::Image::withRepresentations(QSizeF(3, 2), {kx::Bitmap(pixels)}));
    QCOMPARE(stretched.size(), QSizeF(3, 2));
    QCOMPARE(stretched.toQImage(), pixels);

    const kx::Bitmap painted = kx::bitmap(redByHandler(QSizeF(10, 4)));
    QCOMPARE(painted.size(), QSizeF(10, 4));
    QCOMPARE(painted.toQImage().size(), QSize(10, 4) * screenRatio());
    QCOMPARE(painted.toQImage().pixelColor(0, 0), QColor(Qt::red));
}

void ImageKXToolsTest::keepsTheColorSpace()
{
    QImage pixels = sampleImage(40, 20);
    pixels.setColorSpace(QColorSpace::DisplayP3);
    QCOMPARE(onlyPixels(kx::resize(pixels, QSizeF(5, 5))).colorSpace(), pixels.colorSpace());
    QCOMPARE(onlyPixels(kx::imageWithTintColor(pixels, Qt::red)).colorSpace(), pixels.colorSpace());
    QCOMPARE(onlyPixels(kx::imageWithAlpha(pixels, 0.5)).colorSpace(), pixels.colorSpace());
}

void ImageKXToolsTest::givesNoneForHostileSizes_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("empty") << QSizeF(0, 0);
    QTest::newRow("no height") << QSizeF(10, 0);
    QTest::newRow("negative") << QSizeF(-10, 10);
    QTest::newRow("no number") << QSizeF(notANumber, 10);
    QTest::newRow("endless") << QSizeF(infinite, infinite);
    QTest::newRow("huge") << QSizeF(1e300, 1e300);
    QTest::newRow("too much to draw") << QSizeF(32767, 32767);
    QTest::newRow("too wide to draw") << QSizeF(32768, 1);
    QTest::newRow("too high to draw") << QSizeF(1, 1e9);
}

void ImageKXToolsTest::givesNoneForHostileSizes()
{
    QFETCH(QSizeF, size);
    const QRectF whole(0, 0, 8, 8);
    for (const kx::Image &image : {kx::Image(sampleImage(8, 8)), redByHandler(QSizeF(8, 8))}) {
        QVERIFY(!kx::resizeAspect(image, size));
        QVERIFY(!kx::resizeAspect(image, size, Qt::blue));
        QVERIFY(!kx::resize(image, size));
        QVERIFY(!kx::fromRect(image, whole, QRectF(QPointF(0, 0), size)));
    }
    if (size.width() >= 1 && size.width() < 1e6)
        return; // an image may be so large, only not be drawn
    const kx::Image odd = kx::Image::withRepresentations(size, {kx::Bitmap(sampleImage(8, 8))});
    for (const kx::Image &image : {odd, redByHandler(size)}) {
        QVERIFY(!kx::resizeAspect(image, QSizeF(4, 4)) || size.width() > 1e200);
        QVERIFY(!kx::resize(image, QSizeF(4, 4)) || size.width() > 1e200);
        QVERIFY(!kx::fromRect(image, whole, whole) || size.width() > 1e200);
        QVERIFY(!kx::imageWithAlpha(image, 0.5));
        QVERIFY(kx::CGImageRefWithScale(image, 2).isNull());
        QVERIFY(!kx::bitmap(image) || size.width() > 1e200);
    }
}

void ImageKXToolsTest::survivesHostileSources_data()
{
    QTest::addColumn<QRectF>("rect");
    for (const auto &[name, rect] : hostileRects())
        QTest::newRow(name) << rect;
}

void ImageKXToolsTest::survivesHostileSources()
{
    QFETCH(QRectF, rect);
    for (const kx::Image &image : {kx::Image(sampleImage(8, 8)), redByHandler(QSizeF(8, 8))}) {
        const kx::Image part = kx::fromRect(image, rect, QRectF(0, 0, 4, 4));
        QCOMPARE(onlyPixels(part), withoutRatio(blankImage(4, 4, screenRatio()))); // nothing drawn
        const kx::Image target = kx::fromRect(image, QRectF(0, 0, 8, 8), rect);
        QVERIFY(!target || target.size() == rect.size());
    }
}

void ImageKXToolsTest::givesNoneForNone()
{
    const kx::Image empty = kx::Image::withRepresentations(QSizeF(8, 8), {});
    const kx::PixelLayout layout = kx::Bitmap(sampleImage(8, 8)).layout();
    const kx::Bitmap unreadable = kx::Bitmap::create(layout, QSizeF(8, 8), "too short");
    QVERIFY(unreadable);
    const kx::Image withoutPixels = kx::Image::withRepresentations(QSizeF(8, 8), {unreadable});
    for (const kx::Image &image : {kx::Image(), empty, withoutPixels}) {
        QVERIFY(kx::CGImageRef(image).isNull());
        QVERIFY(kx::CGImageRefWithScale(image, 2).isNull());
        QVERIFY(kx::CGImageRef4PDF(image).isNull());
        QVERIFY(!kx::imageWithAlpha(image, 0.5));
        QVERIFY(!kx::imageWithTintColor(image, Qt::red));
        QVERIFY(!kx::resizeAspect(image, QSizeF(4, 4), Qt::red));
        QVERIFY(!kx::resize(image, QSizeF(4, 4)));
        QVERIFY(!kx::fromRect(image, QRectF(0, 0, 4, 4), QRectF(0, 0, 4, 4)));
        QVERIFY(!kx::bitmap(image));
    }
    QVERIFY(!kx::imageWithAlpha(nullptr, 1));
    QVERIFY(!kx::imageWithTintColor(nullptr, nullptr));
}

void ImageKXToolsTest::passesOverPixelsThatCannotBeRead()
{
    const QImage pixels = sampleImage(8, 8);
    const kx::PixelLayout layout = kx::Bitmap(sampleImage(16, 16)).layout();
    const kx::Bitmap unreadable = kx::Bitmap::create(layout, QSizeF(8, 8), "too short");
    const kx::Image image = kx::Image::withRepresentations(QSizeF(8, 8), {unreadable, kx::Bitmap(pixels)});
    QCOMPARE(kx::CGImageRef(image), pixels);
    QCOMPARE(kx::bitmap(image).toQImage(), pixels);
    QCOMPARE(image.toQImage(1), pixels);
    QCOMPARE(kx::imageWithTintColor(image, Qt::red).representations().size(), 1);
}

void ImageKXToolsTest::keepsSizesAtOddOnes()
{
    const kx::Color color = kx::Color::rgba(0.2, 0.4, 0.6, 0.8);
    for (const QSize &size : {QSize(1, 1), QSize(1, 17), QSize(33, 2), QSize(7, 5)}) {
        const QSizeF points(size);
        for (const double ratio : {1.0, 1.5, 2.0, 3.0}) {
            const kx::Image image =
                kx::Image::withRepresentations(points, {kx::Bitmap(sampleImage(size.width(), size.height(), ratio))});
            QCOMPARE(kx::imageWithAlpha(image, 0.3).size(), points);
            QCOMPARE(kx::imageWithTintColor(image, color).size(), points);
            for (const QSizeF &target : {QSizeF(1, 1), QSizeF(0.3, 9.7), QSizeF(31, 1), QSizeF(10.5, 10.5)}) {
                for (const kx::Image &drawn : {kx::resizeAspect(image, target, color), kx::resize(image, target),
                         kx::fromRect(image, QRectF(QPointF(0, 0), points), QRectF(QPointF(0.5, 0), target))}) {
                    QCOMPARE(drawn.size(), target);
                    QCOMPARE(drawn.representations().size(), 1);
                    QCOMPARE(drawn.representations().constFirst().size(), target);
                }
                // Opaque all over, whatever was rounded.
                const QImage filled = onlyPixels(kx::resize(image, target));
                for (int x = 0; x < filled.width(); ++x)
                    QCOMPARE(qAlpha(filled.pixel(x, filled.height() - 1)), 255);
            }
        }
    }
}

QTEST_MAIN(ImageKXToolsTest)
#include "ImageKXToolsTest.moc"
