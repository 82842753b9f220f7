// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PixelMix.h>

#include <bit>
#include <cstring>

namespace kx {

namespace {

// Four pixels, and the same as 16-bit halves of pixels. The compiler makes vectors of them where the processor has any.
using Pixels = std::uint32_t __attribute__((vector_size(16)));
using Halves = std::uint16_t __attribute__((vector_size(16)));
constexpr std::size_t vectorPixels = 4;

// Each a sum of two products of bytes, below 255 * 255 + 1, to that sum over 255.
Halves over255(Halves sums)
{
    sums += 0x80;
    return (sums + (sums >> 8)) >> 8;
}

} // namespace

void mixPixels(const std::uint32_t *from, std::uint32_t *to, std::size_t count, std::uint32_t color, std::uint8_t keep)
{
    // Red and blue share the 16-bit lanes of one vector, alpha and green those of the other.
    constexpr std::uint32_t redAndBlue = 0x00FF00FF;
    const auto colorRedBlue = std::bit_cast<Halves>(Pixels{} + (color & redAndBlue));
    const auto colorAlphaGreen = std::bit_cast<Halves>(Pixels{} + (color >> 8 & redAndBlue));
    const Halves kept = Halves{} + keep;

    while (count > 0) {
        const std::size_t now = count < vectorPixels ? count : vectorPixels;
        Pixels pixels{};
        std::memcpy(&pixels, from, now * 4);
        const Pixels alpha = pixels >> 24;
        const auto alphas = std::bit_cast<Halves>(alpha | alpha << 16);
        const auto halves = std::bit_cast<Halves>(pixels);
        const Halves low = over255(colorRedBlue * alphas + (halves & 0xFF) * kept);
        const Halves high = over255(colorAlphaGreen * alphas + (halves >> 8) * kept);
        const Halves mixed = low | high << 8;
        std::memcpy(to, &mixed, now * 4);
        from += now;
        to += now;
        count -= now;
    }
}

} // namespace kx
