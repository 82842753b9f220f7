// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ViewViewController.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/ViewController.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

/// A view whose place in the chain is set by hand.
class Link : public kx::View {
public:
    kx::Responder *nextResponder() const override { return next; }
    kx::Responder *next = nullptr;
};

class SelfLinked : public kx::ViewController {
public:
    kx::Responder *nextResponder() const override { return const_cast<SelfLinked *>(this); }
};

} // namespace

class ViewViewControllerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void isNoneWithoutAController();
    void isTheViewsOwnController();
    void isTheNearestOneAbove();
    void passesPlainWidgets();
    void stopsWhereTheChainStopsMoving();
    void findsAControllerThatLeadsToItself();
};

void ViewViewControllerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void ViewViewControllerTest::isNoneWithoutAController()
{
    kx::View above;
    const auto *view = new kx::View(&above);
    QCOMPARE(kx::viewController(view), nullptr);
    QCOMPARE(kx::viewController(&above), nullptr);
    QCOMPARE(kx::viewController(nullptr), nullptr);
}

void ViewViewControllerTest::isTheViewsOwnController()
{
    kx::ViewController controller;
    QCOMPARE(kx::viewController(controller.view()), &controller);
}

void ViewViewControllerTest::isTheNearestOneAbove()
{
    kx::ViewController outer;
    kx::ViewController inner;
    auto *middle = new kx::View(outer.view()->widget());
    middle->addSubview(*inner.view());
    const auto *low = new kx::View(inner.view()->widget());
    QCOMPARE(kx::viewController(low), &inner);
    QCOMPARE(kx::viewController(inner.view()), &inner);
    QCOMPARE(kx::viewController(middle), &outer);
}

void ViewViewControllerTest::passesPlainWidgets()
{
    kx::ViewController controller;
    auto *plain = new QWidget(controller.view()->widget());
    QCOMPARE(kx::viewController(new kx::View(plain)), &controller);
}

void ViewViewControllerTest::stopsWhereTheChainStopsMoving()
{
    Link view;
    Link above;
    Link top;
    view.next = &view;
    QCOMPARE(kx::viewController(&view), nullptr);
    view.next = &above;
    above.next = &top;
    top.next = &top;
    QCOMPARE(kx::viewController(&view), nullptr);
}

void ViewViewControllerTest::findsAControllerThatLeadsToItself()
{
    SelfLinked controller;
    Link view;
    Link above;
    view.next = &above;
    above.next = &controller;
    QCOMPARE(kx::viewController(&view), &controller);
    QCOMPARE(kx::viewController(&above), &controller);
}

QTEST_MAIN(ViewViewControllerTest)
#include "ViewViewControllerTest.moc"
