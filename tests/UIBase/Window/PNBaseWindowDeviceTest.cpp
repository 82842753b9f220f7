// SPDX-License-Identifier: MIT
#include "BaseWindowFixture.h"
#include "Support/WindowWarnings.h"

#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;
using QtTypes = QList<QEvent::Type>;

/// The whole way from the device through the window system: the pointer is the display's own.
class PNBaseWindowDeviceTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void aDragMovesTheWindow();
    void aDragGoesOnOutsideOfTheWindow();
    void aDragInTheCornerResizes();
    void aClickReachesTheViewTwice();
    void aDoubleClickReachesTheView();
    void otherButtonsAreHandedOn();
    void keysTypedInADragComeAfterwards();
    void theViewIsUnderThePointerAfterwards();

private:
    /// Lets xdotool do something with the pointer, which is at a point of the window first, and waits until it is done.
    void act(const QPointF &point, const QStringList &commands);

    std::unique_ptr<TestWindow> m_window;
};

void PNBaseWindowDeviceTest::init()
{
    failOnWindowWarnings();
    m_window = std::make_unique<TestWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    makeAllMovable(*m_window);
}

void PNBaseWindowDeviceTest::act(const QPointF &point, const QStringList &commands)
{
    const QPoint at = m_window->view->mapToGlobal(m_window->fromTop(point).toPoint());
    QCursor::setPos(at);
    QTRY_COMPARE(QCursor::pos(), at);
    QCoreApplication::processEvents();
    m_window->view->entries.clear();
    QProcess xdotool;
    xdotool.start(u"xdotool"_qs, commands);
    QTRY_COMPARE_WITH_TIMEOUT(xdotool.state(), QProcess::NotRunning, 20000);
    QCOMPARE(xdotool.exitCode(), 0);
    if (m_window->steps > 0)
        settleGeometry(*m_window, m_window->placed);
}

void PNBaseWindowDeviceTest::aDragMovesTheWindow()
{
    const QRectF frame = m_window->frame();
    act(QPointF(200, 150),
        u"mousedown 1 mousemove_relative 20 5 mousemove_relative 20 5 mousemove_relative 20 5 mouseup 1"_qs.split(
            u' '));
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->frame(), frame.translated(60, -15));
    QVERIFY(m_window->steps > 0);
    QCOMPARE(m_window->taken, 1);
}

void PNBaseWindowDeviceTest::aDragGoesOnOutsideOfTheWindow()
{
    const QRectF frame = m_window->frame();
    act(QPointF(395, 150),
        {u"mousedown"_qs, u"1"_qs, u"mousemove_relative"_qs, u"300"_qs, u"0"_qs, u"mousemove_relative"_qs, u"--"_qs,
            u"-250"_qs, u"-100"_qs, u"mouseup"_qs, u"1"_qs});
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->frame(), frame.translated(50, 100));
}

void PNBaseWindowDeviceTest::aDragInTheCornerResizes()
{
    const QRectF frame = m_window->frame();
    act(QPointF(395, 5),
        u"mousedown 1 mousemove_relative 10 20 mousemove_relative 10 10 mousemove_relative 10 10 mouseup 1"_qs.split(
            u' '));
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->frame(), QRectF(frame.x(), frame.y() - 40, 430, 340));
}

void PNBaseWindowDeviceTest::aClickReachesTheViewTwice()
{
    const QRectF frame = m_window->frame();
    act(QPointF(200, 150), {u"click"_qs, u"1"_qs});
    QTRY_COMPARE(m_window->view->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->frame(), frame);
}

void PNBaseWindowDeviceTest::aDoubleClickReachesTheView()
{
    act(QPointF(200, 150), u"click --repeat 2 --delay 20 1"_qs.split(u' '));
    QTRY_COMPARE(m_window->view->clicks().count(QEvent::MouseButtonRelease), 2);
    QCOMPARE(m_window->view->clicks().count(QEvent::MouseButtonDblClick), 2);
}

void PNBaseWindowDeviceTest::otherButtonsAreHandedOn()
{
    const QRectF frame = m_window->frame();
    act(QPointF(200, 150), u"mousedown 3 mousemove_relative 20 20 mouseup 3"_qs.split(u' '));
    QTRY_COMPARE(
        m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::ContextMenu, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->frame(), frame);
    QCOMPARE(m_window->taken, 0);
}

void PNBaseWindowDeviceTest::keysTypedInADragComeAfterwards()
{
    QProcess rest; // a key at once after a press may overtake it on its way through Qt
    m_window->atStep = [&] {
        if (m_window->steps == 1)
            rest.start(u"xdotool"_qs, u"key a mousemove_relative 20 0 mouseup 1"_qs.split(u' '));
    };
    act(QPointF(200, 150), u"mousedown 1 mousemove_relative 20 0"_qs.split(u' '));
    QTRY_COMPARE(rest.state(), QProcess::NotRunning);
    QTRY_COMPARE(m_window->view->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::KeyPress, QEvent::KeyRelease, QEvent::MouseButtonRelease}));
}

void PNBaseWindowDeviceTest::theViewIsUnderThePointerAfterwards()
{
    act(QPointF(200, 150), u"mousedown 1 mousemove_relative 20 0 mousemove_relative 20 0 mouseup 1"_qs.split(u' '));
    QTRY_COMPARE(m_window->view->clicks().size(), 2);
    QVERIFY(m_window->view->underMouse());
    QCOMPARE(m_window->mouseLocationOutsideOfEventStream(), QPointF(200, 150));
    m_window->view->entries.clear();
    act(QPointF(210, 150), u"mousemove_relative 5 0"_qs.split(u' '));
    QTRY_VERIFY(m_window->view->types().contains(QEvent::MouseMove));
}

QTEST_MAIN(PNBaseWindowDeviceTest)
#include "PNBaseWindowDeviceTest.moc"
