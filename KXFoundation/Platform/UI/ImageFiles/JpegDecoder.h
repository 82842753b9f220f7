// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QtGlobal>
#include <QtGui/QImage>

class QIODevice;

namespace kx {

/// Decodes the JPEG picture that begins at the device's position, whole and once. Grey ones come as
/// QImage::Format_Grayscale8, all others as Format_RGB32; pixels stand as the file has them, whatever orientation or
/// colour profile it names. Baseline, progressive and arithmetic coding in 8 bits are read.
///
/// Null for anything that is no such file, and when the picture (4 bytes a pixel) together with what the decoding has
/// to keep would take more than `memoryLimitInBytes` (0 is no limit), which shows before that memory is taken.
/// Progressive files of more than 100 scans are refused: a small one could keep a processor busy for hours.
///
/// A file that breaks off, or is damaged, after the header of its first scan gives what can be made out; the rest is
/// flat. It is null only where libjpeg cannot go on, as when a progressive file breaks off between two scans' data.
///
/// Says nothing on standard error. Callable from any thread.
[[nodiscard]] QImage decodeJpeg(QIODevice &device, qint64 memoryLimitInBytes);

} // namespace kx
