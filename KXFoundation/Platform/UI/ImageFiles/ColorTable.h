// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QImage>

namespace kx {

/// The image in at most 256 colours (QImage::Format_Indexed8). Pixels of less than half the full alpha become
/// transparent, which is then the colour 0 of the table; other translucent ones stand on white. An image of few enough
/// colours keeps them exactly. For others they are chosen by median cut (Heckbert 1982): the colour space is cut into
/// boxes, long and full ones first, and each box becomes the mean of its pixels. There is no dithering. Null when there
/// is not enough memory.
[[nodiscard]] QImage withColorTable(const QImage &image);

} // namespace kx
