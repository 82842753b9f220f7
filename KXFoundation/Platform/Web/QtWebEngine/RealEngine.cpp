// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/RealEngine.h>

#include <KXFoundation/Platform/Web/QtWebEngine/ProfileStore.h>
#include <KXFoundation/Platform/Web/QtWebEngine/RealPage.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>

namespace kx {

WebEngine &WebEngine::real()
{
    static RealEngine engine;
    return engine;
}

RealEngine::RealEngine()
    : m_profiles(std::make_unique<ProfileStore>())
{
}

RealEngine::~RealEngine() = default;

std::unique_ptr<WebPage> RealEngine::makePage(
    const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client)
{
    return std::make_unique<RealPage>(configuration, client, m_profiles->profileFor(configuration));
}

void RealEngine::registerSchemes(const QStringList &schemes)
{
    kx::registerSchemes(schemes);
}

} // namespace kx
