// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/AsciiSet.h>

#include <QtCore/QString>
#include <QtCore/QStringView>

#include <optional>

namespace kx {

/// What may stand unescaped in the query of a URL (RFC 3986, section 3.4).
inline constexpr AsciiSet urlQueryAllowed{"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                          "-._~!$&'()*+,;=:@/?"};

/// Whether every surrogate of the text has its partner, so that the text has a UTF-8 form.
[[nodiscard]] bool isPaired(QStringView text);

/// Replaces every character outside `allowed` by its UTF-8 bytes as "%XX", in upper-case hex. A "%" is a character like
/// any other. None when the text has a surrogate without its partner, which has no UTF-8.
[[nodiscard]] std::optional<QString> addPercentEncoding(QStringView text, const AsciiSet &allowed);

/// Replaces every "%XX" by its byte and reads runs of bytes as UTF-8; other characters stay. None when a "%" has no two
/// hex digits after it or the bytes are not valid UTF-8.
[[nodiscard]] std::optional<QString> removePercentEncoding(QStringView text);

} // namespace kx
