// SPDX-License-Identifier: MIT
#include "TrackedView.h"

#include <KXFoundation/Platform/UI/TrackingArea.h>

#include "Support/Activation.h"
#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"

#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>

#include <malloc.h>

using namespace Qt::StringLiterals;

class TrackingAreaTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void keepsWhatItWasMadeOf();
    void entersMovesAndExits();
    void tellsOfWhatItWasAskedFor_data();
    void tellsOfWhatItWasAskedFor();
    void exitsBeforeItEnters();
    void entersFromTheOutsideAndExitsFromTheInside();
    void tellsWhereThePointerIs();
    void isARectangleOfItsView_data();
    void isARectangleOfItsView();
    void coversEveryPixelAndNoMore();
    void takesTheVisiblePartWhateverRectangleWasGiven();
    void endsWhereTheViewEnds();
    void assumesThatARestingPointerIsInside();
    void entersARestingPointerWithTheNextMoveOtherwise();
    void entersAfterBeingAddedElsewhere();
    void waitsForTheEndOfADrag();
    void followsADragWhereAsked();
    void theReleaseComesBeforeWhatItCatchesUpWith();
    void needsAnActiveApplication();
    void exitsLateWhenTheApplicationIsActiveAgain();
    void needsTheKeyWindow();
    void needsTheFocus();
    void isNeverActiveUnlessAskedFor();
    void keepsCopiesOfOneArea();
    void ignoresWhatItDoesNotHave();
    void tellsAnotherOwner();
    void exitsWhenThePointerLeavesTheWindow();
    void exitsWhenThePointerIsInAnotherWindow();
    void exitsBeneathAModalWindow();
    void isTrackedThroughACoveringNeighbour();
    void exitsAfterBeingHidden();
    void isForgottenWhenRemoved();
    void movesOverManyViewsTakeNoMemory();
    void worksWithinAWindowThatTakesPartInEvents();

private:
    TrackedView *add(const QString &name, const QRect &geometry, QWidget *parent = nullptr);
    QStringList takeLog() { return std::exchange(m_log, {}); }

    std::unique_ptr<QMainWindow> m_window;
    QStringList m_log;
};

void TrackingAreaTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = makeWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_log.clear();
}

void TrackingAreaTest::cleanup()
{
    m_window.reset();
}

TrackedView *TrackingAreaTest::add(const QString &name, const QRect &geometry, QWidget *parent)
{
    auto *view = new TrackedView(name, m_log, parent ? parent : m_window->centralWidget());
    view->setGeometry(geometry);
    view->show();
    return view;
}

void TrackingAreaTest::keepsWhatItWasMadeOf()
{
    kx::View owner;
    const kx::TrackingArea area(QRectF(1, 2, 3, 4), kx::TrackingOptions(0x347), &owner, u"info"_qs);
    QCOMPARE(area.rect(), QRectF(1, 2, 3, 4));
    QCOMPARE(area.options().toInt(), 0x347);
    QCOMPARE(area.owner(), &owner);
    QCOMPARE(area.userInfo(), QVariant(u"info"_qs));
}

void TrackingAreaTest::entersMovesAndExits()
{
    add(u"a"_qs, QRect(10, 10, 100, 50))->track(0x347);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    QCOMPARE(takeLog(), QStringList());
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a moved"_qs});
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    pointer.moveTo(QPointF(201, 20));
    QCOMPARE(takeLog(), QStringList());
}

void TrackingAreaTest::tellsOfWhatItWasAskedFor_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QStringList>("log");
    QTest::newRow("border") << 0x281 << QStringList{u"a entered"_qs, u"a exited"_qs};
    QTest::newRow("moves") << 0x282 << QStringList{u"a moved"_qs, u"a moved"_qs};
    QTest::newRow("cursor") << 0x284 << QStringList{u"a cursor"_qs};
    QTest::newRow("nothing") << 0x280 << QStringList();
}

void TrackingAreaTest::tellsOfWhatItWasAskedFor()
{
    QFETCH(int, options);
    add(u"a"_qs, QRect(10, 10, 100, 50))->track(options);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(21, 20));
    pointer.moveTo(QPointF(200, 20));
    QTEST(m_log, "log");
}

void TrackingAreaTest::exitsBeforeItEnters()
{
    add(u"a"_qs, QRect(100, 10, 50, 50))->track(always);
    add(u"b"_qs, QRect(50, 10, 50, 50))->track(always);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(120, 20));
    takeLog();
    pointer.moveTo(QPointF(70, 20));
    QCOMPARE(takeLog(), (QStringList{u"a exited"_qs, u"b entered"_qs, u"b cursor"_qs, u"b moved"_qs}));
    pointer.moveTo(QPointF(120, 20));
    QCOMPARE(takeLog(), (QStringList{u"b exited"_qs, u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
}

void TrackingAreaTest::entersFromTheOutsideAndExitsFromTheInside()
{
    TrackedView *outer = add(u"outer"_qs, QRect(10, 10, 100, 100));
    auto *plain = new QWidget(outer);
    plain->setGeometry(10, 10, 50, 50);
    plain->show();
    TrackedView *inner = add(u"inner"_qs, QRect(0, 0, 20, 20), plain);
    outer->track(0x281);
    inner->track(0x281);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(25, 25));
    pointer.moveTo(QPointF(200, 25));
    QCOMPARE(
        takeLog(), (QStringList{u"outer entered"_qs, u"inner entered"_qs, u"inner exited"_qs, u"outer exited"_qs}));
}

void TrackingAreaTest::tellsWhereThePointerIs()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->track(always);
    Pointer pointer(*m_window);
    for (const QString &entry : {u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}) {
        QPointF location;
        view->handler = [&](const QString &noted) {
            if (noted == entry)
                location = view->location;
        };
        pointer.moveTo(QPointF(200, 20));
        pointer.moveTo(QPointF(20, 30));
        const double pixel = 1 / m_window->devicePixelRatioF();
        QCOMPARE(location, QPointF(10, 50 - 20 - pixel));
    }
}

void TrackingAreaTest::isARectangleOfItsView_data()
{
    QTest::addColumn<bool>("flipped");
    QTest::addColumn<QPointF>("inside");
    QTest::addColumn<QPointF>("outside");
    QTest::newRow("from the bottom") << false << QPointF(5, 45) << QPointF(5, 5);
    QTest::newRow("from the top") << true << QPointF(5, 5) << QPointF(5, 45);
}

void TrackingAreaTest::isARectangleOfItsView()
{
    QFETCH(bool, flipped);
    QFETCH(QPointF, inside);
    QFETCH(QPointF, outside);
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->flipped = flipped;
    view->track(0x81, QRectF(0, 0, 100, 10));
    Pointer pointer(*view);
    pointer.moveTo(outside);
    QCOMPARE(takeLog(), QStringList());
    pointer.moveTo(inside);
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
    pointer.moveTo(outside);
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingAreaTest::coversEveryPixelAndNoMore()
{
    const double pixel = 1 / m_window->devicePixelRatioF();
    for (const bool flipped : {false, true}) {
        for (const int options : {0x81, 0x281}) {
            TrackedView *view = add(u"a"_qs, QRect(10, 20, 30, 40));
            view->flipped = flipped;
            view->track(options, QRectF(0, 0, 30, 40));
            const auto isInside = [&](double x, double y) {
                Pointer pointer(*m_window);
                pointer.moveTo(QPointF(200, 150));
                takeLog();
                pointer.moveTo(QPointF(x, y));
                return takeLog() == QStringList{u"a entered"_qs};
            };
            QVERIFY(isInside(10, 20));
            QVERIFY(isInside(40 - pixel, 60 - pixel));
            QVERIFY(!isInside(10 - pixel, 30));
            QVERIFY(!isInside(40, 30));
            QVERIFY(!isInside(20, 20 - pixel));
            QVERIFY(!isInside(20, 60));
            delete view;
        }
    }
}

void TrackingAreaTest::takesTheVisiblePartWhateverRectangleWasGiven()
{
    add(u"a"_qs, QRect(10, 10, 100, 50))->track(0x281, QRectF(40, 20, 1, 1));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(11, 11));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::endsWhereTheViewEnds()
{
    add(u"a"_qs, QRect(10, 10, 100, 50))->track(0x81, QRectF(-100, -100, 500, 500));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    QCOMPARE(takeLog(), QStringList());
    pointer.moveTo(QPointF(11, 11));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::assumesThatARestingPointerIsInside()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    view->track(0x381);
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList());
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::entersARestingPointerWithTheNextMoveOtherwise()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    view->track(0x281);
    QCOMPARE(takeLog(), QStringList());
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::entersAfterBeingAddedElsewhere()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(200, 20));
    view->track(0x381);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::waitsForTheEndOfADrag()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x283);
    add(u"b"_qs, QRect(60, 10, 50, 50))->track(0x283);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    pointer.press();
    pointer.moveTo(QPointF(70, 20));
    pointer.moveTo(QPointF(71, 20));
    QCOMPARE(takeLog(), QStringList());
    pointer.release();
    QCOMPARE(takeLog(), (QStringList{u"a exited"_qs, u"b entered"_qs}));
}

void TrackingAreaTest::followsADragWhereAsked()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x683);
    add(u"b"_qs, QRect(60, 10, 50, 50))->track(0x683);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    pointer.press();
    pointer.moveTo(QPointF(70, 20));
    QCOMPARE(takeLog(), (QStringList{u"a exited"_qs, u"b entered"_qs}));
    pointer.moveTo(QPointF(500, 20)); // out of the window
    QCOMPARE(takeLog(), QStringList{u"b exited"_qs});
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
    pointer.release();
    QCOMPARE(takeLog(), QStringList());
}

void TrackingAreaTest::theReleaseComesBeforeWhatItCatchesUpWith()
{
    class Presser : public TrackedView {
    public:
        using TrackedView::TrackedView;
        std::function<void()> released;
        void mouseDown(kx::Event *) override { }
        void mouseUp(kx::Event *) override { released(); }
    };
    Presser view(u"a"_qs, m_log, m_window->centralWidget());
    view.setGeometry(10, 10, 50, 50);
    view.show();
    view.track(0x281);
    view.released = [this] { m_log << u"a up"_qs; };
    Pointer pointer(*m_window);
    pointer.drag(QPointF(20, 20), QPointF(200, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a up"_qs, u"a exited"_qs}));
}

void TrackingAreaTest::needsAnActiveApplication()
{
    add(u"active"_qs, QRect(10, 10, 50, 50))->track(0x241);
    add(u"always"_qs, QRect(60, 10, 50, 50))->track(0x281);
    Pointer pointer(*m_window);
    activate(nullptr);
    QCOMPARE(QGuiApplication::applicationState(), Qt::ApplicationInactive);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(70, 20));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"always entered"_qs, u"always exited"_qs}));
    activate(m_window.get());
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"active entered"_qs});
}

void TrackingAreaTest::exitsLateWhenTheApplicationIsActiveAgain()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x241);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    activate(nullptr);
    pointer.moveTo(QPointF(200, 20));
    pointer.leave();
    QCOMPARE(takeLog(), QStringList());
    activate(m_window.get());
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingAreaTest::needsTheKeyWindow()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x221);
    Pointer pointer(*m_window);
    const auto other = makeWindow();
    other->show();
    QVERIFY(QTest::qWaitForWindowActive(other.get()));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), QStringList());
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::needsTheFocus()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    view->track(0x211);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), QStringList());
    view->setFocus();
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::isNeverActiveUnlessAskedFor()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x207);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(takeLog(), QStringList());
}

void TrackingAreaTest::keepsCopiesOfOneArea()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    const kx::TrackingAreaRef first = view->track(always);
    view->track(always);
    view->track(0x284);
    view->track(always);
    QCOMPARE(view->trackingAreas().size(), 4);
    QCOMPARE(view->trackingAreas().count(first), 3);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    view->removeTrackingArea(first);
    view->removeTrackingArea(first);
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    view->removeTrackingArea(first);
    QCOMPARE(view->trackingAreas().size(), 1);
}

void TrackingAreaTest::ignoresWhatItDoesNotHave()
{
    kx::View view;
    view.addTrackingArea(nullptr);
    QVERIFY(view.trackingAreas().isEmpty());
    view.removeTrackingArea(nullptr);
    view.removeTrackingArea(std::make_shared<kx::TrackingArea>(QRectF(), kx::TrackingOptions(always), &view));
    view.addTrackingArea(std::make_shared<kx::TrackingArea>(QRectF(), kx::TrackingOptions(always), nullptr));
    QCOMPARE(view.trackingAreas().size(), 1);
    view.setParent(m_window->centralWidget());
    view.setGeometry(10, 10, 50, 50);
    view.show();
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20)); // nobody to tell
    pointer.moveTo(QPointF(200, 20));
}

void TrackingAreaTest::tellsAnotherOwner()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    TrackedView owner(u"owner"_qs, m_log);
    view->addTrackingArea(std::make_shared<kx::TrackingArea>(QRectF(), kx::TrackingOptions(always), &owner));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"owner entered"_qs, u"owner cursor"_qs, u"owner moved"_qs}));
    delete view;
}

void TrackingAreaTest::exitsWhenThePointerLeavesTheWindow()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x281);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    pointer.leave();
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingAreaTest::exitsWhenThePointerIsInAnotherWindow()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x281);
    const auto other = makeWindow();
    add(u"b"_qs, QRect(10, 10, 50, 50), other->centralWidget())->track(0x281);
    other->show();
    QVERIFY(QTest::qWaitForWindowActive(other.get()));
    Pointer(*m_window).moveTo(QPointF(20, 20));
    Pointer(*other).moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a exited"_qs, u"b entered"_qs}));
}

void TrackingAreaTest::exitsBeneathAModalWindow()
{
    add(u"a"_qs, QRect(10, 10, 50, 50))->track(0x281);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    QDialog dialog(m_window.get());
    dialog.setModal(true);
    dialog.resize(100, 100);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    pointer.leave(); // Qt keeps this from a window that is blocked
    Pointer(dialog).moveTo(QPointF(50, 50));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingAreaTest::isTrackedThroughACoveringNeighbour()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->track(always);
    QLineEdit neighbour(m_window->centralWidget());
    neighbour.setGeometry(10, 10, 100, 50);
    neighbour.show();
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a moved"_qs})); // the cursor is the neighbour's
    neighbour.hide();
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), (QStringList{u"a cursor"_qs, u"a moved"_qs}));
}

void TrackingAreaTest::exitsAfterBeingHidden()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->track(0x281);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    view->hide();
    QCOMPARE(takeLog(), QStringList());
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingAreaTest::isForgottenWhenRemoved()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    const auto area = view->track(always);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    view->removeTrackingArea(area);
    pointer.moveTo(QPointF(21, 20));
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(takeLog(), QStringList());
}

void TrackingAreaTest::movesOverManyViewsTakeNoMemory()
{
    QWidget *parent = m_window->centralWidget();
    for (int depth = 0; depth < 20; ++depth)
        parent = add(u"nested"_qs, QRect(0, 0, 100, 100), parent);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    const auto taken = ::mallinfo2().uordblks; // stays 0 in sanitizer builds, which have an allocator of their own
    for (int i = 0; i < 2000; ++i)
        pointer.moveTo(QPointF(10 + i % 50, 10));
    QVERIFY(::mallinfo2().uordblks < taken + 200'000);
}

void TrackingAreaTest::worksWithinAWindowThatTakesPartInEvents()
{
    LoggingWindow window;
    add(u"a"_qs, QRect(10, 10, 100, 50), window.view)->track(always);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    Pointer pointer(window);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(21, 20));
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs, u"a moved"_qs, u"a exited"_qs}));
    window.handler = [](kx::Event *) {}; // swallows
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), QStringList());
}

QTEST_MAIN(TrackingAreaTest)
#include "TrackingAreaTest.moc"
