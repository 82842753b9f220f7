// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/DevicePixels.h>
#include <KXFoundation/Platform/UI/KeptDrawing.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPicture>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

using Place = kx::KeptDrawing::Place;

constexpr QRectF place(10, 5, 20, 8);

// Its fills and edges lie between pixels at every ratio.
void drawSomething(QPainter &painter)
{
    painter.fillRect(QRectF(10.4, 5, 7, 8), QColor(255, 0, 0, 128));
    painter.fillRect(QRectF(15.7, 7.2, 10, 3.3), Qt::green);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::blue);
    painter.drawEllipse(QRectF(20.2, 5.6, 7.5, 7));
}

QImage canvas(double ratio = 1)
{
    QImage image((QSizeF(40, 20) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(40, 80, 120));
    return image;
}

/// Counts how often it was drawn.
struct Counted {
    kx::KeptDrawing kept;
    int count = 0;

    void draw(QPainter &painter, const QRectF &where = place, Place kind = Place::Exact, int firstColumn = 0)
    {
        kx::DevicePixels device(painter);
        const auto drawing = [&](QPainter &target) {
            ++count;
            target.translate(where.topLeft() - place.topLeft());
            drawSomething(target);
        };
        kept.draw(painter, device, where, drawing, kind, firstColumn);
    }
};

int largestDifference(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor one = a.pixelColor(x, y);
            const QColor other = b.pixelColor(x, y);
            largest = std::max({largest, qAbs(one.red() - other.red()), qAbs(one.green() - other.green()),
                qAbs(one.blue() - other.blue())});
        }
    }
    return largest;
}

} // namespace

class KeptDrawingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void looksAsDrawnDirectly_data();
    void looksAsDrawnDirectly();
    void isDrawnOnceForOnePlaceAmongThePixels();
    void isDrawnAnewForAnotherSite_data();
    void isDrawnAnewForAnotherSite();
    void isDrawnAnewOnceForgotten();
    void slidesInWholePixels();
    void leavesOutColumns();
    void isDrawnEachTimeWherePixelsCannotBeCopied_data();
    void isDrawnEachTimeWherePixelsCannotBeCopied();
    void isDrawnEachTimeWhenItIsTooLarge();
    void leavesThePainterAsItWas();
    void isForgottenWhenAPartDiffers();
};

void KeptDrawingTest::looksAsDrawnDirectly_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QPointF>("shift");
    for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        QTest::addRow("ratio %g", ratio) << ratio << QPointF(0, 0);
        QTest::addRow("ratio %g, moved", ratio) << ratio << QPointF(3, -1);
        QTest::addRow("ratio %g, between pixels", ratio) << ratio << QPointF(0.3, 1.6);
    }
}

void KeptDrawingTest::looksAsDrawnDirectly()
{
    QFETCH(double, ratio);
    QFETCH(QPointF, shift);
    QImage direct = canvas(ratio);
    {
        QPainter painter(&direct);
        painter.translate(shift);
        drawSomething(painter);
    }
    Counted counted;
    for (int i = 0; i < 2; ++i) { // drawn, then copied
        QImage kept = canvas(ratio);
        QPainter painter(&kept);
        painter.translate(shift);
        counted.draw(painter);
        painter.end();
        QVERIFY(largestDifference(kept, direct) <= 2); // blended in another order
        QVERIFY(largestDifference(kept, canvas(ratio)) > 100);
    }
    QCOMPARE(counted.count, 1);
}

void KeptDrawingTest::isDrawnOnceForOnePlaceAmongThePixels()
{
    QImage image = canvas();
    QPainter painter(&image);
    Counted counted;
    counted.draw(painter);
    counted.draw(painter, place.translated(4, -2));
    painter.translate(-3, 1);
    counted.draw(painter);
    QCOMPARE(counted.count, 1);
}

void KeptDrawingTest::isDrawnAnewForAnotherSite_data()
{
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<QRectF>("where");
    QTest::newRow("wider") << QTransform() << place.adjusted(0, 0, 1, 0);
    QTest::newRow("higher") << QTransform() << place.adjusted(0, 0, 0, 1);
    QTest::newRow("between columns") << QTransform() << place.translated(0.5, 0);
    QTest::newRow("between rows") << QTransform() << place.translated(0, 0.5);
    QTest::newRow("stretched across") << QTransform::fromScale(1.5, 1) << place;
    QTest::newRow("stretched down") << QTransform::fromScale(1, 1.5) << place;
    // As many pixels, but more of them for a unit.
    QTest::newRow("another resolution") << QTransform::fromScale(2, 2) << QRectF(5, 2.5, 10, 4);
}

void KeptDrawingTest::isDrawnAnewForAnotherSite()
{
    QFETCH(QTransform, transform);
    QFETCH(QRectF, where);
    QImage image = canvas();
    QPainter painter(&image);
    Counted counted;
    counted.draw(painter);
    painter.setTransform(transform);
    counted.draw(painter, where);
    QCOMPARE(counted.count, 2);
    counted.draw(painter, where);
    QCOMPARE(counted.count, 2);
}

void KeptDrawingTest::isDrawnAnewOnceForgotten()
{
    QImage image = canvas();
    QPainter painter(&image);
    Counted counted;
    counted.draw(painter);
    counted.kept.forget();
    counted.draw(painter);
    QCOMPARE(counted.count, 2);
}

void KeptDrawingTest::slidesInWholePixels()
{
    Counted counted;
    const auto drawnAt = [&](double x) {
        QImage image = canvas();
        QPainter painter(&image);
        counted.draw(painter, place.translated(x, 0), Place::SnappedAcross);
        painter.end();
        return image;
    };
    const QImage here = drawnAt(0);
    const QImage next = drawnAt(1);
    QVERIFY(here != next);
    QCOMPARE(drawnAt(0.4), here);
    QCOMPARE(drawnAt(-0.4), here);
    QCOMPARE(drawnAt(0.6), next);
    QCOMPARE(drawnAt(1.4), next);
    QCOMPARE(counted.count, 1);
}

void KeptDrawingTest::leavesOutColumns()
{
    const auto drawn = [](int firstColumn) {
        QImage image = canvas();
        QPainter painter(&image);
        Counted().draw(painter, place, Place::Exact, firstColumn);
        painter.end();
        return image;
    };
    const QImage all = drawn(0);
    QCOMPARE(drawn(10), all);
    const QImage right = drawn(18);
    QCOMPARE(right.copy(0, 0, 18, 20), canvas().copy(0, 0, 18, 20));
    QCOMPARE(right.copy(18, 0, 22, 20), all.copy(18, 0, 22, 20));
    QCOMPARE(drawn(30), canvas());
    QCOMPARE(drawn(1000), canvas());
}

void KeptDrawingTest::isDrawnEachTimeWherePixelsCannotBeCopied_data()
{
    QTest::addColumn<QTransform>("transform");
    QTest::newRow("rotated") << QTransform().rotate(90);
    QTest::newRow("sheared") << QTransform().shear(0.5, 0);
    QTest::newRow("mirrored across") << QTransform::fromScale(-1, 1);
    QTest::newRow("mirrored down") << QTransform::fromScale(1, -1);
    QTest::newRow("far away") << QTransform::fromTranslate(1e8, 0);
    QTest::newRow("far below") << QTransform::fromTranslate(0, 1e8);
}

void KeptDrawingTest::isDrawnEachTimeWherePixelsCannotBeCopied()
{
    QFETCH(QTransform, transform);
    QImage image = canvas();
    QPainter painter(&image);
    painter.setTransform(transform);
    Counted counted;
    counted.draw(painter);
    painter.setTransform(transform);
    counted.draw(painter);
    QCOMPARE(counted.count, 2);

    QPicture picture; // has no pixels
    QPainter recorder(&picture);
    counted.draw(recorder);
    counted.draw(recorder);
    QCOMPARE(counted.count, 4);
}

void KeptDrawingTest::isDrawnEachTimeWhenItIsTooLarge()
{
    QImage image = canvas();
    QPainter painter(&image);
    Counted counted;
    const QRectF largest(10, 5, 1024, 1024);
    counted.draw(painter, largest);
    counted.draw(painter, largest);
    QCOMPARE(counted.count, 1);
    counted.draw(painter, largest.adjusted(0, 0, 1, 0));
    counted.draw(painter, largest.adjusted(0, 0, 1, 0));
    QCOMPARE(counted.count, 3);
}

void KeptDrawingTest::leavesThePainterAsItWas()
{
    QImage image = canvas(1.5);
    QPainter painter(&image);
    painter.translate(2, 3);
    const QTransform before = painter.worldTransform();
    Counted counted;
    counted.draw(painter);
    counted.draw(painter);
    QCOMPARE(painter.worldTransform(), before);
}

void KeptDrawingTest::isForgottenWhenAPartDiffers()
{
    kx::KeptDrawingOf<int, QString> kept;
    QImage image = canvas();
    QPainter painter(&image);
    kx::DevicePixels device(painter);
    int count = 0;
    const auto draw = [&](int number, const QString &text) {
        kept.setParts(number, text);
        kept.draw(painter, device, place, [&](QPainter &) { ++count; });
        return count;
    };
    QCOMPARE(draw(1, u"a"_s), 1);
    QCOMPARE(draw(1, u"a"_s), 1);
    QCOMPARE(draw(2, u"a"_s), 2);
    QCOMPARE(draw(2, u"b"_s), 3);
    QCOMPARE(draw(2, u"b"_s), 3);
    QCOMPARE(draw(1, u"a"_s), 4); // only the last one is kept
}

QTEST_MAIN(KeptDrawingTest)
#include "KeptDrawingTest.moc"
