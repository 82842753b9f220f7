// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/WebViewDelegates.h>

namespace kx {

WebNavigationDelegate::WebNavigationDelegate()
    : m_self(this, [](WebNavigationDelegate *) {})
{
}

WebNavigationDelegate::~WebNavigationDelegate() = default;

void WebNavigationDelegate::webViewDecidePolicyForNavigationAction(
    WebView *, const NavigationAction &, const NavigationDecisionHandler &decisionHandler)
{
    decisionHandler(NavigationPolicy::Allow);
}

void WebNavigationDelegate::webViewDecidePolicyForNavigationResponse(
    WebView *, const NavigationResponse &, const NavigationDecisionHandler &decisionHandler)
{
    decisionHandler(NavigationPolicy::Allow);
}

void WebNavigationDelegate::webViewDidFinishNavigation(WebView *) { }

void WebNavigationDelegate::webViewDidFailProvisionalNavigation(WebView *, const std::optional<KXError> &) { }

void WebNavigationDelegate::webViewDidFailNavigation(WebView *, const std::optional<KXError> &) { }

void WebNavigationDelegate::webViewWebContentProcessDidTerminate(WebView *) { }

WebUIDelegate::WebUIDelegate()
    : m_self(this, [](WebUIDelegate *) {})
{
}

WebUIDelegate::~WebUIDelegate() = default;

void WebUIDelegate::webViewRunJavaScriptAlertPanelWithMessage(
    WebView *, const QString &, const FrameInfo &, const std::function<void()> &completionHandler)
{
    completionHandler();
}

void WebUIDelegate::webViewRunJavaScriptConfirmPanelWithMessage(
    WebView *, const QString &, const FrameInfo &, const std::function<void(bool)> &completionHandler)
{
    completionHandler(false);
}

void WebUIDelegate::webViewRunJavaScriptTextInputPanelWithPrompt(WebView *, const QString &, const QString &,
    const FrameInfo &, const std::function<void(const QString &)> &completionHandler)
{
    completionHandler(QLatin1String(""));
}

WebView *WebUIDelegate::webViewCreateWebViewWithConfiguration(
    WebView *, const std::shared_ptr<WebViewConfiguration> &, const NavigationAction &, const WindowFeatures &)
{
    return nullptr;
}

} // namespace kx
