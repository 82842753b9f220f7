// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtilImage.h>

#include <KXFoundation/Platform/UI/ImageFiles/ImageFile.h>

bool KXUtil::saveImageToFile(const QImage &image, const QString &path)
{
    return kx::saveImageFile(image, path);
}
