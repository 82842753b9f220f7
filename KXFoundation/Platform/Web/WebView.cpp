// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/WebView.h>

#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <utility>

namespace kx {

namespace {

/// An answer that a handler may give after its asker is gone; only the first counts.
template <class T> struct Answer {
    T value;
    bool open = true;

    void give(const T &answer)
    {
        if (std::exchange(open, false))
            value = answer;
    }
};

} // namespace

WebView::WebView(const QRectF &frame, const std::shared_ptr<WebViewConfiguration> &configuration, QWidget *parent)
    : View(parent)
    , m_configuration(configuration ? configuration : std::make_shared<WebViewConfiguration>())
    , m_page(m_configuration->engine().makePage(m_configuration, *this))
{
    QWidget *shown = m_page->widget();
    shown->setParent(this);
    setFocusProxy(shown);
    setFrame(frame);
    shown->setGeometry(rect());
    shown->show();
}

WebView::~WebView() = default;

void WebView::setNavigationDelegate(WebNavigationDelegate *navigationDelegate)
{
    m_navigationDelegate =
        navigationDelegate ? navigationDelegate->weakReference() : std::weak_ptr<WebNavigationDelegate>();
}

void WebView::setUIDelegate(WebUIDelegate *uiDelegate)
{
    m_uiDelegate = uiDelegate ? uiDelegate->weakReference() : std::weak_ptr<WebUIDelegate>();
}

void WebView::load(const QUrl &url)
{
    m_page->load(url);
}

void WebView::loadFileURL(const QUrl &url, const QString &allowingReadAccessTo)
{
    m_page->loadFile(url, allowingReadAccessTo);
}

void WebView::stopLoading()
{
    m_page->stopLoading();
}

bool WebView::isLoading() const
{
    return m_page->isLoading();
}

QUrl WebView::url() const
{
    return m_page->url();
}

void WebView::evaluateJavaScript(const QString &javaScript, EvaluationHandler completionHandler)
{
    m_page->evaluateJavaScript(javaScript, std::move(completionHandler));
}

void WebView::executeJavaScript(const QString &javaScript, ExecutionHandler completionHandler)
{
    m_page->executeJavaScript(javaScript, std::move(completionHandler));
}

void WebView::setDrawsBackground(bool draws)
{
    m_drawsBackground = draws;
    m_page->setDrawsBackground(draws);
}

void WebView::resizeEvent(QResizeEvent *event)
{
    View::resizeEvent(event);
    if (QWidget *const shown = m_page->widget())
        shown->setGeometry(rect());
}

// The delegate may delete this view, so nothing below touches it after the delegate was called.

NavigationPolicy WebView::decidePolicyForNavigationAction(const NavigationAction &action)
{
    WebNavigationDelegate *const delegate = navigationDelegate();
    if (!delegate)
        return NavigationPolicy::Allow;
    const auto answer = std::make_shared<Answer<NavigationPolicy>>(Answer<NavigationPolicy>{NavigationPolicy::Cancel});
    delegate->webViewDecidePolicyForNavigationAction(
        this, action, [answer](NavigationPolicy policy) { answer->give(policy); });
    answer->open = false;
    return answer->value;
}

void WebView::didFinishNavigation()
{
    if (WebNavigationDelegate *const delegate = navigationDelegate())
        delegate->webViewDidFinishNavigation(this);
}

void WebView::didFailProvisionalNavigation(const KXError &error)
{
    if (WebNavigationDelegate *const delegate = navigationDelegate())
        delegate->webViewDidFailProvisionalNavigation(this, error);
}

void WebView::didFailNavigation(const KXError &error)
{
    if (WebNavigationDelegate *const delegate = navigationDelegate())
        delegate->webViewDidFailNavigation(this, error);
}

void WebView::webContentProcessDidTerminate()
{
    if (WebNavigationDelegate *const delegate = navigationDelegate())
        delegate->webViewWebContentProcessDidTerminate(this);
}

void WebView::runJavaScriptAlertPanel(const QString &message, const FrameInfo &frame)
{
    if (WebUIDelegate *const delegate = UIDelegate())
        delegate->webViewRunJavaScriptAlertPanelWithMessage(this, message, frame, [] {});
}

bool WebView::runJavaScriptConfirmPanel(const QString &message, const FrameInfo &frame)
{
    const auto answer = std::make_shared<Answer<bool>>(Answer<bool>{false});
    if (WebUIDelegate *const delegate = UIDelegate())
        delegate->webViewRunJavaScriptConfirmPanelWithMessage(
            this, message, frame, [answer](bool confirmed) { answer->give(confirmed); });
    return answer->value;
}

QString WebView::runJavaScriptTextInputPanel(const QString &prompt, const QString &defaultText, const FrameInfo &frame)
{
    const auto answer = std::make_shared<Answer<QString>>(Answer<QString>{QLatin1String("")});
    if (WebUIDelegate *const delegate = UIDelegate())
        delegate->webViewRunJavaScriptTextInputPanelWithPrompt(
            this, prompt, defaultText, frame, [answer](const QString &text) { answer->give(text); });
    return answer->value;
}

void WebView::createWebView(const NavigationAction &action, const WindowFeatures &features)
{
    if (WebUIDelegate *const delegate = UIDelegate())
        delegate->webViewCreateWebViewWithConfiguration(this, m_configuration, action, features);
}

} // namespace kx
