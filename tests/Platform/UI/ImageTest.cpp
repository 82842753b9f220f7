// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Image.h>

#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtTest/QTest>

#include "Support/TestImages.h"

using namespace Qt::StringLiterals;
using namespace kx::test;

class ImageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void isNoneByDefault();
    void knowsItselfAndItsValue();
    void countsPointsByThePixelRatio();
    void takesPixmaps();
    void findsImagesByName();
    void drawsPixelForPixel_data();
    void drawsPixelForPixel();
    void drawsTurned();
    void drawsAPart();
    void leavesOutWhatLiesOutside();
    void choosesTheRepresentationForTheScale();
    void extendsRepresentationsOverTheSize();
    void composites_data();
    void composites();
    void copiesTranslucently();
    void reducesOverAllPixels();
    void handlersPaintAtTheScaleOfThePlace_data();
    void handlersPaintAtTheScaleOfThePlace();
    void handlersStayInsideTheDestination();
    void handlersReachIntoPartsOfPixels();
    void handlersStayInsideTheImage();
    void handlersThatFailAreNotCopied();
    void keepsCaps_data();
    void keepsCaps();
    void tilesUpToTheLastPixel_data();
    void tilesUpToTheLastPixel();
    void survivesHostileRectangles_data();
    void survivesHostileRectangles();
    void drawsIntoHugeRectangles();
    void survivesHostileCaps();
    void flattens();
};

void ImageTest::isNoneByDefault()
{
    const kx::Image none;
    QVERIFY(none == nullptr);
    QVERIFY(!kx::Image(QImage()));
    QVERIFY(!kx::Image(QPixmap()));
    QVERIFY(kx::isAbsent(none));
    QCOMPARE(none.size(), QSizeF(0, 0));
    QCOMPARE(none.pixelScale(), 0.0);
    QVERIFY(none.representations().isEmpty());
    QVERIFY(!none.hasDrawingHandler());
    QVERIFY(!none.withCapInsets({1, 1, 1, 1}, kx::ResizingMode::Tile));
    QVERIFY(none.toQImage(1).isNull());
    QImage target = blankImage(2, 2);
    QPainter painter(&target);
    none.draw(painter, QRectF(0, 0, 2, 2));
    painter.end();
    QCOMPARE(target, blankImage(2, 2));
}

void ImageTest::knowsItselfAndItsValue()
{
    const kx::Image image = sampleImage(4, 4);
    kx::Image copy;
    copy = image;
    const kx::Image other = sampleImage(4, 4);
    QVERIFY(copy == image);
    QVERIFY(other != image);
    QVERIFY(other.sameValue(image));
    QVERIFY(!other.sameValue(kx::Image(sampleImage(4, 5))));
    QVERIFY(!other.sameValue(other.withCapInsets({1, 0, 0, 0}, kx::ResizingMode::Stretch)));
    const auto handler = [](QPainter &, const QRectF &) { return true; };
    const kx::Image drawn = kx::Image::imageWithSize(QSizeF(4, 4), true, handler);
    QVERIFY(drawn.sameValue(drawn));
    QVERIFY(!drawn.sameValue(kx::Image::imageWithSize(QSizeF(4, 4), true, handler)));
    QVERIFY(drawn.isFlipped());
    QVERIFY(drawn.hasDrawingHandler());
}

void ImageTest::countsPointsByThePixelRatio()
{
    const kx::Image image = sampleImage(30, 15, 1.5);
    QCOMPARE(image.size(), QSizeF(20, 10));
    QCOMPARE(image.pixelScale(), 1.5);
    QCOMPARE(image.representations().size(), 1);
    QCOMPARE(image.resizingMode(), kx::ResizingMode::Stretch);
}

void ImageTest::takesPixmaps()
{
    const kx::Image image = QPixmap::fromImage(sampleImage(4, 4, 2));
    QCOMPARE(image.size(), QSizeF(2, 2));
    QCOMPARE(image.toQImage(2).pixelColor(3, 3), sampleImage(4, 4).pixelColor(3, 3));
}

void ImageTest::findsImagesByName()
{
    const QString name = u"indicator"_qs;
    QVERIFY(!kx::Image::named(name));
    const kx::Image image = sampleImage(2, 2);
    kx::Image::setNamed(name, image);
    QVERIFY(kx::Image::named(name) == image);
    QVERIFY(!kx::Image::named(u"indicator_hover"_qs));
    kx::Image::setNamed(name, nullptr);
    QVERIFY(!kx::Image::named(name));
}

void ImageTest::drawsPixelForPixel_data()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

void ImageTest::drawsPixelForPixel()
{
    QFETCH(double, ratio);
    const QImage pixels = sampleImage(int(8 * ratio), int(6 * ratio), ratio);
    QImage target = blankImage(12, 12, ratio);
    QPainter painter(&target);
    kx::Image(pixels).draw(painter, QRectF(2, 4, 8, 6));
    painter.end();
    QCOMPARE(target.copy(QRect(QPoint(2, 4) * ratio, pixels.size())), pixels);
    QCOMPARE(target.pixel(0, 0), 0U);
}

void ImageTest::drawsTurned()
{
    QImage two(20, 10, QImage::Format_ARGB32_Premultiplied);
    two.fill(Qt::red);
    QPainter(&two).fillRect(10, 0, 10, 10, Qt::blue);
    QImage canvas(10, 20, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.translate(10, 0);
    painter.rotate(90); // clockwise: the image's left end comes to the top
    kx::Image(two).draw(painter, QRectF(0, 0, 20, 10));
    painter.end();
    QCOMPARE(canvas.pixelColor(5, 3), QColor(Qt::red));
    QCOMPARE(canvas.pixelColor(5, 16), QColor(Qt::blue));
}

void ImageTest::drawsAPart()
{
    QImage target = blankImage(8, 8);
    QPainter painter(&target);
    kx::Image(sampleImage(12, 12, 2)).draw(painter, QRectF(1, 1, 4, 6), QRectF(1, 0, 2, 3));
    painter.end();
    QCOMPARE(target.copy(1, 1, 4, 6), sampleImage(12, 12).copy(2, 0, 4, 6));
}

void ImageTest::leavesOutWhatLiesOutside()
{
    QImage target = blankImage(8, 8);
    QPainter painter(&target);
    kx::Image(plainImage(QSize(4, 4), Qt::red)).draw(painter, QRectF(0, 0, 8, 8), QRectF(-2, -2, 8, 8));
    painter.end();
    QImage expected = blankImage(8, 8);
    QPainter(&expected).fillRect(2, 2, 4, 4, Qt::red);
    QCOMPARE(target, expected);
}

void ImageTest::choosesTheRepresentationForTheScale()
{
    const kx::Image image = kx::Image::withRepresentations(QSizeF(4, 4),
        {kx::Bitmap(plainImage(QSize(4, 4), Qt::red)), nullptr, kx::Bitmap(plainImage(QSize(8, 8), Qt::blue)),
            kx::Bitmap(plainImage(QSize(12, 12), Qt::green))});
    QCOMPARE(image.representations().size(), 3);
    QCOMPARE(image.pixelScale(), 3.0);
    const auto drawnAt = [&image](double ratio) {
        QImage target = blankImage(4, 4, ratio);
        QPainter painter(&target);
        image.draw(painter, QRectF(0, 0, 4, 4));
        painter.end();
        return target.pixelColor(1, 1);
    };
    QCOMPARE(drawnAt(1), QColor(Qt::red));
    QCOMPARE(drawnAt(1.5), QColor(Qt::blue));
    QCOMPARE(drawnAt(2), QColor(Qt::blue));
    QCOMPARE(drawnAt(3), QColor(Qt::green));
    QCOMPARE(drawnAt(4), QColor(Qt::green));
}

void ImageTest::extendsRepresentationsOverTheSize()
{
    const kx::Image image =
        kx::Image::withRepresentations(QSizeF(8, 2), {kx::Bitmap(plainImage(QSize(2, 4), Qt::red))});
    QImage target = blankImage(8, 8);
    QPainter painter(&target);
    image.draw(painter, QRectF(0, 0, 8, 2));
    painter.end();
    QImage expected = blankImage(8, 8);
    QPainter(&expected).fillRect(0, 0, 8, 2, Qt::red);
    QCOMPARE(target, expected);

    const kx::Image empty = kx::Image::withRepresentations(QSizeF(8, 2), {});
    QVERIFY(empty);
    QVERIFY(empty.toQImage(1).isNull());
}

void ImageTest::composites_data()
{
    QTest::addColumn<kx::CompositingOperation>("operation");
    QTest::addColumn<QColor>("onRed");
    QTest::addColumn<QColor>("onNothing");
    const QColor half(0, 0, 255, 128);
    QTest::newRow("copy") << kx::CompositingOperation::Copy << half << half;
    QTest::newRow("over") << kx::CompositingOperation::SourceOver << QColor(127, 0, 128) << half;
    QTest::newRow("atop") << kx::CompositingOperation::SourceAtop << QColor(127, 0, 128) << QColor(0, 0, 0, 0);
}

void ImageTest::composites()
{
    QFETCH(kx::CompositingOperation, operation);
    QImage target = blankImage(2, 1);
    target.setPixelColor(0, 0, Qt::red);
    QPainter painter(&target);
    kx::Image(plainImage(QSize(2, 1), QColor(0, 0, 255, 128))).draw(painter, QRectF(0, 0, 2, 1), {}, operation);
    QCOMPARE(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
    painter.end();
    QTEST(target.pixelColor(0, 0), "onRed");
    QTEST(target.pixelColor(1, 0), "onNothing");
}

void ImageTest::copiesTranslucently()
{
    QImage target = plainImage(QSize(2, 1), Qt::red);
    QPainter painter(&target);
    const kx::Image blue = plainImage(QSize(2, 2), Qt::blue, 2);
    blue.draw(painter, QRectF(0, 0, 1, 1), {}, kx::CompositingOperation::Copy, 0.2);
    blue.draw(painter, QRectF(1, 0, 1, 1), {}, kx::CompositingOperation::SourceOver, 0.2);
    painter.end();
    QVERIFY(qAbs(target.pixelColor(0, 0).alpha() - 51) <= 1);
    QCOMPARE(target.pixelColor(0, 0).red(), 0);
    QCOMPARE(target.pixelColor(1, 0), QColor(204, 0, 51));
}

void ImageTest::reducesOverAllPixels()
{
    // Columns of black and white, of which sampling would take one kind.
    QImage columns(64, 16, QImage::Format_RGB32);
    for (int x = 0; x < 64; ++x) {
        for (int y = 0; y < 16; ++y)
            columns.setPixelColor(x, y, x % 4 == 0 ? Qt::white : Qt::black);
    }
    QImage target = blankImage(8, 2);
    QPainter painter(&target);
    kx::Image(columns).draw(painter, QRectF(0, 0, 8, 2));
    painter.end();
    for (int x = 0; x < 8; ++x)
        QVERIFY2(
            qAbs(target.pixelColor(x, 1).red() - 64) <= 2, qPrintable(QString::number(target.pixelColor(x, 1).red())));
}

void ImageTest::handlersPaintAtTheScaleOfThePlace_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<kx::CompositingOperation>("operation");
    QTest::newRow("1") << 1.0 << kx::CompositingOperation::SourceOver;
    QTest::newRow("1.5") << 1.5 << kx::CompositingOperation::SourceOver;
    QTest::newRow("2") << 2.0 << kx::CompositingOperation::SourceOver;
    QTest::newRow("1, copied") << 1.0 << kx::CompositingOperation::Copy;
    QTest::newRow("1.5, copied") << 1.5 << kx::CompositingOperation::Copy;
    QTest::newRow("2, copied") << 2.0 << kx::CompositingOperation::Copy;
}

void ImageTest::handlersPaintAtTheScaleOfThePlace()
{
    QFETCH(double, ratio);
    QFETCH(kx::CompositingOperation, operation);
    QRectF given;
    double scale = 0;
    const kx::Image image = kx::Image::imageWithSize(QSizeF(4, 2), false, [&](QPainter &painter, const QRectF &rect) {
        given = rect;
        scale = painter.deviceTransform().m11();
        painter.fillRect(QRectF(0, 0, 2, 1), Qt::red); // the top left quarter
        return true;
    });
    QImage target = blankImage(16, 16, ratio);
    QPainter painter(&target);
    image.draw(painter, QRectF(4, 4, 8, 4), {}, operation);
    painter.end();
    QCOMPARE(given, QRectF(0, 0, 4, 2));
    QCOMPARE(scale, 2 * ratio);
    QImage expected = blankImage(16, 16, ratio);
    QPainter(&expected).fillRect(QRect(4, 4, 4, 2), Qt::red);
    QCOMPARE(target, expected);
}

void ImageTest::handlersStayInsideTheDestination()
{
    const kx::Image image = kx::Image::imageWithSize(QSizeF(4, 4), false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect.adjusted(-9, -9, 9, 9), Qt::red);
        return true;
    });
    QImage target = blankImage(8, 8);
    QPainter painter(&target);
    image.draw(painter, QRectF(2, 2, 2, 2), QRectF(0, 0, 2, 2));
    painter.end();
    QImage expected = blankImage(8, 8);
    QPainter(&expected).fillRect(2, 2, 2, 2, Qt::red);
    QCOMPARE(target, expected);
}

void ImageTest::handlersReachIntoPartsOfPixels()
{
    const kx::Image image = kx::Image::imageWithSize(QSizeF(2, 2), false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::red);
        return true;
    });
    QImage target = blankImage(8, 8);
    QPainter painter(&target);
    image.draw(painter, QRectF(2.5, 3.5, 2, 2));
    painter.end();
    const auto covered = [&](int x, int y) { return qRound(4 * target.pixelColor(x, y).alphaF()) / 4.0; };
    QCOMPARE(covered(1, 4), 0.0);
    QCOMPARE(covered(2, 4), 0.5);
    QCOMPARE(covered(3, 4), 1.0);
    QCOMPARE(covered(4, 4), 0.5);
    QCOMPARE(covered(5, 4), 0.0);
    QCOMPARE(covered(3, 3), 0.5);
    QCOMPARE(covered(3, 5), 0.5);
    QCOMPARE(covered(2, 3), 0.25);
}

void ImageTest::handlersStayInsideTheImage()
{
    const kx::Image image = kx::Image::imageWithSize(QSizeF(10, 10), false, [](QPainter &painter, const QRectF &) {
        painter.fillRect(-100, -100, 200, 200, Qt::red);
        return true;
    });
    QImage target = blankImage(40, 40);
    QPainter painter(&target);
    image.draw(painter, QRectF(0, 0, 40, 40), QRectF(-5, -5, 20, 20));
    painter.end();
    QImage expected = blankImage(40, 40);
    QPainter(&expected).fillRect(10, 10, 20, 20, Qt::red);
    QCOMPARE(target, expected);
}

void ImageTest::handlersThatFailAreNotCopied()
{
    const kx::Image image = kx::Image::imageWithSize(QSizeF(4, 4), false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::red);
        return false;
    });
    QVERIFY(image.toQImage(1).isNull());
    QImage target = plainImage(QSize(4, 4), Qt::blue);
    QPainter painter(&target);
    image.draw(painter, QRectF(0, 0, 4, 4), {}, kx::CompositingOperation::Copy);
    painter.end();
    QCOMPARE(target, plainImage(QSize(4, 4), Qt::blue));
}

void ImageTest::keepsCaps_data()
{
    QTest::addColumn<kx::ResizingMode>("mode");
    QTest::addColumn<double>("ratio");
    for (const double ratio : {1.0, 1.5, 2.0}) {
        QTest::addRow("tile at %g", ratio) << kx::ResizingMode::Tile << ratio;
        QTest::addRow("stretch at %g", ratio) << kx::ResizingMode::Stretch << ratio;
    }
}

// Red corners of 2 points, and a middle of a black and a white column.
void ImageTest::keepsCaps()
{
    QFETCH(kx::ResizingMode, mode);
    QFETCH(double, ratio);
    QImage pixels = plainImage(QSize(12, 12), Qt::red, 2);
    {
        QPainter painter(&pixels);
        painter.fillRect(2, 0, 1, 6, Qt::black);
        painter.fillRect(3, 0, 1, 6, Qt::white);
    }
    const kx::Image image = kx::Image(pixels).withCapInsets({2, 2, 2, 2}, mode);
    QImage target = blankImage(12, 12, ratio);
    QPainter painter(&target);
    image.draw(painter, QRectF(0, 0, 12, 12));
    painter.end();
    const auto column = [&](double x, double y) { return target.pixelColor(int(x * ratio), int(y * ratio)); };
    for (const double y : {0.0, 1.5, 6.0, 11.5}) {
        QCOMPARE(column(0, y), QColor(Qt::red));
        QCOMPARE(column(1, y), QColor(Qt::red));
        QCOMPARE(column(10.5, y), QColor(Qt::red));
        QCOMPARE(column(11.5, y), QColor(Qt::red));
    }
    if (mode == kx::ResizingMode::Tile) {
        if (ratio == 1.5)
            return; // columns end within pixels
        QCOMPARE(column(2, 5), QColor(Qt::black));
        QCOMPARE(column(3, 5), QColor(Qt::white));
        QCOMPARE(column(8, 5), QColor(Qt::black));
        QCOMPARE(column(9, 5), QColor(Qt::white));
    } else {
        QVERIFY(column(2, 5).red() < 32);
        QVERIFY(column(4, 5).red() < 64);
        QVERIFY(column(7.5, 5).red() > 191);
        QVERIFY(column(9.5, 5).red() > 223);
    }
}

void ImageTest::tilesUpToTheLastPixel_data()
{
    QTest::addColumn<int>("pixels");
    QTest::addColumn<double>("points");
    QTest::newRow("whole") << 6 << 3.0;
    QTest::newRow("5 in 4.9") << 5 << 4.9;
    QTest::newRow("7 in 2.4") << 7 << 2.4;
    QTest::newRow("7 in 3.7") << 7 << 3.7;
}

// Sizes whose quotient is rounded up; what lies beyond the image is not part of a tile.
void ImageTest::tilesUpToTheLastPixel()
{
    QFETCH(int, pixels);
    QFETCH(double, points);
    const kx::Bitmap red(plainImage(QSize(pixels, pixels), Qt::red));
    const kx::Image image = kx::Image::withRepresentations(QSizeF(points, points), {red})
                                .withCapInsets({1, 1, 0, 0}, kx::ResizingMode::Tile);
    QImage target = blankImage(40, 40);
    QPainter painter(&target);
    image.draw(painter, QRectF(0, 0, 40, 40));
    painter.end();
    QCOMPARE(target, plainImage(QSize(40, 40), Qt::red));
}

void ImageTest::survivesHostileRectangles_data()
{
    QTest::addColumn<QRectF>("rect");
    for (const auto &[name, rect] : hostileRects())
        QTest::newRow(name) << rect;
}

void ImageTest::survivesHostileRectangles()
{
    QFETCH(QRectF, rect);
    const kx::Image drawn = kx::Image::imageWithSize(QSizeF(4, 4), false, [](QPainter &painter, const QRectF &whole) {
        painter.fillRect(whole, Qt::red);
        return true;
    });
    const kx::Image red = plainImage(QSize(4, 4), Qt::red);
    for (const kx::Image &image : {red, drawn, red.withCapInsets({1, 1, 1, 1}, kx::ResizingMode::Tile)}) {
        QImage target = blankImage(8, 8);
        QPainter painter(&target);
        image.draw(painter, rect);
        image.draw(painter, QRectF(0, 0, 8, 8), rect);
        image.draw(painter, QRectF(0, 0, 8, 8), {}, kx::CompositingOperation::SourceOver, notANumber);
        image.draw(painter, QRectF(0, 0, 8, 8), {}, kx::CompositingOperation::SourceOver, -1);
        painter.end();
        QCOMPARE(target, blankImage(8, 8));
    }
}

void ImageTest::drawsIntoHugeRectangles()
{
    const kx::Image red = plainImage(QSize(4, 4), Qt::red);
    const kx::Image drawn = kx::Image::imageWithSize(QSizeF(4, 4), false, [](QPainter &painter, const QRectF &whole) {
        painter.fillRect(whole, Qt::red);
        return true;
    });
    for (const double side : {1e5, 1e9, 1e100, 1e300}) {
        const QRectF huge(-side / 2, -side / 2, side, side);
        QImage target = blankImage(8, 8);
        QPainter painter(&target);
        red.draw(painter, huge);
        if (side < 1e12) // beyond, a pixel of the image spans more than numbers resolve
            QCOMPARE(target, plainImage(QSize(8, 8), Qt::red));
        red.withCapInsets({1, 1, 1, 1}, kx::ResizingMode::Tile).draw(painter, huge);
        red.draw(painter, QRectF(0, 0, 8, 8), huge); // a part of which the image is almost nothing
        drawn.draw(painter, huge);
        drawn.draw(painter, huge, {}, kx::CompositingOperation::Copy);
        painter.end();
    }
}

void ImageTest::survivesHostileCaps()
{
    const kx::Image red = plainImage(QSize(4, 4), Qt::red);
    for (const double inset : {-1.0, 2.0, 3.0, 1e300, infinite, notANumber}) {
        for (const auto mode : {kx::ResizingMode::Tile, kx::ResizingMode::Stretch}) {
            for (const int side : {1, 3, 7}) {
                QImage target = blankImage(side, side);
                QPainter painter(&target);
                red.withCapInsets({inset, inset, inset, inset}, mode).draw(painter, QRectF(0, 0, side, side));
                painter.end();
                QCOMPARE(target.pixelColor(0, 0), QColor(Qt::red));
                QCOMPARE(target.pixelColor(side - 1, side - 1), QColor(Qt::red));
            }
        }
    }
}

void ImageTest::flattens()
{
    const QImage pixels = sampleImage(8, 8, 2);
    const kx::Image image = pixels;
    const QImage same = image.toQImage(2);
    QCOMPARE(same, pixels);
    QCOMPARE(same.devicePixelRatio(), 2.0);
    QCOMPARE(same.constBits(), pixels.constBits()); // shared
    QCOMPARE(image.toQImage(1).size(), QSize(4, 4));
    QCOMPARE(image.toQImage(1.5).size(), QSize(6, 6));
    QCOMPARE(image.toQImage(0.01).size(), QSize(1, 1));
    QVERIFY(image.toQImage(0).isNull());
    QVERIFY(image.toQImage(-1).isNull());
    QVERIFY(image.toQImage(notANumber).isNull());
    QVERIFY(image.toQImage(1e9).isNull());
}

QTEST_MAIN(ImageTest)
#include "ImageTest.moc"
