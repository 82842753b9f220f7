// SPDX-License-Identifier: MIT
#include "AskingPage.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QWidget>

namespace kx::test {

HttpResponse answer(const QByteArray &body, const QByteArray &type)
{
    HttpResponse response;
    response.body = body;
    response.contentType = type;
    return response;
}

AskingPage::AskingPage(const WebPreferences &preferences)
{
    const auto configuration = std::make_shared<WebViewConfiguration>();
    configuration->preferences = preferences;
    m_page = WebEngine::real().makePage(configuration, *this);
    m_page->widget()->resize(400, 300);
    m_page->widget()->show();
}

AskingPage::~AskingPage() = default;

NavigationPolicy AskingPage::decidePolicyForNavigationAction(const NavigationAction &action)
{
    std::optional<bool> target;
    if (action.targetFrame)
        target = action.targetFrame->mainFrame;
    m_questions.append({action.url, action.sourceFrame.mainFrame, target});
    const bool refused = m_refuses && !action.url.path().startsWith(QLatin1String("/redirect"));
    return refused ? NavigationPolicy::Cancel : NavigationPolicy::Allow;
}

void AskingPage::load(const QUrl &url)
{
    if (url.isLocalFile())
        m_page->loadFile(url, QFileInfo(url.toLocalFile()).path());
    else
        m_page->load(url);
}

bool AskingPage::loadAndWait(const QUrl &url)
{
    load(url);
    const QString state = QLatin1String("complete") + url.path();
    return waitFor([&] { return evaluate(QStringLiteral("document.readyState + location.pathname")) == state; });
}

bool AskingPage::waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    QTimer wake; // so that the limit is noticed although nothing happens
    wake.start(20);
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

QVariant AskingPage::evaluate(const QString &script)
{
    const auto answered = std::make_shared<std::optional<QVariant>>();
    m_page->evaluateJavaScript(script, [answered](const QJsonValue &value, const std::optional<KXError> &error) {
        *answered = error ? QVariant() : value.toVariant();
    });
    return waitFor([answered] { return answered->has_value(); }) ? **answered : QVariant();
}

void AskingPage::click(const QPoint &position)
{
    QWidget *const receiver = m_page->widget()->focusProxy(); // the engine's own widget
    QTest::mouseClick(receiver ? receiver : m_page->widget(), Qt::LeftButton, {}, position);
}

} // namespace kx::test
