// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/WebEngine.h>

#include <utility>

namespace kx {

// The key functions of the pure interfaces, so that their tables are emitted once.
WebPageClient::~WebPageClient() = default;
WebPage::~WebPage() = default;
WebEngine::~WebEngine() = default;

void WebPage::executeJavaScript(const QString &script, ExecutionHandler completion)
{
    EvaluationHandler forwarded;
    if (completion)
        forwarded = [completion = std::move(completion)](const QJsonValue &, const auto &error) { completion(error); };
    evaluateJavaScript(script, std::move(forwarded));
}

} // namespace kx
