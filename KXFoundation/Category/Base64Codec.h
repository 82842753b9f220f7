// SPDX-License-Identifier: MIT
#pragma once

// Base64 on buffers of the caller: the plain loops, and kernels that speed up their inner part.

#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

namespace kx::base64 {

inline constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
inline constexpr std::size_t lineBytes = 48; ///< What one line of text stands for.
inline constexpr std::size_t lineCharacters = 64;
inline constexpr unsigned char skipped = 0x80; ///< In `values`: not in the alphabet.

/// The 6-bit value of each character, or `skipped`.
inline constexpr std::array<unsigned char, 256> values = [] {
    std::array<unsigned char, 256> table{};
    table.fill(skipped);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<unsigned char>(i);
    return table;
}();

/// Characters to allocate for the text of `length` bytes, with its NUL and two for each full line. The largest number
/// for lengths that no memory holds, so that no sum wraps round to a small one.
constexpr std::size_t encodedCapacity(std::size_t length, bool breakLines)
{
    const std::size_t groups = length / 3 + (length % 3 != 0 ? 1 : 0);
    if (groups > std::numeric_limits<std::size_t>::max() / 5)
        return std::numeric_limits<std::size_t>::max();
    return groups * 4 + 1 + (breakLines ? groups / 16 * 2 : 0);
}

/// Bytes to allocate for what `length` characters spell.
constexpr std::size_t decodedCapacity(std::size_t length)
{
    return (length / 4 + (length % 4 != 0 ? 1 : 0)) * 3;
}

/// The inner loops in the form that suits one kind of processor. They read and write nothing outside the ranges given.
struct Kernel {
    /// Encodes `lines` times 48 bytes to 64 characters, with CR LF after each when `breakLines` is set; returns the end
    /// of what it wrote.
    char *(*encodeLines)(const unsigned char *in, std::size_t lines, bool breakLines, char *out);

    /// Decodes groups of four adjacent characters, skipping others between groups, as far as it sees fit. Leaves at
    /// least one character where it stops in front of skipped ones: what to make of an end is the caller's business.
    void (*decodeGroups)(const unsigned char *&in, const unsigned char *end, unsigned char *&out);
};

extern const Kernel portableKernel;

/// Null when this processor lacks AVX2, or the library was built for another kind.
const Kernel *avx2Kernel();

const Kernel &bestKernel();

/// Writes the text of `length` bytes, without a NUL; returns its length. `out` holds encodedCapacity().
std::size_t encode(const unsigned char *in, std::size_t length, bool breakLines, char *out, const Kernel &kernel);

/// Writes what `length` characters spell; returns the number of bytes. `out` holds decodedCapacity().
std::size_t decode(const unsigned char *in, std::size_t length, unsigned char *out, const Kernel &kernel);

} // namespace kx::base64
