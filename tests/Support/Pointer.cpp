// SPDX-License-Identifier: MIT
#include "Support/Pointer.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/QStyleHints>
#include <QtGui/QWindow>
#include <QtGui/private/qhighdpiscaling_p.h>
#include <QtGui/qpa/qwindowsysteminterface.h>

#include <utility>

namespace {

// Shared by all pointers: Qt compares the time of a press with that of the press before, whatever window had it.
ulong now = 1'000'000;

using Now = QWindowSystemInterface::SynchronousDelivery;
using Later = QWindowSystemInterface::AsynchronousDelivery;

} // namespace

Pointer::Pointer(QWidget &widget)
    : m_widget(&widget)
    , m_global(widget.mapToGlobal(QPointF(0, 0)))
{
    // The display's own pointer must not get beneath a window that moves: it has no button down.
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight());
}

void Pointer::deliver()
{
    m_queued = false;
    QCoreApplication::processEvents();
}

void Pointer::moveTo(const QPointF &position)
{
    if (!m_widget)
        return;
    m_global = m_widget->mapToGlobal(position);
    send(QEvent::MouseMove, Qt::NoButton);
}

void Pointer::moveBy(const QPointF &shift)
{
    m_global += shift;
    send(QEvent::MouseMove, Qt::NoButton);
}

void Pointer::moveWithButtons(const QPointF &shift, Qt::MouseButtons buttons)
{
    const Qt::MouseButtons own = std::exchange(m_buttons, buttons);
    moveBy(shift);
    m_buttons = own;
}

void Pointer::press(Qt::MouseButton button)
{
    now += ulong(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    m_buttons |= button;
    send(QEvent::MouseButtonPress, button);
}

void Pointer::release(Qt::MouseButton button)
{
    m_buttons &= ~Qt::MouseButtons(button);
    send(QEvent::MouseButtonRelease, button);
}

void Pointer::click(const QPointF &position, Qt::MouseButton button)
{
    moveTo(position);
    press(button);
    release(button);
}

void Pointer::doubleClick(const QPointF &position, Qt::MouseButton button)
{
    click(position, button);
    m_buttons |= button;
    send(QEvent::MouseButtonPress, button);
    release(button);
}

void Pointer::drag(const QPointF &from, const QPointF &to, int steps)
{
    moveTo(from);
    press();
    for (int i = 0; i < steps; ++i)
        moveBy((to - from) / steps);
    release();
}

void Pointer::wheel(const QPoint &angleDelta)
{
    QWindow *handle = window();
    if (!handle)
        return;
    QWindowSystemInterface::handleWheelEvent(
        handle, ++now, local(*handle), global(*handle), {}, angleDelta, m_modifiers);
    if (!m_queued)
        QWindowSystemInterface::flushWindowSystemEvents();
}

void Pointer::leave()
{
    QWindow *handle = window();
    if (!handle)
        return;
    m_inside = false;
    if (m_queued)
        QWindowSystemInterface::handleLeaveEvent<Later>(handle);
    else
        QWindowSystemInterface::handleLeaveEvent<Now>(handle);
}

void Pointer::send(QEvent::Type type, Qt::MouseButton button)
{
    QWindow *handle = window();
    if (!handle)
        return;
    const auto deliver = [&](auto delivery) {
        using Delivery = decltype(delivery);
        if (!std::exchange(m_inside, true))
            QWindowSystemInterface::handleEnterEvent<Delivery>(handle, local(*handle), global(*handle));
        if (!m_widget) // deleted by a handler
            return;
        QWindowSystemInterface::handleMouseEvent<Delivery>(
            handle, ++now, local(*handle), global(*handle), m_buttons, button, type, m_modifiers);
    };
    if (m_queued)
        deliver(Later());
    else
        deliver(Now());
}

QWindow *Pointer::window() const
{
    return m_widget ? m_widget->window()->windowHandle() : nullptr;
}

// The window system counts device pixels.
QPointF Pointer::local(const QWindow &window) const
{
    return QHighDpi::toNativeLocalPosition(m_widget->window()->mapFromGlobal(m_global), &window);
}

QPointF Pointer::global(const QWindow &window) const
{
    return QHighDpi::toNativeGlobalPosition(m_global, &window);
}
