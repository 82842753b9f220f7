// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/WebEngine.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include "Support/HttpServer.h"

#include <QtCore/QPoint>
#include <QtCore/QVariant>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace kx::test {

/// A question about a navigation, as the owner of a page gets it.
struct Question {
    QUrl url;
    bool sourceIsMain = true;
    std::optional<bool> targetIsMain; ///< None for a new window.
};

/// A response of the test server with this body.
[[nodiscard]] HttpResponse answer(const QByteArray &body, const QByteArray &type = "text/html;charset=utf-8");

/// A page in the real engine that keeps what it was asked about navigations.
class AskingPage final : private WebPageClient {
public:
    explicit AskingPage(const WebPreferences &preferences = {});
    ~AskingPage() override;

    void load(const QUrl &url);
    /// Loads and waits until the document of that path is complete, its frames included.
    bool loadAndWait(const QUrl &url);

    /// Refuses everything but paths that begin with "/redirect", so that a page can ask many times.
    void refuseFromNow() { m_refuses = true; }
    [[nodiscard]] const QList<Question> &questions() const { return m_questions; }
    void forgetQuestions() { m_questions.clear(); }

    /// A script's value in the main frame; invalid if it threw or nothing answered.
    QVariant evaluate(const QString &script);
    /// One click of the left button, through the window system's events.
    void click(const QPoint &position);
    /// Whether the condition came true while events were handled.
    static bool waitFor(
        const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(5));

private:
    NavigationPolicy decidePolicyForNavigationAction(const NavigationAction &action) override;
    void didFinishNavigation() override { }
    void didFailProvisionalNavigation(const KXError &) override { }
    void didFailNavigation(const KXError &) override { }
    void webContentProcessDidTerminate() override { }
    void runJavaScriptAlertPanel(const QString &, const FrameInfo &) override { }
    bool runJavaScriptConfirmPanel(const QString &, const FrameInfo &) override { return false; }
    QString runJavaScriptTextInputPanel(const QString &, const QString &, const FrameInfo &) override { return {}; }
    void createWebView(const NavigationAction &, const WindowFeatures &) override { }

    QList<Question> m_questions;
    bool m_refuses = false;
    std::unique_ptr<WebPage> m_page;
};

} // namespace kx::test
