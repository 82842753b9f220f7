// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/Window.h>
#include <KXFoundation/UIBase/WindwoController/PNBaseWindowController.h>

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

using kx::WindowButton;

namespace {

class Controller : public PNBaseWindowController {
public:
    explicit Controller(int style)
        : m_style(kx::WindowStyleMask::fromInt(style))
    {
    }

protected:
    void loadWindow() override { setWindow(new kx::Window(QRectF(50, 50, 300, 200), m_style)); }

private:
    kx::WindowStyleMask m_style;
};

constexpr int ownChrome = 0x800F;
constexpr int decorated = 0xF;

QRect placeOf(const kx::StandardWindowButton *button)
{
    return button ? button->geometry() : QRect();
}

} // namespace

class PNBaseWindowControllerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void pinsTheCloseButton();
    void leavesTheOtherButtonsAlone();
    void keepsItPinnedWhenTheSuperviewIsResized();
    void pinsItInRightToLeftLayouts();
    void doesWithoutACloseButton();
    void takesAGivenWindowAsItIs();
    void hasNoWindowUnlessASubclassLoadsOne();
};

void PNBaseWindowControllerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void PNBaseWindowControllerTest::cleanup()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

void PNBaseWindowControllerTest::pinsTheCloseButton()
{
    Controller controller(ownChrome);
    const auto *close = controller.window()->standardWindowButton(WindowButton::Close);
    QVERIFY(close);
    QVERIFY(!close->translatesAutoresizingMaskIntoConstraints());
    QCOMPARE(placeOf(close), QRect(12, 12, 14, 16));
    QCOMPARE(close->mapTo(controller.window(), QPoint(0, 0)), QPoint(12, 12));
}

void PNBaseWindowControllerTest::leavesTheOtherButtonsAlone()
{
    kx::Window plain(QRectF(50, 50, 300, 200), kx::WindowStyleMask::fromInt(ownChrome));
    Controller controller(ownChrome);
    for (const WindowButton kind : {WindowButton::Miniaturize, WindowButton::Zoom}) {
        const auto *button = controller.window()->standardWindowButton(kind);
        QCOMPARE(placeOf(button), placeOf(plain.standardWindowButton(kind)));
        QVERIFY(button->translatesAutoresizingMaskIntoConstraints());
    }
    QVERIFY(placeOf(plain.standardWindowButton(WindowButton::Close)) != QRect(12, 12, 14, 16));
}

void PNBaseWindowControllerTest::keepsItPinnedWhenTheSuperviewIsResized()
{
    Controller controller(ownChrome);
    auto *close = controller.window()->standardWindowButton(WindowButton::Close);
    controller.window()->show();
    controller.window()->resize(500, 400);
    QCOMPARE(close->mapTo(controller.window(), QPoint(0, 0)), QPoint(12, 12));
    close->superview()->widget()->resize(200, 60);
    QCOMPARE(placeOf(close), QRect(12, 12, 14, 16));
}

void PNBaseWindowControllerTest::pinsItInRightToLeftLayouts()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    Controller controller(ownChrome);
    controller.window()->show();
    QCOMPARE(placeOf(controller.window()->standardWindowButton(WindowButton::Close)), QRect(12, 12, 14, 16));
}

void PNBaseWindowControllerTest::doesWithoutACloseButton()
{
    for (const int style : {decorated, 0}) {
        Controller controller(style);
        QVERIFY(controller.window());
        QCOMPARE(controller.window()->standardWindowButton(WindowButton::Close), nullptr);
    }
}

void PNBaseWindowControllerTest::takesAGivenWindowAsItIs()
{
    PNBaseWindowController controller;
    controller.setWindow(new kx::Window(QRectF(50, 50, 300, 200), kx::WindowStyleMask::fromInt(ownChrome)));
    QVERIFY(placeOf(controller.window()->standardWindowButton(WindowButton::Close)) != QRect(12, 12, 14, 16));
}

void PNBaseWindowControllerTest::hasNoWindowUnlessASubclassLoadsOne()
{
    PNBaseWindowController controller;
    QCOMPARE(controller.window(), nullptr);
}

QTEST_MAIN(PNBaseWindowControllerTest)
#include "PNBaseWindowControllerTest.moc"
