// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QString>

/// Digests and percent coding of texts. The results are never null: "" stands for failure, and for what an absent or
/// empty text gives.

namespace kx {

/// MD5 (RFC 1321) of the text's UTF-8 form up to its first NUL, as 32 lower-case hex digits. A surrogate without its
/// partner counts as "?".
[[nodiscard]] KX_CORE_EXPORT QString md5Hash(const QString &text);

/// Replaces the 29 reserved characters ? ! @ # $ ^ & % * + , : ; = ' " ` < > ( ) [ ] { } / \ | and space by "%XX" in
/// upper-case hex. All other characters stay as they are, control characters and those beyond ASCII too.
/// Fails for a surrogate without its partner, which is no text.
[[nodiscard]] KX_CORE_EXPORT QString percentCodingString(const QString &text);

/// Replaces each "%XX" by that byte and reads the result as UTF-8. Fails when a "%" has no two hex digits after it, and
/// when the bytes are not valid UTF-8.
[[nodiscard]] KX_CORE_EXPORT QString DecodeUtf8String(const QString &text);

} // namespace kx
