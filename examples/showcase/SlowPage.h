// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

/// A page behind the showcase's own URL scheme that takes its time: a request stays unanswered until release().
/// It stands for a slow server in the check of what happens when the engine dies in the middle of a load.
class SlowPage {
public:
    /// Routes the scheme. Call before the application object is made, so that the engine knows the scheme in time.
    static void install();
    [[nodiscard]] static QUrl url();
    /// Requests that came so far.
    [[nodiscard]] static int requests();
    /// Answers requests from now on, and those that wait.
    static void release();
};
