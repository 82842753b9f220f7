// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtGui/QIcon>

namespace kx {

/// The image with one pixel per point and with those of the sharpest screen, as forms and their editors want it. None
/// gives a null icon. Main thread only.
[[nodiscard]] KX_UI_EXPORT QIcon iconFromImage(const Image &image);

} // namespace kx
