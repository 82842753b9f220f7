// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ProfileStore.h>

#include <KXFoundation/Platform/Web/QtWebEngine/SchemeHandler.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>
#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>

#include <algorithm>

namespace kx {

namespace {

QWebEngineScript engineScript(const UserScript &script, const QString &name)
{
    const bool atStart = script.injectionTime == UserScript::InjectionTime::DocumentStart;
    QWebEngineScript result;
    result.setName(name);
    result.setSourceCode(script.source);
    result.setInjectionPoint(atStart ? QWebEngineScript::DocumentCreation : QWebEngineScript::DocumentReady);
    result.setWorldId(QWebEngineScript::MainWorld);
    result.setRunsOnSubFrames(!script.forMainFrameOnly);
    return result;
}

} // namespace

PageProfile ProfileStore::profileFor(const std::shared_ptr<WebViewConfiguration> &configuration)
{
    const std::shared_ptr<const void> owner =
        configuration->processPool ? std::shared_ptr<const void>(configuration->processPool) : configuration;
    const UserContentController &controller = *configuration->userContentController;
    const Content content = {
        controller.userScripts(), controller.scriptMessageHandlerNames(), configuration->urlSchemeHandlers()};

    std::erase_if(m_entries, [](const Entry &entry) {
        return entry.owner.expired()
            || std::any_of(
                entry.handlers.begin(), entry.handlers.end(), [](const auto &handler) { return handler.expired(); });
    });
    const auto known = std::find_if(m_entries.begin(), m_entries.end(),
        [&](const Entry &entry) { return entry.owner.lock() == owner && entry.content == content; });
    if (known != m_entries.end())
        return known->profile;

    Entry entry{owner, {}, content, makeProfile(content)};
    for (const URLSchemeHandler *handler : content.schemes)
        entry.handlers.push_back(handler->weakReference());
    m_entries.push_back(entry);
    return entry.profile;
}

PageProfile ProfileStore::makeProfile(const Content &content)
{
    const auto profile = std::make_shared<QWebEngineProfile>();
    const auto transport = std::make_shared<MessageTransport>(content.handlerNames);
    QList<QWebEngineScript> scripts = transport->scripts();
    for (const UserScript &script : content.scripts)
        scripts.append(engineScript(script, QStringLiteral("user-script-%1").arg(scripts.size())));
    profile->scripts()->insert(scripts);
    for (auto [scheme, handler] : content.schemes.asKeyValueRange()) {
        if (const QByteArray name = scheme.toUtf8(); mayBeCustomScheme(name))
            profile->installUrlSchemeHandler(name, new SchemeHandler(*handler, profile.get()));
    }
    return {profile, transport};
}

} // namespace kx
