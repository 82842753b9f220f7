// SPDX-License-Identifier: MIT
#include "BaseWindowFixture.h"
#include "Support/WindowWarnings.h"

#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

using QtTypes = QList<QEvent::Type>;

/// What the window is, and where it is movable. What happens to a drag is in PNBaseWindowDragTest.
class PNBaseWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void startsAsAPlainWindow();
    void bothConstructorsSetUp();
    void setUpRestoresTheSwitch();
    void looksLight();
    void doesNotCenterItself();
    void canBecomeKeyAndMain();
    void derivedRectanglesFollowTheFrame();
    void findsPointsOnTheSystemsEdges_data();
    void findsPointsOnTheSystemsEdges();
    void takesAPress_data();
    void takesAPress();
    void survivesOddDictionaries_data();
    void survivesOddDictionaries();
    void leavesTheButtonCornerAlone_data();
    void leavesTheButtonCornerAlone();
    void theButtonCornerIsThatOfTheEventsWindow();
    void leavesTheCustomButtonsAlone();
    void customButtonsInAnotherWindowDoNotCount();
    void forgetsAViewThatIsGone();
    void otherEventsAreHandedOn();
    void tellsOfItsProperties();

private:
    std::unique_ptr<TestWindow> m_window;
};

void PNBaseWindowTest::init()
{
    failOnWindowWarnings();
    m_window = std::make_unique<TestWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCoreApplication::processEvents();
    m_window->view->entries.clear();
}

void PNBaseWindowTest::startsAsAPlainWindow()
{
    const PNBaseWindow window;
    QVERIFY(window.ignoreDragRect());
    QCOMPARE(window.specialMovableRect(), QRectF(0, 0, 0, 0));
    QVERIFY(window.includeArr().isEmpty());
    QVERIFY(window.excludeDic().isEmpty());
    QCOMPARE(window.systemStandardSuperView(), nullptr);
    QCOMPARE(window.customStandardSuperView(), nullptr);
    QVERIFY(!window.useCustomStandardView());
    QVERIFY(!window.onNativeEatEventBlock());

    const QRectF frame = m_window->frame();
    for (const QPointF &point : {QPointF(5, 295), QPointF(200, 150), QPointF(395, 5), QPointF(399, 299)}) {
        m_window->view->entries.clear();
        dragBy(*m_window, point, QPointF(30, 20));
        QCOMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    }
    QCOMPARE(m_window->frame(), frame);
    QCOMPARE(m_window->taken, 0);
}

void PNBaseWindowTest::bothConstructorsSetUp()
{
    const PNBaseWindow first(QRectF(10, 20, 300, 200), kx::WindowStyle::Titled | kx::WindowStyle::Closable);
    const PNBaseWindow second(QRectF(10, 20, 300, 200), kx::WindowStyle::Borderless, kx::BackingStore::Buffered, true,
        QGuiApplication::primaryScreen());
    for (const PNBaseWindow *window : {&first, &second}) {
        QVERIFY(window->ignoreDragRect());
        QCOMPARE(window->appearance(), kx::Appearance::VibrantLight);
        QCOMPARE(window->contentRectForFrameRect(window->frame()), QRectF(10, 20, 300, 200));
    }
    QVERIFY(first.windowHandle());
    QVERIFY(!second.windowHandle());
}

void PNBaseWindowTest::setUpRestoresTheSwitch()
{
    m_window->setIgnoreDragRect(false);
    m_window->setSpecialMovableRect(QRectF(1, 2, 3, 4));
    m_window->setUp();
    QVERIFY(m_window->ignoreDragRect());
    QCOMPARE(m_window->specialMovableRect(), QRectF(1, 2, 3, 4));
}

void PNBaseWindowTest::looksLight()
{
    const QPalette before = QApplication::palette();
    QPalette dark(QColor(40, 40, 40));
    QApplication::setPalette(dark);
    const PNBaseWindow window;
    auto *label = new QLabel(m_window->view);
    for (const QWidget *widget : {static_cast<const QWidget *>(&window), static_cast<const QWidget *>(label)}) {
        QVERIFY(widget->palette().color(QPalette::Window).lightness() > 200);
        QVERIFY(widget->palette().color(QPalette::WindowText).lightness() < 50);
    }
    QApplication::setPalette(before);
}

void PNBaseWindowTest::doesNotCenterItself()
{
    const QRectF frame = m_window->frame();
    m_window->center();
    static_cast<kx::Window &>(*m_window).center();
    QCOMPARE(m_window->frame(), frame);
}

void PNBaseWindowTest::canBecomeKeyAndMain()
{
    for (const kx::WindowStyle style : {kx::WindowStyle::Borderless, kx::WindowStyle::Titled}) {
        const PNBaseWindow window(QRectF(0, 0, 10, 10), style, kx::BackingStore::Buffered, true);
        QVERIFY(window.canBecomeKeyWindow());
        QVERIFY(window.canBecomeMainWindow());
    }
    QVERIFY(m_window->isActiveWindow());
}

void PNBaseWindowTest::derivedRectanglesFollowTheFrame()
{
    QCOMPARE(m_window->resizeAreaRect(), QRectF(380, 0, 20, 20));
    QCOMPARE(m_window->noNeedToInterventionRects(),
        (QList{QRectF(0, 297, 400, 3), QRectF(397, 0, 3, 300), QRectF(388, 288, 12, 12)}));
    m_window->setFrame(QRectF(100, 200, 500, 350), true);
    QCOMPARE(m_window->resizeAreaRect(), QRectF(480, 0, 20, 20));
    QCOMPARE(m_window->noNeedToInterventionRects(),
        (QList{QRectF(0, 347, 500, 3), QRectF(497, 0, 3, 350), QRectF(488, 338, 12, 12)}));
}

void PNBaseWindowTest::findsPointsOnTheSystemsEdges_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("inside");
    QTest::newRow("top strip, its lower edge") << QPointF(200, 297) << true;
    QTest::newRow("beneath the top strip") << QPointF(200, 296.999) << false;
    QTest::newRow("top strip, leftmost") << QPointF(0, 298) << true;
    QTest::newRow("above the window") << QPointF(200, 300) << false;
    QTest::newRow("right strip, its left edge") << QPointF(397, 100) << true;
    QTest::newRow("left of the right strip") << QPointF(396.999, 100) << false;
    QTest::newRow("right strip, lowest") << QPointF(398, 0) << true;
    QTest::newRow("right of the window") << QPointF(400, 100) << false;
    QTest::newRow("corner, its lower left") << QPointF(388, 288) << true;
    QTest::newRow("left of the corner") << QPointF(387.999, 290) << false;
    QTest::newRow("beneath the corner") << QPointF(390, 287.999) << false;
    QTest::newRow("middle") << QPointF(200, 150) << false;
    QTest::newRow("bottom left") << QPointF(0, 0) << false;
}

void PNBaseWindowTest::findsPointsOnTheSystemsEdges()
{
    QFETCH(QPointF, point);
    QTEST(m_window->isInNoNeedToInterventionRects(point), "inside");
}

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct Areas {
    bool ignore = false;
    QRectF special;
    QList<QRectF> include;
    QVariantMap exclude;
};
Q_DECLARE_METATYPE(Areas)

static QVariantMap mainAndExclude(const QRectF &mainRect, const QVariantList &exclude = {})
{
    QVariantMap map{{u"mainRect"_qs, mainRect}};
    if (!exclude.isEmpty())
        map.insert(u"exclude"_qs, exclude);
    return map;
}

void PNBaseWindowTest::takesAPress_data()
{
    QTest::addColumn<Areas>("areas");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("taken");
    const QRectF all(0, 0, 400, 300);
    const QRectF some(50, 50, 100, 100);
    const QPointF in(100, 100);
    const QPointF out(200, 200);

    QTest::newRow("nothing set") << Areas{true, {}, {}, {}} << in << false;
    QTest::newRow("switched on, without areas") << Areas{false, {}, {}, {}} << in << false;
    QTest::newRow("areas, but switched off") << Areas{true, {}, {all}, mainAndExclude(all)} << in << false;

    QTest::newRow("in the special area") << Areas{false, some, {}, {}} << in << true;
    QTest::newRow("in the special area, switched off") << Areas{true, some, {}, {}} << in << true;
    QTest::newRow("beside the special area") << Areas{false, some, {all}, mainAndExclude(all)} << out << false;
    QTest::newRow("beside the special area, switched off")
        << Areas{true, some, {all}, mainAndExclude(all)} << out << false;
    QTest::newRow("special area, excluded") << Areas{false, some, {}, mainAndExclude(all, {some})} << in << true;
    QTest::newRow("special area, its lower left") << Areas{false, some, {}, {}} << QPointF(50, 50) << true;
    QTest::newRow("special area, its right edge") << Areas{false, some, {}, {}} << QPointF(150, 100) << false;
    QTest::newRow("special area on the top edge") << Areas{false, all, {}, {}} << QPointF(200, 298) << true;
    QTest::newRow("special area without a size") << Areas{false, QRectF(5, 5, 0, 0), {all}, {}} << in << false;
    QTest::newRow("special area smaller than a comparison")
        << Areas{false, QRectF(0, 0, 1e-13, 0), {all}, {}} << in << false;
    QTest::newRow("special area of no number") << Areas{false, QRectF(0, 0, notANumber, 9), {all}, {}} << in << false;

    QTest::newRow("in an include area") << Areas{false, {}, {QRectF(0, 0, 1, 1), some}, {}} << in << true;
    QTest::newRow("beside the include areas") << Areas{false, {}, {some}, {}} << out << false;
    QTest::newRow("include area on the top edge") << Areas{false, {}, {all}, {}} << QPointF(200, 298) << true;
    QTest::newRow("include area on the right edge") << Areas{false, {}, {all}, {}} << QPointF(398, 100) << true;
    QTest::newRow("included and excluded") << Areas{false, {}, {some}, mainAndExclude(all, {some})} << in << true;

    QTest::newRow("in the main area") << Areas{false, {}, {}, mainAndExclude(some)} << in << true;
    QTest::newRow("beside the main area") << Areas{false, {}, {}, mainAndExclude(some)} << out << false;
    QTest::newRow("main area, excluded") << Areas{false, {}, {}, mainAndExclude(all, {QRectF(0, 0, 1, 1), some})} << in
                                         << false;
    QTest::newRow("main area, beside what is excluded")
        << Areas{false, {}, {}, mainAndExclude(all, {some})} << out << true;
    QTest::newRow("main area, on the top edge")
        << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(200, 297) << false;
    QTest::newRow("main area, beneath the top edge")
        << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(200, 296) << true;
    QTest::newRow("main area, on the right edge")
        << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(397, 100) << false;
    QTest::newRow("main area, left of the right edge")
        << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(396, 100) << true;
    QTest::newRow("main area, top-right corner")
        << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(388, 288) << false;
    QTest::newRow("main area, left of that corner")
        << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(387, 290) << true;
    QTest::newRow("main area, resizing corner") << Areas{false, {}, {}, mainAndExclude(all)} << QPointF(390, 5) << true;
}

void PNBaseWindowTest::takesAPress()
{
    QFETCH(Areas, areas);
    QFETCH(QPointF, point);
    QFETCH(bool, taken);
    m_window->setIgnoreDragRect(areas.ignore);
    m_window->setSpecialMovableRect(areas.special);
    m_window->updateMoveIncludeRect(areas.include);
    m_window->updateMoveExcludeRect(areas.exclude);
    const QRectF frame = m_window->frame();
    dragBy(*m_window, point, QPointF(30, 40));
    QCOMPARE(m_window->taken, int(taken));
    QCOMPARE(m_window->frame() != frame, taken);
    QTRY_COMPARE(m_window->view->clicks(), (QtTypes{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void PNBaseWindowTest::survivesOddDictionaries_data()
{
    QTest::addColumn<QVariantMap>("exclude");
    QTest::addColumn<bool>("taken");
    const QRectF all(0, 0, 400, 300);
    QTest::newRow("empty") << QVariantMap() << false;
    QTest::newRow("no main area") << QVariantMap{{u"exclude"_qs, QVariantList{all}}} << false;
    QTest::newRow("a main area that is a text") << QVariantMap{{u"mainRect"_qs, u"all"_qs}} << false;
    QTest::newRow("a main area of whole numbers") << QVariantMap{{u"mainRect"_qs, QRect(0, 0, 400, 300)}} << true;
    QTest::newRow("an empty exclusion") << QVariantMap{{u"mainRect"_qs, all}, {u"exclude"_qs, QVariantList()}} << true;
    QTest::newRow("an exclusion that is no list") << QVariantMap{{u"mainRect"_qs, all}, {u"exclude"_qs, 5}} << true;
    QTest::newRow("exclusions that are no rectangles")
        << QVariantMap{{u"mainRect"_qs, all}, {u"exclude"_qs, QVariantList{5, u"x"_qs, QVariant()}}} << true;
    QTest::newRow("a typed list") << QVariantMap{{u"mainRect"_qs, all},
        {u"exclude"_qs, QVariant::fromValue(QList<QRectF>{all})}}
                                  << false;
}

void PNBaseWindowTest::survivesOddDictionaries()
{
    QFETCH(QVariantMap, exclude);
    m_window->setIgnoreDragRect(false);
    m_window->updateMoveExcludeRect(exclude);
    dragBy(*m_window, QPointF(200, 100), QPointF(10, 0));
    QTEST(m_window->taken == 1, "taken");
}

void PNBaseWindowTest::leavesTheButtonCornerAlone_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("taken");
    QTest::newRow("in it") << QPointF(10, 290) << false;
    QTest::newRow("its lower left") << QPointF(0, 265) << false;
    QTest::newRow("its last column") << QPointF(79, 280) << false;
    QTest::newRow("right of it") << QPointF(80, 280) << true;
    QTest::newRow("beneath it") << QPointF(10, 264) << true;
}

void PNBaseWindowTest::leavesTheButtonCornerAlone()
{
    QFETCH(QPointF, point);
    QFETCH(bool, taken);
    makeAllMovable(*m_window);
    dragBy(*m_window, point, QPointF(10, 0));
    QCOMPARE(m_window->taken, int(taken));
    m_window->setSpecialMovableRect(QRectF(0, 0, 400, 300));
    dragBy(*m_window, point, QPointF(10, 0));
    QCOMPARE(m_window->taken, 2 * int(taken));
}

void PNBaseWindowTest::theButtonCornerIsThatOfTheEventsWindow()
{
    const auto taken = [this](QWidget *window, const QPointF &location) {
        m_window->taken = 0;
        const QPointF origin = window ? kx::screenFrame(*window).topLeft() : QPointF();
        kx::Event press(kx::EventType::LeftMouseDown, window, origin + location);
        m_window->sendEvent(&press);
        return m_window->taken;
    };
    m_window->setIgnoreDragRect(false);
    m_window->updateMoveIncludeRect({QRectF(0, -100, 400, 700)});
    QCOMPARE(taken(m_window.get(), QPointF(10, 290)), 0);
    QCOMPARE(taken(m_window.get(), QPointF(10, 490)), 1);
    QWidget higher;
    higher.setGeometry(50, 60, 300, 500);
    QCOMPARE(taken(&higher, QPointF(10, 290)), 1);
    QCOMPARE(taken(&higher, QPointF(10, 490)), 0);
    // Without a window, the corner is the one below the origin.
    QCOMPARE(taken(nullptr, QPointF(10, 290)), 1);
    QCOMPARE(taken(nullptr, QPointF(10, -10)), 0);
    QCOMPARE(taken(nullptr, QPointF(10, -36)), 1);
}

void PNBaseWindowTest::leavesTheCustomButtonsAlone()
{
    auto *holder = new kx::View(m_window->view);
    holder->setFrame(QRectF(100, 100, 60, 40));
    holder->show();
    makeAllMovable(*m_window);
    dragBy(*m_window, QPointF(120, 110), QPointF(10, 0));
    QCOMPARE(m_window->taken, 1);
    m_window->setCustomStandardSuperView(holder);
    QCOMPARE(m_window->customStandardSuperView(), holder);
    dragBy(*m_window, QPointF(120, 110), QPointF(10, 0));
    dragBy(*m_window, QPointF(100, 100), QPointF(10, 0));
    QCOMPARE(m_window->taken, 1);
    dragBy(*m_window, QPointF(160, 110), QPointF(10, 0));
    dragBy(*m_window, QPointF(120, 140), QPointF(10, 0));
    QCOMPARE(m_window->taken, 3);
    m_window->setCustomStandardSuperView(nullptr);
    dragBy(*m_window, QPointF(120, 110), QPointF(10, 0));
    QCOMPARE(m_window->taken, 4);
}

void PNBaseWindowTest::customButtonsInAnotherWindowDoNotCount()
{
    kx::View elsewhere;
    elsewhere.setFrame(QRectF(0, 0, 400, 300));
    m_window->setCustomStandardSuperView(&elsewhere);
    makeAllMovable(*m_window);
    dragBy(*m_window, QPointF(120, 110), QPointF(10, 0));
    QCOMPARE(m_window->taken, 1);
}

void PNBaseWindowTest::forgetsAViewThatIsGone()
{
    {
        kx::View custom;
        kx::View system;
        m_window->setCustomStandardSuperView(&custom);
        m_window->setSystemStandardSuperView(&system);
        QCOMPARE(m_window->systemStandardSuperView(), &system);
    }
    QCOMPARE(m_window->customStandardSuperView(), nullptr);
    QCOMPARE(m_window->systemStandardSuperView(), nullptr);
    makeAllMovable(*m_window);
    dragBy(*m_window, QPointF(120, 110), QPointF(10, 0));
    QCOMPARE(m_window->taken, 1);
}

void PNBaseWindowTest::otherEventsAreHandedOn()
{
    makeAllMovable(*m_window);
    Pointer pointer(*m_window->view);
    pointer.moveTo(QPointF(200, 150));
    m_window->view->entries.clear();
    pointer.press(Qt::RightButton);
    pointer.moveBy(QPointF(20, 0));
    pointer.release(Qt::RightButton);
    pointer.press(Qt::MiddleButton);
    pointer.release(Qt::MiddleButton);
    pointer.wheel(QPoint(0, 120));
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    m_window->sendEvent(nullptr);
    QCOMPARE(m_window->view->types(),
        (QtTypes{QEvent::MouseButtonPress, QEvent::ContextMenu, QEvent::MouseMove, QEvent::MouseButtonRelease,
            QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::Wheel, QEvent::KeyPress,
            QEvent::KeyRelease}));
    QCOMPARE(m_window->taken, 0);
}

void PNBaseWindowTest::tellsOfItsProperties()
{
    const QSignalSpy ignore(m_window.get(), &PNBaseWindow::ignoreDragRectChanged);
    const QSignalSpy special(m_window.get(), &PNBaseWindow::specialMovableRectChanged);
    const QSignalSpy include(m_window.get(), &PNBaseWindow::includeArrChanged);
    const QSignalSpy exclude(m_window.get(), &PNBaseWindow::excludeDicChanged);
    const QSignalSpy custom(m_window.get(), &PNBaseWindow::useCustomStandardViewChanged);
    m_window->setProperty("ignoreDragRect", false);
    m_window->setProperty("specialMovableRect", QRectF(1, 2, 3, 4));
    m_window->setProperty("includeArr", QVariant::fromValue(QList<QRectF>{QRectF(5, 6, 7, 8)}));
    m_window->setProperty("excludeDic", mainAndExclude(QRectF(1, 1, 1, 1)));
    m_window->setProperty("useCustomStandardView", true);
    QVERIFY(!m_window->ignoreDragRect());
    QCOMPARE(m_window->specialMovableRect(), QRectF(1, 2, 3, 4));
    QCOMPARE(m_window->includeArr(), QList<QRectF>{QRectF(5, 6, 7, 8)});
    QCOMPARE(m_window->excludeDic().value(u"mainRect"_qs).toRectF(), QRectF(1, 1, 1, 1));
    QVERIFY(m_window->useCustomStandardView());
    for (const QSignalSpy *spy : {&ignore, &special, &include, &exclude, &custom})
        QCOMPARE(spy->size(), 1);
    m_window->setIgnoreDragRect(false);
    m_window->setUseCustomStandardView(true);
    QCOMPARE(ignore.size(), 1);
    QCOMPARE(custom.size(), 1);
}

QTEST_MAIN(PNBaseWindowTest)
#include "PNBaseWindowTest.moc"
