// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWebView.h>
#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/Web/NavigationAction.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>
#include <KXFoundation/Platform/Web/WebViewDelegates.h>

#include <QtCore/QJsonValue>
#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <functional>
#include <memory>

class KXRWeakProxy;

namespace kx {
class Timer;
}

/// A view that hosts one web view, joins its page to native code by a bridge, loads pages under navigation rules, and
/// rebuilds the web view after failures. See docs/web-view-host.md.
///
/// ```
/// auto *host = new KXWKWebView(QRectF(0, 0, 960, 540));
/// host->jsBridge()->registerMethod(QStringLiteral("play"), play);
/// host->onFinishNavigation([](KXWebView *) { … });
/// host->updateURL(QUrl::fromLocalFile(path));
/// ```
///
/// Main thread only. What the host hands to the engine, to timers and to the bridge refers back to it weakly, so only
/// its owner keeps it alive; it may be deleted in every one of its callbacks. A callback that is a std::function has a
/// signal beside it, which comes after it. Log lines go to the shared logger with the tag "wk", console lines to the
/// category "kx.web.view".
class KX_WEB_EXPORT KXWKWebView : public kx::View, public kx::WebNavigationDelegate, public kx::WebUIDelegate {
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged)
    Q_PROPERTY(bool allowNavigation READ allowNavigation WRITE setAllowNavigation NOTIFY allowNavigationChanged)
    Q_PROPERTY(QStringList whiteHostList READ whiteHostList WRITE setWhiteHostList NOTIFY whiteHostListChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)

public:
    using Completion = std::function<void(KXWebView *webView)>;
    using NavigationBlock = std::function<void(const kx::NavigationAction &action)>;
    using WindowBlock = std::function<void(const kx::NavigationAction &action, const kx::WindowFeatures &features)>;
    using MissingPageBlock = std::function<void(const QString &path)>;

    // --- making ------------------------------------------------------------------------------------------------

    /// For forms and layouts: an empty frame.
    explicit KXWKWebView(QWidget *parent = nullptr);
    explicit KXWKWebView(const QRectF &frame, QWidget *parent = nullptr);
    /// On another web engine than the library's own, which must outlive the host.
    KXWKWebView(const QRectF &frame, kx::WebEngine &engine, QWidget *parent = nullptr);
    /// With a configuration, which is used as it is, on its engine: no handler, script or scheme is added, so the page
    /// has a bridge only if the configuration brings one. (A web view with a fresh configuration is made first and
    /// replaced at once.)
    explicit KXWKWebView(const std::shared_ptr<kx::WebViewConfiguration> &configuration, QWidget *parent = nullptr);
    ~KXWKWebView() override;

    /// Replaces the web view by a new one, built from `configuration` or, when that is null, from a fresh one. The
    /// bridge stays, with all that is registered on it; the page is not loaded again.
    void setup(const std::shared_ptr<kx::WebViewConfiguration> &configuration);
    /// setup() with configuration(). Note that cleanup() takes the page's message handler off a given configuration,
    /// and setup() does not put it back.
    void rebuildWebview();
    /// Reacts to a failed load: rebuilds and loads url() again, at most twice in the host's life. Answers whether the
    /// failure was taken care of, which it is also without a URL, when nothing is done.
    bool rebuildWK();
    /// Makes the bridge if there is none, with the native method "common_HN_loadCompleted": a page calls it when it has
    /// loaded what it needs.
    void prepareJSBridge();
    /// Builds and installs a web view that posts what its page says to `weakProxy`'s target. setup() is what cares for
    /// the old one.
    void prepareWKWebview(
        const std::shared_ptr<KXRWeakProxy> &weakProxy, const std::shared_ptr<kx::WebViewConfiguration> &configuration);
    /// Adds the page's end of the bridge, for all frames.
    void addUserScript(kx::UserContentController &userContentController);
    /// Deletes the web view and takes the host's message handler off its configuration.
    void cleanup();

    // --- loading -----------------------------------------------------------------------------------------------

    /// Loads a URL; an empty or invalid one does nothing. A file may read what lies in the directory two levels above
    /// it. The completion comes about one second later, unless the load or the page reports its end before.
    void updateURL(const QUrl &url);
    void reloadCurrentURL();
    /// Ends a load: calls the completion 0.05 seconds later and ends the load timer. The completion thus may come more
    /// than once for one load: from the timer, the finished navigation, the page and a failed navigation.
    void onNavigationCompletion();

    /// Calls a method of the page. `data` is Undefined for none. The callback stays for later answers under that method
    /// name; an empty one removes it.
    void invokeH5(const QString &method, const QJsonValue &data = QJsonValue::Undefined,
        const KXWebViewJSBridge::Callback &responseCallback = {});
    /// The same with a callback for this call's one answer.
    void invokeH5Once(const QString &method, const QJsonValue &data = QJsonValue::Undefined,
        const KXWebViewJSBridge::Callback &responseCallback = {});

    // --- properties ----------------------------------------------------------------------------------------------

    /// The hosted web view; null after cleanup(). Changes with every setup().
    [[nodiscard]] KXWebView *wkWebView() const { return m_wkWebView; }
    /// Only stores it and deletes the former one: neither placed, nor joined to the bridge.
    void setWkWebView(std::unique_ptr<KXWebView> wkWebView);
    [[nodiscard]] KXWebViewJSBridge *jsBridge() const { return m_jsBridge.get(); }
    void setJsBridge(std::unique_ptr<KXWebViewJSBridge> jsBridge) { m_jsBridge = std::move(jsBridge); }
    /// Stands for this host at the engine; null after cleanup().
    [[nodiscard]] const std::shared_ptr<KXRWeakProxy> &weakProxy() const { return m_weakProxy; }
    void setWeakProxy(const std::shared_ptr<KXRWeakProxy> &weakProxy) { m_weakProxy = weakProxy; }

    /// The host's role. "root" switches on the rules for the application's main page; null at first.
    [[nodiscard]] const QString &name() const { return m_name; }
    void setName(const QString &name);
    /// False lets the mouse through to what lies beneath the host, and makes the web view ignore it. True at first.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    void setUserInteraction(bool userInteraction);
    /// Whether a host that is not named "root" navigates at all, its own loads included. True at first.
    [[nodiscard]] bool allowNavigation() const { return m_allowNavigation; }
    void setAllowNavigation(bool allowNavigation);
    /// Hosts to which sub frames may send a page named "root": exact names in lower case, international ones in ASCII
    /// form, each optionally followed by ":" and a port, which does not count.
    [[nodiscard]] const QStringList &whiteHostList() const { return m_whiteHostList; }
    void setWhiteHostList(const QStringList &whiteHostList);
    /// The application's own web host, which needs no entry in any whiteHostList. One for the whole process; empty, the
    /// default, allows none.
    [[nodiscard]] static QString ownWebHost();
    static void setOwnWebHost(const QString &host);

    /// The last URL given to updateURL(); setting it loads nothing.
    [[nodiscard]] const QUrl &url() const { return m_url; }
    void setUrl(const QUrl &url);
    /// What rebuildWebview() builds from; null for a fresh one.
    [[nodiscard]] const std::shared_ptr<kx::WebViewConfiguration> &configuration() const { return m_configuration; }
    void setConfiguration(const std::shared_ptr<kx::WebViewConfiguration> &configuration)
    {
        m_configuration = configuration;
    }
    /// The one-shot timer that ends a load after a second; null while none is under way. Not kept by the host.
    [[nodiscard]] std::shared_ptr<kx::Timer> loadTimer() const { return m_loadTimer.lock(); }
    void setLoadTimer(const std::shared_ptr<kx::Timer> &loadTimer) { m_loadTimer = loadTimer; }
    /// Rebuilds after failures so far; never reset. From 2 on there are no more.
    [[nodiscard]] qint32 autoRebuildCount() const { return m_autoRebuildCount; }
    void setAutoRebuildCount(qint32 autoRebuildCount) { m_autoRebuildCount = autoRebuildCount; }

    /// Called when a load has ended, well or not. The web view is null if there is none by then.
    [[nodiscard]] const Completion &completion() const { return m_completion; }
    void setCompletion(const Completion &completion) { m_completion = completion; }
    void onFinishNavigation(const Completion &completion) { setCompletion(completion); }
    /// Called for each navigation that is allowed, before it happens.
    [[nodiscard]] const NavigationBlock &startNavigationAction() const { return m_startNavigationAction; }
    void setStartNavigationAction(const NavigationBlock &block) { m_startNavigationAction = block; }
    void willStartNewNavigationAction(const NavigationBlock &block) { setStartNavigationAction(block); }
    /// Called when the page asks for a new window. It gets none.
    [[nodiscard]] const WindowBlock &onWebViewNavigationAction() const { return m_onWebViewNavigationAction; }
    void setOnWebViewNavigationAction(const WindowBlock &block) { m_onWebViewNavigationAction = block; }
    void onWebViewNavigationAction(const WindowBlock &block) { setOnWebViewNavigationAction(block); }
    /// Called with the path when a local page's file is missing: see docs/web-view-host.md for its spelling.
    [[nodiscard]] const MissingPageBlock &h5NotExistCompletion() const { return m_h5NotExistCompletion; }
    void setH5NotExistCompletion(const MissingPageBlock &block) { m_h5NotExistCompletion = block; }
    void loadLocalH5NotExsit(const MissingPageBlock &block) { setH5NotExistCompletion(block); }

    /// Null while userInteraction() is off.
    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;

    // --- what the web view asks and tells ------------------------------------------------------------------------

    void webViewDecidePolicyForNavigationAction(kx::WebView *webView, const kx::NavigationAction &navigationAction,
        const kx::NavigationDecisionHandler &decisionHandler) override;
    void webViewDecidePolicyForNavigationResponse(kx::WebView *webView,
        const kx::NavigationResponse &navigationResponse,
        const kx::NavigationDecisionHandler &decisionHandler) override;
    void webViewDidFinishNavigation(kx::WebView *webView) override;
    void webViewDidFailProvisionalNavigation(kx::WebView *webView, const std::optional<KXError> &withError) override;
    void webViewDidFailNavigation(kx::WebView *webView, const std::optional<KXError> &withError) override;
    void webViewWebContentProcessDidTerminate(kx::WebView *webView) override;
    void webViewRunJavaScriptAlertPanelWithMessage(kx::WebView *webView, const QString &message,
        const kx::FrameInfo &initiatedByFrame, const std::function<void()> &completionHandler) override;
    void webViewRunJavaScriptConfirmPanelWithMessage(kx::WebView *webView, const QString &message,
        const kx::FrameInfo &initiatedByFrame, const std::function<void(bool)> &completionHandler) override;
    void webViewRunJavaScriptTextInputPanelWithPrompt(kx::WebView *webView, const QString &prompt,
        const QString &defaultText, const kx::FrameInfo &initiatedByFrame,
        const std::function<void(const QString &)> &completionHandler) override;
    kx::WebView *webViewCreateWebViewWithConfiguration(kx::WebView *webView,
        const std::shared_ptr<kx::WebViewConfiguration> &configuration, const kx::NavigationAction &forNavigationAction,
        const kx::WindowFeatures &windowFeatures) override;
    /// Takes what the page posted.
    void userContentController(kx::UserContentController *controller, const kx::ScriptMessage &didReceiveScriptMessage);

Q_SIGNALS:
    void navigationCompleted(KXWebView *webView);
    void navigationStarted(const kx::NavigationAction &action);
    void newWindowRequested(const kx::NavigationAction &action, const kx::WindowFeatures &features);
    void localPageMissing(const QString &path);
    /// The page's process died while nothing was being loaded, and the page is blank. Nothing is done about it.
    void webContentProcessTerminated();
    void nameChanged(const QString &name);
    void userInteractionChanged(bool userInteraction);
    void allowNavigationChanged(bool allowNavigation);
    void whiteHostListChanged(const QStringList &whiteHostList);
    void urlChanged(const QUrl &url);

private:
    [[nodiscard]] std::shared_ptr<kx::WebViewConfiguration> freshConfiguration(
        const std::shared_ptr<KXRWeakProxy> &weakProxy);
    void evaluateInvocation(const QString &command);
    void complete();

    kx::WebEngine &m_engine;
    QPointer<KXWebView> m_wkWebView;
    std::unique_ptr<KXWebViewJSBridge> m_jsBridge;
    std::shared_ptr<KXRWeakProxy> m_weakProxy;
    QString m_name;
    bool m_userInteraction = true;
    bool m_allowNavigation = true;
    QStringList m_whiteHostList;
    QUrl m_url;
    std::shared_ptr<kx::WebViewConfiguration> m_configuration;
    std::weak_ptr<kx::Timer> m_loadTimer;
    qint32 m_autoRebuildCount = 0;
    Completion m_completion;
    NavigationBlock m_startNavigationAction;
    WindowBlock m_onWebViewNavigationAction;
    MissingPageBlock m_h5NotExistCompletion;
};
