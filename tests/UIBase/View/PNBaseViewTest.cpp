// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/UIBase/View/PNBaseView.h>

#include "Support/Activation.h"
#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"

#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QMainWindow>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Notes what it hears.
class Delegate : public PNBaseViewDelegate {
public:
    QStringList heard;
    QPointF place; ///< In the view.
    bool updatesCursor = true;
    std::function<void()> onHeard;

    void baseViewMouseEntered(PNBaseView *view, kx::Event *event) override { note(u"entered"_qs, view, event); }
    void baseViewMouseExited(PNBaseView *view, kx::Event *event) override { note(u"exited"_qs, view, event); }
    void baseViewMouseMoved(PNBaseView *view, kx::Event *event) override { note(u"moved"_qs, view, event); }
    void baseViewMouseDown(PNBaseView *view, kx::Event *event) override { note(u"down"_qs, view, event); }
    void baseViewMouseUp(PNBaseView *view, kx::Event *event) override { note(u"up"_qs, view, event); }
    void baseViewMouseDragged(PNBaseView *view, kx::Event *event) override { note(u"dragged"_qs, view, event); }
    bool baseViewCursorNeedUpdate(PNBaseView *view, kx::Event *event) override
    {
        const bool updates = updatesCursor;
        note(u"cursor"_qs, view, event);
        return updates;
    }
    QStringList take() { return std::exchange(heard, {}); }

private:
    void note(const QString &what, PNBaseView *view, const kx::Event *event)
    {
        heard << (event ? what : what + u" without event"_qs);
        if (event)
            place = view->locationInView(*event);
        if (const auto act = onHeard)
            act(); // may delete this
    }
};

/// Counts the updates of its tracking areas.
class Counted : public PNBaseView {
public:
    using PNBaseView::PNBaseView;
    int updates = 0;
    void updateTrackingAreas() override
    {
        ++updates;
        PNBaseView::updateTrackingAreas();
    }
};

} // namespace

class PNBaseViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void startsWithItsDefaults();
    void takesAFrame();
    void aBackgroundGivesItALayer();
    void paintsItsBackground();
    void isClickedButNotTrackedAtFirst();
    void tellsItsDelegateOfTheMouse();
    void emitsWhatItTells();
    void holdsItsDelegateWeakly();
    void doesWithoutADelegate();
    void theDefaultsOfADelegateDoNothing();
    void clicksFallThroughWithoutUserInteraction();
    void isNotHitWhileHidden();
    void tracksWithTheCommonOptions();
    void losesItsAreaWithoutUserInteraction();
    void equalValuesDoNotUpdate();
    void changesUpdate();
    void showingAndHidingAlwaysUpdate();
    void insetsAreComparedExactly();
    void ownUpdatesEndAHover();
    void endsAHoverWhenTheApplicationResigns();
    void endsAHoverWhenHidden();
    void staysQuietAboutAHoverThatIsOver();
    void knowsItsHoverWhenItTellsOfIt();
    void aPressWithoutAnEnterRearms();
    void aPressWithinAHoverDoesNot();
    void insetsShrinkTheAreaAndTheCursorsRectangle_data();
    void insetsShrinkTheAreaAndTheCursorsRectangle();
    void theAreaCoversTheViewWhateverTheInset();
    void updatesTheCursorWithinItsRectangle();
    void aDelegateMayKeepTheCursor();
    void leavesTheCursorWithoutTracking();
    void ignoresEverythingInAWindowThatIgnoresTheMouse();
    void swallowsTheMouse();
    void letsOtherEventsGoOn();
    void takesTheKeyboardWhenClicked();
    void survivesItsDelegate_data();
    void survivesItsDelegate();
    void aDelegateMayDeleteItself();
    void hasPropertiesForForms();

private:
    std::unique_ptr<QMainWindow> m_window;
    LoggingWidget *m_plain = nullptr;
    QPointer<Counted> m_view;
    std::unique_ptr<Delegate> m_delegate;
};

void PNBaseViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QMainWindow>();
    m_plain = new LoggingWidget;
    m_window->setCentralWidget(m_plain);
    m_window->resize(300, 200);
    m_delegate = std::make_unique<Delegate>();
    m_view = new Counted(m_plain);
    m_view->setGeometry(10, 10, 100, 40);
    m_view->setDelegate(m_delegate.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTRY_VERIFY(m_view->shownWindow());
    QCoreApplication::processEvents();
}

void PNBaseViewTest::cleanup()
{
    m_window.reset();
}

void PNBaseViewTest::startsWithItsDefaults()
{
    const PNBaseView view;
    QVERIFY(!view.backgroundColor());
    QCOMPARE(view.delegate(), nullptr);
    QVERIFY(view.userInteraction());
    QVERIFY(!view.needTracking());
    QVERIFY(view.name().isNull());
    QCOMPARE(view.inset(), QMarginsF());
    QCOMPARE(view.tag(), 0);
    QVERIFY(!view.wantsLayer());
    QVERIFY(view.acceptsFirstResponder());
    QVERIFY(view.trackingAreas().isEmpty());
    QCOMPARE(view.frame(), QRectF());
}

void PNBaseViewTest::takesAFrame()
{
    const PNBaseView view(QRectF(10, 20, 30, 40), m_plain);
    QCOMPARE(view.frame(), QRectF(10, 20, 30, 40));
    QCOMPARE(view.parentWidget(), m_plain);
    QVERIFY(view.userInteraction());
}

void PNBaseViewTest::aBackgroundGivesItALayer()
{
    const kx::Color red = QColor(Qt::red);
    m_view->setBackgroundColor(red);
    QVERIFY(m_view->backgroundColor() == red);
    QVERIFY(m_view->wantsLayer());
    QVERIFY(m_view->layer()->backgroundColor() == red);
    m_view->setBackgroundColor(nullptr);
    QVERIFY(!m_view->backgroundColor());
    QVERIFY(!m_view->layer()->backgroundColor());
    QVERIFY(m_view->wantsLayer());

    PNBaseView other;
    other.setBackgroundColor(nullptr);
    QVERIFY(other.wantsLayer());
}

void PNBaseViewTest::paintsItsBackground()
{
    m_view->setBackgroundColor(QColor(10, 20, 30));
    const QImage image = m_window->grab().toImage();
    const double ratio = image.devicePixelRatio();
    QCOMPARE(image.pixelColor((QPointF(50, 30) * ratio).toPoint()), QColor(10, 20, 30));
    QVERIFY(image.pixelColor((QPointF(150, 30) * ratio).toPoint()) != QColor(10, 20, 30));
}

void PNBaseViewTest::isClickedButNotTrackedAtFirst()
{
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(21, 20));
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList());
    QVERIFY(m_view->trackingAreas().isEmpty());
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_delegate->take(), (QStringList{u"down"_qs, u"up"_qs}));
}

void PNBaseViewTest::tellsItsDelegateOfTheMouse()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(m_delegate->take(), (QStringList{u"entered"_qs, u"cursor"_qs, u"moved"_qs}));
    QCOMPARE(m_delegate->place, QPointF(10, 30 - 1 / m_window->devicePixelRatioF()));
    pointer.press();
    pointer.moveTo(QPointF(30, 20));
    pointer.release();
    QCOMPARE(m_delegate->take(), (QStringList{u"down"_qs, u"dragged"_qs, u"up"_qs}));
    QCOMPARE(m_delegate->place.x(), 20.0);
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList{u"exited"_qs});
}

void PNBaseViewTest::emitsWhatItTells()
{
    m_view->setDelegate(nullptr);
    m_view->setNeedTracking(true);
    QStringList emitted;
    QPointF place;
    const auto at = [&](const QString &what) {
        return [&emitted, &place, what](const QPointF &point) {
            emitted << what;
            place = point;
        };
    };
    connect(m_view, &PNBaseView::entered, this, [&] { emitted << u"entered"_qs; });
    connect(m_view, &PNBaseView::exited, this, [&] { emitted << u"exited"_qs; });
    connect(m_view, &PNBaseView::moved, this, at(u"moved"_qs));
    connect(m_view, &PNBaseView::pressed, this, at(u"pressed"_qs));
    connect(m_view, &PNBaseView::dragged, this, at(u"dragged"_qs));
    connect(m_view, &PNBaseView::released, this, at(u"released"_qs));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.drag(QPointF(20, 20), QPointF(200, 20), 1);
    QCOMPARE(
        emitted, (QStringList{u"entered"_qs, u"moved"_qs, u"pressed"_qs, u"dragged"_qs, u"released"_qs, u"exited"_qs}));
    QCOMPARE(place, QPointF(190, 30 - 1 / m_window->devicePixelRatioF()));
}

void PNBaseViewTest::holdsItsDelegateWeakly()
{
    QCOMPARE(m_view->delegate(), m_delegate.get());
    m_delegate.reset();
    QCOMPARE(m_view->delegate(), nullptr);
    m_view->setNeedTracking(true);
    Pointer(*m_window).click(QPointF(20, 20));
}

void PNBaseViewTest::doesWithoutADelegate()
{
    m_view->setDelegate(nullptr);
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.drag(QPointF(20, 20), QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList());
}

void PNBaseViewTest::theDefaultsOfADelegateDoNothing()
{
    PNBaseViewDelegate silent;
    m_view->setDelegate(&silent);
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    kx::Cursor::set(Qt::WaitCursor);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor); // updated
    pointer.drag(QPointF(20, 20), QPointF(200, 100));
    QVERIFY(silent.baseViewCursorNeedUpdate(m_view, nullptr));
}

void PNBaseViewTest::clicksFallThroughWithoutUserInteraction()
{
    PNBaseView beneath(m_plain);
    Delegate delegate;
    beneath.setDelegate(&delegate);
    beneath.setGeometry(10, 10, 50, 40);
    beneath.show();
    m_view->raise();
    m_view->setUserInteraction(false);
    QCOMPARE(m_view->hitTest(m_view->frame().center()), nullptr);
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(delegate.take(), (QStringList{u"down"_qs, u"up"_qs}));
    m_plain->entries.clear();
    pointer.click(QPointF(70, 20));
    QCOMPARE(m_plain->clicks(), (QList{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_delegate->take(), QStringList());
    m_view->setUserInteraction(true);
    QCOMPARE(m_view->hitTest(m_view->frame().center()), m_view.data());
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_delegate->take(), (QStringList{u"down"_qs, u"up"_qs}));
}

void PNBaseViewTest::isNotHitWhileHidden()
{
    const QPointF center = m_view->frame().center();
    QCOMPARE(m_view->hitTest(center), m_view.data());
    m_view->hide();
    QCOMPARE(m_view->hitTest(center), nullptr);
}

void PNBaseViewTest::tracksWithTheCommonOptions()
{
    m_view->setNeedTracking(true);
    QCOMPARE(m_view->trackingAreas().size(), 1);
    const kx::TrackingAreaRef area = m_view->trackingAreas().constFirst();
    QCOMPARE(area->options().toInt(), 0x347);
    QCOMPARE(area->rect(), QRectF(0, 0, 100, 40));
    QCOMPARE(area->owner(), m_view.data());
    QVERIFY(!area->userInfo().isValid());
    m_view->updateTrackingAreas();
    QCOMPARE(m_view->trackingAreas().size(), 1);
    m_view->setNeedTracking(false);
    QVERIFY(m_view->trackingAreas().isEmpty());
}

void PNBaseViewTest::losesItsAreaWithoutUserInteraction()
{
    m_view->setNeedTracking(true);
    m_view->setUserInteraction(false);
    QVERIFY(m_view->trackingAreas().isEmpty());
    m_view->setUserInteraction(true);
    QCOMPARE(m_view->trackingAreas().size(), 1);
    m_view->hide();
    QVERIFY(m_view->trackingAreas().isEmpty());
    m_view->show();
    QCOMPARE(m_view->trackingAreas().size(), 1);
}

void PNBaseViewTest::equalValuesDoNotUpdate()
{
    m_view->setNeedTracking(true);
    m_view->setInset(QMarginsF(1, 2, 3, 4));
    const kx::TrackingAreaRef area = m_view->trackingAreas().constFirst();
    m_view->updates = 0;
    m_view->setNeedTracking(true);
    m_view->setUserInteraction(true);
    m_view->setInset(QMarginsF(1, 2, 3, 4));
    QCOMPARE(m_view->updates, 0);
    QCOMPARE(m_view->trackingAreas(), QList{area});
}

void PNBaseViewTest::changesUpdate()
{
    m_view->updates = 0;
    m_view->setNeedTracking(true);
    m_view->setUserInteraction(false);
    m_view->setInset(QMarginsF(1, 2, 3, 4));
    QCOMPARE(m_view->updates, 3);
}

void PNBaseViewTest::showingAndHidingAlwaysUpdate()
{
    m_view->updates = 0;
    m_view->setHidden(true);
    m_view->setHidden(true);
    m_view->setVisible(true);
    m_view->show();
    QCOMPARE(m_view->updates, 4);
}

void PNBaseViewTest::insetsAreComparedExactly()
{
    m_view->setInset(QMarginsF(1, 1, 1, 1));
    m_view->updates = 0;
    const QMarginsF close(1, 1, 1, 1 + 1e-15);
    QCOMPARE(close, m_view->inset()); // Qt calls them equal
    m_view->setInset(close);
    QCOMPARE(m_view->updates, 1);
}

void PNBaseViewTest::ownUpdatesEndAHover()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    m_delegate->take();
    m_view->resize(110, 40);
    QCOMPARE(m_delegate->take(), QStringList());
    pointer.moveTo(QPointF(21, 20)); // asks for the areas first
    QCOMPARE(m_delegate->take(), (QStringList{u"exited without event"_qs, u"moved"_qs}));
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList{u"exited"_qs});
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(m_delegate->take(), (QStringList{u"entered"_qs, u"cursor"_qs, u"moved"_qs}));
}

void PNBaseViewTest::endsAHoverWhenTheApplicationResigns()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    m_delegate->take();
    activate(nullptr);
    QCOMPARE(m_delegate->take(), QStringList{u"exited without event"_qs});
    m_view->updateTrackingAreas();
    QCOMPARE(m_delegate->take(), QStringList()); // it is hovered no more
    pointer.moveTo(QPointF(200, 100));
    activate(m_window.get());
    QCOMPARE(m_delegate->take(), QStringList());
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(m_delegate->take(), (QStringList{u"entered"_qs, u"cursor"_qs, u"moved"_qs}));
}

void PNBaseViewTest::endsAHoverWhenHidden()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    m_delegate->take();
    m_view->hide();
    QCOMPARE(m_delegate->take(), QStringList{u"exited without event"_qs});
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList());
}

void PNBaseViewTest::staysQuietAboutAHoverThatIsOver()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(200, 100));
    m_delegate->take();
    m_view->updateTrackingAreas();
    QCOMPARE(m_delegate->take(), QStringList());
}

void PNBaseViewTest::knowsItsHoverWhenItTellsOfIt()
{
    m_view->setNeedTracking(true);
    m_delegate->onHeard = [this] { m_view->updateTrackingAreas(); };
    m_view->mouseEntered(nullptr);
    QCOMPARE(m_delegate->take(), (QStringList{u"entered without event"_qs, u"exited without event"_qs}));
    m_delegate->onHeard = nullptr;
    m_view->mouseEntered(nullptr);
    m_delegate->take();
    m_delegate->onHeard = [this] { m_view->updateTrackingAreas(); };
    m_view->mouseExited(nullptr);
    QCOMPARE(m_delegate->take(), QStringList{u"exited without event"_qs});
}

void PNBaseViewTest::aPressWithoutAnEnterRearms()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    m_view->updateTrackingAreas(); // ends the hover
    m_view->updates = 0;
    int updatesAtThePress = -1;
    m_delegate->onHeard = [&] {
        if (m_delegate->heard.last() == u"down"_qs)
            updatesAtThePress = m_view->updates;
    };
    pointer.press();
    QCOMPARE(updatesAtThePress, 0); // after it was told
    QCOMPARE(m_view->updates, 1);
    m_delegate->onHeard = nullptr;
    pointer.release();
    pointer.press();
    QCOMPARE(m_view->updates, 2);
    pointer.release();
}

void PNBaseViewTest::aPressWithinAHoverDoesNot()
{
    m_view->setNeedTracking(true);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.moveTo(QPointF(20, 20));
    m_view->updates = 0;
    pointer.press();
    pointer.release();
    QCOMPARE(m_view->updates, 0);
}

void PNBaseViewTest::insetsShrinkTheAreaAndTheCursorsRectangle_data()
{
    QTest::addColumn<QMarginsF>("inset"); // left, top, right, bottom
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("all") << QMarginsF(5, 5, 5, 5) << QRectF(5, 5, 90, 30);
    QTest::newRow("none") << QMarginsF() << QRectF(0, 0, 100, 40);
    QTest::newRow("left") << QMarginsF(5, 0, 0, 0) << QRectF(5, 0, 95, 40);
    QTest::newRow("top") << QMarginsF(0, 5, 0, 0) << QRectF(0, 0, 100, 35);
    QTest::newRow("right") << QMarginsF(0, 0, 5, 0) << QRectF(0, 0, 95, 40);
    QTest::newRow("bottom") << QMarginsF(0, 0, 0, 5) << QRectF(0, 5, 100, 35);
    QTest::newRow("outwards") << QMarginsF(-5, 0, 0, 0) << QRectF(-5, 0, 105, 40);
    QTest::newRow("too much") << QMarginsF(60, 0, 60, 0) << QRectF(60, 0, -20, 40);
}

void PNBaseViewTest::insetsShrinkTheAreaAndTheCursorsRectangle()
{
    QFETCH(QMarginsF, inset);
    QFETCH(QRectF, rect);
    m_view->setNeedTracking(true);
    m_view->setInset(inset);
    QCOMPARE(m_view->inset(), inset);
    QCOMPARE(m_view->trackingAreas().constFirst()->rect(), rect);

    // What the cursor's own update does can be seen where it happens.
    Pointer pointer(*m_view);
    const double pixel = 1 / m_window->devicePixelRatioF();
    const auto updatesAt = [&](const QPointF &point) {
        pointer.moveTo(QPointF(50, 20));
        kx::Cursor::set(Qt::WaitCursor);
        const QPointF inWindow = m_view->convertRectToView(QRectF(point, QSizeF())).topLeft();
        const QPointF onScreen = kx::screenFrame(*m_window).topLeft() + inWindow;
        kx::Event event(kx::EventType::CursorUpdate, m_window.get(), onScreen);
        m_view->cursorUpdate(&event);
        return kx::Cursor::current().shape() == Qt::ArrowCursor;
    };
    for (const double x : {0.0, 2.0, 5.0, 50.0, 95.0, 100 - pixel}) {
        for (const double y : {0.0, 2.0, 5.0, 20.0, 35.0, 40 - pixel}) {
            const bool inside = rect.width() > 0 && x >= rect.x() && x < rect.x() + rect.width() && y >= rect.y()
                && y < rect.y() + rect.height();
            QCOMPARE(updatesAt(QPointF(x, y)), inside);
        }
    }
}

void PNBaseViewTest::theAreaCoversTheViewWhateverTheInset()
{
    m_view->setNeedTracking(true);
    m_view->setInset(QMarginsF(40, 15, 40, 15));
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(-5, -5));
    pointer.moveTo(QPointF(1, 1));
    QCOMPARE(m_delegate->take(), (QStringList{u"entered"_qs, u"cursor"_qs, u"moved"_qs}));
}

void PNBaseViewTest::updatesTheCursorWithinItsRectangle()
{
    m_view->setNeedTracking(true);
    m_view->setInset(QMarginsF(5, 5, 5, 5));
    m_view->setCursor(Qt::CrossCursor);
    Pointer pointer(*m_view);
    // Something has set another cursor by the time at which the update comes.
    m_delegate->onHeard = [this] {
        if (m_delegate->heard.last() == u"entered"_qs)
            kx::Cursor::set(Qt::WaitCursor);
    };
    pointer.moveTo(QPointF(-5, -5));
    pointer.moveTo(QPointF(2, 38)); // (2, 2) from the bottom
    QCOMPARE(m_delegate->take().value(1), u"cursor"_qs);
    QCOMPARE(kx::Cursor::current().shape(), Qt::WaitCursor);
    pointer.moveTo(QPointF(-5, -5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(kx::Cursor::current().shape(), Qt::CrossCursor);
}

void PNBaseViewTest::aDelegateMayKeepTheCursor()
{
    m_view->setNeedTracking(true);
    m_view->setCursor(Qt::CrossCursor);
    m_delegate->updatesCursor = false;
    m_delegate->onHeard = [this] {
        if (m_delegate->heard.last() == u"cursor"_qs)
            kx::Cursor::set(Qt::PointingHandCursor);
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(-5, -5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    m_delegate->updatesCursor = true;
    pointer.moveTo(QPointF(-5, -5));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(kx::Cursor::current().shape(), Qt::CrossCursor);
}

void PNBaseViewTest::leavesTheCursorWithoutTracking()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    kx::Cursor::set(Qt::PointingHandCursor);
    m_view->cursorUpdate(nullptr);
    QCOMPARE(m_delegate->take(), QStringList());
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
}

void PNBaseViewTest::ignoresEverythingInAWindowThatIgnoresTheMouse()
{
    m_view->setNeedTracking(true);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.drag(QPointF(20, 20), QPointF(30, 20));
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList());
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents, false);

    // A hover that has begun does not end.
    pointer.moveTo(QPointF(20, 20));
    m_delegate->take();
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    pointer.moveTo(QPointF(200, 100));
    QCOMPARE(m_delegate->take(), QStringList());
    m_view->updateTrackingAreas();
    QCOMPARE(m_delegate->take(), QStringList{u"exited without event"_qs});
}

void PNBaseViewTest::swallowsTheMouse()
{
    // Deliberate: nothing of this goes on to what the view is in.
    m_view->setNeedTracking(true);
    Pointer pointer(*m_view);
    pointer.drag(QPointF(20, 20), QPointF(30, 20));
    pointer.doubleClick(QPointF(20, 20));
    QCOMPARE(m_plain->clicks(), QList<QEvent::Type>());
}

void PNBaseViewTest::letsOtherEventsGoOn()
{
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20), Qt::RightButton);
    pointer.wheel(QPoint(0, 120));
    QCOMPARE(m_plain->clicks(),
        (QList{QEvent::MouseButtonPress, QEvent::ContextMenu, QEvent::MouseButtonRelease, QEvent::Wheel}));
    m_plain->entries.clear();
    m_view->setFocus();
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    QCOMPARE(m_plain->clicks(), (QList{QEvent::KeyPress, QEvent::KeyRelease}));
    QCOMPARE(m_delegate->take(), QStringList());
}

void PNBaseViewTest::takesTheKeyboardWhenClicked()
{
    QCOMPARE(m_view->focusPolicy(), Qt::ClickFocus);
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QVERIFY(m_view->hasFocus());
}

void PNBaseViewTest::survivesItsDelegate_data()
{
    QTest::addColumn<QString>("what");
    for (const QString &what : {u"entered"_qs, u"cursor"_qs, u"moved"_qs, u"down"_qs, u"dragged"_qs, u"up"_qs,
             u"exited"_qs, u"exited without event"_qs})
        QTest::newRow(qPrintable(what)) << what;
}

void PNBaseViewTest::survivesItsDelegate()
{
    QFETCH(QString, what);
    m_view->setNeedTracking(true);
    m_delegate->onHeard = [this, what] {
        if (m_delegate->heard.last() == what)
            delete m_view;
    };
    Pointer pointer(*m_window);
    const auto goThrough = [&] {
        pointer.moveTo(QPointF(5, 5));
        pointer.drag(QPointF(20, 20), QPointF(30, 20));
        pointer.moveTo(QPointF(200, 100));
        pointer.moveTo(QPointF(20, 20));
    };
    goThrough();
    if (m_view)
        m_view->setNeedTracking(false);
    QVERIFY(!m_view);
}

void PNBaseViewTest::aDelegateMayDeleteItself()
{
    m_view->setNeedTracking(true);
    m_delegate->onHeard = [this] { m_delegate.reset(); };
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(5, 5));
    pointer.drag(QPointF(20, 20), QPointF(30, 20));
    QVERIFY(!m_delegate);
    QCOMPARE(m_view->delegate(), nullptr);
}

void PNBaseViewTest::hasPropertiesForForms()
{
    QSignalSpy background(m_view, &PNBaseView::backgroundColorChanged);
    QSignalSpy interaction(m_view, &PNBaseView::userInteractionChanged);
    QSignalSpy tracking(m_view, &PNBaseView::needTrackingChanged);
    QSignalSpy name(m_view, &PNBaseView::nameChanged);
    QSignalSpy inset(m_view, &PNBaseView::insetChanged);
    QVERIFY(m_view->setProperty("backgroundColor", QColor(1, 2, 3)));
    QCOMPARE(m_view->backgroundColor().toQColor(), QColor(1, 2, 3));
    QCOMPARE(m_view->property("backgroundColor").value<QColor>(), QColor(1, 2, 3));
    QVERIFY(m_view->setProperty("backgroundColor", QColor()));
    QVERIFY(!m_view->backgroundColor());
    QVERIFY(m_view->setProperty("userInteraction", false));
    QVERIFY(m_view->setProperty("needTracking", true));
    QVERIFY(m_view->setProperty("name", u"a"_qs));
    QVERIFY(m_view->setProperty("name", u"a"_qs));
    QVERIFY(m_view->setProperty("tag", Q_INT64_C(-5'000'000'000)));
    QCOMPARE(m_view->name(), u"a"_qs);
    QCOMPARE(m_view->tag(), Q_INT64_C(-5'000'000'000));
    QCOMPARE(background.count(), 2);
    QCOMPARE(interaction.takeFirst(), QVariantList{false});
    QCOMPARE(tracking.takeFirst(), QVariantList{true});
    QCOMPARE(name.count(), 1);
    const QMarginsF margins(1, 2, 3, 4);
    for (int i = 0; i < 2; ++i)
        QVERIFY(m_view->setProperty("inset", QVariant::fromValue(margins)));
    QCOMPARE(m_view->inset(), margins);
    QCOMPARE(m_view->property("inset").value<QMarginsF>(), margins);
    QCOMPARE(inset.count(), 1);
    QCOMPARE(inset.first().first().value<QMarginsF>(), margins);
    m_view->setName(QString());
    QVERIFY(m_view->name().isNull());
}

QTEST_MAIN(PNBaseViewTest)
#include "PNBaseViewTest.moc"
