// SPDX-License-Identifier: MIT
#include "Base64Codec.h"

#include <algorithm>

namespace kx::base64 {

namespace {

// Big-endian regrouping of 3 bytes into 4 characters.
char *encodeGroups(const unsigned char *in, std::size_t groups, char *out)
{
    for (; groups > 0; --groups, in += 3, out += 4) {
        const unsigned bits = unsigned(in[0]) << 16 | unsigned(in[1]) << 8 | in[2];
        out[0] = alphabet[bits >> 18];
        out[1] = alphabet[bits >> 12 & 0x3F];
        out[2] = alphabet[bits >> 6 & 0x3F];
        out[3] = alphabet[bits & 0x3F];
    }
    return out;
}

char *encodeLines(const unsigned char *in, std::size_t lines, bool breakLines, char *out)
{
    for (; lines > 0; --lines, in += lineBytes) {
        out = encodeGroups(in, lineBytes / 3, out);
        if (breakLines) {
            *out++ = '\r';
            *out++ = '\n';
        }
    }
    return out;
}

void decodeGroups(const unsigned char *&in, const unsigned char *end, unsigned char *&out)
{
    for (; end - in >= 4; in += 4, out += 3) {
        const unsigned a = values[in[0]];
        const unsigned b = values[in[1]];
        const unsigned c = values[in[2]];
        const unsigned d = values[in[3]];
        if ((a | b | c | d) & skipped)
            return;
        const unsigned bits = a << 18 | b << 12 | c << 6 | d;
        out[0] = static_cast<unsigned char>(bits >> 16);
        out[1] = static_cast<unsigned char>(bits >> 8);
        out[2] = static_cast<unsigned char>(bits);
    }
}

} // namespace

const Kernel portableKernel = {encodeLines, decodeGroups};

const Kernel &bestKernel()
{
    static const Kernel &best = avx2Kernel() ? *avx2Kernel() : portableKernel;
    return best;
}

std::size_t encode(const unsigned char *in, std::size_t length, bool breakLines, char *out, const Kernel &kernel)
{
    const char *const begin = out;
    // With line breaks, the lines that more input follows: the last one has no CR LF, even if it is full.
    const std::size_t lines = breakLines && length > 0 ? (length - 1) / lineBytes : length / lineBytes;
    out = kernel.encodeLines(in, lines, breakLines, out);
    in += lines * lineBytes;
    length -= lines * lineBytes;

    out = encodeGroups(in, length / 3, out);
    in += length / 3 * 3;
    if (const std::size_t left = length % 3) {
        const unsigned char last[3] = {in[0], left == 2 ? in[1] : static_cast<unsigned char>(0), 0};
        out = encodeGroups(last, 1, out);
        std::fill_n(out - (3 - left), 3 - left, '=');
    }
    return static_cast<std::size_t>(out - begin);
}

std::size_t decode(const unsigned char *in, std::size_t length, unsigned char *out, const Kernel &kernel)
{
    unsigned char *const begin = out;
    const unsigned char *const end = in + length;
    while (in < end) {
        kernel.decodeGroups(in, end, out);
        if (in == end)
            break;

        // One round of up to four characters, with whatever stands between them.
        unsigned bits = 0;
        int collected = 0;
        for (; in < end && collected < 4; ++in) {
            if (const unsigned value = values[*in]; value != skipped) {
                bits |= value << (18 - 6 * collected);
                ++collected;
            }
        }
        for (int byte = 0; byte < collected - 1; ++byte)
            *out++ = static_cast<unsigned char>(bits >> (16 - 8 * byte));
        // Deliberate: a round without any character takes one byte back.
        if (collected == 0 && out > begin)
            --out;
    }
    return static_cast<std::size_t>(out - begin);
}

} // namespace kx::base64
