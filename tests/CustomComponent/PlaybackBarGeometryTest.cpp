// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PlaybackBarGeometry.h>

#include <QtTest/QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Input = PlaybackBarGeometry::Input;

/// 300 wide, 32 high, not hovered, half of 0 to 100 played.
Input half()
{
    return {.width = 300,
        .progressHeight = 4,
        .indicatorHeight = 32,
        .hoverHeight = 64,
        .playedValue = 50,
        .maxValue = 100};
}

} // namespace

class PlaybackBarGeometryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void placesTheParts();
    void isStoppedOnlyWithoutValues();
    void looksHoveredAtTheHoverHeightExactly();
    void holdsThePartsWithinTheBar();
    void showsTheDraggedValueWhileDragging();
    void countsValuesFromZeroWhateverTheSmallestIs();
    void leavesTicksUnclampedAndUnpadded();
    void placesClipsInSinglePrecision();
    void placesTheKnob_data();
    void placesTheKnob();
    void readsAValueUnderThePointer_data();
    void readsAValueUnderThePointer();
    void readsAFractionUnderThePointer_data();
    void readsAFractionUnderThePointer();
};

void PlaybackBarGeometryTest::placesTheParts()
{
    Input input = half();
    input.preloadValue = 75;
    const PlaybackBarGeometry geometry(input);
    QCOMPARE(geometry.bar(), QRectF(0, 11, 300, 4));
    QCOMPARE(geometry.knobInset(), 7.0);
    QCOMPARE(geometry.usableLength(), 286.0);
    QCOMPARE(geometry.playedPart(), QRectF(0, 11, 150, 4));
    QCOMPARE(geometry.preloadedPart().value(), QRectF(0, 11, 221.5, 4));

    input.horizontalPadding = 10;
    const PlaybackBarGeometry padded(input);
    QCOMPARE(padded.bar(), QRectF(10, 11, 280, 4));
    QCOMPARE(padded.usableLength(), 266.0);
    QCOMPARE(padded.playedPart(), QRectF(10, 11, 140, 4));

    input.preloadValue = 50;
    QVERIFY(!PlaybackBarGeometry(input).preloadedPart());
}

void PlaybackBarGeometryTest::isStoppedOnlyWithoutValues()
{
    Input input = half();
    QVERIFY(!PlaybackBarGeometry(input).isStopped());
    input.maxValue = 0;
    QVERIFY(!PlaybackBarGeometry(input).isStopped());
    QVERIFY(!PlaybackBarGeometry(input).hasRange());
    QCOMPARE(PlaybackBarGeometry(input).knobCentre(), 7.0);
    input.playedValue = 0;
    QVERIFY(PlaybackBarGeometry(input).isStopped());
}

void PlaybackBarGeometryTest::looksHoveredAtTheHoverHeightExactly()
{
    Input input = half();
    input.hoverHeight = input.indicatorHeight;
    const PlaybackBarGeometry geometry(input);
    QVERIFY(geometry.looksHovered());
    QCOMPARE(geometry.knobInset(), 8.5);
    QCOMPARE(geometry.usableLength(), 283.0);
}

void PlaybackBarGeometryTest::holdsThePartsWithinTheBar()
{
    Input input = half();
    input.playedValue = 200;
    QCOMPARE(PlaybackBarGeometry(input).playedPart(), QRectF(0, 11, 293, 4));
    QCOMPARE(PlaybackBarGeometry(input).knobCentre(), 293.0);
    input.playedValue = -5;
    QCOMPARE(PlaybackBarGeometry(input).playedPart(), QRectF(0, 11, 7, 4));
    QCOMPARE(PlaybackBarGeometry(input).knobCentre(), 7.0);
    input.width = 5; // no way at all
    QCOMPARE(PlaybackBarGeometry(input).knobCentre(), 7.0);
}

void PlaybackBarGeometryTest::showsTheDraggedValueWhileDragging()
{
    Input input = half();
    input.draggedValue = 25;
    QCOMPARE(PlaybackBarGeometry(input).playedPart().width(), 150.0);
    input.isDragging = true;
    QCOMPARE(PlaybackBarGeometry(input).playedPart().width(), 78.5);
    QCOMPARE(PlaybackBarGeometry(input).knobCentre(), 78.5);
    input.draggedValue = -1;
    QCOMPARE(PlaybackBarGeometry(input).playedPart().width(), 150.0);
}

void PlaybackBarGeometryTest::countsValuesFromZeroWhateverTheSmallestIs()
{
    Input input = half();
    input.minValue = 50;
    input.playedValue = 25;
    QCOMPARE(PlaybackBarGeometry(input).playedPart().width(), 150.0); // 25 of a range of 50
}

void PlaybackBarGeometryTest::leavesTicksUnclampedAndUnpadded()
{
    Input input = half();
    const PlaybackBarGeometry geometry(input);
    QCOMPARE(geometry.tick(50), QRectF(148.5, 11, 3, 4));
    QCOMPARE(geometry.tick(200), QRectF(577.5, 11, 3, 4));
    input.horizontalPadding = 10;
    QCOMPARE(PlaybackBarGeometry(input).tick(0), QRectF(5.5, 11, 3, 4));
}

void PlaybackBarGeometryTest::placesClipsInSinglePrecision()
{
    Input input = half();
    input.horizontalPadding = 10;
    const PlaybackBarGeometry geometry(input);
    QCOMPARE(geometry.clip(25, 50), QRectF(10 + 7 + 66.5, 11, 66.5, 4));
    QCOMPARE(geometry.clip(0.1, 50).x(), double(0.1F) / 100 * 266 + 10 + 7);
}

void PlaybackBarGeometryTest::placesTheKnob_data()
{
    QTest::addColumn<double>("played");
    QTest::addColumn<double>("padding");
    QTest::addColumn<QSizeF>("image");
    QTest::addColumn<QRectF>("expected");
    // 32 high at the scale of the image's height; centred at 13 - 16 = -3.
    QTest::newRow("in the middle") << 50.0 << 0.0 << QSizeF(16, 32) << QRectF(142, -3, 16, 32);
    QTest::newRow("scaled") << 50.0 << 0.0 << QSizeF(8, 16) << QRectF(142, -3, 16, 32);
    QTest::newRow("at the start") << 0.0 << 0.0 << QSizeF(16, 32) << QRectF(-1, -3, 16, 32);
    QTest::newRow("at the end") << 100.0 << 0.0 << QSizeF(16, 32) << QRectF(285, -3, 16, 32);
    QTest::newRow("a narrow one stops at the way's length") << 100.0 << 0.0 << QSizeF(8, 32) << QRectF(286, -3, 8, 32);
    QTest::newRow("padded") << 50.0 << 10.0 << QSizeF(16, 32) << QRectF(142, -3, 16, 32);
    QTest::newRow("without height") << 50.0 << 0.0 << QSizeF(16, 0) << QRectF();
}

void PlaybackBarGeometryTest::placesTheKnob()
{
    QFETCH(double, played);
    QFETCH(double, padding);
    QFETCH(QSizeF, image);
    Input input = half();
    input.playedValue = played;
    input.horizontalPadding = padding;
    QTEST(PlaybackBarGeometry(input).knob(image), "expected");
}

void PlaybackBarGeometryTest::readsAValueUnderThePointer_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("padding");
    QTest::addColumn<double>("expected");
    // 20 to 120 over 283 pixels, or 263 with padding.
    QTest::newRow("left of the way") << 8.4 << 0.0 << 20.0;
    QTest::newRow("at its start: the half that is added before rounding") << 8.5 << 0.0 << 20 + 100.0 / 283;
    QTest::newRow("in the middle") << 108.5 << 0.0 << 20 + 101 * 100.0 / 283;
    QTest::newRow("just before half a pixel") << 108.9 << 0.0 << 20 + 101 * 100.0 / 283;
    QTest::newRow("at its end") << 291.5 << 0.0 << 120.0;
    QTest::newRow("just before its end") << 291.4 << 0.0 << 120.0;
    QTest::newRow("right of it") << 1000.0 << 0.0 << 120.0;
    QTest::newRow("left of the padded way") << 18.4 << 10.0 << 20.0;
    QTest::newRow("at the padded start") << 18.5 << 10.0 << 20 + 100.0 / 263;
    QTest::newRow("at the padded end") << 281.5 << 10.0 << 120.0;
}

void PlaybackBarGeometryTest::readsAValueUnderThePointer()
{
    QFETCH(double, x);
    QFETCH(double, padding);
    Input input = half();
    input.minValue = 20;
    input.maxValue = 120;
    input.horizontalPadding = padding;
    QTEST(PlaybackBarGeometry(input).valueAt(x), "expected");
}

void PlaybackBarGeometryTest::readsAFractionUnderThePointer_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");
    QTest::newRow("left") << 300.0 << 0.0 << 0.0;
    QTest::newRow("start") << 300.0 << 8.5 << 0.0;
    QTest::newRow("middle") << 300.0 << 150.0 << 0.5;
    QTest::newRow("end") << 300.0 << 291.5 << 1.0;
    QTest::newRow("right") << 300.0 << 400.0 << 1.0;
    QTest::newRow("without length") << 17.0 << 8.5 << 0.0;
    QTest::newRow("narrower than the knob") << 5.0 << 8.5 << 0.0;
}

void PlaybackBarGeometryTest::readsAFractionUnderThePointer()
{
    QFETCH(double, width);
    QFETCH(double, x);
    Input input = half();
    input.width = width;
    QTEST(PlaybackBarGeometry(input).fractionAt(x), "expected");
}

QTEST_APPLESS_MAIN(PlaybackBarGeometryTest)
#include "PlaybackBarGeometryTest.moc"
