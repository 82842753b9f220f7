// SPDX-License-Identifier: MIT
// Many hosts in one process: what they took comes back.
#include "Support/EngineWarnings.h"
#include "Support/Processes.h"

#include "HostedPage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;
using kx::test::descendants;
using kx::test::HostedPage;
using kx::test::keepsFreedMemory;
using kx::test::privateMemory;

class KXWKWebViewLifeTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void fiftyHostsLeaveNothing();
    void rebuildingLeavesNothing();
    void mayBeDeletedBeforeItLoadsAnything();
    void applicationMayEndWithAHostAlive();

private:
    void makeAndDestroyHosts(int count);
    [[nodiscard]] bool renderersAreGone() const
    {
        const QList<qint64> running = descendants();
        return std::none_of(running.cbegin(), running.cend(), [this](qint64 id) { return m_renderers.contains(id); });
    }

    QSet<qint64> m_renderers; ///< Every process that rendered a page.
    qsizetype m_processes = 0; ///< How many there are without any page.
};

void KXWKWebViewLifeTest::initTestCase()
{
    {
        HostedPage page;
        page.show("started");
        m_renderers.insert(page.host->wkWebView()->page().rendererProcessId());
        QVERIFY(!renderersAreGone());
    }
    QTRY_VERIFY(renderersAreGone());
    m_processes = descendants().size();
}

void KXWKWebViewLifeTest::makeAndDestroyHosts(int count)
{
    QTemporaryDir directory;
    QFile file(directory.filePath(u"index.html"_qs));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("<title>page</title><script>_vexa.invokeNative('hello'); var much = new Array(1e5).fill(1);"
                       "</script><iframe srcdoc='a frame'></iframe>")
        > 0);
    file.close();

    QWidget window;
    window.resize(320, 240);
    window.show();
    int hellos = 0;
    QList<QPointer<KXWKWebView>> hosts;
    QList<QPointer<KXWebView>> webViews;
    for (int i = 0; i < count; ++i) {
        auto *host = new KXWKWebView(&window);
        host->setFrame(QRectF(0, 0, 320, 240));
        host->show();
        host->jsBridge()->registerMethod(u"hello"_qs, [&hellos](const QJsonValue &, const auto &) { ++hellos; });
        host->updateURL(QUrl::fromLocalFile(file.fileName()));
        hosts.append(host);
        webViews.append(host->wkWebView());
    }
    QTRY_COMPARE_WITH_TIMEOUT(hellos, count, 30000);
    for (const auto &host : std::as_const(hosts))
        QTRY_VERIFY(!host->wkWebView()->isLoading());
    for (const auto &host : std::as_const(hosts)) {
        m_renderers.insert(host->wkWebView()->page().rendererProcessId());
        delete host;
    }
    for (const auto &webView : std::as_const(webViews))
        QVERIFY(!webView);
}

void KXWKWebViewLifeTest::fiftyHostsLeaveNothing()
{
    makeAndDestroyHosts(5); // what the engine keeps from then on
    const double memory = privateMemory();
    for (int i = 0; i < 10; ++i)
        makeAndDestroyHosts(5);
    QTRY_VERIFY(renderersAreGone());
    QVERIFY(m_renderers.size() > 10);
    QTRY_VERIFY(descendants().size() <= m_processes);
    // Less than one MiB for each of them.
    const double grown = privateMemory() - memory;
    qInfo("50 hosts: %d child processes before and %d after, %.1f MiB grown to %.1f", int(m_processes),
        int(descendants().size()), memory, memory + grown);
    QVERIFY2(grown < 40 || keepsFreedMemory, qPrintable(QString::number(grown)));
}

void KXWKWebViewLifeTest::rebuildingLeavesNothing()
{
    HostedPage page;
    page.show("<title>page</title>");
    for (int i = 0; i < 10; ++i) {
        const QPointer<KXWebView> before = page.host->wkWebView();
        page.host->rebuildWebview();
        QVERIFY(!before);
        page.load(page.host->url());
        m_renderers.insert(page.host->wkWebView()->page().rendererProcessId());
    }
    QCOMPARE(page.value(u"document.title"_qs), QJsonValue(u"page"_qs));
    m_renderers.remove(page.host->wkWebView()->page().rendererProcessId());
    QTRY_VERIFY(renderersAreGone()); // all but the last
}

// There is nothing to stop then; asking the engine to would begin a page, in a view that is about to go.
void KXWKWebViewLifeTest::mayBeDeletedBeforeItLoadsAnything()
{
    QTRY_VERIFY(renderersAreGone());
    const QList<qint64> processes = descendants();
    {
        QWidget parent;
        (void)new KXWKWebView(&parent);
        (new KXWKWebView(&parent))->updateURL(QUrl(u"data:text/html,never"_qs));
    }
    const auto alone = std::make_unique<KXWKWebView>(QRectF(0, 0, 100, 100));
    alone->wkWebView()->stopLoading();
    QCOMPARE(alone->wkWebView()->page().rendererProcessId(), 0);
    QCOMPARE(descendants(), processes);
}

void KXWKWebViewLifeTest::applicationMayEndWithAHostAlive()
{
    static KXWKWebView *const host = new KXWKWebView(QRectF(0, 0, 100, 100)); // nobody deletes it
    QSignalSpy completed(host, &KXWKWebView::navigationCompleted);
    host->updateURL(QUrl(u"data:text/html,left"_qs));
    QVERIFY(completed.wait());
}

QTEST_MAIN(KXWKWebViewLifeTest)
#include "KXWKWebViewLifeTest.moc"
