// SPDX-License-Identifier: MIT
#pragma once

class QIODevice;
class QImage;

namespace kx {

/// Writes the image as a TIFF 6.0 file of one picture: grey, RGB or RGB with alpha (not premultiplied), in 8 or 16 bits
/// as the image has them, compressed with Deflate. The device must be able to seek. False when the file would be larger
/// than its 32-bit offsets reach, or the device takes no more.
[[nodiscard]] bool writeTiff(const QImage &image, QIODevice &device);

} // namespace kx
