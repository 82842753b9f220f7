// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/LayoutConstraint.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

using Attribute = kx::LayoutAttribute;
using kx::LayoutConstraint;
using kx::LayoutConstraintRef;
Q_DECLARE_METATYPE(Attribute)

namespace {

constexpr auto equal = kx::LayoutRelation::Equal;
constexpr auto none = Attribute::NotAnAttribute;

LayoutConstraintRef constraint(kx::ViewInterface &item, Attribute attribute, kx::ViewInterface *toItem,
    Attribute toAttribute, double multiplier = 1, double constant = 0)
{
    return LayoutConstraint::constraintWithItem(&item, attribute, equal, toItem, toAttribute, multiplier, constant);
}

} // namespace

class LayoutConstraintTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void bindsToTheSuperview_data();
    void bindsToTheSuperview();
    void bindsInAFlippedSuperviewAlike();
    void bindsToAViewBeside();
    void bindsASizeToTheOtherDirection();
    void bindsTwoEdges();
    void bindsAroundARing();
    void theEarlierOfTwoContradictingWins();
    void placesAnewWhenTheSuperviewIsResized();
    void placesAnewWhileNothingIsShown();
    void winsOverTheAutoresizingMask();
    void roundsToPixels();
    void staysInPlaceInRightToLeftLayouts();
    void needsASuperviewOrAViewBeside();
    void endsWhileItsViewsAreApart();
    void forgetsViewsThatAreGone();
    void deactivatingMovesNothing();
    void keepsWhatItWasMadeOf();
    void refusesWhatDoesNotFit_data();
    void refusesWhatDoesNotFit();
    void theMaskActsUnlessALayoutPlacesTheView();
    void aMaskThatIsOffLeavesTheViewToItsConstraints();

private:
    std::unique_ptr<kx::View> m_root;
    kx::View *m_view = nullptr;
    kx::View *m_other = nullptr;
};

void LayoutConstraintTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_root = std::make_unique<kx::View>();
    m_root->setFrame(QRectF(0, 0, 200, 100));
    m_view = new kx::View(m_root.get());
    m_view->setFrame(QRectF(10, 10, 20, 30)); // 60 from the top
    m_other = new kx::View(m_root.get());
    m_other->setFrame(QRectF(100, 20, 40, 20)); // 60 from the top
}

void LayoutConstraintTest::cleanup()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

void LayoutConstraintTest::bindsToTheSuperview_data()
{
    QTest::addColumn<Attribute>("attribute");
    QTest::addColumn<Attribute>("toAttribute");
    QTest::addColumn<double>("multiplier");
    QTest::addColumn<double>("constant");
    QTest::addColumn<QRect>("geometry");

    QTest::newRow("left") << Attribute::Left << Attribute::Left << 1.0 << 12.0 << QRect(12, 60, 20, 30);
    QTest::newRow("top") << Attribute::Top << Attribute::Top << 1.0 << 12.0 << QRect(10, 12, 20, 30);
    QTest::newRow("right") << Attribute::Right << Attribute::Right << 1.0 << -8.0 << QRect(172, 60, 20, 30);
    QTest::newRow("bottom") << Attribute::Bottom << Attribute::Bottom << 1.0 << 0.0 << QRect(10, 70, 20, 30);
    QTest::newRow("left to right") << Attribute::Left << Attribute::Right << 0.5 << 0.0 << QRect(100, 60, 20, 30);
    QTest::newRow("center x") << Attribute::CenterX << Attribute::CenterX << 1.0 << 0.0 << QRect(90, 60, 20, 30);
    QTest::newRow("center y") << Attribute::CenterY << Attribute::CenterY << 1.0 << 0.0 << QRect(10, 35, 20, 30);
    QTest::newRow("center y, moved") << Attribute::CenterY << Attribute::CenterY << 1.0 << 5.0 << QRect(10, 40, 20, 30);
    QTest::newRow("width") << Attribute::Width << Attribute::Width << 0.5 << 1.0 << QRect(10, 60, 101, 30);
    QTest::newRow("height") << Attribute::Height << Attribute::Height << 0.25 << 0.0 << QRect(10, 60, 20, 25);
    QTest::newRow("negative width") << Attribute::Width << Attribute::Width << 1.0 << -300.0 << QRect(10, 60, 0, 30);
}

void LayoutConstraintTest::bindsToTheSuperview()
{
    QFETCH(Attribute, attribute);
    QFETCH(Attribute, toAttribute);
    QFETCH(double, multiplier);
    QFETCH(double, constant);
    const auto bound = constraint(*m_view, attribute, m_root.get(), toAttribute, multiplier, constant);
    QVERIFY(!bound->isActive());
    QCOMPARE(m_view->geometry(), QRect(10, 60, 20, 30));
    bound->setActive(true);
    QVERIFY(bound->isActive());
    QTEST(m_view->geometry(), "geometry");
}

void LayoutConstraintTest::bindsInAFlippedSuperviewAlike()
{
    class Flipped : public kx::View {
    public:
        bool isFlipped() const override { return true; }
    };
    Flipped root;
    root.setFrame(QRectF(0, 0, 200, 100));
    kx::View view;
    view.setFrame(QRectF(10, 60, 20, 30));
    root.addSubview(view);
    constraint(view, Attribute::Top, &root, Attribute::Top, 1, 12)->setActive(true);
    QCOMPARE(view.geometry(), QRect(10, 12, 20, 30));
    root.setFrame(QRectF(0, 0, 200, 300));
    QCOMPARE(view.geometry(), QRect(10, 12, 20, 30));
}

void LayoutConstraintTest::bindsToAViewBeside()
{
    LayoutConstraint::activateConstraints({
        constraint(*m_view, Attribute::Left, m_other, Attribute::Right, 1, 6),
        constraint(*m_view, Attribute::CenterY, m_other, Attribute::CenterY),
        constraint(*m_view, Attribute::Width, m_other, Attribute::Width, 2),
        nullptr,
    });
    QCOMPARE(m_other->frame(), QRectF(100, 20, 40, 20));
    QCOMPARE(m_view->frame(), QRectF(146, 15, 80, 30));
}

void LayoutConstraintTest::bindsASizeToTheOtherDirection()
{
    constraint(*m_view, Attribute::Width, m_view, Attribute::Height, 2, 1)->setActive(true);
    QCOMPARE(m_view->frame(), QRectF(10, 10, 61, 30));
}

void LayoutConstraintTest::bindsTwoEdges()
{
    LayoutConstraint::activateConstraints({
        constraint(*m_view, Attribute::Right, m_root.get(), Attribute::Right, 1, -10),
        constraint(*m_view, Attribute::Left, m_root.get(), Attribute::Left, 1, 30),
    });
    QCOMPARE(m_view->frame(), QRectF(30, 10, 160, 30));
}

void LayoutConstraintTest::bindsAroundARing()
{
    // Each of the two is the other's half: only 0 fits. The sizes that both had do not.
    LayoutConstraint::activateConstraints({
        constraint(*m_view, Attribute::Width, m_other, Attribute::Width, 0.5),
        constraint(*m_other, Attribute::Width, m_view, Attribute::Width, 0.5),
    });
    QCOMPARE(m_view->width(), 0);
    QCOMPARE(m_other->width(), 0);
}

void LayoutConstraintTest::theEarlierOfTwoContradictingWins()
{
    const auto first = constraint(*m_view, Attribute::Width, nullptr, none, 1, 50);
    const auto second = constraint(*m_view, Attribute::Width, nullptr, none, 1, 70);
    LayoutConstraint::activateConstraints({first, second});
    QCOMPARE(m_view->width(), 50);
    QVERIFY(second->isActive());
    first->setActive(false);
    m_root->setFrame(QRectF(0, 0, 300, 100));
    QCOMPARE(m_view->width(), 70);
}

void LayoutConstraintTest::placesAnewWhenTheSuperviewIsResized()
{
    m_root->show();
    LayoutConstraint::activateConstraints({
        constraint(*m_view, Attribute::CenterY, m_root.get(), Attribute::CenterY),
        constraint(*m_view, Attribute::Right, m_root.get(), Attribute::Right, 1, -12),
        constraint(*m_other, Attribute::CenterY, m_view, Attribute::CenterY),
    });
    m_root->resize(400, 300);
    QCOMPARE(m_view->geometry(), QRect(368, 135, 20, 30));
    QCOMPARE(m_other->geometry(), QRect(100, 140, 40, 20));
    m_root->setFrame(QRectF(0, 0, 200, 200));
    QCOMPARE(m_view->geometry(), QRect(168, 85, 20, 30));
    QCOMPARE(m_other->geometry(), QRect(100, 90, 40, 20));
}

void LayoutConstraintTest::placesAnewWhileNothingIsShown()
{
    constraint(*m_view, Attribute::Top, m_root.get(), Attribute::Top, 1, 12)->setActive(true);
    m_root->resize(400, 300);
    QCOMPARE(m_view->frame(), QRectF(10, 258, 20, 30));
}

void LayoutConstraintTest::winsOverTheAutoresizingMask()
{
    m_view->setAutoresizingMask(kx::Autoresizing::Width | kx::Autoresizing::Height);
    constraint(*m_view, Attribute::Width, nullptr, none, 1, 20)->setActive(true);
    m_root->setFrame(QRectF(0, 0, 300, 150));
    QCOMPARE(m_view->frame(), QRectF(10, 10, 20, 80));
}

void LayoutConstraintTest::roundsToPixels()
{
    m_root->setFrame(QRectF(0, 0, 200, 17));
    m_view->setFrame(QRectF(0, 0, 14, 16));
    constraint(*m_view, Attribute::CenterY, m_root.get(), Attribute::CenterY)->setActive(true);
    QCOMPARE(m_view->size(), QSize(14, 16));
    QVERIFY(m_view->y() == 0 || m_view->y() == 1);
}

void LayoutConstraintTest::staysInPlaceInRightToLeftLayouts()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    m_root->show();
    constraint(*m_view, Attribute::Left, m_root.get(), Attribute::Left, 1, 12)->setActive(true);
    m_root->resize(300, 100);
    QCOMPARE(m_view->geometry(), QRect(12, 60, 20, 30));
}

void LayoutConstraintTest::needsASuperviewOrAViewBeside()
{
    kx::View alone;
    const auto toNothing = constraint(alone, Attribute::Width, nullptr, none, 1, 50);
    toNothing->setActive(true);
    QVERIFY(!toNothing->isActive());
    QCOMPARE(alone.width(), 0);

    const auto toAStranger = constraint(*m_view, Attribute::Width, &alone, Attribute::Width);
    toAStranger->setActive(true);
    QVERIFY(!toAStranger->isActive());
    QCOMPARE(m_view->width(), 20);

    const auto fromAbove = constraint(*m_root, Attribute::Width, m_view, Attribute::Width);
    fromAbove->setActive(true);
    QVERIFY(!fromAbove->isActive());
    QCOMPARE(m_root->width(), 200);
}

void LayoutConstraintTest::endsWhileItsViewsAreApart()
{
    const auto bound = constraint(*m_view, Attribute::Left, m_other, Attribute::Right);
    bound->setActive(true);
    kx::View elsewhere;
    elsewhere.addSubview(*m_view);
    QVERIFY(!bound->isActive());
    m_root->resize(300, 100);
    bound->setActive(true); // in two superviews: nothing
    QVERIFY(!bound->isActive());
    elsewhere.addSubview(*m_other);
    bound->setActive(true);
    QVERIFY(bound->isActive());
    m_other->setFrame(QRectF(5, 0, 10, 10));
    elsewhere.setFrame(QRectF(0, 0, 50, 50));
    QCOMPARE(m_view->x(), 15);
}

void LayoutConstraintTest::forgetsViewsThatAreGone()
{
    const auto bound = constraint(*m_view, Attribute::Left, m_other, Attribute::Right);
    bound->setActive(true);
    delete m_other;
    QVERIFY(!bound->isActive());
    QCOMPARE(bound->secondItem(), nullptr);
    m_root->resize(300, 100);
    delete m_view;
    m_root->resize(200, 100);
    bound->setActive(true);
    QVERIFY(!bound->isActive());
    m_root.reset();
    bound->setActive(false);
    QCOMPARE(bound->firstItem(), nullptr);
}

void LayoutConstraintTest::deactivatingMovesNothing()
{
    const auto bound = constraint(*m_view, Attribute::Left, m_root.get(), Attribute::Left, 1, 12);
    bound->setActive(true);
    bound->setActive(true);
    bound->setActive(false);
    QVERIFY(!bound->isActive());
    QCOMPARE(m_view->x(), 12);
    m_view->setFrame(QRectF(40, 10, 20, 30));
    m_root->resize(300, 100);
    QCOMPARE(m_view->x(), 40);
}

void LayoutConstraintTest::keepsWhatItWasMadeOf()
{
    const auto made = constraint(*m_view, Attribute::Left, m_root.get(), Attribute::CenterX, 0.5, 3);
    QCOMPARE(made->firstItem(), m_view);
    QCOMPARE(made->firstAttribute(), Attribute::Left);
    QCOMPARE(made->secondItem(), m_root.get());
    QCOMPARE(made->secondAttribute(), Attribute::CenterX);
    QCOMPARE(made->multiplier(), 0.5);
    QCOMPARE(made->constant(), 3.0);
}

void LayoutConstraintTest::refusesWhatDoesNotFit_data()
{
    QTest::addColumn<Attribute>("attribute");
    QTest::addColumn<bool>("toSuperview");
    QTest::addColumn<Attribute>("toAttribute");
    QTest::addColumn<double>("multiplier");
    QTest::addColumn<double>("constant");

    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("no attribute") << none << true << Attribute::Left << 1.0 << 0.0;
    QTest::newRow("no attribute at all") << none << true << none << 1.0 << 0.0;
    QTest::newRow("a side to a height") << Attribute::Left << true << Attribute::Height << 1.0 << 0.0;
    QTest::newRow("a side to a top") << Attribute::Left << true << Attribute::Top << 1.0 << 0.0;
    QTest::newRow("a width to a side") << Attribute::Width << true << Attribute::Right << 1.0 << 0.0;
    QTest::newRow("an attribute of nothing") << Attribute::Left << false << Attribute::Left << 1.0 << 0.0;
    QTest::newRow("nothing of a view") << Attribute::Left << true << none << 1.0 << 0.0;
    QTest::newRow("endless") << Attribute::Left << true << Attribute::Left << infinity << 0.0;
    QTest::newRow("no number") << Attribute::Left << true << Attribute::Left << 1.0 << nan;
}

void LayoutConstraintTest::refusesWhatDoesNotFit()
{
    QFETCH(Attribute, attribute);
    QFETCH(bool, toSuperview);
    QFETCH(Attribute, toAttribute);
    QFETCH(double, multiplier);
    QFETCH(double, constant);
    kx::View *to = toSuperview ? m_root.get() : nullptr;
    QCOMPARE(constraint(*m_view, attribute, to, toAttribute, multiplier, constant), nullptr);
    QCOMPARE(LayoutConstraint::constraintWithItem(nullptr, Attribute::Left, equal, m_root.get(), Attribute::Left, 1, 0),
        nullptr);
}

void LayoutConstraintTest::theMaskActsUnlessALayoutPlacesTheView()
{
    QVERIFY(m_view->translatesAutoresizingMaskIntoConstraints());
    auto *row = new QHBoxLayout(m_root.get());
    row->addWidget(m_view);
    QVERIFY(!m_view->translatesAutoresizingMaskIntoConstraints());
    QVERIFY(m_other->translatesAutoresizingMaskIntoConstraints());
    m_view->setTranslatesAutoresizingMaskIntoConstraints(true);
    QVERIFY(m_view->translatesAutoresizingMaskIntoConstraints());
    QVERIFY(kx::View().translatesAutoresizingMaskIntoConstraints());
}

void LayoutConstraintTest::aMaskThatIsOffLeavesTheViewToItsConstraints()
{
    m_view->setAutoresizingMask(kx::Autoresizing::Width | kx::Autoresizing::Height);
    m_view->setTranslatesAutoresizingMaskIntoConstraints(false);
    constraint(*m_view, Attribute::Top, m_root.get(), Attribute::Top, 1, 12)->setActive(true);
    m_root->resize(400, 300);
    QCOMPARE(m_view->geometry(), QRect(10, 12, 20, 30));
}

QTEST_MAIN(LayoutConstraintTest)
#include "LayoutConstraintTest.moc"
