// SPDX-License-Identifier: MIT
// How a host is made, rebuilt and taken apart, on the fake engine.
#include "FakeHost.h"
#include "Support/UsableAsWidget.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>
#include <KXFoundation/Platform/Core/Timer.h>

#include <QtCore/QPointer>
#include <QtTest/QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using kx::test::handlerName;
using kx::test::methodMessage;

static_assert(kx::test::UsableAsWidget<KXWKWebView>);
static_assert(kx::test::UsableAsWidget<KXWebView>);
static_assert(kx::test::UsableAsWidget<kx::WebView>);

class KXWKWebViewTest : public kx::test::FakeHostTest {
    Q_OBJECT
private Q_SLOTS:
    void init() { makeHost(); }

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
    void tellsAboutChangedProperties();

private:
    /// A configuration of the application's own.
    std::shared_ptr<kx::WebViewConfiguration> ownConfiguration();
};

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
