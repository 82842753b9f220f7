// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRectF>

class QEvent;
class QPainter;
class QPalette;
class QWidget;

namespace kx {

/// How a control that Tab reaches keeps its focus: with a ring around it when the keyboard brought the focus, without
/// one otherwise, and never just because its window became active, where Qt would give the focus to the first such
/// control. A focus that it had before, or that the application gave it, comes back with the window.
class KeyboardFocus {
public:
    /// To be called with each event of the control before anything else sees it. True for one that nothing else is to
    /// see: a focus that was given up at once.
    [[nodiscard]] bool refuses(QWidget &control, const QEvent &event);
    /// To be called when a key has moved the focus from one part of the control to another.
    void wasMovedWithin() { m_byKeyboard = true; }
    /// Whether the control has the focus and the keyboard brought it.
    [[nodiscard]] bool isShown(const QWidget &control) const;

private:
    bool m_byKeyboard = false;
    bool m_isWindowsOwn = false; // the control had its window's focus when that became active
};

/// Draws the ring along the inside of an area, in the painter's coordinates: in the palette's highlight colour, with a
/// line of that colour's text within, so that one of them stands out from any ground.
void drawFocusRing(QPainter &painter, const QPalette &palette, const QRectF &area, double radius = 4);

} // namespace kx
