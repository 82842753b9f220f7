// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtGui/QIcon>

namespace kx {

// Images as QIcons: what forms and their editors know. Main thread only.

/// The image with one pixel per point and with those of the sharpest screen. None gives a null icon.
[[nodiscard]] KX_UI_EXPORT QIcon iconFromImage(const Image &image);
/// An image of the icon's smallest size in points, with all of its sizes as representations. An icon that has none of
/// its own, such as a scalable one, gives 32 x 32 points. A null icon gives none.
[[nodiscard]] KX_UI_EXPORT Image imageFromIcon(const QIcon &icon);

} // namespace kx
