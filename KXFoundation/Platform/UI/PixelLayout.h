// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtGui/QColorSpace>
#include <QtGui/QImage>

namespace kx {

/// How pixels lie in a buffer: rows from the top, each of pixels from the left, samples side by side within a pixel.
struct KX_UI_EXPORT PixelLayout {
    int pixelWidth = 0;
    int pixelHeight = 0;
    int bitsPerSample = 0;
    int samplesPerPixel = 0; ///< alpha counts as a sample
    bool hasAlpha = false;
    int bitsPerPixel = 0;
    qint64 bytesPerRow = 0; ///< from the start of a row to that of the next
    /// The order and meaning of the samples where Qt has a name for it. Format_Invalid stands for gray or red, green,
    /// blue, with premultiplied alpha last; see resolvedFormat().
    QImage::Format format = QImage::Format_Invalid;
    QColorSpace colorSpace; ///< invalid: the device's

    /// Whether a buffer can lie like this: positive sizes, samples that fit into pixels, pixels that fit into rows, a
    /// format that there is, of as many bits as the pixels, and a buffer whose length can be counted.
    [[nodiscard]] bool isValid() const;
    /// The format by which Qt can read such pixels; Format_Invalid when it cannot, as for formats whose pixels count
    /// colours of a table, which a layout has not.
    [[nodiscard]] QImage::Format resolvedFormat() const;
    /// pixelWidth * pixelHeight * bitsPerPixel / 8: what lies in the rows without what may stand between them.
    [[nodiscard]] qint64 pixelBytes() const;

    bool operator==(const PixelLayout &other) const = default;
};

} // namespace kx
