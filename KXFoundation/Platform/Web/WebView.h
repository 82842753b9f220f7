// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/Web/WebEngine.h>
#include <KXFoundation/Platform/Web/WebViewDelegates.h>

#include <QtCore/QUrl>

#include <memory>

namespace kx {

class WebViewConfiguration;

/// A view that shows one page of a web engine, the one that the configuration names. Main thread only.
///
/// The delegates are held weakly. Destroying the view stops the page and ends all its callbacks, except that scripts
/// under evaluation may still report WebErrorViewInvalidated; it is safe in any callback.
class KX_WEB_EXPORT WebView : public View, private WebPageClient {
    Q_OBJECT
    Q_PROPERTY(QUrl url READ url DESIGNABLE false)
    Q_PROPERTY(bool loading READ isLoading DESIGNABLE false)

public:
    /// The configuration is read now and kept; null stands for a plain one for the real engine.
    WebView(const QRectF &frame, const std::shared_ptr<WebViewConfiguration> &configuration, QWidget *parent = nullptr);
    ~WebView() override;

    /// Never null.
    [[nodiscard]] const std::shared_ptr<WebViewConfiguration> &configuration() const { return m_configuration; }

    [[nodiscard]] WebNavigationDelegate *navigationDelegate() const { return m_navigationDelegate.lock().get(); }
    void setNavigationDelegate(WebNavigationDelegate *navigationDelegate);
    [[nodiscard]] WebUIDelegate *UIDelegate() const { return m_uiDelegate.lock().get(); }
    void setUIDelegate(WebUIDelegate *uiDelegate);

    void load(const QUrl &url);
    /// Loads a local file; the page may read files below the directory `allowingReadAccessTo` (a path) and no others.
    void loadFileURL(const QUrl &url, const QString &allowingReadAccessTo);
    void stopLoading();
    [[nodiscard]] bool isLoading() const;
    /// The main frame's URL; the one being loaded while a load is under way.
    [[nodiscard]] QUrl url() const;

    /// Runs a script in the main frame; see EvaluationHandler.
    void evaluateJavaScript(const QString &javaScript, EvaluationHandler completionHandler = {});
    /// Runs a script for its effect; see WebPage::executeJavaScript().
    void executeJavaScript(const QString &javaScript, ExecutionHandler completionHandler = {});

    /// False lets what lies under the view shine through where the page paints nothing. True at first.
    [[nodiscard]] bool drawsBackground() const { return m_drawsBackground; }
    void setDrawsBackground(bool draws);

    /// The engine's side of the view, for what only the engine can tell. Belongs to the view.
    [[nodiscard]] WebPage &page() const { return *m_page; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    NavigationPolicy decidePolicyForNavigationAction(const NavigationAction &action) override;
    void didFinishNavigation() override;
    void didFailProvisionalNavigation(const KXError &error) override;
    void didFailNavigation(const KXError &error) override;
    void webContentProcessDidTerminate() override;
    void runJavaScriptAlertPanel(const QString &message, const FrameInfo &frame) override;
    bool runJavaScriptConfirmPanel(const QString &message, const FrameInfo &frame) override;
    QString runJavaScriptTextInputPanel(
        const QString &prompt, const QString &defaultText, const FrameInfo &frame) override;
    void createWebView(const NavigationAction &action, const WindowFeatures &features) override;

    std::shared_ptr<WebViewConfiguration> m_configuration;
    std::weak_ptr<WebNavigationDelegate> m_navigationDelegate;
    std::weak_ptr<WebUIDelegate> m_uiDelegate;
    bool m_drawsBackground = true;
    std::unique_ptr<WebPage> m_page;
};

} // namespace kx
