// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/Core/KXError.h>
#include <KXFoundation/Platform/Web/NavigationAction.h>

#include <QtCore/QJsonValue>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace kx {

class WebViewConfiguration;

/// Called when a script has been evaluated: with its value (Undefined for null and for what JSON cannot carry), or with
/// the error. A thrown exception is WebErrorJavaScriptException with the script's error text, a syntax error too; a
/// page or process that went away first is WebErrorViewInvalidated. Never called from inside the evaluating call.
using EvaluationHandler = std::function<void(const QJsonValue &value, const std::optional<KXError> &error)>;
/// The same for a script whose value nobody wants.
using ExecutionHandler = std::function<void(const std::optional<KXError> &error)>;

/// What a page asks of and tells its view. All on the main thread, and never from inside a call of the page by the
/// view. The client may delete the page from any of these.
class KX_WEB_EXPORT WebPageClient {
public:
    virtual ~WebPageClient();

    /// Whether the navigation may happen; must answer at once.
    virtual NavigationPolicy decidePolicyForNavigationAction(const NavigationAction &action) = 0;
    /// The main frame's document has been loaded, HTTP error pages included.
    virtual void didFinishNavigation() = 0;
    /// A main-frame load ended before its document began. A policy's refusal and a stop are such failures too.
    virtual void didFailProvisionalNavigation(const KXError &error) = 0;
    /// A main-frame load ended after its document began.
    virtual void didFailNavigation(const KXError &error) = 0;
    /// The page's process died while nothing was being loaded. The page shows nothing until the next load.
    virtual void webContentProcessDidTerminate() = 0;
    /// Shows an alert() and returns when it was closed.
    virtual void runJavaScriptAlertPanel(const QString &message, const FrameInfo &frame) = 0;
    virtual bool runJavaScriptConfirmPanel(const QString &message, const FrameInfo &frame) = 0;
    virtual QString runJavaScriptTextInputPanel(
        const QString &prompt, const QString &defaultText, const FrameInfo &frame) = 0;
    /// The page wants a new window, which it does not get.
    virtual void createWebView(const NavigationAction &action, const WindowFeatures &features) = 0;
};

/// One page in a web engine, with the widget that shows it. Main thread only.
class KX_WEB_EXPORT WebPage {
public:
    virtual ~WebPage();

    /// The widget that shows the page; it belongs to this object, and its parent may be set freely.
    [[nodiscard]] virtual QWidget *widget() const = 0;

    virtual void load(const QUrl &url) = 0;
    /// Loads a local file; the page may read files below `readAccessDirectory` (a path) and no others.
    virtual void loadFile(const QUrl &url, const QString &readAccessDirectory) = 0;
    virtual void stopLoading() = 0;
    [[nodiscard]] virtual bool isLoading() const = 0;
    /// The main frame's URL; the one being loaded while a load is under way.
    [[nodiscard]] virtual QUrl url() const = 0;

    /// Runs a script in the main frame's page world. `completion` may be empty.
    virtual void evaluateJavaScript(const QString &script, EvaluationHandler completion) = 0;
    /// Runs a script for its effect, in order with what is evaluated. Cheaper than evaluateJavaScript() where there are
    /// many, because those of one turn of the event loop can reach the page together; one that throws does not keep the
    /// others from running. `completion` may be empty.
    virtual void executeJavaScript(const QString &script, ExecutionHandler completion);

    /// False lets what lies under the view shine through where the page paints nothing.
    virtual void setDrawsBackground(bool draws) = 0;
    /// True keeps moves, enters, leaves and left presses of the mouse from the page.
    virtual void setIgnoresMouseEvents(bool ignores) = 0;

    /// The process that renders the page; 0 while there is none.
    [[nodiscard]] virtual qint64 rendererProcessId() const = 0;
};

/// A web engine: makes pages.
class KX_WEB_EXPORT WebEngine {
public:
    virtual ~WebEngine();

    /// The engine that the library runs on. Lives as long as the application object.
    [[nodiscard]] static WebEngine &real();

    /// A page built from the configuration, which it keeps alive. `client` must outlive the page.
    [[nodiscard]] virtual std::unique_ptr<WebPage> makePage(
        const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client) = 0;

    /// Makes custom schemes known to the engine as secure, local and open to cross-origin requests. Works before the
    /// application object is made; afterwards a scheme still serves documents, images, scripts and same-origin
    /// requests.
    virtual void registerSchemes(const QStringList &schemes) = 0;
};

} // namespace kx
