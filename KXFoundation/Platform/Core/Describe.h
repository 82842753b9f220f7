// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtCore/QVariant>

#include <concepts>
#include <optional>

namespace kx {

/// The text that `%@` prints. An absent value prints "(null)", lists and objects print as JSON, lists of strings as
/// "(a, b)". For a type of your own give a `QString describe(const T &)` in the type's own namespace, and it prints
/// too.
[[nodiscard]] KX_CORE_EXPORT QString describe(const QString &text);
[[nodiscard]] KX_CORE_EXPORT QString describe(QLatin1String text);
[[nodiscard]] KX_CORE_EXPORT QString describe(const QUrl &url);
[[nodiscard]] KX_CORE_EXPORT QString describe(const QJsonValue &value);
[[nodiscard]] KX_CORE_EXPORT QString describe(const QStringList &list);
[[nodiscard]] KX_CORE_EXPORT QString describeVariant(const QVariant &value);
/// For variants and their collections only: so much converts to a variant that a plain overload would make other calls
/// ambiguous.
template <class V>
requires(
    std::same_as<V,
        QVariant> || std::same_as<V, QVariantMap> || std::same_as<V, QVariantHash> || std::same_as<V, QVariantList>)
    [[nodiscard]] QString describe(const V &value)
{
    return describeVariant(value);
}
template <class T> [[nodiscard]] QString describe(const std::optional<T> &value)
{
    return value ? describe(*value) : QStringLiteral("(null)");
}

} // namespace kx
