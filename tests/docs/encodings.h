// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Category/DataBase64.h>
#include <KXFoundation/Category/DataUtil.h>
#include <KXFoundation/Category/StringUrlEncode.h>

class Page {
protected:
    QByteArray cover;
    QString title;
};
