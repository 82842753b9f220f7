// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/SliderGeometry.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

class SliderGeometryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void placesTheParts();
    void placesThePartsOfAVerticalSlider();
    void placesTheKnob();
    void laysMarksAlongX();
    void readsAFractionUnderThePointer_data();
    void readsAFractionUnderThePointer();
    void countsThePointerOverTheKnobAsWell();
    void hasAnAnswerWithoutLength();
};

void SliderGeometryTest::placesTheParts()
{
    const SliderGeometry slider({200, 20}, false);
    QCOMPARE(slider.knobNormalSize(), QSizeF(15, 15)); // 14.29 rounded up
    QCOMPARE(slider.knobScaleSize(), QSizeF(21, 21));
    QCOMPARE(slider.cellRect(), QRectF(10.5, 0, 179, 20));
    QCOMPARE(slider.track(), QRectF(10.5, 8, 179, 4));
    QCOMPARE(slider.trackRadius(), 2.0);
    QCOMPARE(slider.filledPart(0.5), QRectF(10.5, 8, 89.5, 4));
}

void SliderGeometryTest::placesThePartsOfAVerticalSlider()
{
    const SliderGeometry slider({20, 200}, true);
    QCOMPARE(slider.cellRect(), QRectF(0, 10.5, 20, 179));
    QCOMPARE(slider.track(), QRectF(8, 10.5, 4, 179));
    QCOMPARE(slider.filledPart(0.5), QRectF(8, 10.5, 4, 89.5));
}

void SliderGeometryTest::placesTheKnob()
{
    const SliderGeometry flat({200, 20}, false);
    QCOMPARE(flat.knob(0, {15, 15}), QRectF(3, 2.5, 15, 15));
    QCOMPARE(flat.knob(0.5, {21, 21}), QRectF(89.5, -0.5, 21, 21));
    const SliderGeometry upright({20, 200}, true);
    QCOMPARE(upright.knob(1, {15, 15}), QRectF(2.5, 182, 15, 15));
}

void SliderGeometryTest::laysMarksAlongX()
{
    const SliderGeometry flat({200, 20}, false);
    QCOMPARE(flat.mark(0, 4), QRectF(11.5, 9, 2, 2));
    QCOMPARE(flat.mark(2, 4), QRectF(99, 9, 2, 2));
    QCOMPARE(flat.mark(4, 4), QRectF(186.5, 9, 2, 2));
    QCOMPARE(flat.mark(1, 3).x(), double(1.0F / 3.0F) * 175 + 11.5); // in single precision
    const SliderGeometry upright({20, 200}, true);
    QCOMPARE(upright.mark(1, 2), QRectF(96.5, 11.5, 177, 177));
}

void SliderGeometryTest::readsAFractionUnderThePointer_data()
{
    QTest::addColumn<bool>("vertical");
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<bool>("counts");
    QTest::addColumn<double>("fraction");
    QTest::newRow("start") << false << QPointF(10.5, 10) << true << 0.0;
    QTest::newRow("middle") << false << QPointF(100, 0) << true << 0.5;
    QTest::newRow("last") << false << QPointF(189.4, 10) << true << 178.9 / 179;
    QTest::newRow("past the end") << false << QPointF(189.5, 10) << false << 0.0;
    QTest::newRow("before the start") << false << QPointF(10.4, 10) << false << 0.0;
    QTest::newRow("above") << false << QPointF(100, 20) << false << 0.0;
    QTest::newRow("vertical middle") << true << QPointF(0, 100) << true << 0.5;
    QTest::newRow("vertical below") << true << QPointF(0, 10) << false << 0.0;
}

void SliderGeometryTest::readsAFractionUnderThePointer()
{
    QFETCH(bool, vertical);
    QFETCH(QPointF, pointer);
    QFETCH(bool, counts);
    QFETCH(double, fraction);
    const SliderGeometry slider(vertical ? QSizeF(20, 200) : QSizeF(200, 20), vertical);
    const std::optional<double> read = slider.fractionAt(pointer, QRectF());
    QCOMPARE(read.has_value(), counts);
    if (counts)
        QCOMPARE(*read, fraction);
}

void SliderGeometryTest::countsThePointerOverTheKnobAsWell()
{
    const SliderGeometry slider({200, 20}, false);
    QCOMPARE(slider.fractionAt({4, 5}, QRectF(3, 2.5, 15, 15)).value(), 0.0);
    QCOMPARE(slider.fractionAt({195, 5}, QRectF(182, 2.5, 15, 15)).value(), 1.0);
}

void SliderGeometryTest::hasAnAnswerWithoutLength()
{
    const SliderGeometry slider({10, 20}, false); // shorter than its knob: the cell has no width
    QVERIFY(!slider.fractionAt({5, 5}, QRectF()));
    QCOMPARE(slider.fractionAt({5, 5}, QRectF(0, 0, 10, 10)).value(), 0.0);
    QVERIFY(slider.fractionAt({12, 5}, QRectF(0, 0, 15, 10)).value() < 1e-17);
}

QTEST_APPLESS_MAIN(SliderGeometryTest)
#include "SliderGeometryTest.moc"
