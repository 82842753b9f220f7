// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDebug>

class Player {
public:
    void play(const QString &id);
};
inline Player player;

class Page { };
