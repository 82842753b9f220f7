// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <concepts>
#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>

/// What "none" is, by type: the value that stands for no value. Collections and caches that treat none apart ask here.
namespace kx {

/// Types without a specialisation have no such value. A specialisation gives `isAbsent(const T &)` and `absent()`.
template <class T> struct Absence;

/// Null pointers of every kind: raw, smart and weak ones that can be compared with nullptr, empty functions, handles.
/// Not what has a size: some texts take nullptr for an empty text, others read through it.
template <class T>
requires requires(const T &value)
{
    {
        value == nullptr
        } -> std::convertible_to<bool>;
    requires std::is_constructible_v<T, std::nullptr_t>;
    requires !requires
    {
        value.size();
    };
}
struct Absence<T> {
    static bool isAbsent(const T &value) { return value == nullptr; }
    static T absent() { return T(nullptr); }
};

template <class T> struct Absence<std::optional<T>> {
    static bool isAbsent(const std::optional<T> &value) { return !value; }
    static std::optional<T> absent() { return std::nullopt; }
};

/// Null; "" is a value.
template <> struct Absence<QString> {
    static bool isAbsent(const QString &value) { return value.isNull(); }
    static QString absent() { return {}; }
};

/// Null; no bytes at all are a value.
template <> struct Absence<QByteArray> {
    static bool isAbsent(const QByteArray &value) { return value.isNull(); }
    static QByteArray absent() { return {}; }
};

/// Undefined; JSON's null is a value.
template <> struct Absence<QJsonValue> {
    static bool isAbsent(const QJsonValue &value) { return value.isUndefined(); }
    static QJsonValue absent() { return {QJsonValue::Undefined}; }
};

/// Invalid.
template <> struct Absence<QVariant> {
    static bool isAbsent(const QVariant &value) { return !value.isValid(); }
    static QVariant absent() { return {}; }
};

/// Whether a value of T itself can say that there is none.
template <class T>
concept CanBeAbsent = requires(const T &value)
{
    {
        Absence<T>::isAbsent(value)
        } -> std::same_as<bool>;
    {
        Absence<T>::absent()
        } -> std::same_as<T>;
};

/// A T or none: T itself where that can be absent, else std::optional<T>.
template <class T>
using Maybe =
    typename std::conditional_t<CanBeAbsent<T>, std::type_identity<T>, std::type_identity<std::optional<T>>>::type;

/// The T of a Maybe<T> that is not absent. (Name the T: it cannot be deduced.)
template <class T> [[nodiscard]] T present(Maybe<T> value)
{
    if constexpr (CanBeAbsent<T>)
        return value;
    else
        return *std::move(value);
}

/// Never true for a type that cannot be absent.
template <class T> [[nodiscard]] bool isAbsent(const T &value)
{
    if constexpr (CanBeAbsent<T>)
        return Absence<T>::isAbsent(value);
    else
        return false;
}

} // namespace kx
