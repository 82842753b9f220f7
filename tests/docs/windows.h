// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <QtWidgets/QMenu>

class Page {
protected:
    QMenu menu;
    QWidget *content = nullptr;
};
