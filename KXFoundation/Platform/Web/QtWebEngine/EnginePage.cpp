// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/EnginePage.h>

namespace kx {

/// One question of the engine's, on its stack.
class EnginePage::Question {
public:
    explicit Question(EnginePage &page)
        : m_page(page)
    {
        ++m_page.m_questions;
    }
    ~Question()
    {
        if (--m_page.m_questions == 0 && !m_page.m_owner) {
            // Later, for the engine is still on the stack.
            if (m_page.m_viewToDelete)
                m_page.m_viewToDelete->deleteLater();
            m_page.deleteLater();
        }
    }
    Q_DISABLE_COPY_MOVE(Question)

private:
    EnginePage &m_page;
};

EnginePage::EnginePage(const std::shared_ptr<QWebEngineProfile> &profile, EnginePageOwner &owner)
    : detail::ProfileHolder{profile}
    , QWebEnginePage(profile.get())
    , m_owner(&owner)
{
}

void EnginePage::dispose(EnginePage *page, QWebEngineView *view)
{
    if (page) {
        page->m_owner = nullptr;
        if (page->m_questions > 0) {
            page->m_viewToDelete = view;
            if (view) {
                view->hide();
                view->setParent(nullptr);
            }
            return;
        }
    }
    // Not taken off its parent first: at the end of the application the engine's widget does not survive that.
    delete view;
    delete page;
}

QWebEnginePage *EnginePage::createWindow(WebWindowType)
{
    return nullptr;
}

bool EnginePage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    const Question question(*this);
    return m_owner && m_owner->acceptNavigation(url, type, isMainFrame);
}

void EnginePage::javaScriptAlert(const QUrl &, const QString &message)
{
    const Question question(*this);
    if (m_owner)
        m_owner->alert(message);
}

bool EnginePage::javaScriptConfirm(const QUrl &, const QString &message)
{
    const Question question(*this);
    return m_owner && m_owner->confirm(message);
}

bool EnginePage::javaScriptPrompt(const QUrl &, const QString &message, const QString &defaultText, QString *result)
{
    const Question question(*this);
    return m_owner && m_owner->prompt(message, defaultText, result);
}

QStringList EnginePage::chooseFiles(
    FileSelectionMode mode, const QStringList &oldFiles, const QStringList &acceptedMimeTypes)
{
    const Question question(*this); // a dialog with an event loop of its own, as the panels are
    return QWebEnginePage::chooseFiles(mode, oldFiles, acceptedMimeTypes);
}

void EnginePage::javaScriptConsoleMessage(
    JavaScriptConsoleMessageLevel level, const QString &message, int lineNumber, const QString &sourceID)
{
    // What a page without an owner still writes goes nowhere: it may be a record, and the secret is not for the log.
    if (m_owner && !m_owner->consoleLine(message, sourceID))
        QWebEnginePage::javaScriptConsoleMessage(level, message, lineNumber, sourceID);
}

} // namespace kx
