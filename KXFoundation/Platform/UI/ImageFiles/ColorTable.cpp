// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/ColorTable.h>

#include <QtCore/QHash>

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <vector>

namespace kx {

namespace {

constexpr qsizetype largestTable = 256;
constexpr QRgb transparent = 0;

// What becomes of a pixel: an opaque colour, or the transparent one.
QRgb solid(QRgb pixel)
{
    const int alpha = qAlpha(pixel);
    if (alpha == 255)
        return pixel;
    if (alpha < 128)
        return transparent;
    const auto onWhite = [alpha](int channel) { return (channel * alpha + 255 * (255 - alpha) + 127) / 255; };
    return qRgb(onWhite(qRed(pixel)), onWhite(qGreen(pixel)), onWhite(qBlue(pixel)));
}

// Calls the visitor with each pixel until it returns false.
template <class Visit> bool forEachPixel(const QImage &image, const Visit &visit)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto *const row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (!std::all_of(row, row + image.width(), [&](QRgb pixel) { return visit(solid(pixel)); }))
            return false;
    }
    return true;
}

template <class IndexOf> QImage indexed(const QImage &image, const QList<QRgb> &table, const IndexOf &indexOf)
{
    QImage result(image.size(), QImage::Format_Indexed8);
    if (result.isNull())
        return {};
    result.setColorTable(table);
    for (int y = 0; y < image.height(); ++y) {
        const auto *const row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        std::transform(row, row + image.width(), result.scanLine(y), [&](QRgb pixel) { return indexOf(solid(pixel)); });
    }
    return result;
}

// The colours in their order of appearance, with the transparent one first; none when there are too many.
std::optional<QList<QRgb>> distinctColors(const QImage &image)
{
    QHash<QRgb, bool> seen;
    QList<QRgb> colors;
    QRgb last = 1; // no pixel's
    const bool areFew = forEachPixel(image, [&](QRgb color) {
        if (color == last || seen.contains(color))
            return true;
        last = color;
        seen.insert(color, true);
        colors.insert(color == transparent ? 0 : colors.size(), color);
        return colors.size() <= largestTable;
    });
    return areFew ? std::optional(colors) : std::nullopt;
}

// A cell of the colour space: colours that have the first six bits of each channel in common.
using Cell = quint32;
constexpr int bitsPerChannel = 6;
constexpr std::size_t cellCount = std::size_t(1) << (3 * bitsPerChannel);

Cell cellOf(QRgb color)
{
    constexpr int dropped = 8 - bitsPerChannel;
    return Cell(qRed(color) >> dropped) << (2 * bitsPerChannel) | Cell(qGreen(color) >> dropped) << bitsPerChannel
        | Cell(qBlue(color) >> dropped);
}

// 0 is red, 1 green, 2 blue.
int coordinate(Cell cell, int axis)
{
    return int(cell >> (bitsPerChannel * (2 - axis)) & ((1U << bitsPerChannel) - 1));
}

// The pixels in a cell or box.
struct Sum {
    quint64 count = 0;
    quint64 red = 0;
    quint64 green = 0;
    quint64 blue = 0;

    void add(QRgb color) { *this += {1, quint64(qRed(color)), quint64(qGreen(color)), quint64(qBlue(color))}; }
    void operator+=(const Sum &other)
    {
        count += other.count;
        red += other.red;
        green += other.green;
        blue += other.blue;
    }
    [[nodiscard]] QRgb mean() const
    {
        const auto channel = [this](quint64 sum) { return int((sum + count / 2) / count); };
        return qRgb(channel(red), channel(green), channel(blue));
    }
};

using Histogram = std::vector<Sum>; // by cell

struct Box {
    using Cells = std::vector<Cell>::iterator;

    Cells begin;
    Cells end;
    Sum sum;
    int longestAxis = 0;
    int length = 0; // along that axis; 0 in a box of one cell

    Box(Cells from, Cells to, const Histogram &histogram)
        : begin(from)
        , end(to)
    {
        sum = std::accumulate(begin, end, Sum(), [&](Sum all, Cell cell) {
            all += histogram[cell];
            return all;
        });
        for (int axis = 0; axis < 3; ++axis) {
            const auto less = [axis](Cell a, Cell b) { return coordinate(a, axis) < coordinate(b, axis); };
            const auto [least, most] = std::minmax_element(begin, end, less);
            const int side = coordinate(*most, axis) - coordinate(*least, axis);
            if (side > length) {
                longestAxis = axis;
                length = side;
            }
        }
    }

    // The square keeps a rare color from vanishing in a crowd.
    [[nodiscard]] quint64 urgency() const { return sum.count * quint64(length) * quint64(length); }

    // Leaves the half of the pixels with the lower coordinates here and returns the others. Needs a length.
    Box cut(const Histogram &histogram)
    {
        std::sort(
            begin, end, [this](Cell a, Cell b) { return coordinate(a, longestAxis) < coordinate(b, longestAxis); });
        auto middle = begin;
        quint64 below = 0;
        do {
            below += histogram[*middle].count;
            ++middle;
        } while (middle + 1 != end && below < sum.count / 2);
        Box upper(middle, end, histogram);
        *this = Box(begin, middle, histogram);
        return upper;
    }
};

QImage reduced(const QImage &image)
{
    Histogram histogram(cellCount);
    bool hasTransparent = false;
    forEachPixel(image, [&](QRgb color) {
        if (color == transparent)
            hasTransparent = true;
        else
            histogram[cellOf(color)].add(color);
        return true;
    });

    std::vector<Cell> cells;
    for (Cell cell = 0; cell < cellCount; ++cell) {
        if (histogram[cell].count > 0)
            cells.push_back(cell);
    }
    QList<QRgb> table;
    if (hasTransparent)
        table.append(transparent);
    const auto largest = std::size_t(largestTable - table.size());
    std::vector<Box> boxes{Box(cells.begin(), cells.end(), histogram)};
    while (boxes.size() < largest) {
        const auto next = std::max_element(
            boxes.begin(), boxes.end(), [](const Box &a, const Box &b) { return a.urgency() < b.urgency(); });
        if (next->length == 0)
            break;
        boxes.push_back(next->cut(histogram));
    }

    std::vector<uchar> indexOfCell(cellCount);
    for (const Box &box : boxes) {
        std::for_each(box.begin, box.end, [&](Cell cell) { indexOfCell[cell] = static_cast<uchar>(table.size()); });
        table.append(box.sum.mean());
    }
    return indexed(
        image, table, [&](QRgb color) { return color == transparent ? uchar(0) : indexOfCell[cellOf(color)]; });
}

} // namespace

QImage withColorTable(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    if (pixels.isNull())
        return {};
    const std::optional<QList<QRgb>> colors = distinctColors(pixels);
    if (!colors)
        return reduced(pixels);
    QHash<QRgb, uchar> indexes;
    for (qsizetype i = 0; i < colors->size(); ++i)
        indexes.insert(colors->at(i), static_cast<uchar>(i));
    return indexed(pixels, *colors, [&](QRgb color) { return indexes.value(color); });
}

} // namespace kx
