// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCoreApplication>

class Page {
protected:
    QString path;
    double milliseconds = 0;
    QString message;
};
