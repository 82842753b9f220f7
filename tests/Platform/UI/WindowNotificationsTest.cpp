// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>

#include "Support/Activation.h"

#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMainWindow>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

kx::NotificationCenter &center()
{
    return kx::NotificationCenter::defaultCenter();
}

/// What was posted by one sender, or by all.
class Record : public QObject {
public:
    explicit Record(QStringView name, const QObject *sender = nullptr)
    {
        center().addObserver(
            this,
            [this](const kx::Notification &n) {
                senders << n.object;
                auto *window = qobject_cast<QWidget *>(n.object);
                sizes << (window ? window->size() : QSize());
                fullScreen << (window && window->isFullScreen());
            },
            name, sender);
    }
    QList<QObject *> senders;
    QList<QSize> sizes;
    QList<bool> fullScreen;
};

} // namespace

class WindowNotificationsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void tellsWhenTheApplicationComesToTheFrontAndGoes();
    void tellsWhichWindowBecameMain();
    void dialogsDoNotBecomeMain();
    void tellsOfANewSize();
    void aChildsSizeIsNotTold();
    void tellsBeforeItEntersFullScreen();
    void tellsAfterItLeftFullScreen();
    void tellsOfASwitchMadeByOthers();
    void switchingToTheSameDoesNothing();
    void leavesFullScreenToTheStateBefore();
    void anObserverMayDeleteTheWindowBeforeTheSwitch();

private:
    std::unique_ptr<QMainWindow> m_window;
};

void WindowNotificationsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QMainWindow>();
    m_window->resize(300, 200);
}

void WindowNotificationsTest::tellsWhenTheApplicationComesToTheFrontAndGoes()
{
    const Record willBecome(kx::ApplicationWillBecomeActiveNotification);
    const Record didResign(kx::ApplicationDidResignActiveNotification, qApp);
    const Record fromTheWindow(kx::ApplicationWillBecomeActiveNotification, m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTRY_COMPARE(willBecome.senders, QList<QObject *>{qApp});
    QVERIFY(didResign.senders.isEmpty());
    activate(nullptr);
    QTRY_COMPARE(didResign.senders, QList<QObject *>{qApp});
    QCOMPARE(willBecome.senders.size(), 1);
    QVERIFY(fromTheWindow.senders.isEmpty());
}

void WindowNotificationsTest::tellsWhichWindowBecameMain()
{
    QMainWindow other;
    const Record all(kx::WindowDidBecomeMainNotification);
    const Record others(kx::WindowDidBecomeMainNotification, &other);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QTRY_COMPARE(all.senders, (QList<QObject *>{m_window.get(), &other}));
    QCOMPARE(others.senders, QList<QObject *>{&other});
}

void WindowNotificationsTest::dialogsDoNotBecomeMain()
{
    QDialog dialog;
    const Record main(kx::WindowDidBecomeMainNotification);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QVERIFY(main.senders.isEmpty());
}

void WindowNotificationsTest::tellsOfANewSize()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    const Record resized(kx::WindowDidResizeNotification);
    m_window->resize(320, 240);
    QTRY_COMPARE(resized.senders, QList<QObject *>{m_window.get()});
    QCOMPARE(resized.sizes, QList<QSize>{QSize(320, 240)});
    m_window->move(40, 30);
    m_window->resize(320, 240);
    QCoreApplication::processEvents();
    QCOMPARE(resized.senders.size(), 1);
}

void WindowNotificationsTest::aChildsSizeIsNotTold()
{
    auto *child = new QWidget(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    const Record resized(kx::WindowDidResizeNotification);
    child->resize(10, 10);
    QCoreApplication::processEvents();
    QVERIFY(resized.senders.isEmpty());
}

void WindowNotificationsTest::tellsBeforeItEntersFullScreen()
{
    m_window->show();
    const Record willEnter(kx::WindowWillEnterFullScreenNotification);
    const Record didExit(kx::WindowDidExitFullScreenNotification);
    kx::setFullScreen(*m_window, true);
    QVERIFY(m_window->isFullScreen());
    QCoreApplication::processEvents();
    QCOMPARE(willEnter.senders, QList<QObject *>{m_window.get()});
    QCOMPARE(willEnter.fullScreen, QList<bool>{false});
    QVERIFY(didExit.senders.isEmpty());
}

void WindowNotificationsTest::tellsAfterItLeftFullScreen()
{
    m_window->show();
    kx::setFullScreen(*m_window, true);
    QCoreApplication::processEvents();
    const Record willEnter(kx::WindowWillEnterFullScreenNotification);
    const Record didExit(kx::WindowDidExitFullScreenNotification);
    kx::setFullScreen(*m_window, false);
    QVERIFY(!m_window->isFullScreen());
    QCoreApplication::processEvents();
    QVERIFY(willEnter.senders.isEmpty());
    QCOMPARE(didExit.senders, QList<QObject *>{m_window.get()});
    QCOMPARE(didExit.fullScreen, QList<bool>{false});
}

void WindowNotificationsTest::tellsOfASwitchMadeByOthers()
{
    m_window->show();
    const Record willEnter(kx::WindowWillEnterFullScreenNotification);
    const Record didExit(kx::WindowDidExitFullScreenNotification);
    m_window->showFullScreen();
    QCoreApplication::processEvents();
    QCOMPARE(willEnter.senders, QList<QObject *>{m_window.get()});
    QCOMPARE(willEnter.fullScreen, QList<bool>{true});
    m_window->showMaximized();
    QCoreApplication::processEvents();
    QCOMPARE(didExit.senders, QList<QObject *>{m_window.get()});
    m_window->showNormal(); // neither in nor out
    QCoreApplication::processEvents();
    QCOMPARE(willEnter.senders.size(), 1);
    QCOMPARE(didExit.senders.size(), 1);
}

void WindowNotificationsTest::switchingToTheSameDoesNothing()
{
    m_window->show();
    const Record all({}, m_window.get());
    kx::setFullScreen(*m_window, false);
    QVERIFY(all.senders.isEmpty());
    kx::setFullScreen(*m_window, true);
    const auto before = all.senders.size();
    kx::setFullScreen(*m_window, true);
    QCOMPARE(all.senders.size(), before);
}

void WindowNotificationsTest::leavesFullScreenToTheStateBefore()
{
    m_window->showMaximized();
    kx::setFullScreen(*m_window, true);
    kx::setFullScreen(*m_window, false);
    QVERIFY(m_window->isMaximized());
    QVERIFY(!m_window->isFullScreen());
}

void WindowNotificationsTest::anObserverMayDeleteTheWindowBeforeTheSwitch()
{
    m_window->show();
    QObject observer;
    center().addObserver(
        &observer, [this](const kx::Notification &) { m_window.reset(); }, kx::WindowWillEnterFullScreenNotification);
    kx::setFullScreen(*m_window, true);
    QVERIFY(!m_window);
}

QTEST_MAIN(WindowNotificationsTest)
#include "WindowNotificationsTest.moc"
