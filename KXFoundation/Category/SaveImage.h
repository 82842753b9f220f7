// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QString>
#include <QtGui/QImage>

namespace kx {

/// Writes the image's pixels to a file, in place of one that is there; the extension of the path in any case says as
/// what: "jpg" and "jpeg" (half the full quality), "png", "tiff", "bmp", "gif", "pdf" (one page, a pixel being a
/// point). Deliberate: everything else is written as PNG, "tif" and no extension too. PNG, TIFF and PDF keep
/// translucency; the others show white behind it, save that pixels of less than half the full alpha are transparent in
/// a GIF.
///
/// False when the file cannot be created: no such folder or none that may be written, something else than a writable
/// file in the way, no name, or a JPEG file where Qt's plugin for JPEG is missing.
///
/// Deliberate: true says no more than that. Where the image is null or too large for the type, or the disk is full, no
/// file has been written, and an earlier one is still there, whole. Callable from any thread.
KX_UI_EXPORT bool saveCGImageToFile(const QImage &image, const QString &path);

} // namespace kx
