// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>

#include <QtCore/QDebug>

class Player {
public:
    void play(const QString &id);
};
inline Player player;

class Page { };
