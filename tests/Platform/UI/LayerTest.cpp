// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// A picture of the view's own painting over white, at a device pixel ratio.
QImage painted(kx::View &view, double ratio = 1)
{
    QImage image((QSizeF(view.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// Fills a part of itself.
class Patch : public kx::View {
public:
    using kx::View::View;
    QRectF part;
    QColor color;

    void drawRect(QPainter &painter, const QRectF &dirtyRect) override
    {
        ++paints;
        dirty = dirtyRect;
        font = painter.font();
        pen = painter.pen().color();
        painter.fillRect(widgetRect(part), color);
    }
    QRectF dirty;
    QFont font;
    QColor pen;
    int paints = 0;
};

} // namespace

class LayerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void startsWithoutAnything();
    void fillsItsBackgroundBehindTheDrawing();
    void roundsItsCorners_data();
    void roundsItsCorners();
    void paintsItsBorderAboveTheDrawing();
    void roundsItsBorderWithinAndWithout();
    void cutsTheDrawingAtItsCornersWhenItMasks();
    void blendsTheWholeViewAtOnce();
    void multipliesTheAlphaOfTheViewsAbove();
    void paintsNothingAtAlphaZeroAndIsStillHit();
    void keepsAlphaAsGiven();
    void survivesValuesThatMakeNoSense();
    void drawsInTheViewsCoordinates();
    void drawsWithTheSamePainterAtEveryAlpha();
    void repaintsSubviewsWhenItsAlphaChanges();
    void changesWithValuesNotWithObjects();

private:
    std::unique_ptr<Patch> m_view;
};

void LayerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_view = std::make_unique<Patch>();
    m_view->setFrame({0, 0, 40, 20});
}

void LayerTest::startsWithoutAnything()
{
    const kx::Layer &layer = *m_view->layer();
    QVERIFY(!layer.backgroundColor());
    QVERIFY(!layer.borderColor());
    QVERIFY(!layer.shadowColor());
    QCOMPARE(layer.cornerRadius(), 0.0);
    QCOMPARE(layer.borderWidth(), 0.0);
    QCOMPARE(layer.shadowRadius(), 0.0);
    QCOMPARE(layer.shadowOpacity(), 0.0);
    QCOMPARE(layer.shadowOffset(), QSizeF(0, 0));
    QVERIFY(!layer.masksToBounds());
    QVERIFY(!layer.castsShadow());
    QCOMPARE(m_view->alphaValue(), 1.0);
    QCOMPARE(painted(*m_view).pixelColor(20, 10), QColor(Qt::white));
}

void LayerTest::fillsItsBackgroundBehindTheDrawing()
{
    m_view->layer()->setBackgroundColor(Qt::blue);
    m_view->part = {0, 0, 10, 10};
    m_view->color = Qt::red;
    const QImage image = painted(*m_view);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(5, 15), QColor(Qt::red)); // the part lies at the bottom
    m_view->layer()->setBackgroundColor(QColor(0, 0, 255, 128));
    QCOMPARE(painted(*m_view).pixelColor(20, 5), QColor(127, 127, 255)); // blended, no hole
    m_view->layer()->setBackgroundColor(nullptr);
    QCOMPARE(painted(*m_view).pixelColor(0, 0), QColor(Qt::white));
}

void LayerTest::roundsItsCorners_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<double>("radius");
    for (const double ratio : {1.0, 1.5, 2.0}) {
        QTest::addRow("ratio %g", ratio) << ratio << 6.0;
        QTest::addRow("ratio %g, more than half a side", ratio) << ratio << 1000.0;
    }
}

void LayerTest::roundsItsCorners()
{
    QFETCH(double, ratio);
    QFETCH(double, radius);
    m_view->layer()->setBackgroundColor(Qt::blue);
    m_view->layer()->setCornerRadius(radius);
    const QImage image = painted(*m_view, ratio);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), QColor(Qt::white));
    QCOMPARE(image.pixelColor(image.width() / 2, 0), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2), QColor(Qt::blue));
}

void LayerTest::paintsItsBorderAboveTheDrawing()
{
    m_view->part = m_view->bounds();
    m_view->color = Qt::red;
    m_view->layer()->setBorderColor(Qt::black);
    m_view->layer()->setBorderWidth(2);
    const QImage image = painted(*m_view);
    QCOMPARE(image.pixelColor(0, 10), QColor(Qt::black));
    QCOMPARE(image.pixelColor(1, 10), QColor(Qt::black));
    QCOMPARE(image.pixelColor(2, 10), QColor(Qt::red));
    QCOMPARE(image.pixelColor(37, 10), QColor(Qt::red));
    QCOMPARE(image.pixelColor(38, 10), QColor(Qt::black));
    QCOMPARE(image.pixelColor(20, 19), QColor(Qt::black));
    m_view->layer()->setBorderWidth(0);
    QCOMPARE(painted(*m_view).pixelColor(0, 10), QColor(Qt::red));
}

void LayerTest::roundsItsBorderWithinAndWithout()
{
    m_view->setFrame({0, 0, 60, 60});
    m_view->part = m_view->bounds();
    m_view->color = Qt::red;
    m_view->layer()->setCornerRadius(20);
    m_view->layer()->setBorderColor(Qt::black);
    m_view->layer()->setBorderWidth(10); // the inner edge is 10 away, with a radius of 10
    const QImage image = painted(*m_view);
    QCOMPARE(image.pixelColor(7, 7), QColor(Qt::black));
    QCOMPARE(image.pixelColor(11, 11), QColor(Qt::black));
    QCOMPARE(image.pixelColor(13, 13), QColor(Qt::red));
}

void LayerTest::cutsTheDrawingAtItsCornersWhenItMasks()
{
    m_view->part = m_view->bounds();
    m_view->color = Qt::red;
    m_view->layer()->setCornerRadius(8);
    QCOMPARE(painted(*m_view).pixelColor(0, 0), QColor(Qt::red));
    m_view->layer()->setMasksToBounds(true);
    QCOMPARE(painted(*m_view).pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(painted(*m_view).pixelColor(20, 10), QColor(Qt::red));
}

void LayerTest::blendsTheWholeViewAtOnce()
{
    m_view->layer()->setBackgroundColor(Qt::blue);
    m_view->part = {0, 0, 10, 20};
    m_view->color = Qt::red;
    m_view->setAlphaValue(0.5);
    const QImage image = painted(*m_view);
    // The background does not show through the drawing.
    const QColor over = image.pixelColor(5, 10);
    QCOMPARE(over.red(), 255);
    QVERIFY(qAbs(over.green() - 127) <= 1);
    QVERIFY(qAbs(over.blue() - 127) <= 1);
    const QColor beside = image.pixelColor(20, 10);
    QCOMPARE(beside.blue(), 255);
    QVERIFY(qAbs(beside.red() - 127) <= 1);
}

void LayerTest::multipliesTheAlphaOfTheViewsAbove()
{
    auto *child = new Patch;
    child->part = {0, 0, 40, 20};
    child->color = Qt::black;
    child->setFrame({0, 0, 40, 20});
    m_view->addSubview(*child);
    m_view->setAlphaValue(0.5);
    child->setAlphaValue(0.5);
    const int grey = painted(*m_view).pixelColor(20, 10).red();
    QVERIFY2(qAbs(grey - 191) <= 1, qPrintable(QString::number(grey)));
}

void LayerTest::paintsNothingAtAlphaZeroAndIsStillHit()
{
    m_view->layer()->setBackgroundColor(Qt::blue);
    m_view->setAlphaValue(0);
    QCOMPARE(painted(*m_view).pixelColor(20, 10), QColor(Qt::white));
    QCOMPARE(m_view->hitTest({5, 5}), static_cast<kx::ViewInterface *>(m_view.get()));
}

void LayerTest::keepsAlphaAsGiven()
{
    m_view->layer()->setBackgroundColor(Qt::blue);
    for (const double alpha : {-1.0, 2.0, std::numeric_limits<double>::infinity()}) {
        m_view->setAlphaValue(alpha);
        QCOMPARE(m_view->alphaValue(), alpha);
        QCOMPARE(painted(*m_view).pixelColor(20, 10), QColor(alpha > 0 ? Qt::blue : Qt::white));
    }
    m_view->setAlphaValue(qQNaN());
    QVERIFY(qIsNaN(m_view->alphaValue()));
    QCOMPARE(painted(*m_view).pixelColor(20, 10), QColor(Qt::blue));
}

void LayerTest::survivesValuesThatMakeNoSense()
{
    kx::Layer &layer = *m_view->layer();
    layer.setBackgroundColor(Qt::blue);
    layer.setBorderColor(Qt::black);
    for (const double value : {-3.0, qQNaN(), qInf(), -qInf()}) {
        layer.setCornerRadius(value);
        layer.setBorderWidth(value);
        QCOMPARE(painted(*m_view).pixelColor(0, 0), QColor(Qt::blue));
    }
    layer.setCornerRadius(0);
    layer.setBorderWidth(1000); // all border
    QCOMPARE(painted(*m_view).pixelColor(20, 10), QColor(Qt::black));
    m_view->setFrame({0, 0, 0, 0});
    QVERIFY(m_view->grab().isNull());
}

void LayerTest::drawsInTheViewsCoordinates()
{
    m_view->render(static_cast<QPaintDevice *>(std::make_unique<QImage>(40, 20, QImage::Format_RGB32).get()), {},
        QRegion(0, 5, 10, 5), {});
    QCOMPARE(m_view->dirty, QRectF(0, 10, 10, 5)); // five below the top: ten above the bottom
}

void LayerTest::drawsWithTheSamePainterAtEveryAlpha()
{
    QFont large = m_view->QWidget::font();
    large.setPixelSize(31);
    m_view->setFont(large);
    QPalette palette = m_view->palette();
    palette.setColor(QPalette::WindowText, Qt::green);
    m_view->setPalette(palette);
    for (const double alpha : {1.0, 0.5}) {
        m_view->setAlphaValue(alpha);
        (void)painted(*m_view);
        QCOMPARE(m_view->Patch::font.pixelSize(), 31);
        QCOMPARE(m_view->pen, QColor(Qt::green));
    }
}

void LayerTest::repaintsSubviewsWhenItsAlphaChanges()
{
    auto *child = new Patch;
    child->setFrame({0, 0, 40, 20});
    child->setAttribute(Qt::WA_OpaquePaintEvent); // Qt would not repaint it for its parent's sake
    m_view->addSubview(*child);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QTRY_VERIFY(child->paints > 0);
    QCoreApplication::processEvents();
    child->paints = 0;
    m_view->setAlphaValue(0.5);
    QTRY_COMPARE(child->paints, 1);
}

// Or updateLayer(), which is called before each painting, could not set the look without asking for the next one.
void LayerTest::changesWithValuesNotWithObjects()
{
    int changes = 0;
    kx::Layer layer([&] { ++changes; });
    const auto setUp = [&](double number) {
        layer.setBackgroundColor(kx::Color::white(number));
        layer.setBorderColor(kx::Color::white(number));
        layer.setShadowColor(kx::Color::white(number));
        layer.setBorderWidth(number);
        layer.setCornerRadius(number);
        layer.setShadowRadius(number);
        layer.setShadowOpacity(number);
        layer.setShadowOffset({number, 0});
    };
    constexpr int setters = 8;
    setUp(0.5);
    QCOMPARE(changes, setters);
    setUp(0.5);
    QCOMPARE(changes, setters);
    setUp(std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(changes, 2 * setters);
    layer.setBorderWidth(std::numeric_limits<double>::quiet_NaN());
    layer.setShadowOffset({std::numeric_limits<double>::quiet_NaN(), 0});
    QCOMPARE(changes, 2 * setters);

    const kx::Color last = kx::Color::white(1);
    layer.setBackgroundColor(kx::Color::white(1));
    layer.setBackgroundColor(last);
    QVERIFY(layer.backgroundColor() == last);
}

QTEST_MAIN(LayerTest)
#include "LayerTest.moc"
