// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PixelMix.h>

#include <immintrin.h>

// Compiled for AVX2 function by function, so that the rest of the library runs on any processor.
#define KX_AVX2 __attribute__((target("avx2")))

namespace kx {

namespace {

constexpr std::size_t vectorPixels = 8;

KX_AVX2 void mixByVectors(
    const std::uint32_t *from, std::uint32_t *to, std::size_t count, std::uint32_t color, std::uint8_t keep)
{
    // As in mixPixels(): red and blue in one vector, alpha and green in the other.
    const __m256i colorRedBlue = _mm256_set1_epi32(int(color & 0x00FF00FF));
    const __m256i colorAlphaGreen = _mm256_set1_epi32(int(color >> 8 & 0x00FF00FF));
    const __m256i kept = _mm256_set1_epi16(keep);
    const __m256i lowBytes = _mm256_set1_epi16(0xFF);
    const __m256i half = _mm256_set1_epi16(0x80);
    // (sum + 128) * 257 / 65536 is sum / 255 to the nearest for every sum of 16 bits that occurs.
    const __m256i over255 = _mm256_set1_epi16(257);
    const __m256i alphaToHalves =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(3, -1, 3, -1, 7, -1, 7, -1, 11, -1, 11, -1, 15, -1, 15, -1));

    for (; count >= vectorPixels; count -= vectorPixels, from += vectorPixels, to += vectorPixels) {
        const __m256i pixels = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from));
        const __m256i alphas = _mm256_shuffle_epi8(pixels, alphaToHalves);
        const __m256i keptLow = _mm256_mullo_epi16(_mm256_and_si256(pixels, lowBytes), kept);
        const __m256i keptHigh = _mm256_mullo_epi16(_mm256_srli_epi16(pixels, 8), kept);
        __m256i low = _mm256_add_epi16(_mm256_mullo_epi16(colorRedBlue, alphas), _mm256_add_epi16(keptLow, half));
        __m256i high = _mm256_add_epi16(_mm256_mullo_epi16(colorAlphaGreen, alphas), _mm256_add_epi16(keptHigh, half));
        low = _mm256_mulhi_epu16(low, over255);
        high = _mm256_slli_epi16(_mm256_mulhi_epu16(high, over255), 8);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to), _mm256_or_si256(low, high));
    }
    mixPixels(from, to, count, color, keep);
}

} // namespace

PixelMix avx2PixelMix()
{
    return __builtin_cpu_supports("avx2") ? mixByVectors : nullptr;
}

} // namespace kx
