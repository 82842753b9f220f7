// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/RealEngine.h>

#include <KXFoundation/Platform/Web/QtWebEngine/ProfileStore.h>
#include <KXFoundation/Platform/Web/QtWebEngine/RealPage.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>

#include <QtCore/QCoreApplication>

#include <utility>

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

void RealEngine::endFirst()
{
    // Of the application's routines the latest runs first.
    static constexpr auto end = [] { static_cast<RealEngine &>(WebEngine::real()).shutDown(); };
    qRemovePostRoutine(end);
    qAddPostRoutine(end);
}

void RealEngine::shutDown()
{
    for (const QPointer<RealPage> &page : std::exchange(m_pages, {})) {
        if (page)
            page->shutDown();
    }
    m_profiles->clear();
}

std::unique_ptr<WebPage> RealEngine::makePage(
    const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client)
{
    const PageProfile profile = m_profiles->profileFor(configuration);
    endFirst();
    m_pages.removeIf([](const QPointer<RealPage> &page) { return page.isNull(); });
    auto page = std::make_unique<RealPage>(configuration, client, profile);
    m_pages.append(page.get());
    return page;
}

void RealEngine::registerSchemes(const QStringList &schemes)
{
    kx::registerSchemes(schemes);
}

} // namespace kx
