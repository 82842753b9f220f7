// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>

#include <KXFoundation/Platform/Web/WebEngine.h>

#include <utility>

namespace {

void call(KXURLSchemeManager::RequestBlock block, const kx::URLSchemeTaskPtr &task)
{
    // The block is a copy: the one that is stored may be replaced by the call itself.
    if (block)
        block(task);
}

} // namespace

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
    call(m_startRequestBlock, startURLSchemeTask);
}

void KXURLSchemeManager::webViewStopURLSchemeTask(KXWebView *, const kx::URLSchemeTaskPtr &stopURLSchemeTask)
{
    call(m_stopRequestBlock, stopURLSchemeTask);
}
