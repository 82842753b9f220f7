// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QRectF>
#include <QtCore/QUrl>

#include <functional>
#include <optional>

namespace kx {

/// A frame of a page, as far as a navigation decision needs it.
struct FrameInfo {
    bool mainFrame = true;
    friend bool operator==(const FrameInfo &, const FrameInfo &) = default;
};

enum class NavigationType { LinkActivated, FormSubmitted, BackForward, Reload, Other };

/// A navigation that is about to happen.
struct NavigationAction {
    QUrl url; ///< The URL of the request; scheme and host in lower case, as the engine has them.
    NavigationType type = NavigationType::Other;
    FrameInfo sourceFrame; ///< The frame that asks. A load begun by the application comes from the main frame.
    std::optional<FrameInfo> targetFrame; ///< The frame that will show it; none for a new window.
};

/// What the page asked of a window that it wants to open. Lengths are in logical pixels; absent where it did not say.
struct WindowFeatures {
    std::optional<double> x, y, width, height;
};

enum class NavigationPolicy { Cancel, Allow };

/// Takes the answer to a question that the engine asked. Call it once, before the operation that received it returns;
/// an unanswered question counts as Cancel.
using NavigationDecisionHandler = std::function<void(NavigationPolicy)>;

/// The head of a response that has arrived.
struct NavigationResponse {
    QUrl url;
    bool forMainFrame = true;
};

} // namespace kx

Q_DECLARE_METATYPE(kx::NavigationAction)
