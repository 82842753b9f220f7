// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/JpegDecoder.h>

#include "Support/JpegFile.h"

#include <QtCore/QBuffer>
#include <QtTest/QTest>

#include <cstdlib>

using namespace kx::test;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 unlimited = 0;

QImage decoded(const QByteArray &bytes, qint64 memoryLimit = unlimited)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return kx::decodeJpeg(buffer, memoryLimit);
}

QByteArray smoothJpeg(const QSize &size, const JpegKind &kind = {})
{
    return jpegBytes(size, kind, smoothRow(size, kind));
}

// Where a marker begins; the first of them.
qsizetype markerAt(const QByteArray &jpeg, uchar marker)
{
    const char bytes[]{'\xFF', static_cast<char>(marker)};
    return jpeg.indexOf(QByteArrayView(bytes, 2));
}

constexpr uchar startOfFrame = 0xC0; // of a baseline file
constexpr uchar startOfScan = 0xDA;

// The baseline file with another number in its frame header: `at` counts from the marker.
QByteArray withFrameByte(QByteArray jpeg, int at, uchar value)
{
    jpeg[markerAt(jpeg, startOfFrame) + at] = static_cast<char>(value);
    return jpeg;
}

QByteArray withFrameSize(QByteArray jpeg, int width, int height)
{
    jpeg = withFrameByte(jpeg, 5, static_cast<uchar>(height >> 8));
    jpeg = withFrameByte(jpeg, 6, static_cast<uchar>(height));
    jpeg = withFrameByte(jpeg, 7, static_cast<uchar>(width >> 8));
    return withFrameByte(jpeg, 8, static_cast<uchar>(width));
}

} // namespace

class JpegDecoderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void decodesAsQtDoes_data();
    void decodesAsQtDoes();
    void greyStaysGrey();
    void mixesInks_data();
    void mixesInks();
    void leavesTheOrientationAlone();
    void beginsAtTheDevicesPosition();
    void isNullForWhatIsNoPicture_data();
    void isNullForWhatIsNoPicture();
    void memoryIsLimited_data();
    void memoryIsLimited();
    void refusesAbsurdSizesAtOnce();
    void refusesAbsurdNumbersOfScans();
    void showsWhatThereIsOfAFileThatBreaksOff();
    void anyCutIsHarmless_data();
    void anyCutIsHarmless();
    void anyDamageIsHarmless_data();
    void anyDamageIsHarmless();
};

void JpegDecoderTest::decodesAsQtDoes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<JpegKind>("kind");
    QTest::newRow("baseline") << QSize(61, 47) << JpegKind();
    QTest::newRow("one pixel") << QSize(1, 1) << JpegKind();
    QTest::newRow("wide") << QSize(5000, 1) << JpegKind();
    QTest::newRow("tall") << QSize(1, 5000) << JpegKind();
    QTest::newRow("whole blocks") << QSize(64, 64) << JpegKind();
    QTest::newRow("larger than the buffer") << QSize(800, 600) << JpegKind{.quality = 100, .isSubsampled = false};
    QTest::newRow("not subsampled") << QSize(61, 47) << JpegKind{.isSubsampled = false};
    QTest::newRow("progressive") << QSize(61, 47) << JpegKind{.isProgressive = true};
    QTest::newRow("arithmetic") << QSize(61, 47) << JpegKind{.isArithmetic = true};
    QTest::newRow("arithmetic and progressive")
        << QSize(61, 47) << JpegKind{.isProgressive = true, .isArithmetic = true};
    QTest::newRow("restarts") << QSize(61, 47) << JpegKind{.restartInterval = 1};
    QTest::newRow("RGB") << QSize(61, 47) << JpegKind{.colors = JpegKind::Rgb};
    QTest::newRow("grey") << QSize(61, 47) << JpegKind{.colors = JpegKind::Grey};
    QTest::newRow("grey and progressive") << QSize(64, 47) << JpegKind{.colors = JpegKind::Grey, .isProgressive = true};
    QTest::newRow("worst quality") << QSize(61, 47) << JpegKind{.quality = 1};
}

void JpegDecoderTest::decodesAsQtDoes()
{
    QFETCH(const QSize, size);
    QFETCH(const JpegKind, kind);
    const QByteArray bytes = smoothJpeg(size, kind);
    QVERIFY(!bytes.isEmpty());
    const QImage image = decoded(bytes);
    const QImage expected = QImage::fromData(bytes);
    QCOMPARE(image.size(), size);
    QCOMPARE(image.convertToFormat(QImage::Format_RGB32), expected.convertToFormat(QImage::Format_RGB32));
}

void JpegDecoderTest::greyStaysGrey()
{
    QCOMPARE(decoded(smoothJpeg({61, 47}, {.colors = JpegKind::Grey})).format(), QImage::Format_Grayscale8);
    QCOMPARE(decoded(smoothJpeg({61, 47})).format(), QImage::Format_RGB32);
    QCOMPARE(decoded(smoothJpeg({61, 47}, {.colors = JpegKind::Cmyk})).format(), QImage::Format_RGB32);
}

void JpegDecoderTest::mixesInks_data()
{
    QTest::addColumn<JpegKind::Colors>("colors");
    QTest::addColumn<bool>("isMarked");
    QTest::newRow("CMYK, 255 for none") << JpegKind::Cmyk << true;
    QTest::newRow("CMYK, 0 for none") << JpegKind::Cmyk << false;
    QTest::newRow("YCCK") << JpegKind::Ycck << true;
}

void JpegDecoderTest::mixesInks()
{
    QFETCH(const JpegKind::Colors, colors);
    QFETCH(const bool, isMarked);
    // Columns of one color each: cyan, magenta and yellow alone, all of them with half the black.
    const JpegRow inks = [](int, uchar *row) {
        for (int x = 0; x < 64; ++x) {
            for (int ink = 0; ink < 4; ++ink)
                *row++ = x / 16 == 3 ? (ink == 3 ? 128 : 255) : (x / 16 == ink ? 0 : 255);
        }
    };
    QByteArray bytes = jpegBytes({64, 16}, {.colors = colors, .quality = 100, .isSubsampled = false}, inks);
    if (!isMarked) {
        const qsizetype mark = markerAt(bytes, 0xEE);
        QVERIFY(mark > 0);
        bytes.remove(mark, 2 + 14);
    }
    const QImage image = decoded(bytes);
    QCOMPARE(image.size(), QSize(64, 16));
    const QList<QColor> expected = isMarked ? QList<QColor>{Qt::cyan, Qt::magenta, Qt::yellow, QColor(128, 128, 128)}
                                            : QList<QColor>{Qt::black, Qt::black, Qt::black, Qt::black};
    for (int i = 0; i < 4; ++i) {
        const QColor color = image.pixelColor(i * 16 + 8, 8);
        const QColor &wanted = expected.at(i);
        QVERIFY2(std::abs(color.red() - wanted.red()) <= 3 && std::abs(color.green() - wanted.green()) <= 3
                && std::abs(color.blue() - wanted.blue()) <= 3,
            qPrintable(QStringLiteral("%1: %2").arg(i).arg(color.name())));
        QCOMPARE(color.alpha(), 255);
    }
}

void JpegDecoderTest::leavesTheOrientationAlone()
{
    // A little-endian TIFF directory of one entry: the orientation is 6, a quarter turn.
    const QByteArray exif = QByteArray::fromHex("49492a0008000000"
                                                "0100"
                                                "1201"
                                                "0300"
                                                "01000000"
                                                "06000000"
                                                "00000000");
    const QByteArray turned = smoothJpeg({61, 47}, {.exif = exif});
    QVERIFY(turned.contains("Exif"));
    QCOMPARE(decoded(turned), decoded(smoothJpeg({61, 47})));
}

void JpegDecoderTest::beginsAtTheDevicesPosition()
{
    const QByteArray bytes = smoothJpeg({61, 47});
    QBuffer buffer;
    buffer.setData(QByteArray("before" + bytes + "behind"));
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(kx::decodeJpeg(buffer, unlimited).isNull());
    QVERIFY(buffer.seek(6));
    QCOMPARE(kx::decodeJpeg(buffer, unlimited), decoded(bytes));
}

void JpegDecoderTest::isNullForWhatIsNoPicture_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray jpeg = smoothJpeg({61, 47});
    QBuffer png;
    QVERIFY(decoded(jpeg).save(&png, "png"));
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("JPEG");
    QTest::newRow("zeros") << QByteArray(100000, '\0');
    QTest::newRow("ones") << QByteArray(100000, '\xFF');
    QTest::newRow("PNG") << png.data();
    QTest::newRow("start of image alone") << jpeg.first(2);
    QTest::newRow("start of image, then zeros") << QByteArray(jpeg.first(2) + QByteArray(100000, '\0'));
    QTest::newRow("no picture in it") << QByteArray::fromHex("ffd8ffd9");
    QTest::newRow("no scan") << jpeg.first(markerAt(jpeg, startOfScan));
    QTest::newRow("a segment longer than the file") << QByteArray(jpeg.first(2) + QByteArray::fromHex("ffe1fffe"));
    QTest::newRow("12 bits") << withFrameByte(jpeg, 4, 12);
    QTest::newRow("lossless") << withFrameByte(jpeg, 1, 0xC3);
    QTest::newRow("no width") << withFrameSize(jpeg, 0, 47);
    QTest::newRow("no height") << withFrameSize(jpeg, 61, 0);
    QTest::newRow("wider than libjpeg takes") << withFrameSize(jpeg, 65501, 1);
    QTest::newRow("higher than libjpeg takes") << withFrameSize(jpeg, 1, 65501);
    QTest::newRow("no components") << withFrameByte(jpeg, 9, 0);
    QTest::newRow("two components") << withFrameByte(jpeg, 9, 2);
    QTest::newRow("five components") << withFrameByte(jpeg, 9, 5);
    QTest::newRow("no sampling factor") << withFrameByte(jpeg, 11, 0x01);
    QTest::newRow("a table that is missing") << withFrameByte(jpeg, 12, 3);
}

void JpegDecoderTest::isNullForWhatIsNoPicture()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(decoded(bytes).isNull());
}

void JpegDecoderTest::memoryIsLimited_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("enough");
    QTest::addColumn<qint64>("tooLittle");
    const QSize size(640, 480);
    const qint64 pixels = qint64(640) * 480 * 4;
    const qint64 coefficients = qint64(640) * 480 * 2; // of each component
    QTest::newRow("baseline") << smoothJpeg(size) << pixels + 1 << pixels;
    QTest::newRow("grey") << smoothJpeg(size, {.colors = JpegKind::Grey}) << pixels + 1 << pixels;
    QTest::newRow("progressive") << smoothJpeg(size, {.isSubsampled = false, .isProgressive = true})
                                 << pixels + 3 * coefficients + 100'000 << pixels + 3 * coefficients - 100'000;
    QTest::newRow("progressive and grey") << smoothJpeg(size, {.colors = JpegKind::Grey, .isProgressive = true})
                                          << pixels + coefficients + 100'000 << pixels + coefficients - 100'000;
}

void JpegDecoderTest::memoryIsLimited()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const qint64, enough);
    QFETCH(const qint64, tooLittle);
    QCOMPARE(decoded(bytes, enough), decoded(bytes));
    QVERIFY(!decoded(bytes).isNull());
    QVERIFY(decoded(bytes, tooLittle).isNull());
    QVERIFY(decoded(bytes, 1).isNull());
}

// Sixteen gigabytes, says a file of a few hundred bytes.
void JpegDecoderTest::refusesAbsurdSizesAtOnce()
{
    const QByteArray bytes = withFrameSize(smoothJpeg({16, 16}), 65500, 65500);
    QVERIFY(decoded(bytes, qint64(1) << 30).isNull());
}

void JpegDecoderTest::refusesAbsurdNumbersOfScans()
{
    const QSize size(16, 16);
    QCOMPARE(decoded(smoothJpeg(size, {.colors = JpegKind::Grey, .isProgressive = true, .scans = 100})).size(), size);
    QVERIFY(decoded(smoothJpeg(size, {.colors = JpegKind::Grey, .isProgressive = true, .scans = 101})).isNull());
    QVERIFY(decoded(smoothJpeg(size, {.colors = JpegKind::Grey, .isProgressive = true, .scans = 127})).isNull());
}

void JpegDecoderTest::showsWhatThereIsOfAFileThatBreaksOff()
{
    const QSize size(64, 256);
    const QByteArray bytes = smoothJpeg(size);
    const qsizetype scan = markerAt(bytes, startOfScan);
    const QImage whole = decoded(bytes);
    const QImage half = decoded(bytes.first((scan + bytes.size()) / 2));
    QCOMPARE(half.size(), size);
    QCOMPARE(half.copy(0, 0, 64, 96), whole.copy(0, 0, 64, 96));
    QVERIFY(half.copy(0, 240, 64, 16) != whole.copy(0, 240, 64, 16));
    QCOMPARE(half.copy(0, 241, 64, 15), half.copy(0, 240, 64, 15)); // all rows alike
    // A progressive one is there as a whole, but coarse.
    const QByteArray progressive = smoothJpeg(size, {.isProgressive = true});
    QCOMPARE(decoded(progressive.first(markerAt(progressive, startOfScan) + 100)).size(), size);
    // A missing end is no loss.
    QVERIFY(bytes.endsWith("\xFF\xD9"));
    QCOMPARE(decoded(bytes.chopped(2)), whole);
}

void JpegDecoderTest::anyCutIsHarmless_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QSize size(33, 17);
    QTest::newRow("baseline") << smoothJpeg(size);
    QTest::newRow("progressive") << smoothJpeg(size, {.isProgressive = true});
    QTest::newRow("arithmetic") << smoothJpeg(size, {.isArithmetic = true});
    QTest::newRow("grey") << smoothJpeg(size, {.colors = JpegKind::Grey});
    QTest::newRow("inks") << smoothJpeg(size, {.colors = JpegKind::Ycck});
}

void JpegDecoderTest::anyCutIsHarmless()
{
    QFETCH(const QByteArray, bytes);
    const qsizetype scan = markerAt(bytes, startOfScan);
    const qsizetype scanHeader = 2 + bytes.at(scan + 3); // the marker, and the length in two bytes
    const bool isProgressive = markerAt(bytes, 0xC2) > 0;
    for (qsizetype length = 0; length < bytes.size(); ++length) {
        const QImage image = decoded(bytes.first(length));
        if (length < scan)
            QVERIFY(image.isNull());
        else if (length >= scan + scanHeader && !isProgressive)
            QCOMPARE(image.size(), QSize(33, 17));
        else
            QVERIFY(image.isNull() || image.size() == QSize(33, 17));
    }
}

void JpegDecoderTest::anyDamageIsHarmless_data()
{
    anyCutIsHarmless_data();
}

void JpegDecoderTest::anyDamageIsHarmless()
{
    QFETCH(const QByteArray, bytes);
    constexpr qint64 limit = 1 << 20;
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        for (const int value : {0, 1, 0x7F, 0xFF, static_cast<uchar>(bytes.at(at)) ^ 0x10}) {
            QByteArray damaged = bytes;
            damaged[at] = static_cast<char>(value);
            QVERIFY(decoded(damaged, limit).sizeInBytes() < limit);
        }
    }
}

QTEST_MAIN(JpegDecoderTest)
#include "JpegDecoderTest.moc"
