// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/StandardWindowButton.h>

#include <KXFoundation/Platform/UI/StandardWindowButtonGroup.h>
#include <KXFoundation/Platform/UI/WindowButtonFace.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>

#include <QtGui/QFocusEvent>

namespace kx {

StandardWindowButton::StandardWindowButton(WindowButton kind, WindowStyleMask styleMask, QWidget *parent)
    : Button(parent)
    , m_kind(kind)
{
    switch (kind) {
    case WindowButton::Close:
        setAccessibleName(tr("Close"));
        setEnabled(styleMask.testFlag(WindowStyle::Closable));
        break;
    case WindowButton::Miniaturize:
        setAccessibleName(tr("Minimize"));
        setEnabled(styleMask.testFlag(WindowStyle::Miniaturizable));
        break;
    case WindowButton::Zoom:
        setAccessibleName(tr("Full screen"));
        setEnabled(styleMask.testFlag(WindowStyle::Resizable));
        break;
    }
    setAttribute(Qt::WA_Hover); // repainted when the pointer comes and goes
    resize(sizeHint());
    connect(this, &QAbstractButton::clicked, this, &StandardWindowButton::act);
}

StandardWindowButton::~StandardWindowButton() = default;

QSizeF StandardWindowButton::intrinsicContentSize() const
{
    return {14, 16};
}

void StandardWindowButton::act()
{
    QWidget *const top = window();
    if (top == this)
        return; // in no window
    switch (m_kind) {
    case WindowButton::Close: top->close(); break;
    case WindowButton::Miniaturize: top->setWindowState(top->windowState() | Qt::WindowMinimized); break;
    case WindowButton::Zoom: setFullScreen(*top, !top->isFullScreen()); break;
    }
}

bool StandardWindowButton::isMouseInGroup() const
{
    const auto *group = dynamic_cast<const StandardWindowButtonGroup *>(parentWidget());
    return group ? group->_mouseInGroup(this) : underMouse();
}

bool StandardWindowButton::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        update();
    return Button::event(event);
}

// Qt gives the first widget that Tab reaches the focus when a window becomes active.
void StandardWindowButton::focusInEvent(QFocusEvent *event)
{
    Button::focusInEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason)
        m_reached = true;
    else if (!m_reached)
        clearFocus();
}

void StandardWindowButton::focusOutEvent(QFocusEvent *event)
{
    Button::focusOutEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        m_reached = false;
}

void StandardWindowButton::drawRect(QPainter &painter, const QRectF &)
{
    const bool hovered = isMouseInGroup();
    drawWindowButtonFace(painter, widgetRect(bounds()),
        {
            .kind = m_kind,
            .coloured = isEnabled() && (hovered || isActiveWindow()),
            .symbol = isEnabled() && hovered,
            .pressed = isDown(),
            .focused = hasFocus(),
            .fullScreen = window()->isFullScreen(),
        });
}

std::unique_ptr<StandardWindowButton> standardWindowButton(WindowButton kind, WindowStyleMask forStyleMask)
{
    if (kind != WindowButton::Close && kind != WindowButton::Miniaturize && kind != WindowButton::Zoom)
        return nullptr;
    return std::make_unique<StandardWindowButton>(kind, forStyleMask);
}

} // namespace kx
