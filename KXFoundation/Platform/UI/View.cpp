// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>

#include <QtGui/QPaintEvent>

namespace kx {

View::View(QWidget *parent)
    : ViewOn<QWidget>(parent)
{
}

View::~View() = default;

void View::paintEvent(QPaintEvent *event)
{
    paint(*event);
}

} // namespace kx
