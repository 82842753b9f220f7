// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Base64 written for sight instead of speed, from bits and lists, to compare the library's with.
namespace kx::test {

inline std::string naiveEncode(std::string_view bytes, bool breakLines)
{
    const std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bits;
    for (const char byte : bytes) {
        for (int bit = 7; bit >= 0; --bit)
            bits += (static_cast<unsigned char>(byte) >> bit & 1) != 0 ? '1' : '0';
    }
    bits.append((6 - bits.size() % 6) % 6, '0');
    std::string text; // a line of 64 characters stands for 384 bits
    for (std::size_t i = 0; i < bits.size(); i += 6) {
        if (breakLines && i > 0 && i % 384 == 0)
            text += "\r\n";
        text += alphabet[std::stoul(bits.substr(i, 6), nullptr, 2)];
    }
    return text.append((3 - bytes.size() % 3) % 3, '=');
}

inline std::string naiveDecode(std::string_view text)
{
    const std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    std::ptrdiff_t position = 0;
    for (std::size_t i = 0; i < text.size();) {
        std::string round;
        for (; i < text.size() && round.size() < 4; ++i) {
            if (alphabet.find(text[i]) != std::string_view::npos)
                round += text[i];
        }
        unsigned long bits = 0;
        for (std::size_t k = 0; k < 4; ++k)
            bits = bits * 64 + (k < round.size() ? alphabet.find(round[k]) : 0);
        bytes.resize(static_cast<std::size_t>(position));
        bytes += {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8), static_cast<char>(bits)};
        position += static_cast<std::ptrdiff_t>(round.size()) - 1;
        if (position < 0)
            position = 0;
    }
    bytes.resize(static_cast<std::size_t>(position));
    return bytes;
}

} // namespace kx::test
