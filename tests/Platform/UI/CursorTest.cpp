// SPDX-License-Identifier: MIT
#include "TrackedView.h"

#include <KXFoundation/Platform/UI/Cursor.h>

#include "Support/Pointer.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>

using namespace Qt::StringLiterals;

class CursorTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void showsAtOnce();
    void staysWhileThePointerIsOverTheWidget();
    void staysThroughAPress();
    void isDroppedOverANeighbour();
    void givesWayToTheCursorOfANeighbour();
    void givesWayToWhatANeighbourSetsForTheWindow();
    void givesWayToTheCursorOfAChildAndComesBack();
    void anExitDoesNotTouchTheNextWidget();
    void isResetToTheWidgetsOwn();
    void areasBelongToTheInnermostView();
    void isNotAskedForDuringADrag();
    void doesNothingWhileThePointerIsElsewhere();
    void survivesTheWidgetBeneathIt();
    void givesWayToAnOverrideCursor();
    void theImplementationOfViewsResets();

private:
    [[nodiscard]] Qt::CursorShape shown() const { return m_window->windowHandle()->cursor().shape(); }
    TrackedView *add(const QString &name, const QRect &geometry, QWidget *parent = nullptr);
    /// A view that shows a hand, as clickable controls do.
    TrackedView *addHand(const QString &name, const QRect &geometry);

    std::unique_ptr<QMainWindow> m_window;
    QStringList m_log;
};

void CursorTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = makeWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_log.clear();
}

void CursorTest::cleanup()
{
    m_window.reset();
}

TrackedView *CursorTest::add(const QString &name, const QRect &geometry, QWidget *parent)
{
    auto *view = new TrackedView(name, m_log, parent ? parent : m_window->centralWidget());
    view->setGeometry(geometry);
    view->show();
    return view;
}

TrackedView *CursorTest::addHand(const QString &name, const QRect &geometry)
{
    TrackedView *view = add(name, geometry);
    view->track(0x285);
    view->handler = [](const QString &entry) {
        if (entry.endsWith(u"cursor"_qs))
            kx::Cursor::set(Qt::PointingHandCursor);
        else if (entry.endsWith(u"exited"_qs))
            kx::Cursor::set(Qt::ArrowCursor);
    };
    return view;
}

void CursorTest::showsAtOnce()
{
    add(u"a"_qs, QRect(10, 10, 50, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    kx::Cursor::set(Qt::PointingHandCursor);
    QCOMPARE(shown(), Qt::PointingHandCursor);
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    kx::Cursor::set(Qt::IBeamCursor);
    QCOMPARE(shown(), Qt::IBeamCursor);
}

void CursorTest::staysWhileThePointerIsOverTheWidget()
{
    TrackedView *view = addHand(u"a"_qs, QRect(10, 10, 50, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
    view->setCursor(Qt::WaitCursor); // makes Qt set a cursor of its own
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
}

void CursorTest::staysThroughAPress()
{
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    Pointer pointer(*m_window);
    pointer.click(QPointF(20, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
}

void CursorTest::isDroppedOverANeighbour()
{
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(200, 20)); // the plain content
    QCOMPARE(shown(), Qt::ArrowCursor);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
    pointer.leave();
    pointer.moveTo(QPointF(200, 20));
    QCOMPARE(shown(), Qt::ArrowCursor);
}

void CursorTest::givesWayToTheCursorOfANeighbour()
{
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    QLineEdit neighbour(m_window->centralWidget());
    neighbour.setGeometry(60, 10, 50, 50);
    neighbour.show();
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(70, 20));
    QCOMPARE(shown(), Qt::IBeamCursor);
    pointer.moveTo(QPointF(71, 20));
    QCOMPARE(shown(), Qt::IBeamCursor);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
}

void CursorTest::givesWayToWhatANeighbourSetsForTheWindow()
{
    // As pages of the web engine do.
    class Setting : public QWidget {
    public:
        using QWidget::QWidget;

    protected:
        void mouseMoveEvent(QMouseEvent *) override { window()->windowHandle()->setCursor(Qt::CrossCursor); }
    };
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    Setting neighbour(m_window->centralWidget());
    neighbour.setMouseTracking(true);
    neighbour.setGeometry(60, 10, 50, 50);
    neighbour.show();
    Pointer pointer(*m_window);
    for (int i = 0; i < 2; ++i) {
        pointer.moveTo(QPointF(20, 20));
        QCOMPARE(shown(), Qt::PointingHandCursor);
        pointer.moveTo(QPointF(70, 20));
        QCOMPARE(shown(), Qt::CrossCursor);
    }
}

void CursorTest::givesWayToTheCursorOfAChildAndComesBack()
{
    TrackedView *view = addHand(u"a"_qs, QRect(10, 10, 100, 50));
    QLineEdit child(view);
    child.setGeometry(50, 0, 50, 50);
    child.show();
    QWidget plain(view);
    plain.setGeometry(0, 0, 20, 50);
    plain.show();
    Pointer pointer(*view);
    pointer.moveTo(QPointF(30, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
    pointer.moveTo(QPointF(70, 20));
    QCOMPARE(shown(), Qt::IBeamCursor);
    pointer.moveTo(QPointF(30, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
    pointer.moveTo(QPointF(10, 20)); // a child without a cursor of its own
    QCOMPARE(shown(), Qt::PointingHandCursor);
}

void CursorTest::anExitDoesNotTouchTheNextWidget()
{
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    const auto other = makeWindow();
    other->centralWidget()->setCursor(Qt::WaitCursor);
    other->show();
    QVERIFY(QTest::qWaitForWindowExposed(other.get()));
    Pointer(*m_window).moveTo(QPointF(20, 20));
    Pointer(*other).moveTo(QPointF(20, 20));
    QCOMPARE(other->windowHandle()->cursor().shape(), Qt::WaitCursor);
}

void CursorTest::isResetToTheWidgetsOwn()
{
    TrackedView *view = add(u"a"_qs, QRect(10, 10, 50, 50));
    view->setCursor(Qt::IBeamCursor);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    kx::Cursor::set(Qt::PointingHandCursor);
    kx::Cursor::reset();
    QCOMPARE(shown(), Qt::IBeamCursor);
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(shown(), Qt::IBeamCursor);
}

void CursorTest::areasBelongToTheInnermostView()
{
    TrackedView *outer = add(u"outer"_qs, QRect(10, 10, 100, 50));
    TrackedView *inner = add(u"inner"_qs, QRect(0, 0, 50, 50), outer);
    outer->track(0x284);
    inner->track(0x284);
    Pointer pointer(*outer);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(70, 20));
    pointer.moveTo(QPointF(71, 20));
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(m_log, (QStringList{u"inner cursor"_qs, u"outer cursor"_qs, u"inner cursor"_qs}));
}

void CursorTest::isNotAskedForDuringADrag()
{
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    add(u"b"_qs, QRect(60, 10, 50, 50))->track(0x284);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    pointer.moveTo(QPointF(70, 20));
    QCOMPARE(shown(), Qt::PointingHandCursor);
    QVERIFY(!m_log.contains(u"b cursor"_qs));
    pointer.release();
    QCOMPARE(m_log.last(), u"b cursor"_qs);
    QCOMPARE(shown(), Qt::ArrowCursor);
}

void CursorTest::doesNothingWhileThePointerIsElsewhere()
{
    add(u"a"_qs, QRect(10, 10, 50, 50));
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    pointer.leave();
    kx::Cursor::set(Qt::PointingHandCursor);
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    kx::Cursor::reset();
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(shown(), Qt::ArrowCursor);
}

void CursorTest::survivesTheWidgetBeneathIt()
{
    TrackedView *view = addHand(u"a"_qs, QRect(10, 10, 50, 50));
    add(u"b"_qs, QRect(0, 0, 300, 200))->track(0x284);
    view->raise();
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    delete view;
    m_log.clear();
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(m_log, QStringList{u"b cursor"_qs});
    QCOMPARE(shown(), Qt::ArrowCursor);
}

void CursorTest::givesWayToAnOverrideCursor()
{
    addHand(u"a"_qs, QRect(10, 10, 50, 50));
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::BusyCursor);
    QGuiApplication::restoreOverrideCursor();
    QCOMPARE(shown(), Qt::PointingHandCursor);
}

void CursorTest::theImplementationOfViewsResets()
{
    kx::View view(m_window->centralWidget());
    view.setGeometry(10, 10, 50, 50);
    view.setCursor(Qt::IBeamCursor);
    view.show();
    Pointer pointer(*m_window);
    pointer.moveTo(QPointF(20, 20));
    kx::Cursor::set(Qt::PointingHandCursor);
    view.cursorUpdate(nullptr);
    QCOMPARE(shown(), Qt::IBeamCursor);
}

QTEST_MAIN(CursorTest)
#include "CursorTest.moc"
