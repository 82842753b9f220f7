// SPDX-License-Identifier: MIT
#pragma once

class PlayerWindow;

/// The commands that pages, titles and other programs may give the player by URL:
///
/// | URL                                | does                                             |
/// |------------------------------------|--------------------------------------------------|
/// | `kx://action.cmd/play?id=2`        | plays a clip from its beginning                  |
/// | `kx://action.cmd/next`             | plays the next one                               |
/// | `kx://action.cmd/seek?to=12.5`     | goes to a second of it                           |
/// | `kx://action.cmd/tag?name=short`   | lists the clips with a tag; all for an empty one |
namespace PlayerActions {

/// The window is held weakly.
void registerFor(PlayerWindow &window);

} // namespace PlayerActions
