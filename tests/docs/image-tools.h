// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/BigImageThumb/KXBigImageThumb.h>
#include <KXFoundation/Category/ImageKXTools.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtGui/QPainter>

inline QString path;
inline QImage frame;
inline QImage knob;

class Page {
protected:
    QPainter painter;
};
