// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>

#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Is hit at one point only, given as it arrives.
class Dot : public kx::View {
public:
    using kx::View::View;
    kx::ViewInterface *hitTest(const QPointF &point) override
    {
        asked = point;
        return point == QPointF(12, 12) ? this : nullptr;
    }
    QPointF asked;
};

/// Counts y downwards.
class Flipped : public kx::View {
public:
    using kx::View::View;
    bool isFlipped() const override { return true; }
};

/// Asks for a size.
class Sized : public kx::View {
public:
    using kx::View::View;
    QSizeF intrinsicContentSize() const override { return wanted; }
    QSizeF wanted;
};

constexpr auto fills = kx::Autoresizing::Width | kx::Autoresizing::Height;

} // namespace

class ViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void startsEmptyAndUnparented();
    void placesItsFrameFromTheBottomLeft();
    void placesItsFrameFromTheBottomLeftOfAPlainWidget();
    void roundsTheEdgesOfAFrame();
    void keepsItsPositionWithoutAParent();
    void keepsTheFrameWhenAdded();
    void ownsWhatItAdds();
    void givesUpWhatIsRemoved();
    void listsSubviewsFromBelow();
    void isHiddenOnlyWhenHiddenOnPurpose();
    void addingDoesNotShowAHiddenView();
    void keepsSubviewsAtTheBottomLeftWhenItGrows();
    void resizesSubviewsWhileItIsNotShown();
    void keepsWhatQtWasToldBeforeItWasShown();
    void resizesSubviewsThroughSeveralLevels();
    void leavesSubviewsInALayoutAlone();
    void convertsRectanglesToOtherViews();
    void mayHaveNothingToUpdateBeforeItIsPainted();
    void hitsTheTopmostView();
    void hitsNothingOutsideOrHidden();
    void asksInTheCoordinatesOfTheSuperview();
    void placesFramesFromTheTopOfAFlippedSuperview();
    void keepsSubviewsAtTheTopOfAFlippedSuperview();
    void hitsEveryRowInFlippedViews();
    void theMaskPlacesItUnlessALayoutDoes();
    void hintsAtItsIntrinsicSize_data();
    void hintsAtItsIntrinsicSize();
    void layoutsFollowANewIntrinsicSize();

private:
    std::unique_ptr<kx::View> m_root;
};

void ViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_root = std::make_unique<kx::View>();
    m_root->setFrame(QRectF(0, 0, 200, 100));
}

void ViewTest::startsEmptyAndUnparented()
{
    const kx::View view;
    QCOMPARE(view.frame(), QRectF(0, 0, 0, 0));
    QCOMPARE(view.bounds(), QRectF(0, 0, 0, 0));
    QCOMPARE(view.superview(), nullptr);
    QVERIFY(view.subviews().isEmpty());
    QCOMPARE(view.autoresizingMask(), kx::AutoresizingMask(kx::Autoresizing::None));
}

void ViewTest::placesItsFrameFromTheBottomLeft()
{
    kx::View view(m_root.get());
    view.setFrame(QRectF(10, 20, 30, 40));
    QCOMPARE(view.frame(), QRectF(10, 20, 30, 40));
    QCOMPARE(view.bounds(), QRectF(0, 0, 30, 40));
    QCOMPARE(view.geometry(), QRect(10, 40, 30, 40));
}

void ViewTest::placesItsFrameFromTheBottomLeftOfAPlainWidget()
{
    QWidget plain;
    plain.resize(200, 100);
    kx::View view(&plain);
    view.setFrame(QRectF(10, 20, 30, 40));
    QCOMPARE(view.frame(), QRectF(10, 20, 30, 40));
    QCOMPARE(view.geometry(), QRect(10, 40, 30, 40));
    QCOMPARE(view.superview(), nullptr);
}

void ViewTest::roundsTheEdgesOfAFrame()
{
    kx::View view(m_root.get());
    view.setFrame(QRectF(0.4, 0.4, 10.2, 10.2)); // edges at 0.4 and 10.6
    QCOMPARE(view.frame(), QRectF(0, 0, 11, 11));
}

void ViewTest::keepsItsPositionWithoutAParent()
{
    kx::View view;
    view.setFrame(QRectF(5, 6, 30, 40));
    QCOMPARE(view.geometry(), QRect(5, 6, 30, 40));
    QCOMPARE(view.frame(), QRectF(5, 6, 30, 40));
}

void ViewTest::keepsTheFrameWhenAdded()
{
    kx::View view;
    view.setFrame(QRectF(5, 6, 30, 40));
    m_root->addSubview(view);
    QCOMPARE(view.frame(), QRectF(5, 6, 30, 40));
    QCOMPARE(view.geometry(), QRect(5, 54, 30, 40));
    QCOMPARE(view.superview(), m_root.get());
    view.removeFromSuperview();
}

void ViewTest::ownsWhatItAdds()
{
    const QPointer<kx::View> view = new kx::View;
    m_root->addSubview(*view);
    m_root.reset();
    QVERIFY(!view);
}

void ViewTest::givesUpWhatIsRemoved()
{
    const auto view = std::make_unique<kx::View>();
    view->removeFromSuperview(); // without a parent: nothing
    view->setFrame(QRectF(5, 6, 30, 40));
    m_root->addSubview(*view);
    view->removeFromSuperview();
    QCOMPARE(view->superview(), nullptr);
    QCOMPARE(view->parent(), nullptr);
    QCOMPARE(view->frame(), QRectF(5, 6, 30, 40));
    QVERIFY(m_root->subviews().isEmpty());
    m_root.reset();
    QCOMPARE(view->frame(), QRectF(5, 6, 30, 40));
}

void ViewTest::listsSubviewsFromBelow()
{
    kx::View first;
    kx::View second;
    const QWidget plain(m_root.get());
    m_root->addSubview(first);
    m_root->addSubview(second);
    QCOMPARE(m_root->subviews(), (QList<kx::ViewInterface *>{&first, &second}));
    m_root->addSubview(first); // again: to the top
    QCOMPARE(m_root->subviews(), (QList<kx::ViewInterface *>{&second, &first}));
}

void ViewTest::isHiddenOnlyWhenHiddenOnPurpose()
{
    kx::View view;
    QVERIFY(view.isHidden()); // Qt: nobody has shown it yet
    QVERIFY(!view.isExplicitlyHidden());
    m_root->addSubview(view);
    QVERIFY(!view.isExplicitlyHidden());
    view.hide();
    QVERIFY(view.isExplicitlyHidden());
    view.removeFromSuperview();
    QVERIFY(view.isExplicitlyHidden());
    view.setVisible(true);
    QVERIFY(!view.isExplicitlyHidden());
    view.setHidden(true);
    QVERIFY(view.isExplicitlyHidden());
}

void ViewTest::addingDoesNotShowAHiddenView()
{
    m_root->show();
    kx::View shown;
    kx::View hidden;
    hidden.hide();
    m_root->addSubview(shown);
    m_root->addSubview(hidden);
    QVERIFY(shown.isVisible());
    QVERIFY(!hidden.isVisible());
}

void ViewTest::keepsSubviewsAtTheBottomLeftWhenItGrows()
{
    m_root->show();
    kx::View view(m_root.get());
    view.setFrame(QRectF(10, 20, 30, 40));
    m_root->resize(300, 250);
    QCOMPARE(view.frame(), QRectF(10, 20, 30, 40));
    QCOMPARE(view.geometry(), QRect(10, 190, 30, 40));
}

void ViewTest::resizesSubviewsWhileItIsNotShown()
{
    kx::View view;
    view.setAutoresizingMask(fills);
    view.setFrame(m_root->bounds());
    m_root->addSubview(view);
    m_root->resize(0, 0);
    m_root->resize(320, 240); // Qt tells a hidden widget about neither
    QCOMPARE(view.frame(), QRectF(0, 0, 320, 240));
    m_root->resize(400, 300);
    m_root->show();
    QCOMPARE(view.geometry(), QRect(0, 0, 400, 300));
}

void ViewTest::keepsWhatQtWasToldBeforeItWasShown()
{
    kx::View root;
    auto *view = new kx::View(&root);
    root.setGeometry(0, 0, 200, 100); // Qt tells nobody
    view->setGeometry(10, 20, 30, 40);
    root.show();
    QCOMPARE(view->geometry(), QRect(10, 20, 30, 40));
    root.resize(200, 150);
    QCOMPARE(view->geometry(), QRect(10, 70, 30, 40));
    view->setGeometry(10, 20, 30, 40);
    root.resize(200, 100);
    QCOMPARE(view->geometry(), QRect(10, -30, 30, 40));
}

void ViewTest::resizesSubviewsThroughSeveralLevels()
{
    kx::View middle;
    kx::View inner;
    for (kx::View *view : {&middle, &inner})
        view->setAutoresizingMask(fills);
    middle.setFrame(QRectF(0, 0, 200, 100));
    inner.setFrame(QRectF(10, 10, 180, 80));
    middle.addSubview(inner);
    m_root->addSubview(middle);
    m_root->setFrame(QRectF(0, 0, 100, 50));
    QCOMPARE(inner.geometry(), QRect(10, 10, 80, 30));
    m_root->show();
    m_root->resize(300, 200);
    QCOMPARE(inner.geometry(), QRect(10, 10, 280, 180));
}

void ViewTest::leavesSubviewsInALayoutAlone()
{
    auto *rows = new QVBoxLayout(m_root.get());
    rows->setContentsMargins(0, 0, 0, 0);
    auto *columns = new QHBoxLayout;
    rows->addLayout(columns);
    kx::View left;
    kx::View right;
    right.setAutoresizingMask(fills);
    columns->setSpacing(0);
    columns->addWidget(&left);
    columns->addWidget(&right);
    m_root->show();
    m_root->resize(300, 200);
    QCOMPARE(left.geometry(), QRect(0, 0, 150, 200));
    QCOMPARE(right.geometry(), QRect(150, 0, 150, 200));
}

void ViewTest::convertsRectanglesToOtherViews()
{
    kx::View root;
    root.resize(200, 100);
    kx::View upright(&root);
    upright.setFrame(QRectF(10, 20, 50, 40));
    Flipped flipped(&root);
    flipped.setFrame(QRectF(100, 10, 80, 60));
    QCOMPARE(upright.convertRectToView(QRectF(1, 2, 3, 4), &root), QRectF(11, 22, 3, 4));
    QCOMPARE(root.convertRectToView(QRectF(11, 22, 3, 4), &upright), QRectF(1, 2, 3, 4));
    // From y = 22 to 26 in the root; the flipped view counts from 70 downwards.
    QCOMPARE(upright.convertRectToView(QRectF(1, 2, 3, 4), &flipped), QRectF(-89, 44, 3, 4));
    QCOMPARE(flipped.convertRectToView(QRectF(-89, 44, 3, 4), &upright), QRectF(1, 2, 3, 4));
    QCOMPARE(upright.convertRectToView(QRectF(1, 2, 3, 4), &upright), QRectF(1, 2, 3, 4));
}

void ViewTest::mayHaveNothingToUpdateBeforeItIsPainted()
{
    struct Updating : kx::View {
        bool wantsUpdateLayer() const override { return true; }
        void drawRect(QPainter &painter, const QRectF &) override { painter.fillRect(rect(), Qt::red); }
    } view;
    view.resize(10, 10);
    QCOMPARE(view.grab().toImage().pixelColor(5, 5), QColor(Qt::red));
}

void ViewTest::hitsTheTopmostView()
{
    kx::View low;
    kx::View high;
    kx::View inner;
    low.setFrame(QRectF(0, 0, 100, 100));
    high.setFrame(QRectF(50, 0, 100, 100));
    inner.setFrame(QRectF(10, 10, 10, 10));
    m_root->addSubview(low);
    m_root->addSubview(high);
    high.addSubview(inner);
    QCOMPARE(m_root->hitTest(QPointF(10, 10)), &low);
    QCOMPARE(m_root->hitTest(QPointF(75, 50)), &high);
    QCOMPARE(m_root->hitTest(QPointF(60, 10)), &inner);
    QCOMPARE(m_root->hitTest(QPointF(69.9, 19.9)), &inner);
    QCOMPARE(m_root->hitTest(QPointF(70, 10)), &high);
    QCOMPARE(m_root->hitTest(QPointF(180, 50)), m_root.get());
}

void ViewTest::hitsNothingOutsideOrHidden()
{
    kx::View view;
    view.setFrame(QRectF(10, 10, 50, 50));
    m_root->addSubview(view);
    QCOMPARE(view.hitTest(QPointF(5, 5)), nullptr);
    QCOMPARE(view.hitTest(QPointF(10, 10)), &view);
    QCOMPARE(view.hitTest(QPointF(60, 10)), nullptr);
    view.hide();
    QCOMPARE(view.hitTest(QPointF(10, 10)), nullptr);
    QCOMPARE(m_root->hitTest(QPointF(10, 10)), m_root.get());
    m_root->hide();
    QCOMPARE(m_root->hitTest(QPointF(10, 10)), nullptr);
}

void ViewTest::asksInTheCoordinatesOfTheSuperview()
{
    kx::View middle;
    Dot dot;
    middle.setFrame(QRectF(30, 40, 100, 50));
    dot.setFrame(QRectF(10, 10, 5, 5));
    m_root->addSubview(middle);
    middle.addSubview(dot);
    QCOMPARE(m_root->hitTest(QPointF(42, 52)), &dot);
    QCOMPARE(m_root->hitTest(QPointF(43, 53)), &middle);
    QCOMPARE(dot.asked, QPointF(13, 13));
}

void ViewTest::placesFramesFromTheTopOfAFlippedSuperview()
{
    Flipped root;
    root.setFrame(QRectF(0, 0, 200, 100));
    kx::View view;
    view.setFrame(QRectF(10, 20, 30, 40));
    root.addSubview(view);
    QCOMPARE(view.geometry(), QRect(10, 20, 30, 40));
    QCOMPARE(view.frame(), QRectF(10, 20, 30, 40));
    QCOMPARE(view.convertPointFromView(QPointF(10, 20), &root), QPointF(0, 40));
}

void ViewTest::keepsSubviewsAtTheTopOfAFlippedSuperview()
{
    Flipped root;
    root.setFrame(QRectF(0, 0, 200, 100));
    kx::View fixed;
    kx::View stretched;
    fixed.setFrame(QRectF(10, 20, 30, 40));
    stretched.setFrame(QRectF(10, 20, 30, 40));
    stretched.setAutoresizingMask(kx::Autoresizing::MinYMargin); // the one above it
    root.addSubview(fixed);
    root.addSubview(stretched);
    root.setFrame(QRectF(0, 0, 200, 150));
    QCOMPARE(fixed.geometry(), QRect(10, 20, 30, 40));
    QCOMPARE(stretched.geometry(), QRect(10, 70, 30, 40));
}

void ViewTest::hitsEveryRowInFlippedViews()
{
    Flipped middle;
    kx::View inner;
    Flipped innermost;
    middle.setFrame(QRectF(0, 0, 50, 50)); // rows 50 to 99 of the root, from the top
    m_root->addSubview(middle);
    inner.setFrame(QRectF(0, 10, 50, 20)); // rows 60 to 79
    middle.addSubview(inner);
    innermost.setFrame(QRectF(0, 10, 50, 10)); // rows 60 to 69
    inner.addSubview(innermost);
    const auto hitAtRow = [this](int row) { return m_root->hitTest(QPointF(5, 99 - row)); };
    QCOMPARE(hitAtRow(49), m_root.get());
    QCOMPARE(hitAtRow(50), &middle);
    QCOMPARE(hitAtRow(59), &middle);
    QCOMPARE(hitAtRow(60), &innermost);
    QCOMPARE(hitAtRow(69), &innermost);
    QCOMPARE(hitAtRow(70), &inner);
    QCOMPARE(hitAtRow(79), &inner);
    QCOMPARE(hitAtRow(80), &middle);
    QCOMPARE(hitAtRow(99), &middle);
}

void ViewTest::theMaskPlacesItUnlessALayoutDoes()
{
    kx::View view;
    QVERIFY(view.translatesAutoresizingMaskIntoConstraints());
    m_root->addSubview(view);
    QVERIFY(view.translatesAutoresizingMaskIntoConstraints());
    auto *rows = new QVBoxLayout(m_root.get());
    rows->addWidget(&view);
    QVERIFY(!view.translatesAutoresizingMaskIntoConstraints());
    rows->removeWidget(&view);
    QVERIFY(view.translatesAutoresizingMaskIntoConstraints());
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
    QVERIFY(!view.translatesAutoresizingMaskIntoConstraints());
    rows->addWidget(&view);
    view.setTranslatesAutoresizingMaskIntoConstraints(true);
    QVERIFY(view.translatesAutoresizingMaskIntoConstraints());
}

void ViewTest::hintsAtItsIntrinsicSize_data()
{
    QTest::addColumn<QSizeF>("intrinsic");
    QTest::addColumn<QSize>("hint");
    QTest::newRow("the next whole numbers") << QSizeF(10.2, 20) << QSize(11, 20);
    QTest::newRow("nothing") << QSizeF(0, 0) << QSize(0, 0);
    QTest::newRow("no wish") << QSizeF(-1, -1) << QSize(-1, -1);
    QTest::newRow("only a height") << QSizeF(-1, 12.5) << QSize(-1, 13);
    QTest::newRow("no number") << QSizeF(qQNaN(), 5) << QSize(-1, 5);
    QTest::newRow("without end") << QSizeF(qInf(), 5) << QSize(QWIDGETSIZE_MAX, 5);
}

void ViewTest::hintsAtItsIntrinsicSize()
{
    QFETCH(QSizeF, intrinsic);
    Sized view;
    view.wanted = intrinsic;
    QTEST(view.sizeHint(), "hint");
}

void ViewTest::layoutsFollowANewIntrinsicSize()
{
    Sized view;
    view.wanted = QSizeF(50, 10);
    view.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *rows = new QVBoxLayout(m_root.get());
    rows->setSizeConstraint(QLayout::SetNoConstraint); // the platform of the tests warns about limits of windows
    rows->addWidget(&view);
    m_root->show();
    QCOMPARE(view.size(), QSize(50, 10));
    view.wanted = QSizeF(60.5, 20);
    view.invalidateIntrinsicContentSize();
    QTRY_COMPARE(view.size(), QSize(61, 20));
}

QTEST_MAIN(ViewTest)
#include "ViewTest.moc"
