// SPDX-License-Identifier: MIT
#pragma once

#include <QtWidgets/QMenu>

class Page {
protected:
    QMenu menu;
    QWidget *content = nullptr;
};
