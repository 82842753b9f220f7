// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/WindowUtil.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/private/qwidget_p.h>

using namespace Qt::StringLiterals;

namespace {

// As if a window manager had drawn a title bar.
void decorate(QWidget &window, int top)
{
    QWidgetPrivate *d = QWidgetPrivate::get(&window);
    d->topData()->frameStrut.setCoords(0, top, 0, 0);
    d->data.fstrut_dirty = false;
}

} // namespace

class WindowUtilTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void theTitleBarIsWhatTheFrameHasMore();
    void aWindowWithItsOwnChromeHasNoTitleBar();
    void measuresRealDecorations();
    void thePointerIsOverTheContent_data();
    void thePointerIsOverTheContent();
    void thePointerIsNeverOverAWindowWithoutContent();
    void aWindowOfItsScreensSizeIsInFullScreen_data();
    void aWindowOfItsScreensSizeIsInFullScreen();
    void theStateAloneIsNotAsked();
    void aZeroFrameWithoutAScreenIsInFullScreen();
    void noWindowHasNothing();
};

void WindowUtilTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void WindowUtilTest::cleanup()
{
    QCursor::setPos(0, 0);
}

void WindowUtilTest::theTitleBarIsWhatTheFrameHasMore()
{
    kx::Window window;
    decorate(window, 22);
    window.setFrame(QRectF(0, 0, 800, 622), false);
    QCOMPARE(window.frame(), QRectF(0, 0, 800, 622));
    QCOMPARE(window.height(), 600);
    QCOMPARE(pn_TitlebarHeight(&window), 22.0);
}

void WindowUtilTest::aWindowWithItsOwnChromeHasNoTitleBar()
{
    kx::Window window(QRectF(0, 0, 300, 200), kx::WindowStyle::Titled | kx::WindowStyle::FullSizeContentView);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(pn_TitlebarHeight(&window), 0.0);
}

void WindowUtilTest::measuresRealDecorations()
{
    kx::Window window;
    window.resize(300, 200);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(pn_TitlebarHeight(&window), double(window.frameGeometry().height() - 200));
}

void WindowUtilTest::thePointerIsOverTheContent_data()
{
    QTest::addColumn<QPoint>("position"); // from the top left of the content
    QTest::addColumn<bool>("inside");
    QTest::newRow("first pixel") << QPoint(0, 0) << true;
    QTest::newRow("last pixel") << QPoint(199, 99) << true;
    QTest::newRow("middle") << QPoint(50, 50) << true;
    QTest::newRow("left of it") << QPoint(-1, 50) << false;
    QTest::newRow("above it") << QPoint(50, -1) << false;
    QTest::newRow("right of it") << QPoint(200, 50) << false;
    QTest::newRow("below it") << QPoint(50, 100) << false;
}

void WindowUtilTest::thePointerIsOverTheContent()
{
    QFETCH(QPoint, position);
    kx::Window window;
    auto *content = new QWidget;
    window.setCentralWidget(content);
    window.setGeometry(100, 80, 212, 114);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    content->setGeometry(5, 6, 200, 100); // content that does not fill the window
    QCursor::setPos(content->mapToGlobal(position));
    QTEST(pn_mousePointInWindow(&window), "inside");
}

void WindowUtilTest::thePointerIsNeverOverAWindowWithoutContent()
{
    kx::Window window;
    window.setGeometry(100, 100, 200, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCursor::setPos(window.geometry().center());
    QVERIFY(!pn_mousePointInWindow(&window));
}

void WindowUtilTest::aWindowOfItsScreensSizeIsInFullScreen_data()
{
    QTest::addColumn<QMargins>("larger");
    QTest::addColumn<bool>("expected");
    QTest::newRow("its size") << QMargins() << true;
    QTest::newRow("a pixel less") << QMargins(0, 0, -1, 0) << false;
    QTest::newRow("a pixel more") << QMargins(0, 0, 0, 1) << false;
    QTest::newRow("a pixel aside") << QMargins(-1, 0, 1, 0) << false;
}

void WindowUtilTest::aWindowOfItsScreensSizeIsInFullScreen()
{
    QFETCH(QMargins, larger);
    kx::Window window(QRectF(), kx::WindowStyle::Titled | kx::WindowStyle::FullSizeContentView);
    window.setGeometry(window.screen()->geometry() + larger);
    QVERIFY(!pn_isFullScreen(&window)); // it has no screen yet
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!window.isFullScreen());
    QTEST(pn_isFullScreen(&window), "expected");
}

void WindowUtilTest::theStateAloneIsNotAsked()
{
    kx::Window window;
    window.setGeometry(0, 0, 200, 100);
    window.setWindowState(Qt::WindowFullScreen);
    QVERIFY(window.isFullScreen());
    QVERIFY(!pn_isFullScreen(&window)); // it will fill the screen once it is shown
}

void WindowUtilTest::aZeroFrameWithoutAScreenIsInFullScreen()
{
    kx::Window window;
    window.setFrame(QRectF(0, 0, 0, 0), false);
    QCOMPARE(window.frame(), QRectF(0, 0, 0, 0));
    QVERIFY(pn_isFullScreen(&window));
    window.setFrame(QRectF(0, 0, 10, 10), false);
    QVERIFY(!pn_isFullScreen(&window));
}

void WindowUtilTest::noWindowHasNothing()
{
    QCOMPARE(pn_TitlebarHeight(nullptr), 0.0);
    QVERIFY(!pn_mousePointInWindow(nullptr));
    QVERIFY(pn_isFullScreen(nullptr)); // its frame and its screen's are both zero
}

QTEST_MAIN(WindowUtilTest)
#include "WindowUtilTest.moc"
