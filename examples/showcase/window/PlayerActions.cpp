// SPDX-License-Identifier: MIT
#include "PlayerActions.h"

#include "../player/Stage.h"
#include "PlayerWindow.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>

using namespace Qt::StringLiterals;

void PlayerActions::registerFor(PlayerWindow &window)
{
    auto processor = std::make_shared<KXActionProcessor>(u"kx"_s);
    using Operation = std::function<void(PlayerWindow &, const QHash<QString, QString> &)>;
    const auto add = [&processor, window = QPointer(&window)](const QString &path, const Operation &operation) {
        processor->registerHandler(
            [window, operation](const KXActionItem &item) {
                if (window)
                    operation(*window, item.queryMap());
            },
            path);
    };
    add(u"/play"_s, [](PlayerWindow &player, const auto &query) { player.play(query.value(u"id"_s).toInt()); });
    add(u"/next"_s, [](PlayerWindow &player, const auto &) { player.playNext(); });
    add(u"/seek"_s,
        [](PlayerWindow &player, const auto &query) { player.stage().player().seek(query.value(u"to"_s).toDouble()); });
    add(u"/tag"_s, [](PlayerWindow &player, const auto &query) { player.showTag(query.value(u"name"_s)); });
    KXActionManager::registerProcessor(processor);
}
