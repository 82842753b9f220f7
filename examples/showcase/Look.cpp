// SPDX-License-Identifier: MIT
#include "Look.h"

#include "common/Icons.h"

#include <QtCore/QTime>
#include <QtGui/QFont>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

#include <cmath>

using namespace Qt::StringLiterals;

void look::apply()
{
    QPalette palette(chrome.toQColor(), window.toQColor());
    palette.setColor(QPalette::Base, window.toQColor());
    QApplication::setPalette(palette);
    QFont::insertSubstitution(u"PingFangSC-Regular"_s, fontName);
    icons::registerIndicators();
}

QString look::time(double seconds)
{
    const int whole = std::isfinite(seconds) ? int(seconds) : 0;
    return QTime(0, 0).addSecs(whole).toString(whole < 3600 ? u"m:ss"_s : u"h:mm:ss"_s);
}
