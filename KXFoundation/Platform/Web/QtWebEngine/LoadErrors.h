// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QUrl>

namespace kx {

/// The failure of a load of `url` with an error number of the engine's network stack (net::ERR_...), as a URL error.
[[nodiscard]] KXError networkError(int netError, const QUrl &url);

/// The load was stopped, or another one took its place.
[[nodiscard]] KXError cancelledError(const QUrl &url);
/// A decision of the client's, or a response that is not to be shown, ended the load.
[[nodiscard]] KXError interruptedError(const QUrl &url);
/// Nobody serves the URL's scheme.
[[nodiscard]] KXError unsupportedURLError(const QUrl &url);
/// The renderer process died while it was loading.
[[nodiscard]] KXError processDiedError(const QUrl &url);

} // namespace kx
