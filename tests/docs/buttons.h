// SPDX-License-Identifier: MIT
#pragma once

inline QObject *player = nullptr;

class Page : public QWidget {
public:
    void showHint(bool hovered);
};
