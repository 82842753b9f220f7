// SPDX-License-Identifier: MIT
// When views are asked for their tracking areas, and that areas keep up with what happens around their views.
#include "TrackedView.h"

#include "Support/Pointer.h"

#include <QtTest/QTest>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSplitter>

using namespace Qt::StringLiterals;

namespace {

/// Counts how often it is asked for its areas, and has one after the first time.
class Counted : public TrackedView {
public:
    using TrackedView::TrackedView;
    int updates = 0;
    std::function<void()> onUpdate;

    void updateTrackingAreas() override
    {
        if (updates++ == 0)
            track(always);
        if (const auto act = onUpdate)
            act(); // may delete this
    }
};

} // namespace

class TrackingUpdatesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void asksOnceOnEnteringAWindow();
    void asksOnceForAViewThatALayoutPlaces();
    void asksHiddenViewsToo();
    void asksAnewInAnotherWindow();
    void asksNobodyWithoutAWindow();
    void asksOnceForAllChangesOfSizeBeforeTheNextEvent();
    void asksNobodyForPlainMoves();
    void asksNobodyWhenTheWindowIsHiddenAndShown();
    void asksBeforeAPressArrives();
    void survivesAnswersThatDelete();

    void followsViewsThatMove();
    void followsTheOrderOfStacking();
    void worksInLayoutsAndSplitters();
    void worksInScrollAreas();
    void theWheelMovesWhatIsBeneathThePointer();
    void worksInNativeWidgets();
    void worksInViewsThatAreWindows();
    void nothingBeneathAnOpenPopupIsTracked();
    void handlersMayDeleteAnyView_data();
    void handlersMayDeleteAnyView();
    void handlersMayRemoveWhatIsToBeToldNext();
    void handlersMayDeleteTheWindow();
    void whatANewerEventHasSettledIsNotToldAnyMore();

private:
    Counted *add(const QString &name, const QRect &geometry, QWidget *parent = nullptr);
    QStringList takeLog() { return std::exchange(m_log, {}); }
    /// Repeated moves are one.
    QStringList takeShortLog()
    {
        m_log.removeDuplicates();
        return takeLog();
    }

    std::unique_ptr<QMainWindow> m_window;
    QStringList m_log;
};

void TrackingUpdatesTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = makeWindow();
    m_log.clear();
}

void TrackingUpdatesTest::cleanup()
{
    m_window.reset();
}

Counted *TrackingUpdatesTest::add(const QString &name, const QRect &geometry, QWidget *parent)
{
    auto *view = new Counted(name, m_log, parent ? parent : m_window->centralWidget());
    view->setGeometry(geometry);
    view->show();
    return view;
}

void TrackingUpdatesTest::asksOnceOnEnteringAWindow()
{
    const Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    m_window->resize(400, 300);
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(view->updates, 1);
    QCOMPARE(view->trackingAreas().size(), 1);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCoreApplication::processEvents();
    QCOMPARE(view->updates, 1);

    const Counted *late = add(u"b"_qs, QRect(10, 70, 50, 50));
    QCOMPARE(late->updates, 0);
    QTRY_COMPARE(late->updates, 1);
}

void TrackingUpdatesTest::asksOnceForAViewThatALayoutPlaces()
{
    auto *rows = new QVBoxLayout(m_window->centralWidget());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    auto *view = new Counted(u"a"_qs, m_log);
    rows->addWidget(view); // shown first, then placed
    QTRY_VERIFY(view->height() > 100);
    QTRY_COMPARE(view->updates, 1);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(view->updates, 1);
}

void TrackingUpdatesTest::asksHiddenViewsToo()
{
    Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    view->hide();
    m_window->show();
    QTRY_COMPARE(view->updates, 1);
}

void TrackingUpdatesTest::asksAnewInAnotherWindow()
{
    const auto other = makeWindow();
    m_window->show();
    other->show();
    Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    QTRY_COMPARE(view->updates, 1);
    view->setParent(other->centralWidget());
    view->show();
    QTRY_COMPARE(view->updates, 2);
    delete view;
}

void TrackingUpdatesTest::asksNobodyWithoutAWindow()
{
    Counted view(u"a"_qs, m_log);
    view.resize(50, 50);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    view.setParent(m_window->centralWidget());
    view.setParent(nullptr); // and out again
    QCoreApplication::processEvents();
    Pointer(*m_window).moveTo(QPointF(20, 20));
    QCOMPARE(view.updates, 0);
}

void TrackingUpdatesTest::asksOnceForAllChangesOfSizeBeforeTheNextEvent()
{
    Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QTRY_COMPARE(view->updates, 1);
    Pointer pointer(*m_window);
    view->resize(60, 50);
    view->resize(60, 70);
    QCoreApplication::processEvents();
    QCOMPARE(view->updates, 1);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(view->updates, 2);
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(view->updates, 2);
    view->resize(61, 70);
    pointer.wheel(QPoint(0, 120));
    QCOMPARE(view->updates, 3);
}

void TrackingUpdatesTest::asksNobodyForPlainMoves()
{
    Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QTRY_COMPARE(view->updates, 1);
    Pointer pointer(*m_window);
    view->move(20, 20);
    m_window->move(30, 30);
    m_window->centralWidget()->resize(500, 500);
    view->raise();
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(view->updates, 1);
}

void TrackingUpdatesTest::asksNobodyWhenTheWindowIsHiddenAndShown()
{
    Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QTRY_COMPARE(view->updates, 1);
    m_window->hide();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(view->updates, 1);
}

void TrackingUpdatesTest::asksBeforeAPressArrives()
{
    class Pressed : public Counted {
    public:
        using Counted::Counted;
        void mouseDown(kx::Event *) override { updatesAtPress = updates; }
        int updatesAtPress = 0;
    };
    Pressed view(u"a"_qs, m_log, m_window->centralWidget());
    view.setGeometry(10, 10, 50, 50);
    m_window->show();
    QTRY_COMPARE(view.updates, 1);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    view.resize(60, 60);
    pointer.press();
    QCOMPARE(view.updatesAtPress, 2);
    pointer.release();
}

void TrackingUpdatesTest::survivesAnswersThatDelete()
{
    const QPointer<Counted> first = add(u"a"_qs, QRect(10, 10, 50, 50));
    const QPointer<Counted> second = add(u"b"_qs, QRect(70, 10, 50, 50));
    first->onUpdate = [&] {
        delete second;
        delete first;
    };
    m_window->show();
    QTRY_VERIFY(!first);
    QVERIFY(!second);

    const QPointer<Counted> last = add(u"c"_qs, QRect(10, 10, 50, 50));
    QTRY_COMPARE(last->updates, 1);
    last->onUpdate = [&] { m_window.reset(); };
    last->resize(60, 60);
    Pointer(*m_window).moveTo(QPointF(20, 20));
    QVERIFY(!last);
}

void TrackingUpdatesTest::followsViewsThatMove()
{
    auto *panel = new QWidget(m_window->centralWidget());
    panel->setGeometry(0, 0, 100, 100);
    add(u"a"_qs, QRect(10, 10, 20, 20), panel);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(15, 15));
    pointer.moveTo(QPointF(16, 15));
    takeLog();
    panel->move(100, 0);
    pointer.moveTo(QPointF(17, 15));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    pointer.moveTo(QPointF(115, 15));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    panel->resize(5, 5); // cuts it off
    pointer.moveTo(QPointF(116, 15));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    panel->resize(100, 100);
    panel->setParent(nullptr);
    pointer.moveTo(QPointF(117, 15));
    QCOMPARE(takeLog(), QStringList());
    delete panel;
}

void TrackingUpdatesTest::followsTheOrderOfStacking()
{
    Counted *low = add(u"low"_qs, QRect(10, 10, 50, 50));
    add(u"high"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(),
        (QStringList{u"low entered"_qs, u"high entered"_qs, u"high cursor"_qs, u"low moved"_qs, u"high moved"_qs}));
    low->raise();
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), (QStringList{u"low cursor"_qs, u"high moved"_qs, u"low moved"_qs}));
}

void TrackingUpdatesTest::worksInLayoutsAndSplitters()
{
    auto *splitter = new QSplitter;
    auto *left = new QWidget;
    auto *rows = new QVBoxLayout(left);
    rows->setContentsMargins(0, 0, 0, 0);
    auto *view = new Counted(u"a"_qs, m_log);
    rows->addWidget(new QLabel(u"above"_qs));
    rows->addWidget(view, 1);
    rows->addWidget(new QLineEdit);
    splitter->addWidget(left);
    auto *right = new Counted(u"b"_qs, m_log);
    splitter->addWidget(right);
    m_window->setCentralWidget(splitter);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(right->updates, 1);
    splitter->setSizes({150, 150});

    const auto at = [this](const QWidget *widget) { return widget->mapTo(m_window.get(), widget->rect().center()); };
    Pointer pointer(*m_window);
    pointer.moveTo(at(view));
    pointer.moveTo(at(view) + QPoint(1, 0));
    QCOMPARE(takeShortLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    pointer.moveTo(at(rows->itemAt(0)->widget()));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    pointer.moveTo(at(right));
    QCOMPARE(takeLog(), (QStringList{u"b entered"_qs, u"b cursor"_qs, u"b moved"_qs}));
    splitter->setSizes({splitter->width(), 0}); // the left one is where the pointer rests
    pointer.moveTo(at(view) + QPoint(0, 1));
    QCOMPARE(takeLog(), (QStringList{u"b exited"_qs, u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
}

void TrackingUpdatesTest::worksInScrollAreas()
{
    auto *scroller = new QScrollArea;
    auto *content = new QWidget;
    content->resize(200, 1000);
    add(u"a"_qs, QRect(0, 0, 200, 100), content);
    add(u"b"_qs, QRect(0, 500, 200, 100), content);
    scroller->setWidget(content);
    auto *below = new QLineEdit;
    auto *holder = new QWidget;
    auto *rows = new QVBoxLayout(holder);
    rows->addWidget(scroller);
    rows->addWidget(below);
    m_window->setCentralWidget(holder);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));

    Pointer pointer(*scroller->viewport());
    pointer.moveTo(QPointF(50, 50));
    pointer.moveTo(QPointF(51, 50));
    QCOMPARE(takeShortLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    scroller->verticalScrollBar()->setValue(480);
    pointer.moveTo(QPointF(52, 50));
    QCOMPARE(takeLog(), (QStringList{u"a exited"_qs, u"b entered"_qs, u"b cursor"_qs, u"b moved"_qs}));
    // The part of "b" that would lie below the viewport is not there.
    scroller->verticalScrollBar()->setValue(500 - scroller->viewport()->height() + 5);
    pointer.moveTo(QPointF(52, scroller->viewport()->height() + 10.0));
    QCOMPARE(takeLog(), QStringList{u"b exited"_qs});
    pointer.moveTo(QPointF(52, scroller->viewport()->height() - 2.0));
    QCOMPARE(takeLog(), (QStringList{u"b entered"_qs, u"b cursor"_qs, u"b moved"_qs}));
}

void TrackingUpdatesTest::theWheelMovesWhatIsBeneathThePointer()
{
    auto *scroller = new QScrollArea;
    auto *content = new QWidget;
    content->resize(200, 1000);
    add(u"a"_qs, QRect(0, 0, 200, 30), content);
    scroller->setWidget(content);
    m_window->setCentralWidget(scroller);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer pointer(*scroller->viewport());
    pointer.moveTo(QPointF(50, 20));
    takeLog();
    pointer.wheel(QPoint(0, -120));
    QVERIFY(scroller->verticalScrollBar()->value() > 10);
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingUpdatesTest::worksInNativeWidgets()
{
    auto *native = new QWidget(m_window->centralWidget());
    native->setAttribute(Qt::WA_DontCreateNativeAncestors);
    native->setAttribute(Qt::WA_NativeWindow);
    native->setGeometry(100, 50, 100, 100);
    Counted *view = add(u"a"_qs, QRect(10, 10, 50, 50), native);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(view->updates, 1);
    QVERIFY(native->windowHandle());
    const auto moveTo = [&](const QPoint &position) {
        QTest::mouseMove(native->windowHandle(), position);
        QCoreApplication::processEvents();
    };
    moveTo(QPoint(2, 2));
    moveTo(QPoint(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    moveTo(QPoint(70, 20));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingUpdatesTest::worksInViewsThatAreWindows()
{
    Counted view(u"a"_qs, m_log);
    view.setGeometry(50, 50, 200, 100);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_COMPARE(view.updates, 1);
    Pointer pointer(view);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeShortLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
    pointer.leave();
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
}

void TrackingUpdatesTest::nothingBeneathAnOpenPopupIsTracked()
{
    add(u"a"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    takeLog();
    if (QGuiApplication::platformName() == u"offscreen"_qs) {
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    }
    QWidget popup(nullptr, Qt::Popup);
    popup.setGeometry(QRect(m_window->mapToGlobal(QPoint(100, 100)), QSize(50, 50)));
    popup.show();
    QVERIFY(QTest::qWaitForWindowExposed(&popup));
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(takeLog(), QStringList{u"a exited"_qs});
    pointer.moveTo(QPointF(22, 20));
    QCOMPARE(takeLog(), QStringList());
    popup.hide();
    pointer.moveTo(QPointF(23, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs}));
}

void TrackingUpdatesTest::handlersMayDeleteAnyView_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("victim");
    for (const QString &entry : {u"a entered"_qs, u"a cursor"_qs, u"a moved"_qs, u"a exited"_qs}) {
        for (const QString &victim : {u"a"_qs, u"b"_qs, u"c"_qs})
            QTest::addRow("%s deletes %s", qPrintable(entry), qPrintable(victim)) << entry << victim;
    }
}

void TrackingUpdatesTest::handlersMayDeleteAnyView()
{
    QFETCH(QString, entry);
    QFETCH(QString, victim);
    // "a" is around "b", and "c" is where the pointer goes next.
    const QPointer<Counted> a = add(u"a"_qs, QRect(10, 10, 50, 50));
    const QPointer<Counted> b = add(u"b"_qs, QRect(0, 0, 50, 50), a);
    const QPointer<Counted> c = add(u"c"_qs, QRect(60, 10, 50, 50));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    b->track(0x683);
    a->handler = [&, entry, victim](const QString &noted) {
        if (noted == entry)
            delete (victim == u"a"_qs ? a : victim == u"b"_qs ? b : c).data();
    };
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(21, 20));
    pointer.moveTo(QPointF(70, 20));
    pointer.moveTo(QPointF(200, 20));
    const bool asked = entry != u"a cursor"_qs; // the inner view decides about the cursor
    QCOMPARE(victim == u"a"_qs ? a.isNull() : victim == u"b"_qs ? b.isNull() : c.isNull(), asked);
}

void TrackingUpdatesTest::handlersMayRemoveWhatIsToBeToldNext()
{
    Counted *a = add(u"a"_qs, QRect(10, 10, 50, 50));
    Counted *b = add(u"b"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(b->updates, 1);
    a->handler = [&](const QString &) { b->removeTrackingArea(b->trackingAreas().value(0)); };
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a moved"_qs}));
}

void TrackingUpdatesTest::handlersMayDeleteTheWindow()
{
    const QPointer<Counted> view = add(u"a"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    view->handler = [this](const QString &) { m_window.reset(); };
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QVERIFY(!m_window);
    QCOMPARE(takeLog(), QStringList{u"a entered"_qs});
}

void TrackingUpdatesTest::whatANewerEventHasSettledIsNotToldAnyMore()
{
    Counted *a = add(u"a"_qs, QRect(10, 10, 50, 50));
    Counted *b = add(u"b"_qs, QRect(10, 10, 50, 50));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(b->updates, 1);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    a->handler = [&](const QString &) {
        a->handler = nullptr;
        pointer.moveTo(QPointF(200, 20)); // as a menu's event loop may
    };
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(takeLog(), (QStringList{u"a entered"_qs, u"a exited"_qs}));
}

QTEST_MAIN(TrackingUpdatesTest)
#include "TrackingUpdatesTest.moc"
