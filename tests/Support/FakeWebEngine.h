// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/WebEngine.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <map>
#include <memory>

namespace kx::test {

class FakeWebEngine;

/// A page without an engine: it remembers what it is told, and the test says what becomes of it. A load asks for its
/// policy from the event loop, then waits for the test to call one of the ends.
class FakeWebPage final : public QObject, public WebPage {
    Q_OBJECT
public:
    struct Load {
        QUrl url;
        QString readAccessDirectory; ///< Null for load().
        friend bool operator==(const Load &, const Load &) = default;
    };

    FakeWebPage(
        FakeWebEngine &engine, const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client);
    ~FakeWebPage() override;

    [[nodiscard]] QWidget *widget() const override { return m_widget; }
    void load(const QUrl &url) override { begin({url, {}}); }
    void loadFile(const QUrl &url, const QString &readAccessDirectory) override { begin({url, readAccessDirectory}); }
    void stopLoading() override;
    [[nodiscard]] bool isLoading() const override { return m_loading; }
    [[nodiscard]] QUrl url() const override { return m_url; }
    void evaluateJavaScript(const QString &script, EvaluationHandler completion) override;
    void setDrawsBackground(bool draws) override { drawsBackground = draws; }
    void setIgnoresMouseEvents(bool ignores) override { ignoresMouseEvents = ignores; }
    [[nodiscard]] qint64 rendererProcessId() const override { return m_alive ? 4711 : 0; }

    // --- what the test makes of it; each runs the client at once ---------------------------------------------------

    /// The document of the load under way begins.
    void commit() { m_committed = true; }
    void finish();
    /// The load fails, before or after its document began.
    void fail(const KXError &error);
    /// The page's process dies; what was evaluated and not answered is told so.
    void die();
    NavigationPolicy ask(const NavigationAction &action) { return m_client.decidePolicyForNavigationAction(action); }
    void alert(const QString &message) { m_client.runJavaScriptAlertPanel(message, {}); }
    bool confirm(const QString &message) { return m_client.runJavaScriptConfirmPanel(message, {}); }
    QString prompt(const QString &text) { return m_client.runJavaScriptTextInputPanel(text, QStringLiteral("x"), {}); }
    void openWindow(const NavigationAction &action, const WindowFeatures &features);
    /// The page posts to a script-message handler; delivered from the event loop.
    void post(const QString &handlerName, const QJsonValue &body);

    QList<Load> loads;
    QStringList scripts; ///< Everything evaluated.
    std::optional<KXError> evaluationError; ///< What evaluations end with, from now on.
    bool drawsBackground = true;
    bool ignoresMouseEvents = false;
    int stops = 0;

private:
    void begin(const Load &load);
    void endAsStopped();
    void answerEvaluation(int number, const std::optional<KXError> &error);

    FakeWebEngine &m_engine;
    std::shared_ptr<WebViewConfiguration> m_configuration;
    WebPageClient &m_client;
    QPointer<QWidget> m_widget;
    QUrl m_url;
    bool m_loading = false;
    bool m_committed = false;
    bool m_alive = true;
    int m_loadNumber = 0;
    int m_lastEvaluation = 0;
    std::map<int, EvaluationHandler> m_evaluations;
};

/// An engine whose pages do what tests say.
class FakeWebEngine final : public WebEngine {
public:
    [[nodiscard]] std::unique_ptr<WebPage> makePage(
        const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client) override;
    void registerSchemes(const QStringList &schemes) override { registeredSchemes += schemes; }

    /// The newest page that is still there; null when there is none.
    [[nodiscard]] FakeWebPage *page() const { return pages.isEmpty() ? nullptr : pages.last(); }

    QList<FakeWebPage *> pages; ///< Those still there.
    QList<std::weak_ptr<WebViewConfiguration>> configurations; ///< Of every page ever made.
    QStringList registeredSchemes;
};

} // namespace kx::test
