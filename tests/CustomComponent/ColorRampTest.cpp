// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/ColorRamp.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

bool near(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) <= 3 && qAbs(a.green() - b.green()) <= 3 && qAbs(a.blue() - b.blue()) <= 3
        && qAbs(a.alpha() - b.alpha()) <= 3;
}

} // namespace

class ColorRampTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void goesFromOneColourToTheOther_data();
    void goesFromOneColourToTheOther();
    void fillsEveryRowAlike();
    void followsItsColours();
    void isOpaqueOnlyWithOpaqueColours();
    void keepsItsRoom();
};

void ColorRampTest::goesFromOneColourToTheOther_data()
{
    QTest::addColumn<int>("width");
    for (const int width : {1, 2, 3, 100, 255, 256, 257, 321, 4000})
        QTest::addRow("%d", width) << width;
}

void ColorRampTest::goesFromOneColourToTheOther()
{
    QFETCH(int, width);
    ColorRamp ramp;
    ramp.setColors(kx::Color::rgba(1, 0, 0.5), kx::Color::rgba(0, 1, 0.5));
    const QImage &row = ramp.stretched(width, 1, width);
    for (int x = 0; x < width; ++x) {
        // The colour at the pixel's centre; a step of the ramp is one of 256.
        const double at = (x + 0.5) / width;
        const QColor color = row.pixelColor(x, 0);
        QVERIFY2(qAbs(color.red() - 255 * (1 - at)) <= 1.5, qPrintable(QString::number(x)));
        QVERIFY2(qAbs(color.green() - 255 * at) <= 1.5, qPrintable(QString::number(x)));
        QVERIFY2(qAbs(color.blue() - 127.5) <= 1, qPrintable(QString::number(x)));
    }
}

void ColorRampTest::fillsEveryRowAlike()
{
    ColorRamp ramp;
    ramp.setColors(Qt::red, Qt::blue);
    QImage image = ramp.stretched(300, 4, 300);
    QCOMPARE(image.size(), QSize(300, 4));
    for (int y = 1; y < 4; ++y)
        QCOMPARE(image.copy(0, y, 300, 1), image.copy(0, 0, 300, 1));
    image = ramp.stretched(300, 6, 300); // a higher one
    QCOMPARE(image.copy(0, 5, 300, 1), image.copy(0, 0, 300, 1));
    QVERIFY(near(image.pixelColor(299, 5), Qt::blue));
}

void ColorRampTest::followsItsColours()
{
    ColorRamp ramp;
    const kx::Color red = Qt::red;
    const kx::Color blue = Qt::blue;
    const kx::Color green = Qt::green;
    ramp.setColors(red, blue);
    QVERIFY(near(ramp.stretched(300, 1, 300).pixelColor(299, 0), Qt::blue));
    ramp.setColors(red, green);
    QVERIFY(near(ramp.stretched(300, 1, 300).pixelColor(299, 0), Qt::green));
    ramp.setColors(blue, green);
    QVERIFY(near(ramp.stretched(300, 1, 300).pixelColor(0, 0), Qt::blue));
}

void ColorRampTest::isOpaqueOnlyWithOpaqueColours()
{
    ColorRamp ramp;
    ramp.setColors(Qt::red, Qt::blue);
    QVERIFY(ramp.isOpaque());
    ramp.setColors(Qt::red, kx::Color::rgba(0, 0, 1, 0.5));
    QVERIFY(!ramp.isOpaque());
    QVERIFY(near(ramp.stretched(300, 1, 300).pixelColor(299, 0), QColor(0, 0, 255, 128)));
    ramp.setColors(kx::Color::rgba(0, 0, 1, 0.5), Qt::red);
    QVERIFY(!ramp.isOpaque());
    QVERIFY(near(ramp.stretched(300, 1, 300).pixelColor(299, 0), Qt::red));
}

void ColorRampTest::keepsItsRoom()
{
    ColorRamp ramp;
    ramp.setColors(Qt::red, Qt::blue);
    const uchar *const pixels = ramp.stretched(100, 4, 500).constBits();
    QCOMPARE(ramp.stretched(500, 4, 500).constBits(), pixels);
    QVERIFY(near(ramp.stretched(200, 4, 500).pixelColor(199, 3), Qt::blue));
    QCOMPARE(ramp.stretched(200, 4, 500).constBits(), pixels);
    QCOMPARE(ramp.stretched(200, 4, 500).width(), 500);
}

QTEST_APPLESS_MAIN(ColorRampTest)
#include "ColorRampTest.moc"
