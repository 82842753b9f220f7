// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <optional>

namespace kx {

/// Equality of strings that may be absent: a null string equals only a null string. (Qt's == calls null and empty equal.)
[[nodiscard]] inline bool same(const QString &a, const QString &b)
{
    return a.isNull() == b.isNull() && a == b;
}

/// The text that `bytes` spell in UTF-8, or none when they are not valid UTF-8 (RFC 3629: no overlong forms, no
/// surrogates, nothing above U+10FFFF). A leading byte order mark is kept as U+FEFF. Empty input gives "", not null.
[[nodiscard]] KX_CORE_EXPORT std::optional<QString> decodeUtf8(QByteArrayView bytes);

} // namespace kx
