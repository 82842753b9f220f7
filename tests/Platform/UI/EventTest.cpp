// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>

#include "Support/Pointer.h"

#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;
using kx::EventType;

namespace {

/// Keeps what it receives.
class Recorder : public QWidget {
public:
    std::vector<kx::Event> events;
    [[nodiscard]] QList<EventType> types() const
    {
        QList<EventType> list;
        for (const kx::Event &event : events)
            list << event.type();
        return list;
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->isInputEvent() || event->type() == QEvent::Enter || event->type() == QEvent::Leave)
            events.emplace_back(*event, this);
        return event->isInputEvent() || QWidget::event(event);
    }
};

} // namespace

Q_DECLARE_METATYPE(std::shared_ptr<QEvent>)

class EventTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void numbersAreBitsOfAMask();
    void tellsTheKind_data();
    void tellsTheKind();
    void tellsTheKindsOfADrag_data();
    void tellsTheKindsOfADrag();
    void countsClicks();
    void countsThePositionFromTheBottomLeft();
    void countsThePositionFromTheFrameAroundTheWindow();
    void keepsFractionsOfPositions_data();
    void keepsFractionsOfPositions();
    void locationFollowsTheWindow();
    void locationIsThatOfTheScreenWithoutAWindow();
    void outlivesItsWindow();
    void outlivesWhatQtSent();
    void takesThePointersPlaceWhereItHasNone();
    void keepsButtonsAndModifiers();
    void noDeviceSentAMadeOne();
    void copiesAreEqual();

private:
    void open(Qt::WindowType frame);

    std::unique_ptr<Recorder> m_window;
};

void EventTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    open(Qt::FramelessWindowHint);
}

void EventTest::open(Qt::WindowType frame)
{
    m_window = std::make_unique<Recorder>();
    m_window->setMouseTracking(true);
    m_window->setWindowFlags(Qt::Window | frame);
    m_window->setGeometry(100, 50, 200, 120);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_window->events.clear();
}

void EventTest::numbersAreBitsOfAMask()
{
    QCOMPARE(kx::eventMask(EventType::LeftMouseUp) | kx::eventMask(EventType::LeftMouseDragged), kx::EventMask(0x44));
    QCOMPARE(kx::eventMask(EventType::OtherMouseDragged), kx::EventMask(0x8000000));
    QCOMPARE(kx::eventMask(EventType::ScrollWheel), kx::EventMask(0x400000));
}

void EventTest::tellsTheKind_data()
{
    QTest::addColumn<std::shared_ptr<QEvent>>("event");
    QTest::addColumn<EventType>("type");
    const auto mouse = [](QEvent::Type type, Qt::MouseButton button,
                           Qt::MouseButtons buttons) -> std::shared_ptr<QEvent> {
        return std::make_shared<QMouseEvent>(type, QPointF(1, 1), QPointF(1, 1), button, buttons, Qt::NoModifier);
    };
    const auto key = [](QEvent::Type type, Qt::Key which) -> std::shared_ptr<QEvent> {
        return std::make_shared<QKeyEvent>(type, which, Qt::NoModifier);
    };
    using enum QEvent::Type;
    QTest::newRow("left press") << mouse(MouseButtonPress, Qt::LeftButton, Qt::LeftButton) << EventType::LeftMouseDown;
    QTest::newRow("left double click") << mouse(MouseButtonDblClick, Qt::LeftButton, Qt::LeftButton)
                                       << EventType::LeftMouseDown;
    QTest::newRow("left release") << mouse(MouseButtonRelease, Qt::LeftButton, {}) << EventType::LeftMouseUp;
    QTest::newRow("right press") << mouse(MouseButtonPress, Qt::RightButton, Qt::RightButton)
                                 << EventType::RightMouseDown;
    QTest::newRow("right release") << mouse(MouseButtonRelease, Qt::RightButton, {}) << EventType::RightMouseUp;
    QTest::newRow("middle press") << mouse(MouseButtonPress, Qt::MiddleButton, Qt::MiddleButton)
                                  << EventType::OtherMouseDown;
    QTest::newRow("back release") << mouse(MouseButtonRelease, Qt::BackButton, {}) << EventType::OtherMouseUp;
    QTest::newRow("move") << mouse(MouseMove, Qt::NoButton, {}) << EventType::MouseMoved;
    QTest::newRow("left drag") << mouse(MouseMove, Qt::NoButton, Qt::LeftButton) << EventType::LeftMouseDragged;
    QTest::newRow("right drag") << mouse(MouseMove, Qt::NoButton, Qt::RightButton) << EventType::RightMouseDragged;
    QTest::newRow("middle drag") << mouse(MouseMove, Qt::NoButton, Qt::MiddleButton) << EventType::OtherMouseDragged;
    QTest::newRow("drag with two buttons")
        << mouse(MouseMove, Qt::NoButton, Qt::LeftButton | Qt::RightButton) << EventType::LeftMouseDragged;
    QTest::newRow("right press during a left drag")
        << mouse(MouseButtonPress, Qt::RightButton, Qt::LeftButton | Qt::RightButton) << EventType::RightMouseDown;
    QTest::newRow("key press") << key(KeyPress, Qt::Key_A) << EventType::KeyDown;
    QTest::newRow("key release") << key(KeyRelease, Qt::Key_A) << EventType::KeyUp;
    QTest::newRow("shift press") << key(KeyPress, Qt::Key_Shift) << EventType::FlagsChanged;
    QTest::newRow("control release") << key(KeyRelease, Qt::Key_Control) << EventType::FlagsChanged;
    QTest::newRow("wheel") << std::shared_ptr<QEvent>(std::make_shared<QWheelEvent>(
        QPointF(1, 1), QPointF(1, 1), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false))
                           << EventType::ScrollWheel;
    QTest::newRow("enter") << std::shared_ptr<QEvent>(std::make_shared<QEnterEvent>(QPointF(), QPointF(), QPointF()))
                           << EventType::MouseEntered;
    QTest::newRow("leave") << std::make_shared<QEvent>(Leave) << EventType::MouseExited;
    QTest::newRow("shortcut override") << key(ShortcutOverride, Qt::Key_A) << EventType::Other;
    QTest::newRow("paint") << std::make_shared<QEvent>(Paint) << EventType::Other;
}

void EventTest::tellsTheKind()
{
    QFETCH(std::shared_ptr<QEvent>, event);
    QTEST(kx::Event(*event, m_window.get()).type(), "type");
}

void EventTest::tellsTheKindsOfADrag_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<QList<EventType>>("types");
    QTest::newRow("left") << Qt::LeftButton
                          << QList{EventType::LeftMouseDown, EventType::LeftMouseDragged, EventType::LeftMouseUp};
    QTest::newRow("right") << Qt::RightButton
                           << QList{EventType::RightMouseDown, EventType::RightMouseDragged, EventType::RightMouseUp};
    QTest::newRow("middle") << Qt::MiddleButton
                            << QList{EventType::OtherMouseDown, EventType::OtherMouseDragged, EventType::OtherMouseUp};
}

void EventTest::tellsTheKindsOfADrag()
{
    QFETCH(Qt::MouseButton, button);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    m_window->events.clear();
    pointer.press(button);
    pointer.moveBy(QPointF(5, 5));
    pointer.release(button);
    const auto isMenu = [](const kx::Event &event) { return event.type() == EventType::Other; };
    std::erase_if(m_window->events, isMenu); // the context menu's event
    QTEST(m_window->types(), "types");
}

void EventTest::countsClicks()
{
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    m_window->events.clear();
    pointer.click(QPointF(20, 20));
    pointer.doubleClick(QPointF(20, 20));
    QList<int> presses;
    for (const kx::Event &event : m_window->events) {
        if (event.type() == EventType::LeftMouseDown)
            presses << event.clickCount();
        else if (event.type() == EventType::LeftMouseUp)
            QCOMPARE(event.clickCount(), 1);
        else
            QCOMPARE(event.clickCount(), 0);
    }
    QCOMPARE(presses, (QList{1, 1, 2}));
}

void EventTest::countsThePositionFromTheBottomLeft()
{
    const double screenHeight = m_window->screen()->geometry().height();
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(0, 119));
    QCOMPARE(m_window->events.back().locationInWindow(), QPointF(0, 0));
    QCOMPARE(m_window->events.back().screenLocation(), QPointF(100, screenHeight - 170));
    pointer.moveTo(QPointF(199, 0));
    QCOMPARE(m_window->events.back().locationInWindow(), QPointF(199, 119));
    QCOMPARE(m_window->events.back().screenLocation(), QPointF(299, screenHeight - 51));
}

void EventTest::countsThePositionFromTheFrameAroundTheWindow()
{
    open(Qt::WindowTitleHint);
    const QMargins margins = m_window->windowHandle()->frameMargins();
    QVERIFY(margins.left() > 0 && margins.bottom() > 0);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(0, 119));
    QCOMPARE(m_window->events.back().locationInWindow(), QPointF(margins.left(), margins.bottom()));
}

void EventTest::keepsFractionsOfPositions_data()
{
    QTest::addColumn<QPoint>("window");
    QTest::addColumn<QPointF>("position");
    QTest::newRow("a quarter") << QPoint(100, 50) << QPointF(10.25, 20.75);
    QTest::newRow("a half") << QPoint(100, 50) << QPointF(10.5, 20.5);
    QTest::newRow("left of the screen") << QPoint(-60, -20) << QPointF(10.25, 10.75);
    QTest::newRow("across the edge of the screen") << QPoint(-11, -11) << QPointF(11.25, 10.75);
}

void EventTest::keepsFractionsOfPositions()
{
    QFETCH(QPoint, window);
    QFETCH(QPointF, position);
    m_window->move(window);
    QTRY_COMPARE(m_window->pos(), window);
    Pointer pointer(*m_window);
    pointer.moveTo(position);
    QCOMPARE(m_window->events.back().locationInWindow(), QPointF(position.x(), 120 - 1 - position.y()));
}

void EventTest::locationFollowsTheWindow()
{
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(50, 60));
    const kx::Event event = m_window->events.back();
    const QPointF before = event.locationInWindow();
    const QPointF onScreen = event.screenLocation();
    m_window->move(130, 90);
    QCOMPARE(event.screenLocation(), onScreen);
    QCOMPARE(event.locationInWindow(), before - QPointF(30, -40));
    m_window->resize(200, 130); // the bottom edge goes down
    QCOMPARE(event.locationInWindow(), before - QPointF(30, -50));
}

void EventTest::locationIsThatOfTheScreenWithoutAWindow()
{
    const kx::Event event(EventType::LeftMouseUp, nullptr, QPointF(12.5, 7));
    QCOMPARE(event.window(), nullptr);
    QCOMPARE(event.locationInWindow(), QPointF(12.5, 7));
    const QMouseEvent move(QEvent::MouseMove, QPointF(3, 4), QPointF(3, 4), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    const kx::Event fromQt(move, nullptr);
    QCOMPARE(fromQt.locationInWindow(), kx::screenPoint(QPointF(3, 4), nullptr));
}

void EventTest::outlivesItsWindow()
{
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(50, 60));
    const kx::Event event = m_window->events.back();
    m_window.reset();
    QCOMPARE(event.window(), nullptr);
    QCOMPARE(event.locationInWindow(), event.screenLocation());
}

void EventTest::outlivesWhatQtSent()
{
    auto press = std::make_unique<QMouseEvent>(
        QEvent::MouseButtonPress, QPointF(3, 4), QPointF(103, 54), Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    const kx::Event event(*press, m_window.get());
    press.reset();
    QVERIFY(event.qtEvent());
    QCOMPARE(event.qtEvent()->type(), QEvent::MouseButtonPress);
    QCOMPARE(static_cast<const QMouseEvent *>(event.qtEvent())->position(), QPointF(3, 4));
}

void EventTest::takesThePointersPlaceWhereItHasNone()
{
    QCursor::setPos(140, 80);
    QTRY_COMPARE(QCursor::pos(), QPoint(140, 80));
    const QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QCOMPARE(kx::Event(key, m_window.get()).locationInWindow(), QPointF(40, 120 - 1 - 30));
}

void EventTest::keepsButtonsAndModifiers()
{
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(50, 60));
    pointer.setModifiers(Qt::ShiftModifier | Qt::AltModifier);
    pointer.press();
    QCOMPARE(m_window->events.back().buttons(), Qt::LeftButton);
    QCOMPARE(m_window->events.back().modifiers(), Qt::ShiftModifier | Qt::AltModifier);
    pointer.press(Qt::MiddleButton);
    QCOMPARE(m_window->events.back().buttons(), Qt::LeftButton | Qt::MiddleButton);
    pointer.release();
    QCOMPARE(m_window->events.back().buttons(), Qt::MiddleButton);
    pointer.setModifiers({});
    pointer.release(Qt::MiddleButton);
    QCOMPARE(m_window->events.back().buttons(), Qt::NoButton);
    QCOMPARE(m_window->events.back().modifiers(), Qt::NoModifier);
}

void EventTest::noDeviceSentAMadeOne()
{
    const kx::Event event(EventType::LeftMouseUp, m_window.get(), QPointF(1, 2));
    QCOMPARE(event.qtEvent(), nullptr);
    QCOMPARE(event.type(), EventType::LeftMouseUp);
    QCOMPARE(event.window(), m_window.get());
    QCOMPARE(event.clickCount(), 0);
}

void EventTest::copiesAreEqual()
{
    Pointer pointer(*m_window);
    pointer.click(QPointF(50, 60));
    const kx::Event event = m_window->events.back();
    const kx::Event copy(event);
    QCOMPARE(copy.type(), event.type());
    QCOMPARE(copy.window(), event.window());
    QCOMPARE(copy.screenLocation(), event.screenLocation());
    QCOMPARE(copy.clickCount(), 1);
    QCOMPARE(copy.qtEvent(), event.qtEvent());
    QVERIFY(copy.isCopyOf(event));
    const kx::Event same(*event.qtEvent(), m_window.get());
    QVERIFY(!same.isCopyOf(event));
}

QTEST_MAIN(EventTest)
#include "EventTest.moc"
