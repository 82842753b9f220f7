// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/WebEngine.h>

namespace kx {

// The key functions of the pure interfaces, so that their tables are emitted once.
WebPageClient::~WebPageClient() = default;
WebPage::~WebPage() = default;
WebEngine::~WebEngine() = default;

} // namespace kx
