// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Color.h>

#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

class ColorTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void isNoneByDefault();
    void knowsItselfAndItsValue();
    void keepsDoublesAsGiven();
    void takesEightBitColorsExactly_data();
    void takesEightBitColorsExactly();
    void takesEveryKindOfQColor();
    void changesAlphaInANewColor();
    void clampsForPainting_data();
    void clampsForPainting();
};

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

void ColorTest::isNoneByDefault()
{
    const kx::Color none;
    QVERIFY(!none);
    QVERIFY(none == nullptr);
    QVERIFY(none == kx::Color(nullptr));
    QVERIFY(none.sameValue(nullptr));
    QVERIFY(!kx::Color(QColor()));
    QVERIFY(kx::isAbsent(none));
    QCOMPARE(none.redComponent(), 0.0);
    QCOMPARE(none.alphaComponent(), 0.0);
    QVERIFY(!none.withAlphaComponent(1));
    QVERIFY(!none.toQColor().isValid());
}

void ColorTest::knowsItselfAndItsValue()
{
    const kx::Color red = Qt::red;
    kx::Color copy;
    copy = red;
    const kx::Color other = QColor(255, 0, 0);
    QVERIFY(copy == red);
    QVERIFY(other != red);
    QVERIFY(other.sameValue(red));
    QVERIFY(!red.sameValue(kx::Color(Qt::blue)));
    QVERIFY(!red.sameValue(nullptr));
    QVERIFY(red != nullptr);
    QVERIFY(kx::Color::clear() != kx::Color::clear());
}

void ColorTest::keepsDoublesAsGiven()
{
    const kx::Color color = kx::Color::rgba(1.0, 46 / 255.0, -3, 0.85);
    QCOMPARE(color.redComponent(), 1.0);
    QVERIFY(color.greenComponent() == 46 / 255.0);
    QCOMPARE(color.blueComponent(), -3.0);
    QVERIFY(color.alphaComponent() == 0.85);
    QVERIFY(kx::Color::white(0.12, 0.5).sameValue(kx::Color::rgba(0.12, 0.12, 0.12, 0.5)));
    QVERIFY(kx::Color::clear().sameValue(kx::Color::rgba(0, 0, 0, 0)));
}

void ColorTest::takesEightBitColorsExactly_data()
{
    QTest::addColumn<int>("channel");
    for (int channel = 0; channel < 256; ++channel)
        QTest::addRow("%d", channel) << channel;
}

void ColorTest::takesEightBitColorsExactly()
{
    QFETCH(int, channel);
    const QColor given(channel, 255 - channel, 46, channel);
    const kx::Color color = given;
    QVERIFY(color.redComponent() == channel / 255.0);
    QVERIFY(color.greenComponent() == (255 - channel) / 255.0);
    QVERIFY(color.alphaComponent() == channel / 255.0);
    QCOMPARE(color.toQColor(), given);
}

void ColorTest::takesEveryKindOfQColor()
{
    QCOMPARE(kx::Color(QColor::fromHsv(120, 255, 255)).greenComponent(), 1.0);
    QCOMPARE(kx::Color(QColor::fromCmyk(0, 255, 255, 0)).redComponent(), 1.0);
    QCOMPARE(kx::Color(QColor::fromRgbF(1.5F, 0.0F, -0.5F)).redComponent(), 1.5); // beyond sRGB
}

void ColorTest::changesAlphaInANewColor()
{
    const kx::Color color = kx::Color::rgba(0.1, 0.2, 0.3, 0.4);
    const kx::Color opaque = color.withAlphaComponent(1);
    QVERIFY(opaque.sameValue(kx::Color::rgba(0.1, 0.2, 0.3, 1)));
    QCOMPARE(color.alphaComponent(), 0.4);
    QVERIFY(color.withAlphaComponent(0.4) != color);
}

void ColorTest::clampsForPainting_data()
{
    QTest::addColumn<double>("component");
    QTest::addColumn<int>("painted");
    QTest::newRow("below") << -1.0 << 0;
    QTest::newRow("above") << 7.0 << 255;
    QTest::newRow("endless") << infinite << 255;
    QTest::newRow("endless below") << -infinite << 0;
    QTest::newRow("no number") << notANumber << 0;
    QTest::newRow("inside") << 46 / 255.0 << 46;
}

void ColorTest::clampsForPainting()
{
    QFETCH(double, component);
    QFETCH(int, painted);
    QCOMPARE(kx::Color::rgba(component, 0, 0, 1).toQColor(), QColor(painted, 0, 0));
    QCOMPARE(kx::Color::rgba(1, 1, 1, component).toQColor(), QColor(255, 255, 255, painted));
}

QTEST_APPLESS_MAIN(ColorTest)
#include "ColorTest.moc"
