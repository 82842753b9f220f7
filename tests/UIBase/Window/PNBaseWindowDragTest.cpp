// SPDX-License-Identifier: MIT
#include "BaseWindowFixture.h"
#include "Support/WindowWarnings.h"

#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>

#include <memory>

using namespace Qt::StringLiterals;
using QtTypes = QList<QEvent::Type>;

/// What happens from a press in a movable area to its release.
class PNBaseWindowDragTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void movesByTheWayOfThePointer();
    void movesByFractionsWithoutDrifting();
    void movesInADecoratedWindow();
    void aDragHandsThePressOnOnceAfterTheMove();
    void aClickHandsThePressOnTwice();
    void aSecondClickIsADoubleClickToTheViews();
    void theBlockIsCalledOnceBeforeTheWait();
    void handsThePressOnWhereItWasMade();

    void resizesInTheCorner();
    void resizesTheSpecialAreaToo();
    void theSizeStaysWithinItsLimits_data();
    void theSizeStaysWithinItsLimits();
    void theLimitsOfTheLayoutKeepTheTopEdge();
    void thePressDecidesWhetherItResizes();

    void aSlowHandlerLagsByAPixelAtMost();
    void theNextRunStartsAfresh();
    void handlesOneStepByItself();
    void aMovableBackgroundChangesNothingInItsAreas();

    void anEndThatIsNoReleaseTakesThePressBack_data();
    void anEndThatIsNoReleaseTakesThePressBack();
    void theWindowMayBeDeletedInTheRun_data();
    void theWindowMayBeDeletedInTheRun();
    void theApplicationMayQuitInTheRun(); // the last one: no event loop waits afterwards

private:
    std::unique_ptr<TestWindow> m_window;
};

void PNBaseWindowDragTest::init()
{
    failOnWindowWarnings();
    m_window = std::make_unique<TestWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCoreApplication::processEvents();
    makeAllMovable(*m_window);
    Pointer(*m_window->view).release(); // where the test before kept the button down
    m_window->view->entries.clear();
}

void PNBaseWindowDragTest::movesByTheWayOfThePointer()
{
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(200, 150), QPointF(60, 40));
    QCOMPARE(m_window->frame(), frame.translated(60, 40));
    QCOMPARE(m_window->steps, 4);
    dragBy(*m_window, QPointF(200, 150), QPointF(-90, -20), 7);
    QCOMPARE(m_window->frame(), frame.translated(-30, 20));
}

void PNBaseWindowDragTest::movesByFractionsWithoutDrifting()
{
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(200, 150), QPointF(10.6, 5.3), 100);
    QCOMPARE(m_window->frame(), frame.translated(11, 5));
}

void PNBaseWindowDragTest::movesInADecoratedWindow()
{
    m_window = std::make_unique<TestWindow>(kx::WindowStyle::Titled | kx::WindowStyle::Resizable);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTRY_VERIFY(m_window->frameGeometry() != m_window->geometry());
    makeAllMovable(*m_window);
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(200, 150), QPointF(60, 40));
    QCOMPARE(m_window->frame(), frame.translated(60, 40));
}

void PNBaseWindowDragTest::aDragHandsThePressOnOnceAfterTheMove()
{
    const QRectF frame = m_window->frame();
    m_window->view->handler = [&](QEvent &event) {
        if (event.type() == QEvent::MouseButtonPress)
            QCOMPARE(m_window->frame(), frame.translated(30, 0));
    };
    dragBy(*m_window, QPointF(200, 150), QPointF(30, 0), 3);
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void PNBaseWindowDragTest::aClickHandsThePressOnTwice()
{
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(200, 150), QPointF(), 0);
    QTRY_COMPARE(m_window->view->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->frame(), frame);
    QCOMPARE(m_window->steps, 0);
    for (const LoggingWidget::Entry &entry : m_window->view->entries)
        QCOMPARE(entry.position, m_window->fromTop(QPointF(200, 150)));
}

void PNBaseWindowDragTest::aSecondClickIsADoubleClickToTheViews()
{
    Pointer pointer(*m_window->view);
    pointer.queue();
    pointer.doubleClick(m_window->fromTop(QPointF(200, 150)));
    pointer.deliver();
    QTRY_COMPARE(m_window->view->clicks(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
            QEvent::MouseButtonDblClick, QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}));
    QCOMPARE(m_window->taken, 2);
}

void PNBaseWindowDragTest::theBlockIsCalledOnceBeforeTheWait()
{
    QStringList calls;
    QPointF location;
    m_window->onNativeEatEvent([&](kx::Event *event) {
        QCOMPARE(event->type(), kx::EventType::LeftMouseDown);
        location = event->locationInWindow();
        calls << u"block"_qs;
    });
    QVERIFY(m_window->onNativeEatEventBlock());
    connect(m_window.get(), &PNBaseWindow::nativeEatEvent, this, [&] { calls << u"signal"_qs; });
    m_window->atStep = [&] { calls << u"step"_qs; };
    dragBy(*m_window, QPointF(200, 150), QPointF(10, 0), 2);
    QCOMPARE(calls, (QStringList{u"block"_qs, u"signal"_qs, u"step"_qs, u"step"_qs}));
    QCOMPARE(location, QPointF(200, 150));
    m_window->setOnNativeEatEventBlock({});
    dragBy(*m_window, QPointF(200, 150), QPointF(10, 0), 1);
    QCOMPARE(calls.mid(4), (QStringList{u"signal"_qs, u"step"_qs}));
}

void PNBaseWindowDragTest::handsThePressOnWhereItWasMade()
{
    auto *inner = new LoggingWidget(m_window->view);
    inner->setGeometry(180, 130, 40, 40);
    inner->show();
    dragBy(*m_window, QPointF(200, 150), QPointF(100, 0));
    QTRY_COMPARE(inner->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(inner->entries.first().position, QPointF(20, 19));
    QCOMPARE(inner->entries.last().position, QPointF(20, 19)); // the window went with the pointer
}

void PNBaseWindowDragTest::resizesInTheCorner()
{
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(395, 5), QPointF(30, -40));
    QCOMPARE(m_window->frame(), QRectF(frame.x(), frame.y() - 40, 430, 340));
    makeAllMovable(*m_window); // areas do not follow the size
    dragBy(*m_window, QPointF(425, 5), QPointF(-130, 90), 9);
    QCOMPARE(m_window->frame(), QRectF(frame.x(), frame.y() + 50, 300, 250));
    QCOMPARE(m_window->frame().bottom(), frame.bottom()); // the top edge, upwards
}

void PNBaseWindowDragTest::resizesTheSpecialAreaToo()
{
    const QRectF frame = m_window->frame();
    m_window->setSpecialMovableRect(QRectF(390, 0, 10, 10));
    dragBy(*m_window, QPointF(395, 5), QPointF(30, -40));
    QCOMPARE(m_window->frame(), QRectF(frame.x(), frame.y() - 40, 430, 340));
    m_window->setSpecialMovableRect(QRectF(0, 100, 10, 10));
    dragBy(*m_window, QPointF(425, 5), QPointF(30, -40)); // the corner is not movable now
    QCOMPARE(m_window->frame().size(), QSizeF(430, 340));
}

void PNBaseWindowDragTest::theSizeStaysWithinItsLimits_data()
{
    QTest::addColumn<QPointF>("way");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("within") << QPointF(20, -20) << QSizeF(420, 320);
    QTest::newRow("too wide") << QPointF(200, 0) << QSizeF(500, 300);
    QTest::newRow("too high") << QPointF(0, -200) << QSizeF(400, 380);
    QTest::newRow("too large") << QPointF(500, -400) << QSizeF(500, 380);
    QTest::newRow("too narrow") << QPointF(-300, 0) << QSizeF(350, 300);
    QTest::newRow("too low") << QPointF(0, 290) << QSizeF(400, 250);
    QTest::newRow("too small") << QPointF(-600, 500) << QSizeF(350, 250);
}

void PNBaseWindowDragTest::theSizeStaysWithinItsLimits()
{
    QFETCH(QPointF, way);
    QFETCH(QSizeF, size);
    m_window->setMinSize(QSizeF(350, 250));
    m_window->setMaxSize(QSizeF(500, 380));
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(395, 5), way);
    QCOMPARE(m_window->frame().size(), size);
    QCOMPARE(m_window->frame().topLeft(), QPointF(frame.x(), frame.bottom() - size.height()));
}

void PNBaseWindowDragTest::theLimitsOfTheLayoutKeepTheTopEdge()
{
    m_window->view->setMinimumSize(320, 260);
    QTRY_COMPARE(m_window->minSize(), QSizeF(320, 260));
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(395, 5), QPointF(-200, 200));
    QCOMPARE(m_window->frame(), QRectF(frame.x(), frame.y() + 40, 320, 260));
}

void PNBaseWindowDragTest::thePressDecidesWhetherItResizes()
{
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(379, 5), QPointF(10, 0)); // one short of the corner
    QCOMPARE(m_window->frame(), frame.translated(10, 0));
    dragBy(*m_window, QPointF(380, 19), QPointF(-100, 0)); // leaves the corner at once
    QCOMPARE(m_window->frame().size(), QSizeF(300, 300));
    dragBy(*m_window, QPointF(280, 20), QPointF(10, 0)); // just above the corner
    QCOMPARE(m_window->frame().size(), QSizeF(300, 300));
}

void PNBaseWindowDragTest::aSlowHandlerLagsByAPixelAtMost()
{
    // The pointer goes on while the window is busy, so that events pile up which were made before it moved.
    Pointer pointer(*m_window->view);
    pointer.moveTo(m_window->fromTop(QPointF(200, 150)));
    QPointF fromPointer;
    int steps = 0;
    m_window->atStep = [&] {
        if (++steps < 20) {
            for (int i = 0; i < 3; ++i)
                pointer.moveBy(QPointF(5, 3));
        } else if (steps == 20) {
            pointer.release();
        }
    };
    const QRectF frame = m_window->frame();
    const QPointF start = pointer.globalPosition();
    pointer.queue();
    pointer.press();
    pointer.moveBy(QPointF(5, 3));
    pointer.deliver();
    QVERIFY(steps > 20);
    const QPointF way = pointer.globalPosition() - start;
    fromPointer = m_window->frame().topLeft() - frame.topLeft() - QPointF(way.x(), -way.y());
    QVERIFY2(fromPointer.manhattanLength() <= 1, qPrintable(u"off by %1 px"_qs.arg(fromPointer.manhattanLength())));
}

void PNBaseWindowDragTest::theNextRunStartsAfresh()
{
    dragBy(*m_window, QPointF(395, 5), QPointF(30, -40));
    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(200, 150), QPointF(10, 0));
    QCOMPARE(m_window->frame(), frame.translated(10, 0));
    m_window->view->entries.clear();
    dragBy(*m_window, QPointF(200, 150), QPointF(), 0); // a click again, after a drag
    QTRY_COMPARE(m_window->view->clicks().count(QEvent::MouseButtonPress), 2);
}

void PNBaseWindowDragTest::handlesOneStepByItself()
{
    dragBy(*m_window, QPointF(200, 150), QPointF(10, 0));
    const QRectF frame = m_window->frame();
    m_window->handleMoveOrResize(nullptr);
    QCOMPARE(m_window->frame(), frame);
    // From the press of the latest run, which was 10 to the left.
    kx::Event drag(kx::EventType::LeftMouseDragged, m_window.get(), frame.topLeft() + QPointF(200 - 10 + 25, 150 + 5));
    m_window->handleMoveOrResize(&drag);
    QCOMPARE(m_window->frame(), frame.translated(-10 + 25, 5));
}

void PNBaseWindowDragTest::aMovableBackgroundChangesNothingInItsAreas()
{
    class Counter : public kx::View {
    public:
        using kx::View::View;
        void mouseDown(kx::Event *) override { ++presses; }
        void mouseUp(kx::Event *) override { ++releases; }
        int presses = 0;
        int releases = 0;
    };
    auto *view = new Counter(m_window->view);
    view->setGeometry(m_window->view->rect());
    view->show();
    m_window->setMovableByWindowBackground(true);
    m_window->updateMoveIncludeRect({QRectF(0, 0, 200, 300)});

    const QRectF frame = m_window->frame();
    dragBy(*m_window, QPointF(100, 150), QPointF(), 0);
    QTRY_COMPARE(view->releases, 1);
    QCOMPARE(view->presses, 2);
    dragBy(*m_window, QPointF(100, 150), QPointF(3, 0), 3);
    QTRY_COMPARE(view->releases, 2);
    QCOMPARE(view->presses, 3);
    QCOMPARE(m_window->frame(), frame.translated(3, 0));

    m_window->steps = 0;
    dragBy(*m_window, QPointF(300, 150), QPointF(), 0);
    QTRY_COMPARE(view->releases, 3);
    QCOMPARE(view->presses, 4);
    const QRect place = m_window->geometry();
    dragBy(*m_window, QPointF(300, 150), QPointF(40, 0));
    settleGeometry(*m_window, place.translated(40, 0));
    QCOMPARE(m_window->frame(), frame.translated(43, 0));
    QCOMPARE(view->presses, 4);
    QCOMPARE(m_window->taken, 2);
    QCOMPARE(m_window->steps, 0);
}

enum class End { Hide, Close, Dialog, OtherWindow, LostRelease };

void PNBaseWindowDragTest::anEndThatIsNoReleaseTakesThePressBack_data()
{
    QTest::addColumn<End>("end");
    QTest::addColumn<bool>("dragged");
    for (const bool dragged : {false, true}) {
        const char *when = dragged ? "after a drag" : "after the press";
        QTest::addRow("hidden %s", when) << End::Hide << dragged;
        QTest::addRow("closed %s", when) << End::Close << dragged;
        QTest::addRow("a modal dialog %s", when) << End::Dialog << dragged;
        QTest::addRow("another window gets the keyboard %s", when) << End::OtherWindow << dragged;
        QTest::addRow("the button is up unnoticed %s", when) << End::LostRelease << dragged;
    }
}

void PNBaseWindowDragTest::anEndThatIsNoReleaseTakesThePressBack()
{
    QFETCH(End, end);
    QFETCH(bool, dragged);
    auto *button = new QPushButton(m_window->view);
    button->setGeometry(180, 130, 60, 40);
    button->show();
    const QSignalSpy pressed(button, &QPushButton::pressed);
    const QSignalSpy clicked(button, &QPushButton::clicked);
    QDialog dialog;
    dialog.setModal(true);
    QWidget other;
    other.setGeometry(700, 100, 100, 100);

    Pointer pointer(*m_window->view);
    pointer.moveTo(m_window->fromTop(QPointF(200, 150)));
    const QRectF frame = m_window->frame();
    const auto finish = [&] {
        switch (end) {
        case End::Hide: m_window->hide(); break;
        case End::Close: m_window->close(); break;
        case End::Dialog: dialog.show(); break;
        case End::OtherWindow:
            other.show();
            other.activateWindow();
            break;
        case End::LostRelease: pointer.moveWithButtons(QPointF(1, 0), Qt::NoButton); break;
        }
    };
    if (dragged) {
        m_window->atStep = [&] { QTimer::singleShot(0, m_window.get(), finish); };
        QTimer::singleShot(0, m_window.get(), [&] { pointer.moveBy(QPointF(10, 0)); });
    } else {
        QTimer::singleShot(0, m_window.get(), finish);
    }
    pointer.press();
    QCOMPARE(m_window->steps, int(dragged));
    QCOMPARE(m_window->frame(), frame.translated(dragged ? 10 : 0, 0));
    QVERIFY(pressed.size() <= 1);
    QVERIFY(!button->isDown());
    for (QWidget *window : {static_cast<QWidget *>(&dialog), &other}) {
        if (window->isVisible())
            QVERIFY(QTest::qWaitForWindowActive(window));
        window->hide();
    }
    pointer.release();
    QCOMPARE(clicked.size(), 0);

    // And nothing is left of it. A window manager may still be busy with the other window and take the keyboard away.
    m_window->show();
    m_window->atStep = nullptr;
    const auto drags = [&] {
        m_window->activateWindow();
        m_window->setFrame(frame, true);
        m_window->view->entries.clear();
        dragBy(*m_window, QPointF(100, 50), QPointF(0, 10));
        return QTest::qWaitFor(
            [&] {
                return m_window->view->clicks() == QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease};
            },
            500);
    };
    QTRY_VERIFY(drags());
}

enum class Delete { InTheBlock, InTheSignal, WhileItWaits, InThePress };

void PNBaseWindowDragTest::theWindowMayBeDeletedInTheRun_data()
{
    QTest::addColumn<Delete>("when");
    QTest::newRow("in the block") << Delete::InTheBlock;
    QTest::newRow("in the signal") << Delete::InTheSignal;
    QTest::newRow("while it waits") << Delete::WhileItWaits;
    QTest::newRow("when the view gets the press") << Delete::InThePress;
}

void PNBaseWindowDragTest::theWindowMayBeDeletedInTheRun()
{
    QFETCH(Delete, when);
    const QPointer<TestWindow> alive(m_window.get());
    const auto destroy = [this] { m_window.reset(); };
    Pointer pointer(*m_window->view);
    pointer.moveTo(m_window->fromTop(QPointF(200, 150)));
    switch (when) {
    case Delete::InTheBlock: m_window->onNativeEatEvent([=](kx::Event *) { destroy(); }); break;
    case Delete::InTheSignal: connect(m_window.get(), &PNBaseWindow::nativeEatEvent, this, destroy); break;
    case Delete::WhileItWaits: QTimer::singleShot(0, this, destroy); break;
    case Delete::InThePress:
        m_window->view->handler = [&](QEvent &event) {
            if (event.type() == QEvent::MouseButtonPress && m_window)
                m_window.release()->deleteLater();
        };
        QTimer::singleShot(0, this, [&] { pointer.release(); });
        break;
    }
    pointer.press();
    QTRY_VERIFY(!alive);
}

void PNBaseWindowDragTest::theApplicationMayQuitInTheRun()
{
    Pointer pointer(*m_window->view);
    pointer.moveTo(m_window->fromTop(QPointF(200, 150)));
    m_window->view->entries.clear();
    QTimer::singleShot(0, this, [&] {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        pointer.press();
    });
    QTimer::singleShot(10000, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::UngrabMouse}));
    pointer.release();
}

QTEST_MAIN(PNBaseWindowDragTest)
#include "PNBaseWindowDragTest.moc"
