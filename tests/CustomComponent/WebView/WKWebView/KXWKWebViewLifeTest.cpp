// SPDX-License-Identifier: MIT
// Many hosts in one process: what they took comes back.
#include "Support/EngineWarnings.h"

#include "HostedPage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QSet>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <algorithm>

#include <unistd.h>

using namespace Qt::StringLiterals;
using kx::test::HostedPage;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool keepsFreedMemory = true; // to find uses of it
#else
constexpr bool keepsFreedMemory = false;
#endif

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Every process that descends from this one and still runs.
QList<int> descendants()
{
    QHash<int, QList<int>> children;
    for (const QString &entry : QDir(u"/proc"_qs).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray stat = contents(u"/proc/%1/stat"_qs.arg(entry));
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        if (entry.toInt() > 0 && fields.size() > 1 && fields.at(0) != "Z")
            children[fields.at(1).toInt()].append(entry.toInt());
    }
    QList<int> found;
    QList<int> open{int(::getpid())};
    while (!open.isEmpty()) {
        const QList<int> next = children.value(open.takeFirst());
        found += next;
        open += next;
    }
    return found;
}

/// Memory that this process alone holds, in MiB.
double privateMemory()
{
    double kilobytes = 0;
    for (const QByteArray &line : contents(u"/proc/self/smaps_rollup"_qs).split('\n')) {
        if (line.startsWith("Private_"))
            kilobytes += line.mid(line.indexOf(':') + 1).simplified().split(' ').first().toDouble();
    }
    return kilobytes / 1024;
}

} // namespace

class KXWKWebViewLifeTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void fiftyHostsLeaveNothing();
    void rebuildingLeavesNothing();
    void applicationMayEndWithAHostAlive();

private:
    void makeAndDestroyHosts(int count);
    [[nodiscard]] bool renderersAreGone() const
    {
        const QList<int> running = descendants();
        return std::none_of(running.cbegin(), running.cend(), [this](int id) { return m_renderers.contains(id); });
    }

    QSet<int> m_renderers; ///< Every process that rendered a page.
    qsizetype m_processes = 0; ///< How many there are without any page.
};

void KXWKWebViewLifeTest::initTestCase()
{
    {
        HostedPage page;
        page.show("started");
        m_renderers.insert(int(page.host->wkWebView()->page().rendererProcessId()));
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
        m_renderers.insert(int(host->wkWebView()->page().rendererProcessId()));
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
        m_renderers.insert(int(page.host->wkWebView()->page().rendererProcessId()));
    }
    QCOMPARE(page.value(u"document.title"_qs), QJsonValue(u"page"_qs));
    m_renderers.remove(int(page.host->wkWebView()->page().rendererProcessId()));
    QTRY_VERIFY(renderersAreGone()); // all but the last
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
