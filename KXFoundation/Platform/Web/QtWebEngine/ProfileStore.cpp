// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ProfileStore.h>

#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtWebEngineCore/QWebEngineProfile>

namespace kx {

std::shared_ptr<QWebEngineProfile> ProfileStore::profileFor(const std::shared_ptr<WebViewConfiguration> &)
{
    return std::make_shared<QWebEngineProfile>();
}

} // namespace kx
