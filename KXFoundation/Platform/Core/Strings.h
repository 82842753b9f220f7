// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <optional>

namespace kx {

/// Equality of strings that may be absent: a null string equals only a null string. (Qt's == calls null and empty
/// equal.)
[[nodiscard]] inline bool same(const QString &a, const QString &b)
{
    return a.isNull() == b.isNull() && a == b;
}

/// The text that `bytes` spell in UTF-8, or none when they are not valid UTF-8 (RFC 3629: no overlong forms, no
/// surrogates, nothing above U+10FFFF). A leading byte order mark is kept as U+FEFF. Empty input gives "", not null.
[[nodiscard]] std::optional<QString> decodeUtf8(QByteArrayView bytes);

/// Orders two texts: runs of ASCII digits by the number they spell, however long, everything else by its UTF-16 codes.
/// "1.10" is after "1.9". Returns -1, 0 or 1; 0 also for texts that differ in leading zeros only.
[[nodiscard]] int compareNumeric(QStringView a, QStringView b);

} // namespace kx
