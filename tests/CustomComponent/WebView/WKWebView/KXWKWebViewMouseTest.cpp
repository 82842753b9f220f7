// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include <QtGui/QMouseEvent>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;
using kx::test::FakeWebEngine;

namespace {

/// Counts what the window system's events bring to a widget and the widgets below it.
class Watch : public QObject {
public:
    explicit Watch(QWidget *widget)
    {
        widget->setMouseTracking(true);
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress: ++presses; return true;
        case QEvent::MouseButtonRelease: ++releases; return true;
        case QEvent::MouseMove: ++moves; return true;
        case QEvent::Wheel: ++wheels; return true;
        case QEvent::Enter: ++enters; return false;
        default: return false;
        }
    }
    int presses = 0;
    int releases = 0;
    int moves = 0;
    int wheels = 0;
    int enters = 0;
};

} // namespace

class KXWKWebViewMouseTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void mouseReachesThePage();
    void mousePassesThroughToWhatLiesBeneath();
    void mouseComesBack();
    void passesThroughAfterARebuild();
    void isHitLikeAnyView();
    void isNotHitWithoutInteraction();
    void isNotHitWhenHidden();

private:
    void mouseThrough(const QPoint &point);

    FakeWebEngine m_engine;
    std::unique_ptr<kx::View> m_window;
    kx::View *m_beneath = nullptr;
    KXWKWebView *m_host = nullptr;
};

void KXWKWebViewMouseTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<kx::View>();
    m_window->resize(400, 300);
    m_beneath = new kx::View(m_window.get());
    m_beneath->setFrame(QRectF(0, 0, 400, 300));
    m_host = new KXWKWebView(QRectF(0, 0, 200, 300), m_engine, m_window.get());
    m_host->setFrame(QRectF(0, 0, 200, 300));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void KXWKWebViewMouseTest::mouseThrough(const QPoint &point)
{
    QWindow *window = m_window->windowHandle();
    QTest::mouseMove(window, QPoint(390, 10));
    QTest::mouseMove(window, point);
    QTest::mouseMove(window, point + QPoint(1, 1));
    QTest::mouseClick(window, Qt::LeftButton, {}, point);
    QWheelEvent wheel(point, window->mapToGlobal(point), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window, &wheel);
}

void KXWKWebViewMouseTest::mouseReachesThePage()
{
    const Watch page(m_engine.page()->widget());
    const Watch beneath(m_beneath);
    mouseThrough({50, 50});
    QCOMPARE(page.presses, 1);
    QCOMPARE(page.releases, 1);
    QCOMPARE(page.enters, 1);
    QVERIFY(page.moves > 0);
    QCOMPARE(page.wheels, 1);
    QCOMPARE(beneath.presses, 0);
    QCOMPARE(beneath.wheels, 0);
}

void KXWKWebViewMouseTest::mousePassesThroughToWhatLiesBeneath()
{
    m_host->setUserInteraction(false);
    const Watch page(m_engine.page()->widget());
    const Watch host(m_host);
    const Watch webView(m_host->wkWebView());
    const Watch beneath(m_beneath);
    mouseThrough({50, 50});
    QCOMPARE(beneath.presses, 1);
    QCOMPARE(beneath.releases, 1);
    QVERIFY(beneath.moves > 0);
    QCOMPARE(beneath.wheels, 1);
    for (const Watch *passed : {&page, &host, &webView}) {
        QCOMPARE(passed->presses, 0);
        QCOMPARE(passed->moves, 0);
        QCOMPARE(passed->enters, 0);
        QCOMPARE(passed->wheels, 0);
    }
    QVERIFY(m_engine.page()->ignoresMouseEvents);
}

void KXWKWebViewMouseTest::mouseComesBack()
{
    m_host->setUserInteraction(false);
    m_host->setUserInteraction(true);
    const Watch page(m_engine.page()->widget());
    mouseThrough({50, 50});
    QCOMPARE(page.presses, 1);
    QVERIFY(!m_engine.page()->ignoresMouseEvents);
}

void KXWKWebViewMouseTest::passesThroughAfterARebuild()
{
    m_host->setUserInteraction(false);
    m_host->rebuildWebview();
    const Watch page(m_engine.page()->widget());
    const Watch beneath(m_beneath);
    mouseThrough({50, 50});
    QCOMPARE(page.presses, 0);
    QCOMPARE(beneath.presses, 1);
}

void KXWKWebViewMouseTest::isHitLikeAnyView()
{
    QCOMPARE(m_host->hitTest(QPointF(10, 10)), m_host->wkWebView());
    QCOMPARE(m_host->hitTest(QPointF(200, 10)), nullptr);
    QCOMPARE(m_window->hitTest(QPointF(250, 10)), m_beneath);
}

void KXWKWebViewMouseTest::isNotHitWithoutInteraction()
{
    m_host->setUserInteraction(false);
    QCOMPARE(m_host->hitTest(QPointF(10, 10)), nullptr);
    QCOMPARE(m_window->hitTest(QPointF(10, 10)), m_beneath);
}

void KXWKWebViewMouseTest::isNotHitWhenHidden()
{
    m_host->hide();
    QCOMPARE(m_host->hitTest(QPointF(10, 10)), nullptr);
    QCOMPARE(m_window->hitTest(QPointF(10, 10)), m_beneath);
}

QTEST_MAIN(KXWKWebViewMouseTest)
#include "KXWKWebViewMouseTest.moc"
