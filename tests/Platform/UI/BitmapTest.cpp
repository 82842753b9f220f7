// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Bitmap.h>

#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

class BitmapTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void isNoneByDefault();
    void sharesThePixelsOfAnImage();
    void takesImagesOfEveryFormat_data();
    void takesImagesOfEveryFormat();
    void packsRowsWithPadding();
    void refusesImpossibleLayouts_data();
    void refusesImpossibleLayouts();
    void readsExplicitLayouts_data();
    void readsExplicitLayouts();
    void readsFormatsByName_data();
    void readsFormatsByName();
    void readsRowsAtOddAddresses();
    void readsABufferAtAnOddAddress();
    void keepsABufferThatIsTooShort();
    void comparesBytesAndLayouts();
};

namespace {

kx::PixelLayout rgbaLayout(int width, int height)
{
    kx::PixelLayout layout;
    layout.pixelWidth = width;
    layout.pixelHeight = height;
    layout.bitsPerSample = 8;
    layout.samplesPerPixel = 4;
    layout.hasAlpha = true;
    layout.bitsPerPixel = 32;
    layout.bytesPerRow = qint64(width) * 4;
    return layout;
}

} // namespace

void BitmapTest::isNoneByDefault()
{
    const kx::Bitmap none;
    QVERIFY(none == nullptr);
    QVERIFY(!kx::Bitmap(QImage()));
    QVERIFY(kx::isAbsent(none));
    QCOMPARE(none.size(), QSizeF(0, 0));
    QCOMPARE(none.layout(), kx::PixelLayout());
    QVERIFY(!none.data());
    QCOMPARE(none.dataSize(), 0);
    QVERIFY(none.toQImage().isNull());
}

void BitmapTest::sharesThePixelsOfAnImage()
{
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.setDevicePixelRatio(2);
    const kx::Bitmap bitmap = image;
    QCOMPARE(bitmap.data(), std::as_const(image).constBits());
    QCOMPARE(bitmap.toQImage().constBits(), bitmap.data());
    QCOMPARE(bitmap.size(), QSizeF(100, 50));
    QCOMPARE(bitmap.dataSize(), 200 * 100 * 4);
    const kx::PixelLayout &layout = bitmap.layout();
    QCOMPARE(layout.pixelWidth, 200);
    QCOMPARE(layout.pixelHeight, 100);
    QCOMPARE(layout.bitsPerSample, 8);
    QCOMPARE(layout.samplesPerPixel, 3);
    QCOMPARE(layout.bitsPerPixel, 32);
    QCOMPARE(layout.bytesPerRow, 800);
    QVERIFY(!layout.hasAlpha);
    QVERIFY(layout.isValid());

    image.fill(Qt::blue); // the owner's next change makes a copy; the bitmap stays
    QCOMPARE(bitmap.toQImage().pixelColor(0, 0), QColor(Qt::red));
}

void BitmapTest::takesImagesOfEveryFormat_data()
{
    QTest::addColumn<QImage::Format>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("%d", format) << QImage::Format(format);
}

void BitmapTest::takesImagesOfEveryFormat()
{
    QFETCH(QImage::Format, format);
    for (const int width : {1, 3, 8, 33}) {
        QImage source(width, 5, QImage::Format_ARGB32_Premultiplied);
        source.fill(Qt::white);
        source.setPixelColor(width - 1, 4, Qt::black);
        const QImage image = source.convertToFormat(format);
        const kx::Bitmap bitmap = image;
        QVERIFY(bitmap);
        QVERIFY(bitmap.layout().isValid());
        QCOMPARE(bitmap.dataSize(), bitmap.layout().pixelBytes()); // no padding
        QCOMPARE(bitmap.layout().hasAlpha, image.hasAlphaChannel());
        QCOMPARE(
            bitmap.toQImage().convertToFormat(QImage::Format_ARGB32), image.convertToFormat(QImage::Format_ARGB32));
    }
}

void BitmapTest::packsRowsWithPadding()
{
    QImage image(3, 2, QImage::Format_RGB888);
    image.fill(QColor(1, 2, 3));
    QCOMPARE(image.bytesPerLine(), 12);
    const kx::Bitmap bitmap = image;
    QCOMPARE(bitmap.layout().bytesPerRow, 9);
    QCOMPARE(bitmap.layout().bitsPerPixel, 24);
    QCOMPARE(bitmap.dataSize(), 18);
    QCOMPARE(bitmap.toQImage(), image);
}

void BitmapTest::refusesImpossibleLayouts_data()
{
    QTest::addColumn<kx::PixelLayout>("layout");
    const auto row = [](const char *name, auto change) {
        kx::PixelLayout layout = rgbaLayout(4, 4);
        change(layout);
        QTest::newRow(name) << layout;
    };
    constexpr int most = std::numeric_limits<int>::max();
    row("no width", [](kx::PixelLayout &layout) { layout.pixelWidth = 0; });
    row("negative height", [](kx::PixelLayout &layout) { layout.pixelHeight = -1; });
    row("no samples", [](kx::PixelLayout &layout) { layout.samplesPerPixel = 0; });
    row("no bits per sample", [](kx::PixelLayout &layout) { layout.bitsPerSample = 0; });
    row("no bits per pixel", [](kx::PixelLayout &layout) { layout.bitsPerPixel = 0; });
    row("negative bits per pixel", [](kx::PixelLayout &layout) { layout.bitsPerPixel = -32; });
    row("samples that do not fit", [](kx::PixelLayout &layout) { layout.bitsPerPixel = 31; });
    row("very many samples", [](kx::PixelLayout &layout) { layout.samplesPerPixel = most; });
    row("very many bits", [](kx::PixelLayout &layout) { layout.bitsPerPixel = most; });
    row("short rows", [](kx::PixelLayout &layout) { layout.bytesPerRow = 15; });
    row("no row length", [](kx::PixelLayout &layout) { layout.bytesPerRow = 0; });
    row("a buffer beyond counting",
        [](kx::PixelLayout &layout) { layout.bytesPerRow = std::numeric_limits<qint64>::max(); });
    row("width beyond the row", [](kx::PixelLayout &layout) { layout.pixelWidth = most; });
    row("format of other pixels", [](kx::PixelLayout &layout) { layout.format = QImage::Format_RGB888; });
    row("bits that a format uses of those it stores", [](kx::PixelLayout &layout) {
        layout.bitsPerSample = 6;
        layout.samplesPerPixel = 3;
        layout.bitsPerPixel = 18;
        layout.format = QImage::Format_RGB666;
    });
    row("a format beyond all", [](kx::PixelLayout &layout) { layout.format = QImage::NImageFormats; });
    row("a format far beyond all", [](kx::PixelLayout &layout) { layout.format = QImage::Format(63); });
}

void BitmapTest::refusesImpossibleLayouts()
{
    QFETCH(kx::PixelLayout, layout);
    QVERIFY(!layout.isValid());
    QVERIFY(!kx::Bitmap::create(layout, QSizeF(4, 4), QByteArray(1024, '\0')));
}

void BitmapTest::readsExplicitLayouts_data()
{
    QTest::addColumn<int>("bitsPerSample");
    QTest::addColumn<int>("samplesPerPixel");
    QTest::addColumn<bool>("hasAlpha");
    QTest::addColumn<int>("bitsPerPixel");
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("rgba") << 8 << 4 << true << 32 << QImage::Format_RGBA8888_Premultiplied;
    QTest::newRow("rgbx") << 8 << 3 << false << 32 << QImage::Format_RGBX8888;
    QTest::newRow("rgb") << 8 << 3 << false << 24 << QImage::Format_RGB888;
    QTest::newRow("gray") << 8 << 1 << false << 8 << QImage::Format_Grayscale8;
    QTest::newRow("deep rgba") << 16 << 4 << true << 64 << QImage::Format_RGBA64_Premultiplied;
    QTest::newRow("deep rgbx") << 16 << 3 << false << 64 << QImage::Format_RGBX64;
    QTest::newRow("deep gray") << 16 << 1 << false << 16 << QImage::Format_Grayscale16;
    QTest::newRow("deep rgb") << 16 << 3 << false << 48 << QImage::Format_Invalid;
    QTest::newRow("gray and alpha") << 8 << 2 << true << 16 << QImage::Format_Invalid;
    QTest::newRow("wide gray") << 8 << 1 << false << 12 << QImage::Format_Invalid;
    QTest::newRow("bits") << 1 << 1 << false << 1 << QImage::Format_Invalid;
    QTest::newRow("four colours") << 8 << 4 << false << 32 << QImage::Format_Invalid;
}

void BitmapTest::readsExplicitLayouts()
{
    QFETCH(int, bitsPerSample);
    QFETCH(int, samplesPerPixel);
    QFETCH(bool, hasAlpha);
    QFETCH(int, bitsPerPixel);
    kx::PixelLayout layout;
    layout.pixelWidth = 5;
    layout.pixelHeight = 3;
    layout.bitsPerSample = bitsPerSample;
    layout.samplesPerPixel = samplesPerPixel;
    layout.hasAlpha = hasAlpha;
    layout.bitsPerPixel = bitsPerPixel;
    layout.bytesPerRow = (5 * bitsPerPixel + 7) / 8;
    QVERIFY(layout.isValid());
    QTEST(layout.resolvedFormat(), "format");

    const QByteArray bytes(layout.bytesPerRow * 3, '\xFF');
    const kx::Bitmap bitmap = kx::Bitmap::create(layout, QSizeF(5, 3), bytes);
    QVERIFY(bitmap);
    const QImage image = bitmap.toQImage();
    QTEST(image.format(), "format");
    if (layout.resolvedFormat() != QImage::Format_Invalid) {
        QCOMPARE(image.pixelColor(4, 2), QColor(Qt::white));
        QCOMPARE(image.constBits(), bitmap.data());
    }
}

void BitmapTest::readsFormatsByName_data()
{
    takesImagesOfEveryFormat_data();
}

void BitmapTest::readsFormatsByName()
{
    QFETCH(QImage::Format, format);
    QImage source(9, 3, QImage::Format_ARGB32_Premultiplied);
    source.fill(Qt::white);
    const QImage image = source.convertToFormat(format);
    kx::PixelLayout layout;
    layout.pixelWidth = image.width();
    layout.pixelHeight = image.height();
    layout.bitsPerSample = 1;
    layout.samplesPerPixel = 1;
    layout.bitsPerPixel = image.depth();
    layout.bytesPerRow = image.bytesPerLine();
    layout.format = format;
    const QByteArray bytes(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
    const kx::Bitmap bitmap = kx::Bitmap::create(layout, QSizeF(9, 3), bytes);
    QVERIFY(bitmap);
    QCOMPARE(bitmap.dataSize(), image.sizeInBytes());
    const bool hasColorTable =
        format == QImage::Format_Mono || format == QImage::Format_MonoLSB || format == QImage::Format_Indexed8;
    QCOMPARE(bitmap.toQImage(), hasColorTable ? QImage() : image);
}

void BitmapTest::readsRowsAtOddAddresses()
{
    kx::PixelLayout layout = rgbaLayout(2, 2);
    layout.bytesPerRow = 11;
    QByteArray bytes(11 + 8, '\0');
    bytes[11 + 4] = '\x40'; // red of the last pixel
    bytes[11 + 7] = '\xFF';
    const QImage image = kx::Bitmap::create(layout, QSizeF(2, 2), bytes).toQImage();
    QCOMPARE(image.pixelColor(1, 1), QColor(0x40, 0, 0));
    QCOMPARE(image.pixelColor(0, 1).alpha(), 0);
}

void BitmapTest::readsABufferAtAnOddAddress()
{
    const QByteArray bytes = QByteArray(1, '\0') + QByteArray(16, '\xFF');
    const QByteArray odd = QByteArray::fromRawData(bytes.constData() + 1, 16);
    const QImage image = kx::Bitmap::create(rgbaLayout(2, 2), QSizeF(2, 2), odd).toQImage();
    QCOMPARE(image.pixelColor(1, 1), QColor(Qt::white));
    QCOMPARE(quintptr(image.constBits()) % 4, 0U);
}

void BitmapTest::keepsABufferThatIsTooShort()
{
    const kx::PixelLayout layout = rgbaLayout(4, 4);
    const kx::Bitmap cut = kx::Bitmap::create(layout, QSizeF(4, 4), QByteArray(63, '\0'));
    QVERIFY(cut);
    QCOMPARE(cut.dataSize(), 63);
    QCOMPARE(cut.layout(), layout);
    QVERIFY(cut.toQImage().isNull());
    const kx::Bitmap blank = kx::Bitmap::create(layout, QSizeF(4, 4), QByteArray());
    QVERIFY(blank);
    QCOMPARE(blank.dataSize(), 0);
    QVERIFY(blank.toQImage().isNull());
    QVERIFY(!kx::Bitmap::create(layout, QSizeF(4, 4), QByteArray(65, '\0')).toQImage().isNull());
}

void BitmapTest::comparesBytesAndLayouts()
{
    QImage image(3, 3, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    const kx::Bitmap bitmap = image;
    const kx::Bitmap again = image;
    QVERIFY(bitmap != again);
    QVERIFY(bitmap.sameValue(again));
    image.setPixelColor(2, 2, Qt::blue);
    QVERIFY(!bitmap.sameValue(kx::Bitmap(image)));
    QVERIFY(!bitmap.sameValue(nullptr));
}

QTEST_APPLESS_MAIN(BitmapTest)
#include "BitmapTest.moc"
