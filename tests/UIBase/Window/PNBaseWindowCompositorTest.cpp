// SPDX-License-Identifier: MIT
#include "BaseWindowFixture.h"
#include "Support/WindowWarnings.h"

#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;
using QtTypes = QList<QEvent::Type>;

/// Where no window can place itself: the compositor, whose pointer is that of the X server that it runs on, moves and
/// resizes the window.
class PNBaseWindowCompositorTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void aDragMovesTheWindow();
    void aDragInTheCornerResizes();
    void aDragOfTheBackgroundMovesTheWindow();
    void aClickReachesTheViewTwice();
    void aClickOutsideOfTheAreasReachesTheViewOnce();

private:
    /// Lets xdotool do something, and waits until it is done.
    static void act(const QStringList &commands);
    /// Where the top left of the window is on the output: only the pointer can tell.
    [[nodiscard]] QPointF place();
    /// Presses at a point of the window, drags until the compositor has taken over, and then the rest of the way.
    void drag(const QPointF &from, const QPoint &toTakeOver, const QPoint &rest);
    void click(const QPointF &point);
    [[nodiscard]] QStringList moveIntoWindow(const QPointF &point);
    [[nodiscard]] QList<QPointF> moves() const;

    std::unique_ptr<TestWindow> m_window;
};

namespace {

// Of the compositor's output. The window is larger than half of that: it is always beneath the middle.
const QPoint middle(320, 240);

QStringList moveTo(const QPoint &point)
{
    return {u"search"_qs, u"--sync"_qs, u"--onlyvisible"_qs, u"--class"_qs, u"Weston"_qs, u"mousemove"_qs,
        u"--window"_qs, u"%1"_qs, QString::number(point.x()), QString::number(point.y())};
}

QStringList moveBy(const QPoint &way)
{
    return {u"mousemove_relative"_qs, u"--"_qs, QString::number(way.x()), QString::number(way.y())};
}

} // namespace

void PNBaseWindowCompositorTest::init()
{
    failOnWindowWarnings();
    m_window = std::make_unique<TestWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    makeAllMovable(*m_window);
}

void PNBaseWindowCompositorTest::act(const QStringList &commands)
{
    QProcess xdotool;
    xdotool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    xdotool.start(u"xdotool"_qs, commands);
    QTRY_COMPARE_WITH_TIMEOUT(xdotool.state(), QProcess::NotRunning, 20000);
    QCOMPARE(xdotool.exitCode(), 0);
}

QList<QPointF> PNBaseWindowCompositorTest::moves() const
{
    QList<QPointF> positions;
    for (const LoggingWidget::Entry &entry : m_window->view->entries) {
        if (entry.type == QEvent::MouseMove)
            positions << entry.position;
    }
    return positions;
}

QPointF PNBaseWindowCompositorTest::place()
{
    const QPoint first(3, 4);
    const QPoint last(13, -7);
    m_window->view->entries.clear();
    act({u"mousemove"_qs, u"0"_qs, u"0"_qs}); // only when it comes in, the compositor asks where the pointer is
    act(moveTo(middle));
    act(moveBy(first));
    act(moveBy(last));
    const bool arrived = QTest::qWaitFor([&] {
        const QList<QPointF> positions = moves();
        return positions.size() >= 2 && positions.last() - positions.at(positions.size() - 2) == last;
    });
    if (!arrived)
        return {qQNaN(), qQNaN()};
    const QPointF position = moves().last();
    m_window->view->entries.clear();
    return middle + first + last - position;
}

QStringList PNBaseWindowCompositorTest::moveIntoWindow(const QPointF &point)
{
    return moveTo((place() + m_window->fromTop(point)).toPoint());
}

void PNBaseWindowCompositorTest::click(const QPointF &point)
{
    act(moveIntoWindow(point) + QStringList{u"click"_qs, u"1"_qs});
}

void PNBaseWindowCompositorTest::drag(const QPointF &from, const QPoint &toTakeOver, const QPoint &rest)
{
    act(moveIntoWindow(from) + QStringList{u"mousedown"_qs, u"1"_qs} + moveBy(toTakeOver));
    QTRY_VERIFY(!m_window->underMouse()); // the compositor has the pointer
    act(moveBy(rest) + QStringList{u"mouseup"_qs, u"1"_qs});
    QTRY_VERIFY(m_window->underMouse());
}

void PNBaseWindowCompositorTest::aDragMovesTheWindow()
{
    const QPointF before = place();
    drag(QPointF(200, 150), QPoint(20, 5), QPoint(25, 30));
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->steps, 1);
    QCOMPARE(m_window->taken, 1);
    QCOMPARE(place(), before + QPointF(45, 35));
}

void PNBaseWindowCompositorTest::aDragInTheCornerResizes()
{
    const QPointF before = place();
    drag(QPointF(395, 5), QPoint(-10, -20), QPoint(-20, -20));
    QTRY_COMPARE(m_window->size(), QSize(370, 260));
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(place(), before);
}

void PNBaseWindowCompositorTest::aDragOfTheBackgroundMovesTheWindow()
{
    m_window->setIgnoreDragRect(true);
    m_window->setMovableByWindowBackground(true);
    auto *view = new kx::View(m_window->view);
    view->setGeometry(10, 200, 50, 50);
    view->setMouseTracking(true); // and hands the moves on
    view->show();
    const QPointF before = place();
    drag(QPointF(30, 80), QPoint(30, 5), QPoint(-50, 20));
    QCOMPARE(place(), before + QPointF(-20, 25));
    QCOMPARE(m_window->steps, 0);
    QCOMPARE(m_window->view->clicks(), QtTypes{});
}

void PNBaseWindowCompositorTest::aClickReachesTheViewTwice()
{
    const QPointF before = place();
    click(QPointF(200, 150));
    QTRY_COMPARE(m_window->view->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(place(), before);
}

void PNBaseWindowCompositorTest::aClickOutsideOfTheAreasReachesTheViewOnce()
{
    m_window->updateMoveIncludeRect({QRectF(0, 0, 100, 300)});
    click(QPointF(200, 150));
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->taken, 0);
}

QTEST_MAIN(PNBaseWindowCompositorTest)
#include "PNBaseWindowCompositorTest.moc"
