// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QCoreApplication>

class Page {
protected:
    QString path;
    double milliseconds = 0;
    QString message;
};
