// SPDX-License-Identifier: MIT
#pragma once

class QIODevice;
class QImage;

namespace kx {

/// Writes the image as one GIF frame in the colours that withColorTable() gives it. False when it is wider or higher
/// than 65,535 pixels, or the device takes no more.
[[nodiscard]] bool writeGif(const QImage &image, QIODevice &device);

} // namespace kx
