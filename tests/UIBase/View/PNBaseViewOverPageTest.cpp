// SPDX-License-Identifier: MIT
// A view that lets the mouse through to a page beneath it, which the engine paints and handles in a widget of its own.
#include <KXFoundation/UIBase/View/PNBaseView.h>

#include "Support/EngineDocument.h"
#include "Support/EngineWarnings.h"
#include "Support/Pointer.h"

#include <QtTest/QTest>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QMainWindow>

using namespace Qt::StringLiterals;

class PNBaseViewOverPageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void thePageGetsWhatFallsThrough();
    void thePageGetsNothingOtherwise();

private:
    [[nodiscard]] int count(const QString &name) { return kx::test::evaluate(*m_page->page(), name).toInt(); }

    std::unique_ptr<QMainWindow> m_window;
    QWebEngineView *m_page = nullptr;
    PNBaseView *m_view = nullptr;
};

// Starts the engine and waits until it paints. Where there is no OpenGL, it complains about that meanwhile.
void PNBaseViewOverPageTest::initTestCase()
{
    QWebEngineView page;
    page.show();
    QVERIFY(kx::test::load(*page.page(),
        QUrl(u"data:text/html,<script>var painted = false;"
             "requestAnimationFrame(function () { painted = true; });</script>"_qs)));
    QTRY_VERIFY(kx::test::evaluate(*page.page(), u"painted"_qs).toBool());
}

void PNBaseViewOverPageTest::init()
{
    QTest::failOnWarning(kx::test::anyWarningButTheEngines());
    m_window = std::make_unique<QMainWindow>();
    auto *content = new QWidget;
    m_window->setCentralWidget(content);
    m_window->resize(300, 200);
    m_page = new QWebEngineView(content);
    m_page->setGeometry(0, 0, 300, 200);
    m_view = new PNBaseView(content);
    m_view->setGeometry(0, 0, 300, 100);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(kx::test::load(*m_page->page(),
        QUrl(u"data:text/html,<body style='height:1000px'>"
             "<script>var downs = 0, moves = 0, wheels = 0;"
             "addEventListener('mousedown', function () { ++downs; });"
             "addEventListener('mousemove', function () { ++moves; });"
             "addEventListener('wheel', function () { ++wheels; });</script>"_qs)));
}

void PNBaseViewOverPageTest::cleanup()
{
    m_window.reset();
}

void PNBaseViewOverPageTest::thePageGetsWhatFallsThrough()
{
    m_view->setUserInteraction(false);
    Pointer pointer(*m_window);
    int x = 20;
    // The engine takes events from the time on at which it has painted.
    QVERIFY(QTest::qWaitFor(
        [&] {
            pointer.click(QPointF(++x % 200, 50));
            pointer.wheel(QPoint(0, -120));
            return count(u"downs"_qs) > 0 && count(u"moves"_qs) > 0 && count(u"wheels"_qs) > 0;
        },
        20'000));
}

void PNBaseViewOverPageTest::thePageGetsNothingOtherwise()
{
    Pointer pointer(*m_window);
    int x = 20;
    QVERIFY(QTest::qWaitFor(
        [&] {
            pointer.click(QPointF(++x % 200, 50)); // on the view
            pointer.moveTo(QPointF(x % 200, 150)); // below it
            return count(u"moves"_qs) > 0;
        },
        20'000));
    QCOMPARE(count(u"downs"_qs), 0);
}

QTEST_MAIN(PNBaseViewOverPageTest)
#include "PNBaseViewOverPageTest.moc"
