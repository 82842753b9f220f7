// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"
#include "Support/SharedLog.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>
#include <KXFoundation/Platform/Core/Timer.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using kx::NavigationPolicy;
using kx::test::FakeWebEngine;
using kx::test::FakeWebPage;

namespace {

const QUrl page1(u"https://a.example/"_qs);

KXError urlError(qint64 code, const QString &url)
{
    return {kx::URLErrorDomain, code, u"failed"_qs, {{kx::FailingURLStringKey, url}}};
}

KXError processDied(const QString &url)
{
    return {kx::CFNetworkErrorDomain, kx::ProcessDiedDuringLoad, u"died"_qs, {{kx::FailingURLStringKey, url}}};
}

kx::NavigationAction takeOver(const QString &url)
{
    kx::NavigationAction action;
    action.url = QUrl(url);
    action.sourceFrame = {false};
    action.targetFrame = kx::FrameInfo{true};
    return action;
}

} // namespace

class KXWKWebViewNavigationTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void followsAllowNavigation();
    void refusesItsOwnLoads();
    void mainPageIsTakenOverByAllowedHostsOnly();
    void logsTheForbiddenHostAsTypeOne();
    void otherHostsRefuseWithoutALine();
    void startsOnlyWhatIsAllowed();
    void tellsOfTheStartBeforeItAnswersOnce();

    void rebuildsWhenTheProcessDiesDuringALoad();
    void rebuildsTwiceInItsLife();
    void countsAsTakenCareOfWithoutAURL();
    void rebuildsOnRequest();
    void rebuiltFromAGivenConfiguration();
    void reportsAMissingLocalPage();
    void reportsAMissingLocalPageToNobody();
    void rebuildsWhenTheLocalFileIsThere();
    void onlyLogsABlankLocalPage();
    void logsAnyOtherFailure_data();
    void logsAnyOtherFailure();
    void copesWithoutAnError();
    void completesAfterAFailureBehindTheBeginning();
    void aStoppedLoadIsAFailureToo();
    void failuresAreOfTypeTwo();

private:
    FakeWebPage *page() { return m_engine.page(); }

    FakeWebEngine m_engine;
    std::optional<kx::test::SharedLog> m_log;
    std::unique_ptr<KXWKWebView> m_host;
};

void KXWKWebViewNavigationTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_host.reset();
    m_log.emplace();
    m_engine.configurations.clear();
    KXWKWebView::setOwnWebHost({});
    m_host = std::make_unique<KXWKWebView>(QRectF(0, 0, 320, 200), m_engine);
}

// --- which navigations happen
// -----------------------------------------------------------------------------------------

void KXWKWebViewNavigationTest::followsAllowNavigation()
{
    QCOMPARE(page()->ask(takeOver(u"https://b.example/"_qs)), NavigationPolicy::Allow);
    m_host->setAllowNavigation(false);
    QCOMPARE(page()->ask(takeOver(u"file:///x"_qs)), NavigationPolicy::Cancel);
    QCOMPARE(page()->ask({}), NavigationPolicy::Cancel);
    m_host->setName(u"root"_qs);
    QCOMPARE(page()->ask({}), NavigationPolicy::Allow);
}

void KXWKWebViewNavigationTest::refusesItsOwnLoads()
{
    m_host->setAllowNavigation(false);
    m_host->updateURL(page1);
    QTRY_VERIFY(!page()->isLoading());
    QCOMPARE(m_log->lines(), QStringList{u"[wk] didFailProvisionalNavigation (102) (null)"_qs});
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QVERIFY(m_host->loadTimer()); // the completion comes by the timer
}

void KXWKWebViewNavigationTest::mainPageIsTakenOverByAllowedHostsOnly()
{
    m_host->setName(u"root"_qs);
    m_host->setWhiteHostList({u"listed.example:8080"_qs});
    QCOMPARE(page()->ask(takeOver(u"https://listed.example/"_qs)), NavigationPolicy::Allow);
    QCOMPARE(page()->ask(takeOver(u"https://own.example/"_qs)), NavigationPolicy::Cancel);
    KXWKWebView::setOwnWebHost(u"own.example"_qs);
    QCOMPARE(KXWKWebView::ownWebHost(), u"own.example"_qs);
    QCOMPARE(page()->ask(takeOver(u"https://own.example/"_qs)), NavigationPolicy::Allow);
    QCOMPARE(page()->ask(takeOver(u"https://other.example/"_qs)), NavigationPolicy::Cancel);
    kx::NavigationAction byItself = takeOver(u"https://other.example/"_qs);
    byItself.sourceFrame = {true};
    QCOMPARE(page()->ask(byItself), NavigationPolicy::Allow);
}

void KXWKWebViewNavigationTest::logsTheForbiddenHostAsTypeOne()
{
    m_host->setName(u"root"_qs);
    (void)page()->ask(takeOver(u"https://other.example:81/x"_qs));
    (void)page()->ask(takeOver(u"data:text/html,x"_qs));
    KXLogger::sharedLogger().setLogType(2);
    (void)page()->ask(takeOver(u"https://quiet.example/"_qs));
    KXLogger::sharedLogger().setLogType(1);
    (void)page()->ask(takeOver(u"https://last.example/"_qs));
    QCOMPARE(m_log->lines(),
        (QStringList{u"[wk] forbidden host:other.example"_qs, u"[wk] forbidden host:(null)"_qs,
            u"[wk] forbidden host:last.example"_qs}));
}

void KXWKWebViewNavigationTest::otherHostsRefuseWithoutALine()
{
    m_host->setAllowNavigation(false);
    (void)page()->ask(takeOver(u"https://other.example/"_qs));
    QVERIFY(m_log->lines().isEmpty());
}

void KXWKWebViewNavigationTest::startsOnlyWhatIsAllowed()
{
    QList<QUrl> started;
    m_host->willStartNewNavigationAction(
        [&started](const kx::NavigationAction &action) { started.append(action.url); });
    const QSignalSpy signalled(m_host.get(), &KXWKWebView::navigationStarted);
    m_host->setName(u"root"_qs);
    (void)page()->ask(takeOver(u"file:///allowed"_qs));
    (void)page()->ask(takeOver(u"https://refused.example/"_qs));
    m_host->setName(u"ad"_qs);
    (void)page()->ask(takeOver(u"https://also.example/"_qs));
    m_host->setAllowNavigation(false);
    (void)page()->ask(takeOver(u"https://no.example/"_qs));
    QCOMPARE(started, (QList<QUrl>{QUrl(u"file:///allowed"_qs), QUrl(u"https://also.example/"_qs)}));
    QCOMPARE(signalled.size(), 2);
}

void KXWKWebViewNavigationTest::tellsOfTheStartBeforeItAnswersOnce()
{
    QStringList order;
    m_host->willStartNewNavigationAction([&order](const kx::NavigationAction &) { order.append(u"block"_qs); });
    connect(m_host.get(), &KXWKWebView::navigationStarted, this, [&order] { order.append(u"signal"_qs); });
    const auto ask = [this, &order] {
        m_host->webViewDecidePolicyForNavigationAction(
            m_host->wkWebView(), takeOver(u"https://b.example/"_qs), [&order](NavigationPolicy policy) {
                order.append(policy == NavigationPolicy::Allow ? u"allow"_qs : u"cancel"_qs);
            });
    };
    ask();
    QCOMPARE(order, (QStringList{u"block"_qs, u"signal"_qs, u"allow"_qs}));
    order.clear();
    m_host->setAllowNavigation(false);
    ask();
    QCOMPARE(order, QStringList{u"cancel"_qs});
}

// --- what a failed load leads to
// --------------------------------------------------------------------------------------

void KXWKWebViewNavigationTest::rebuildsWhenTheProcessDiesDuringALoad()
{
    m_host->updateURL(page1);
    const auto timer = m_host->loadTimer();
    const QPointer<KXWebView> first = m_host->wkWebView();
    page()->die();
    QVERIFY(!first);
    QCOMPARE(m_host->autoRebuildCount(), 1);
    QCOMPARE(m_engine.pages.size(), 1);
    QCOMPARE(page()->loads, (QList<FakeWebPage::Load>{{page1, {}}}));
    QCOMPARE(m_host->loadTimer(), timer); // restarted
    QVERIFY(m_host->weakProxy());
    QCOMPARE(m_log->lines(), QStringList{u"[wk] will rebuild after occur error:https://a.example/"_qs});
}

void KXWKWebViewNavigationTest::rebuildsTwiceInItsLife()
{
    m_host->updateURL(page1);
    for (int i = 0; i < 4; ++i)
        page()->fail(processDied(u"https://a.example/"_qs));
    QCOMPARE(m_host->autoRebuildCount(), 2);
    QCOMPARE(m_engine.configurations.size(), 3);
    const QString rebuilt = u"[wk] will rebuild after occur error:https://a.example/"_qs;
    const QString failed = u"[wk] didFailProvisionalNavigation (1) https://a.example/"_qs;
    QCOMPARE(m_log->lines(), (QStringList{rebuilt, rebuilt, failed, failed}));
    // A load that works does not bring new attempts.
    m_host->updateURL(page1);
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    page()->fail(processDied(u"https://a.example/"_qs)); // behind the beginning: another matter
    m_host->updateURL(page1);
    page()->die();
    QCOMPARE(m_engine.configurations.size(), 3);
}

void KXWKWebViewNavigationTest::countsAsTakenCareOfWithoutAURL()
{
    page()->fail(processDied(u"https://a.example/"_qs));
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QCOMPARE(m_engine.configurations.size(), 1);
    QVERIFY(m_log->lines().isEmpty());
}

void KXWKWebViewNavigationTest::rebuildsOnRequest()
{
    QVERIFY(m_host->rebuildWK()); // nothing to load: nothing is done
    m_host->setUrl(QUrl(u"http://[no address"_qs));
    QVERIFY(m_host->rebuildWK());
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QCOMPARE(m_engine.configurations.size(), 1);
    m_host->setUrl(page1);
    for (const int count : {1, 2}) {
        QVERIFY(m_host->rebuildWK());
        QCOMPARE(m_host->autoRebuildCount(), count);
        QCOMPARE(m_engine.configurations.size(), count + 1);
        QCOMPARE(page()->loads, (QList<FakeWebPage::Load>{{page1, {}}}));
        QVERIFY(m_host->loadTimer());
    }
    QVERIFY(!m_host->rebuildWK());
    QCOMPARE(m_engine.configurations.size(), 3);
    QCOMPARE(m_log->lines().size(), 2);
    m_host->setUrl({});
    QVERIFY(!m_host->rebuildWK()); // the count comes first
    m_host->setAutoRebuildCount(-1);
    m_host->setUrl(page1);
    QVERIFY(m_host->rebuildWK());
    QCOMPARE(m_host->autoRebuildCount(), 0);
}

void KXWKWebViewNavigationTest::rebuiltFromAGivenConfiguration()
{
    const auto given = std::make_shared<kx::WebViewConfiguration>(m_engine);
    m_host->setConfiguration(given);
    m_host->updateURL(page1);
    page()->die();
    QCOMPARE(m_host->wkWebView()->configuration(), given);
}

void KXWKWebViewNavigationTest::reportsAMissingLocalPage()
{
    QStringList paths;
    m_host->loadLocalH5NotExsit([&paths](const QString &path) { paths.append(path); });
    const QSignalSpy missing(m_host.get(), &KXWKWebView::localPageMissing);
    m_host->updateURL(QUrl(u"file:///x/index.html?a=1"_qs));
    page()->fail(urlError(kx::URLErrorFileDoesNotExist, u"file:///x/index.html?a=1"_qs));
    QCOMPARE(paths, QStringList{u"/x/index.html"_qs});
    QCOMPARE(missing.size(), 1);
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QCOMPARE(m_log->lines(),
        (QStringList{u"[wk] file is not exist /x/index.html"_qs,
            u"[wk] didFailProvisionalNavigation (-1100) file:///x/index.html?a=1"_qs}));
}

void KXWKWebViewNavigationTest::reportsAMissingLocalPageToNobody()
{
    page()->fail(urlError(kx::URLErrorFileDoesNotExist, u"file:///x/a%20b.html"_qs));
    QCOMPARE(m_log->lines(),
        (QStringList{u"[wk] file is not exist /x/a%20b.html"_qs,
            u"[wk] didFailProvisionalNavigation (-1100) file:///x/a%20b.html"_qs}));
}

void KXWKWebViewNavigationTest::rebuildsWhenTheLocalFileIsThere()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(u"index.html"_qs);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString url = u"file://%1?a=1"_qs.arg(path);
    m_host->loadLocalH5NotExsit([](const QString &) { QFAIL("it is there"); });
    m_host->updateURL(QUrl(url));
    for (int i = 0; i < 3; ++i)
        page()->fail(urlError(kx::URLErrorFileDoesNotExist, url));
    QCOMPARE(m_host->autoRebuildCount(), 2);
    QCOMPARE(page()->loads, (QList<FakeWebPage::Load>{{QUrl(url), QFileInfo(directory.path()).path()}}));
    const QString found = u"[wk] wtf? file is exist %1,will rebuild"_qs.arg(path);
    const QString rebuilt = u"[wk] will rebuild after occur error:%1"_qs.arg(url);
    QCOMPARE(m_log->lines(),
        (QStringList{
            found, rebuilt, found, rebuilt, found, u"[wk] didFailProvisionalNavigation (-1100) %1"_qs.arg(url)}));
}

void KXWKWebViewNavigationTest::onlyLogsABlankLocalPage()
{
    m_host->loadLocalH5NotExsit([](const QString &) { QFAIL("no page at all"); });
    m_host->updateURL(page1);
    page()->fail(urlError(kx::URLErrorFileDoesNotExist, u"file:///x/about:blank?a"_qs));
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QCOMPARE(m_log->lines(), QStringList{u"[wk] fuck,who want goto blank?"_qs});
}

void KXWKWebViewNavigationTest::logsAnyOtherFailure_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<qint64>("code");
    QTest::addColumn<QString>("line");
    QTest::newRow("unknown host") << kx::URLErrorDomain << qint64(kx::URLErrorCannotFindHost)
                                  << u"[wk] didFailProvisionalNavigation (-1003) https://a.example/"_qs;
    QTest::newRow("refused by a decision") << kx::WebErrorDomain << qint64(kx::WebErrorFrameLoadInterrupted)
                                           << u"[wk] didFailProvisionalNavigation (102) https://a.example/"_qs;
    QTest::newRow("code 1 of another domain")
        << kx::URLErrorDomain << qint64(1) << u"[wk] didFailProvisionalNavigation (1) https://a.example/"_qs;
    QTest::newRow("missing, but not a file") << kx::URLErrorDomain << qint64(kx::URLErrorFileDoesNotExist)
                                             << u"[wk] didFailProvisionalNavigation (-1100) https://a.example/"_qs;
}

void KXWKWebViewNavigationTest::logsAnyOtherFailure()
{
    QFETCH(QString, domain);
    QFETCH(qint64, code);
    m_host->updateURL(page1);
    const auto timer = m_host->loadTimer();
    KXError error = urlError(code, u"https://a.example/"_qs);
    error.domain = domain;
    page()->fail(error);
    QFETCH(QString, line);
    QCOMPARE(m_log->lines(), QStringList{line});
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QVERIFY(timer->isValid()); // no completion by itself
}

void KXWKWebViewNavigationTest::copesWithoutAnError()
{
    m_host->webViewDidFailProvisionalNavigation(m_host->wkWebView(), std::nullopt);
    QCOMPARE(m_log->lines(), QStringList{u"[wk] didFailProvisionalNavigation (0) (null)"_qs});
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->webViewDidFailNavigation(m_host->wkWebView(), std::nullopt);
    QTRY_COMPARE(completed.size(), 1);
    QCOMPARE(m_log->lines().size(), 1);
}

void KXWKWebViewNavigationTest::completesAfterAFailureBehindTheBeginning()
{
    m_host->setName(u"root"_qs); // this failure completes the main page as well
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->updateURL(page1);
    page()->commit();
    page()->fail(urlError(kx::URLErrorNetworkConnectionLost, u"https://a.example/"_qs));
    QVERIFY(!m_host->loadTimer());
    QTRY_COMPARE(completed.size(), 1);
    QCOMPARE(
        m_log->lines(), QStringList{u"[wk] didFailNavigation Error Domain=NSURLErrorDomain Code=-1005 \"failed\""_qs});
}

void KXWKWebViewNavigationTest::aStoppedLoadIsAFailureToo()
{
    m_host->updateURL(page1);
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QCoreApplication::processEvents();
    QCOMPARE(m_log->lines(), QStringList{u"[wk] didFailProvisionalNavigation (-999) https://a.example/"_qs});
    QVERIFY(page()->isLoading());
}

void KXWKWebViewNavigationTest::failuresAreOfTypeTwo()
{
    KXLogger::sharedLogger().setLogType(3);
    m_host->updateURL(QUrl(u"file:///x/y"_qs));
    page()->fail(urlError(kx::URLErrorFileDoesNotExist, u"file:///x/y"_qs));
    page()->fail(urlError(kx::URLErrorFileDoesNotExist, u"file:///about:blank"_qs));
    page()->fail(urlError(kx::URLErrorFileDoesNotExist, u"file:///"_qs));
    page()->fail(processDied(u"file:///x/y"_qs));
    page()->commit();
    page()->fail(processDied(u"file:///x/y"_qs));
    page()->die();
    QCOMPARE(m_host->autoRebuildCount(), 2);
    QVERIFY(m_log->lines().isEmpty());
}

QTEST_MAIN(KXWKWebViewNavigationTest)
#include "KXWKWebViewNavigationTest.moc"
