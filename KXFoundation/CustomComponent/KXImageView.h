// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/ImageView.h>

#include <functional>

/// An image that reports hovers and presses. While the pointer is over it, the cursor is a pointing hand or an I-beam.
/// A hover is neither begun nor ended while the application shows a modal window. Main thread only.
class KX_UI_EXPORT KXImageView : public kx::ImageView {
    Q_OBJECT
    // Designer does not offer it: awakeFromNib() would undo it.
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged
            DESIGNABLE false)
    Q_PROPERTY(bool needIBeamCursor READ needIBeamCursor WRITE setNeedIBeamCursor NOTIFY needIBeamCursorChanged)

public:
    explicit KXImageView(QWidget *parent = nullptr);
    explicit KXImageView(const QRectF &frame, QWidget *parent = nullptr);
    ~KXImageView() override;

    /// The view interacts again.
    void awakeFromNib() override;

    /// False makes the view transparent to the mouse, and a press on it may move the window. True at first.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    /// Deliberate: only stores; the tracking area follows at its next update.
    void setUserInteraction(bool interacts);
    /// Whether the cursor is an I-beam instead of a pointing hand.
    [[nodiscard]] bool needIBeamCursor() const { return m_needIBeamCursor; }
    void setNeedIBeamCursor(bool needed);

    /// Called at each press, not at its release; empty for none.
    [[nodiscard]] std::function<void()> imageViewClick() const { return m_imageViewClick; }
    void setImageViewClick(const std::function<void()> &click) { m_imageViewClick = click; }
    /// Called with the new state when a hover begins or ends; empty for none.
    void setHoverStateListener(const std::function<void(bool)> &listener) { m_hoverStateListener = listener; }

    /// While somebody hears of clicks and the mouse may click as well.
    [[nodiscard]] bool isPressable() const override;
    void press() override;

    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;
    [[nodiscard]] bool mouseDownCanMoveWindow() const override;
    void mouseDown(kx::Event *event) override;
    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void cursorUpdate(kx::Event *event) override;
    void updateTrackingAreas() override;

Q_SIGNALS:
    void userInteractionChanged(bool interacts);
    void needIBeamCursorChanged(bool needed);
    /// After imageViewClick() was called.
    void clicked();
    /// After the listener was called.
    void hoverStateChanged(bool hovered);

private:
    void setHovered(bool hovered);

    std::function<void()> m_imageViewClick;
    std::function<void(bool)> m_hoverStateListener;
    kx::TrackingAreaRef m_trackingArea;
    bool m_userInteraction = true;
    bool m_needIBeamCursor = false;
    bool m_hovered = false;
};
