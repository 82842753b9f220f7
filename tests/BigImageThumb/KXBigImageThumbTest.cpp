// SPDX-License-Identifier: MIT
#include <KXFoundation/BigImageThumb/KXBigImageThumb.h>
#include <KXFoundation/Category/BitmapKXTools.h>

#include "Support/JpegFile.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImageReader>
#include <QtTest/QTest>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace kx::test;
using namespace Qt::StringLiterals;

namespace {

constexpr QSize bigSize(12000, 8000);
constexpr qint64 bigSizeInBytes = qint64(12000) * 8000 * 4;
constexpr qint64 defaultLimit = qint64(1) << 30;

// The colour of a pixel of the big picture: soft diagonals.
QColor bigColor(int x, int y)
{
    const auto wave = [](int at) { return std::abs(at % 510 - 255); };
    const int at = x + y % 256;
    return {wave(at), wave(at + 100), wave(at / 2)};
}

// Rows are parts of one long row, so that the file takes little time to make.
JpegRow bigRow()
{
    auto row = std::make_shared<std::vector<uchar>>();
    for (int x = 0; x < bigSize.width() + 256; ++x) {
        const QColor color = bigColor(x, 0);
        for (const int channel : {color.red(), color.green(), color.blue()})
            row->push_back(static_cast<uchar>(channel));
    }
    return [row](int y, uchar *to) {
        std::memcpy(to, row->data() + std::size_t(y % 256) * 3, std::size_t(bigSize.width()) * 3);
    };
}

// The most memory that this process ever had, in bytes.
qint64 peakMemory()
{
    struct ::rusage usage { };
    ::getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
}

QImage pixels(const kx::Image &image)
{
    return image.representations().value(0).toQImage();
}

} // namespace

class KXBigImageThumbTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { write(u"small.jpg"_qs, jpegBytes({200, 100}, {}, smoothRow({200, 100}, {}))); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }
    void cleanup() { KXBigImageThumb::setMemoryLimitInBytes(defaultLimit); }

    // First, as it looks at the most memory the process ever had.
    void aBigFileIsDecodedOnce();

    void decodesAJpegFile();
    void greyFilesStayGrey();
    void hasNoBitmapForAnythingElse_data();
    void hasNoBitmapForAnythingElse();
    void aFileThatBreaksOffShowsWhatThereIs();
    void cutsPixels_data();
    void cutsPixels();
    void hasNoThumbWithoutABitmap();
    void propertiesCanBeReplaced();
    void takesAnyName_data();
    void takesAnyName();
    void memoryIsLimited();
    void negativeLimitsAreNone();
    void manyThreadsDecodeAtOnce();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    QTemporaryDir m_directory;
};

void KXBigImageThumbTest::aBigFileIsDecodedOnce()
{
    const QString name = path(u"big.jpg"_qs);
    QVERIFY(writeJpegFile(name, bigSize, {}, bigRow()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"exceeds the current allocation limit"_qs));
    QVERIFY(QImageReader(name).read().isNull()); // Qt's own limit is lower

    const qint64 before = peakMemory();
    const KXBigImageThumb thumb(name);
    QCOMPARE(thumb.width(), 12000.0);
    QCOMPARE(thumb.height(), 8000.0);
    QVERIFY(thumb.bitmap() != nullptr);
    QCOMPARE(thumb.bitmap().layout().pixelWidth, 12000);
    QCOMPARE(thumb.bitmap().layout().pixelHeight, 8000);
    QCOMPARE(thumb.bitmap().size(), QSizeF(bigSize));

    // Parts are no copies of the whole, and the file is not needed any more.
    QVERIFY(QFile::remove(name));
    std::vector<kx::Image> thumbs;
    for (const QPoint corner :
        {QPoint(0, 0), QPoint(11488, 0), QPoint(0, 7488), QPoint(11488, 7488), QPoint(5000, 4321)}) {
        const kx::Image part = thumb.thumbFromRect(QRectF(corner, QSizeF(512, 512)));
        QCOMPARE(part.size(), QSizeF(512, 512));
        const QImage image = pixels(part);
        QCOMPARE(image.size(), QSize(512, 512));
        for (const QPoint at : {QPoint(20, 20), QPoint(300, 100), QPoint(490, 490)}) {
            const QColor found = image.pixelColor(at);
            const QColor wanted = bigColor(corner.x() + at.x(), corner.y() + at.y());
            QCOMPARE_LE(std::abs(found.red() - wanted.red()), 12);
            QCOMPARE_LE(std::abs(found.green() - wanted.green()), 12);
            QCOMPARE_LE(std::abs(found.blue() - wanted.blue()), 12);
        }
        thumbs.push_back(part);
    }
    QCOMPARE_LT(peakMemory() - before, bigSizeInBytes + (qint64(128) << 20));
}

void KXBigImageThumbTest::decodesAJpegFile()
{
    const KXBigImageThumb thumb(path(u"small.jpg"_qs));
    QCOMPARE(thumb.width(), 200.0);
    QCOMPARE(thumb.height(), 100.0);
    QCOMPARE(thumb.bitmap().size(), QSizeF(200, 100));
    QCOMPARE(thumb.bitmap().layout().bitsPerPixel, 32);
    QCOMPARE(thumb.bitmap().toQImage(), QImage(path(u"small.jpg"_qs)).convertToFormat(QImage::Format_RGB32));
}

void KXBigImageThumbTest::greyFilesStayGrey()
{
    const JpegKind grey{.colors = JpegKind::Grey};
    write(u"grey.jpg"_qs, jpegBytes({61, 47}, grey, smoothRow({61, 47}, grey)));
    const KXBigImageThumb thumb(path(u"grey.jpg"_qs));
    QCOMPARE(thumb.bitmap().layout().bitsPerPixel, 8);
    QCOMPARE(pixels(thumb.thumbFromRect({10, 20, 30, 25})), QImage(path(u"grey.jpg"_qs)).copy(10, 20, 30, 25));
}

void KXBigImageThumbTest::hasNoBitmapForAnythingElse_data()
{
    QTest::addColumn<QString>("name");
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(path(u"image.png"_qs)));
    QVERIFY(image.save(path(u"png.jpg"_qs), "png"));
    QVERIFY(image.save(path(u"image.bmp"_qs)));
    write(u"empty.jpg"_qs, {});
    write(u"text.jpg"_qs, "no picture");
    const QByteArray jpeg = jpegBytes({20, 10}, {}, smoothRow({20, 10}, {}));
    write(u"start.jpg"_qs, jpeg.first(100));
    write(u"late.jpg"_qs, QByteArray(" " + jpeg));
    QByteArray huge = jpeg;
    huge.replace(jpeg.indexOf(QByteArray::fromHex("ffc00011")) + 5, 4, QByteArray::fromHex("ffdcffdc"));
    QVERIFY(huge != jpeg);
    write(u"huge.jpg"_qs, huge);
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe.jpg"_qs)).constData(), 0600), 0);
    for (const char *name : {"image.png", "png.jpg", "image.bmp", "empty.jpg", "text.jpg", "start.jpg", "late.jpg",
             "huge.jpg", "pipe.jpg", "missing.jpg", "missing/image.jpg", ""})
        QTest::addRow("\"%s\"", name) << path(QString::fromLatin1(name));
    QTest::newRow("absent") << QString();
    QTest::newRow("a device without end") << u"/dev/zero"_qs;
    QTest::newRow("NUL") << QString(path(u"small.jpg"_qs) + u"\0x"_qs);
}

void KXBigImageThumbTest::hasNoBitmapForAnythingElse()
{
    QFETCH(const QString, name);
    const KXBigImageThumb thumb(name);
    QCOMPARE(thumb.width(), 0.0);
    QCOMPARE(thumb.height(), 0.0);
    QVERIFY(thumb.bitmap() == nullptr);
    QVERIFY(thumb.thumbFromRect({0, 0, 10, 10}) == nullptr);
}

void KXBigImageThumbTest::aFileThatBreaksOffShowsWhatThereIs()
{
    const QByteArray whole = jpegBytes({64, 640}, {}, smoothRow({64, 640}, {}));
    write(u"whole.jpg"_qs, whole);
    write(u"half.jpg"_qs, whole.first(whole.size() / 2));
    const KXBigImageThumb half(path(u"half.jpg"_qs));
    QCOMPARE(half.width(), 64.0);
    QCOMPARE(half.height(), 640.0);
    const QRectF top(0, 0, 64, 128);
    QCOMPARE(pixels(half.thumbFromRect(top)), pixels(KXBigImageThumb(path(u"whole.jpg"_qs)).thumbFromRect(top)));
}

void KXBigImageThumbTest::cutsPixels_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRect>("part");
    QTest::newRow("inside") << QRectF(10, 20, 30, 40) << QRect(10, 20, 30, 40);
    QTest::newRow("all") << QRectF(0, 0, 200, 100) << QRect(0, 0, 200, 100);
    QTest::newRow("last pixel") << QRectF(199, 99, 1, 1) << QRect(199, 99, 1, 1);
    QTest::newRow("sticks out below and on the right") << QRectF(150, 80, 100, 100) << QRect(150, 80, 50, 20);
    QTest::newRow("sticks out above and on the left") << QRectF(-10, -20, 60, 60) << QRect(0, 0, 50, 40);
    QTest::newRow("outside") << QRectF(200, 0, 10, 10) << QRect();
    QTest::newRow("empty") << QRectF() << QRect();
}

void KXBigImageThumbTest::cutsPixels()
{
    QFETCH(const QRectF, rect);
    QFETCH(const QRect, part);
    const KXBigImageThumb thumb(path(u"small.jpg"_qs));
    const kx::Image image = thumb.thumbFromRect(rect);
    QCOMPARE(image == nullptr, part.isEmpty());
    if (image != nullptr) {
        QCOMPARE(image.size(), rect.size()); // as asked for
        QCOMPARE(pixels(image), QImage(path(u"small.jpg"_qs)).copy(part).convertToFormat(QImage::Format_RGB32));
    }
}

void KXBigImageThumbTest::hasNoThumbWithoutABitmap()
{
    KXBigImageThumb thumb(path(u"small.jpg"_qs));
    thumb.setBitmap(nullptr);
    QVERIFY(thumb.thumbFromRect({0, 0, 10, 10}) == nullptr);
    QCOMPARE(thumb.width(), 200.0); // a number of its own
}

void KXBigImageThumbTest::propertiesCanBeReplaced()
{
    KXBigImageThumb thumb(path(u"small.jpg"_qs));
    const KXBigImageThumb copy = thumb;
    QVERIFY(copy.bitmap() == thumb.bitmap()); // the same pixels
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(Qt::red);
    thumb.setBitmap(red);
    thumb.setWidth(3);
    thumb.setHeight(2.5);
    QCOMPARE(thumb.width(), 3.0);
    QCOMPARE(thumb.height(), 2.5);
    QCOMPARE(pixels(thumb.thumbFromRect({0, 0, 4, 4})), red);
    QCOMPARE(copy.width(), 200.0);
    QVERIFY(copy.bitmap() != thumb.bitmap());
}

void KXBigImageThumbTest::takesAnyName_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"with space.jpg", "100%.jpg", "a#b?c.jpg", "Größe 高清.jpg", "no extension", "wrong.png"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void KXBigImageThumbTest::takesAnyName()
{
    QFETCH(const QString, name);
    QVERIFY(QFile::copy(path(u"small.jpg"_qs), path(name)));
    QCOMPARE(KXBigImageThumb(path(name)).width(), 200.0);
    const QString link = path(QString(u"link to "_qs + name));
    QVERIFY(QFile::link(path(name), link));
    QCOMPARE(KXBigImageThumb(link).width(), 200.0);
}

void KXBigImageThumbTest::memoryIsLimited()
{
    QCOMPARE(KXBigImageThumb::memoryLimitInBytes(), defaultLimit);
    constexpr qint64 size = 80000; // 200 x 100, 4 bytes each
    KXBigImageThumb::setMemoryLimitInBytes(size);
    QVERIFY(KXBigImageThumb(path(u"small.jpg"_qs)).bitmap() == nullptr);
    KXBigImageThumb::setMemoryLimitInBytes(size + 1);
    QCOMPARE(KXBigImageThumb(path(u"small.jpg"_qs)).width(), 200.0);
    KXBigImageThumb::setMemoryLimitInBytes(0);
    QCOMPARE(KXBigImageThumb(path(u"small.jpg"_qs)).width(), 200.0);
}

void KXBigImageThumbTest::negativeLimitsAreNone()
{
    KXBigImageThumb::setMemoryLimitInBytes(-1);
    QCOMPARE(KXBigImageThumb::memoryLimitInBytes(), 0);
    QCOMPARE(KXBigImageThumb(path(u"small.jpg"_qs)).width(), 200.0);
}

void KXBigImageThumbTest::manyThreadsDecodeAtOnce()
{
    const QImage expected = QImage(path(u"small.jpg"_qs)).convertToFormat(QImage::Format_RGB32);
    std::vector<QImage> decoded(4);
    std::vector<std::thread> threads;
    threads.reserve(decoded.size());
    for (QImage &image : decoded)
        threads.emplace_back([&, this] { image = KXBigImageThumb(path(u"small.jpg"_qs)).bitmap().toQImage(); });
    for (std::thread &thread : threads)
        thread.join();
    for (const QImage &image : decoded)
        QCOMPARE(image, expected);
}

QTEST_GUILESS_MAIN(KXBigImageThumbTest)
#include "KXBigImageThumbTest.moc"
