// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>

#include <QtGui/QImage>

namespace kx {

/// The image with a colour laid on its opaque parts: alpha stays, and the colour covers as much of a pixel as the
/// pixel and the colour itself are opaque. Premultiplied, 32 bits a pixel; null for a null image or out of memory.
[[nodiscard]] QImage tintedPixels(const QImage &image, const Color &color);

/// The image with this opacity, from 0 to 1, in 255 steps; what is no number counts as 0. In the format of
/// tintedPixels().
[[nodiscard]] QImage fadedPixels(const QImage &image, double opacity);

} // namespace kx
