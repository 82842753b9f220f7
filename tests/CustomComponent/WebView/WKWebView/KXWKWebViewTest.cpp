// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"
#include "Support/SharedLog.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>
#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>
#include <KXFoundation/Platform/Core/Timer.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;
using kx::test::FakeWebEngine;
using kx::test::FakeWebPage;
using Load = FakeWebPage::Load;

namespace {

const QString handlerName = u"_vexaNativeObject"_qs;

QString methodMessage(const QString &method, const QString &rest = {})
{
    return u"{\"type\":\"method\",\"message\":{\"method\":\"%1\"%2}}"_qs.arg(method, rest);
}

} // namespace

class KXWKWebViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void startsWithItsDefaults();
    void buildsAFreshConfiguration();
    void servesTheSchemesKnownWhenItIsBuilt();
    void sharesOneProcessPool();
    void usesAGivenConfigurationAsItIs();
    void withoutAConfigurationBuildsAFreshOne();
    void webViewFillsTheHost();
    void rebuildsFromTheStoredConfiguration();
    void keepsTheBridgeWhenRebuilt();
    void aGivenConfigurationLosesItsHandlerAtRebuild();
    void hostsOfOneConfigurationShareItsHandler();
    void aRebuiltWebViewStillIgnoresTheMouse();
    void cleansUp();
    void canDoWithoutAWebView();
    void takesPartsFromOutside();

    void emptyURLDoesNothing();
    void loadsAPlainRequest();
    void loadsAFileWithReadAccessTwoLevelsUp();
    void stopsALoadUnderWay();
    void reloadsTheCurrentURL();

    void completesOneSecondAfterALoadBegan();
    void restartsTheOneTimer();
    void endOfALoadEndsTheTimer();
    void completesOnceForEachReport();
    void completesWithTheWebViewOfThatTime();
    void completionMayBeSetUntilItIsDue();
    void pageReportsItsEnd();

    void handsMessagesToTheBridge();
    void evaluationErrorsOfRepliesGoToTheConsole();
    void callsThePage();
    void callsThePageOnce();
    void evaluationErrorsOfCallsGoToTheLog();

    void answersEveryResponse();
    void offersNewWindows();
    void tellsWhenAnIdleProcessDies();

    void onlyItsOwnerKeepsIt();
    void mayBeDeletedInItsCallbacks_data();
    void mayBeDeletedInItsCallbacks();
    void tellsAboutChangedProperties();

private:
    FakeWebPage *page() { return m_engine.page(); }
    /// A configuration of the application's own.
    std::shared_ptr<kx::WebViewConfiguration> ownConfiguration();

    FakeWebEngine m_engine;
    std::unique_ptr<KXWKWebView> m_host;
};

void KXWKWebViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_host.reset();
    QVERIFY(m_engine.pages.isEmpty());
    m_engine.configurations.clear();
    m_host = std::make_unique<KXWKWebView>(QRectF(0, 0, 320, 200), m_engine);
}

std::shared_ptr<kx::WebViewConfiguration> KXWKWebViewTest::ownConfiguration()
{
    auto configuration = std::make_shared<kx::WebViewConfiguration>(m_engine);
    const auto handler = [this](const kx::ScriptMessage &message) {
        m_host->jsBridge()->handleH5Message(
            message.body, [this](const QString &command) { m_host->wkWebView()->evaluateJavaScript(command); });
    };
    configuration->userContentController->addScriptMessageHandler(handler, handlerName);
    return configuration;
}

// --- making
// -----------------------------------------------------------------------------------------------------------

void KXWKWebViewTest::startsWithItsDefaults()
{
    QVERIFY(m_host->wkWebView());
    QVERIFY(m_host->jsBridge());
    QCOMPARE(m_host->weakProxy()->target(), m_host.get());
    QVERIFY(m_host->name().isNull());
    QVERIFY(m_host->userInteraction());
    QVERIFY(m_host->allowNavigation());
    QVERIFY(m_host->whiteHostList().isEmpty());
    QVERIFY(m_host->url().isEmpty());
    QVERIFY(!m_host->configuration());
    QVERIFY(!m_host->loadTimer());
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QVERIFY(!m_host->completion());
    QVERIFY(!m_host->startNavigationAction());
    QVERIFY(!m_host->onWebViewNavigationAction());
    QVERIFY(!m_host->h5NotExistCompletion());
    QVERIFY(KXWKWebView::ownWebHost().isEmpty());
    QVERIFY(!m_host->wkWebView()->ignoreMouseEnvent());
    QCOMPARE(m_host->frame(), QRectF(0, 0, 320, 200));
    QCOMPARE(m_host->jsBridge()->methodHandlerMap().keys(), QStringList{u"common_HN_loadCompleted"_qs});
    QCOMPARE(m_engine.pages.size(), 1);
}

void KXWKWebViewTest::buildsAFreshConfiguration()
{
    const auto configuration = m_host->wkWebView()->configuration();
    const kx::UserContentController &controller = *configuration->userContentController;
    QCOMPARE(controller.scriptMessageHandlerNames(), QStringList{handlerName});
    const kx::UserScript bridge{
        KXWebViewJSBridge::javasctipt4Inject(), kx::UserScript::InjectionTime::DocumentStart, false};
    QCOMPARE(controller.userScripts(), QList<kx::UserScript>{bridge}); // and no debug script
    QVERIFY(!bridge.source.isEmpty());
    const kx::WebPreferences expected{true, true, true, true};
    QVERIFY(configuration->preferences == expected);
    QCOMPARE(m_host->wkWebView()->navigationDelegate(), m_host.get());
    QCOMPARE(m_host->wkWebView()->UIDelegate(), m_host.get());
    QVERIFY(!page()->drawsBackground);
    QVERIFY(!m_host->wkWebView()->drawsBackground());
}

void KXWKWebViewTest::servesTheSchemesKnownWhenItIsBuilt()
{
    KXURLSchemeManager &manager = KXURLSchemeManager::sharedManager();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"clip"_qs));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cover"_qs));
    manager.setProxySchemes({u"clip"_qs, u"cover"_qs});
    QVERIFY(m_host->wkWebView()->configuration()->urlSchemeHandlers().isEmpty());
    m_host->rebuildWebview();
    const QMap<QString, kx::URLSchemeHandler *> expected{{u"clip"_qs, &manager}, {u"cover"_qs, &manager}};
    QCOMPARE(m_host->wkWebView()->configuration()->urlSchemeHandlers(), expected);
    manager.setProxySchemes({});
    QCOMPARE(m_host->wkWebView()->configuration()->urlSchemeHandlers(), expected);
}

void KXWKWebViewTest::sharesOneProcessPool()
{
    const KXWKWebView other(QRectF(), m_engine);
    QVERIFY(m_host->wkWebView()->configuration()->processPool);
    QCOMPARE(other.wkWebView()->configuration()->processPool, m_host->wkWebView()->configuration()->processPool);
    QVERIFY(other.wkWebView()->configuration() != m_host->wkWebView()->configuration());
}

void KXWKWebViewTest::usesAGivenConfigurationAsItIs()
{
    m_host.reset();
    m_engine.configurations.clear();
    const auto given = std::make_shared<kx::WebViewConfiguration>(m_engine);
    const KXWKWebView host(given);
    QCOMPARE(host.configuration(), given);
    QCOMPARE(host.wkWebView()->configuration(), given);
    QVERIFY(host.allowNavigation());
    QVERIFY(host.userInteraction());
    QCOMPARE(m_engine.pages.size(), 1); // one web view in the end,
    QCOMPARE(m_engine.configurations.size(), 2); // after a first one with a fresh configuration
    QCOMPARE(host.subviews(), QList<kx::ViewInterface *>{host.wkWebView()});
    QVERIFY(given->userContentController->scriptMessageHandlerNames().isEmpty());
    QVERIFY(given->userContentController->userScripts().isEmpty());
    QVERIFY(given->urlSchemeHandlers().isEmpty());
    QVERIFY(given->preferences == kx::WebPreferences());
    QVERIFY(!given->processPool);
}

void KXWKWebViewTest::withoutAConfigurationBuildsAFreshOne()
{
    m_host->setup(ownConfiguration());
    QVERIFY(!m_host->configuration()); // only given to this one web view
    const auto first = m_host->wkWebView()->configuration();
    m_host->rebuildWebview();
    QVERIFY(m_host->wkWebView()->configuration() != first);
    QCOMPARE(m_host->wkWebView()->configuration()->userContentController->userScripts().size(), 1);
}

void KXWKWebViewTest::webViewFillsTheHost()
{
    const QPointer webView = m_host->wkWebView();
    QCOMPARE(webView->superview(), m_host.get());
    QCOMPARE(webView->frame(), QRectF(0, 0, 320, 200));
    m_host->setFrame(QRectF(0, 0, 640, 360));
    QCOMPARE(webView->frame(), QRectF(0, 0, 640, 360));
    m_host->show();
    QVERIFY(webView->isVisible());
    QVERIFY(page()->widget()->isVisible());
    m_host->resize(500, 300);
    QCOMPARE(page()->widget()->geometry(), QRect(0, 0, 500, 300));
    m_host->rebuildWebview();
    QVERIFY(!webView);
    QVERIFY(m_host->wkWebView()->isVisible());
    QCOMPARE(page()->widget()->geometry(), QRect(0, 0, 500, 300));
}

void KXWKWebViewTest::rebuildsFromTheStoredConfiguration()
{
    const QPointer<KXWebView> first = m_host->wkWebView();
    const auto own = ownConfiguration();
    m_host->setConfiguration(own);
    m_host->rebuildWebview();
    QVERIFY(!first);
    QCOMPARE(m_host->wkWebView()->configuration(), own);
    QCOMPARE(m_engine.pages.size(), 1);
    QVERIFY(page()->loads.isEmpty()); // rebuilding loads nothing
}

void KXWKWebViewTest::keepsTheBridgeWhenRebuilt()
{
    KXWebViewJSBridge *const bridge = m_host->jsBridge();
    bool called = false;
    bridge->registerMethod(u"play"_qs, [&called](const QJsonValue &, const auto &) { called = true; });
    m_host->rebuildWebview();
    QCOMPARE(m_host->jsBridge(), bridge);
    page()->post(handlerName, methodMessage(u"play"_qs));
    QTRY_VERIFY(called);
}

void KXWKWebViewTest::aGivenConfigurationLosesItsHandlerAtRebuild()
{
    const auto own = ownConfiguration();
    m_host->setConfiguration(own);
    m_host->rebuildWebview();
    QCOMPARE(own->userContentController->scriptMessageHandlerNames(), QStringList{handlerName});
    m_host->rebuildWebview();
    QCOMPARE(m_host->wkWebView()->configuration(), own);
    QVERIFY(own->userContentController->scriptMessageHandlerNames().isEmpty());
}

void KXWKWebViewTest::hostsOfOneConfigurationShareItsHandler()
{
    const auto own = ownConfiguration();
    m_host->setup(own);
    {
        const KXWKWebView other(own);
        QCOMPARE(other.wkWebView()->configuration(), own);
        QCOMPARE(own->userContentController->scriptMessageHandlerNames(), QStringList{handlerName});
    }
    QVERIFY(own->userContentController->scriptMessageHandlerNames().isEmpty()); // gone for both
    QCOMPARE(m_host->wkWebView()->configuration(), own);
}

void KXWKWebViewTest::aRebuiltWebViewStillIgnoresTheMouse()
{
    m_host->setUserInteraction(false);
    QVERIFY(m_host->wkWebView()->ignoreMouseEnvent());
    QVERIFY(page()->ignoresMouseEvents);
    m_host->rebuildWebview();
    QVERIFY(page()->ignoresMouseEvents);
    m_host->setUserInteraction(true);
    QVERIFY(!page()->ignoresMouseEvents);
    QVERIFY(!m_host->wkWebView()->ignoreMouseEnvent());
}

void KXWKWebViewTest::cleansUp()
{
    const auto configuration = m_host->wkWebView()->configuration();
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    m_host->cleanup();
    QVERIFY(!m_host->wkWebView());
    QVERIFY(!m_host->weakProxy());
    QVERIFY(m_host->jsBridge());
    QVERIFY(m_engine.pages.isEmpty());
    QVERIFY(m_host->subviews().isEmpty());
    QVERIFY(configuration->userContentController->scriptMessageHandlerNames().isEmpty());
    QCOMPARE(configuration->userContentController->userScripts().size(), 1);
    m_host->cleanup(); // again: nothing
}

void KXWKWebViewTest::canDoWithoutAWebView()
{
    m_host->cleanup();
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    QCOMPARE(m_host->url(), QUrl(u"https://a.example/"_qs));
    QVERIFY(m_host->loadTimer());
    m_host->invokeH5(u"stop"_qs);
    m_host->setUserInteraction(false);
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->onNavigationCompletion();
    QTRY_COMPARE(completed.size(), 1);
    QCOMPARE(completed.at(0).at(0).value<KXWebView *>(), nullptr);
    m_host->rebuildWebview();
    QVERIFY(m_host->wkWebView()->ignoreMouseEnvent());
}

void KXWKWebViewTest::takesPartsFromOutside()
{
    auto bridge = std::make_unique<KXWebViewJSBridge>();
    KXWebViewJSBridge *const made = bridge.get();
    m_host->setJsBridge(std::move(bridge));
    m_host->prepareJSBridge(); // there is one: nothing
    QCOMPARE(m_host->jsBridge(), made);
    QVERIFY(made->methodHandlerMap().isEmpty());
    m_host->setJsBridge(nullptr);
    m_host->invokeH5Once(u"stop"_qs);
    m_host->userContentController(nullptr, {handlerName, methodMessage(u"play"_qs)});
    QVERIFY(page()->scripts.isEmpty());
    m_host->rebuildWebview();
    QVERIFY(m_host->jsBridge());

    const QPointer<KXWebView> first = m_host->wkWebView();
    auto webView = std::make_unique<KXWebView>(QRectF(), std::make_shared<kx::WebViewConfiguration>(m_engine));
    const QPointer<KXWebView> second = webView.get();
    m_host->setWkWebView(std::move(webView));
    QVERIFY(!first);
    QCOMPARE(m_host->wkWebView(), second);
    m_host->setWkWebView(std::unique_ptr<KXWebView>(second.data()));
    QVERIFY(second);
    m_host.reset();
    QVERIFY(!second);
}

// --- loading
// ----------------------------------------------------------------------------------------------------------

void KXWKWebViewTest::emptyURLDoesNothing()
{
    m_host->updateURL(QUrl());
    m_host->reloadCurrentURL();
    m_host->updateURL(QUrl(u"http://[no address"_qs));
    QVERIFY(m_host->url().isEmpty());
    QVERIFY(page()->loads.isEmpty());
    QVERIFY(!m_host->loadTimer());
}

void KXWKWebViewTest::loadsAPlainRequest()
{
    const QUrl url(u"https://a.example/x/y.html?z=1#w"_qs);
    m_host->updateURL(url);
    QCOMPARE(m_host->url(), url);
    QCOMPARE(page()->loads, (QList<Load>{{url, {}}}));
    QVERIFY(page()->loads.first().readAccessDirectory.isNull());
    QCOMPARE(page()->stops, 0);
}

void KXWKWebViewTest::loadsAFileWithReadAccessTwoLevelsUp()
{
    const QUrl url(u"file:///a/b/c/d.html?z=1"_qs);
    m_host->updateURL(url);
    QCOMPARE(page()->loads, (QList<Load>{{url, u"/a/b"_qs}}));
}

void KXWKWebViewTest::stopsALoadUnderWay()
{
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QCOMPARE(page()->stops, 1);
    QCOMPARE(page()->loads.size(), 2);
    page()->finish();
    m_host->updateURL(QUrl(u"https://c.example/"_qs));
    QCOMPARE(page()->stops, 1);
}

void KXWKWebViewTest::reloadsTheCurrentURL()
{
    const QUrl url(u"https://a.example/"_qs);
    m_host->setUrl(url);
    QVERIFY(page()->loads.isEmpty());
    m_host->reloadCurrentURL();
    QCOMPARE(page()->loads, (QList<Load>{{url, {}}}));
    m_host->updateURL(m_host->url());
    QCOMPARE(page()->loads, (QList<Load>{{url, {}}, {url, {}}}));
}

// --- the end of a load
// --------------------------------------------------------------------------------------------------

void KXWKWebViewTest::completesOneSecondAfterALoadBegan()
{
    QElapsedTimer clock;
    clock.start();
    QList<KXWebView *> completions;
    m_host->onFinishNavigation([&completions](KXWebView *webView) { completions.append(webView); });
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const std::weak_ptr timer = m_host->loadTimer();
    QVERIFY(timer.lock());
    QVERIFY(!timer.lock()->repeats());
    QCOMPARE(timer.lock()->timeInterval(), 1.0);
    QTRY_VERIFY(!m_host->loadTimer());
    QVERIFY(completions.isEmpty()); // 0.05 seconds later
    QTRY_COMPARE(completions, QList<KXWebView *>{m_host->wkWebView()});
    QVERIFY(clock.elapsed() >= 1050);
    QVERIFY(timer.expired());
}

void KXWKWebViewTest::restartsTheOneTimer()
{
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const auto timer = m_host->loadTimer();
    const auto due = timer->fireDate();
    QTest::qWait(20);
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QCOMPARE(m_host->loadTimer(), timer);
    QVERIFY(timer->fireDate() >= due + std::chrono::milliseconds(19));
    // The moved timer fires as the first would have.
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    QTRY_COMPARE(completed.size(), 1);
    QVERIFY(!timer->isValid());
}

void KXWKWebViewTest::endOfALoadEndsTheTimer()
{
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const auto timer = m_host->loadTimer();
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    QVERIFY(!timer->isValid());
    QVERIFY(!m_host->loadTimer());
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QVERIFY(m_host->loadTimer());
    QVERIFY(m_host->loadTimer() != timer);
}

void KXWKWebViewTest::completesOnceForEachReport()
{
    int completions = 0;
    m_host->setCompletion([&completions](KXWebView *) { ++completions; });
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    m_host->onNavigationCompletion();
    m_host->onNavigationCompletion();
    page()->commit();
    page()->fail({kx::URLErrorDomain, kx::URLErrorNetworkConnectionLost, u"cut"_qs, {}});
    QTRY_COMPARE(completions, 3);
    QCOMPARE(completed.size(), 3);
}

void KXWKWebViewTest::completesWithTheWebViewOfThatTime()
{
    KXWebView *seen = nullptr;
    m_host->setCompletion([&seen](KXWebView *webView) { seen = webView; });
    m_host->onNavigationCompletion();
    m_host->rebuildWebview();
    QTRY_VERIFY(seen);
    QCOMPARE(seen, m_host->wkWebView());
}

void KXWKWebViewTest::completionMayBeSetUntilItIsDue()
{
    bool called = false;
    m_host->setCompletion([](KXWebView *) { QFAIL("replaced"); });
    m_host->onNavigationCompletion();
    m_host->setCompletion([&called](KXWebView *) { called = true; });
    QTRY_VERIFY(called);

    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->setCompletion({});
    m_host->onNavigationCompletion();
    QTRY_COMPARE(completed.size(), 1);
}

void KXWKWebViewTest::pageReportsItsEnd()
{
    m_host->setName(u"root"_qs);
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    QVERIFY(m_host->loadTimer()); // the main page says itself when it is ready
    page()->post(handlerName, methodMessage(u"common_HN_loadCompleted"_qs, u",\"once\":1,\"mid\":2"_qs));
    QTRY_COMPARE(completed.size(), 1);
    QVERIFY(!m_host->loadTimer());
    QVERIFY(page()->scripts.isEmpty()); // no answer
}

// --- the bridge
// -------------------------------------------------------------------------------------------------------

void KXWKWebViewTest::handsMessagesToTheBridge()
{
    m_host->jsBridge()->registerMethod(
        u"double"_qs, [](const QJsonValue &data, const auto &completion) { completion(data.toInt() * 2); });
    page()->post(handlerName, methodMessage(u"double"_qs, u",\"data\":21"_qs));
    QTRY_COMPARE(page()->scripts.size(), 1);
    QCOMPARE(page()->scripts.first(),
        KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::HandlerMessage, u"double"_qs, 42, QJsonValue::Undefined));
    page()->post(handlerName,
        QJsonObject{{u"type"_qs, u"invokeTest"_qs}, {u"message"_qs, QJsonObject{{u"method"_qs, u"triple"_qs}}}});
    QTRY_COMPARE(page()->scripts.size(), 2);
    QCOMPARE(page()->scripts.last(),
        KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::HandlerMessage, u"triple"_qs, u"0"_qs, QJsonValue::Undefined));
}

void KXWKWebViewTest::evaluationErrorsOfRepliesGoToTheConsole()
{
    const kx::test::SharedLog log;
    m_host->jsBridge()->registerMethod(u"play"_qs, [](const QJsonValue &, const auto &completion) { completion(1); });
    page()->evaluationError =
        KXError{kx::WebErrorDomain, kx::WebErrorJavaScriptException, u"ReferenceError: x is not defined"_qs, {}};
    QTest::ignoreMessage(QtWarningMsg, "Error Domain=WebKitErrorDomain Code=4 \"ReferenceError: x is not defined\"");
    page()->post(handlerName, methodMessage(u"play"_qs));
    QTRY_COMPARE(page()->scripts.size(), 1);
    QCoreApplication::processEvents();
    QVERIFY(log.lines().isEmpty());
}

void KXWKWebViewTest::callsThePage()
{
    QList<QJsonValue> answers;
    const auto collect = [&answers](const QJsonValue &answer) { answers.append(answer); };
    m_host->invokeH5(u"volume"_qs, QJsonObject{{u"by"_qs, 3}}, collect);
    QCOMPARE(page()->scripts,
        QStringList{KXWebViewJSBridge::packageCmd(
            KXWebViewJSBridge::MethodMessage, u"volume"_qs, QJsonObject{{u"by"_qs, 3}}, QJsonValue::Undefined)});
    for (const int answer : {5, 6}) {
        page()->post(
            handlerName, u"{\"type\":\"handler\",\"message\":{\"method\":\"volume\",\"data\":%1}}"_qs.arg(answer));
    }
    QTRY_COMPARE(answers, (QList<QJsonValue>{5, 6}));
    m_host->invokeH5(u"volume"_qs);
    QVERIFY(m_host->jsBridge()->callbackMap().isEmpty());
    QVERIFY(!page()->scripts.last().contains(u"data"));
}

void KXWKWebViewTest::callsThePageOnce()
{
    QList<QJsonValue> answers;
    const auto collect = [&answers](const QJsonValue &answer) { answers.append(answer); };
    m_host->invokeH5Once(u"volume"_qs, QJsonValue::Undefined, collect);
    QCOMPARE(page()->scripts,
        QStringList{
            KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::MethodMessage, u"volume"_qs, QJsonValue::Undefined, 1)});
    for (int i = 0; i < 2; ++i) {
        page()->post(handlerName,
            u"{\"type\":\"handler\",\"message\":{\"method\":\"volume\",\"data\":5,\"mid\":1,\"once\":1}}"_qs);
    }
    QTRY_COMPARE(answers, QList<QJsonValue>{5});
    QCoreApplication::processEvents();
    QCOMPARE(answers.size(), 1);
}

void KXWKWebViewTest::evaluationErrorsOfCallsGoToTheLog()
{
    const kx::test::SharedLog log;
    KXLogger::sharedLogger().setLogType(2);
    page()->evaluationError = KXError{kx::WebErrorDomain, kx::WebErrorJavaScriptException, u"TypeError: no"_qs, {}};
    m_host->invokeH5(u"stop"_qs);
    m_host->invokeH5Once(u"stop"_qs);
    QCoreApplication::processEvents();
    const QString line = u"[wk] js error:Error Domain=WebKitErrorDomain Code=4 \"TypeError: no\""_qs;
    QCOMPARE(log.lines(), (QStringList{line, line}));
    KXLogger::sharedLogger().setLogType(3);
    m_host->invokeH5(u"stop"_qs);
    QCoreApplication::processEvents();
    QCOMPARE(log.lines().size(), 2);
}

// --- what the web view asks
// -------------------------------------------------------------------------------------------

void KXWKWebViewTest::answersEveryResponse()
{
    QList<kx::NavigationPolicy> answers;
    m_host->setAllowNavigation(false);
    m_host->webViewDecidePolicyForNavigationResponse(
        m_host->wkWebView(), {}, [&answers](kx::NavigationPolicy policy) { answers.append(policy); });
    QCOMPARE(answers, QList<kx::NavigationPolicy>{kx::NavigationPolicy::Allow});
}

void KXWKWebViewTest::offersNewWindows()
{
    kx::NavigationAction action;
    action.url = QUrl(u"https://a.example/new"_qs);
    page()->openWindow(action, {}); // nobody listens
    QList<QUrl> urls;
    std::optional<double> width;
    m_host->onWebViewNavigationAction([&](const kx::NavigationAction &asked, const kx::WindowFeatures &wanted) {
        urls.append(asked.url);
        width = wanted.width;
    });
    const QSignalSpy requested(m_host.get(), &KXWKWebView::newWindowRequested);
    kx::WindowFeatures features;
    features.width = 640;
    page()->openWindow(action, features);
    QCOMPARE(urls, QList<QUrl>{action.url});
    QCOMPARE(width, 640);
    QCOMPARE(requested.size(), 1);
    QCOMPARE(m_host->webViewCreateWebViewWithConfiguration(m_host->wkWebView(), nullptr, action, {}), nullptr);
}

void KXWKWebViewTest::tellsWhenAnIdleProcessDies()
{
    const kx::test::SharedLog log;
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    const QSignalSpy terminated(m_host.get(), &KXWKWebView::webContentProcessTerminated);
    page()->die();
    QCOMPARE(terminated.size(), 1);
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QCOMPARE(m_engine.configurations.size(), 1);
    QCOMPARE(log.lines(), QStringList{u"[wk] web content process terminated https://a.example/"_qs});
}

// --- life
// -------------------------------------------------------------------------------------------------------------

void KXWKWebViewTest::onlyItsOwnerKeepsIt()
{
    const auto configuration = m_host->wkWebView()->configuration();
    const kx::ScriptMessageHandler handler = configuration->userContentController->scriptMessageHandler(handlerName);
    const std::shared_ptr<KXRWeakProxy> proxy = m_host->weakProxy();
    KXWebViewJSBridge::Completion answer;
    m_host->jsBridge()->registerMethod(
        u"later"_qs, [&answer](const QJsonValue &, const auto &completion) { answer = completion; });
    handler({handlerName, methodMessage(u"later"_qs)});
    QVERIFY(answer);
    m_host->setCompletion([](KXWebView *) { QFAIL("after the host"); });
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const std::shared_ptr<kx::Timer> timer = m_host->loadTimer();
    m_host->invokeH5(u"stop"_qs); // under evaluation while the host goes
    m_host->onNavigationCompletion();
    m_host.reset();

    QVERIFY(m_engine.pages.isEmpty());
    QVERIFY(!proxy->target());
    handler({handlerName, methodMessage(u"later"_qs)});
    answer(1);
    timer->invokeBlock();
    QTest::qWait(60);
}

void KXWKWebViewTest::mayBeDeletedInItsCallbacks_data()
{
    QTest::addColumn<std::function<void(KXWKWebViewTest *)>>("provoke");
    using Provoke = std::function<void(KXWKWebViewTest *)>;
    const auto row = [](const char *name, const Provoke &provoke) { QTest::newRow(name) << provoke; };
    const auto deletes = [](KXWKWebViewTest *test) { return [test](auto &&...) { test->m_host.reset(); }; };
    const QUrl url(u"https://a.example/"_qs);
    row("completion", [deletes](KXWKWebViewTest *test) {
        test->m_host->setCompletion(deletes(test));
        test->m_host->onNavigationCompletion();
    });
    row("completed signal", [](KXWKWebViewTest *test) {
        connect(test->m_host.get(), &KXWKWebView::navigationCompleted, test, [test] { test->m_host.reset(); });
        test->m_host->onNavigationCompletion();
    });
    row("starting navigation", [deletes, url](KXWKWebViewTest *test) {
        test->m_host->willStartNewNavigationAction(deletes(test));
        test->m_host->updateURL(url);
    });
    row("started signal", [url](KXWKWebViewTest *test) {
        connect(test->m_host.get(), &KXWKWebView::navigationStarted, test, [test] { test->m_host.reset(); });
        test->m_host->updateURL(url);
    });
    row("missing page", [deletes, url](KXWKWebViewTest *test) {
        test->m_host->loadLocalH5NotExsit(deletes(test));
        test->m_host->updateURL(url);
        test->page()->fail({kx::URLErrorDomain, kx::URLErrorFileDoesNotExist, {},
            {{kx::FailingURLStringKey, u"file:///gone/x.html"_qs}}});
    });
    row("new window", [deletes](KXWKWebViewTest *test) {
        test->m_host->onWebViewNavigationAction(deletes(test));
        test->page()->openWindow({}, {});
    });
    row("native method", [](KXWKWebViewTest *test) {
        test->m_host->jsBridge()->registerMethod(
            u"close"_qs, [test](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
                const KXWebViewJSBridge::Completion answer = completion;
                test->m_host.reset();
                answer(1);
            });
        test->page()->post(handlerName, methodMessage(u"close"_qs));
    });
    row("answer of the page", [deletes](KXWKWebViewTest *test) {
        test->m_host->invokeH5(u"ask"_qs, QJsonValue::Undefined, deletes(test));
        test->page()->post(handlerName, u"{\"type\":\"handler\",\"message\":{\"method\":\"ask\",\"data\":5}}"_qs);
    });
    row("evaluation",
        [deletes](KXWKWebViewTest *test) { test->m_host->wkWebView()->evaluateJavaScript(u"1"_qs, deletes(test)); });
    row("terminated signal", [](KXWKWebViewTest *test) {
        connect(test->m_host.get(), &KXWKWebView::webContentProcessTerminated, test, [test] { test->m_host.reset(); });
        test->page()->die();
    });
    row("changed URL", [url](KXWKWebViewTest *test) {
        connect(test->m_host.get(), &KXWKWebView::urlChanged, test, [test] { test->m_host.reset(); });
        test->m_host->updateURL(url);
    });
}

void KXWKWebViewTest::mayBeDeletedInItsCallbacks()
{
    QFETCH(std::function<void(KXWKWebViewTest *)>, provoke);
    provoke(this);
    QTRY_VERIFY(!m_host);
    QVERIFY(m_engine.pages.isEmpty());
    QCoreApplication::processEvents();
}

void KXWKWebViewTest::tellsAboutChangedProperties()
{
    const QSignalSpy names(m_host.get(), &KXWKWebView::nameChanged);
    const QSignalSpy interactions(m_host.get(), &KXWKWebView::userInteractionChanged);
    const QSignalSpy navigations(m_host.get(), &KXWKWebView::allowNavigationChanged);
    const QSignalSpy lists(m_host.get(), &KXWKWebView::whiteHostListChanged);
    const QSignalSpy urls(m_host.get(), &KXWKWebView::urlChanged);
    for (int i = 0; i < 2; ++i) { // the second time nothing changes
        m_host->setProperty("name", u"ad"_qs);
        m_host->setProperty("userInteraction", false);
        m_host->setProperty("allowNavigation", false);
        m_host->setProperty("whiteHostList", QStringList{u"a.example"_qs});
        m_host->setProperty("url", QUrl(u"https://a.example/"_qs));
    }
    for (const QSignalSpy *spy : {&names, &interactions, &navigations, &lists, &urls})
        QCOMPARE(spy->size(), 1);
    QCOMPARE(m_host->name(), u"ad"_qs);
    m_host->setName(m_host->name());
    m_host->setWhiteHostList(m_host->whiteHostList());
    QCOMPARE(m_host->name(), u"ad"_qs);
    m_host->setName(QString());
    m_host->setName(u""_qs);
    QVERIFY(!m_host->name().isNull());
    QVERIFY(!m_host->userInteraction());
    QVERIFY(!m_host->allowNavigation());
    QCOMPARE(m_host->whiteHostList(), QStringList{u"a.example"_qs});
}

QTEST_MAIN(KXWKWebViewTest)
#include "KXWKWebViewTest.moc"
