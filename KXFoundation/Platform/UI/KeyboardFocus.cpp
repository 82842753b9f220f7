// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/KeyboardFocus.h>

#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

namespace kx {

namespace {

bool isOfKeyboard(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

// Whether a focus that leaves for this reason is lent, and comes back for the same one.
bool isForAWhile(Qt::FocusReason reason)
{
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
}

} // namespace

bool KeyboardFocus::refuses(QWidget &control, const QEvent &event)
{
    if (event.type() == QEvent::WindowActivate)
        m_isWindowsOwn = control.window()->focusWidget() == &control; // Qt chooses one afterwards
    if (event.type() != QEvent::FocusIn && event.type() != QEvent::FocusOut)
        return false;
    const Qt::FocusReason reason = static_cast<const QFocusEvent &>(event).reason();
    if (!isForAWhile(reason))
        m_byKeyboard = event.type() == QEvent::FocusIn && isOfKeyboard(reason);
    if (event.type() == QEvent::FocusOut || reason != Qt::ActiveWindowFocusReason || m_isWindowsOwn)
        return false;
    control.clearFocus();
    return true;
}

bool KeyboardFocus::isShown(const QWidget &control) const
{
    return m_byKeyboard && control.hasFocus();
}

void drawFocusRing(QPainter &painter, const QPalette &palette, const QRectF &area, double radius)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const auto drawLine = [&](QColor color, double alpha, double width, double inset) {
        const double middle = inset + width / 2;
        color.setAlphaF(static_cast<float>(alpha));
        painter.setPen(QPen(color, width));
        painter.drawRoundedRect(area.adjusted(middle, middle, -middle, -middle), radius - middle, radius - middle);
    };
    drawLine(palette.color(QPalette::Active, QPalette::Highlight), 1, 2, 0);
    drawLine(palette.color(QPalette::Active, QPalette::HighlightedText), 0.6, 1, 2);
    painter.restore();
}

} // namespace kx
