// SPDX-License-Identifier: MIT
// A background program of a host: the Core component alone.
#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>
#include <KXFoundation/KXFoundationVersion.h>

#include <cstdio>
#include <cstring>

int main()
{
    QString played;
    auto player = std::make_shared<KXActionProcessor>(QStringLiteral("kx"));
    player->registerHandler(
        [&played](const KXActionItem &item) { played = item.queryMap().value(QStringLiteral("id")); },
        QStringLiteral("/play"));
    KXActionManager::registerProcessor(player);

    const bool handled = KXActionManager::handleActionWithURL(QStringLiteral("kx://action.cmd/play?id=7"));
    std::printf("%s plays %s\n", reinterpret_cast<const char *>(KXFoundationVersionString), qPrintable(played));
    return handled && played == u"7" && KXFoundationVersionNumber > 0 ? 0 : 1;
}
