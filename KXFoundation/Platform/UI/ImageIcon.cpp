// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageIcon.h>

#include <KXFoundation/Platform/UI/ScreenScale.h>

#include <QtGui/QPixmap>

#include <algorithm>

namespace kx {

namespace {

constexpr QSize scalableSize(32, 32); // in points

Image imageOf(const QIcon &icon)
{
    if (icon.isNull())
        return {};
    QList<QSize> sizes = icon.availableSizes();
    if (sizes.isEmpty())
        return icon.pixmap(scalableSize, largestScreenScale());
    const auto isNarrower = [](const QSize &a, const QSize &b) { return a.width() < b.width(); };
    std::sort(sizes.begin(), sizes.end(), isNarrower);
    QList<Bitmap> bitmaps;
    for (const QSize &size : sizes)
        bitmaps << Bitmap(icon.pixmap(size, 1.0).toImage(), sizes.first());
    return Image::withRepresentations(sizes.first(), bitmaps);
}

} // namespace

QIcon iconFromImage(const Image &image)
{
    QIcon icon;
    const auto add = [&](double scale) {
        QImage pixels = image.toQImage(scale);
        if (pixels.isNull())
            return;
        pixels.setDevicePixelRatio(1);
        icon.addPixmap(QPixmap::fromImage(pixels));
    };
    add(1);
    if (const double sharpest = largestScreenScale(); sharpest > 1)
        add(sharpest);
    return icon;
}

Image::Image(const QIcon &icon)
    : Image(imageOf(icon))
{
}

} // namespace kx
