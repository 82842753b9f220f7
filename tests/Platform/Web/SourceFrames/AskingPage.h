// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/SourceFrames/SourceFrameTracker.h>

#include "Support/HttpServer.h"

#include <QtCore/QVariant>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineWidgets/QWebEngineView>

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
class AskingPage : public QWebEnginePage {
    Q_OBJECT
public:
    explicit AskingPage(QWebEngineProfile *profile);
    ~AskingPage() override;

    /// Puts the scripts into a profile that the page's frames need to have.
    static void prepare(QWebEngineProfile &profile);

    /// Refuses everything but paths that begin with "/redirect", so that a page can ask many times.
    void refuseFromNow() { m_refuses = true; }
    [[nodiscard]] const QList<Question> &questions() const { return m_questions; }
    void forgetQuestions() { m_questions.clear(); }

    /// Loads and waits until the document of that path is complete, its frames included.
    bool loadAndWait(const QUrl &url);
    /// A script's value in the main frame; invalid if it threw or nothing answered.
    QVariant evaluate(const QString &script);
    /// One click of the left button, through the window system's events.
    void click(const QPoint &position);
    /// Whether the condition came true while events were handled.
    static bool waitFor(
        const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(5));

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel level, const QString &message, int line, const QString &source) override;

private:
    void ask(const NavigationRequest &request);

    SourceFrameTracker m_tracker;
    QList<Question> m_questions;
    QWebEngineView m_view;
    bool m_refuses = false;
};

} // namespace kx::test
