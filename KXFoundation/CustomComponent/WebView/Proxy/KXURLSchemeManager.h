// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtCore/QStringList>

#include <functional>
#include <utility>

class KXWebView;

/// Serves the custom URL schemes of every web view in the process through two callbacks of the application.
///
/// List the schemes before the application object is made, set the callbacks before pages are loaded:
/// ```
/// KXURLSchemeManager &manager = KXURLSchemeManager::sharedManager();
/// manager.setProxySchemes({QStringLiteral("clip")});
/// manager.onComingRequest([](const kx::URLSchemeTaskPtr &task) {
///     task->didReceiveResponse("text/html");
///     task->didReceiveData("<h1>Clips</h1>");
///     task->didFinish();
/// });
/// ```
/// Web views share the one manager: a callback set later serves all of them, those already shown too.
/// Main thread only, except sharedManager().
class KX_WEB_EXPORT KXURLSchemeManager final : public kx::URLSchemeHandler {
public:
    using RequestBlock = std::function<void(const kx::URLSchemeTaskPtr &)>;

    /// The one manager, made on first use and kept until the process ends. Callable from any thread.
    [[nodiscard]] static KXURLSchemeManager &sharedManager();

    /// The schemes to serve, as given. Read when a web view's configuration is built; a change concerns only
    /// configurations built after it.
    [[nodiscard]] const QStringList &proxySchemes() const { return m_proxySchemes; }

    /// Before the application object is made this also makes the schemes secure, local and open to cross-origin
    /// requests. Later a scheme that is new gets a warning (category "kx.web.scheme") and still serves documents,
    /// images, scripts and same-origin requests.
    void setProxySchemes(const QStringList &proxySchemes);

    [[nodiscard]] const RequestBlock &startRequestBlock() const { return m_startRequestBlock; }
    void setStartRequestBlock(RequestBlock startRequestBlock);
    [[nodiscard]] const RequestBlock &stopRequestBlock() const { return m_stopRequestBlock; }
    void setStopRequestBlock(RequestBlock stopRequestBlock);

    /// Sets startRequestBlock: called when a request for a served scheme starts. Without one the request stays
    /// unanswered, and its page waits.
    void onComingRequest(RequestBlock onComingRequest) { setStartRequestBlock(std::move(onComingRequest)); }
    /// Sets stopRequestBlock: called when such a request was given up before its answer was complete.
    void onStopRequest(RequestBlock onStopRequest) { setStopRequestBlock(std::move(onStopRequest)); }

    /// Hand a task to the callback, if it is set. `webView` is null when the task comes from the web engine, which does
    /// not tell the view that asks; the callbacks do not see it.
    void webViewStartURLSchemeTask(KXWebView *webView, const kx::URLSchemeTaskPtr &startURLSchemeTask);
    void webViewStopURLSchemeTask(KXWebView *webView, const kx::URLSchemeTaskPtr &stopURLSchemeTask);

    // The web engine's side.
    void startURLSchemeTask(const kx::URLSchemeTaskPtr &task) override { webViewStartURLSchemeTask(nullptr, task); }
    void stopURLSchemeTask(const kx::URLSchemeTaskPtr &task) override { webViewStopURLSchemeTask(nullptr, task); }

private:
    KXURLSchemeManager() = default;
    Q_DISABLE_COPY_MOVE(KXURLSchemeManager)

    QStringList m_proxySchemes;
    RequestBlock m_startRequestBlock;
    RequestBlock m_stopRequestBlock;
};
