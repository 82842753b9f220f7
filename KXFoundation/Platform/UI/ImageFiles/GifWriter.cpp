// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/GifWriter.h>

#include <KXFoundation/Platform/UI/ImageFiles/ColorTable.h>

#include <QtCore/QIODevice>
#include <QtGui/QImage>

#include <array>
#include <limits>
#include <memory>

#include <gif_lib.h>

namespace kx {

namespace {

int writeToDevice(GifFileType *gif, const GifByteType *bytes, int size)
{
    const qint64 written = static_cast<QIODevice *>(gif->UserData)->write(reinterpret_cast<const char *>(bytes), size);
    return int(written);
}

using ColorMap = std::unique_ptr<ColorMapObject, decltype(&GifFreeMapObject)>;

// A colour map has 2 to 256 colours, a power of two.
ColorMap colorMap(const QList<QRgb> &colors)
{
    ColorMap map(GifMakeMapObject(1 << GifBitSize(int(colors.size())), nullptr), &GifFreeMapObject);
    for (qsizetype i = 0; map && i < colors.size(); ++i) {
        map->Colors[i] = {static_cast<GifByteType>(qRed(colors[i])), static_cast<GifByteType>(qGreen(colors[i])),
            static_cast<GifByteType>(qBlue(colors[i]))};
    }
    return map;
}

bool putTransparentColor(GifFileType *gif, int index)
{
    const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, index};
    std::array<GifByteType, 4> block{};
    const std::size_t size = EGifGCBToExtension(&control, block.data());
    return EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, int(size), block.data()) == GIF_OK;
}

bool putImage(GifFileType *gif, QImage &image)
{
    const QList<QRgb> colors = image.colorTable();
    const ColorMap map = colorMap(colors);
    const bool hasTransparentColor = !colors.isEmpty() && qAlpha(colors.first()) == 0;
    EGifSetGifVersion(gif, true); // "89a", for the transparent colour
    if (!map || EGifPutScreenDesc(gif, image.width(), image.height(), 8, 0, map.get()) != GIF_OK
        || (hasTransparentColor && !putTransparentColor(gif, 0))
        || EGifPutImageDesc(gif, 0, 0, image.width(), image.height(), false, nullptr) != GIF_OK)
        return false;
    for (int y = 0; y < image.height(); ++y) {
        if (EGifPutLine(gif, image.scanLine(y), image.width()) != GIF_OK)
            return false;
    }
    return true;
}

} // namespace

bool writeGif(const QImage &image, QIODevice &device)
{
    constexpr int largestSide = std::numeric_limits<quint16>::max();
    if (image.width() > largestSide || image.height() > largestSide)
        return false;
    QImage indexed = withColorTable(image);
    if (indexed.isNull())
        return false;
    int error = 0;
    GifFileType *const gif = EGifOpen(&device, writeToDevice, &error);
    if (!gif)
        return false;
    const bool isPut = putImage(gif, indexed);
    // Writes the end of the file.
    return EGifCloseFile(gif, &error) == GIF_OK && isPut;
}

} // namespace kx
