// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/LayerShadow.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QSplitter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// The library has a class of its own of that name.
QWidget *shadowIn(const QWidget &widget)
{
    for (QWidget *child : widget.findChildren<QWidget *>()) {
        if (qstrcmp(child->metaObject()->className(), "kx::LayerShadow") == 0)
            return child;
    }
    return nullptr;
}

} // namespace

class LayerShadowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void blursLikeAGaussian();
    void keepsAnUnblurredPicture();
    void liesBelowTheView();
    void blursByPoints();
    void liesBetweenPixelsToTheNearestOne();
    void isAsFaintAsTheView();
    void takesTheShapeOfWhatIsDrawnNow();
    void comesToTheTopWithTheView();
    void followsTheView();
    void liesRightBelowForAnOffsetThatIsNone();
    void hidesWithTheView();
    void goesWithTheView();
    void goesWhenNothingCastsIt();
    void takesNoPartInTheViews();
    void isNoPaneOfASplitter();
    void movesWithItsViewToAnotherParent();

private:
    [[nodiscard]] QColor at(int x, int y)
    {
        const QImage image = m_window->grab().toImage();
        return image.pixelColor((QPointF(x + 0.25, y + 0.25) * image.devicePixelRatio()).toPoint());
    }
    [[nodiscard]] QWidget *shadow() const { return shadowIn(*m_window); }

    std::unique_ptr<QWidget> m_window;
    kx::View *m_view = nullptr; // 40 x 40 at (50, 50), black
};

void LayerShadowTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->setPalette(QPalette(Qt::white));
    m_window->resize(200, 200);
    m_view = new kx::View(m_window.get());
    m_view->setGeometry(50, 50, 40, 40);
    m_view->layer()->setBackgroundColor(Qt::black);
    m_view->layer()->setShadowColor(Qt::red);
    m_view->layer()->setShadowOpacity(1);
    m_view->layer()->setShadowOffset({0, -20});
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_VERIFY(shadow() && shadow()->isVisible());
}

void LayerShadowTest::blursLikeAGaussian()
{
    QImage dot(1, 1, QImage::Format_ARGB32_Premultiplied);
    dot.fill(Qt::black);
    constexpr double sigma = 4;
    QImage row(41, 41, QImage::Format_ARGB32_Premultiplied);
    row.fill(Qt::transparent);
    for (int y = 0; y < 41; ++y) {
        for (int x = 20; x < 41; ++x)
            row.setPixelColor(x, y, Qt::black);
    }
    const QImage shadow = kx::blurredShadow(row, Qt::red, sigma);
    const int margin = kx::blurMargin(sigma);
    QCOMPARE(margin, 12);
    QCOMPARE(shadow.size(), QSize(65, 65));
    // Across an edge a Gaussian blur is its distribution function.
    for (int x = 12; x < 32; ++x) {
        const double expected = 255 * 0.5 * (1 + std::erf((x + 0.5 - 20) / (sigma * std::sqrt(2.0))));
        const int alpha = qAlpha(shadow.pixel(x + margin, 20 + margin));
        QVERIFY2(qAbs(alpha - expected) < 8, qPrintable(u"%1: %2, not %3"_s.arg(x).arg(alpha).arg(expected)));
    }
    QCOMPARE(qRed(shadow.pixel(31 + margin, 20 + margin)), qAlpha(shadow.pixel(31 + margin, 20 + margin)));
    QCOMPARE(qAlpha(shadow.pixel(0, 0)), 0);
}

void LayerShadowTest::keepsAnUnblurredPicture()
{
    QImage dot(3, 3, QImage::Format_ARGB32_Premultiplied);
    dot.fill(Qt::transparent);
    dot.setPixelColor(1, 1, Qt::black);
    const QImage shadow = kx::blurredShadow(dot, QColor(0, 0, 255, 128), 0);
    QCOMPARE(shadow.size(), dot.size());
    QCOMPARE(qAlpha(shadow.pixel(1, 1)), 128);
    QCOMPARE(qAlpha(shadow.pixel(0, 1)), 0);
}

void LayerShadowTest::liesBelowTheView()
{
    QCOMPARE(at(70, 70), QColor(Qt::black));
    QCOMPARE(at(70, 100), QColor(Qt::red)); // 20 down
    QCOMPARE(at(70, 115), QColor(Qt::white));
    QCOMPARE(at(45, 80), QColor(Qt::white));
    m_view->layer()->setShadowOffset({10, 0});
    QTRY_COMPARE(at(95, 70), QColor(Qt::red));
    m_view->layer()->setShadowRadius(3);
    QTRY_VERIFY(at(101, 70) != QColor(Qt::white));
    QVERIFY(at(101, 70) != QColor(Qt::red));
    m_view->layer()->setShadowOpacity(0.5);
    m_view->layer()->setShadowRadius(0);
    QTRY_VERIFY(qAbs(at(95, 70).green() - 127) <= 2);
}

void LayerShadowTest::blursByPoints()
{
    m_view->layer()->setShadowOffset({20, 0});
    m_view->layer()->setShadowRadius(4);
    // 2.5 beyond the edge a Gaussian of that deviation has lost 0.734 of it.
    QTRY_VERIFY2(qAbs(at(112, 70).green() - 187) < 12, qPrintable(at(112, 70).name()));
    QCOMPARE(at(112, 70).red(), 255);
}

void LayerShadowTest::liesBetweenPixelsToTheNearestOne()
{
    m_view->layer()->setShadowOffset({0.9, -20});
    QTRY_COMPARE(at(90, 100), QColor(Qt::red));
    QCOMPARE(at(50, 100), QColor(Qt::white));
    QCOMPARE(at(91, 100), QColor(Qt::white));
}

void LayerShadowTest::isAsFaintAsTheView()
{
    m_view->setAlphaValue(0.5);
    QTRY_VERIFY(qAbs(at(70, 100).green() - 127) <= 2);
    m_view->setAlphaValue(0);
    QTRY_COMPARE(at(70, 100), QColor(Qt::white));
}

void LayerShadowTest::takesTheShapeOfWhatIsDrawnNow()
{
    QCOMPARE(at(52, 107), QColor(Qt::red));
    m_view->layer()->setCornerRadius(20);
    QTRY_COMPARE(at(52, 107), QColor(Qt::white));
    QCOMPARE(at(70, 107), QColor(Qt::red));
}

void LayerShadowTest::comesToTheTopWithTheView()
{
    QWidget other(m_window.get());
    other.setGeometry(0, 95, 200, 50);
    other.setPalette(QPalette(Qt::green));
    other.setAutoFillBackground(true);
    other.show();
    QTRY_COMPARE(at(70, 100), QColor(Qt::green));
    m_view->raise();
    QTRY_COMPARE(at(70, 100), QColor(Qt::red));
}

void LayerShadowTest::followsTheView()
{
    m_view->move(100, 100);
    QTRY_COMPARE(at(120, 150), QColor(Qt::red));
    QCOMPARE(at(70, 100), QColor(Qt::white));
    m_view->resize(60, 40);
    QTRY_COMPARE(at(155, 150), QColor(Qt::red));
}

void LayerShadowTest::liesRightBelowForAnOffsetThatIsNone()
{
    m_view->layer()->setShadowOffset({qQNaN(), -qInf()});
    QTRY_COMPARE(shadow()->geometry(), m_view->geometry());
    m_view->layer()->setShadowOffset({-1e300, 0});
    QTRY_VERIFY(shadow()->geometry().right() < -50000);
    QCOMPARE(shadow()->size(), m_view->size());
}

void LayerShadowTest::hidesWithTheView()
{
    m_view->hide();
    QTRY_COMPARE(at(70, 100), QColor(Qt::white));
    m_view->show();
    QTRY_COMPARE(at(70, 100), QColor(Qt::red));
}

void LayerShadowTest::goesWithTheView()
{
    delete m_view;
    QVERIFY(!shadow());
    QCOMPARE(at(70, 100), QColor(Qt::white));
}

void LayerShadowTest::goesWhenNothingCastsIt()
{
    m_view->layer()->setMasksToBounds(true);
    QTRY_VERIFY(!shadow());
    m_view->layer()->setMasksToBounds(false);
    QTRY_VERIFY(shadow());
}

void LayerShadowTest::takesNoPartInTheViews()
{
    auto *outer = new kx::View(m_window.get());
    outer->setGeometry(0, 0, 200, 200);
    auto *inner = new kx::View;
    inner->setFrame({50, 50, 40, 40});
    outer->addSubview(*inner);
    inner->layer()->setBackgroundColor(Qt::black);
    inner->layer()->setShadowColor(Qt::blue);
    inner->layer()->setShadowOpacity(1);
    inner->layer()->setShadowOffset({0, -20});
    outer->show();
    QTRY_VERIFY(shadowIn(*outer));
    QCOMPARE(outer->subviews(), QList<kx::ViewInterface *>{inner});
    QCOMPARE(outer->hitTest({70, 40}), static_cast<kx::ViewInterface *>(outer)); // in the shadow
    QVERIFY(!outer->childAt(70, 105));
}

void LayerShadowTest::isNoPaneOfASplitter()
{
    QSplitter splitter(m_window.get());
    splitter.setGeometry(0, 100, 200, 100);
    auto *view = new kx::View;
    view->layer()->setBackgroundColor(Qt::black);
    view->layer()->setShadowColor(Qt::blue);
    view->layer()->setShadowOpacity(1);
    view->layer()->setShadowOffset({5, 5});
    splitter.addWidget(view);
    splitter.addWidget(new QWidget);
    splitter.setSizes({100, 100});
    splitter.show();
    QTRY_VERIFY(shadowIn(splitter));
    QCoreApplication::processEvents();
    QCOMPARE(splitter.count(), 2);
}

void LayerShadowTest::movesWithItsViewToAnotherParent()
{
    QWidget other(m_window.get());
    other.setGeometry(0, 0, 200, 200);
    other.show();
    m_view->setParent(&other);
    m_view->show();
    QTRY_COMPARE(shadow()->parentWidget(), &other);
    QTRY_COMPARE(at(70, 100), QColor(Qt::red));
    m_view->setParent(nullptr);
    QVERIFY(!shadow() || !shadow()->isVisible());
    delete m_view;
    QVERIFY(!shadow());
}

QTEST_MAIN(LayerShadowTest)
#include "LayerShadowTest.moc"
