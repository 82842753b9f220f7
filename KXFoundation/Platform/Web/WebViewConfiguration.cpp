// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <KXFoundation/Platform/Web/WebEngine.h>

namespace kx {

void UserContentController::addScriptMessageHandler(const ScriptMessageHandler &handler, const QString &name)
{
    m_handlers.insert(name, handler);
}

void UserContentController::removeScriptMessageHandlerForName(const QString &name)
{
    m_handlers.remove(name);
}

void UserContentController::addUserScript(const UserScript &script)
{
    m_scripts.append(script);
}

WebViewConfiguration::WebViewConfiguration(WebEngine &engine)
    : userContentController(std::make_shared<UserContentController>())
    , m_engine(engine)
{
}

WebViewConfiguration::WebViewConfiguration()
    : WebViewConfiguration(WebEngine::real())
{
}

WebViewConfiguration::~WebViewConfiguration() = default;

void WebViewConfiguration::setURLSchemeHandler(URLSchemeHandler *handler, const QString &scheme)
{
    if (handler)
        m_schemeHandlers.insert(scheme, handler);
    else
        m_schemeHandlers.remove(scheme);
}

} // namespace kx
