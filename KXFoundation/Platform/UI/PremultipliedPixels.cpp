// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PremultipliedPixels.h>

#include <KXFoundation/Platform/UI/PixelMix.h>

#include <QtGui/QColorSpace>
#include <QtGui/QRgb>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kx {

namespace {

QImage mixed(const QImage &image, QRgb color, unsigned keep)
{
    static const PixelMix mix = avx2PixelMix() ? avx2PixelMix() : mixPixels;
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage result(pixels.size(), pixels.format());
    if (result.isNull())
        return {};
    result.setDevicePixelRatio(pixels.devicePixelRatio());
    result.setColorSpace(pixels.colorSpace());
    for (int row = 0; row < pixels.height(); ++row) {
        mix(reinterpret_cast<const std::uint32_t *>(pixels.constScanLine(row)),
            reinterpret_cast<std::uint32_t *>(result.scanLine(row)), std::size_t(pixels.width()), color,
            static_cast<std::uint8_t>(keep));
    }
    return result;
}

unsigned toByte(double component)
{
    return std::isnan(component) ? 0 : unsigned(std::lround(std::clamp(component, 0.0, 1.0) * 255));
}

QRgb premultiplied(const Color &color)
{
    const double alpha = std::clamp(color.alphaComponent(), 0.0, 1.0);
    const auto channel = [alpha](double component) { return toByte(std::clamp(component, 0.0, 1.0) * alpha); };
    return toByte(alpha) << 24 | channel(color.redComponent()) << 16 | channel(color.greenComponent()) << 8
        | channel(color.blueComponent());
}

} // namespace

QImage tintedPixels(const QImage &image, const Color &color)
{
    const QRgb paint = premultiplied(color);
    return mixed(image, paint, 255 - unsigned(qAlpha(paint)));
}

QImage fadedPixels(const QImage &image, double opacity)
{
    return mixed(image, 0, toByte(opacity));
}

} // namespace kx
