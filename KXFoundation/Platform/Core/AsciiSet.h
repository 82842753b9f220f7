// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringView>

#include <array>
#include <string_view>

namespace kx {

/// A set of ASCII characters.
class AsciiSet {
public:
    constexpr explicit AsciiSet(std::string_view characters)
    {
        for (const char c : characters)
            m_contains[static_cast<unsigned char>(c) & 0x7F] = true;
    }
    [[nodiscard]] constexpr bool contains(char16_t c) const { return c < 0x80 && m_contains[c]; }
    [[nodiscard]] bool containsAll(QStringView text) const
    {
        for (const QChar c : text) {
            if (!contains(c.unicode()))
                return false;
        }
        return true;
    }

private:
    std::array<bool, 0x80> m_contains{};
};

} // namespace kx
