// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <QtGui/QImage>

namespace kx {

enum class ImageFileType { Png, Jpeg, Tiff, Bmp, Gif, Pdf };

/// What the extension of the path asks for, in any case: "jpg" and "jpeg", "png", "tiff", "bmp", "gif", "pdf".
/// Deliberate: everything else is PNG, "tif" and no extension too.
[[nodiscard]] ImageFileType imageFileType(const QString &path);

/// The image without translucent pixels: what shines through is white. An opaque image comes back as it is.
[[nodiscard]] QImage onWhite(const QImage &image);

/// Writes the image's pixels in the type that the path's extension asks for. The file appears whole or not at all, in
/// the place of one that is there. False when it cannot be created: no such folder or none that may be written, a file
/// that may not be written, something else than a file in the way, no name, or JPEG where Qt's plugin for it is
/// missing.
///
/// Deliberate: true says no more than that. When the image is none or too large for the type, or the disk is full,
/// nothing has been written and an earlier file is still there. Callable from any thread.
bool saveImageFile(const QImage &image, const QString &path);

} // namespace kx
