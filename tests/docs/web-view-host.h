// SPDX-License-Identifier: MIT
#pragma once

#include <QtWidgets/QSplashScreen>

class Player {
public:
    bool play(int clip);
};
inline Player player;
inline QSplashScreen splash;
inline QString installed;
void reinstall(const QString &path);
void show(const QJsonValue &clip);

class Page {
protected:
    QWidget *window = nullptr;
};
