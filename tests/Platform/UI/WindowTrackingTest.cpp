// SPDX-License-Identifier: MIT
#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"
#include "Support/WindowWarnings.h"

#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtGui/qpa/qwindowsysteminterface.h>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>

#include <memory>

using namespace Qt::StringLiterals;
using kx::EventType;
using Types = QList<EventType>;
using QtTypes = QList<QEvent::Type>;

constexpr kx::EventMask dragOrUp = kx::eventMask(EventType::LeftMouseDragged) | kx::eventMask(EventType::LeftMouseUp);

/// A window that waits within its handler of a press until a release or the end of waiting.
class WindowTrackingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void waitsForTheNextEventOfAKind();
    void aPeekLeavesTheEvent();
    void whatNobodyTakesIsDeliveredAfterwardsInOrder();
    void theReleaseComesAfterTheHandlerOfThePress();
    void timersRunMeanwhile();
    void otherWindowsWaitToo();
    void locationsFollowTheWindowThatIsMoved();
    void aHandlerMayWaitInsideAnothersWait();
    void aModalDialogInTheReleaseGetsWhatIsLeft();

    void nothingComesWhenTheWaitEnds_data();
    void nothingComesWhenTheWaitEnds();
    void nothingComesOfASecondWaitEither();
    void theWindowMayBeDeletedWhileItWaits();
    void aPressThatNoDeviceMadeIsNotWaitedFor();
    void aPressHandedOnAfterTheEndIsTakenBack();
    void aHiddenWindowDoesNotWait();
    void doesNotWaitForTheReleaseThatWentAstray();
    void theNextPressTracksAgain();
    void theApplicationMayQuitWhileItWaits(); // the last one: no event loop waits afterwards

private:
    void track(kx::Event *press);

    std::unique_ptr<LoggingWindow> m_window;
    LoggingWidget *m_view = nullptr;
    QList<EventType> m_taken; // by the handler; Other for none
    int m_runs = 0;
};

void WindowTrackingTest::init()
{
    failOnWindowWarnings();
    m_taken.clear();
    m_runs = 0;
    m_window = std::make_unique<LoggingWindow>();
    m_view = m_window->view;
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCoreApplication::processEvents();
    m_window->handler = [this](kx::Event *event) {
        if (event->type() == EventType::LeftMouseDown)
            track(event);
        else
            m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.release(); // where the test before kept the button down
    pointer.moveTo(QPointF(50, 50));
    m_window->seen.clear();
    m_view->entries.clear();
}

// Takes everything up to the release or to the end, then hands the press on.
void WindowTrackingTest::track(kx::Event *press)
{
    const QPointer<LoggingWindow> alive(m_window.get());
    for (;;) {
        const std::optional<kx::Event> next = m_window->nextEvent(dragOrUp);
        m_taken << (next ? next->type() : EventType::Other);
        if (!next || next->type() == EventType::LeftMouseUp)
            break;
    }
    ++m_runs;
    if (alive)
        alive->passOn(press);
}

void WindowTrackingTest::waitsForTheNextEventOfAKind()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    pointer.queue();
    pointer.press();
    pointer.moveBy(QPointF(1, 0));
    pointer.moveBy(QPointF(1, 0));
    pointer.release();
    pointer.deliver();
    QCOMPARE(m_taken, (Types{EventType::LeftMouseDragged, EventType::LeftMouseDragged, EventType::LeftMouseUp}));
    QCOMPARE(m_window->seen, Types{EventType::LeftMouseDown});
    QCOMPARE(m_view->clicks(), QtTypes{QEvent::MouseButtonPress});
}

void WindowTrackingTest::aPeekLeavesTheEvent()
{
    m_window->handler = [this](kx::Event *event) {
        m_window->passOn(event);
        if (event->type() != EventType::LeftMouseDown)
            return;
        for (const bool dequeue : {false, false, true, false}) {
            const std::optional<kx::Event> next = m_window->nextEvent(dragOrUp, dequeue);
            QVERIFY(next);
            m_taken << next->type();
        }
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    pointer.queue();
    pointer.press();
    pointer.moveBy(QPointF(1, 0));
    pointer.release();
    pointer.deliver();
    QCOMPARE(m_taken,
        (Types{EventType::LeftMouseDragged, EventType::LeftMouseDragged, EventType::LeftMouseDragged,
            EventType::LeftMouseUp}));
    QTRY_COMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void WindowTrackingTest::whatNobodyTakesIsDeliveredAfterwardsInOrder()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    pointer.queue();
    pointer.press();
    QWindowSystemInterface::handleKeyEvent(m_window->windowHandle(), QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    pointer.wheel(QPoint(0, 120));
    QWindowSystemInterface::handleKeyEvent(m_window->windowHandle(), QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier);
    pointer.moveBy(QPointF(1, 0));
    pointer.release();
    pointer.moveBy(QPointF(1, 0));
    pointer.deliver();
    QCOMPARE(m_taken, (Types{EventType::LeftMouseDragged, EventType::LeftMouseUp}));
    QTRY_COMPARE(m_view->types(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::KeyPress, QEvent::Wheel, QEvent::KeyRelease, QEvent::MouseMove}));
    QCOMPARE(m_window->seen,
        (Types{EventType::LeftMouseDown, EventType::KeyDown, EventType::ScrollWheel, EventType::KeyUp,
            EventType::MouseMoved}));
}

void WindowTrackingTest::theReleaseComesAfterTheHandlerOfThePress()
{
    bool handling = false;
    m_window->handler = [&](kx::Event *event) {
        if (event->type() == EventType::LeftMouseDown) {
            handling = true;
            const auto next = m_window->nextEvent(dragOrUp, false);
            QVERIFY(next);
            QCOMPARE(next->type(), EventType::LeftMouseUp);
            m_window->passOn(event);
            handling = false;
        } else {
            QVERIFY(!handling);
            m_window->passOn(event);
        }
    };
    Pointer pointer(*m_view);
    pointer.queue();
    pointer.click(QPointF(50, 50));
    pointer.deliver();
    QTRY_COMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void WindowTrackingTest::timersRunMeanwhile()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (++ticks == 3)
            pointer.release();
    });
    timer.start(1);
    pointer.press(); // returns with the release
    QCOMPARE(ticks, 3);
    QCOMPARE(m_taken, Types{EventType::LeftMouseUp});
}

void WindowTrackingTest::otherWindowsWaitToo()
{
    LoggingWidget plain;
    plain.setGeometry(600, 300, 100, 100);
    plain.setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    plain.setAttribute(Qt::WA_ShowWithoutActivating);
    plain.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plain));
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    QTimer::singleShot(0, this, [&] {
        QWindowSystemInterface::handleKeyEvent(plain.windowHandle(), QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
        QCoreApplication::processEvents();
        QVERIFY(plain.types().isEmpty());
        pointer.release();
    });
    pointer.press();
    QCOMPARE(m_taken, Types{EventType::LeftMouseUp});
    QTRY_COMPARE(plain.types(), QtTypes{QEvent::KeyPress});
}

void WindowTrackingTest::locationsFollowTheWindowThatIsMoved()
{
    QList<QPointF> locations;
    m_window->handler = [&](kx::Event *event) {
        if (event->type() != EventType::LeftMouseDown)
            return;
        while (const auto next = m_window->nextEvent(dragOrUp)) {
            locations << next->locationInWindow();
            if (next->type() == EventType::LeftMouseUp)
                break;
            m_window->setFrame(m_window->frame().translated(10, 0), true);
        }
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    pointer.queue(); // all of them made before the window moves
    pointer.press();
    for (int i = 0; i < 3; ++i)
        pointer.moveBy(QPointF(10, 0));
    pointer.release();
    pointer.deliver();
    const QPointF place(60, 300 - 1 - 50);
    QCOMPARE(locations, (QList{place, place, place, place - QPointF(10, 0)}));
}

void WindowTrackingTest::aHandlerMayWaitInsideAnothersWait()
{
    LoggingWindow other;
    other.setAttribute(Qt::WA_ShowWithoutActivating);
    other.setGeometry(600, 300, 100, 100);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    bool found = false;
    QTimer::singleShot(0, this, [&] {
        QTimer::singleShot(0, this, [&] {
            pointer.moveBy(QPointF(1, 0)); // for the inner one
            pointer.release(); // for the outer one
        });
        found = other.nextEvent(kx::eventMask(EventType::LeftMouseDragged)).has_value();
    });
    pointer.press();
    QVERIFY(found);
    QCOMPARE(m_taken, Types{EventType::LeftMouseUp});
}

void WindowTrackingTest::aModalDialogInTheReleaseGetsWhatIsLeft()
{
    QDialog dialog;
    bool gotKey = false;
    m_view->handler = [&](QEvent &event) {
        if (event.type() == QEvent::KeyPress) {
            gotKey = true;
            dialog.reject();
        }
        if (event.type() != QEvent::MouseButtonRelease)
            return;
        // The key that waits behind the release is delivered in this loop, not after it.
        QEventLoop loop;
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        connect(&dialog, &QDialog::rejected, &loop, &QEventLoop::quit);
        loop.exec();
        QVERIFY(gotKey);
    };
    m_window->handler = [&](kx::Event *event) {
        if (event->type() == EventType::LeftMouseDown)
            QVERIFY(m_window->nextEvent(dragOrUp, false));
        m_window->passOn(event);
    };
    Pointer pointer(*m_view);
    pointer.queue();
    pointer.click(QPointF(50, 50));
    QWindowSystemInterface::handleKeyEvent(m_window->windowHandle(), QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    pointer.deliver();
    QTRY_VERIFY(gotKey);
}

enum class End { Hide, Close, Dialog, OtherWindow, Inactive, LostRelease };

void WindowTrackingTest::nothingComesWhenTheWaitEnds_data()
{
    QTest::addColumn<End>("end");
    QTest::newRow("hidden") << End::Hide;
    QTest::newRow("closed") << End::Close;
    QTest::newRow("a modal dialog") << End::Dialog;
    QTest::newRow("another window gets the keyboard") << End::OtherWindow;
    QTest::newRow("another application gets the keyboard") << End::Inactive;
    QTest::newRow("a move with no button down") << End::LostRelease;
}

void WindowTrackingTest::nothingComesWhenTheWaitEnds()
{
    QFETCH(End, end);
    QDialog dialog;
    dialog.setModal(true);
    QWidget other;
    other.setGeometry(600, 300, 100, 100);
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    m_view->entries.clear();
    QTimer::singleShot(0, this, [&] {
        pointer.moveBy(QPointF(1, 0));
        switch (end) {
        case End::Hide: m_window->hide(); break;
        case End::Close: m_window->close(); break;
        case End::Dialog: dialog.show(); break;
        case End::OtherWindow:
            other.show();
            other.activateWindow();
            break;
        case End::Inactive:
            QWindowSystemInterface::handleApplicationStateChanged<QWindowSystemInterface::SynchronousDelivery>(
                Qt::ApplicationInactive);
            break;
        case End::LostRelease: pointer.moveWithButtons(QPointF(9, 10), Qt::NoButton); break;
        }
    });
    pointer.press();
    QCOMPARE(m_runs, 1);
    // Qt drops what a modal window keeps the user from.
    QCOMPARE(
        m_taken, end == End::Dialog ? Types{EventType::Other} : (Types{EventType::LeftMouseDragged, EventType::Other}));
    // What was handed on is taken back, and a release that comes after all goes nowhere.
    if (m_view->clicks().size() != 0) // a hidden window may not get it at all
        QCOMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::UngrabMouse}));
    m_view->entries.clear();
    pointer.release();
    QCOMPARE(m_view->clicks(), QtTypes{});
    QWindowSystemInterface::handleApplicationStateChanged<QWindowSystemInterface::SynchronousDelivery>(
        Qt::ApplicationActive);
}

void WindowTrackingTest::nothingComesOfASecondWaitEither()
{
    m_window->handler = [this](kx::Event *event) {
        if (event->type() != EventType::LeftMouseDown)
            return;
        QVERIFY(!m_window->nextEvent(dragOrUp));
        m_window->show();
        QVERIFY(!m_window->nextEvent(dragOrUp)); // at once
        ++m_runs;
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    QTimer::singleShot(0, m_window.get(), &QWidget::hide);
    pointer.press();
    QCOMPARE(m_runs, 1);
    pointer.release();
}

void WindowTrackingTest::theWindowMayBeDeletedWhileItWaits()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    QTimer::singleShot(0, this, [this] { m_window.reset(); });
    pointer.press();
    QCOMPARE(m_runs, 1);
    QCOMPARE(m_taken, Types{EventType::Other});
}

void WindowTrackingTest::theApplicationMayQuitWhileItWaits()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    QTimer::singleShot(0, this, [&] {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        pointer.press();
        QCOMPARE(m_runs, 1);
        QCOMPARE(m_taken, Types{EventType::Other});
    });
    QTimer::singleShot(10000, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::UngrabMouse}));
    pointer.release();
}

void WindowTrackingTest::aPressThatNoDeviceMadeIsNotWaitedFor()
{
    QTest::mouseClick(m_view, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    QCOMPARE(m_taken, Types{EventType::Other});
    QCOMPARE(m_view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void WindowTrackingTest::aPressHandedOnAfterTheEndIsTakenBack()
{
    auto *button = new QPushButton(m_view);
    button->setGeometry(50, 60, 100, 100);
    button->show();
    const QSignalSpy pressed(button, &QPushButton::pressed);
    const QSignalSpy clicked(button, &QPushButton::clicked);
    QDialog dialog;
    dialog.setModal(true);
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(60, 80));
    QTimer::singleShot(0, &dialog, &QWidget::show);
    pointer.press();
    QVERIFY(!button->isDown());
    dialog.hide();
    pointer.release();
    QCOMPARE(clicked.size(), 0);
    QVERIFY(pressed.size() <= 1);
}

void WindowTrackingTest::aHiddenWindowDoesNotWait()
{
    m_window->hide();
    QVERIFY(!m_window->nextEvent(dragOrUp));
}

void WindowTrackingTest::doesNotWaitForTheReleaseThatWentAstray()
{
    // The move that tells of it arrives together with the last drag, before the handler waits again.
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    pointer.queue();
    pointer.press();
    pointer.moveBy(QPointF(1, 0));
    pointer.moveWithButtons(QPointF(9, 10), Qt::NoButton);
    pointer.deliver();
    QCOMPARE(m_taken, (Types{EventType::LeftMouseDragged, EventType::Other}));
    QTRY_COMPARE(m_view->types().last(), QEvent::MouseMove);
}

void WindowTrackingTest::theNextPressTracksAgain()
{
    QDialog dialog;
    dialog.setModal(true);
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(50, 50));
    QTimer::singleShot(0, &dialog, &QWidget::show);
    pointer.press();
    dialog.hide();
    pointer.release();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_taken.clear();
    pointer.queue();
    pointer.click(QPointF(55, 50));
    pointer.deliver();
    QCOMPARE(m_taken, Types{EventType::LeftMouseUp});
}

QTEST_MAIN(WindowTrackingTest)
#include "WindowTrackingTest.moc"
