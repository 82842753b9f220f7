// SPDX-License-Identifier: MIT
// The pointer moves over 1,000 widgets of Qt's own.
#include "PointerPath.h"

#include <QtWidgets/QApplication>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    fill(window, [](QWidget *parent) { return new QWidget(parent); });
    printTimeOfAMove(window);
}
