// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PremultipliedPixels.h>

#include <QtGui/QColorSpace>
#include <QtGui/QRgb>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace kx {

namespace {

// A vector of one or more pixels, and the same as 16-bit halves of them. Of a type that the compiler splits where the
// processor has no vectors.
constexpr int pixelsPerVector = 4;
using Pixels = std::uint32_t __attribute__((vector_size(pixelsPerVector * 4)));
using Halves = std::uint16_t __attribute__((vector_size(pixelsPerVector * 4)));

// color * alpha of the pixel + pixel * keep, each product of two bytes that stand for 0 to 1. Premultiplied colours and
// keep + alpha of the colour <= 255 see to it that no sum leaves its 16 bits.
void mixAtop(const std::uint32_t *from, std::uint32_t *to, std::size_t count, std::uint32_t color, unsigned keep)
{
    // Red and blue share one vector, alpha and green the other.
    constexpr std::uint32_t redAndBlue = 0x00FF00FF;
    const auto colorRedBlue = std::bit_cast<Halves>(Pixels{} + (color & redAndBlue));
    const auto colorAlphaGreen = std::bit_cast<Halves>(Pixels{} + (color >> 8 & redAndBlue));
    const Halves kept = Halves{} + static_cast<std::uint16_t>(keep);

    const auto mix = [&](const Pixels &pixels) {
        const Pixels alpha = pixels >> 24;
        const auto alphas = std::bit_cast<Halves>(alpha | alpha << 16);
        const auto halves = std::bit_cast<Halves>(pixels);
        Halves low = colorRedBlue * alphas + (halves & 0xFF) * kept;
        Halves high = colorAlphaGreen * alphas + (halves >> 8) * kept;
        low = (low + (low >> 8) + 0x80) >> 8; // divided by 255, to the nearest
        high = (high + (high >> 8) + 0x80) & 0xFF00;
        return low | high;
    };
    const auto mixed = [&](std::size_t pixels) {
        Pixels vector{};
        std::memcpy(&vector, from, pixels * 4);
        const Halves result = mix(vector);
        std::memcpy(to, &result, pixels * 4);
    };
    for (; count >= pixelsPerVector; count -= pixelsPerVector, from += pixelsPerVector, to += pixelsPerVector)
        mixed(pixelsPerVector);
    if (count > 0)
        mixed(count);
}

QImage mixedAtop(const QImage &image, QRgb color, unsigned keep)
{
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage result(pixels.size(), pixels.format());
    if (result.isNull())
        return {};
    result.setDevicePixelRatio(pixels.devicePixelRatio());
    result.setColorSpace(pixels.colorSpace());
    // Rows of 32-bit pixels have no padding.
    mixAtop(reinterpret_cast<const std::uint32_t *>(pixels.constBits()),
        reinterpret_cast<std::uint32_t *>(result.bits()), std::size_t(pixels.width()) * std::size_t(pixels.height()),
        color, keep);
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
    return mixedAtop(image, paint, 255 - unsigned(qAlpha(paint)));
}

QImage fadedPixels(const QImage &image, double opacity)
{
    return mixedAtop(image, 0, toByte(opacity));
}

} // namespace kx
