// SPDX-License-Identifier: MIT
// The way to regroup bits by multiplication and to classify characters by their nibbles is that of W. Muła and
// D. Lemire, "Faster Base64 Encoding and Decoding Using AVX2 Instructions", ACM Transactions on the Web 12 (3), 2018.
#include "Base64Codec.h"

#include <immintrin.h>

#include <bit>
#include <cstdint>
#include <cstring>

// Compiled for AVX2 function by function, so that the rest of the library runs on any processor.
#define KX_AVX2 __attribute__((target("avx2")))

namespace kx::base64 {

namespace {

// A table for the byte shuffle, which looks up in each half of a vector on its own.
using Lookup = std::array<std::int8_t, 16>;

KX_AVX2 inline __m256i inBothHalves(const Lookup &lookup)
{
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i *>(lookup.data())));
}

KX_AVX2 inline __m256i twoHalves(const unsigned char *low, const unsigned char *high)
{
    const __m128i lowHalf = _mm_loadu_si128(reinterpret_cast<const __m128i *>(low));
    const __m128i highHalf = _mm_loadu_si128(reinterpret_cast<const __m128i *>(high));
    return _mm256_inserti128_si256(_mm256_castsi128_si256(lowHalf), highHalf, 1);
}

// Puts the three bytes a b c of each group into four as b a c b, so that each 6-bit value lies in one 16-bit word.
// `first` is where the 12 bytes that count begin in each half.
constexpr Lookup spread(std::int8_t first)
{
    Lookup lookup{};
    for (std::size_t group = 0; group < 4; ++group) {
        const auto a = static_cast<std::int8_t>(first + 3 * int(group));
        lookup[4 * group] = lookup[4 * group + 3] = static_cast<std::int8_t>(a + 1);
        lookup[4 * group + 1] = a;
        lookup[4 * group + 2] = static_cast<std::int8_t>(a + 2);
    }
    return lookup;
}
constexpr Lookup spreadFromStart = spread(0);
constexpr Lookup spreadFromFourth = spread(4);

// What to add to a 6-bit value, by the class that encodeSpread() finds for it.
constexpr Lookup characterOffsets = [] {
    Lookup lookup{};
    lookup[0] = 'a' - 26;
    for (std::size_t digit = 1; digit <= 10; ++digit)
        lookup[digit] = '0' - 52;
    lookup[11] = '+' - 62;
    lookup[12] = '/' - 63;
    lookup[13] = 'A';
    return lookup;
}();

// 24 bytes, spread, to 32 characters.
KX_AVX2 inline __m256i encodeSpread(__m256i bytes)
{
    // The words are b a and c b. The values at the top of their words come down by the high half of a product (by 10
    // and 6 bits), those at the bottom go up by a product (by 4 and 8 bits) to their own bytes.
    const __m256i firstAndThird =
        _mm256_mulhi_epu16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x0FC0FC00)), _mm256_set1_epi32(0x04000040));
    const __m256i secondAndFourth =
        _mm256_mullo_epi16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
    const __m256i sixBits = _mm256_or_si256(firstAndThird, secondAndFourth);

    // Class 0: lower-case letters, 1 to 10: digits, 11 and 12: the two signs, 13: capitals.
    __m256i classes = _mm256_subs_epu8(sixBits, _mm256_set1_epi8(51));
    const __m256i capitals = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), sixBits);
    classes = _mm256_or_si256(classes, _mm256_and_si256(capitals, _mm256_set1_epi8(13)));
    return _mm256_add_epi8(sixBits, _mm256_shuffle_epi8(inBothHalves(characterOffsets), classes));
}

KX_AVX2 char *encodeLines(const unsigned char *in, std::size_t lines, bool breakLines, char *out)
{
    const __m256i fromStart = inBothHalves(spreadFromStart);
    const __m256i fromFourth = inBothHalves(spreadFromFourth);
    for (; lines > 0; --lines, in += lineBytes) {
        // Halves hold 16 bytes, of which 12 count: the first 12 at the start of the line, the last 12 at its end.
        const __m256i first = _mm256_shuffle_epi8(twoHalves(in, in + 12), fromStart);
        const __m256i second = _mm256_shuffle_epi8(twoHalves(in + 20, in + 32), fromFourth);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(out), encodeSpread(first));
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(out + 32), encodeSpread(second));
        out += lineCharacters;
        if (breakLines) {
            *out++ = '\r';
            *out++ = '\n';
        }
    }
    return out;
}

// A character is outside the alphabet when its high nibble's bit is set in the entry of its low nibble. Bytes from 0x80
// on have all bits: control characters see to it that no entry is empty.
constexpr Lookup highNibbleBits = [] {
    Lookup lookup{};
    for (std::size_t high = 0; high < 16; ++high)
        lookup[high] = static_cast<std::int8_t>(high < 8 ? 1U << high : 0xFFU);
    return lookup;
}();
constexpr Lookup skippedByLowNibble = [] {
    Lookup lookup{};
    for (std::size_t low = 0; low < 16; ++low) {
        unsigned bits = 0;
        for (std::size_t high = 0; high < 8; ++high)
            bits |= values[high << 4 | low] == skipped ? 1U << high : 0U;
        lookup[low] = static_cast<std::int8_t>(bits);
    }
    return lookup;
}();

// What to add to a character to get its value, by its high nibble. "/" shares its nibble with "+" and goes by the entry
// before, which no character of the alphabet needs.
constexpr Lookup valueOffsets = [] {
    Lookup lookup{};
    lookup['/' >> 4] = 62 - '+';
    lookup[('/' >> 4) - 1] = 63 - '/';
    lookup['0' >> 4] = 52 - '0';
    lookup['A' >> 4] = lookup['Z' >> 4] = -'A';
    lookup['a' >> 4] = lookup['z' >> 4] = 26 - 'a';
    return lookup;
}();

// The three bytes of each group, out of little-endian 32-bit numbers.
constexpr Lookup groupBytes = {2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1};

// Writes exactly 24 bytes.
KX_AVX2 inline void store24(__m256i bytes, unsigned char *out)
{
    _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm256_castsi256_si128(bytes));
    _mm_storel_epi64(reinterpret_cast<__m128i *>(out + 16), _mm256_extracti128_si256(bytes, 1));
}

KX_AVX2 void decodeGroups(const unsigned char *&inReference, const unsigned char *end, unsigned char *&outReference)
{
    const unsigned char *in = inReference;
    unsigned char *out = outReference;
    const __m256i nibble = _mm256_set1_epi8(0x0F);
    const __m256i highBits = inBothHalves(highNibbleBits);
    const __m256i skippedBits = inBothHalves(skippedByLowNibble);
    const __m256i offsets = inBothHalves(valueOffsets);
    const __m256i gather = inBothHalves(groupBytes);
    const __m256i join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);

    while (end - in >= 32) {
        const __m256i text = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(in));
        const __m256i high = _mm256_and_si256(_mm256_srli_epi16(text, 4), nibble);
        const __m256i low = _mm256_and_si256(text, nibble);
        const __m256i outside =
            _mm256_and_si256(_mm256_shuffle_epi8(highBits, high), _mm256_shuffle_epi8(skippedBits, low));
        const auto valid =
            static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(outside, _mm256_setzero_si256())));
        if (!(valid & 1)) {
            // Where the next line starts is a guess here, not a computation that the next load waits for.
            if (in[0] == '\r' && in[1] == '\n') {
                in += 2;
                continue;
            }
            const int leading = std::countr_zero(valid);
            in += leading < 31 ? leading : 31; // never the last character
            continue;
        }

        const __m256i slashes = _mm256_cmpeq_epi8(text, _mm256_set1_epi8('/'));
        const __m256i sixBits = _mm256_add_epi8(text, _mm256_shuffle_epi8(offsets, _mm256_add_epi8(high, slashes)));
        const __m256i twelveBits = _mm256_maddubs_epi16(sixBits, _mm256_set1_epi16(0x0140));
        const __m256i groups = _mm256_madd_epi16(twelveBits, _mm256_set1_epi32(0x00011000));
        const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, gather), join);
        if (valid == 0xFFFFFFFFU) {
            store24(bytes, out);
            in += 32;
            out += 24;
            continue;
        }
        const auto complete = static_cast<std::size_t>(std::countr_one(valid)) / 4;
        if (complete == 0)
            break;
        unsigned char some[24];
        store24(bytes, some);
        std::memcpy(out, some, complete * 3);
        in += complete * 4;
        out += complete * 3;
    }
    inReference = in;
    outReference = out;
}

constexpr Kernel kernel = {encodeLines, decodeGroups};

} // namespace

const Kernel *avx2Kernel()
{
    return __builtin_cpu_supports("avx2") ? &kernel : nullptr;
}

} // namespace kx::base64
