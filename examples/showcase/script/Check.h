// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDir>
#include <QtCore/QString>

#include <functional>

class QWidget;

/// Waits for what should happen, prints one line for it, and saves a picture of the window.
class Check {
public:
    /// Earlier pictures in the folder go.
    Check(QWidget &window, const QDir &pictures);

    /// Waits until `happened` gives the expected text, and prints what it gave.
    void that(const QString &what, const std::function<QString()> &happened, const QString &expected);
    /// Waits until the condition holds.
    void that(const QString &what, const std::function<bool()> &holds);
    /// Saves a picture of the window as it is now.
    void picture(const QString &name);

    [[nodiscard]] bool allPassed() const { return m_failures == 0; }

    /// Runs the event loop until the condition holds; false when patience ends before.
    static bool waitUntil(const std::function<bool()> &condition);

private:
    void report(bool passed, const QString &text);

    QWidget &m_window;
    QDir m_pictures;
    int m_pictureCount = 0;
    int m_failures = 0;
};
