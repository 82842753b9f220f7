// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

// The JSON work of the bridge. Depths count arrays and objects that stand inside each other.
namespace kx {

/// The object that the text spells as RFC 8259 has it; an empty one when it spells none. The parser's own nesting limit
/// is 1024.
[[nodiscard]] QJsonObject parseJSONObject(const QString &text);

/// Whether arrays and objects stand inside each other more than `limit` times.
[[nodiscard]] bool nestsDeeper(const QJsonValue &value, int limit);

/// See KXWebViewJSBridge::removeJSONNullValues. A value without nulls comes back as it is, shared.
[[nodiscard]] QJsonValue withoutJSONNulls(const QJsonValue &value, int nestingLimit);

/// Indented JSON that may stand in a script: U+2028, U+2029 and lone surrogates are escaped. Integers keep every digit,
/// doubles have the shortest text that reads back as themselves. NaN, infinities and containers deeper than the limit
/// are null.
[[nodiscard]] QString indentedJSON(const QJsonObject &object, int nestingLimit);

} // namespace kx
