// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointer>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineWidgets/QWebEngineView>

#include <memory>

namespace kx {

/// What the engine asks while it waits for the answer.
class EnginePageOwner {
public:
    virtual ~EnginePageOwner() = default;
    virtual bool acceptNavigation(const QUrl &url, QWebEnginePage::NavigationType type, bool mainFrame) = 0;
    virtual void alert(const QString &message) = 0;
    virtual bool confirm(const QString &message) = 0;
    virtual bool prompt(const QString &message, const QString &defaultText, QString *result) = 0;
    /// A line of the console, and the URL of the script that wrote it or failed. Returns whether it was taken; else it
    /// goes where the engine puts such lines. Must not delete the page.
    virtual bool consoleLine(const QString &line, const QString &source) = 0;
};

namespace detail {
/// A base that is destroyed after the page: the engine requires that a profile outlives its pages.
struct ProfileHolder {
    std::shared_ptr<QWebEngineProfile> profile;
};
} // namespace detail

/// The engine's page. Its owner may go away from inside any question that the engine asks: dispose() then keeps page
/// and view until the engine has its answer.
class EnginePage final : private detail::ProfileHolder, public QWebEnginePage {
public:
    EnginePage(const std::shared_ptr<QWebEngineProfile> &profile, EnginePageOwner &owner);

    /// Cuts the page off its owner and deletes it, and `view` if there is one, as soon as that is safe.
    static void dispose(EnginePage *page, QWebEngineView *view);

protected:
    QWebEnginePage *createWindow(WebWindowType type) override;
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl &securityOrigin, const QString &message) override;
    bool javaScriptConfirm(const QUrl &securityOrigin, const QString &message) override;
    bool javaScriptPrompt(
        const QUrl &securityOrigin, const QString &message, const QString &defaultText, QString *result) override;
    QStringList chooseFiles(
        FileSelectionMode mode, const QStringList &oldFiles, const QStringList &acceptedMimeTypes) override;
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel level, const QString &message, int lineNumber, const QString &sourceID) override;

private:
    class Question;

    EnginePageOwner *m_owner; // null once disposed of
    QPointer<QWebEngineView> m_viewToDelete;
    int m_questions = 0; // under way, nested
};

} // namespace kx
