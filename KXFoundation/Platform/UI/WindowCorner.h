// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/StandardWindowButtonGroup.h>
#include <KXFoundation/Platform/UI/View.h>

namespace kx {

/// The top left corner of a window that has no decorations: 80 x 35, above the content, with the three buttons of the
/// window side by side. Elsewhere in it the pointer reaches what is beneath.
class WindowCorner : public View, public StandardWindowButtonGroup {
    Q_OBJECT

public:
    WindowCorner(QWidget &window, WindowStyleMask styleMask);

    /// Null for a kind that there is not, and for a button that was deleted.
    [[nodiscard]] StandardWindowButton *button(WindowButton kind) const;

    [[nodiscard]] bool _mouseInGroup(const StandardWindowButton *button) const override;
    [[nodiscard]] ViewInterface *hitTest(const QPointF &point) override;
    void updateTrackingAreas() override;
    void mouseEntered(Event *event) override;
    void mouseExited(Event *event) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setMouseInside(bool inside);

    bool m_mouseInside = false;
};

} // namespace kx
