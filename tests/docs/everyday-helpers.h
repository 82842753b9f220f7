// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Category/ArraySafe.h>
#include <KXFoundation/Category/DictionarySafe.h>
#include <KXFoundation/Category/FileManagerSandbox.h>
#include <KXFoundation/Category/TimerUtil.h>

#include <QtCore/QDebug>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtWidgets/QDialog>

class Player {
public:
    void updateClock();
};
inline Player player;

class Worker {
public:
    void whenDone(const std::function<void()> &block);
};

class Page {
protected:
    QJsonObject answer;
    QDialog *dialog = nullptr;
    Worker *worker = nullptr;
};
