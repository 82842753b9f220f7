// SPDX-License-Identifier: MIT
#include "OtherPrograms.h"
#include "PaintedImages.h"

#include <KXFoundation/Category/SaveImage.h>

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImageWriter>
#include <QtGui/QPainter>
#include <QtTest/QTest>

using namespace kx::test;
using namespace Qt::StringLiterals;

namespace {

QColor fewColors(int x, int y)
{
    return (x / 4 + y / 4) % 3 == 0 ? QColor(200, 30, 40)
        : (x / 4 + y / 4) % 3 == 1  ? QColor(0, 0, 0, 0)
                                    : QColor(1, 2, 3);
}

struct Picture {
    const char *name;
    QImage image;
};

QList<Picture> pictures()
{
    QImage points = painted({40, 30}, QImage::Format_ARGB32, translucent);
    points.setDevicePixelRatio(2);
    QImage padded(7, 5, QImage::Format_Mono); // rows that end inside a byte
    padded.setColorTable({qRgb(255, 255, 255), qRgb(10, 60, 200)});
    padded.fill(0);
    padded.setPixel(6, 4, 1);
    return {
        {"one pixel", painted({1, 1}, QImage::Format_RGB32, smooth)},
        {"one transparent pixel", painted({1, 1}, QImage::Format_ARGB32, fewColors).copy(0, 0, 1, 1)},
        {"wide", painted({9000, 1}, QImage::Format_RGB32, smooth)},
        {"tall", painted({1, 9000}, QImage::Format_RGB32, smooth)},
        {"opaque", painted({61, 47}, QImage::Format_RGB32, smooth)},
        {"opaque in three bytes", painted({61, 47}, QImage::Format_RGB888, smooth)},
        {"opaque with alpha", painted({61, 47}, QImage::Format_ARGB32, smooth)},
        {"translucent", painted({61, 47}, QImage::Format_ARGB32, translucent)},
        {"premultiplied", painted({61, 47}, QImage::Format_ARGB32_Premultiplied, translucent)},
        {"indexed", painted({61, 47}, QImage::Format_ARGB32, fewColors).convertToFormat(QImage::Format_Indexed8)},
        {"black and white", padded},
        {"grey", painted({61, 47}, QImage::Format_Grayscale8, smooth)},
        {"deep", painted({61, 47}, QImage::Format_RGBA64, translucent)},
        {"deep and opaque", painted({61, 47}, QImage::Format_RGBX64, smooth)},
        {"deep and grey", painted({61, 47}, QImage::Format_Grayscale16, smooth)},
        {"for a screen of ratio 2", points},
        {"large", painted({1600, 1200}, QImage::Format_RGB32, smooth)},
    };
}

QImage onWhite(const QImage &image)
{
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QImage pixels = image;
    pixels.setDevicePixelRatio(1);
    QPainter(&result).drawImage(0, 0, pixels);
    return result;
}

// Pixels of less than half the alpha are transparent, all others opaque on white.
QImage cutOut(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    QImage result = onWhite(image).convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(pixels.pixel(x, y)) < 128)
                result.setPixel(x, y, 0);
        }
    }
    return result;
}

} // namespace

// What the files hold, as other programs read them.
class SaveImageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void theExtensionSaysAsWhat_data();
    void theExtensionSaysAsWhat();
    void otherProgramsReadTheSamePixels_data();
    void otherProgramsReadTheSamePixels();
    void gifColorsStayNear();
    void sixteenBitsStaySixteenBits_data();
    void sixteenBitsStaySixteenBits();
    void tiffSaysWhatItHolds_data();
    void tiffSaysWhatItHolds();
    void gifSaysWhatItHolds();
    void pdfIsOnePageOfTheImagesSize_data();
    void pdfIsOnePageOfTheImagesSize();
    void pdfShowsTheImageUpright();
    void jpegHasHalfTheFullQuality();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }
    [[nodiscard]] QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_directory;
};

void SaveImageTest::theExtensionSaysAsWhat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("type");
    const auto add = [](const char *name, const char *type) {
        QTest::newRow(name) << QString::fromUtf8(name) << QByteArray(type);
    };
    add("a.jpg", "image/jpeg");
    add("a.jpeg", "image/jpeg");
    add("a.JPG", "image/jpeg");
    add("a.JpEg", "image/jpeg");
    add("a.png", "image/png");
    add("a.PNG", "image/png");
    add("a.tiff", "image/tiff");
    add("a.TIFF", "image/tiff");
    add("a.bmp", "image/bmp");
    add("a.BMP", "image/bmp");
    add("a.gif", "image/gif");
    add("a.GIF", "image/gif");
    add("a.pdf", "application/pdf");
    add("a.PDF", "application/pdf");
    // Everything else.
    add("a.tif", "image/png");
    add("a.TIF", "image/png");
    add("a", "image/png");
    add("a.", "image/png");
    add("a.jpe", "image/png");
    add("a.jpg2", "image/png");
    add("a.jpg ", "image/png");
    add("a.webp", "image/png");
    add("a.jpg.part", "image/png");
    add("a.png.jpg", "image/jpeg");
    add(".jpg", "image/png"); // a hidden file without an extension
    add("..gif", "image/gif");
    add("jpg", "image/png");
    add("folder.jpg/a", "image/png");
    add("folder.jpg/a.gif", "image/gif");
}

void SaveImageTest::theExtensionSaysAsWhat()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, type);
    QVERIFY(QDir(m_directory.path()).mkpath(u"folder.jpg"_qs));
    QVERIFY(kx::saveCGImageToFile(painted({8, 8}, QImage::Format_RGB32, smooth), path(name)));
    const QByteArray found = mimeType(path(name));
    QCOMPARE(found == "image/x-ms-bmp" ? QByteArray("image/bmp") : found, type);
}

void SaveImageTest::otherProgramsReadTheSamePixels_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QImage>("expected");
    QTest::addColumn<int>("difference");
    for (const Picture &picture : pictures()) {
        const QImage &image = picture.image;
        const QImage white = onWhite(image);
        const bool isDeep = image.format() >= QImage::Format_RGBX64;
        QTest::addRow("png, %s", picture.name) << u"png"_qs << image << image << (isDeep ? 1 : 0);
        QTest::addRow("tiff, %s", picture.name) << u"tiff"_qs << image << image << (isDeep ? 1 : 0);
        QTest::addRow("bmp, %s", picture.name) << u"bmp"_qs << image << white << 0;
        QTest::addRow("pdf, %s", picture.name) << u"pdf"_qs << image << image << (isDeep ? 1 : 0);
        if (!image.hasAlphaChannel() && image.depth() > 1) // these change too fast for JPEG
            QTest::addRow("jpg, %s", picture.name) << u"jpg"_qs << image << image << 20;
    }
    const auto few = painted({61, 47}, QImage::Format_ARGB32, fewColors);
    QTest::newRow("jpg, on white") << u"jpg"_qs << painted({64, 64}, QImage::Format_ARGB32, [](int, int) {
        return QColor(200, 100, 0, 100);
    }) << painted({64, 64}, QImage::Format_RGB32, [](int, int) {
        return QColor(233, 194, 155);
    }) << 3;
    const QImage wide = painted({40000, 2}, QImage::Format_ARGB32, translucent);
    QTest::newRow("bmp, wide and translucent") << u"bmp"_qs << wide << onWhite(wide) << 0;
    QTest::newRow("pdf, wide and translucent") << u"pdf"_qs << wide << wide << 0;
    QTest::newRow("gif, one transparent color") << u"gif"_qs << few << few << 0;
    QTest::newRow("gif, opaque") << u"gif"_qs << onWhite(few) << onWhite(few) << 0;
    const QImage grey = painted({256, 3}, QImage::Format_RGB32, [](int x, int) { return QColor(x, x, x); });
    QTest::newRow("gif, 256 colors") << u"gif"_qs << grey << grey << 0;
    QTest::newRow("gif, one pixel") << u"gif"_qs << grey.copy(7, 0, 1, 1) << grey.copy(7, 0, 1, 1) << 0;
    QTest::newRow("gif, wide") << u"gif"_qs << grey.scaled(9000, 1) << grey.scaled(9000, 1) << 0;
    const QImage veiled = painted({200, 1}, QImage::Format_ARGB32, [](int x, int) { return QColor(10, 20, 30, x); });
    QTest::newRow("gif, translucent") << u"gif"_qs << veiled << cutOut(veiled) << 1;
}

void SaveImageTest::otherProgramsReadTheSamePixels()
{
    QFETCH(const QString, extension);
    QFETCH(const QImage, image);
    QFETCH(const QImage, expected);
    QFETCH(const int, difference);
    const QString name = path(QString(u"pixels."_qs + extension));
    QVERIFY(kx::saveCGImageToFile(image, name));
    const QImage found = extension == u"pdf" ? pictureByPoppler(name) : pixelsByFfmpeg(name, image.size());
    QVERIFY(!found.isNull());
    QCOMPARE_LE(largestDifference(found, expected), difference);
}

void SaveImageTest::gifColorsStayNear()
{
    const QImage image = painted({256, 256}, QImage::Format_RGB32, smooth);
    QVERIFY(kx::saveCGImageToFile(image, path(u"near.gif"_qs)));
    const QImage found = pixelsByFfmpeg(path(u"near.gif"_qs), image.size());
    QCOMPARE_LE(largestDifference(found, image), 24);
}

void SaveImageTest::sixteenBitsStaySixteenBits_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QImage>("image");
    const auto color = [](int x, int y) {
        return QColor::fromRgba64(quint16(x * 1000 + y), quint16(y * 999), 12345, quint16(65535 - x));
    };
    const auto opaque = [](int x, int y) { return QColor::fromRgba64(quint16(x * 1000 + y), quint16(y * 999), 12345); };
    for (const char *extension : {"png", "tiff"}) {
        const auto name = QString(u"deep."_qs + QLatin1String(extension));
        QTest::addRow("%s, translucent", extension) << name << painted({60, 40}, QImage::Format_RGBA64, color);
        QTest::addRow("%s, opaque", extension) << name << painted({60, 40}, QImage::Format_RGBX64, opaque);
        QTest::addRow("%s, grey", extension) << name << painted({60, 40}, QImage::Format_Grayscale16, opaque);
    }
}

void SaveImageTest::sixteenBitsStaySixteenBits()
{
    QFETCH(const QString, name);
    QFETCH(const QImage, image);
    QVERIFY(kx::saveCGImageToFile(image, path(name)));
    QCOMPARE(pixelsByFfmpeg(path(name), image.size(), true), image.convertToFormat(QImage::Format_RGBA64));
}

void SaveImageTest::tiffSaysWhatItHolds_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::newRow("opaque") << painted({61, 47}, QImage::Format_RGB32, smooth)
                            << QByteArrayList{"Image Width: 61 Image Length: 47", "Bits/Sample: 8",
                                   "Photometric Interpretation: RGB color", "Samples/Pixel: 3",
                                   "Compression Scheme: AdobeDeflate"};
    QTest::newRow("translucent") << painted({61, 47}, QImage::Format_ARGB32, translucent)
                                 << QByteArrayList{"Samples/Pixel: 4", "Extra Samples: 1<unassoc-alpha>"};
    QTest::newRow("grey") << painted({61, 47}, QImage::Format_Grayscale8,
        smooth) << QByteArrayList{"Photometric Interpretation: min-is-black", "Samples/Pixel: 1", "Bits/Sample: 8"};
    QTest::newRow("deep and grey") << painted({61, 47}, QImage::Format_Grayscale16, smooth)
                                   << QByteArrayList{"Samples/Pixel: 1", "Bits/Sample: 16"};
    QImage dense = painted({61, 47}, QImage::Format_RGB32, smooth);
    dense.setDotsPerMeterX(11811); // 300 to the inch
    dense.setDotsPerMeterY(5906);
    QTest::newRow("dense") << dense << QByteArrayList{"Resolution: 118.11, 59.06 pixels/cm"};
    QTest::newRow("several strips") << painted({1000, 300}, QImage::Format_RGB32, smooth)
                                    << QByteArrayList{"Image Width: 1000 Image Length: 300", "Rows/Strip: 87"};
}

void SaveImageTest::tiffSaysWhatItHolds()
{
    QFETCH(const QImage, image);
    QFETCH(const QByteArrayList, lines);
    const QString name = path(u"header.tiff"_qs);
    QVERIFY(kx::saveCGImageToFile(image, name));
    // Decodes the picture as well; warnings are printed, too.
    const QByteArray text = printed("tiffinfo", {u"-D"_qs, name});
    QVERIFY2(!text.contains("arning") && !text.contains("rror") && !text.startsWith("failed"), text.constData());
    for (const QByteArray &line : lines)
        QVERIFY2(text.contains(line), text.constData());
}

void SaveImageTest::gifSaysWhatItHolds()
{
    const QImage image = painted({61, 47}, QImage::Format_ARGB32, fewColors);
    const QString name = path(u"header.gif"_qs);
    QVERIFY(kx::saveCGImageToFile(image, name));
    const QByteArray text = printed("giftext", {name});
    QVERIFY2(text.contains("Screen Size - Width = 61, Height = 47."), text.constData());
    QVERIFY2(text.contains("Transparency on: yes") && text.contains("Transparent Index: 0"), text.constData());
    QVERIFY2(text.contains("GIF file terminated normally."), text.constData());
    QVERIFY(kx::saveCGImageToFile(onWhite(image), name));
    QVERIFY(!printed("giftext", {name}).contains("GIF89 graphics control"));
}

void SaveImageTest::pdfIsOnePageOfTheImagesSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(1, 1);
    QTest::newRow("wide") << QSize(300, 200);
    QTest::newRow("tall") << QSize(200, 300);
    QTest::newRow("almost a sheet of paper") << QSize(596, 841);
    QTest::newRow("large") << QSize(4000, 3000);
}

void SaveImageTest::pdfIsOnePageOfTheImagesSize()
{
    QFETCH(const QSize, size);
    const QString name = path(u"page.pdf"_qs);
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(kx::saveCGImageToFile(image, name));
    const QByteArray text = printed("pdfinfo", {name});
    QVERIFY2(
        text.contains(QStringLiteral("%1 x %2 pts").arg(size.width()).arg(size.height()).toLatin1()), text.constData());
    QCOMPARE(QRegularExpression(u"Pages: +1\n"_qs).match(QString::fromLatin1(text)).hasMatch(), true);
    // The pixels themselves, not scaled and not lossy.
    const QList<QByteArray> lines = printed("pdfimages", {u"-list"_qs, name}).split('\n');
    const QByteArray picture = lines.value(2).simplified(); // below the head
    QVERIFY2(picture.startsWith(
                 QStringLiteral("1 0 image %1 %2 rgb 3 8 image ").arg(size.width()).arg(size.height()).toLatin1()),
        picture.constData());
}

void SaveImageTest::pdfShowsTheImageUpright()
{
    QImage image = painted({200, 100}, QImage::Format_ARGB32, [](int x, int y) {
        return x < 100 ? (y < 50 ? QColor(Qt::red) : QColor(Qt::green))
                       : (y < 50 ? QColor(Qt::blue) : QColor(0, 0, 0, 51));
    });
    image.setDevicePixelRatio(2);
    QVERIFY(kx::saveCGImageToFile(image, path(u"upright.pdf"_qs)));
    const QImage page = pageByPoppler(path(u"upright.pdf"_qs));
    QCOMPARE(page.size(), image.size());
    QCOMPARE(page.pixelColor(50, 25), QColor(Qt::red));
    QCOMPARE(page.pixelColor(50, 75), QColor(Qt::green));
    QCOMPARE(page.pixelColor(150, 25), QColor(Qt::blue));
    QCOMPARE(page.pixelColor(150, 75), QColor(204, 204, 204));
}

void SaveImageTest::jpegHasHalfTheFullQuality()
{
    const QImage image = painted({61, 47}, QImage::Format_RGB32, smooth);
    QVERIFY(kx::saveCGImageToFile(image, path(u"quality.jpg"_qs)));
    QBuffer half;
    QImageWriter writer(&half, "jpeg");
    writer.setQuality(50);
    QVERIFY(writer.write(image));
    QCOMPARE(content(u"quality.jpg"_qs), half.data());
}

QTEST_MAIN(SaveImageTest)
#include "SaveImageTest.moc"
