// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Geometry.h>

#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

class GeometryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void findsPointsInHalfOpenRectangles_data();
    void findsPointsInHalfOpenRectangles();
    void turnsPointersUp_data();
    void turnsPointersUp();
    void everyDeviceRowLiesInsideTheArea_data();
    void everyDeviceRowLiesInsideTheArea();
    void flipsRectangles_data();
    void flipsRectangles();
    void roundsEdges_data();
    void roundsEdges();
};

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

void GeometryTest::findsPointsInHalfOpenRectangles_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<bool>("inside");
    const QRectF rect(10, 20, 30, 40);
    QTest::newRow("least corner") << QPointF(10, 20) << rect << true;
    QTest::newRow("middle") << QPointF(25, 40) << rect << true;
    QTest::newRow("just before the far corner") << QPointF(39.999, 59.999) << rect << true;
    QTest::newRow("right edge") << QPointF(40, 40) << rect << false;
    QTest::newRow("far y edge") << QPointF(25, 60) << rect << false;
    QTest::newRow("left of it") << QPointF(9.999, 40) << rect << false;
    QTest::newRow("below it") << QPointF(25, 19.999) << rect << false;
    QTest::newRow("nearest number below the right edge") << QPointF(std::nextafter(40.0, 0.0), 40) << rect << true;
    QTest::newRow("empty rectangle") << QPointF(10, 20) << QRectF(10, 20, 0, 0) << false;
    QTest::newRow("no width") << QPointF(10, 20) << QRectF(10, 20, 0, 5) << false;
    QTest::newRow("negative width") << QPointF(5, 21) << QRectF(10, 20, -8, 5) << false;
    QTest::newRow("negative origin") << QPointF(-1, -1) << QRectF(-2, -2, 2, 2) << true;
    QTest::newRow("no number") << QPointF(notANumber, 21) << rect << false;
    QTest::newRow("rectangle of no number") << QPointF(10, 20) << QRectF(notANumber, 20, 1, 1) << false;
    QTest::newRow("endless rectangle") << QPointF(1e300, 5) << QRectF(0, 0, infinite, 10) << true;
}

void GeometryTest::findsPointsInHalfOpenRectangles()
{
    QFETCH(QPointF, point);
    QFETCH(QRectF, rect);
    QTEST(kx::pointInRect(point, rect), "inside");
}

void GeometryTest::turnsPointersUp_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QPointF>("expected");
    QTest::newRow("1, last row") << 1.0 << QPointF(7, 99) << QPointF(7, 0);
    QTest::newRow("1, first row") << 1.0 << QPointF(0, 0) << QPointF(0, 99);
    QTest::newRow("1.5, last row") << 1.5 << QPointF(7, 100 - 1 / 1.5) << QPointF(7, 0);
    QTest::newRow("1.5, first row") << 1.5 << QPointF(0.5, 0) << QPointF(0.5, 100 - 1 / 1.5);
    QTest::newRow("2, last row") << 2.0 << QPointF(7, 99.5) << QPointF(7, 0);
    QTest::newRow("2, first row") << 2.0 << QPointF(0, 0) << QPointF(0, 99.5);
    QTest::newRow("2, above the area") << 2.0 << QPointF(0, -0.5) << QPointF(0, 100);
}

void GeometryTest::turnsPointersUp()
{
    QFETCH(double, ratio);
    QFETCH(QPointF, position);
    QFETCH(QPointF, expected);
    const QPointF point = kx::pointerToYUp(position, 100, ratio);
    QVERIFY2(qAbs(point.x() - expected.x()) < 1e-9 && qAbs(point.y() - expected.y()) < 1e-9,
        qPrintable(QString::number(point.y())));
}

void GeometryTest::everyDeviceRowLiesInsideTheArea_data()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

void GeometryTest::everyDeviceRowLiesInsideTheArea()
{
    QFETCH(double, ratio);
    const double height = 120;
    const QRectF area(0, 0, 10, height);
    const int rows = int(height * ratio);
    for (int row = 0; row < rows; ++row) {
        const QPointF point = kx::pointerToYUp(QPointF(5, row / ratio), height, ratio);
        // The last row may miss 0 by a rounding error of the division.
        QVERIFY2(kx::pointInRect(point + QPointF(0, 1e-9), area), qPrintable(QString::number(row)));
        QVERIFY(qAbs(point.y() - (rows - 1 - row) / ratio) < 1e-9);
    }
}

void GeometryTest::flipsRectangles_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<double>("height");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("at the top") << QRectF(3, 0, 10, 20) << 100.0 << QRectF(3, 80, 10, 20);
    QTest::newRow("all of it") << QRectF(0, 0, 10, 100) << 100.0 << QRectF(0, 0, 10, 100);
    QTest::newRow("outside below") << QRectF(0, 110, 10, 20) << 100.0 << QRectF(0, -30, 10, 20);
    QTest::newRow("a device row at ratio 1") << QRectF(0, 99, 10, 1) << 100.0 << QRectF(0, 0, 10, 1);
    QTest::newRow("a device row at ratio 1.5")
        << QRectF(0, 99, 10, 1 / 1.5) << 100.0 << QRectF(0, 1 - 1 / 1.5, 10, 1 / 1.5);
    QTest::newRow("a device row at ratio 2") << QRectF(0, 99.5, 10, 0.5) << 100.0 << QRectF(0, 0, 10, 0.5);
}

void GeometryTest::flipsRectangles()
{
    QFETCH(QRectF, rect);
    QFETCH(double, height);
    QFETCH(QRectF, expected);
    const auto same = [](const QRectF &a, const QRectF &b) {
        return qAbs(a.x() - b.x()) < 1e-9 && qAbs(a.y() - b.y()) < 1e-9 && a.size() == b.size();
    };
    QVERIFY(same(kx::flippedRect(rect, height), expected));
    QVERIFY(same(kx::flippedRect(expected, height), rect));
}

void GeometryTest::roundsEdges_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("whole") << QRectF(1, 2, 3, 4) << QRect(1, 2, 3, 4);
    QTest::newRow("edges, not sizes") << QRectF(0.4, 0.4, 10.2, 10.2) << QRect(0, 0, 11, 11);
    QTest::newRow("halves go up") << QRectF(-0.5, 0.5, 1, 1) << QRect(0, 1, 1, 1);
    QTest::newRow("neighbours meet") << QRectF(10.5, 0, 5, 1) << QRect(11, 0, 5, 1);
    QTest::newRow("negative size") << QRectF(5, 5, -3, -3) << QRect(5, 5, 0, 0);
    QTest::newRow("no number") << QRectF(notANumber, 1, notANumber, 2) << QRect(0, 1, 0, 2);
    QTest::newRow("endless") << QRectF(0, 0, infinite, 1) << QRect(0, 0, 16777215, 1);
}

void GeometryTest::roundsEdges()
{
    QFETCH(QRectF, rect);
    QTEST(kx::edgesRounded(rect), "expected");
}

QTEST_APPLESS_MAIN(GeometryTest)
#include "GeometryTest.moc"
