// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/WebEngine.h>

#include <QtCore/QList>
#include <QtCore/QPointer>

#include <memory>

namespace kx {

class ProfileStore;
class RealPage;

/// The engine on Qt WebEngine.
///
/// Everything that must be gone before the engine's own end goes in a routine of the application object's destructor:
/// first the pages that are still there (their objects live on and do nothing), then the profiles.
class RealEngine final : public WebEngine {
public:
    RealEngine();
    ~RealEngine() override;
    Q_DISABLE_COPY_MOVE(RealEngine)

    [[nodiscard]] std::unique_ptr<WebPage> makePage(
        const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client) override;
    void registerSchemes(const QStringList &schemes) override;

    /// Has the end of this engine run before that of everything begun until now, at the application's end.
    static void endFirst();

private:
    void shutDown();

    std::unique_ptr<ProfileStore> m_profiles;
    QList<QPointer<RealPage>> m_pages;
};

} // namespace kx
