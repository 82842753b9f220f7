// SPDX-License-Identifier: MIT
// The host with real loads: which navigations happen, how they end, what is rebuilt.
#include "Support/EngineWarnings.h"

#include "HostedPage.h"

#include <KXFoundation/Category/TimerUtil.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <csignal>

using namespace Qt::StringLiterals;
using kx::test::HostedPage;

class KXWKWebViewLoadTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { kx::test::startEngine(); }
    void init();
    void cleanup() { m_page.reset(); }

    void finishedNavigationsComplete();
    void mainPageDoesNotCompleteByItself();
    void twoLoadsWithinASecondShareOneTimer();
    void refusesItsOwnLoads();
    void tellsWhatStarts();
    void reportsAMissingLocalPage();
    void aFileOutsideTheGrantedDirectoryIsNotRead();
    void unknownHostIsAnyFailure();
    void refusedConnectionIsAnyFailure();
    void aCutBodyCompletes();
    void frameMayTakeOverForAllowedHosts();
    void frameMayNotTakeOverForOthers();
    void frameMayNotForgeTheMainFramesSigns();
    void mainFrameGoesAnywhere();
    void linksToNewWindowsAreOffered();
    void deathDuringALoadRebuilds();
    void thirdDeathDoesNotRebuild();
    void deathAtRestIsOnlyTold();

private:
    KXWKWebView *host() { return m_page->host; }
    /// Starts a load that is never answered, kills the renderer that the host has, and lets the server answer from now
    /// on.
    void dieLoading(const QByteArray &path);
    /// A page that is one frame of another site, filled by a link that takes over the window.
    void showTakeOver(const QUrl &target);
    /// The engine finds frames of other processes under the mouse only some time after they were painted, and clicks
    /// in quick succession are no single clicks.
    bool clickUntil(const std::function<bool()> &condition)
    {
        return QTest::qWaitFor([&] {
            m_page->click({100, 100});
            return QTest::qWaitFor(condition, 500);
        });
    }

    std::unique_ptr<HostedPage> m_page;
};

void KXWKWebViewLoadTest::init()
{
    QTest::failOnWarning(kx::test::anyWarningButTheEngines());
    m_page = std::make_unique<HostedPage>();
}

void KXWKWebViewLoadTest::finishedNavigationsComplete()
{
    const QSignalSpy completed(host(), &KXWKWebView::navigationCompleted);
    host()->updateURL(m_page->file("page"));
    zq_pause(host()->loadTimer()); // so that it is not the timer
    QTRY_COMPARE(completed.size(), 1);
    QCOMPARE(completed.at(0).at(0).value<KXWebView *>(), host()->wkWebView());
    QVERIFY(!host()->loadTimer());
}

void KXWKWebViewLoadTest::mainPageDoesNotCompleteByItself()
{
    host()->setName(u"root"_qs);
    const QSignalSpy completed(host(), &KXWKWebView::navigationCompleted);
    host()->updateURL(m_page->file("<title>root</title>"));
    const auto timer = host()->loadTimer();
    zq_pause(timer);
    QTRY_COMPARE(m_page->value(u"document.readyState + document.title"_qs), QJsonValue(u"completeroot"_qs));
    QTRY_VERIFY(!host()->wkWebView()->isLoading());
    QVERIFY(timer->isValid());
    QVERIFY(completed.isEmpty());
    zq_resumeNow(timer);
    QTRY_COMPARE(completed.size(), 1);
}

void KXWKWebViewLoadTest::twoLoadsWithinASecondShareOneTimer()
{
    host()->updateURL(m_page->file("one"));
    const auto timer = host()->loadTimer();
    const auto due = timer->fireDate();
    host()->updateURL(m_page->file("<title>two</title>", u"two.html"_qs));
    QCOMPARE(host()->loadTimer(), timer);
    QVERIFY(timer->fireDate() >= due);
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"two"_qs));
    QCOMPARE(m_page->log.lines(),
        QStringList{u"[wk] didFailProvisionalNavigation (-999) %1"_qs.arg(m_page->file("one").toString())});
}

void KXWKWebViewLoadTest::refusesItsOwnLoads()
{
    host()->setAllowNavigation(false);
    host()->willStartNewNavigationAction([](const kx::NavigationAction &) { QFAIL("refused"); });
    const QUrl url = m_page->server.url("/page");
    host()->updateURL(url);
    QTRY_COMPARE(
        m_page->log.lines(), QStringList{u"[wk] didFailProvisionalNavigation (102) %1"_qs.arg(url.toString())});
    QVERIFY(m_page->server.requests().isEmpty());
    host()->setAllowNavigation(true);
    host()->willStartNewNavigationAction({});
    m_page->load(url);
    QVERIFY(m_page->server.requests().contains("/page"));
}

void KXWKWebViewLoadTest::tellsWhatStarts()
{
    QStringList started;
    host()->willStartNewNavigationAction([&started](const kx::NavigationAction &action) {
        started.append(action.url.path());
        QVERIFY(action.sourceFrame.mainFrame);
    });
    m_page->server.serve("/page", {"<title>page</title>"});
    m_page->load(m_page->server.url("/page"));
    QCOMPARE(started, QStringList{u"/page"_qs});
}

void KXWKWebViewLoadTest::reportsAMissingLocalPage()
{
    QStringList paths;
    host()->loadLocalH5NotExsit([&paths](const QString &path) { paths.append(path); });
    host()->updateURL(QUrl(u"file:///x/index%20a.html?a=1"_qs));
    QTRY_COMPARE(paths, QStringList{u"/x/index%20a.html"_qs});
    QTRY_COMPARE(m_page->log.lines(),
        (QStringList{u"[wk] file is not exist /x/index%20a.html"_qs,
            u"[wk] didFailProvisionalNavigation (-1100) file:///x/index%20a.html?a=1"_qs}));
    QCOMPARE(host()->autoRebuildCount(), 0);
}

void KXWKWebViewLoadTest::aFileOutsideTheGrantedDirectoryIsNotRead()
{
    QFile near(m_page->directory.filePath(u"app/near.js"_qs));
    QVERIFY(near.open(QIODevice::WriteOnly) && near.write("window.near = 1;") > 0);
    QFile far(m_page->directory.filePath(u"far.js"_qs));
    QVERIFY(far.open(QIODevice::WriteOnly) && far.write("window.far = 1;") > 0);
    near.close();
    far.close();
    m_page->show("<script src='../near.js'></script><script src='../../far.js'></script>");
    // Two levels above the page's file is the folder with near.js.
    QCOMPARE(m_page->value(u"typeof near + typeof far"_qs), QJsonValue(u"numberundefined"_qs));
}

void KXWKWebViewLoadTest::unknownHostIsAnyFailure()
{
    host()->updateURL(QUrl(u"http://nowhere.invalid/"_qs));
    QTRY_COMPARE(
        m_page->log.lines(), QStringList{u"[wk] didFailProvisionalNavigation (-1003) http://nowhere.invalid/"_qs});
}

void KXWKWebViewLoadTest::refusedConnectionIsAnyFailure()
{
    QUrl url;
    {
        const kx::test::HttpServer gone;
        url = gone.url("/");
    }
    host()->updateURL(url);
    QTRY_COMPARE(
        m_page->log.lines(), QStringList{u"[wk] didFailProvisionalNavigation (-1004) %1"_qs.arg(url.toString())});
}

void KXWKWebViewLoadTest::aCutBodyCompletes()
{
    kx::test::HttpResponse cut{"<p>a page that breaks off</p>"};
    cut.cutAfter = 10;
    m_page->server.serve("/cut", cut);
    host()->setName(u"root"_qs); // this failure completes the main page as well
    const QSignalSpy completed(host(), &KXWKWebView::navigationCompleted);
    host()->updateURL(m_page->server.url("/cut"));
    zq_pause(host()->loadTimer()); // so that it is not the timer
    QTRY_COMPARE(completed.size(), 1);
    QCOMPARE(m_page->log.lines().size(), 1);
    QVERIFY2(
        m_page->log.lines().first().startsWith(u"[wk] didFailNavigation Error Domain=NSURLErrorDomain Code=-1005"_qs),
        qPrintable(m_page->log.lines().first()));
    QCOMPARE(host()->autoRebuildCount(), 0);
}

// --- frames
// -----------------------------------------------------------------------------------------------------------

void KXWKWebViewLoadTest::showTakeOver(const QUrl &target)
{
    kx::test::HttpServer &server = m_page->server;
    server.serve("/frame",
        {"<style>* { margin: 0 } a { display: block; height: 200px }</style><a target=_top href='" + target.toEncoded()
            + "'>take over</a><script>top.postMessage('ready', '*')</script>"});
    server.serve("/main",
        {"<style>* { margin: 0; border: 0 } iframe { width: 300px; height: 200px }</style><script>"
         "addEventListener('message', function () { document.title = 'ready'; });</script><iframe src='"
            + server.url("/frame", "localhost").toEncoded() + "'></iframe>"});
    host()->setName(u"root"_qs);
    host()->updateURL(server.url("/main"));
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"ready"_qs));
    QTRY_VERIFY(!host()->wkWebView()->isLoading());
}

void KXWKWebViewLoadTest::frameMayTakeOverForAllowedHosts()
{
    m_page->server.serve("/landed", {"<title>landed</title>"});
    host()->setWhiteHostList({u"a.localhost:%1"_qs.arg(m_page->server.port())});
    showTakeOver(m_page->server.url("/landed", "a.localhost"));
    const QSignalSpy started(host(), &KXWKWebView::navigationStarted);
    QVERIFY(clickUntil([&started] { return !started.isEmpty(); })); // one more click would start it anew
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"landed"_qs));
    QVERIFY(m_page->log.lines().filter(u"forbidden"_qs).isEmpty());
}

void KXWKWebViewLoadTest::frameMayNotTakeOverForOthers()
{
    m_page->server.serve("/landed", {"<title>landed</title>"});
    host()->setWhiteHostList({u"a.localhost:%1"_qs.arg(m_page->server.port())});
    showTakeOver(m_page->server.url("/landed", "b.localhost"));
    QStringList started;
    host()->willStartNewNavigationAction(
        [&started](const kx::NavigationAction &action) { started.append(action.url.toString()); });
    QVERIFY(clickUntil([this] { return m_page->log.lines().contains(u"[wk] forbidden host:b.localhost"_qs); }));
    QCOMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"ready"_qs)); // the page stays
    QVERIFY(!m_page->server.requests().contains("/landed"));
    QVERIFY(started.isEmpty());
}

// The frame takes the event target by which the worlds of its own child meet, and posts a list there: its length, 1, is
// not that of its text, so that what follows the first letter would pass for a record of its own.
void KXWKWebViewLoadTest::frameMayNotForgeTheMainFramesSigns()
{
    kx::test::HttpServer &server = m_page->server;
    const QByteArray landed = server.url("/landed", "b.localhost").toEncoded();
    server.serve("/landed", {"<title>landed</title>"});
    server.serve("/frame",
        {"<style>html, body { margin: 0; height: 100% }</style><body><script>onclick = function () {"
         "var line = 'navigate main script "
            + landed
            + "'; var record = 'xf0,' + line.length + ',' + line;"
              "var child = document.body.appendChild(document.createElement('iframe')); child.hidden = true;"
              "var Target = child.contentWindow.EventTarget;"
              "child.contentWindow.EventTarget = function () { var target = Reflect.construct(Target, []);"
              "Promise.resolve().then(function () {"
              "target.dispatchEvent(new MessageEvent('s0', {data: [record]}));"
              "setTimeout(function () { top.location = '"
            + landed
            + "'; }, 50); }); return target; }; child.src = '/child'; };"
              "top.postMessage('ready', '*')</script>"});
    server.serve("/main",
        {"<style>* { margin: 0; border: 0 } iframe { width: 300px; height: 200px }</style><script>"
         "addEventListener('message', function () { document.title = 'ready'; });</script><iframe src='"
            + server.url("/frame", "localhost").toEncoded() + "'></iframe>"});
    host()->setName(u"root"_qs);
    host()->updateURL(server.url("/main"));
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"ready"_qs));
    QTRY_VERIFY(!host()->wkWebView()->isLoading());
    QVERIFY(clickUntil([this] { return m_page->log.lines().contains(u"[wk] forbidden host:b.localhost"_qs); }));
    QVERIFY(!server.requests().contains("/landed"));
    QCOMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"ready"_qs));
}

void KXWKWebViewLoadTest::mainFrameGoesAnywhere()
{
    m_page->server.serve("/landed", {"<title>landed</title>"});
    m_page->server.serve("/main",
        {"<style>* { margin: 0 } a { display: block; height: 200px }</style><a href='"
            + m_page->server.url("/landed", "b.localhost").toEncoded() + "'>go</a>"});
    host()->setName(u"root"_qs);
    m_page->load(m_page->server.url("/main"));
    m_page->click({100, 100});
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"landed"_qs));
    QVERIFY(m_page->log.lines().isEmpty());
}

void KXWKWebViewLoadTest::linksToNewWindowsAreOffered()
{
    m_page->server.serve("/main",
        {"<style>* { margin: 0 } a { display: block; height: 200px }</style>"
         "<a target=_blank href='https://a.example/new'>new</a>"});
    m_page->load(m_page->server.url("/main"));
    QList<kx::NavigationAction> actions;
    host()->onWebViewNavigationAction(
        [&actions](const kx::NavigationAction &action, const kx::WindowFeatures &) { actions.append(action); });
    m_page->click({100, 100});
    QTRY_COMPARE(actions.size(), 1);
    QCOMPARE(actions.first().url, QUrl(u"https://a.example/new"_qs));
    QVERIFY(!actions.first().targetFrame);
    QCOMPARE(host()->wkWebView()->url(), m_page->server.url("/main"));
}

// --- the process dies
// -------------------------------------------------------------------------------------------------

void KXWKWebViewLoadTest::dieLoading(const QByteArray &path)
{
    kx::test::HttpServer &server = m_page->server;
    kx::test::HttpResponse silent;
    silent.silent = true;
    server.serve(path, silent);
    const qsizetype before = server.requests().size();
    host()->updateURL(server.url(path));
    QTRY_VERIFY(server.requests().size() > before);
    server.serve(path, {"<title>" + path + "</title>"});
    const qint64 process = host()->wkWebView()->page().rendererProcessId();
    QVERIFY(process > 0);
    QCOMPARE(::kill(pid_t(process), SIGKILL), 0);
}

void KXWKWebViewLoadTest::deathDuringALoadRebuilds()
{
    m_page->show("alive");
    host()->jsBridge()->registerMethod(
        u"name"_qs, [](const QJsonValue &, const auto &completion) { completion(u"player"_qs); });
    const QPointer<KXWebView> first = host()->wkWebView();
    dieLoading("/one");
    QTRY_VERIFY(!first);
    QCOMPARE(host()->autoRebuildCount(), 1);
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"/one"_qs));
    QCOMPARE(m_page->log.lines(),
        QStringList{u"[wk] will rebuild after occur error:%1"_qs.arg(m_page->server.url("/one").toString())});
    host()->wkWebView()->executeJavaScript(
        u"_vexa.invokeNativeOnce('name', {}, function (n) { document.title = n; })"_qs);
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"player"_qs));
}

void KXWKWebViewLoadTest::thirdDeathDoesNotRebuild()
{
    m_page->show("alive");
    for (const QByteArray &path : {QByteArray("/one"), QByteArray("/two")}) {
        dieLoading(path);
        QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(QString::fromLatin1(path)));
        QTRY_VERIFY(!host()->wkWebView()->isLoading());
    }
    QCOMPARE(host()->autoRebuildCount(), 2);
    const QPointer<KXWebView> third = host()->wkWebView();
    dieLoading("/three");
    const auto url = [this](const QByteArray &path) { return m_page->server.url(path).toString(); };
    QTRY_COMPARE(m_page->log.lines(),
        (QStringList{u"[wk] will rebuild after occur error:"_qs + url("/one"),
            u"[wk] will rebuild after occur error:"_qs + url("/two"),
            u"[wk] didFailProvisionalNavigation (1) "_qs + url("/three")}));
    QCOMPARE(host()->wkWebView(), third);
    QCOMPARE(host()->autoRebuildCount(), 2);
    m_page->load(m_page->server.url("/three")); // by hand it goes on
    QCOMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"/three"_qs));
}

void KXWKWebViewLoadTest::deathAtRestIsOnlyTold()
{
    const QUrl url = m_page->file("<title>alive</title>");
    m_page->load(url);
    const QPointer<KXWebView> first = host()->wkWebView();
    const QSignalSpy terminated(host(), &KXWKWebView::webContentProcessTerminated);
    QCOMPARE(::kill(pid_t(first->page().rendererProcessId()), SIGKILL), 0);
    QTRY_COMPARE(terminated.size(), 1);
    QCOMPARE(host()->wkWebView(), first);
    QCOMPARE(host()->autoRebuildCount(), 0);
    QCOMPARE(m_page->log.lines(), QStringList{u"[wk] web content process terminated %1"_qs.arg(url.toString())});
    host()->reloadCurrentURL();
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"alive"_qs));
}

QTEST_MAIN(KXWKWebViewLoadTest)
#include "KXWKWebViewLoadTest.moc"
