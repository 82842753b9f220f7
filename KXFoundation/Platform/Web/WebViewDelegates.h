// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/Core/KXError.h>
#include <KXFoundation/Platform/Web/NavigationAction.h>

#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

namespace kx {

class WebView;
class WebViewConfiguration;

/// Decides which navigations a web view makes, and hears how its loads end. Operations have defaults: everything is
/// allowed, nothing is done. A delegate may delete the web view, or itself, in any of them.
class KX_WEB_EXPORT WebNavigationDelegate {
public:
    WebNavigationDelegate();
    virtual ~WebNavigationDelegate();
    Q_DISABLE_COPY_MOVE(WebNavigationDelegate)

    virtual void webViewDecidePolicyForNavigationAction(
        WebView *webView, const NavigationAction &navigationAction, const NavigationDecisionHandler &decisionHandler);
    /// Asked by engines that can hold a response back; the present one cannot, and shows what arrives.
    virtual void webViewDecidePolicyForNavigationResponse(WebView *webView,
        const NavigationResponse &navigationResponse, const NavigationDecisionHandler &decisionHandler);
    virtual void webViewDidFinishNavigation(WebView *webView);
    /// A load ended before its document began: see WebPageClient.
    virtual void webViewDidFailProvisionalNavigation(WebView *webView, const std::optional<KXError> &withError);
    virtual void webViewDidFailNavigation(WebView *webView, const std::optional<KXError> &withError);
    /// The page's process died while nothing was being loaded.
    virtual void webViewWebContentProcessDidTerminate(WebView *webView);

    /// Expires when the delegate is destroyed; does not keep it alive.
    [[nodiscard]] std::weak_ptr<WebNavigationDelegate> weakReference() const { return m_self; }

private:
    std::shared_ptr<WebNavigationDelegate> m_self;
};

/// Shows what a page asks the user. Each question comes with a handler for the answer: call it before the operation
/// returns, later ones are ignored. Unanswered, an alert counts as seen, a question as denied, an input as "".
class KX_WEB_EXPORT WebUIDelegate {
public:
    WebUIDelegate();
    virtual ~WebUIDelegate();
    Q_DISABLE_COPY_MOVE(WebUIDelegate)

    virtual void webViewRunJavaScriptAlertPanelWithMessage(WebView *webView, const QString &message,
        const FrameInfo &initiatedByFrame, const std::function<void()> &completionHandler);
    virtual void webViewRunJavaScriptConfirmPanelWithMessage(WebView *webView, const QString &message,
        const FrameInfo &initiatedByFrame, const std::function<void(bool)> &completionHandler);
    virtual void webViewRunJavaScriptTextInputPanelWithPrompt(WebView *webView, const QString &prompt,
        const QString &defaultText, const FrameInfo &initiatedByFrame,
        const std::function<void(const QString &)> &completionHandler);
    /// The page wants a new window. The result is not used, as this engine has no window objects for web views made
    /// elsewhere: give null and, if wanted, show the action's URL in a way of your own.
    virtual WebView *webViewCreateWebViewWithConfiguration(WebView *webView,
        const std::shared_ptr<WebViewConfiguration> &configuration, const NavigationAction &forNavigationAction,
        const WindowFeatures &windowFeatures);

    /// Expires when the delegate is destroyed; does not keep it alive.
    [[nodiscard]] std::weak_ptr<WebUIDelegate> weakReference() const { return m_self; }

private:
    std::shared_ptr<WebUIDelegate> m_self;
};

} // namespace kx
