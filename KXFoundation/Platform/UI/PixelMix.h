// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx {

/// Reads `count` premultiplied 32-bit pixels and writes as many: in each byte
///
///     color * alpha of the pixel + byte of the pixel * keep
///
/// where products of two bytes stand for those of two numbers from 0 to 1, and the sum is rounded to the nearest. The
/// colour is premultiplied, and `keep` and its alpha are at most 255 together, so that results are premultiplied, too.
/// `from` and `to` are the same or apart.
using PixelMix = void (*)(
    const std::uint32_t *from, std::uint32_t *to, std::size_t count, std::uint32_t color, std::uint8_t keep);

/// For any processor.
void mixPixels(const std::uint32_t *from, std::uint32_t *to, std::size_t count, std::uint32_t color, std::uint8_t keep);
/// The same with AVX2; null where the processor has none.
[[nodiscard]] PixelMix avx2PixelMix();

} // namespace kx
