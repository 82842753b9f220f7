// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QFlags>
#include <QtCore/QRectF>
#include <QtCore/QVariant>

#include <memory>

namespace kx {

class ViewInterface;

/// What a tracking area reports and when. The numbers are part of the interface: 0x347 is the common set of a control.
enum class TrackingOption {
    MouseEnteredAndExited = 0x1,
    MouseMoved = 0x2,
    CursorUpdate = 0x4,
    ActiveWhenFirstResponder = 0x10,
    ActiveInKeyWindow = 0x20,
    ActiveInActiveApp = 0x40,
    ActiveAlways = 0x80,
    /// The pointer counts as inside when the area is added: no "entered" until it has been outside.
    AssumeInside = 0x100,
    /// The area is the visible part of the view, whatever rectangle was given.
    InVisibleRect = 0x200,
    /// "Entered" and "exited" also while a button is down; other areas catch up after the release.
    EnabledDuringMouseDrag = 0x400,
};
Q_DECLARE_FLAGS(TrackingOptions, TrackingOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(TrackingOptions)

/// A rectangle of a view that follows the pointer and tells its owner, a view, through mouseEntered(), mouseExited(),
/// mouseMoved() and cursorUpdate(). Made once and never changed; the view that it is added to shares it.
class KX_UI_EXPORT TrackingArea {
public:
    /// `rect` counts in the coordinates of the view that the area is added to. `owner` is borrowed and must outlive
    /// the area's stay in that view, unless it is that view.
    TrackingArea(const QRectF &rect, TrackingOptions options, ViewInterface *owner, const QVariant &userInfo = {});

    [[nodiscard]] QRectF rect() const { return m_rect; }
    [[nodiscard]] TrackingOptions options() const { return m_options; }
    [[nodiscard]] ViewInterface *owner() const { return m_owner; }
    [[nodiscard]] QVariant userInfo() const { return m_userInfo; }

private:
    QRectF m_rect;
    TrackingOptions m_options;
    ViewInterface *m_owner;
    QVariant m_userInfo;
};

using TrackingAreaRef = std::shared_ptr<const TrackingArea>;

} // namespace kx
