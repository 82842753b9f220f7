// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/BitmapKXTools.h>

#include <QtCore/QRandomGenerator>
#include <QtGui/QPainter>
#include <QtTest/QTest>

#include "Support/TestImages.h"

using namespace Qt::StringLiterals;
using namespace kx::test;

class BitmapKXToolsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void cutsPixelForPixel();
    void countsRowsFromTheTop();
    void missesWhatLiesOutside_data();
    void missesWhatLiesOutside();
    void keepsTheSizeAskedFor();
    void cutsTwoPixelsPerPoint();
    void truncates_data();
    void truncates();
    void cutsEveryLayout_data();
    void cutsEveryLayout();
    void cutsOnlyWholeBytes_data();
    void cutsOnlyWholeBytes();
    void doesNotCountPadding();
    void checksTheBuffer();
    void survivesHostileSizes_data();
    void survivesHostileSizes();
    void keepsTheColorSpace();
    void cutsImagesLikeQt_data();
    void cutsImagesLikeQt();
    void agreesWithANaiveCut();
};

namespace {

kx::PixelLayout layoutOf(int width, int height, int bitsPerPixel, qint64 padding = 0)
{
    kx::PixelLayout layout;
    layout.pixelWidth = width;
    layout.pixelHeight = height;
    layout.bitsPerSample = bitsPerPixel;
    layout.samplesPerPixel = 1;
    layout.bitsPerPixel = bitsPerPixel;
    layout.bytesPerRow = (width * bitsPerPixel + 7) / 8 + padding;
    return layout;
}

// Bytes that count up, so that each tells its place.
QByteArray countingBytes(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype at = 0; at < size; ++at)
        bytes[at] = char(at * 7 + at / 256);
    return bytes;
}

QByteArray bytesOf(const kx::Image &image)
{
    const kx::Bitmap bitmap = image.representations().value(0);
    return {reinterpret_cast<const char *>(bitmap.data()), bitmap.dataSize()};
}

} // namespace

void BitmapKXToolsTest::cutsPixelForPixel()
{
    const QImage pixels = sampleImage(20, 10);
    const kx::Image part = kx::imageFromRect(pixels, QRectF(3, 2, 8, 5));
    QCOMPARE(part.size(), QSizeF(8, 5));
    QCOMPARE(part.representations().size(), 1);
    const kx::Bitmap bitmap = part.representations().constFirst();
    QCOMPARE(bitmap.toQImage(), pixels.copy(3, 2, 8, 5));
    QCOMPARE(bitmap.layout().bytesPerRow, 8 * 4);
    QCOMPARE(bitmap.layout().bitsPerPixel, 32);
    QCOMPARE(bitmap.layout().bitsPerSample, 8);
    QCOMPARE(bitmap.layout().samplesPerPixel, 4);
    QVERIFY(bitmap.layout().hasAlpha);
}

void BitmapKXToolsTest::countsRowsFromTheTop()
{
    QImage pixels = plainImage(QSize(4, 4), Qt::blue);
    pixels.setPixelColor(0, 0, Qt::red);
    const kx::Image top = kx::imageFromRect(pixels, QRectF(0, 0, 1, 1));
    QCOMPARE(top.toQImage(1).pixelColor(0, 0), QColor(Qt::red));
}

void BitmapKXToolsTest::missesWhatLiesOutside_data()
{
    QTest::addColumn<QRectF>("rect");
    for (const auto &[name, rect] : hostileRects())
        QTest::newRow(name) << rect;
    QTest::newRow("right of it") << QRectF(100, 0, 10, 10);
    QTest::newRow("below it") << QRectF(0, 100, 10, 10);
    QTest::newRow("less than a pixel") << QRectF(5, 5, 0.9, 5);
    QTest::newRow("smallest") << QRectF(5, 5, 5e-324, 5e-324);
}

void BitmapKXToolsTest::missesWhatLiesOutside()
{
    QFETCH(QRectF, rect);
    QVERIFY(!kx::imageFromRect(sampleImage(100, 100), rect));
    QVERIFY(!kx::imageFromRect(nullptr, rect));
}

void BitmapKXToolsTest::keepsTheSizeAskedFor()
{
    const QImage pixels = sampleImage(100, 100);
    const kx::Image part = kx::imageFromRect(pixels, QRectF(90, -10, 40, 30));
    QCOMPARE(part.size(), QSizeF(40, 30));
    QCOMPARE(part.representations().constFirst().toQImage(), pixels.copy(90, 0, 10, 20));

    const kx::Image huge = kx::imageFromRect(pixels, QRectF(-1e300, -1e300, 2e300, 2e300));
    QCOMPARE(huge.size(), QSizeF(2e300, 2e300));
    QCOMPARE(huge.representations().constFirst().toQImage(), pixels);
    const kx::Image most = kx::imageFromRect(pixels, QRectF(99, 99, std::numeric_limits<double>::max(), 1e308));
    QCOMPARE(most.representations().constFirst().toQImage(), pixels.copy(99, 99, 1, 1));
}

void BitmapKXToolsTest::cutsTwoPixelsPerPoint()
{
    const QImage pixels = sampleImage(200, 200, 2);
    const kx::Bitmap bitmap = pixels;
    QCOMPARE(bitmap.size(), QSizeF(100, 100));
    const kx::Image part = kx::imageFromRect(bitmap, QRectF(10, 20, 30, 40));
    QCOMPARE(part.size(), QSizeF(30, 40));
    QCOMPARE(part.pixelScale(), 2.0);
    QImage expected = pixels.copy(20, 40, 60, 80);
    expected.setDevicePixelRatio(1);
    QCOMPARE(part.representations().constFirst().toQImage(), expected);
}

void BitmapKXToolsTest::truncates_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRect>("pixels");
    QTest::newRow("parts of pixels") << 1.0 << QRectF(1.9, 2.5, 3.99, 4.1) << QRect(1, 2, 3, 4);
    QTest::newRow("parts of points at 2") << 2.0 << QRectF(1.9, 2.5, 3.99, 4.1) << QRect(3, 5, 7, 8);
    QTest::newRow("ratio 1.5 is 1") << 1.5 << QRectF(2, 3, 4, 5) << QRect(2, 3, 4, 5);
    QTest::newRow("ratio 2.9 is 2") << 2.9 << QRectF(2, 3, 4, 5) << QRect(4, 6, 8, 10);
    QTest::newRow("the intersection's size") << 1.0 << QRectF(-0.5, -0.5, 3, 3) << QRect(0, 0, 2, 2);
    QTest::newRow("a size that sums inexactly") << 1.0 << QRectF(0.1, 0.7, 3, 5) << QRect(0, 0, 3, 5);
}

void BitmapKXToolsTest::truncates()
{
    QFETCH(double, ratio);
    QFETCH(QRectF, rect);
    QFETCH(QRect, pixels);
    const QImage image = sampleImage(int(20 * ratio), int(20 * ratio));
    const kx::Bitmap bitmap(image, QSizeF(20, 20));
    const kx::Image part = kx::imageFromRect(bitmap, rect);
    QCOMPARE(part.size(), rect.size());
    QCOMPARE(part.representations().value(0).toQImage(), image.copy(pixels));
}

void BitmapKXToolsTest::cutsEveryLayout_data()
{
    QTest::addColumn<int>("bitsPerPixel");
    for (const int bits : {8, 16, 24, 32, 40, 48, 64, 96, 128, 1024})
        QTest::addRow("%d bits", bits) << bits;
}

void BitmapKXToolsTest::cutsEveryLayout()
{
    QFETCH(int, bitsPerPixel);
    const kx::PixelLayout layout = layoutOf(7, 5, bitsPerPixel);
    const QByteArray bytes = countingBytes(layout.bytesPerRow * 5);
    const kx::Image part = kx::imageFromRect(kx::Bitmap::create(layout, QSizeF(7, 5), bytes), QRectF(2, 1, 4, 3));
    const qint64 unit = bitsPerPixel / 8;
    QByteArray expected;
    for (int row = 1; row < 4; ++row)
        expected += bytes.mid(row * layout.bytesPerRow + 2 * unit, 4 * unit);
    QCOMPARE(bytesOf(part), expected);
    kx::PixelLayout partLayout = layout;
    partLayout.pixelWidth = 4;
    partLayout.pixelHeight = 3;
    partLayout.bytesPerRow = 4 * unit;
    QCOMPARE(part.representations().constFirst().layout(), partLayout);
}

void BitmapKXToolsTest::cutsOnlyWholeBytes_data()
{
    QTest::addColumn<int>("bitsPerPixel");
    for (const int bits : {1, 2, 4, 7, 12, 15, 20})
        QTest::addRow("%d bits", bits) << bits;
}

void BitmapKXToolsTest::cutsOnlyWholeBytes()
{
    QFETCH(int, bitsPerPixel);
    const kx::PixelLayout layout = layoutOf(32, 4, bitsPerPixel);
    const kx::Bitmap bitmap = kx::Bitmap::create(layout, QSizeF(32, 4), countingBytes(layout.bytesPerRow * 4));
    QVERIFY(bitmap);
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(0, 0, 8, 2)));
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(0, 0, 32, 4)));
}

// Deliberate: the buffer is taken to be as long as its pixels alone, wherever rows have padding.
void BitmapKXToolsTest::doesNotCountPadding()
{
    const kx::PixelLayout layout = layoutOf(4, 4, 32, 16);
    const QByteArray bytes = countingBytes(layout.bytesPerRow * 4);
    const kx::Bitmap bitmap = kx::Bitmap::create(layout, QSizeF(4, 4), bytes);
    const kx::Image top = kx::imageFromRect(bitmap, QRectF(0, 0, 4, 2)); // up to byte 48 of the 64 that count
    QCOMPARE(bytesOf(top), bytes.mid(0, 16) + bytes.mid(32, 16));
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(0, 0, 4, 3))); // up to byte 80
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(0, 3, 1, 1)));
}

void BitmapKXToolsTest::checksTheBuffer()
{
    const kx::PixelLayout layout = layoutOf(4, 4, 32);
    const QByteArray bytes = countingBytes(64);
    for (int length = 0; length <= 64; ++length) {
        const kx::Bitmap cut = kx::Bitmap::create(layout, QSizeF(4, 4), bytes.left(length));
        QCOMPARE(bool(kx::imageFromRect(cut, QRectF(0, 0, 4, 4))), length >= 64);
        QCOMPARE(bool(kx::imageFromRect(cut, QRectF(1, 1, 2, 2))), length >= 2 * 16 + 12);
        QCOMPARE(bool(kx::imageFromRect(cut, QRectF(0, 0, 1, 1))), length >= 4);
    }
}

void BitmapKXToolsTest::survivesHostileSizes_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<bool>("cuts");
    QTest::newRow("no width") << QSizeF(0, 8) << false;
    QTest::newRow("negative") << QSizeF(-8, -8) << false;
    QTest::newRow("no number") << QSizeF(notANumber, 8) << false;
    QTest::newRow("endless") << QSizeF(infinite, infinite) << false;
    QTest::newRow("more points than pixels") << QSizeF(9, 9) << false;
    QTest::newRow("huge") << QSizeF(1e300, 1e300) << false;
    QTest::newRow("tiny") << QSizeF(1e-300, 1e-300) << false;
    QTest::newRow("more rows than pixels") << QSizeF(8, 100) << true;
    QTest::newRow("endless rows") << QSizeF(8, 1e300) << true;
    QTest::newRow("very fine") << QSizeF(1e-6, 1e-6) << true;
}

void BitmapKXToolsTest::survivesHostileSizes()
{
    QFETCH(QSizeF, size);
    const kx::Bitmap bitmap(sampleImage(8, 8), size);
    QTEST(bool(kx::imageFromRect(bitmap, QRectF(0, 0, 1, 1))), "cuts");
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(0, 8, 1, 1)));
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(1, 1e15, 1, 1e15)));
    QVERIFY(!kx::imageFromRect(bitmap, QRectF(0, 7, 8, 2)) || size == QSizeF(9, 9));
}

void BitmapKXToolsTest::keepsTheColorSpace()
{
    QImage pixels = sampleImage(4, 4);
    pixels.setColorSpace(QColorSpace::DisplayP3);
    const QImage part = kx::imageFromRect(pixels, QRectF(1, 1, 2, 2)).representations().constFirst().toQImage();
    QCOMPARE(part.colorSpace(), QColorSpace(QColorSpace::DisplayP3));
}

void BitmapKXToolsTest::cutsImagesLikeQt_data()
{
    QTest::addColumn<QImage::Format>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("%d", format) << QImage::Format(format);
}

void BitmapKXToolsTest::cutsImagesLikeQt()
{
    QFETCH(QImage::Format, format);
    for (const int width : {1, 3, 7, 16}) {
        const QImage pixels = sampleImage(width, 5).convertToFormat(format);
        for (const QRect &rect : {pixels.rect(), QRect(width / 2, 2, 1, 3), QRect(0, 4, width, 1)}) {
            const kx::Image part = kx::imageFromRect(pixels, rect);
            QCOMPARE(part.representations().value(0).toQImage().convertToFormat(QImage::Format_ARGB32),
                pixels.copy(rect).convertToFormat(QImage::Format_ARGB32));
        }
    }
}

// Random layouts, buffers and rectangles, in whole numbers, against a cut that looks at every byte.
void BitmapKXToolsTest::agreesWithANaiveCut()
{
    QRandomGenerator random(74);
    const auto upTo = [&random](int most) { return int(random.bounded(most + 1)); };
    int cuts = 0;
    for (int round = 0; round < 20000; ++round) {
        const int unit = 1 + upTo(7);
        const int scale = 1 + upTo(2);
        const int width = 1 + upTo(9);
        const int height = 1 + upTo(9);
        const kx::PixelLayout layout = layoutOf(width * scale, height * scale, unit * 8, upTo(1) ? upTo(9) : 0);
        const qint64 full = layout.bytesPerRow * layout.pixelHeight;
        const QByteArray bytes = countingBytes(upTo(3) ? full : upTo(int(full)));
        const QRect rect(upTo(14) - 4, upTo(14) - 4, upTo(12), upTo(12));
        const kx::Image part = kx::imageFromRect(kx::Bitmap::create(layout, QSizeF(width, height), bytes), rect);

        const QRect inside = rect & QRect(0, 0, width, height);
        const qint64 counted = std::min(layout.pixelBytes(), qint64(bytes.size()));
        QByteArray expected;
        bool fits = !rect.isEmpty() && !inside.isEmpty();
        for (int y = inside.y() * scale; fits && y < (inside.y() + inside.height()) * scale; ++y) {
            for (int x = inside.x() * scale * unit; fits && x < (inside.x() + inside.width()) * scale * unit; ++x) {
                const qint64 at = y * layout.bytesPerRow + x;
                fits = at < counted;
                if (fits)
                    expected += bytes[at];
            }
        }
        QCOMPARE(bool(part), fits);
        if (fits) {
            QCOMPARE(bytesOf(part), expected);
            QCOMPARE(part.size(), QSizeF(rect.size()));
            ++cuts;
        }
    }
    QVERIFY(cuts > 1000);
}

QTEST_APPLESS_MAIN(BitmapKXToolsTest)
#include "BitmapKXToolsTest.moc"
