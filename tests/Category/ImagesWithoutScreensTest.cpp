// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ImageKXTools.h>

#include <QtTest/QTest>

#include "Support/TestImages.h"

using namespace Qt::StringLiterals;
using namespace kx::test;

// In a program without windows, one pixel stands for a point.
class ImagesWithoutScreensTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void drawsOnePixelPerPoint()
    {
        const kx::Image image = sampleImage(20, 20, 2);
        QCOMPARE(kx::resize(image, QSizeF(10, 10)).representations().constFirst().toQImage().size(), QSize(10, 10));
        QCOMPARE(kx::CGImageRef4PDF(image), sampleImage(20, 20, 2));
        QCOMPARE(kx::imageWithAlpha(image, 0.5).pixelScale(), 1.0);
        QCOMPARE(kx::imageWithTintColor(image, Qt::red).pixelScale(), 2.0);
    }
};

QTEST_GUILESS_MAIN(ImagesWithoutScreensTest)
#include "ImagesWithoutScreensTest.moc"
