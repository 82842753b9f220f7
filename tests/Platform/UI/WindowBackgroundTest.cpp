// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Button.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/Window.h>

#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"
#include "Support/ServerGeometry.h"
#include "Support/WindowWarnings.h"

#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <memory>

using kx::EventType;
using Types = QList<EventType>;
using QtTypes = QList<QEvent::Type>;

namespace {

/// Notes its events of the left button, and answers what it is told to.
class Surface : public kx::View {
public:
    explicit Surface(QWidget *parent = nullptr)
        : kx::View(parent)
    {
    }

    Types seen;
    bool movesWindow = true;
    bool isHit = true;
    std::function<void()> onPress;

    [[nodiscard]] bool mouseDownCanMoveWindow() const override { return movesWindow; }
    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override
    {
        return isHit ? kx::View::hitTest(point) : nullptr;
    }
    void mouseDown(kx::Event *) override
    {
        seen << EventType::LeftMouseDown;
        if (onPress)
            onPress();
    }
    void mouseDragged(kx::Event *) override { seen << EventType::LeftMouseDragged; }
    void mouseUp(kx::Event *) override { seen << EventType::LeftMouseUp; }
};

class SurfaceWindow : public kx::Window {
public:
    explicit SurfaceWindow(kx::WindowStyleMask style = kx::WindowStyle::Borderless)
        : kx::Window(QRectF(100, 200, 400, 300), style)
        , surface(new Surface)
    {
        setCentralWidget(surface);
        setMovableByWindowBackground(true);
    }

    Surface *const surface;
    Types seen;
    std::function<void()> onMove;

    void sendEvent(kx::Event *event) override
    {
        seen << event->type();
        kx::Window::sendEvent(event);
    }
    [[nodiscard]] bool canBecomeKeyWindow() const override { return true; }

protected:
    void moveEvent(QMoveEvent *event) override
    {
        kx::Window::moveEvent(event);
        if (onMove)
            onMove();
    }
};

// All events of a drag are there before the window sees the first of them. If it moves, it moves all the way.
void drag(kx::Window &window, const QPointF &from, const QPointF &way, int steps = 4)
{
    const QPointer<kx::Window> alive(&window);
    Pointer pointer(window);
    pointer.moveTo(from);
    const QRect place = window.geometry();
    pointer.queue();
    pointer.press();
    for (int i = 0; i < steps; ++i)
        pointer.moveBy(way / steps);
    pointer.release();
    pointer.deliver();
    if (alive && window.geometry() != place)
        settleGeometry(window, place.translated(way.toPoint()));
}

const QPointF middle(200, 150);
const QPointF way(60, 40);
const QPointF wayUp(60, -40); // the same with y growing upwards

} // namespace

/// Windows that are movable by their background.
class WindowBackgroundTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void isOffAtFirst();
    void tellsOfItsProperty();
    void aDragMovesTheWindow();
    void aDragMovesADecoratedWindow();
    void followsThePointerFromThePress();
    void aSlowHandlerDoesNotLag();
    void aClickReachesTheView();
    void aSmallMoveReachesTheView();
    void aDoubleClickReachesTheView();
    void whatComesAfterADragReachesTheView();

    void asksWhatIsHit_data();
    void asksWhatIsHit();
    void asksWhoGrabsTheMouse();
    void otherButtonsMoveNothing();
    void aSecondButtonMovesNothing();
    void staysWhereItIsInTheStates_data();
    void staysWhereItIsInTheStates();
    void aPressThatNoDeviceMadeReachesTheViewAtOnce();

    void anEndThatIsNoReleaseTakesThePressBack_data();
    void anEndThatIsNoReleaseTakesThePressBack();
    void theWindowMayBeDeleted_data();
    void theWindowMayBeDeleted();

private:
    static void show(QWidget &window)
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCoreApplication::processEvents();
    }

    std::unique_ptr<SurfaceWindow> m_window;
};

void WindowBackgroundTest::init()
{
    failOnWindowWarnings();
    m_window = std::make_unique<SurfaceWindow>();
    show(*m_window);
    Pointer(*m_window).release(); // where the test before kept the button down
    m_window->seen.clear();
    m_window->surface->seen.clear();
}

void WindowBackgroundTest::isOffAtFirst()
{
    QVERIFY(!kx::Window().isMovableByWindowBackground());
    m_window->setMovableByWindowBackground(false);
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, way, 1);
    QCOMPARE(m_window->frame(), frame);
    QCOMPARE(m_window->surface->seen,
        (Types{EventType::LeftMouseDown, EventType::LeftMouseDragged, EventType::LeftMouseUp}));
}

void WindowBackgroundTest::tellsOfItsProperty()
{
    kx::Window window;
    const QSignalSpy changed(&window, &kx::Window::movableByWindowBackgroundChanged);
    QVERIFY(window.setProperty("movableByWindowBackground", true));
    QVERIFY(window.isMovableByWindowBackground());
    QCOMPARE(changed, (QList<QVariantList>{{true}}));
    window.setMovableByWindowBackground(true);
    QCOMPARE(changed.size(), 1);
}

void WindowBackgroundTest::aDragMovesTheWindow()
{
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, way);
    QCOMPARE(m_window->frame(), frame.translated(wayUp));
    QCOMPARE(m_window->surface->seen, Types{});
    QTRY_COMPARE(m_window->seen, (Types{EventType::MouseMoved, EventType::LeftMouseDown, EventType::LeftMouseUp}));
    drag(*m_window, middle, -way);
    QCOMPARE(m_window->frame(), frame);
}

void WindowBackgroundTest::aDragMovesADecoratedWindow()
{
    m_window = std::make_unique<SurfaceWindow>(kx::WindowStyle::Titled | kx::WindowStyle::Resizable);
    show(*m_window);
    QTRY_VERIFY(m_window->frameGeometry() != m_window->geometry());
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, way);
    QCOMPARE(m_window->frame(), frame.translated(wayUp));
}

void WindowBackgroundTest::followsThePointerFromThePress()
{
    const QRectF frame = m_window->frame();
    QList<QPointF> places;
    m_window->onMove = [&] { places << m_window->frame().topLeft() - frame.topLeft(); };
    const double far = QApplication::startDragDistance();
    drag(*m_window, middle, QPointF(far + 2, 0), int(far) + 2); // by one each time
    // (A window system may take it back and forth afterwards.)
    QCOMPARE(places.mid(0, 3), (QList{QPointF(far, 0), QPointF(far + 1, 0), QPointF(far + 2, 0)}));
    drag(*m_window, middle, QPointF(-far - 1, 0), 1);
    drag(*m_window, middle, QPointF(-1.5 * far, -1.5 * far), 3);
    QCOMPARE(m_window->frame().topLeft() - frame.topLeft(), QPointF(1 - 1.5 * far, 1.5 * far));
}

void WindowBackgroundTest::aSlowHandlerDoesNotLag()
{
    // The pointer goes on while the window is busy, so that events pile up which were made before it moved.
    Pointer pointer(*m_window);
    pointer.moveTo(middle);
    const QRect place = m_window->geometry();
    const QPointF start = pointer.globalPosition();
    int moves = 0;
    m_window->onMove = [&] {
        if (++moves < 20) {
            for (int i = 0; i < 3; ++i)
                pointer.moveBy(QPointF(5, 3));
        } else if (moves == 20) {
            pointer.release();
        }
    };
    pointer.queue();
    pointer.press();
    pointer.moveBy(QPointF(20, 0));
    pointer.deliver();
    QVERIFY(moves >= 20);
    const QRect target = place.translated((pointer.globalPosition() - start).toPoint());
    settleGeometry(*m_window, target);
    QCOMPARE(m_window->geometry(), target);
}

void WindowBackgroundTest::aClickReachesTheView()
{
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, {}, 0);
    QTRY_COMPARE(m_window->surface->seen, (Types{EventType::LeftMouseDown, EventType::LeftMouseUp}));
    QTRY_COMPARE(m_window->seen, (Types{EventType::MouseMoved, EventType::LeftMouseDown, EventType::LeftMouseUp}));
    QCOMPARE(m_window->frame(), frame);
}

void WindowBackgroundTest::aSmallMoveReachesTheView()
{
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, QPointF(QApplication::startDragDistance() - 1, 0), 3);
    QTRY_COMPARE(m_window->surface->seen,
        (Types{EventType::LeftMouseDown, EventType::LeftMouseDragged, EventType::LeftMouseDragged,
            EventType::LeftMouseDragged, EventType::LeftMouseUp}));
    QCOMPARE(m_window->frame(), frame);
}

void WindowBackgroundTest::aDoubleClickReachesTheView()
{
    Pointer pointer(*m_window);
    pointer.queue();
    pointer.doubleClick(middle);
    pointer.deliver();
    QTRY_COMPARE(m_window->surface->seen,
        (Types{EventType::LeftMouseDown, EventType::LeftMouseUp, EventType::LeftMouseDown, EventType::LeftMouseUp}));
}

void WindowBackgroundTest::whatComesAfterADragReachesTheView()
{
    auto *button = new kx::Button(m_window->surface);
    button->setGeometry(300, 200, 50, 50);
    button->show();
    const QSignalSpy clicked(button, &kx::Button::clicked);
    drag(*m_window, middle, way);
    drag(*m_window, QPointF(310, 210), {}, 0);
    QTRY_COMPARE(clicked.size(), 1);
    drag(*m_window, middle, {}, 0);
    QTRY_COMPARE(m_window->surface->seen, (Types{EventType::LeftMouseDown, EventType::LeftMouseUp}));
}

enum class Hit { View, Opaque, PlainInView, ViewInPlain, OpaqueInView, ThroughView, Button, Window, PlainContent };

void WindowBackgroundTest::asksWhatIsHit_data()
{
    QTest::addColumn<Hit>("hit");
    QTest::addColumn<bool>("moves");
    QTest::newRow("a view that lets it") << Hit::View << true;
    QTest::newRow("a view that does not") << Hit::Opaque << false;
    QTest::newRow("a plain widget in a view") << Hit::PlainInView << false;
    QTest::newRow("a view in a plain widget") << Hit::ViewInPlain << true;
    QTest::newRow("a view that does not, in one that does") << Hit::OpaqueInView << false;
    QTest::newRow("beneath a view that is not hit") << Hit::ThroughView << true;
    QTest::newRow("a button") << Hit::Button << false;
    QTest::newRow("the window itself") << Hit::Window << true;
    QTest::newRow("a plain widget") << Hit::PlainContent << false;
}

void WindowBackgroundTest::asksWhatIsHit()
{
    QFETCH(Hit, hit);
    QFETCH(bool, moves);
    const auto place = [](QWidget *widget) {
        widget->setGeometry(150, 100, 100, 100);
        widget->show();
    };
    switch (hit) {
    case Hit::View: break;
    case Hit::Opaque: m_window->surface->movesWindow = false; break;
    case Hit::PlainInView: place(new LoggingWidget(m_window->surface)); break;
    case Hit::ViewInPlain: {
        auto *plain = new QWidget;
        place(new Surface(plain));
        m_window->setCentralWidget(plain);
        break;
    }
    case Hit::OpaqueInView: {
        auto *inner = new Surface(m_window->surface);
        inner->movesWindow = false;
        place(inner);
        break;
    }
    case Hit::ThroughView: {
        auto *inner = new Surface(m_window->surface);
        inner->movesWindow = false;
        inner->isHit = false;
        place(inner);
        break;
    }
    case Hit::Button: place(new kx::Button(m_window->surface)); break;
    case Hit::Window: delete m_window->takeCentralWidget(); break;
    case Hit::PlainContent: m_window->setCentralWidget(new QWidget); break;
    }
    QCoreApplication::processEvents();
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, way);
    QCOMPARE(m_window->frame(), moves ? frame.translated(wayUp) : frame);
}

void WindowBackgroundTest::asksWhoGrabsTheMouse()
{
    auto *grabber = new LoggingWidget(m_window->surface);
    grabber->show();
    grabber->grabMouse();
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, way, 1);
    grabber->releaseMouse();
    QCOMPARE(m_window->frame(), frame);
    QTRY_COMPARE(grabber->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void WindowBackgroundTest::otherButtonsMoveNothing()
{
    const QRectF frame = m_window->frame();
    Pointer pointer(*m_window);
    pointer.moveTo(middle);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        pointer.press(button);
        pointer.moveBy(way);
        pointer.release(button);
    }
    QCOMPARE(m_window->frame(), frame);
}

void WindowBackgroundTest::aSecondButtonMovesNothing()
{
    const QRectF frame = m_window->frame();
    Pointer pointer(*m_window);
    pointer.moveTo(middle);
    pointer.press(Qt::RightButton);
    pointer.press(Qt::LeftButton);
    pointer.moveBy(way);
    pointer.release(Qt::LeftButton);
    pointer.release(Qt::RightButton);
    QCOMPARE(m_window->frame(), frame);
    QCOMPARE(m_window->surface->seen,
        (Types{EventType::LeftMouseDown, EventType::LeftMouseDragged, EventType::LeftMouseUp}));
}

void WindowBackgroundTest::staysWhereItIsInTheStates_data()
{
    QTest::addColumn<Qt::WindowState>("state");
    QTest::newRow("maximized") << Qt::WindowMaximized;
    QTest::newRow("full screen") << Qt::WindowFullScreen;
}

void WindowBackgroundTest::staysWhereItIsInTheStates()
{
    QFETCH(Qt::WindowState, state);
    const QSize size = m_window->size();
    m_window->setWindowState(state);
    QTRY_VERIFY(m_window->size() != size && m_window->windowState() == state);
    QCoreApplication::processEvents();
    m_window->surface->seen.clear();
    const QRectF frame = m_window->frame();
    drag(*m_window, middle, way, 1);
    QCOMPARE(m_window->frame(), frame);
    QVERIFY(m_window->windowState() == state);
    QCOMPARE(m_window->surface->seen,
        (Types{EventType::LeftMouseDown, EventType::LeftMouseDragged, EventType::LeftMouseUp}));
}

void WindowBackgroundTest::aPressThatNoDeviceMadeReachesTheViewAtOnce()
{
    QTest::mousePress(m_window->surface, Qt::LeftButton, {}, middle.toPoint());
    QCOMPARE(m_window->surface->seen, Types{EventType::LeftMouseDown});
    QTest::mouseRelease(m_window->surface, Qt::LeftButton, {}, middle.toPoint());
}

void WindowBackgroundTest::anEndThatIsNoReleaseTakesThePressBack_data()
{
    QTest::addColumn<bool>("dragged");
    QTest::newRow("before a drag") << false;
    QTest::newRow("in a drag") << true;
}

void WindowBackgroundTest::anEndThatIsNoReleaseTakesThePressBack()
{
    QFETCH(bool, dragged);
    const QRect place = m_window->geometry();
    Pointer pointer(*m_window);
    pointer.moveTo(middle);
    QTimer::singleShot(0, m_window.get(), [&] {
        if (dragged)
            pointer.moveBy(way);
        pointer.moveWithButtons(QPointF(1, 0), Qt::NoButton); // the button is up, unnoticed
    });
    pointer.press();
    QCOMPARE(m_window->surface->seen, dragged ? Types{} : Types{EventType::LeftMouseDown});
    pointer.release();
    QVERIFY(!m_window->surface->seen.contains(EventType::LeftMouseUp));

    m_window->setGeometry(place);
    settleGeometry(*m_window, place);
    m_window->surface->seen.clear();
    drag(*m_window, middle, {}, 0);
    QTRY_COMPARE(m_window->surface->seen, (Types{EventType::LeftMouseDown, EventType::LeftMouseUp}));
}

enum class Delete { WhileItWaits, WhileItMoves, InThePress };

void WindowBackgroundTest::theWindowMayBeDeleted_data()
{
    QTest::addColumn<Delete>("when");
    QTest::newRow("while it waits") << Delete::WhileItWaits;
    QTest::newRow("while it moves") << Delete::WhileItMoves;
    QTest::newRow("when the view gets the press") << Delete::InThePress;
}

void WindowBackgroundTest::theWindowMayBeDeleted()
{
    QFETCH(Delete, when);
    const QPointer<SurfaceWindow> alive(m_window.get());
    Pointer pointer(*m_window);
    pointer.moveTo(middle);
    pointer.queue();
    pointer.press();
    switch (when) {
    case Delete::WhileItWaits: QTimer::singleShot(0, this, [this] { m_window.reset(); }); break;
    case Delete::WhileItMoves:
        // Not at once: Qt goes on with a widget that has moved.
        m_window->onMove = [this] { QTimer::singleShot(0, this, [this] { m_window.reset(); }); };
        pointer.moveBy(way);
        break;
    case Delete::InThePress:
        m_window->surface->onPress = [this] { m_window.reset(); };
        pointer.moveBy(QPointF(1, 0));
        pointer.release();
        break;
    }
    pointer.deliver();
    QTRY_VERIFY(!alive);
}

QTEST_MAIN(WindowBackgroundTest)
#include "WindowBackgroundTest.moc"
