// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Button.h>
#include <KXFoundation/Platform/UI/WindowStyle.h>

#include <memory>

namespace kx {

/// The numbers are part of the interface.
enum class WindowButton { Close = 0, Miniaturize = 1, Zoom = 2 };

/// One of the three round buttons of a window, drawn by the library: 14 x 16 logical pixels, wherever it is put. It
/// acts on the top-level widget that it is in: closes it, minimises it, or takes it into full screen and back. An
/// action that the application gives it is performed before that. A title or image is not drawn.
///
/// Coloured while its window is the active one or the pointer is over the group, grey otherwise and when disabled. The
/// symbol shows while the pointer is over the group, which a superview that is a StandardWindowButtonGroup answers; in
/// another superview the button is its own group. Tab reaches it, and the space bar and assistive technology press it.
class KX_UI_EXPORT StandardWindowButton : public Button {
    Q_OBJECT

public:
    /// Disabled when the style does not let the user do what the button is for.
    StandardWindowButton(WindowButton kind, WindowStyleMask styleMask, QWidget *parent = nullptr);
    ~StandardWindowButton() override;

    [[nodiscard]] WindowButton kind() const { return m_kind; }

    /// What it does to its window.
    [[nodiscard]] QString spokenName() const override;
    [[nodiscard]] QSizeF intrinsicContentSize() const override;

protected:
    bool event(QEvent *event) override;
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;
    void drawFocusRing(QPainter &painter) override;

private:
    void act();
    [[nodiscard]] bool isMouseInGroup() const;

    WindowButton m_kind;
};

/// A new button, with its size, and without a superview; null for a kind that there is not.
[[nodiscard]] KX_UI_EXPORT std::unique_ptr<StandardWindowButton> standardWindowButton(
    WindowButton kind, WindowStyleMask forStyleMask);

} // namespace kx
