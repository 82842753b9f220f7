// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtCore/QString>

#include <functional>

namespace kx::test {

/// JPEG files of all kinds, made row by row by libjpeg.
struct JpegKind {
    enum Colors { Grey, YCbCr, Rgb, Cmyk, Ycck };
    Colors colors = YCbCr;
    int quality = 85;
    bool isSubsampled = true; ///< the second and third component in half the width and height
    bool isProgressive = false;
    int scans = 0; ///< of a progressive Grey one, 1 to 127; 0 for the usual ten
    bool isArithmetic = false;
    int restartInterval = 0; ///< in MCU rows; 0 for none
    QByteArray exif = {}; ///< after "Exif\\0\\0"; none when empty
};

/// Fills in one row: 1 byte a pixel for Grey, 4 (each 255 for no ink) for Cmyk and Ycck, else 3.
using JpegRow = std::function<void(int y, uchar *row)>;

/// A row of slowly changing colors, for any kind.
[[nodiscard]] JpegRow smoothRow(const QSize &size, const JpegKind &kind);

/// The whole file; empty when libjpeg cannot write it.
[[nodiscard]] QByteArray jpegBytes(const QSize &size, const JpegKind &kind, const JpegRow &row);
/// The same to a file, without keeping it in memory.
[[nodiscard]] bool writeJpegFile(const QString &path, const QSize &size, const JpegKind &kind, const JpegRow &row);

} // namespace kx::test
