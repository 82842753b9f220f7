// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/WebEngine.h>

#include <KXFoundation/Platform/Web/URLSchemeTask.h>

namespace kx {

// The key functions of the pure interfaces, so that their tables are emitted once.
URLSchemeTask::~URLSchemeTask() = default;
URLSchemeHandler::~URLSchemeHandler() = default;
WebPageClient::~WebPageClient() = default;
WebPage::~WebPage() = default;
WebEngine::~WebEngine() = default;

} // namespace kx
