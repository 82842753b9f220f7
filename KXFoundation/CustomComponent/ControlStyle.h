// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtCore/QPointer>

#include <functional>

/// What the image and text buttons have in common.
namespace kx::ControlStyle {

/// Mouse entered and exited, mouse moved, cursor update, in the active application, taken for inside, in the visible
/// rectangle.
inline constexpr TrackingOptions trackingOptions = TrackingOptions::fromInt(0x347);

/// The red of what is hovered.
[[nodiscard]] inline Color hoverColor()
{
    return Color::rgba(1.0, 46.0 / 255.0, 67.0 / 255.0, 1.0);
}

/// Takes the control's area away and, if wanted, puts a new one over its bounds in its place.
inline void replaceTrackingArea(ViewInterface &control, TrackingAreaRef &area, bool wanted)
{
    if (area)
        control.removeTrackingArea(area);
    area = wanted ? std::make_shared<TrackingArea>(control.bounds(), trackingOptions, &control) : nullptr;
    if (area)
        control.addTrackingArea(area);
}

/// Calls the listener, which may replace itself or delete the control, and then emits the signal.
template <class Control>
void tellHover(Control &control, const std::function<void(bool)> &listener, bool hovered, void (Control::*signal)(bool))
{
    const QPointer<Control> alive(&control);
    if (const auto call = listener)
        call(hovered);
    if (alive)
        Q_EMIT(control.*signal)(hovered);
}

} // namespace kx::ControlStyle
