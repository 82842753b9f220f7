// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <array>
#include <concepts>
#include <optional>
#include <span>
#include <type_traits>

namespace kx {

/// The text that `%@` prints. Overload `kx::describe` or, for a type of your own, give an argument-dependent
/// `QString describe(const T &)`, and the type prints too. An absent value prints "(null)".
[[nodiscard]] KX_CORE_EXPORT QString describe(const QString &text);
[[nodiscard]] KX_CORE_EXPORT QString describe(const QUrl &url);
[[nodiscard]] KX_CORE_EXPORT QString describe(const QJsonValue &value);
[[nodiscard]] KX_CORE_EXPORT QString describe(const QStringList &list);
template <class T>
[[nodiscard]] QString describe(const std::optional<T> &value)
{
    return value ? describe(*value) : QStringLiteral("(null)");
}

/// One argument of format(): a number, a text or a pointer, with its own type remembered.
class FormatArgument {
public:
    template <std::integral T>
    FormatArgument(T value)
        : m_kind(std::is_same_v<T, bool> ? Kind::Bool
                  : std::is_signed_v<T>  ? Kind::Signed
                                         : Kind::Unsigned)
        , m_size(sizeof(T))
        , m_integer(static_cast<quint64>(value))
    {
    }
    template <class T>
        requires std::is_enum_v<T>
    FormatArgument(T value)
        : FormatArgument(static_cast<std::underlying_type_t<T>>(value))
    {
    }
    FormatArgument(double value) : m_kind(Kind::Real), m_real(value) {}
    FormatArgument(float value) : FormatArgument(double(value)) {}
    /// UTF-8, NUL-terminated; a null pointer is an absent text. Read at once, so it need not outlive the call.
    FormatArgument(const char *text)
        : m_kind(Kind::Text), m_text(text ? QString::fromUtf8(text) : QString()) {}
    FormatArgument(const void *pointer)
        : m_kind(Kind::Pointer), m_integer(reinterpret_cast<quintptr>(pointer)) {}
    FormatArgument(std::nullptr_t) : m_kind(Kind::Text) {}
    FormatArgument(const QString &text) : m_kind(Kind::Text), m_text(text) {}
    FormatArgument(QStringView text) : m_kind(Kind::Text), m_text(text.isNull() ? QString() : text.toString()) {}
    template <class T>
        requires(!std::is_arithmetic_v<T> && !std::is_enum_v<T> && !std::is_convertible_v<T, QStringView>
                 && !std::is_pointer_v<std::decay_t<T>>)
    FormatArgument(const T &value) : m_kind(Kind::Text), m_text(describe(value))
    {
    }

private:
    friend class Formatter;
    enum class Kind : quint8 { Bool, Signed, Unsigned, Real, Text, Pointer };
    Kind m_kind;
    quint8 m_size = 8; // bytes of an integer's own type
    quint64 m_integer = 0;
    double m_real = 0;
    QString m_text;
};

/// format() with its arguments in an array.
[[nodiscard]] KX_CORE_EXPORT QString formatArguments(QStringView format, std::span<const FormatArgument> arguments);

/// Fills a printf-style format. `%@` prints any value that describe() knows; d i u x X o c C s S f F e E g G a A p and
/// %% mean what they mean to printf, with flags, width and precision (`*` takes an int argument). Length modifiers are
/// read and ignored, since every argument's type is known. Nothing is ever read as another type: a conversion that does
/// not fit its argument converts the value where it can (a number to a number) and prints it as `%@` where it cannot.
/// A conversion without an argument, an unknown one and `%n` stand in the result as they are; left-over arguments are
/// ignored. Digits are ASCII and the decimal point is "." whatever the locale.
template <class... Arguments>
[[nodiscard]] QString format(QStringView format, const Arguments &...arguments)
{
    const std::array<FormatArgument, sizeof...(Arguments)> list{FormatArgument(arguments)...};
    return formatArguments(format, list);
}
template <class... Arguments>
[[nodiscard]] QString format(const char *utf8Format, const Arguments &...arguments)
{
    return kx::format(QStringView(QString::fromUtf8(utf8Format)), arguments...);
}

} // namespace kx
