// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/ColorTable.h>

#include <QtCore/QSet>
#include <QtTest/QTest>

#include <cmath>
#include <functional>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using PixelAt = std::function<QRgb(int x, int y)>;

QImage painted(const QSize &size, const PixelAt &pixelAt, QImage::Format format = QImage::Format_ARGB32)
{
    QImage image(size, format);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, pixelAt(x, y));
    }
    return image;
}

QRgb gradient(int x, int y)
{
    return qRgb(x, y, (x + y) / 2);
}

// Root of the mean square of the differences of all channels.
double error(const QImage &a, const QImage &b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum +=
                std::pow(qRed(p) - qRed(q), 2) + std::pow(qGreen(p) - qGreen(q), 2) + std::pow(qBlue(p) - qBlue(q), 2);
        }
    }
    return std::sqrt(sum / (3.0 * a.width() * a.height()));
}

} // namespace

class ColorTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void keepsFewColorsExactly_data();
    void keepsFewColorsExactly();
    void makesNoMoreThan256Colors_data();
    void makesNoMoreThan256Colors();
    void aGradientStaysNear();
    void aRareColorGetsAnEntry();
    void colorsInOneCornerAreToldApart();
    void halfTheAlphaDecides();
    void transparentPixelsAreTheFirstColor();
    void readsEveryFormat_data();
    void readsEveryFormat();
    void isNullForNoImage();
};

void ColorTableTest::keepsFewColorsExactly_data()
{
    QTest::addColumn<int>("colors");
    for (const int colors : {1, 2, 3, 16, 17, 255, 256})
        QTest::addRow("%d", colors) << colors;
}

void ColorTableTest::keepsFewColorsExactly()
{
    QFETCH(const int, colors);
    const QImage image = painted({32, 32}, [colors](int x, int y) {
        const int number = (x + y * 32) % colors;
        return qRgb(number, 255 - number, number * 7 % 256);
    });
    const QImage indexed = kx::withColorTable(image);
    QCOMPARE(indexed.format(), QImage::Format_Indexed8);
    QCOMPARE(indexed.colorCount(), colors);
    QCOMPARE(indexed.convertToFormat(QImage::Format_ARGB32), image);
}

void ColorTableTest::makesNoMoreThan256Colors_data()
{
    QTest::addColumn<QImage>("image");
    QTest::newRow("257 colors") << painted({257, 1}, [](int x, int) { return qRgb(x / 2, x - x / 2, 9); });
    QTest::newRow("256 and transparent") << painted({257, 1}, [](int x, int) { return x == 256 ? 0 : qRgb(x, 1, 2); });
    QTest::newRow("gradient") << painted({256, 256}, gradient);
    std::mt19937 random(1);
    QTest::newRow("noise") << painted({200, 200}, [&](int, int) { return QRgb(random()); });
    // Fewer different ones than the table has room for, once the last bits are gone.
    QTest::newRow("almost one color") << painted(
        {64, 64}, [](int x, int y) { return qRgb(100 + x % 8, 100 + y % 8, x / 8); });
}

void ColorTableTest::makesNoMoreThan256Colors()
{
    QFETCH(const QImage, image);
    const QImage indexed = kx::withColorTable(image);
    QCOMPARE(indexed.size(), image.size());
    const QList<QRgb> table = indexed.colorTable();
    QCOMPARE_LE(table.size(), 256);
    for (qsizetype i = 0; i < table.size(); ++i)
        QVERIFY(qAlpha(table.at(i)) == 255 || (i == 0 && table.at(i) == 0));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE_LT(indexed.pixelIndex(x, y), table.size());
    }
}

void ColorTableTest::aGradientStaysNear()
{
    const QImage image = painted({256, 256}, gradient);
    const QImage indexed = kx::withColorTable(image);
    QCOMPARE(indexed.colorCount(), 256);
    QCOMPARE_LE(error(image, indexed), 5);
    // Better than Qt's fixed table.
    QCOMPARE_LT(
        error(image, indexed), error(image, image.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither)) / 3);
}

void ColorTableTest::aRareColorGetsAnEntry()
{
    QImage image = painted({256, 256}, [](int x, int y) { return qRgb(0, x, y); });
    for (int x = 0; x < 16; ++x)
        image.setPixel(x, 0, qRgb(255, 0, 0));
    QCOMPARE(kx::withColorTable(image).pixel(3, 0), qRgb(255, 0, 0));
}

void ColorTableTest::colorsInOneCornerAreToldApart()
{
    // All greens between 64 and 127, and half of all pixels white.
    const QImage image =
        painted({64, 64}, [](int x, int y) { return y % 2 == 0 ? qRgb(255, 255, 255) : qRgb(x, 64 + y, 0); });
    QCOMPARE_LE(error(image, kx::withColorTable(image)), 4);
}

void ColorTableTest::halfTheAlphaDecides()
{
    const QImage image = painted({256, 1}, [](int x, int) { return qRgba(100, 0, 200, x); });
    const QImage indexed = kx::withColorTable(image);
    for (int x = 0; x < 256; ++x) {
        const QColor color = QColor::fromRgba(indexed.pixel(x, 0));
        QCOMPARE(color.alpha(), x < 128 ? 0 : 255);
        if (x >= 128) { // on white
            QCOMPARE_LE(std::abs(color.red() - (255 - 155 * x / 255)), 1);
            QCOMPARE_LE(std::abs(color.green() - (255 - x)), 1);
            QCOMPARE_LE(std::abs(color.blue() - (255 - 55 * x / 255)), 1);
        }
    }
}

void ColorTableTest::transparentPixelsAreTheFirstColor()
{
    QImage few(2, 1, QImage::Format_ARGB32);
    few.setPixel(0, 0, qRgb(1, 2, 3));
    few.setPixel(1, 0, qRgba(9, 9, 9, 127));
    QCOMPARE(kx::withColorTable(few).colorTable(), (QList<QRgb>{0, qRgb(1, 2, 3)}));
    QImage many = painted({256, 256}, gradient);
    many.setPixel(255, 255, 0);
    const QImage indexed = kx::withColorTable(many);
    QCOMPARE(indexed.colorTable().first(), 0U);
    QCOMPARE(indexed.pixelIndex(255, 255), 0);
    QVERIFY(indexed.pixelIndex(0, 0) > 0);
    QCOMPARE(kx::withColorTable(painted({4, 4}, [](int, int) { return QRgb(0); })).colorTable(), QList<QRgb>{0});
}

void ColorTableTest::readsEveryFormat_data()
{
    QTest::addColumn<QImage::Format>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("%d", format) << QImage::Format(format);
}

void ColorTableTest::readsEveryFormat()
{
    QFETCH(const QImage::Format, format);
    const QImage image = painted({33, 21}, [](int x, int y) {
        return (x + y) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
    }).convertToFormat(format);
    QVERIFY(!image.isNull());
    QCOMPARE(
        kx::withColorTable(image).convertToFormat(QImage::Format_ARGB32), image.convertToFormat(QImage::Format_ARGB32));
}

void ColorTableTest::isNullForNoImage()
{
    QVERIFY(kx::withColorTable({}).isNull());
}

QTEST_APPLESS_MAIN(ColorTableTest)
#include "ColorTableTest.moc"
