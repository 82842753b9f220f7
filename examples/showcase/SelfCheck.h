// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

class ShowcaseWindow;

/// Drives the showcase through its page as a person would and prints one line for each step with what really happened.
class SelfCheck {
public:
    /// `logFolder` is the base directory that the showcase logs into.
    SelfCheck(ShowcaseWindow &window, const QString &logFolder, const QString &screenshotFile);

    /// Runs every step; true when all of them passed.
    bool run();

private:
    void step(const QString &name, const std::function<QString()> &happened, const QString &expected);
    [[nodiscard]] QJsonValue ask(const QString &script) const;
    void click(const QString &selector) const;
    [[nodiscard]] QString logText() const;

    void pageCallsNative();
    void nativeCallsPage();
    void linkFiresAction();
    void frameIsRefused();
    void missingPageIsReported();
    void failedLoadIsRebuilt();
    void logIsOnDisk();
    void saveScreenshot();

    ShowcaseWindow &m_window;
    QString m_logFolder;
    QString m_screenshotFile;
    bool m_allPassed = true;
};
