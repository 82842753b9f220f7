// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

class QWebEngineProfile;

namespace kx {

class WebViewConfiguration;

/// Finds the engine profile that a configuration asks for.
class ProfileStore {
public:
    [[nodiscard]] std::shared_ptr<QWebEngineProfile> profileFor(
        const std::shared_ptr<WebViewConfiguration> &configuration);
};

} // namespace kx
