// SPDX-License-Identifier: MIT
// What the web view asks its host and tells it.
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include "JavaScriptPanels.h"
#include "LoadRecovery.h"
#include "NavigationRules.h"

#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(console, "kx.web.view")

constexpr const char *logTag = "wk";

template <class... Values> void log(qint32 type, const char *format, const Values &...values)
{
    KXLogger::sharedLogger().writeLogFormat(type, logTag, format, values...);
}

} // namespace

void KXWKWebView::webViewDecidePolicyForNavigationAction(
    kx::WebView *, const kx::NavigationAction &navigationAction, const kx::NavigationDecisionHandler &decisionHandler)
{
    const kx::NavigationPolicy policy =
        kx::decideNavigation({m_name, m_allowNavigation, m_whiteHostList, ownWebHost()}, navigationAction);
    if (policy == kx::NavigationPolicy::Allow) {
        const QPointer self(this);
        if (const NavigationBlock block = m_startNavigationAction)
            block(navigationAction);
        if (self)
            Q_EMIT navigationStarted(navigationAction);
    } else if (m_name == u"root") {
        log(1, "forbidden host:%@", kx::hostOf(navigationAction.url));
    }
    decisionHandler(policy);
}

void KXWKWebView::webViewDecidePolicyForNavigationResponse(
    kx::WebView *, const kx::NavigationResponse &, const kx::NavigationDecisionHandler &decisionHandler)
{
    decisionHandler(kx::NavigationPolicy::Allow);
}

void KXWKWebView::webViewDidFinishNavigation(kx::WebView *webView)
{
    qCInfo(console).noquote() << kx::format("===WKWebView didFinishNavigation:%@", webView->url());
    // The main page reports its end itself.
    if (m_name != u"root")
        onNavigationCompletion();
}

bool KXWKWebView::rebuildWK()
{
    if (!kx::mayRebuild(m_autoRebuildCount))
        return false;
    // Deliberate: without a URL nothing can be done, yet the failure counts as taken care of.
    if (m_url.isValid()) {
        const QUrl url = m_url;
        ++m_autoRebuildCount;
        log(2, "will rebuild after occur error:%@", url);
        rebuildWebview();
        updateURL(url);
    }
    return true;
}

void KXWKWebView::webViewDidFailProvisionalNavigation(kx::WebView *, const std::optional<KXError> &withError)
{
    const KXError error = withError.value_or(KXError());
    const kx::LoadFailure failure =
        kx::classifyLoadFailure(error, [](const QString &path) { return QFileInfo::exists(path); });
    switch (failure.kind) {
    case kx::LoadFailure::Kind::ProcessDied:
        if (rebuildWK())
            return;
        break;
    case kx::LoadFailure::Kind::BlankLocalPage: log(2, "fuck,who want goto blank?"); return;
    case kx::LoadFailure::Kind::LocalPageExists:
        log(2, "wtf? file is exist %@,will rebuild", failure.path);
        if (rebuildWK())
            return;
        break;
    case kx::LoadFailure::Kind::LocalPageMissing: {
        const QPointer self(this);
        if (const MissingPageBlock block = m_h5NotExistCompletion)
            block(failure.path);
        if (self)
            Q_EMIT localPageMissing(failure.path);
        log(2, "file is not exist %@", failure.path);
        break;
    }
    case kx::LoadFailure::Kind::Other: break;
    }
    log(2, "didFailProvisionalNavigation (%d) %@", error.code, failure.url);
}

void KXWKWebView::webViewDidFailNavigation(kx::WebView *, const std::optional<KXError> &withError)
{
    if (withError)
        log(2, "didFailNavigation %@", *withError);
    onNavigationCompletion();
}

void KXWKWebView::webViewWebContentProcessDidTerminate(kx::WebView *webView)
{
    log(2, "web content process terminated %@", webView->url());
    Q_EMIT webContentProcessTerminated();
}

void KXWKWebView::webViewRunJavaScriptAlertPanelWithMessage(
    kx::WebView *, const QString &message, const kx::FrameInfo &, const std::function<void()> &completionHandler)
{
    kx::runAlertPanel(this, message);
    completionHandler();
}

void KXWKWebView::webViewRunJavaScriptConfirmPanelWithMessage(
    kx::WebView *, const QString &message, const kx::FrameInfo &, const std::function<void(bool)> &completionHandler)
{
    completionHandler(kx::runConfirmPanel(this, message));
}

void KXWKWebView::webViewRunJavaScriptTextInputPanelWithPrompt(kx::WebView *, const QString &, const QString &,
    const kx::FrameInfo &, const std::function<void(const QString &)> &completionHandler)
{
    completionHandler(QLatin1String(""));
}

kx::WebView *KXWKWebView::webViewCreateWebViewWithConfiguration(kx::WebView *,
    const std::shared_ptr<kx::WebViewConfiguration> &, const kx::NavigationAction &forNavigationAction,
    const kx::WindowFeatures &windowFeatures)
{
    const QPointer self(this);
    if (const WindowBlock block = m_onWebViewNavigationAction)
        block(forNavigationAction, windowFeatures);
    if (self)
        Q_EMIT newWindowRequested(forNavigationAction, windowFeatures);
    return nullptr;
}

void KXWKWebView::userContentController(kx::UserContentController *, const kx::ScriptMessage &didReceiveScriptMessage)
{
    if (!m_jsBridge)
        return;
    m_jsBridge->handleH5Message(didReceiveScriptMessage.body, [host = QPointer(this)](const QString &command) {
        if (!host || !host->m_wkWebView)
            return;
        host->m_wkWebView->executeJavaScript(command, [](const std::optional<KXError> &error) {
            if (error)
                qCWarning(console).noquote() << kx::describe(*error);
        });
    });
}
