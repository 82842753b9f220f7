// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/BitmapKXTools.h>

#include <KXFoundation/Platform/UI/ImageDrawing.h>

#include <QtCore/QByteArray>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

namespace kx {

namespace {

// Without its fraction; none for what no bitmap has pixels for.
std::optional<int> truncated(double value)
{
    if (!(value >= 0 && value <= std::numeric_limits<int>::max()))
        return std::nullopt;
    return int(value);
}

// A part of one side, in points; empty when its length is not positive.
struct Span {
    double start;
    double length;
};

// Exactly the span itself where it lies inside.
Span cut(double start, double length, double whole)
{
    const double inside = std::max(start, 0.0);
    return {inside, std::min(length - (inside - start), whole - inside)};
}

} // namespace

Image imageFromRect(const Bitmap &bitmap, const QRectF &rect)
{
    const PixelLayout &layout = bitmap.layout();
    const QSizeF bounds = bitmap.size();
    if (!isDrawable(bounds) || !isDrawable(rect))
        return {};
    const Span across = cut(rect.x(), rect.width(), bounds.width());
    const Span down = cut(rect.y(), rect.height(), bounds.height());
    if (!(across.length > 0) || !(down.length > 0))
        return {};

    const std::optional<int> scale = truncated(layout.pixelWidth / bounds.width());
    if (!scale)
        return {};
    const std::optional<int> x = truncated(across.start * *scale);
    const std::optional<int> y = truncated(down.start * *scale);
    const std::optional<int> width = truncated(across.length * *scale);
    const std::optional<int> height = truncated(down.length * *scale);
    // Rows below the last one would fail the test of the buffer; asked first, its numbers cannot overflow.
    if (!x || !y || !width || !height || *height > layout.pixelHeight - *y || *width > layout.pixelWidth - *x)
        return {};

    PixelLayout part = layout;
    part.pixelWidth = *width;
    part.pixelHeight = *height;
    part.bytesPerRow = qint64(layout.bitsPerPixel / 8) * *width;
    if (!part.isValid())
        return {};
    const qint64 start = *y * layout.bytesPerRow + qint64(*x) * layout.bitsPerPixel / 8;
    const qint64 end = start + (*height - 1) * layout.bytesPerRow + part.bytesPerRow;
    if (end > std::min(layout.pixelBytes(), bitmap.dataSize()))
        return {};

    QByteArray bytes(part.bytesPerRow * *height, Qt::Uninitialized);
    const uchar *from = bitmap.data() + start;
    char *to = bytes.data();
    for (int row = 0; row < *height; ++row, from += layout.bytesPerRow, to += part.bytesPerRow)
        std::memcpy(to, from, std::size_t(part.bytesPerRow));
    return Image::withRepresentations(rect.size(), {Bitmap::create(part, QSizeF(*width, *height), bytes)});
}

} // namespace kx
