// SPDX-License-Identifier: MIT
#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"
#include "Support/WindowWarnings.h"

#include <QtCore/QTimer>
#include <QtGui/QShortcut>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using kx::EventType;
using Types = QList<EventType>;
using QtTypes = QList<QEvent::Type>;

class WindowEventsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void everyEventPassesThroughTheWindowOnce();
    void handsEventsOnAsQtSentThem();
    void eventsKnowTheirWindowAndReceiver();
    void keysGoToTheFocusedWidget();
    void shortcutsWorkAndTheirOverridesPass();
    void swallowedEventsReachNobody();
    void tellsWhetherSomebodyAccepted();
    void aRightPressBringsItsMenuOnlyWhenHandedOn();
    void aClickHandedOnTwiceArrivesTwice();
    void aReleaseHandedOnTwiceArrivesTwice();
    void aPressWithoutReleaseIsTakenBack();
    void aButtonWhosePressIsTakenBackIsUp();
    void aDoubleClickIsOneEvent();
    void aDoubleClickGrabsThePointer();
    void whatIsSentToAWidgetPassesToo();
    void whatAHandlerSendsOnDoesNotPassAgain();
    void aHandlersLoopGetsItsEventsThroughTheWindow();
    void anOpenPopupKeepsItsEvents();
    void eventsOfNativeChildrenPass();
    void aPlainWindowIsLeftAlone();
    void aPressHandedOnLaterStaysInItsPlace();
    void aMoveHandedOnLaterStaysOnTheScreen();
    void theWindowMayBeDeletedByItsEvent();
    void theWidgetMayBeDeletedByItsEvent();
    void nothingAndMadeEventsAreIgnored();

private:
    std::unique_ptr<LoggingWindow> m_window;
    LoggingWidget *m_view = nullptr;
};

void WindowEventsTest::init()
{
    failOnWindowWarnings();
    m_window = std::make_unique<LoggingWindow>();
    m_view = m_window->view;
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCoreApplication::processEvents();
    m_window->seen.clear();
    m_view->entries.clear();
}

void WindowEventsTest::cleanup()
{
    m_window.reset();
}

void WindowEventsTest::everyEventPassesThroughTheWindowOnce()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    pointer.moveBy(QPointF(5, 0));
    pointer.release();
    pointer.wheel(QPoint(0, 120));
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    QCOMPARE(m_window->seen,
        (Types{EventType::MouseMoved, EventType::LeftMouseDown, EventType::LeftMouseDragged, EventType::LeftMouseUp,
            EventType::ScrollWheel, EventType::KeyDown, EventType::KeyUp}));
    QCOMPARE(m_view->types(),
        (QtTypes{QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease,
            QEvent::Wheel, QEvent::KeyPress, QEvent::KeyRelease}));
}

void WindowEventsTest::handsEventsOnAsQtSentThem()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->show();
    inner->handler = [](QEvent &event) {
        const auto &mouse = static_cast<const QMouseEvent &>(event);
        QCOMPARE(mouse.scenePosition(), QPointF(60.25, 80.5));
        QCOMPARE(mouse.button(), Qt::LeftButton);
        QCOMPARE(mouse.modifiers(), Qt::ControlModifier);
        QVERIFY(mouse.spontaneous());
        QVERIFY(mouse.timestamp() > 0);
    };
    Pointer pointer(*m_view);
    pointer.setModifiers(Qt::ControlModifier);
    pointer.moveTo(QPointF(60.25, 80.5));
    pointer.press();
    QCOMPARE(inner->types(), QtTypes{QEvent::MouseButtonPress});
    QCOMPARE(inner->entries.first().position, QPointF(10, 21)); // Qt rounds it
    inner->handler = nullptr;
    pointer.release();
}

void WindowEventsTest::eventsKnowTheirWindowAndReceiver()
{
    int asked = 0;
    m_window->handler = [&](kx::Event *event) {
        QCOMPARE(event->window(), m_window.get());
        QCOMPARE(event->receiver(), m_window->windowHandle());
        QVERIFY(event->qtEvent());
        ++asked;
    };
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(asked, 3);
}

void WindowEventsTest::keysGoToTheFocusedWidget()
{
    auto *other = new LoggingWidget(m_view);
    other->setFocusPolicy(Qt::StrongFocus);
    other->show();
    other->setFocus();
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    QCOMPARE(other->types(), (QtTypes{QEvent::KeyPress, QEvent::KeyRelease}));
    QVERIFY(m_view->types().isEmpty());
}

void WindowEventsTest::shortcutsWorkAndTheirOverridesPass()
{
    QShortcut shortcut(QKeySequence(Qt::Key_B), m_window.get());
    const QSignalSpy activated(&shortcut, &QShortcut::activated);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_B);
    QCOMPARE(activated.size(), 1);
    QVERIFY(!m_window->seen.contains(EventType::KeyDown));
}

void WindowEventsTest::swallowedEventsReachNobody()
{
    m_window->handler = [](kx::Event *) {};
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    pointer.wheel(QPoint(0, 120));
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    for (const EventType type : {EventType::LeftMouseDown, EventType::LeftMouseUp, EventType::ScrollWheel,
             EventType::KeyDown, EventType::KeyUp})
        QCOMPARE(m_window->seen.count(type), 1);
    QVERIFY(m_view->entries.isEmpty());
}

void WindowEventsTest::tellsWhetherSomebodyAccepted()
{
    const auto send = [this] {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(20, 20), m_window->mapToGlobal(QPointF(20, 20)),
            Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window->windowHandle(), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(20, 20), m_window->mapToGlobal(QPointF(20, 20)),
            Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window->windowHandle(), &release);
        return press.isAccepted();
    };
    QVERIFY(send());
    m_view->handler = [](QEvent &event) { event.ignore(); };
    QVERIFY(!send());
    m_window->handler = [](kx::Event *) {}; // swallowed
    QVERIFY(send());
}

void WindowEventsTest::aRightPressBringsItsMenuOnlyWhenHandedOn()
{
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20), Qt::RightButton);
    QCOMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::ContextMenu, QEvent::MouseButtonRelease}));
    m_window->handler = [this](kx::Event *event) {
        if (event->type() != EventType::RightMouseDown)
            m_window->passOn(event);
    };
    m_view->entries.clear();
    pointer.click(QPointF(20, 20), Qt::RightButton);
    QVERIFY(m_view->clicks().isEmpty()); // Qt drops a release without its press
}

void WindowEventsTest::aClickHandedOnTwiceArrivesTwice()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    m_view->entries.clear();
    m_window->handler = [this](kx::Event *event) {
        m_window->passOn(event);
        if (event->type() == EventType::LeftMouseDown)
            m_window->passOn(event);
    };
    pointer.press();
    pointer.release();
    QCOMPARE(
        m_view->takeTypes(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void WindowEventsTest::aReleaseHandedOnTwiceArrivesTwice()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->show();
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(60, 80));
    inner->entries.clear();
    m_window->handler = [this](kx::Event *event) {
        m_window->passOn(event);
        m_window->passOn(event);
    };
    pointer.press();
    pointer.release();
    QCOMPARE(inner->types(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
            QEvent::MouseButtonRelease}));
    for (const LoggingWidget::Entry &entry : inner->entries)
        QCOMPARE(entry.position, QPointF(10, 20));
}

void WindowEventsTest::aPressWithoutReleaseIsTakenBack()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->show();
    m_window->handler = [this](kx::Event *event) {
        if (event->type() != EventType::LeftMouseUp)
            m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(60, 80));
    inner->entries.clear();
    pointer.press();
    QCOMPARE(inner->takeTypes(), QtTypes{QEvent::MouseButtonPress});
    pointer.release();
    QCOMPARE(inner->takeTypes(), QtTypes{QEvent::UngrabMouse});
    // Nothing holds the pointer in the widget any more.
    m_view->entries.clear();
    pointer.moveTo(QPointF(10, 10));
    QCOMPARE(m_view->takeTypes(), QtTypes{QEvent::MouseMove});
    QVERIFY(inner->types().isEmpty());
}

void WindowEventsTest::aButtonWhosePressIsTakenBackIsUp()
{
    auto *button = new QPushButton(m_view);
    button->setGeometry(50, 60, 100, 100);
    button->show();
    const QSignalSpy clicked(button, &QPushButton::clicked);
    m_window->handler = [this](kx::Event *event) {
        if (event->type() != EventType::LeftMouseUp)
            m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(60, 80));
    pointer.press();
    QVERIFY(button->isDown());
    pointer.release();
    QVERIFY(!button->isDown());
    QCOMPARE(clicked.size(), 0);
}

void WindowEventsTest::aDoubleClickIsOneEvent()
{
    QList<int> counts;
    m_window->handler = [&](kx::Event *event) {
        if (event->type() == EventType::LeftMouseDown)
            counts << event->clickCount();
        m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    m_view->entries.clear();
    pointer.doubleClick(QPointF(20, 20));
    QCOMPARE(counts, (QList{1, 2}));
    QCOMPARE(m_view->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
            QEvent::MouseButtonRelease}));
}

void WindowEventsTest::aDoubleClickGrabsThePointer()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->show();
    Pointer pointer(*m_view);
    m_window->handler = [&](kx::Event *event) {
        m_window->passOn(event);
        if (event->clickCount() == 2)
            pointer.moveTo(QPointF(10, 10)); // out of the widget, before the release
    };
    pointer.doubleClick(QPointF(60, 80));
    QCOMPARE(inner->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
            QEvent::MouseButtonRelease}));
    QCOMPARE(inner->entries.last().position, QPointF(-40, -50));
}

void WindowEventsTest::whatIsSentToAWidgetPassesToo()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->show();
    m_window->handler = [&](kx::Event *event) {
        QCOMPARE(event->receiver(), inner);
        m_window->passOn(event);
    };
    QTest::mouseClick(inner, Qt::LeftButton, Qt::NoModifier, QPoint(10, 20));
    QCOMPARE(m_window->seen, (Types{EventType::LeftMouseDown, EventType::LeftMouseUp}));
    QCOMPARE(inner->types(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(inner->entries.first().position, QPointF(10, 20));
    m_window->handler = [](kx::Event *) {};
    inner->entries.clear();
    QTest::mouseClick(inner, Qt::LeftButton);
    QVERIFY(inner->types().isEmpty());
}

void WindowEventsTest::whatAHandlerSendsOnDoesNotPassAgain()
{
    auto *inner = new LoggingWidget(m_view);
    m_view->handler = [&](QEvent &event) {
        const std::unique_ptr<QEvent> copy(event.clone());
        QCoreApplication::sendEvent(inner, copy.get());
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(300, 200));
    pointer.press();
    pointer.release();
    QCOMPARE(inner->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_view->clicks(), inner->clicks());
    QCOMPARE(m_window->seen.size(), m_view->types().size());
}

void WindowEventsTest::aHandlersLoopGetsItsEventsThroughTheWindow()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    m_view->entries.clear();
    m_window->seen.clear();
    m_view->handler = [&](QEvent &event) {
        if (event.type() != QEvent::MouseButtonPress)
            return;
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&] {
            pointer.release();
            QTest::keyClick(m_view, Qt::Key_A); // sent straight to the widget
            loop.quit();
        });
        loop.exec();
    };
    pointer.press();
    QCOMPARE(m_window->seen,
        (Types{EventType::LeftMouseDown, EventType::LeftMouseUp, EventType::KeyDown, EventType::KeyUp}));
    QCOMPARE(m_view->types(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::KeyPress, QEvent::KeyRelease}));
}

void WindowEventsTest::anOpenPopupKeepsItsEvents()
{
    QMenu menu(m_window.get());
    menu.addAction(u"Play"_qs);
    menu.popup(m_window->mapToGlobal(QPoint(200, 100)));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    QTRY_VERIFY(!menu.isVisible()); // a click beside it closes a menu, and does nothing else
    QVERIFY(m_window->seen.isEmpty());
    pointer.release();
}

void WindowEventsTest::eventsOfNativeChildrenPass()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->winId();
    inner->show();
    QVERIFY(inner->windowHandle());
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(10, 20), inner->mapToGlobal(QPointF(10, 20)), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(10, 20), inner->mapToGlobal(QPointF(10, 20)),
        Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QPointF location;
    m_window->handler = [&](kx::Event *event) {
        location = event->locationInWindow();
        m_window->passOn(event);
    };
    QCoreApplication::sendEvent(inner->windowHandle(), &press);
    QCoreApplication::sendEvent(inner->windowHandle(), &release);
    QCOMPARE(m_window->seen, (Types{EventType::LeftMouseDown, EventType::LeftMouseUp}));
    QCOMPARE(location, QPointF(60, 300 - 1 - 80));
    QCOMPARE(inner->types(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(inner->entries.first().position, QPointF(10, 20));
}

void WindowEventsTest::aPlainWindowIsLeftAlone()
{
    QMainWindow plain;
    auto *view = new LoggingWidget;
    plain.setCentralWidget(view);
    plain.resize(200, 200);
    plain.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plain));
    Pointer pointer(*view);
    pointer.moveTo(QPointF(20, 20));
    view->entries.clear();
    pointer.press();
    pointer.release();
    QCOMPARE(view->types(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QVERIFY(m_window->seen.isEmpty());
}

void WindowEventsTest::aPressHandedOnLaterStaysInItsPlace()
{
    m_window->handler = [this](kx::Event *event) {
        if (event->type() == EventType::LeftMouseDown) {
            const QPointF location = event->locationInWindow();
            m_window->setFrame(m_window->frame().translated(30, 40), true);
            QCOMPARE(event->locationInWindow(), location);
        }
        m_window->passOn(event);
    };
    m_view->handler = [this](QEvent &event) {
        if (event.type() == QEvent::MouseButtonPress) {
            const auto &press = static_cast<const QMouseEvent &>(event);
            QCOMPARE(press.globalPosition(), m_view->mapToGlobal(QPointF(20, 25)));
        }
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 25));
    m_view->entries.clear();
    pointer.press();
    QCOMPARE(m_view->types(), QtTypes{QEvent::MouseButtonPress});
    QCOMPARE(m_view->entries.first().position, QPointF(20, 25));
    pointer.release();
}

void WindowEventsTest::aMoveHandedOnLaterStaysOnTheScreen()
{
    m_window->handler = [this](kx::Event *event) {
        m_window->setFrame(m_window->frame().translated(30, 40), true);
        m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 25));
    QCOMPARE(m_view->types(), QtTypes{QEvent::MouseMove});
    QCOMPARE(m_view->entries.first().position, QPointF(20, 65));
}

void WindowEventsTest::theWindowMayBeDeletedByItsEvent()
{
    m_window->handler = [this](kx::Event *event) {
        if (event->type() == EventType::KeyDown)
            m_window.reset();
    };
    QTest::keyPress(m_window->windowHandle(), Qt::Key_A);
    QVERIFY(!m_window);
}

void WindowEventsTest::theWidgetMayBeDeletedByItsEvent()
{
    auto *inner = new LoggingWidget(m_view);
    inner->setGeometry(50, 60, 100, 100);
    inner->show();
    QPointer<QWidget> alive(inner);
    m_window->handler = [&](kx::Event *event) {
        m_window->passOn(event);
        if (event->type() == EventType::LeftMouseUp)
            delete alive;
        m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.click(QPointF(60, 80));
    QVERIFY(!alive);
    m_view->entries.clear();
    m_window->handler = nullptr;
    pointer.click(QPointF(60, 80));
    QCOMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void WindowEventsTest::nothingAndMadeEventsAreIgnored()
{
    m_window->passOn(nullptr);
    kx::Event made(EventType::LeftMouseDown, m_window.get(), QPointF(10, 10));
    m_window->passOn(&made);
    QVERIFY(m_view->entries.isEmpty());
}

QTEST_MAIN(WindowEventsTest)
#include "WindowEventsTest.moc"
