// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Autoresizing.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using enum kx::Autoresizing;

class AutoresizingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void givesTheChangeToTheFlexibleParts_data();
    void givesTheChangeToTheFlexibleParts();
};

void AutoresizingTest::givesTheChangeToTheFlexibleParts_data()
{
    QTest::addColumn<QRectF>("frame");
    QTest::addColumn<QSizeF>("oldSize");
    QTest::addColumn<QSizeF>("newSize");
    QTest::addColumn<int>("mask");
    QTest::addColumn<QRectF>("expected");
    const auto row = [](const char *name, const QRectF &frame, const QSizeF &oldSize, const QSizeF &newSize,
                         kx::AutoresizingMask mask, const QRectF &expected) {
        QTest::newRow(name) << frame << oldSize << newSize << int(mask) << expected;
    };
    const QSizeF hundred(100, 100);
    const QSizeF grown(150, 120);
    const QRectF inner(10, 20, 30, 40);
    row("nothing flexible", inner, hundred, grown, kx::Autoresizing::None, inner);
    row("width and height", inner, hundred, grown, Width | Height, {10, 20, 80, 60});
    row("width and height of a full view", {0, 0, 100, 100}, hundred, grown, Width | Height, {0, 0, 150, 120});
    row("width and height from nothing", {}, QSizeF(0, 0), grown, Width | Height, {0, 0, 150, 120});
    row("least margins", inner, hundred, grown, MinXMargin | MinYMargin, {60, 40, 30, 40});
    row("far margins", inner, hundred, grown, MaxXMargin | MaxYMargin, inner);
    row("in proportion", {10, 0, 30, 10}, hundred, {200, 100}, MinXMargin | Width, {35, 0, 105, 10});
    row("all margins", {25, 0, 50, 10}, hundred, {200, 100}, MinXMargin | MaxXMargin, {75, 0, 50, 10});
    row("equally without lengths", {0, 0, 100, 10}, hundred, {200, 100}, MinXMargin | MaxXMargin, {50, 0, 100, 10});
    row("never below nothing", {10, 0, 30, 10}, hundred, {20, 100}, Width, {10, 0, 0, 10});
    row("same size", inner, hundred, hundred, Width | MinYMargin, inner);
}

void AutoresizingTest::givesTheChangeToTheFlexibleParts()
{
    QFETCH(QRectF, frame);
    QFETCH(QSizeF, oldSize);
    QFETCH(QSizeF, newSize);
    QFETCH(int, mask);
    QTEST(kx::autoresized(frame, oldSize, newSize, kx::AutoresizingMask(mask)), "expected");
}

QTEST_APPLESS_MAIN(AutoresizingTest)
#include "AutoresizingTest.moc"
