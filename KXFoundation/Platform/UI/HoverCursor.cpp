// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/HoverCursor.h>

#include <utility>

namespace kx {

void HoverCursor::widgetLeft(QWidget &widget)
{
    // The innermost widget is told first, and its parent only if that is left, too.
    if (m_hovered && widget.isAncestorOf(m_hovered)) // which it is of itself, too
        m_hovered = widget.isWindow() ? nullptr : widget.parentWidget();
}

void HoverCursor::set(const QCursor &cursor)
{
    QWindow *handle = m_settled == m_hovered ? window() : nullptr;
    if (!handle)
        return;
    m_cursor = cursor;
    m_window = handle;
    handle->setCursor(cursor);
}

void HoverCursor::reset()
{
    m_cursor.reset();
    if (QWindow *handle = window())
        handle->setCursor(m_hovered->cursor());
}

QCursor HoverCursor::current() const
{
    const QWindow *handle = window();
    return handle ? handle->cursor() : QCursor();
}

void HoverCursor::settle()
{
    if (m_settled == m_hovered)
        return;
    m_settled = m_hovered;
    const std::optional<QCursor> dropped = std::exchange(m_cursor, std::nullopt);
    // Qt, or the web engine on its own, may have set another cursor by now; over a plain part of a window nobody does.
    if (!dropped || !m_window || m_window->cursor() != *dropped)
        return;
    const QWidget *shows = window() == m_window ? m_hovered.data() : QWidget::find(m_window->winId());
    if (shows)
        m_window->setCursor(shows->cursor());
}

void HoverCursor::renew()
{
    QWindow *handle = m_cursor ? window() : nullptr;
    if (handle && handle->cursor() != *m_cursor)
        handle->setCursor(*m_cursor);
}

QWindow *HoverCursor::window() const
{
    if (!m_hovered)
        return nullptr;
    const QWidget *native = m_hovered->internalWinId() ? m_hovered.data() : m_hovered->nativeParentWidget();
    return native ? native->windowHandle() : nullptr;
}

} // namespace kx
