// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/Window.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include "Support/WindowWarnings.h"

#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>

#include <memory>

using namespace Qt::StringLiterals;
using kx::WindowStyle;

constexpr auto common =
    WindowStyle::Titled | WindowStyle::Closable | WindowStyle::Miniaturizable | WindowStyle::Resizable;

class WindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnWindowWarnings(); }

    void placesItsContent();
    void placesItsContentOnAScreen();
    void makesItsNativeWindowUnlessDeferred();
    void turnsItsStyleIntoFlags_data();
    void turnsItsStyleIntoFlags();
    void tellsTheStyleThatQtsFlagsGiveIt();
    void itsFrameHasTheDecorationsInIt();
    void setsItsFrame_data();
    void setsItsFrame();
    void roundsTheEdgesOfItsFrame();
    void limitsItsSize();
    void limitsKnowTheLayout();
    void convertsRectanglesToTheScreen();
    void centersItself();
    void knowsWhereThePointerIs();
    void itsContentViewIsTheCentralWidget();
    void ignoresThePointer();
    void asksWhetherItGetsTheKeyboard();
    void questionsAboutAPlainWindow();

private:
    static void show(kx::Window &window)
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents(); // the window manager's decoration
    }
    static double screenHeight() { return QGuiApplication::primaryScreen()->geometry().height(); }
};

void WindowTest::placesItsContent()
{
    const kx::Window window(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    QCOMPARE(window.geometry(), QRect(120, int(screenHeight()) - 500, 400, 300));
    QCOMPARE(window.frame(), QRectF(120, 200, 400, 300));
    QVERIFY(!window.isVisible());
}

void WindowTest::placesItsContentOnAScreen()
{
    QScreen *screen = QGuiApplication::screens().last();
    const kx::Window window(
        QRectF(120, 200, 400, 300), WindowStyle::Borderless, kx::BackingStore::Buffered, false, screen);
    const QRect area = screen->geometry();
    QCOMPARE(window.geometry(), QRect(area.x() + 120, area.y() + area.height() - 500, 400, 300));
}

void WindowTest::makesItsNativeWindowUnlessDeferred()
{
    const kx::Window atOnce(QRectF(120, 200, 400, 300), common);
    QVERIFY(atOnce.windowHandle());
    const kx::Window deferred(QRectF(120, 200, 400, 300), common, kx::BackingStore::Buffered, true);
    QVERIFY(!deferred.windowHandle());
}

void WindowTest::turnsItsStyleIntoFlags_data()
{
    QTest::addColumn<kx::WindowStyleMask>("style");
    QTest::addColumn<bool>("frameless");
    QTest::addColumn<bool>("closable");
    QTest::newRow("borderless") << kx::WindowStyleMask(WindowStyle::Borderless) << true << false;
    QTest::newRow("no title") << kx::WindowStyleMask(WindowStyle::Closable | WindowStyle::Resizable) << true << true;
    QTest::newRow("common") << kx::WindowStyleMask(common) << false << true;
    QTest::newRow("title alone") << kx::WindowStyleMask(WindowStyle::Titled) << false << false;
    QTest::newRow("content beneath the title")
        << kx::WindowStyleMask(common | WindowStyle::FullSizeContentView) << true << true;
}

void WindowTest::turnsItsStyleIntoFlags()
{
    QFETCH(kx::WindowStyleMask, style);
    const kx::Window window(QRectF(0, 0, 100, 100), style, kx::BackingStore::Buffered, true);
    QCOMPARE(window.styleMask(), style);
    QTEST(window.windowFlags().testFlag(Qt::FramelessWindowHint), "frameless");
    QTEST(window.windowFlags().testFlag(Qt::WindowCloseButtonHint), "closable");
    QVERIFY(window.isWindow());
}

void WindowTest::tellsTheStyleThatQtsFlagsGiveIt()
{
    QCOMPARE(kx::Window(nullptr, Qt::FramelessWindowHint).styleMask(), kx::WindowStyleMask(WindowStyle::Borderless));
    QCOMPARE(kx::Window().styleMask(),
        WindowStyle::Titled | WindowStyle::Closable | WindowStyle::Miniaturizable | WindowStyle::Resizable);
}

void WindowTest::itsFrameHasTheDecorationsInIt()
{
    kx::Window window(QRectF(120, 200, 400, 300), common);
    QCOMPARE(window.styleMask(), kx::WindowStyleMask(common));
    show(window);
    const QMargins margins = window.windowHandle()->frameMargins();
    QTRY_VERIFY(window.frameGeometry() != window.geometry());
    QCOMPARE(window.frame(), kx::screenFrame(window));
    QCOMPARE(
        window.frame().size(), QSizeF(400 + margins.left() + margins.right(), 300 + margins.top() + margins.bottom()));
    const QRectF content = window.contentRectForFrameRect(window.frame());
    QCOMPARE(content, kx::screenFlipped(window.geometry()));
    QCOMPARE(content.size(), QSizeF(400, 300));
    QCOMPARE(content.y() - window.frame().y(), double(margins.bottom()));
}

void WindowTest::setsItsFrame_data()
{
    QTest::addColumn<kx::WindowStyleMask>("style");
    QTest::newRow("borderless") << kx::WindowStyleMask(WindowStyle::Borderless);
    QTest::newRow("decorated") << kx::WindowStyleMask(common);
}

void WindowTest::setsItsFrame()
{
    QFETCH(kx::WindowStyleMask, style);
    kx::Window window(QRectF(120, 200, 400, 300), style);
    show(window);
    const QRectF frame(150, 100, 350, 250);
    window.setFrame(frame, true, true);
    QCOMPARE(window.frame(), frame);
    QTRY_COMPARE(window.windowHandle()->geometry(), window.geometry());
    QCOMPARE(window.frame(), frame);
}

void WindowTest::roundsTheEdgesOfItsFrame()
{
    kx::Window window(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    window.setFrame(QRectF(10.4, 20.4, 100.2, 100.2), false); // edges at 110.6 and 120.6
    QCOMPARE(window.frame(), QRectF(10, 20, 101, 101));
}

void WindowTest::limitsItsSize()
{
    kx::Window window(QRectF(120, 200, 400, 300), common);
    QVERIFY(window.maxSize().width() > 1e6);
    show(window);
    QTRY_VERIFY(window.frameGeometry() != window.geometry());
    window.setMinSize(QSizeF(320, 240));
    window.setMaxSize(QSizeF(640, 480));
    QCOMPARE(window.minSize(), QSizeF(320, 240));
    QCOMPARE(window.maxSize(), QSizeF(640, 480));
    window.setFrame(QRectF(120, 200, 100, 1000), false);
    QCOMPARE(window.frame().size(), QSizeF(320, 480));
}

void WindowTest::limitsKnowTheLayout()
{
    kx::Window window(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    auto *content = new QWidget;
    content->setMinimumSize(200, 150);
    window.setCentralWidget(content);
    show(window);
    QCOMPARE(window.minSize(), QSizeF(200, 150));
}

void WindowTest::convertsRectanglesToTheScreen()
{
    kx::Window window(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    QCOMPARE(window.convertRectToScreen(QRectF(10, 20, 30, 40)), QRectF(130, 220, 30, 40));
    QCOMPARE(window.convertRectToScreen(QRectF(10.5, 20, 0, 0)), QRectF(130.5, 220, 0, 0));
    window.move(window.pos() + QPoint(5, -7));
    QCOMPARE(window.convertRectToScreen(QRectF(10, 20, 30, 40)), QRectF(135, 227, 30, 40));
}

void WindowTest::centersItself()
{
    kx::Window window(QRectF(0, 0, 400, 300), WindowStyle::Borderless);
    window.center();
    const QRectF area = kx::screenFlipped(window.screen()->availableGeometry());
    QCOMPARE(window.frame().size(), QSizeF(400, 300));
    QVERIFY((window.frame().center() - area.center()).manhattanLength() <= 1);
}

void WindowTest::knowsWhereThePointerIs()
{
    kx::Window window(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    show(window);
    const QPoint target = window.mapToGlobal(QPoint(30, 40));
    QCursor::setPos(target);
    QTRY_COMPARE(QCursor::pos(), target);
    QCOMPARE(window.mouseLocationOutsideOfEventStream(), QPointF(30, 300 - 1 - 40));
    QCursor::setPos(window.mapToGlobal(QPoint(-30, 40)));
    QTRY_COMPARE(window.mouseLocationOutsideOfEventStream(), QPointF(-30, 300 - 1 - 40));
}

void WindowTest::itsContentViewIsTheCentralWidget()
{
    kx::Window window(QRectF(0, 0, 400, 300), WindowStyle::Borderless);
    QCOMPARE(window.contentView(), nullptr);
    auto *content = new QWidget;
    window.setCentralWidget(content);
    QCOMPARE(window.contentView(), content);
}

void WindowTest::ignoresThePointer()
{
    kx::Window window(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    const QSignalSpy changed(&window, &kx::Window::ignoresMouseEventsChanged);
    QVERIFY(!window.ignoresMouseEvents());
    window.setIgnoresMouseEvents(true);
    window.setIgnoresMouseEvents(true);
    QVERIFY(window.ignoresMouseEvents());
    QVERIFY(kx::ignoresMouseEvents(&window));
    QCOMPARE(changed.size(), 1);
    QVERIFY(window.windowHandle()->flags().testFlag(Qt::WindowTransparentForInput));
    window.setIgnoresMouseEvents(false);
    QVERIFY(!window.ignoresMouseEvents());
    QVERIFY(!window.windowHandle()->flags().testFlag(Qt::WindowTransparentForInput));
    QCOMPARE(changed.size(), 2);

    kx::Window later(QRectF(120, 200, 400, 300), WindowStyle::Borderless, kx::BackingStore::Buffered, true);
    later.setIgnoresMouseEvents(true);
    show(later);
    QVERIFY(later.windowHandle()->flags().testFlag(Qt::WindowTransparentForInput));
}

void WindowTest::asksWhetherItGetsTheKeyboard()
{
    kx::Window borderless(QRectF(120, 200, 400, 300), WindowStyle::Borderless);
    QVERIFY(!borderless.canBecomeKeyWindow());
    QVERIFY(!borderless.canBecomeMainWindow());
    show(borderless);
    QVERIFY(borderless.windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
    kx::Window decorated;
    QVERIFY(decorated.canBecomeKeyWindow());
    QVERIFY(decorated.canBecomeMainWindow());
    show(decorated);
    QVERIFY(!decorated.windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
}

void WindowTest::questionsAboutAPlainWindow()
{
    QVERIFY(!kx::ignoresMouseEvents(nullptr));
    QVERIFY(!kx::isModalPanel(nullptr));
    QMainWindow plain;
    QVERIFY(!kx::ignoresMouseEvents(&plain));
    QVERIFY(!kx::isModalPanel(&plain));
    plain.setAttribute(Qt::WA_TransparentForMouseEvents);
    QVERIFY(kx::ignoresMouseEvents(&plain));
    QWidget flagged(nullptr, Qt::Window | Qt::WindowTransparentForInput);
    QVERIFY(kx::ignoresMouseEvents(&flagged));
    QDialog dialog;
    QVERIFY(!kx::isModalPanel(&dialog));
    dialog.setModal(true);
    QVERIFY(kx::isModalPanel(&dialog));
    dialog.setWindowModality(Qt::WindowModal);
    QVERIFY(!kx::isModalPanel(&dialog));
}

QTEST_MAIN(WindowTest)
#include "WindowTest.moc"
