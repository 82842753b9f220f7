// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QPainter>

inline QString path;
inline QImage frame;
inline QImage knob;

class Page {
protected:
    QPainter painter;
};
