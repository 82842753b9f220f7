// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/WindowUtil.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <QtGui/QScreen>

double pn_TitlebarHeight(const kx::Window *window)
{
    if (!window)
        return 0;
    const QRectF frame = window->frame();
    return frame.height() - window->contentRectForFrameRect(frame).height();
}

bool pn_mousePointInWindow(const kx::Window *window)
{
    const QWidget *content = window ? window->contentView() : nullptr;
    if (!content)
        return false;
    const QRectF onScreen = kx::screenFlipped(QRectF(content->mapToGlobal(QPointF(0, 0)), QSizeF(content->size())));
    const QRectF inWindow = onScreen.translated(-window->frame().topLeft());
    return kx::pointInRect(window->mouseLocationOutsideOfEventStream(), inWindow);
}

bool pn_isFullScreen(const kx::Window *window)
{
    const QRectF frame = window ? window->frame() : QRectF();
    const QScreen *screen = window && window->isVisible() ? window->screen() : nullptr;
    return frame == (screen ? kx::screenFlipped(screen->geometry()) : QRectF());
}
