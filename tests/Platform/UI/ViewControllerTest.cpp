// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/ViewController.h>

#include <QtCore/QPointer>
#include <QtTest/QTest>
#include <QtWidgets/QMainWindow>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class Counting : public kx::ViewController {
public:
    using kx::ViewController::ViewController;
    int loads = 0;
    int didLoads = 0;
    bool withoutView = false;
    kx::ViewInterface *askedWhileLoading = nullptr;

protected:
    void loadView() override
    {
        ++loads;
        askedWhileLoading = view();
        if (!withoutView)
            kx::ViewController::loadView();
    }
    void viewDidLoad() override { ++didLoads; }
};

} // namespace

class ViewControllerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void loadsItsViewOnFirstUse();
    void loadsAgainWhenASuperviewTookTheViewAlong();
    void mayLoadNoView();
    void takesAGivenViewWithoutLoading();
    void deletesItsViewWithItself();
    void leavesAReplacedViewAlone();
    void takesAViewFromAnotherController();
    void keepsItsChildrenInOrder();
    void givesUpAChildThatIsRemoved();
    void refusesACircle();
    void standsBetweenItsViewAndTheSuperview();
    void chainsViewsThroughPlainWidgets();
};

void ViewControllerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void ViewControllerTest::loadsItsViewOnFirstUse()
{
    Counting controller;
    QVERIFY(!controller.isViewLoaded());
    QCOMPARE(controller.loads, 0);
    kx::ViewInterface *view = controller.view();
    QVERIFY(view);
    QVERIFY(controller.isViewLoaded());
    QCOMPARE(controller.askedWhileLoading, nullptr);
    QCOMPARE(view->frame(), QRectF(0, 0, 0, 0));
    QCOMPARE(controller.view(), view);
    QCOMPARE(controller.loads, 1);
    QCOMPARE(controller.didLoads, 1);
}

void ViewControllerTest::loadsAgainWhenASuperviewTookTheViewAlong()
{
    Counting controller;
    auto above = std::make_unique<kx::View>();
    above->addSubview(*controller.view());
    above.reset();
    QVERIFY(!controller.isViewLoaded());
    QVERIFY(controller.view());
    QCOMPARE(controller.loads, 2);
    QCOMPARE(controller.didLoads, 2);
}

void ViewControllerTest::mayLoadNoView()
{
    Counting controller;
    controller.withoutView = true;
    QCOMPARE(controller.view(), nullptr);
    QCOMPARE(controller.didLoads, 0);
    QCOMPARE(controller.nextResponder(), nullptr);
}

void ViewControllerTest::takesAGivenViewWithoutLoading()
{
    Counting controller;
    auto *view = new kx::View;
    controller.setView(view);
    QCOMPARE(controller.view(), view);
    QCOMPARE(controller.loads, 0);
    QCOMPARE(controller.didLoads, 0);
}

void ViewControllerTest::deletesItsViewWithItself()
{
    kx::View above;
    auto controller = std::make_unique<Counting>();
    const QPointer<QWidget> view = controller->view()->widget();
    above.addSubview(*controller->view());
    controller.reset();
    QVERIFY(!view);
    QVERIFY(above.subviews().isEmpty());
}

void ViewControllerTest::leavesAReplacedViewAlone()
{
    const kx::View first;
    Counting controller;
    controller.setView(const_cast<kx::View *>(&first));
    QCOMPARE(first.nextResponder(), &controller);
    controller.setView(new kx::View);
    QCOMPARE(first.nextResponder(), nullptr);
    controller.setView(nullptr);
    QVERIFY(!controller.isViewLoaded());
}

void ViewControllerTest::takesAViewFromAnotherController()
{
    Counting first;
    Counting second;
    kx::ViewInterface *view = first.view();
    second.setView(view);
    QVERIFY(!first.isViewLoaded());
    QCOMPARE(second.view(), view);
    QCOMPARE(view->nextResponder(), &second);
}

void ViewControllerTest::keepsItsChildrenInOrder()
{
    kx::ViewController parent;
    const QObject other(&parent);
    auto *first = new kx::ViewController;
    auto *second = new kx::ViewController(&parent);
    parent.addChildViewController(*first);
    QCOMPARE(parent.childViewControllers(), (QList<kx::ViewController *>{second, first}));
    QCOMPARE(first->parentViewController(), &parent);
    QCOMPARE(parent.parentViewController(), nullptr);
    parent.addChildViewController(*second); // again: to the end
    QCOMPARE(parent.childViewControllers(), (QList<kx::ViewController *>{first, second}));
}

void ViewControllerTest::givesUpAChildThatIsRemoved()
{
    kx::ViewController child;
    child.removeFromParentViewController(); // without a parent: nothing
    {
        kx::ViewController parent;
        parent.addChildViewController(child);
        child.removeFromParentViewController();
        QVERIFY(parent.childViewControllers().isEmpty());
    }
    QCOMPARE(child.parent(), nullptr);
    QObject owner;
    child.setParent(&owner); // no controller: not a parent of this kind
    child.removeFromParentViewController();
    QCOMPARE(child.parent(), &owner);
    child.setParent(nullptr);
}

void ViewControllerTest::refusesACircle()
{
    kx::ViewController top;
    auto *middle = new kx::ViewController(&top);
    auto *low = new kx::ViewController(middle);
    low->addChildViewController(top);
    low->addChildViewController(*low);
    QCOMPARE(top.parentViewController(), nullptr);
    QCOMPARE(low->parentViewController(), middle);
}

void ViewControllerTest::standsBetweenItsViewAndTheSuperview()
{
    kx::View above;
    Counting controller;
    kx::ViewInterface *view = controller.view();
    QCOMPARE(view->nextResponder(), &controller);
    QCOMPARE(controller.nextResponder(), nullptr);
    above.addSubview(*view);
    QCOMPARE(view->nextResponder(), &controller);
    QCOMPARE(controller.nextResponder(), &above);
    QCOMPARE(above.nextResponder(), nullptr);
}

void ViewControllerTest::chainsViewsThroughPlainWidgets()
{
    QMainWindow window;
    auto *plain = new QWidget(&window);
    auto *above = new kx::View(plain);
    auto *between = new QWidget(above);
    auto *view = new kx::View(between);
    QCOMPARE(view->superview(), nullptr);
    QCOMPARE(view->nextResponder(), above);
    QCOMPARE(above->nextResponder(), nullptr); // Qt's own windows are no responders
    view->setWindowFlag(Qt::Window);
    QCOMPARE(view->nextResponder(), nullptr); // a window of its own
}

QTEST_MAIN(ViewControllerTest)
#include "ViewControllerTest.moc"
