// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Base64 text of data, and its bytes reversed. Nothing here fails; empty data gives empty results, never null ones.

namespace kx {

/// What the text spells, as NewBase64Decode() (Base64.h) reads it, with its rule for trailing characters. Text with any
/// character that is not ASCII gives empty data.
[[nodiscard]] KX_CORE_EXPORT QByteArray dataFromBase64String(const QString &text);

/// Base64 text in lines of 64 characters with CR LF between them, as NewBase64Encode() (Base64.h) writes it.
[[nodiscard]] KX_CORE_EXPORT QString base64EncodedString(const QByteArray &data);

/// The bytes from last to first.
[[nodiscard]] KX_CORE_EXPORT QByteArray reversedData(const QByteArray &data);

} // namespace kx
