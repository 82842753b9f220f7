// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QString>
#include <QtGui/QImage>

namespace KXUtil {

/// Writes an image to a file whose extension says as what: see kx::saveCGImageToFile(), which does the same.
KX_UI_EXPORT bool saveImageToFile(const QImage &image, const QString &path);

} // namespace KXUtil
