// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/Web/NavigationAction.h>

#include <QtCore/QHash>
#include <QtCore/QJsonValue>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

namespace kx {

class URLSchemeHandler;
class WebEngine;

/// A script that the engine runs in every page before or after the page's own.
struct UserScript {
    enum class InjectionTime { DocumentStart, DocumentEnd };

    QString source;
    InjectionTime injectionTime = InjectionTime::DocumentStart;
    bool forMainFrameOnly = true;

    friend bool operator==(const UserScript &, const UserScript &) = default;
};

/// What a page posted to a script-message handler.
struct ScriptMessage {
    QString name; ///< The handler's name.
    QJsonValue body; ///< A string or an object as posted; Undefined for anything else.
};

using ScriptMessageHandler = std::function<void(const ScriptMessage &)>;

/// The scripts that go into pages and the handlers that pages can post to. Main thread only.
///
/// Scripts and handler names are read when a web view is built; removing a handler takes effect at once: what a page
/// posts afterwards, and what it posted that has not been delivered yet, is dropped.
class KX_WEB_EXPORT UserContentController {
public:
    /// Pages reach the handler as `webkit.messageHandlers.NAME.postMessage(value)`. A second handler of the same name
    /// replaces the first. The controller keeps the handler, and all that it holds, alive.
    void addScriptMessageHandler(const ScriptMessageHandler &handler, const QString &name);
    void removeScriptMessageHandlerForName(const QString &name);
    void addUserScript(const UserScript &script);

    [[nodiscard]] QStringList scriptMessageHandlerNames() const { return m_handlers.keys(); }
    /// An empty function when the name has no handler.
    [[nodiscard]] ScriptMessageHandler scriptMessageHandler(const QString &name) const
    {
        return m_handlers.value(name);
    }
    [[nodiscard]] const QList<UserScript> &userScripts() const { return m_scripts; }

private:
    QMap<QString, ScriptMessageHandler> m_handlers;
    QList<UserScript> m_scripts;
};

struct WebPreferences {
    bool javaScriptEnabled = true;
    bool fullScreenEnabled = false;
    /// Whether a page from a file may read other files and, in this engine, anything remote at all.
    bool allowFileAccessFromFileURLs = false;
    bool javaScriptCanOpenWindowsAutomatically = false;

    friend bool operator==(const WebPreferences &, const WebPreferences &) = default;
};

/// Stands for the engine processes that web views share. Views of one pool that were built with equal user scripts,
/// handler names and scheme handlers share storage and cookies, which are kept in memory only and for as long as the
/// pool or such a view lives. A view without a pool shares with views of its own configuration alone.
class ProcessPool { };

/// All that a web view is built from. Held by shared pointer; a view keeps its configuration alive.
class KX_WEB_EXPORT WebViewConfiguration {
public:
    /// `engine` must outlive every view that is built from this configuration.
    explicit WebViewConfiguration(WebEngine &engine);
    /// A configuration for the real engine.
    WebViewConfiguration();
    ~WebViewConfiguration();
    Q_DISABLE_COPY_MOVE(WebViewConfiguration)

    std::shared_ptr<ProcessPool> processPool;
    WebPreferences preferences;
    std::shared_ptr<UserContentController> userContentController; ///< Never null.

    /// Routes requests for `scheme` (lower case) to `handler`, which must outlive every view of this configuration;
    /// null takes the route away. Read when a web view is built. The engine keeps what it serves itself, such as "http"
    /// and "file".
    void setURLSchemeHandler(URLSchemeHandler *handler, const QString &scheme);
    [[nodiscard]] const QMap<QString, URLSchemeHandler *> &urlSchemeHandlers() const { return m_schemeHandlers; }

    [[nodiscard]] WebEngine &engine() const { return m_engine; }

private:
    WebEngine &m_engine;
    QMap<QString, URLSchemeHandler *> m_schemeHandlers;
};

} // namespace kx
