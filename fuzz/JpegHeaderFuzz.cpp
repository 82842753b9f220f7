// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/Platform/UI/ImageFiles/JpegDecoder.h>

#include <QtCore/QBuffer>

using kx::fuzz::check;

namespace {

// Width and height in the first frame header; invalid without one.
QSize headerSize(const std::uint8_t *data, std::size_t size)
{
    const auto number = [&](std::size_t at) { return at + 1 < size ? data[at] << 8 | data[at + 1] : 0; };
    for (std::size_t at = 2; at + 1 < size;) {
        if (data[at] != 0xFF || data[at + 1] == 0xFF || data[at + 1] <= 1 || (data[at + 1] & 0xF8) == 0xD0) {
            ++at; // garbage, filling or a marker without a segment
        } else if ((data[at + 1] & 0xF0) == 0xC0 && data[at + 1] != 0xC4 && data[at + 1] != 0xCC) {
            return {number(at + 7), number(at + 5)};
        } else {
            at += 2 + std::size_t(qMax(number(at + 2), 2));
        }
    }
    return {};
}

} // namespace

// Any bytes as a JPEG file.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr qint64 memoryLimit = 1 << 18;
    QBuffer buffer;
    buffer.setData(reinterpret_cast<const char *>(data), int(size));
    buffer.open(QIODevice::ReadOnly);
    const QImage image = kx::decodeJpeg(buffer, memoryLimit);
    if (image.isNull())
        return 0;
    check(image.size() == headerSize(data, size), "the size is the header's");
    check(image.sizeInBytes() <= memoryLimit, "the memory is limited");
    for (int y = 0; y < image.height() && image.format() == QImage::Format_RGB32; ++y)
        check(qAlpha(image.pixel(image.width() - 1, y)) == 255, "the rows are there, and opaque");
    return 0;
}
