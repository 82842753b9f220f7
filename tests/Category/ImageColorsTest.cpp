// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ImageKXTools.h>

#include <QtCore/QRandomGenerator>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <array>

#include "Support/TestImages.h"

using namespace Qt::StringLiterals;
using namespace kx::test;

// Tinting and fading. Run at several device pixel ratios of the screen.
class ImageColorsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void opaqueImagesStayThemselves();
    void fadesEveryPixel_data();
    void fadesEveryPixel();
    void fadesAtTheScreensScale();
    void imagesWithoutTintStayThemselves();
    void tintsWhatIsOpaque();
    void tintsAtTheScaleOfTheSource();
    void tintsCopiesOnly();
    void tintsMasksWithTheirCaps();
    void survivesOddColors_data();
    void survivesOddColors();
    void tintsEveryFormat_data();
    void tintsEveryFormat();
    void agreesWithThePainter();
    void agreesWithExactSums();
};

namespace {

double screenRatio()
{
    return qGuiApp->devicePixelRatio();
}

QImage onlyPixels(const kx::Image &image)
{
    return image.representations().value(0).toQImage();
}

// Random premultiplied pixels.
QImage randomImage(int width, int height, QRandomGenerator &random)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qPremultiply(random.generate()));
    }
    return image;
}

// Premultiplied, unlike QImage::pixel().
QRgb storedPixel(const QImage &image, int x, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y))[x];
}

std::array<int, 4> channels(QRgb pixel)
{
    return {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)};
}

} // namespace

void ImageColorsTest::opaqueImagesStayThemselves()
{
    const kx::Image image = sampleImage(8, 8);
    QVERIFY(kx::imageWithAlpha(image, 1.0) == image);
    for (const double other : {std::nextafter(1.0, 0.0), std::nextafter(1.0, 2.0), 3.0})
        QVERIFY(kx::imageWithAlpha(image, other) != image);
}

void ImageColorsTest::fadesEveryPixel_data()
{
    QTest::addColumn<double>("alpha");
    QTest::addColumn<int>("opaque");
    QTest::newRow("0.45 in single precision") << double(0.45F) << 115;
    QTest::newRow("half") << 0.5 << 128;
    QTest::newRow("nothing") << 0.0 << 0;
    QTest::newRow("a little") << 0.004 << 1;
    QTest::newRow("nearly all") << 0.9999 << 255;
    QTest::newRow("below") << -3.0 << 0;
    QTest::newRow("above") << 3.0 << 255;
    QTest::newRow("no number") << notANumber << 0;
    QTest::newRow("endless") << infinite << 255;
}

void ImageColorsTest::fadesEveryPixel()
{
    QFETCH(double, alpha);
    QFETCH(int, opaque);
    const double ratio = screenRatio();
    QImage pixels = plainImage(QSize(10, 10) * ratio, Qt::transparent, ratio);
    QPainter(&pixels).fillRect(0, 0, 10, 4, Qt::red);
    const kx::Image faded = kx::imageWithAlpha(pixels, alpha);
    QCOMPARE(faded.size(), QSizeF(10, 10));
    const QImage result = onlyPixels(faded);
    QCOMPARE(result.size(), pixels.size());
    for (int x = 0; x < result.width(); ++x) {
        QCOMPARE(storedPixel(result, x, 0), qRgba(opaque, 0, 0, opaque));
        QCOMPARE(qAlpha(result.pixel(x, result.height() - 1)), 0);
    }
}

void ImageColorsTest::fadesAtTheScreensScale()
{
    for (const double ratio : {1.0, 2.0, 3.0}) {
        const kx::Image faded = kx::imageWithAlpha(plainImage(QSize(8, 4) * ratio, Qt::red, ratio), 0.5);
        QCOMPARE(faded.size(), QSizeF(8, 4));
        QCOMPARE(onlyPixels(faded).size(), QSize(8, 4) * screenRatio());
    }
    // At the same scale, no pixel is mixed with its neighbours.
    const double ratio = screenRatio();
    const QImage pixels = sampleImage(int(8 * ratio), int(8 * ratio), ratio);
    const QImage faded = onlyPixels(kx::imageWithAlpha(pixels, 254 / 255.0));
    for (int x = 0; x < pixels.width(); ++x)
        QVERIFY(qAbs(qRed(faded.pixel(x, 2)) - qRed(pixels.pixel(x, 2))) <= 1);
}

void ImageColorsTest::imagesWithoutTintStayThemselves()
{
    const kx::Image image = sampleImage(8, 8);
    QVERIFY(kx::imageWithTintColor(image, nullptr) == image);
    QVERIFY(kx::imageWithTintColor(image, QColor()) == image);
    QVERIFY(kx::imageWithTintColor(image, Qt::red) != image);
}

void ImageColorsTest::tintsWhatIsOpaque()
{
    QImage pixels = plainImage(QSize(4, 1), Qt::transparent);
    pixels.setPixelColor(0, 0, Qt::white);
    pixels.setPixelColor(1, 0, Qt::black);
    pixels.setPixelColor(2, 0, QColor(0, 255, 0, 100));
    const QImage tinted = onlyPixels(kx::imageWithTintColor(pixels, kx::Color::rgba(1.0, 46 / 255.0, 67 / 255.0, 1.0)));
    QCOMPARE(tinted.pixelColor(0, 0), QColor(255, 46, 67));
    QCOMPARE(tinted.pixelColor(1, 0), QColor(255, 46, 67));
    QCOMPARE(tinted.pixel(2, 0) >> 24, 100U);
    QVERIFY(qAbs(tinted.pixelColor(2, 0).green() - 46) <= 1);
    QCOMPARE(tinted.pixel(3, 0), 0U);

    const QImage half = onlyPixels(kx::imageWithTintColor(pixels, kx::Color::rgba(1, 0, 0, 0.5)));
    QCOMPARE(half.pixelColor(0, 0), QColor(255, 127, 127));
    QCOMPARE(half.pixelColor(1, 0), QColor(128, 0, 0));
    QCOMPARE(half.pixel(3, 0), 0U);
}

void ImageColorsTest::tintsAtTheScaleOfTheSource()
{
    const kx::Image image = kx::Image::withRepresentations(
        QSizeF(8, 8), {kx::Bitmap(sampleImage(8, 8)), kx::Bitmap(sampleImage(24, 24, 3))});
    const kx::Image tinted = kx::imageWithTintColor(image, Qt::red);
    QCOMPARE(tinted.size(), QSizeF(8, 8));
    QCOMPARE(tinted.representations().size(), 2);
    QCOMPARE(tinted.pixelScale(), 3.0); // whatever the screen
    QCOMPARE(tinted.representations().at(1).size(), QSizeF(8, 8));
    QCOMPARE(onlyPixels(tinted), plainImage(QSize(8, 8), Qt::red));

    const kx::Image painted = kx::imageWithTintColor(kx::Image::imageWithSize(QSizeF(8, 8), false,
                                                         [](QPainter &painter, const QRectF &) {
                                                             painter.fillRect(0, 0, 4, 8, Qt::blue);
                                                             return true;
                                                         }),
        Qt::red);
    QCOMPARE(painted.pixelScale(), screenRatio());
    QCOMPARE(onlyPixels(painted).pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(qAlpha(onlyPixels(painted).pixel(int(7 * screenRatio()), 0)), 0);
}

void ImageColorsTest::tintsCopiesOnly()
{
    const QImage pixels = sampleImage(8, 8);
    const kx::Image image = pixels;
    (void)kx::imageWithTintColor(image, Qt::red);
    (void)kx::imageWithAlpha(image, 0.3);
    QCOMPARE(onlyPixels(image), sampleImage(8, 8));
    QCOMPARE(onlyPixels(image).constBits(), pixels.constBits());
}

void ImageColorsTest::tintsMasksWithTheirCaps()
{
    const kx::Image mask = kx::imageWithTintColor(kx::imageWithSize(QSizeF(13, 13), 6), Qt::red);
    QCOMPARE(mask.capInsets(), QMarginsF(6, 6, 6, 6));
    QCOMPARE(mask.resizingMode(), kx::ResizingMode::Tile);
    QImage target = blankImage(40, 40);
    QPainter painter(&target);
    mask.draw(painter, QRectF(0, 0, 40, 40));
    painter.end();
    QCOMPARE(target.pixelColor(20, 0), QColor(Qt::red));
    QCOMPARE(target.pixelColor(20, 20), QColor(Qt::red));
    QCOMPARE(target.pixelColor(0, 0).alpha(), 0);
}

void ImageColorsTest::survivesOddColors_data()
{
    QTest::addColumn<double>("component");
    QTest::addColumn<int>("painted");
    QTest::newRow("below") << -1e300 << 0;
    QTest::newRow("above") << 1e300 << 255;
    QTest::newRow("endless") << infinite << 255;
    QTest::newRow("no number") << notANumber << 0;
}

void ImageColorsTest::survivesOddColors()
{
    QFETCH(double, component);
    QFETCH(int, painted);
    const kx::Image white = plainImage(QSize(3, 3), Qt::white);
    QCOMPARE(onlyPixels(kx::imageWithTintColor(white, kx::Color::rgba(component, 0, 1, 1))).pixelColor(1, 1),
        QColor(painted, 0, 255));
    QCOMPARE(onlyPixels(kx::imageWithTintColor(white, kx::Color::rgba(0, 0, 0, component))).pixelColor(1, 1),
        QColor(255 - painted, 255 - painted, 255 - painted));
}

void ImageColorsTest::tintsEveryFormat_data()
{
    QTest::addColumn<QImage::Format>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("%d", format) << QImage::Format(format);
}

void ImageColorsTest::tintsEveryFormat()
{
    QFETCH(QImage::Format, format);
    const QImage pixels = plainImage(QSize(3, 3), Qt::white).convertToFormat(format);
    QCOMPARE(onlyPixels(kx::imageWithTintColor(pixels, QColor(255, 46, 67))).pixelColor(1, 1), QColor(255, 46, 67));
}

// The same numbers as the raster painter's, at every remainder of a vector of pixels.
void ImageColorsTest::agreesWithThePainter()
{
    QRandomGenerator random(5);
    for (int round = 0; round < 200; ++round) {
        const QImage pixels = randomImage(1 + round % 37, 1 + round % 5, random);
        const QColor color = QColor::fromRgba(round % 3 ? random.generate() : random.generate() | 0xFF000000U);
        QImage expected = pixels;
        QPainter painter(&expected);
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.fillRect(expected.rect(), color);
        painter.end();
        const QImage tinted = onlyPixels(kx::imageWithTintColor(pixels, color));
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                const auto ours = channels(storedPixel(tinted, x, y));
                const auto theirs = channels(storedPixel(expected, x, y));
                for (std::size_t channel = 0; channel < 4; ++channel)
                    QVERIFY(qAbs(ours[channel] - theirs[channel]) <= 1); // the colour's own rounding
                QCOMPARE(ours[3], theirs[3]);
            }
        }
    }
}

void ImageColorsTest::agreesWithExactSums()
{
    QRandomGenerator random(6);
    for (int round = 0; round < 200; ++round) {
        const QImage pixels = randomImage(1 + round % 23, 3, random);
        const double alpha = random.generateDouble();
        const std::array<double, 3> color = {random.generateDouble(), random.generateDouble(), random.generateDouble()};
        const QImage tinted =
            onlyPixels(kx::imageWithTintColor(pixels, kx::Color::rgba(color[0], color[1], color[2], alpha)));
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                const auto from = channels(storedPixel(pixels, x, y));
                const auto to = channels(storedPixel(tinted, x, y));
                QCOMPARE(to[3], from[3]);
                for (std::size_t channel = 0; channel < 3; ++channel) {
                    const double exact = color[channel] * alpha * from[3] + from[channel] * (1 - alpha);
                    QVERIFY(qAbs(to[channel] - exact) <= 1.5);
                    QVERIFY(to[channel] <= to[3]); // still premultiplied
                }
            }
        }
    }
}

QTEST_MAIN(ImageColorsTest)
#include "ImageColorsTest.moc"
