// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QString>
#include <QtCore/QStringView>

#include <array>
#include <optional>
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

/// What may stand unescaped in the query of a URL (RFC 3986, section 3.4).
inline constexpr AsciiSet urlQueryAllowed{"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                          "-._~!$&'()*+,;=:@/?"};

/// Whether every surrogate of the text has its partner, so that the text has a UTF-8 form.
[[nodiscard]] KX_CORE_EXPORT bool isPaired(QStringView text);

/// Replaces every character outside `allowed` by its UTF-8 bytes as "%XX", in upper-case hex. A "%" is a character like
/// any other. None when the text has a surrogate without its partner, which has no UTF-8.
[[nodiscard]] KX_CORE_EXPORT std::optional<QString> addPercentEncoding(QStringView text, const AsciiSet &allowed);

/// Replaces every "%XX" by its byte and reads runs of bytes as UTF-8; other characters stay. None when a "%" has no two
/// hex digits after it or the bytes are not valid UTF-8.
[[nodiscard]] KX_CORE_EXPORT std::optional<QString> removePercentEncoding(QStringView text);

} // namespace kx
