// SPDX-License-Identifier: MIT
// That events of the pointer reach the widget which the views' hitTest() chooses.
#include "TrackedView.h"

#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"

#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>

using namespace Qt::StringLiterals;

namespace {

/// Chooses by a function, if it has one.
class Choosing : public TrackedView {
public:
    using TrackedView::TrackedView;

    std::function<kx::ViewInterface *(const QPointF &point)> choice;
    int asked = 0;

    kx::ViewInterface *hitTest(const QPointF &point) override
    {
        ++asked;
        return choice ? choice(point) : TrackedView::hitTest(point);
    }
    kx::ViewInterface *ordinary(const QPointF &point) { return TrackedView::hitTest(point); }
    void mouseDown(kx::Event *) override { log(u"down"_qs); }
    void mouseUp(kx::Event *) override { log(u"up"_qs); }
    void mouseDragged(kx::Event *) override { log(u"dragged"_qs); }
    void scrollWheel(kx::Event *) override { log(u"wheel"_qs); }

    QStringList events;
    std::function<void()> onEvent;

private:
    void log(const QString &what)
    {
        events << what;
        if (const auto act = onEvent)
            act();
    }
};

kx::ViewInterface *nobody(const QPointF &)
{
    return nullptr;
}

} // namespace

class HitTestingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void pressesFallThroughToAPlainWidget();
    void movesFallThroughToAPlainWidget();
    void theWheelFallsThroughToAPlainWidget();
    void theFirstEventFallsThrough();
    void pressesFallThroughToAView();
    void fallsThroughSeveralLayers();
    void aHoleIsOnePointOnly();
    void aViewThatIsNotHitTakesItsSubviewsAlong();
    void subviewsMayBeHitWhereTheirSuperviewIsNot();
    void aViewMayTakeTheClicksOfItsSubviews();
    void aViewMayChooseALowerSubview();
    void plainChildrenBelongToTheirView();
    void viewsBehindPlainWidgetsAreAsked();
    void viewsThatAreWindowsKeepTheirEvents();
    void aDragStaysWithTheViewThatWasPressed();
    void asksEachViewOnceIfNobodyObjects();
    void nothingStaysTransparent();
    void nothingIsTransparentInAnEventLoopOfAHandler();
    void whatWasTransparentBeforeStaysSo();
    void worksWithinAWindowThatTakesPartInEvents();
    void worksInScrolledContent();
    void choosesByPixelsAtAnyRatio();

private:
    Choosing *add(const QString &name, const QRect &geometry, QWidget *parent = nullptr);

    std::unique_ptr<QMainWindow> m_window;
    LoggingWidget *m_plain = nullptr;
    QStringList m_log;
};

void HitTestingTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = makeWindow();
    m_plain = new LoggingWidget(m_window->centralWidget());
    m_plain->setGeometry(0, 0, 300, 200);
    m_plain->setMouseTracking(true);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_log.clear();
}

void HitTestingTest::cleanup()
{
    m_window.reset();
}

Choosing *HitTestingTest::add(const QString &name, const QRect &geometry, QWidget *parent)
{
    auto *view = new Choosing(name, m_log, parent ? parent : m_window->centralWidget());
    view->setGeometry(geometry);
    view->show();
    return view;
}

void HitTestingTest::pressesFallThroughToAPlainWidget()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->choice = nobody;
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_plain->clicks(), (QList{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(m_plain->entries.last().position, QPointF(20, 20));
    QCOMPARE(view->events, QStringList());
    view->choice = nullptr;
    m_plain->entries.clear();
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_plain->clicks(), QList<QEvent::Type>());
    QCOMPARE(view->events, (QStringList{u"down"_qs, u"up"_qs}));
}

void HitTestingTest::movesFallThroughToAPlainWidget()
{
    add(u"a"_qs, QRect(10, 10, 100, 50))->choice = nobody;
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(21, 20));
    QVERIFY(m_plain->types().contains(QEvent::MouseMove));
    QVERIFY(m_plain->underMouse());
}

void HitTestingTest::theWheelFallsThroughToAPlainWidget()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->choice = nobody;
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.wheel(QPoint(0, 120));
    QCOMPARE(m_plain->clicks(), QList{QEvent::Wheel});
    QCOMPARE(view->events, QStringList());
}

void HitTestingTest::theFirstEventFallsThrough()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->choice = nobody;
    view->setCursor(Qt::WaitCursor);
    m_plain->setCursor(Qt::IBeamCursor);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20)); // with an "enter" event of the window
    QVERIFY(m_plain->underMouse());
    QVERIFY(!view->underMouse());
    QCOMPARE(m_window->windowHandle()->cursor().shape(), Qt::IBeamCursor);
}

void HitTestingTest::pressesFallThroughToAView()
{
    Choosing *low = add(u"low"_qs, QRect(10, 10, 100, 50));
    Choosing *high = add(u"high"_qs, QRect(10, 10, 100, 50));
    high->choice = nobody;
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    pointer.wheel(QPoint(0, 120));
    QCOMPARE(low->events, (QStringList{u"down"_qs, u"up"_qs, u"wheel"_qs}));
    QCOMPARE(high->events, QStringList());
}

void HitTestingTest::fallsThroughSeveralLayers()
{
    for (const QString &name : {u"a"_qs, u"b"_qs, u"c"_qs})
        add(name, QRect(10, 10, 100, 50))->choice = nobody;
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_plain->clicks(), (QList{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
}

void HitTestingTest::aHoleIsOnePointOnly()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    const double pixel = 1 / m_window->devicePixelRatioF();
    QPointF hole;
    view->choice = [&](const QPointF &point) -> kx::ViewInterface * {
        return QLineF(point, hole).length() < pixel / 2 ? nullptr : view->ordinary(point);
    };
    hole = QPointF(30, 200 - 20 - pixel); // counts upwards in the parent
    Pointer pointer(*m_window);
    pointer.click(QPointF(30, 20));
    QCOMPARE(m_plain->clicks().size(), 2);
    QCOMPARE(view->events, QStringList());
    pointer.click(QPointF(30 + pixel, 20));
    QCOMPARE(m_plain->clicks().size(), 2);
    QCOMPARE(view->events.size(), 2);
}

void HitTestingTest::aViewThatIsNotHitTakesItsSubviewsAlong()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Choosing *inner = add(u"b"_qs, QRect(0, 0, 50, 50), view);
    auto *plain = new LoggingWidget(view);
    plain->setGeometry(50, 0, 50, 50);
    plain->show();
    view->choice = nobody;
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    pointer.click(QPointF(70, 20));
    QCOMPARE(m_plain->clicks().size(), 4);
    QCOMPARE(inner->events, QStringList());
    QCOMPARE(plain->types(), QList<QEvent::Type>());
}

void HitTestingTest::subviewsMayBeHitWhereTheirSuperviewIsNot()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Choosing *inner = add(u"b"_qs, QRect(0, 0, 50, 50), view);
    view->choice = [view](const QPointF &point) {
        kx::ViewInterface *hit = view->ordinary(point);
        return hit == view ? nullptr : hit;
    };
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(inner->events, (QStringList{u"down"_qs, u"up"_qs}));
    QCOMPARE(m_plain->clicks(), QList<QEvent::Type>());
    pointer.click(QPointF(70, 20));
    QCOMPARE(view->events, QStringList());
    QCOMPARE(m_plain->clicks().size(), 2);
}

void HitTestingTest::aViewMayTakeTheClicksOfItsSubviews()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Choosing *inner = add(u"b"_qs, QRect(0, 0, 50, 50), view);
    Choosing *innermost = add(u"c"_qs, QRect(0, 0, 50, 50), inner);
    view->choice = [view](const QPointF &point) { return view->ordinary(point) ? view : nullptr; };
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(view->events, (QStringList{u"down"_qs, u"up"_qs}));
    QCOMPARE(inner->events + innermost->events, QStringList());
}

void HitTestingTest::aViewMayChooseALowerSubview()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Choosing *low = add(u"low"_qs, QRect(0, 0, 50, 50), view);
    Choosing *high = add(u"high"_qs, QRect(0, 0, 50, 50), view);
    view->choice = [low](const QPointF &) { return low; };
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(low->events, (QStringList{u"down"_qs, u"up"_qs}));
    QCOMPARE(high->events, QStringList());
}

void HitTestingTest::plainChildrenBelongToTheirView()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    auto *plain = new LoggingWidget(view);
    plain->setGeometry(0, 0, 50, 50);
    plain->show();
    // An obstacle above, so that the widget is looked for among them.
    add(u"b"_qs, QRect(10, 10, 100, 50))->choice = nobody;
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(plain->clicks().size(), 2);
    QCOMPARE(view->events, QStringList());
    pointer.click(QPointF(70, 20));
    QCOMPARE(view->events, (QStringList{u"down"_qs, u"up"_qs}));
}

void HitTestingTest::viewsBehindPlainWidgetsAreAsked()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    auto *between = new QWidget(view);
    between->setGeometry(0, 0, 100, 50);
    between->show();
    Choosing *inner = add(u"b"_qs, QRect(0, 0, 50, 50), between);
    inner->choice = nobody;
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(inner->events, QStringList());
    QCOMPARE(view->events, (QStringList{u"down"_qs, u"up"_qs})); // let go by the plain one
    inner->choice = nullptr;
    view->choice = nobody;
    pointer.click(QPointF(20, 20));
    QCOMPARE(inner->events, QStringList());
    QCOMPARE(m_plain->clicks().size(), 2);
}

void HitTestingTest::viewsThatAreWindowsKeepTheirEvents()
{
    Choosing view(u"a"_qs, m_log);
    Choosing *inner = add(u"b"_qs, QRect(0, 0, 50, 50), &view);
    view.setGeometry(50, 50, 200, 100);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    Pointer pointer(view);
    inner->choice = nobody;
    pointer.click(QPointF(20, 20));
    QCOMPARE(view.events, (QStringList{u"down"_qs, u"up"_qs}));
    inner->choice = nullptr;
    view.choice = nobody; // nothing is beneath a window
    pointer.click(QPointF(20, 20));
    QCOMPARE(inner->events, (QStringList{u"down"_qs, u"up"_qs}));
}

void HitTestingTest::aDragStaysWithTheViewThatWasPressed()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    view->choice = nobody;
    pointer.moveTo(QPointF(30, 20));
    pointer.release();
    QCOMPARE(view->events, (QStringList{u"down"_qs, u"dragged"_qs, u"up"_qs}));
    QCOMPARE(m_plain->clicks(), QList<QEvent::Type>());
}

void HitTestingTest::asksEachViewOnceIfNobodyObjects()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    Choosing *inner = add(u"b"_qs, QRect(0, 0, 50, 50), view);
    Choosing *beside = add(u"c"_qs, QRect(50, 0, 50, 50), view);
    Pointer pointer(*view);
    pointer.moveTo(QPointF(5, 5));
    view->asked = inner->asked = beside->asked = 0;
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(view->asked, 1);
    QCOMPARE(inner->asked, 1);
    QCOMPARE(beside->asked, 0); // not there
}

void HitTestingTest::nothingStaysTransparent()
{
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->choice = nobody;
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    QVERIFY(!view->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(m_window->centralWidget()->childAt(20, 20), view);
}

void HitTestingTest::nothingIsTransparentInAnEventLoopOfAHandler()
{
    Choosing *low = add(u"low"_qs, QRect(10, 10, 100, 50));
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->choice = nobody;
    bool transparent = true;
    low->onEvent = [&] { transparent = view->testAttribute(Qt::WA_TransparentForMouseEvents); };
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    QCOMPARE(low->events.size(), 2);
    QVERIFY(!transparent);
}

void HitTestingTest::whatWasTransparentBeforeStaysSo()
{
    Choosing *low = add(u"low"_qs, QRect(10, 10, 100, 50));
    low->setAttribute(Qt::WA_TransparentForMouseEvents);
    low->choice = nobody;
    add(u"a"_qs, QRect(10, 10, 100, 50))->choice = nobody;
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    QVERIFY(low->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(m_plain->clicks().size(), 2);
}

void HitTestingTest::worksWithinAWindowThatTakesPartInEvents()
{
    LoggingWindow window;
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50), window.view);
    view->choice = nobody;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    Pointer pointer(window);
    pointer.click(QPointF(20, 20));
    QCOMPARE(window.view->clicks(), (QList{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    QCOMPARE(view->events, QStringList());
}

void HitTestingTest::worksInScrolledContent()
{
    auto *scroller = new QScrollArea(m_window->centralWidget());
    scroller->setGeometry(0, 0, 300, 200);
    auto *content = new LoggingWidget;
    content->resize(250, 1000);
    Choosing *view = add(u"a"_qs, QRect(0, 500, 100, 50), content);
    view->choice = nobody;
    scroller->setWidget(content);
    scroller->show();
    scroller->ensureVisible(50, 525);
    Pointer pointer(*view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(content->clicks().size(), 2);
    view->choice = nullptr;
    pointer.click(QPointF(20, 20));
    QCOMPARE(view->events.size(), 2);
}

void HitTestingTest::choosesByPixelsAtAnyRatio()
{
    // The lower half is a hole; the first row of the upper one and the last of the lower one decide.
    Choosing *view = add(u"a"_qs, QRect(10, 10, 100, 50));
    view->choice = [view](const QPointF &point) -> kx::ViewInterface * {
        return point.y() < 200 - 35 ? nullptr : view->ordinary(point);
    };
    const double pixel = 1 / m_window->devicePixelRatioF();
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 35 - pixel));
    QCOMPARE(view->events.size(), 2);
    QCOMPARE(m_plain->clicks().size(), 0);
    pointer.click(QPointF(20, 35));
    QCOMPARE(view->events.size(), 2);
    QCOMPARE(m_plain->clicks().size(), 2);
}

QTEST_MAIN(HitTestingTest)
#include "HitTestingTest.moc"
