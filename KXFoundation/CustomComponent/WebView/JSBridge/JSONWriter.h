// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

namespace kx {

/// Indented JSON that may stand in a script: U+2028, U+2029 and lone surrogates are escaped. Integers keep every digit,
/// doubles have the shortest text that reads back as themselves. NaN, infinities and containers deeper than the limit
/// are null.
[[nodiscard]] QString indentedJSON(const QJsonObject &object, int nestingLimit);

} // namespace kx
