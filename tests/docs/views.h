// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/View/PNBaseView.h>

void hidePlaylist();

class Page {
protected:
    QWidget *player = nullptr;
};
