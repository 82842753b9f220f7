// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/Window.h>
#include <KXFoundation/Platform/UI/WindowController.h>

#include <QtCore/QPointer>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class Counting : public kx::WindowController {
public:
    using kx::WindowController::WindowController;
    int loads = 0;
    int didLoads = 0;
    kx::Window *askedWhileLoading = nullptr;

protected:
    void loadWindow() override
    {
        ++loads;
        askedWhileLoading = window();
        setWindow(new kx::Window);
    }
    void windowDidLoad() override { ++didLoads; }
};

} // namespace

class WindowControllerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void loadsItsWindowOnFirstUse();
    void loadsAgainWhenTheWindowIsGone();
    void hasNoWindowByItself();
    void takesAGivenWindowWithoutLoading();
    void deletesItsWindowWithItself();
    void givesUpAReplacedWindow();
    void takesAWindowFromAnotherController();
    void endsTheResponderChain();
};

void WindowControllerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void WindowControllerTest::loadsItsWindowOnFirstUse()
{
    Counting controller;
    QVERIFY(!controller.isWindowLoaded());
    kx::Window *window = controller.window();
    QVERIFY(window);
    QVERIFY(controller.isWindowLoaded());
    QCOMPARE(controller.askedWhileLoading, nullptr);
    QCOMPARE(window->windowController(), &controller);
    QCOMPARE(controller.window(), window);
    QCOMPARE(controller.loads, 1);
    QCOMPARE(controller.didLoads, 1);
}

void WindowControllerTest::loadsAgainWhenTheWindowIsGone()
{
    Counting controller;
    controller.window()->setAttribute(Qt::WA_DeleteOnClose);
    controller.window()->show();
    controller.window()->close();
    QTRY_VERIFY(!controller.isWindowLoaded());
    QVERIFY(controller.window());
    QCOMPARE(controller.loads, 2);
    QCOMPARE(controller.didLoads, 2);
}

void WindowControllerTest::hasNoWindowByItself()
{
    kx::WindowController controller;
    QCOMPARE(controller.window(), nullptr);
    QCOMPARE(controller.nextResponder(), nullptr);
}

void WindowControllerTest::takesAGivenWindowWithoutLoading()
{
    Counting controller;
    auto *window = new kx::Window;
    controller.setWindow(window);
    QCOMPARE(controller.window(), window);
    QCOMPARE(controller.loads, 0);
    QCOMPARE(controller.didLoads, 0);
}

void WindowControllerTest::deletesItsWindowWithItself()
{
    auto controller = std::make_unique<Counting>();
    const QPointer<kx::Window> window = controller->window();
    controller.reset();
    QVERIFY(!window);
}

void WindowControllerTest::givesUpAReplacedWindow()
{
    const kx::Window first;
    Counting controller;
    controller.setWindow(const_cast<kx::Window *>(&first));
    controller.setWindow(new kx::Window);
    QCOMPARE(first.windowController(), nullptr);
    controller.setWindow(nullptr);
    QVERIFY(!controller.isWindowLoaded());
}

void WindowControllerTest::takesAWindowFromAnotherController()
{
    Counting first;
    Counting second;
    kx::Window *window = first.window();
    second.setWindow(window);
    QVERIFY(!first.isWindowLoaded());
    QCOMPARE(second.window(), window);
    QCOMPARE(window->windowController(), &second);
}

void WindowControllerTest::endsTheResponderChain()
{
    Counting controller;
    auto *content = new kx::View;
    controller.window()->setCentralWidget(content);
    const auto *view = new kx::View(new QWidget(content));
    QCOMPARE(view->nextResponder(), content);
    QCOMPARE(content->nextResponder(), controller.window());
    QCOMPARE(controller.window()->nextResponder(), &controller);
    QCOMPARE(controller.nextResponder(), nullptr);
    const kx::Window alone;
    QCOMPARE(alone.nextResponder(), nullptr);
}

QTEST_MAIN(WindowControllerTest)
#include "WindowControllerTest.moc"
