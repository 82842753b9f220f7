// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>

#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>

#include <Support/Pointer.h>

#include <QtGui/QAccessible>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QHBoxLayout>

#include <cfloat>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

struct Drag {
    bool finished;
    double fraction;

    bool operator==(const Drag &) const = default;
};

} // namespace

class PNProgressIndicatorTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void hasItsDefaults();
    void takesItsHeightsFromItsFrame();
    void keepsTheColourOfItsTrack();
    void changesItsHeightsAsStated();
    void holdsThePaddingAboveZero();
    void growsUnderThePointer();
    void tellsWhereThePointerIs();
    void ignoresThePointerUnderAModalWindow();
    void endsAHoverUnderAModalWindow();
    void ignoresThePointerInAWindowThatDoes();
    void endsAHoverWhenItsAreasAreUpdated();
    void beginsNoDragOutsideOfItsBounds();
    void reportsADragAtItsEnd();
    void readsTheEndsOfTheWay();
    void keepsTheKnobDuringADrag();
    void reportsNoDragWithoutARange();
    void endsAHoverWhenTheDragBegins();
    void endsADragWhenItsSizeChanges();
    void ignoresAPressBesideIt();
    void equalInteractionChangesNothing();
    void forgetsADragThatComesToNothing();
    void isHitWithinItsTrackingRectangleAlone();
    void isPressedWhereTheSuperviewSeesIt();
    void isDraggedWhereALayoutPutsIt();
    void tracksTheMiddleOfItsBounds();
    void givesTheNoticesOfItsClips();
    void givesNoNoticeOutsideOfStarMode();
    void judgesTheSecondNoticeAfterTheFirst();
    void tellsItsClips();
    void movesByKeys_data();
    void movesByKeys();
    void movesByKeysHoweverFarFromZero();
    void isASliderToAssistiveTechnology();
    void obeysAssistiveTechnologyWhereTheUserMayDrag();
    void givesItsColoursToDesigner();
    void survivesAnyOrderOfValuesAndEvents();
    void mayBeDeletedByItsHandlers_data();
    void mayBeDeletedByItsHandlers();

private:
    QPointF at(double x) const { return {x, 16}; }

    std::unique_ptr<QWidget> m_window;
    QPointer<PNProgressIndicator> m_bar; // 300 x 32 at the bottom left of the window
    QList<Drag> m_drags;
    QList<double> m_hovers;
    int m_exits = 0;
};

void PNProgressIndicatorTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 100);
    auto *holder = new kx::View(m_window.get());
    holder->setGeometry(0, 0, 400, 100);
    m_bar = new PNProgressIndicator(QRectF(0, 0, 300, 32));
    holder->addSubview(*m_bar);
    m_bar->setMaxValue(100);
    m_bar->onDraggedIndicator([this](PNProgressIndicator *bar, bool finished, double fraction) {
        QCOMPARE(bar, m_bar.data());
        m_drags.append({finished, fraction});
    });
    m_bar->onHoveredBar([this](PNProgressIndicator *, double fraction) { m_hovers.append(fraction); },
        [this](PNProgressIndicator *) { ++m_exits; });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PNProgressIndicatorTest::cleanup()
{
    m_window.reset();
    m_drags.clear();
    m_hovers.clear();
    m_exits = 0;
}

void PNProgressIndicatorTest::hasItsDefaults()
{
    const PNProgressIndicator bar;
    QCOMPARE(bar.normalHeight(), 18.0);
    QCOMPARE(bar.hoverHeight(), 36.0);
    QCOMPARE(bar.indicatorHeight(), 18.0);
    QCOMPARE(bar.progressHeight(), -10.0);
    QCOMPARE(bar.playedValue(), 0.0);
    QCOMPARE(bar.preloadValue(), 0.0);
    QCOMPARE(bar.minValue(), 0.0);
    QCOMPARE(bar.maxValue(), 0.0);
    QCOMPARE(bar.horizontalPadding(), 0.0);
    QCOMPARE(bar.starClipEndingAdvance(), 4.0);
    QCOMPARE(bar.tag(), 0);
    QVERIFY(bar.tags().isEmpty());
    QVERIFY(bar.userInteraction());
    QVERIFY(!bar.rounded());
    QVERIFY(!bar.isStarMode());
    QVERIFY(!bar.isMouseDown());
    QVERIFY(!bar.isMouseEnter());
    QVERIFY(!bar.mouseDownCanMoveWindow());
    QVERIFY(bar.stopColor().sameValue(kx::Color::white(1, 0.12)));
    QVERIFY(
        bar.playedStartColor().sameValue(kx::Color::rgba(0.9921568627450981, 0.4196078431372549, 0.4196078431372549)));
    QVERIFY(bar.playedEndColor().sameValue(kx::Color::rgba(1, 0.1607843137254902, 0.34509803921568627)));
    QVERIFY(bar.preloadColor().sameValue(kx::Color::white(1, 0.45)));
    QVERIFY(bar.unLoadColor().sameValue(kx::Color::rgba(1, 1, 1, 0.3)));
    QVERIFY(bar.starClipsColor().sameValue(kx::Color::rgba(1, 0.592156862745098, 0)));
}

void PNProgressIndicatorTest::takesItsHeightsFromItsFrame()
{
    QCOMPARE(m_bar->normalHeight(), 32.0);
    QCOMPARE(m_bar->hoverHeight(), 64.0);
    QCOMPARE(m_bar->progressHeight(), 4.0);
    QCOMPARE(m_bar->sizeHint().height(), 64);
}

void PNProgressIndicatorTest::keepsTheColourOfItsTrack()
{
    const kx::Color before = m_bar->unLoadColor();
    m_bar->setUnLoadColor(Qt::green);
    QCOMPARE(m_bar->unLoadColor(), before);
}

void PNProgressIndicatorTest::changesItsHeightsAsStated()
{
    m_bar->setHoverHeight(50);
    QCOMPARE(m_bar->indicatorHeight(), 32.0); // only the next hover takes it
    m_bar->setNormalHeight(40);
    QCOMPARE(m_bar->indicatorHeight(), 40.0);
    QCOMPARE(m_bar->progressHeight(), 12.0);
    Pointer pointer(*m_bar);
    pointer.moveTo(at(100));
    QTRY_COMPARE(m_bar->indicatorHeight(), 50.0);
    m_bar->setNormalHeight(30); // while hovered, too
    QCOMPARE(m_bar->indicatorHeight(), 30.0);
}

void PNProgressIndicatorTest::holdsThePaddingAboveZero()
{
    m_bar->setHorizontalPadding(-5);
    QCOMPARE(m_bar->horizontalPadding(), 0.0);
    m_bar->setHorizontalPadding(10);
    m_bar->setHorizontalPadding(10.00005); // too small a change
    QCOMPARE(m_bar->horizontalPadding(), 10.0);
    m_bar->setHorizontalPadding(qQNaN());
    QCOMPARE(m_bar->horizontalPadding(), 0.0);
}

void PNProgressIndicatorTest::growsUnderThePointer()
{
    Pointer pointer(*m_bar);
    pointer.moveTo(at(100));
    QTRY_VERIFY(m_bar->isMouseEnter());
    QCOMPARE(m_bar->indicatorHeight(), 64.0);
    pointer.moveTo({350, 16});
    QTRY_VERIFY(!m_bar->isMouseEnter());
    QCOMPARE(m_bar->indicatorHeight(), 32.0);
    QCOMPARE(m_exits, 1);
}

void PNProgressIndicatorTest::tellsWhereThePointerIs()
{
    QSignalSpy hovered(m_bar, &PNProgressIndicator::barHovered);
    QSignalSpy exited(m_bar, &PNProgressIndicator::barHoverExited);
    Pointer pointer(*m_bar);
    pointer.moveTo(at(150));
    QTRY_COMPARE(m_hovers.isEmpty(), false);
    QCOMPARE(m_hovers.last(), 0.5);
    pointer.moveTo(at(2));
    QTRY_COMPARE(m_hovers.last(), 0.0);
    pointer.moveTo(at(299));
    QTRY_COMPARE(m_hovers.last(), 1.0);
    pointer.moveTo({350, 16});
    QTRY_COMPARE(exited.count(), 1);
    QCOMPARE(hovered.count(), m_hovers.size());
}

void PNProgressIndicatorTest::ignoresThePointerUnderAModalWindow()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    m_bar->mouseEntered(nullptr);
    QVERIFY(!m_bar->isMouseEnter());
    dialog.hide();
    m_bar->mouseEntered(nullptr);
    QVERIFY(m_bar->isMouseEnter());
}

void PNProgressIndicatorTest::endsAHoverUnderAModalWindow()
{
    m_bar->mouseEntered(nullptr);
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    m_bar->mouseExited(nullptr);
    QVERIFY(!m_bar->isMouseEnter());
    QCOMPARE(m_exits, 1);
}

void PNProgressIndicatorTest::ignoresThePointerInAWindowThatDoes()
{
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_bar->mouseEntered(nullptr);
    QVERIFY(!m_bar->isMouseEnter());
    QCOMPARE(m_bar->indicatorHeight(), 32.0);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    m_bar->mouseEntered(nullptr);
    QVERIFY(m_bar->isMouseEnter());
}

void PNProgressIndicatorTest::endsAHoverWhenItsAreasAreUpdated()
{
    Pointer pointer(*m_bar);
    pointer.moveTo(at(100));
    QTRY_VERIFY(m_bar->isMouseEnter());
    m_bar->setUserInteraction(false);
    QVERIFY(!m_bar->isMouseEnter());
    QCOMPARE(m_bar->indicatorHeight(), 32.0);
    QCOMPARE(m_exits, 1);
}

void PNProgressIndicatorTest::beginsNoDragOutsideOfItsBounds()
{
    const QPointF origin = kx::screenFrame(*m_window).topLeft(); // the bottom left; the bar is at (0, 68) of the window
    const auto pressAt = [&](double x, double y) {
        kx::Event press(
            kx::EventType::LeftMouseDown, m_window.get(), origin + m_bar->convertRectToView({x, y, 0, 0}).topLeft());
        m_bar->mouseDown(&press);
        return m_bar->isMouseDown();
    };
    QVERIFY(!pressAt(-1, 10));
    QVERIFY(!pressAt(300, 10));
    QVERIFY(!pressAt(10, -1));
    QVERIFY(!pressAt(10, 32));
    QVERIFY(pressAt(10, 10));
}

void PNProgressIndicatorTest::reportsADragAtItsEnd()
{
    QSignalSpy signal(m_bar, &PNProgressIndicator::indicatorDragged);
    m_bar->setMinValue(20);
    m_bar->setMaxValue(120);
    Pointer pointer(*m_bar);
    pointer.moveTo(at(50));
    pointer.press();
    QVERIFY(m_bar->isMouseDown());
    pointer.moveTo(at(108.5));
    const auto value = float(20 + 101 * 100.0 / 283);
    QCOMPARE(m_bar->draggedValue(), value);
    QVERIFY(m_drags.isEmpty());
    pointer.release();
    QVERIFY(!m_bar->isMouseDown());
    QVERIFY(m_bar->isMouseEnter());
    QCOMPARE(m_bar->playedValue(), double(value));
    QCOMPARE(m_drags.size(), 1);
    QCOMPARE(m_drags.first(), (Drag{true, value / 100.0}));
    QCOMPARE(signal.count(), 1);
}

void PNProgressIndicatorTest::readsTheEndsOfTheWay()
{
    m_bar->setHorizontalPadding(10);
    Pointer pointer(*m_bar);
    pointer.moveTo(at(18));
    pointer.press();
    QCOMPARE(m_bar->draggedValue(), 0.0F);
    pointer.moveTo(at(18.5));
    QCOMPARE(m_bar->draggedValue(), float(100.0 / 263));
    pointer.moveTo(at(281.5));
    QCOMPARE(m_bar->draggedValue(), 100.0F);
    pointer.moveTo({-50, 16});
    QCOMPARE(m_bar->draggedValue(), 0.0F);
    pointer.release();
    QCOMPARE(m_bar->playedValue(), 0.0);
}

void PNProgressIndicatorTest::keepsTheKnobDuringADrag()
{
    Pointer pointer(*m_bar);
    pointer.moveTo(at(150));
    pointer.press();
    const float dragged = m_bar->draggedValue();
    m_bar->setPlayedValue(10);
    QCOMPARE(m_bar->playedValue(), 0.0);
    QCOMPARE(m_bar->draggedValue(), dragged);
    pointer.release();
    QCOMPARE(m_bar->playedValue(), double(dragged));
}

void PNProgressIndicatorTest::reportsNoDragWithoutARange()
{
    m_bar->setMinValue(100);
    Pointer pointer(*m_bar);
    pointer.drag(at(50), at(150));
    QVERIFY(m_drags.isEmpty());
    QVERIFY(!m_bar->isMouseDown());
}

void PNProgressIndicatorTest::endsAHoverWhenTheDragBegins()
{
    Pointer pointer(*m_bar);
    pointer.moveTo(at(100));
    QTRY_VERIFY(m_bar->isMouseEnter());
    bool wasMouseDown = false;
    m_bar->onHoveredBar({}, [&](PNProgressIndicator *bar) {
        ++m_exits;
        wasMouseDown = bar->isMouseDown();
        QVERIFY(bar->isMouseEnter());
    });
    pointer.press();
    QVERIFY(!m_bar->isMouseEnter());
    QCOMPARE(m_exits, 1);
    QVERIFY(wasMouseDown);
    QCOMPARE(m_bar->indicatorHeight(), 64.0); // it stays as large as it is
    pointer.release();
}

void PNProgressIndicatorTest::endsADragWhenItsSizeChanges()
{
    Pointer pointer(*m_bar);
    pointer.moveTo(at(150));
    pointer.press();
    QVERIFY(m_bar->isMouseDown());
    m_bar->setFrame({0, 0, 320, 32});
    pointer.moveTo(at(151)); // areas are updated before the next event
    QTRY_VERIFY(!m_bar->isMouseDown());
    QCOMPARE(m_drags.size(), 1);
    pointer.release();
    QCOMPARE(m_drags.size(), 1);
}

void PNProgressIndicatorTest::ignoresAPressBesideIt()
{
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(350, 16), m_window->mapToGlobal(QPointF(350, 16)),
        Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    kx::Event event(press, m_window.get());
    m_bar->mouseDown(&event);
    m_bar->mouseDown(nullptr);
    QVERIFY(!m_bar->isMouseDown());
}

void PNProgressIndicatorTest::equalInteractionChangesNothing()
{
    const QList<kx::TrackingAreaRef> areas = m_bar->trackingAreas();
    QSignalSpy changed(m_bar, &PNProgressIndicator::userInteractionChanged);
    m_bar->setUserInteraction(true);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_bar->trackingAreas(), areas);
}

void PNProgressIndicatorTest::forgetsADragThatComesToNothing()
{
    Pointer pointer(*m_bar);
    pointer.moveTo(at(60));
    pointer.press();
    QVERIFY(m_bar->isMouseDown());
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QVERIFY(!m_bar->isMouseDown());
    pointer.release();
    QVERIFY(m_drags.isEmpty());
    m_bar->setPlayedValue(40); // it follows the film again
    QCOMPARE(m_bar->playedValue(), 40.0F);
}

void PNProgressIndicatorTest::isHitWithinItsTrackingRectangleAlone()
{
    // 32 high: from 6 to 18 above its bottom.
    kx::ViewInterface *const bar = m_bar;
    QCOMPARE(m_bar->hitTest({10, 6}), bar);
    QCOMPARE(m_bar->hitTest({10, 17.9}), bar);
    QVERIFY(!m_bar->hitTest({10, 5.9}));
    QVERIFY(!m_bar->hitTest({10, 18}));
    m_bar->setUserInteraction(false);
    QVERIFY(!m_bar->hitTest({10, 10}));
}

void PNProgressIndicatorTest::isPressedWhereTheSuperviewSeesIt()
{
    // The point is not converted: away from the superview's origin, only the overlap of both places is left.
    m_bar->setFrame({100, 8, 300, 32});
    kx::ViewInterface *const bar = m_bar;
    QVERIFY(!m_bar->hitTest({50, 10}));
    QCOMPARE(m_bar->hitTest({150, 10}), bar);
    QVERIFY(!m_bar->hitTest({350, 10}));
    QVERIFY(!m_bar->hitTest({150, 20}));
}

void PNProgressIndicatorTest::isDraggedWhereALayoutPutsIt()
{
    QWidget holder(m_window.get());
    QHBoxLayout fill(&holder);
    fill.setContentsMargins({});
    fill.addWidget(m_bar);
    holder.setGeometry(60, 20, 300, 40);
    holder.show();
    QTRY_COMPARE(m_bar->geometry(), QRect(0, 0, 300, 40)); // as of every widget

    Pointer(*m_bar).drag({30, 20}, {108.5, 20});
    QCOMPARE(m_drags, QList<Drag>({{true, float(101 * 100.0 / 283) / 100.0}}));
}

void PNProgressIndicatorTest::tracksTheMiddleOfItsBounds()
{
    QCOMPARE(m_bar->trackingAreas().size(), 1);
    QCOMPARE(m_bar->trackingAreas().first()->rect(), QRectF(0, 6, 300, 12));
    QCOMPARE(m_bar->trackingAreas().first()->options().toInt(), 0x143);
    m_bar->updateTrackingAreas();
    QCOMPARE(m_bar->trackingAreas().size(), 1);
    m_bar->setUserInteraction(false);
    QVERIFY(m_bar->trackingAreas().isEmpty());
}

void PNProgressIndicatorTest::givesTheNoticesOfItsClips()
{
    QStringList notices;
    m_bar->onStarClipDurationWillEnd([&](qint32 index, PNProgressIndicator *bar) {
        QCOMPARE(bar, m_bar.data());
        notices << u"will %1"_s.arg(index);
    });
    m_bar->onStarClipDurationDidEnd([&](qint32 index, PNProgressIndicator *) { notices << u"did %1"_s.arg(index); });
    QSignalSpy will(m_bar, &PNProgressIndicator::starClipDurationWillEnd);
    QSignalSpy did(m_bar, &PNProgressIndicator::starClipDurationDidEnd);
    m_bar->setPlayedValue(15);
    m_bar->switch2StarMode({5, 15}, {10, 20});
    QVERIFY(m_bar->isStarMode());
    QCOMPARE(m_bar->currentClipIdx(), 1);
    QCOMPARE(m_bar->lastClipEnd(), 10.0);
    QCOMPARE(m_bar->currentClipEnd(), 20.0);
    QVERIFY(notices.isEmpty());
    m_bar->setPlayedValue(18.5);
    QCOMPARE(notices, QStringList{u"will 1"_s});
    m_bar->setPlayedValue(18.5); // nothing new
    QCOMPARE(notices.size(), 1);
    m_bar->setPlayedValue(19.5);
    QCOMPARE(notices, (QStringList{u"will 1"_s, u"will 1"_s, u"did 1"_s}));
    m_bar->setPlayedValue(21.3);
    QCOMPARE(notices.size(), 3);
    QCOMPARE(m_bar->currentClipIdx(), -1);
    QCOMPARE(m_bar->currentClipEnd(), DBL_MAX);
    QCOMPARE(will.count(), 2);
    QCOMPARE(did.count(), 1);
    m_bar->reset2NormalMode();
    QVERIFY(!m_bar->isStarMode());
    QCOMPARE(m_bar->currentClipEnd(), 0.0);
}

void PNProgressIndicatorTest::givesNoNoticeOutsideOfStarMode()
{
    int notices = 0;
    m_bar->onStarClipDurationDidEnd([&](qint32, PNProgressIndicator *) { ++notices; });
    m_bar->switch2StarMode({5}, {10});
    m_bar->reset2NormalMode();
    QCOMPARE(m_bar->currentClipIdx(), 0); // it stays as it was
    m_bar->setPlayedValue(1);
    m_bar->setPlayedValue(9.9);
    QCOMPARE(notices, 0);
}

void PNProgressIndicatorTest::judgesTheSecondNoticeAfterTheFirst()
{
    int ended = 0;
    m_bar->onStarClipDurationDidEnd([&](qint32, PNProgressIndicator *) { ++ended; });
    m_bar->switch2StarMode({5}, {10});
    m_bar->setPlayedValue(9.5); // both are due
    QCOMPARE(ended, 1);

    m_bar->onStarClipDurationWillEnd([](qint32, PNProgressIndicator *bar) { bar->reset2NormalMode(); });
    m_bar->setPlayedValue(9.6);
    QVERIFY(!m_bar->isStarMode());
    QCOMPARE(ended, 1);

    m_bar->onStarClipDurationWillEnd(
        [](qint32, PNProgressIndicator *bar) { bar->switch2StarMode({5}, {50}); }); // it goes on for longer
    m_bar->switch2StarMode({5}, {10});
    m_bar->setPlayedValue(9.7);
    QCOMPARE(ended, 1);
}

void PNProgressIndicatorTest::tellsItsClips()
{
    QVERIFY(m_bar->starClipStarts().isEmpty());
    m_bar->switch2StarMode({5, 15.5}, {10, 20, 30});
    QCOMPARE(m_bar->starClipStarts(), (QList<double>{5, 15.5}));
    QCOMPARE(m_bar->starClipEnds(), (QList<double>{10, 20, 30}));
    m_bar->reset2NormalMode();
    QVERIFY(m_bar->starClipStarts().isEmpty());
    QVERIFY(m_bar->starClipEnds().isEmpty());
}

void PNProgressIndicatorTest::movesByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<double>("value");
    QTest::newRow("left") << int(Qt::Key_Left) << 49.0;
    QTest::newRow("right") << int(Qt::Key_Right) << 51.0;
    QTest::newRow("page down") << int(Qt::Key_PageDown) << 40.0;
    QTest::newRow("page up") << int(Qt::Key_PageUp) << 60.0;
    QTest::newRow("home") << int(Qt::Key_Home) << 0.0;
    QTest::newRow("end") << int(Qt::Key_End) << 100.0;
}

void PNProgressIndicatorTest::movesByKeys()
{
    QFETCH(int, key);
    QFETCH(double, value);
    m_bar->setPlayedValue(50);
    QTest::keyClick(m_bar, Qt::Key(key));
    QCOMPARE(m_bar->playedValue(), value);
    QCOMPARE(m_drags, (QList<Drag>{{true, value / 100}}));
}

// A dragged value is kept in single precision, where a step may be nothing.
void PNProgressIndicatorTest::movesByKeysHoweverFarFromZero()
{
    constexpr double start = 1'700'000'000; // seconds since 1970
    m_bar->setMinValue(start);
    m_bar->setMaxValue(start + 3600);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left}) {
        m_bar->setPlayedValue(start + 1800);
        double previous = m_bar->playedValue();
        for (int i = 0; i < 10; ++i) {
            QTest::keyClick(m_bar, key);
            const double distance =
                key == Qt::Key_Right ? m_bar->playedValue() - previous : previous - m_bar->playedValue();
            QVERIFY(distance > 0);
            QVERIFY(distance <= 256); // two of the values that there are
            previous = m_bar->playedValue();
        }
    }
}

void PNProgressIndicatorTest::isASliderToAssistiveTechnology()
{
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(m_bar);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Slider);
    QAccessibleValueInterface *const value = accessible->valueInterface();
    QVERIFY(value);
    m_bar->setMaxValue(7200);
    m_bar->setPlayedValue(3723);
    QCOMPARE(value->currentValue().toDouble(), 3723.0);
    QCOMPARE(value->maximumValue().toDouble(), 7200.0);
    QCOMPARE(accessible->text(QAccessible::Value), u"1:02:03"_s);
    m_bar->setPlayedValue(123);
    QCOMPARE(accessible->text(QAccessible::Value), u"2:03"_s);
    m_bar->setValueFormatter([](double v) { return QString::number(v / 60); });
    m_bar->setPlayedValue(120);
    QCOMPARE(accessible->text(QAccessible::Value), u"2"_s);
    value->setCurrentValue(600);
    QCOMPARE(m_bar->playedValue(), 600.0);
    QCOMPARE(m_drags.size(), 1);
}

void PNProgressIndicatorTest::obeysAssistiveTechnologyWhereTheUserMayDrag()
{
    QAccessibleValueInterface *const value = QAccessible::queryAccessibleInterface(m_bar)->valueInterface();
    QVERIFY(value);
    m_bar->setUserInteraction(false);
    value->setCurrentValue(60);
    m_bar->setUserInteraction(true);
    m_bar->setEnabled(false);
    value->setCurrentValue(60);
    m_bar->setEnabled(true);
    QCOMPARE(m_bar->playedValue(), 0.0);
    QVERIFY(m_drags.isEmpty());

    Pointer pointer(*m_bar);
    pointer.moveTo(at(8.5 + 141.5));
    pointer.press();
    QVERIFY(m_bar->isMouseDown());
    const float dragged = m_bar->draggedValue();
    value->setCurrentValue(90);
    QCOMPARE(m_bar->draggedValue(), dragged);
    QVERIFY(m_drags.isEmpty());
    pointer.release();
    QCOMPARE(m_drags.size(), 1);
}

void PNProgressIndicatorTest::givesItsColoursToDesigner()
{
    for (const char *name : {"stopColor", "playedStartColor", "playedEndColor", "preloadColor", "starClipsColor"}) {
        QVERIFY2(m_bar->property(name).value<QColor>().isValid(), name);
        QVERIFY2(m_bar->setProperty(name, QColor(Qt::blue)), name);
        QCOMPARE(m_bar->property(name).value<QColor>(), QColor(Qt::blue));
        QVERIFY2(m_bar->setProperty(name, QColor()), name);
        QVERIFY2(!m_bar->property(name).value<QColor>().isValid(), name);
    }
    const QColor track = m_bar->unLoadColor().toQColor();
    QVERIFY(m_bar->setProperty("unLoadColor", QColor(Qt::blue)));
    QCOMPARE(m_bar->property("unLoadColor").value<QColor>(), track);
    QVERIFY(m_bar->setProperty("starClipEndingAdvance", 2.5));
    QCOMPARE(m_bar->starClipEndingAdvance(), 2.5);
}

void PNProgressIndicatorTest::survivesAnyOrderOfValuesAndEvents()
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    const QList<double> values{0, 1, -1, 50, 100, 1e-300, 1e308, -1e308, inf, -inf, qQNaN()};
    quint32 state = 12345;
    const auto next = [&](qsizetype count) {
        state = state * 1664525 + 1013904223;
        return qsizetype(state >> 8) % count;
    };
    const auto any = [&] { return values.at(next(values.size())); };
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    QImage knob(16, 32, QImage::Format_RGB32);
    knob.fill(Qt::white);
    kx::Image::setNamed(u"indicator"_s, knob);
    Pointer pointer(*m_bar);
    for (int i = 0; i < 2000; ++i) {
        const double value = any();
        switch (next(14)) {
        case 0:
            m_bar->setMinValue(value);
            QVERIFY(same(m_bar->minValue(), value));
            break;
        case 1:
            m_bar->setMaxValue(value);
            QVERIFY(same(m_bar->maxValue(), value));
            break;
        case 2:
            if (!m_bar->isMouseDown()) {
                m_bar->setPlayedValue(value);
                QVERIFY(same(m_bar->playedValue(), value));
            }
            break;
        case 3:
            m_bar->setPreloadValue(value);
            QVERIFY(same(m_bar->preloadValue(), value));
            break;
        case 4: m_bar->setTags({value, any(), any()}); break;
        case 5: m_bar->switch2StarMode({any(), any()}, {any()}); break;
        case 6: m_bar->reset2NormalMode(); break;
        case 7:
            m_bar->setNormalHeight(value);
            QVERIFY(same(m_bar->normalHeight(), value));
            break;
        case 8: m_bar->setHoverHeight(value); break;
        case 9: m_bar->setHorizontalPadding(value); break;
        case 10: pointer.moveTo({double(next(400)), double(next(32))}); break;
        case 11: m_bar->isMouseDown() ? pointer.release() : pointer.press(); break;
        case 12: m_bar->setRounded(next(2)); break;
        default: m_bar->setFrame({0, 0, double(next(400)), double(next(40))}); break;
        }
        if (i % 4 == 0)
            m_bar->grab();
    }
    pointer.release();
    kx::Image::setNamed(u"indicator"_s, nullptr);
}

void PNProgressIndicatorTest::mayBeDeletedByItsHandlers_data()
{
    QTest::addColumn<QString>("handler");
    for (const char *handler : {"drag", "hover", "exit", "exit by new areas", "will end", "did end"})
        QTest::newRow(handler) << QString::fromLatin1(handler);
}

void PNProgressIndicatorTest::mayBeDeletedByItsHandlers()
{
    QFETCH(QString, handler);
    const auto deletes = [&](const QString &name) { return name == handler; };
    m_bar->onDraggedIndicator([&](PNProgressIndicator *bar, bool, double) {
        if (deletes(u"drag"_s))
            delete bar;
    });
    m_bar->onHoveredBar(
        [&](PNProgressIndicator *bar, double) {
            if (deletes(u"hover"_s))
                delete bar;
        },
        [&](PNProgressIndicator *bar) {
            if (handler.startsWith(u"exit"))
                delete bar;
        });
    m_bar->onStarClipDurationWillEnd([&](qint32, PNProgressIndicator *bar) {
        if (deletes(u"will end"_s))
            delete bar;
    });
    m_bar->onStarClipDurationDidEnd([&](qint32, PNProgressIndicator *bar) {
        if (deletes(u"did end"_s))
            delete bar;
    });
    m_bar->switch2StarMode({0}, {50.5});
    Pointer pointer(*m_bar);
    if (deletes(u"exit by new areas"_s)) {
        m_bar->mouseEntered(nullptr);
        m_bar->updateTrackingAreas();
        QVERIFY(!m_bar);
        return;
    }
    pointer.moveTo(at(150));
    pointer.press();
    pointer.release();
    if (m_bar)
        pointer.moveTo({350, 16});
    QTRY_VERIFY(!m_bar);
}

QTEST_MAIN(PNProgressIndicatorTest)
#include "PNProgressIndicatorTest.moc"
