// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/WebEngine.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QStringList>

#include <functional>

namespace kx::test {

/// Remembers what a page asks of its client and tells it, and answers what the test wants.
class RecordingPageClient final : public WebPageClient {
public:
    NavigationPolicy decidePolicyForNavigationAction(const NavigationAction &action) override
    {
        actions.append(action);
        return decide ? decide(action) : NavigationPolicy::Allow;
    }
    void didFinishNavigation() override
    {
        ++finished;
        ended(QStringLiteral("finished"));
    }
    void didFailProvisionalNavigation(const KXError &error) override
    {
        provisionalFailures.append(error);
        ended(QStringLiteral("provisional %1").arg(error.code));
    }
    void didFailNavigation(const KXError &error) override
    {
        failures.append(error);
        ended(QStringLiteral("failed %1").arg(error.code));
    }
    void webContentProcessDidTerminate() override
    {
        ++terminations;
        ended(QStringLiteral("terminated"));
    }
    void runJavaScriptAlertPanel(const QString &message, const FrameInfo &) override
    {
        panels.append(QStringLiteral("alert ") + message);
        if (onPanel)
            onPanel();
    }
    bool runJavaScriptConfirmPanel(const QString &message, const FrameInfo &) override
    {
        panels.append(QStringLiteral("confirm ") + message);
        const bool answer = confirmAnswer;
        if (onPanel)
            onPanel();
        return answer;
    }
    QString runJavaScriptTextInputPanel(const QString &prompt, const QString &defaultText, const FrameInfo &) override
    {
        panels.append(QStringLiteral("prompt ") + prompt + QLatin1Char('|') + defaultText);
        const QString answer = promptAnswer;
        if (onPanel)
            onPanel();
        return answer;
    }
    void createWebView(const NavigationAction &action, const WindowFeatures &features) override
    {
        windows.append(action);
        windowFeatures.append(features);
    }

    QList<NavigationAction> actions;
    QStringList ends; ///< The ends of loads and processes in their order, such as "finished" or "provisional -999".
    int finished = 0;
    QList<KXError> provisionalFailures;
    QList<KXError> failures;
    int terminations = 0;
    QStringList panels;
    QList<NavigationAction> windows;
    QList<WindowFeatures> windowFeatures;

    std::function<NavigationPolicy(const NavigationAction &)> decide; ///< Without it everything is allowed.
    std::function<void()> onEnd; ///< May delete the page.
    std::function<void()> onPanel; ///< May delete the page.
    bool confirmAnswer = false;
    QString promptAnswer = QStringLiteral("");

private:
    void ended(const QString &what)
    {
        ends.append(what);
        if (onEnd)
            onEnd();
    }
};

} // namespace kx::test
