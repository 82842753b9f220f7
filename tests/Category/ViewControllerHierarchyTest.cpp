// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ViewControllerHierarchy.h>
#include <KXFoundation/Platform/UI/ViewController.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

class Player : public kx::ViewController {
public:
    using kx::ViewController::ViewController;
};

class SmallPlayer : public Player { // no Q_OBJECT: the class is still its own
public:
    using Player::Player;
};

} // namespace

class ViewControllerHierarchyTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void aControllerWithoutParentIsItsOwnTop();
    void theTopIsTheLastAncestor();
    void findsTheFirstChildOfAClass();
    void doesNotFindASubclass();
    void doesNotLookBelowTheChildren();
    void findsNothingForNone();
};

void ViewControllerHierarchyTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void ViewControllerHierarchyTest::aControllerWithoutParentIsItsOwnTop()
{
    kx::ViewController alone;
    QCOMPARE(kx::superParentViewController(&alone), &alone);
    QObject owner;
    alone.setParent(&owner); // an owner that is no controller is no parent
    QCOMPARE(kx::superParentViewController(&alone), &alone);
    alone.setParent(nullptr);
}

void ViewControllerHierarchyTest::theTopIsTheLastAncestor()
{
    kx::ViewController top;
    auto *middle = new kx::ViewController(&top);
    auto *low = new Player(middle);
    QCOMPARE(kx::superParentViewController(low), &top);
    QCOMPARE(kx::superParentViewController(middle), &top);
    QCOMPARE(kx::superParentViewController(&top), &top);
}

void ViewControllerHierarchyTest::findsTheFirstChildOfAClass()
{
    kx::ViewController top;
    auto *plain = new kx::ViewController(&top);
    auto *small = new SmallPlayer(&top);
    auto *first = new Player(&top);
    new Player(&top);
    QCOMPARE(kx::subViewControllerWithClass<Player>(&top), first);
    QCOMPARE(kx::subViewControllerWithClass<SmallPlayer>(&top), small);
    QCOMPARE(kx::subViewControllerWithClass<kx::ViewController>(&top), plain);
    QCOMPARE(kx::subViewControllerWithClass(&top, typeid(*first)), first);
}

void ViewControllerHierarchyTest::doesNotFindASubclass()
{
    kx::ViewController top;
    new SmallPlayer(&top);
    QCOMPARE(kx::subViewControllerWithClass<Player>(&top), nullptr);
    QCOMPARE(kx::subViewControllerWithClass<kx::ViewController>(&top), nullptr);
}

void ViewControllerHierarchyTest::doesNotLookBelowTheChildren()
{
    kx::ViewController top;
    new Player(new kx::ViewController(&top));
    QCOMPARE(kx::subViewControllerWithClass<Player>(&top), nullptr);
}

void ViewControllerHierarchyTest::findsNothingForNone()
{
    QCOMPARE(kx::superParentViewController(nullptr), nullptr);
    QCOMPARE(kx::subViewControllerWithClass<Player>(nullptr), nullptr);
    QCOMPARE(kx::subViewControllerWithClass(nullptr, typeid(int)), nullptr);
}

QTEST_MAIN(ViewControllerHierarchyTest)
#include "ViewControllerHierarchyTest.moc"
