// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>

namespace kx {

View::View(QWidget *parent)
    : ViewOn<QWidget>(parent)
{
}

View::~View() = default;

void View::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    drawRect(painter, widgetRect(event->rect()));
}

} // namespace kx
