// SPDX-License-Identifier: MIT
#include "Support/Activation.h"
#include "Support/Pointer.h"
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

#include <memory>

using namespace Qt::StringLiterals;

using kx::WindowButton;
using kx::WindowStyle;

namespace {

constexpr auto ownChrome = WindowStyle::Titled | WindowStyle::Closable | WindowStyle::Miniaturizable
    | WindowStyle::Resizable | WindowStyle::FullSizeContentView;

/// Takes clicks and notes them.
class Noting : public kx::View {
public:
    explicit Noting(QStringList &log)
        : m_log(log)
    {
    }
    void mouseDown(kx::Event *) override { m_log << u"down"_qs; }
    void mouseUp(kx::Event *) override { m_log << u"up"_qs; }

private:
    QStringList &m_log;
};

} // namespace

class WindowCornerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void isThereWithOwnChromeOnly_data();
    void isThereWithOwnChromeOnly();
    void standsInTheTopLeftCorner();
    void staysThereWhenTheWindowIsResized();
    void staysAboveTheContent();
    void followsTheStyle();
    void actsOnItsWindow();
    void showsSymbolsWhileThePointerIsOverIt();
    void noSymbolsComeUnderAModalWindow();
    void letsThePointerThroughElsewhere();
    void mayBeHidden();
    void isMadeAnewWhenItWasDeleted();

private:
    std::unique_ptr<kx::Window> m_window;
};

void WindowCornerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<kx::Window>(QRectF(100, 100, 300, 200), ownChrome);
}

void WindowCornerTest::cleanup()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

void WindowCornerTest::isThereWithOwnChromeOnly_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<bool>("expected");
    QTest::newRow("own chrome") << int(ownChrome) << true;
    QTest::newRow("titled alone") << 0x8001 << true;
    QTest::newRow("the window manager's") << 15 << false;
    QTest::newRow("borderless") << 0 << false;
    QTest::newRow("borderless, resizable") << 0x8008 << false;
}

void WindowCornerTest::isThereWithOwnChromeOnly()
{
    QFETCH(int, style);
    QFETCH(bool, expected);
    kx::Window window(QRectF(0, 0, 300, 200), kx::WindowStyleMask::fromInt(style));
    for (const WindowButton kind : {WindowButton::Close, WindowButton::Miniaturize, WindowButton::Zoom})
        QCOMPARE(window.standardWindowButton(kind) != nullptr, expected);
    QCOMPARE(window.standardWindowButton(WindowButton(7)), nullptr);

    QCOMPARE(kx::Window().standardWindowButton(WindowButton::Close), nullptr);
    QVERIFY(kx::Window(nullptr, Qt::FramelessWindowHint).standardWindowButton(WindowButton::Close));
}

void WindowCornerTest::standsInTheTopLeftCorner()
{
    QApplication::setLayoutDirection(Qt::RightToLeft); // there too
    m_window->show();
    int x = 7;
    for (const WindowButton kind : {WindowButton::Close, WindowButton::Miniaturize, WindowButton::Zoom}) {
        kx::StandardWindowButton *button = m_window->standardWindowButton(kind);
        QCOMPARE(button, m_window->standardWindowButton(kind));
        QCOMPARE(QRect(button->mapTo(m_window.get(), QPoint(0, 0)), button->size()), QRect(x, 3, 14, 16));
        QVERIFY(button->isVisible());
        x += 20;
    }
    kx::ViewInterface *corner = m_window->standardWindowButton(WindowButton::Close)->superview();
    QCOMPARE(corner->convertRectToView(corner->bounds()), QRectF(0, 165, 80, 35));
    corner->updateTrackingAreas(); // in place of those that it has
    corner->updateTrackingAreas();
    QCOMPARE(corner->trackingAreas().size(), 1);
}

void WindowCornerTest::staysThereWhenTheWindowIsResized()
{
    m_window->show();
    const kx::ViewInterface *corner = m_window->standardWindowButton(WindowButton::Close)->superview();
    m_window->resize(400, 500);
    QCOMPARE(corner->convertRectToView(corner->bounds()), QRectF(0, 465, 80, 35));
}

void WindowCornerTest::staysAboveTheContent()
{
    auto *button = m_window->standardWindowButton(WindowButton::Close);
    m_window->show();
    m_window->setCentralWidget(new QWidget);
    m_window->centralWidget()->show();
    QCOMPARE(m_window->childAt(14, 11), button);
    auto *later = new QWidget(m_window.get());
    later->resize(300, 200);
    later->show();
    QCOMPARE(m_window->childAt(14, 11), button);
}

void WindowCornerTest::followsTheStyle()
{
    kx::Window window(
        QRectF(0, 0, 300, 200), WindowStyle::Titled | WindowStyle::Closable | WindowStyle::FullSizeContentView);
    QVERIFY(window.standardWindowButton(WindowButton::Close)->isEnabled());
    QVERIFY(!window.standardWindowButton(WindowButton::Miniaturize)->isEnabled());
    QVERIFY(!window.standardWindowButton(WindowButton::Zoom)->isEnabled());
}

void WindowCornerTest::actsOnItsWindow()
{
    auto *button = m_window->standardWindowButton(WindowButton::Close);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer(*button).click(QPointF(7, 8));
    QVERIFY(!m_window->isVisible());
}

void WindowCornerTest::showsSymbolsWhileThePointerIsOverIt()
{
    auto *close = m_window->standardWindowButton(WindowButton::Close);
    auto *zoom = m_window->standardWindowButton(WindowButton::Zoom);
    m_window->show();
    activate(m_window.get());
    const auto picture = [&] { return close->grab().toImage(); };
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(200, 100));
    const QImage outside = picture();
    pointer.moveTo(zoom->mapTo(m_window.get(), QPointF(7, 8)));
    QVERIFY(picture() != outside);
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(picture(), outside);
}

void WindowCornerTest::noSymbolsComeUnderAModalWindow()
{
    auto *close = m_window->standardWindowButton(WindowButton::Close);
    auto *corner = close->superview();
    m_window->show();
    const QImage without = close->grab().toImage();
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    corner->mouseEntered(nullptr);
    QCOMPARE(close->grab().toImage(), without);
    dialog.hide();
    corner->mouseEntered(nullptr);
    QVERIFY(close->grab().toImage() != without);
    corner->mouseExited(nullptr);
    QCOMPARE(close->grab().toImage(), without);
}

void WindowCornerTest::letsThePointerThroughElsewhere()
{
    QStringList log;
    m_window->setCentralWidget(new Noting(log));
    QVERIFY(m_window->standardWindowButton(WindowButton::Close));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer(*m_window).click(QPointF(75, 30));
    QCOMPARE(log, (QStringList{u"down"_qs, u"up"_qs}));
}

void WindowCornerTest::mayBeHidden()
{
    auto *button = m_window->standardWindowButton(WindowButton::Close);
    m_window->show();
    button->superview()->widget()->hide();
    QVERIFY(!button->isVisible());
    QCOMPARE(m_window->standardWindowButton(WindowButton::Close), button);
    QVERIFY(!button->isVisible());
}

void WindowCornerTest::isMadeAnewWhenItWasDeleted()
{
    delete m_window->standardWindowButton(WindowButton::Close);
    QCOMPARE(m_window->standardWindowButton(WindowButton::Close), nullptr);
    auto *other = m_window->standardWindowButton(WindowButton::Zoom);
    QVERIFY(other);
    delete other->parentWidget();
    QVERIFY(m_window->standardWindowButton(WindowButton::Close));
}

QTEST_MAIN(WindowCornerTest)
#include "WindowCornerTest.moc"
