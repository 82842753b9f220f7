// SPDX-License-Identifier: MIT
#pragma once

void hidePlaylist();

class Page {
protected:
    QWidget *player = nullptr;
};
