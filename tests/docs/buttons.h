// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/PNButton.h>

inline QObject *player = nullptr;

class Page : public QWidget {
public:
    void showHint(bool hovered);
};
