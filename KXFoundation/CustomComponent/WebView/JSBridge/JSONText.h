// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

// What the bridge reads from JSON. Depths count arrays and objects that stand inside each other.
namespace kx {

/// The object that the text spells as RFC 8259 has it; an empty one when it spells none. The parser's own nesting limit
/// is 1024.
[[nodiscard]] QJsonObject parseJSONObject(const QString &text);

/// Whether arrays and objects stand inside each other more than `limit` times.
[[nodiscard]] bool nestsDeeper(const QJsonValue &value, int limit);

/// See KXWebViewJSBridge::removeJSONNullValues. A value without nulls comes back as it is, shared.
[[nodiscard]] QJsonValue withoutJSONNulls(const QJsonValue &value, int nestingLimit);

} // namespace kx
