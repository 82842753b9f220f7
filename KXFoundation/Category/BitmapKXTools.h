// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QRectF>

namespace kx {

/// Cuts pixels out of a bitmap, byte by byte and without resampling, in the same layout. Any thread.
///
/// `rect` is in points, and counts from the top: rows as they lie in the buffer. One point is as many whole pixels as
/// the bitmap's pixel width holds of its width in points (a bitmap of 1.5 pixels per point is cut by 1); parts of
/// pixels are dropped. What lies outside the bitmap is left out, yet the image has the size of `rect` as given, over
/// which its pixels extend when it is drawn.
///
/// None when `rect` misses the bitmap or is not positive and finite, for less than a pixel, for pixels that are no
/// whole bytes, and for a buffer too short for the part. Deliberate: the buffer counts without the padding of its
/// rows, so parts near the bottom of a padded one give none. (Bitmaps made of a QImage have no padding.)
[[nodiscard]] KX_UI_EXPORT Image imageFromRect(const Bitmap &bitmap, const QRectF &rect);

} // namespace kx
