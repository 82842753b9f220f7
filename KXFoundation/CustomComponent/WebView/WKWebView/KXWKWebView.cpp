// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include "LoadRecovery.h"

#include <KXFoundation/Category/TimerUtil.h>
#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/Core/Strings.h>
#include <KXFoundation/Platform/Web/WebEngine.h>

#include <QtCore/QTimer>

#include <utility>

namespace {

/// Shared by all hosts of the process.
const std::shared_ptr<kx::ProcessPool> &processPool()
{
    static const auto pool = std::make_shared<kx::ProcessPool>();
    return pool;
}

QString &ownHost()
{
    static QString host;
    return host;
}

} // namespace

KXWKWebView::KXWKWebView(QWidget *parent)
    : KXWKWebView(QRectF(), parent)
{
}

KXWKWebView::KXWKWebView(const QRectF &frame, QWidget *parent)
    : KXWKWebView(frame, kx::WebEngine::real(), parent)
{
}

KXWKWebView::KXWKWebView(const QRectF &frame, kx::WebEngine &engine, QWidget *parent)
    : kx::View(parent)
    , m_engine(engine)
{
    setFrame(frame);
    setup(nullptr);
}

KXWKWebView::KXWKWebView(const std::shared_ptr<kx::WebViewConfiguration> &configuration, QWidget *parent)
    : KXWKWebView(QRectF(), configuration ? configuration->engine() : kx::WebEngine::real(), parent)
{
    m_configuration = configuration;
    setup(configuration);
}

KXWKWebView::~KXWKWebView()
{
    cleanup();
}

void KXWKWebView::setup(const std::shared_ptr<kx::WebViewConfiguration> &configuration)
{
    cleanup();
    prepareJSBridge();
    const auto weakProxy = KXRWeakProxy::weakProxyWithTarget(this);
    prepareWKWebview(weakProxy, configuration);
    m_weakProxy = weakProxy;
}

void KXWKWebView::rebuildWebview()
{
    setup(std::shared_ptr(m_configuration));
}

void KXWKWebView::prepareJSBridge()
{
    if (m_jsBridge)
        return;
    m_jsBridge = std::make_unique<KXWebViewJSBridge>();
    // Deliberate: there is no answer to the page.
    m_jsBridge->registerMethod(QStringLiteral("common_HN_loadCompleted"),
        [host = QPointer(this)](const QJsonValue &, const KXWebViewJSBridge::Completion &) {
            if (host)
                host->onNavigationCompletion();
        });
}

std::shared_ptr<kx::WebViewConfiguration> KXWKWebView::freshConfiguration(
    const std::shared_ptr<KXRWeakProxy> &weakProxy)
{
    auto configuration = std::make_shared<kx::WebViewConfiguration>(m_engine);
    const std::shared_ptr<kx::UserContentController> &controller = configuration->userContentController;
    controller->addScriptMessageHandler(
        [weakProxy, weakController = std::weak_ptr(controller)](const kx::ScriptMessage &message) {
            weakProxy->forward(&KXWKWebView::userContentController, weakController.lock().get(), message);
        },
        KXWebViewJSBridge::h5NativeMapBridgeName());
    addUserScript(*controller);
    configuration->preferences = {.javaScriptEnabled = true,
        .fullScreenEnabled = true,
        .allowFileAccessFromFileURLs = true,
        .javaScriptCanOpenWindowsAutomatically = true};
    configuration->processPool = processPool();
    KXURLSchemeManager &schemes = KXURLSchemeManager::sharedManager();
    for (const QString &scheme : schemes.proxySchemes())
        configuration->setURLSchemeHandler(&schemes, scheme);
    return configuration;
}

void KXWKWebView::prepareWKWebview(
    const std::shared_ptr<KXRWeakProxy> &weakProxy, const std::shared_ptr<kx::WebViewConfiguration> &configuration)
{
    auto webView = std::make_unique<KXWebView>(bounds(), configuration ? configuration : freshConfiguration(weakProxy));
    webView->setNavigationDelegate(this);
    webView->setUIDelegate(this);
    webView->setDrawsBackground(false);
    webView->setIgnoreMouseEnvent(!m_userInteraction);
    webView->setAutoresizingMask(kx::Autoresizing::Width | kx::Autoresizing::Height);
    addSubview(*webView);
    setFocusProxy(webView.get());
    m_wkWebView = webView.release(); // the superview owns it now
}

void KXWKWebView::addUserScript(kx::UserContentController &userContentController)
{
    const QString script = KXWebViewJSBridge::javasctipt4Inject();
    if (!script.isEmpty())
        userContentController.addUserScript({script, kx::UserScript::InjectionTime::DocumentStart, false});
}

void KXWKWebView::cleanup()
{
    // Out of the member first: ending the page may call back.
    if (const std::unique_ptr<KXWebView> webView{m_wkWebView.data()}) {
        webView->setUIDelegate(nullptr);
        webView->setNavigationDelegate(nullptr);
        webView->stopLoading();
        webView->configuration()->userContentController->removeScriptMessageHandlerForName(
            KXWebViewJSBridge::h5NativeMapBridgeName());
        m_wkWebView = nullptr;
    }
    m_weakProxy.reset();
}

void KXWKWebView::updateURL(const QUrl &newURL)
{
    if (!newURL.isValid())
        return;
    const QUrl url = newURL; // it may be url() itself, which whoever hears of the change may change again
    const QPointer self(this);
    setUrl(url);
    if (!self)
        return;
    if (m_wkWebView) {
        if (m_wkWebView->isLoading())
            m_wkWebView->stopLoading();
        if (url.isLocalFile())
            m_wkWebView->loadFileURL(url, kx::readAccessDirectory(url));
        else
            m_wkWebView->load(url);
    }
    if (const auto timer = m_loadTimer.lock()) {
        zq_resumeAfterInterval(timer, 1.0);
    } else {
        m_loadTimer = zq_scheduledTimerWithTimeInterval(
            1.0,
            [host = QPointer(this)](const std::shared_ptr<kx::Timer> &) {
                if (host)
                    host->onNavigationCompletion();
            },
            false);
    }
}

void KXWKWebView::reloadCurrentURL()
{
    updateURL(m_url);
}

void KXWKWebView::onNavigationCompletion()
{
    using namespace std::chrono_literals;
    QTimer::singleShot(50ms, Qt::PreciseTimer, this, [this] { complete(); });
    if (const auto timer = m_loadTimer.lock())
        timer->invalidate();
    m_loadTimer.reset();
}

void KXWKWebView::complete()
{
    const QPointer self(this);
    if (const Completion block = m_completion)
        block(m_wkWebView);
    if (self)
        Q_EMIT navigationCompleted(m_wkWebView);
}

void KXWKWebView::invokeH5(
    const QString &method, const QJsonValue &value, const KXWebViewJSBridge::Callback &responseCallback)
{
    if (m_jsBridge)
        evaluateInvocation(m_jsBridge->makeInvokeH5Cmd(method, value, responseCallback, false));
}

void KXWKWebView::invokeH5Once(
    const QString &method, const QJsonValue &value, const KXWebViewJSBridge::Callback &responseCallback)
{
    if (m_jsBridge)
        evaluateInvocation(m_jsBridge->makeInvokeH5Cmd(method, value, responseCallback, true));
}

void KXWKWebView::evaluateInvocation(const QString &command)
{
    if (!m_wkWebView)
        return;
    m_wkWebView->executeJavaScript(command, [](const std::optional<KXError> &error) {
        if (error)
            KXLogger::sharedLogger().writeLogFormat(2, "wk", "js error:%@", *error);
    });
}

kx::ViewInterface *KXWKWebView::hitTest(const QPointF &point)
{
    return m_userInteraction ? kx::View::hitTest(point) : nullptr;
}

void KXWKWebView::setUserInteraction(bool userInteraction)
{
    // The whole subtree is passed over when the window system's events are given out.
    setAttribute(Qt::WA_TransparentForMouseEvents, !userInteraction);
    if (m_wkWebView)
        m_wkWebView->setIgnoreMouseEnvent(!userInteraction);
    if (std::exchange(m_userInteraction, userInteraction) != userInteraction)
        Q_EMIT userInteractionChanged(userInteraction);
}

void KXWKWebView::setWkWebView(std::unique_ptr<KXWebView> wkWebView)
{
    KXWebView *const next = wkWebView.release();
    if (next != m_wkWebView)
        delete m_wkWebView;
    m_wkWebView = next;
}

void KXWKWebView::setName(const QString &name)
{
    if (kx::same(m_name, name))
        return;
    m_name = name;
    Q_EMIT nameChanged(m_name);
}

void KXWKWebView::setAllowNavigation(bool allowNavigation)
{
    if (std::exchange(m_allowNavigation, allowNavigation) != allowNavigation)
        Q_EMIT allowNavigationChanged(allowNavigation);
}

void KXWKWebView::setWhiteHostList(const QStringList &whiteHostList)
{
    if (m_whiteHostList == whiteHostList)
        return;
    m_whiteHostList = whiteHostList;
    Q_EMIT whiteHostListChanged(m_whiteHostList);
}

void KXWKWebView::setUrl(const QUrl &url)
{
    if (m_url == url)
        return;
    m_url = url;
    Q_EMIT urlChanged(m_url);
}

QString KXWKWebView::ownWebHost()
{
    return ownHost();
}

void KXWKWebView::setOwnWebHost(const QString &host)
{
    ownHost() = host;
}
