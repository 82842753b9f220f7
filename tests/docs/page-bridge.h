// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDebug>

class Player {
public:
    void play(const QString &id);
    int setVolume(int percent);
};
inline Player player;

class Page {
protected:
    KXWKWebView *view = nullptr;
};
