// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/Image.h>

/// Artwork of the examples: painted on demand, sharp at every size.
namespace icons {

// 24 x 24.
[[nodiscard]] kx::Image play(const kx::Color &color);
[[nodiscard]] kx::Image pause(const kx::Color &color);
[[nodiscard]] kx::Image heart(const kx::Color &color);
[[nodiscard]] kx::Image speaker(const kx::Color &color, bool loud);
[[nodiscard]] kx::Image list(const kx::Color &color);

/// A square of this side that a disc fills.
[[nodiscard]] kx::Image disc(double side, const kx::Color &color);
/// A sunset, 96 x 54.
[[nodiscard]] kx::Image poster();

/// Gives the progress indicator its knobs: the images named "indicator" and "indicator_hover".
void registerIndicators();

} // namespace icons
