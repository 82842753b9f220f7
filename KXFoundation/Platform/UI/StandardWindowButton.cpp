// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/StandardWindowButton.h>

#include <KXFoundation/Platform/UI/KeyboardFocus.h>
#include <KXFoundation/Platform/UI/StandardWindowButtonGroup.h>
#include <KXFoundation/Platform/UI/WindowButtonFace.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>

namespace kx {

StandardWindowButton::StandardWindowButton(WindowButton kind, WindowStyleMask styleMask, QWidget *parent)
    : Button(parent)
    , m_kind(kind)
{
    switch (kind) {
    case WindowButton::Close: setEnabled(styleMask.testFlag(WindowStyle::Closable)); break;
    case WindowButton::Miniaturize: setEnabled(styleMask.testFlag(WindowStyle::Miniaturizable)); break;
    case WindowButton::Zoom: setEnabled(styleMask.testFlag(WindowStyle::Resizable)); break;
    }
    setAttribute(Qt::WA_Hover); // repainted when the pointer comes and goes
    resize(sizeHint());
    connect(this, &QAbstractButton::clicked, this, &StandardWindowButton::act);
}

StandardWindowButton::~StandardWindowButton() = default;

QString StandardWindowButton::spokenName() const
{
    switch (m_kind) {
    case WindowButton::Close: return tr("Close");
    case WindowButton::Miniaturize: return tr("Minimize");
    case WindowButton::Zoom: break;
    }
    return window()->isFullScreen() ? tr("Exit full screen") : tr("Full screen");
}

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

void StandardWindowButton::drawRect(QPainter &painter, const QRectF &)
{
    const bool hovered = isMouseInGroup();
    drawWindowButtonFace(painter, widgetRect(bounds()),
        {
            .kind = m_kind,
            .coloured = isEnabled() && (hovered || isActiveWindow()),
            .symbol = isEnabled() && hovered,
            .pressed = isDown(),
            .fullScreen = window()->isFullScreen(),
        });
}

void StandardWindowButton::drawFocusRing(QPainter &painter)
{
    const QRectF area = widgetRect(bounds());
    constexpr double radius = 7;
    const QPointF reach(radius, radius);
    kx::drawFocusRing(painter, palette(), {area.center() - reach, area.center() + reach}, radius);
}

std::unique_ptr<StandardWindowButton> standardWindowButton(WindowButton kind, WindowStyleMask forStyleMask)
{
    if (kind != WindowButton::Close && kind != WindowButton::Miniaturize && kind != WindowButton::Zoom)
        return nullptr;
    return std::make_unique<StandardWindowButton>(kind, forStyleMask);
}

} // namespace kx
