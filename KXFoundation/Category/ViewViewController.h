// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

namespace kx {

class ViewController;
class ViewInterface;

/// The nearest view controller above the view in its responder chain, borrowed; null without one, and for null. Main
/// thread only.
[[nodiscard]] KX_UI_EXPORT ViewController *viewController(const ViewInterface *view);

} // namespace kx
