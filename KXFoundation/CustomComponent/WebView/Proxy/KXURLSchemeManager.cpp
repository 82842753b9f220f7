// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>

#include <KXFoundation/Platform/Web/WebEngine.h>

#include <utility>

KXURLSchemeManager &KXURLSchemeManager::sharedManager()
{
    // Never destroyed: requests may still come in while the program's static objects go.
    static auto *const manager = new KXURLSchemeManager;
    return *manager;
}

void KXURLSchemeManager::setProxySchemes(const QStringList &proxySchemes)
{
    m_proxySchemes = proxySchemes;
    kx::WebEngine::real().registerSchemes(proxySchemes);
}

void KXURLSchemeManager::setStartRequestBlock(RequestBlock startRequestBlock)
{
    m_startRequestBlock = std::move(startRequestBlock);
}

void KXURLSchemeManager::setStopRequestBlock(RequestBlock stopRequestBlock)
{
    m_stopRequestBlock = std::move(stopRequestBlock);
}

void KXURLSchemeManager::webViewStartURLSchemeTask(KXWebView *, const kx::URLSchemeTaskPtr &startURLSchemeTask)
{
    // A copy: the block may replace itself.
    if (const RequestBlock block = m_startRequestBlock)
        block(startURLSchemeTask);
}

void KXURLSchemeManager::webViewStopURLSchemeTask(KXWebView *, const kx::URLSchemeTaskPtr &stopURLSchemeTask)
{
    if (const RequestBlock block = m_stopRequestBlock)
        block(stopURLSchemeTask);
}
