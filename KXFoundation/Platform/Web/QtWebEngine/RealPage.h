// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/QtWebEngine/ClientQueue.h>
#include <KXFoundation/Platform/Web/QtWebEngine/EnginePage.h>
#include <KXFoundation/Platform/Web/QtWebEngine/LoadState.h>
#include <KXFoundation/Platform/Web/QtWebEngine/PageView.h>
#include <KXFoundation/Platform/Web/QtWebEngine/ProfileStore.h>
#include <KXFoundation/Platform/Web/QtWebEngine/ScriptRunner.h>
#include <KXFoundation/Platform/Web/SourceFrames/SourceFrameTracker.h>
#include <KXFoundation/Platform/Web/WebEngine.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>

class QWebEngineLoadingInfo;
class QWebEngineNewWindowRequest;

namespace kx {

class ReadAccessInterceptor;

/// A page on Qt WebEngine: joins the engine's page and view with the parts that make up for what the engine lacks.
///
/// The engine never puts user scripts into a page whose process died once; so a dead page is replaced by a new engine
/// page at the next load.
class RealPage final : public QObject, public WebPage, private EnginePageOwner {
    Q_OBJECT
public:
    RealPage(const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client, PageProfile profile);
    ~RealPage() override;

    [[nodiscard]] QWidget *widget() const override { return m_view; }
    void load(const QUrl &url) override;
    void loadFile(const QUrl &url, const QString &readAccessDirectory) override;
    void stopLoading() override;
    [[nodiscard]] bool isLoading() const override { return m_loads.isLoading(); }
    [[nodiscard]] QUrl url() const override;
    void evaluateJavaScript(const QString &script, EvaluationHandler completion) override;
    void executeJavaScript(const QString &script, ExecutionHandler completion) override;
    void setDrawsBackground(bool draws) override;
    void setIgnoresMouseEvents(bool ignores) override;
    [[nodiscard]] qint64 rendererProcessId() const override;

    /// Lets go of the engine, whose end is near: from now on the page does nothing.
    void shutDown();

private:
    struct Request {
        QUrl url;
        QString readAccessDirectory; ///< Of a file.
    };

    bool acceptNavigation(const QUrl &url, QWebEnginePage::NavigationType type, bool mainFrame) override;
    void alert(const QString &message) override;
    bool confirm(const QString &message) override;
    bool prompt(const QString &message, const QString &defaultText, QString *result) override;
    bool consoleLine(const QString &line, const QString &source) override;

    void makeEnginePage();
    void begin(const Request &request);
    void loadRequested();
    void loadingChanged(const QWebEngineLoadingInfo &info);
    void loadEnded(const LoadEnd &end);
    void processTerminated();
    void newWindowRequested(const QWebEngineNewWindowRequest &request);
    void deliver(const TransportRecord &record);
    [[nodiscard]] bool servesScheme(const QString &scheme) const;

    const std::shared_ptr<WebViewConfiguration> m_configuration;
    WebPageClient &m_client;
    PageProfile m_profile;
    ClientQueue m_queue;
    ScriptRunner m_scripts{m_queue};
    LoadState m_loads{[this](const LoadEnd &end) { loadEnded(end); }};
    SourceFrameTracker m_sourceFrames;
    QPointer<PageView> m_view; // a foreign parent may delete it
    EnginePage *m_page = nullptr; // ours; see EnginePage::dispose
    ReadAccessInterceptor *m_readAccess = nullptr; // the page's
    std::optional<Request> m_request; // to be loaded when the event loop runs
    quint64 m_orders = 0; // the client's loads and stops so far
    bool m_dead = false; // the renderer died since the last load
    bool m_isBegun = false; // the engine has been given something to load
    bool m_drawsBackground = true;
};

} // namespace kx
