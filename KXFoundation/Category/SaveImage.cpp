// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/SaveImage.h>

#include <KXFoundation/Platform/UI/ImageFiles/ImageFile.h>

bool kx::saveCGImageToFile(const QImage &image, const QString &path)
{
    return saveImageFile(image, path);
}
