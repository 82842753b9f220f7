// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/Describe.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <array>
#include <concepts>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace kx {

/// One argument of format(): a number, a text or a pointer, with its own type remembered. Refers to a given text, which
/// therefore has to live as long; only what describe() made is kept.
class FormatArgument {
public:
    template <std::integral T>
    FormatArgument(T value)
        : m_kind(std::is_same_v<T, bool> ? Kind::Bool
                : std::is_signed_v<T>    ? Kind::Signed
                                         : Kind::Unsigned)
        , m_size(sizeof(T))
        , m_integer(static_cast<quint64>(value))
    {
    }
    template <class T>
    requires std::is_enum_v<T> FormatArgument(T value)
        : FormatArgument(static_cast<std::underlying_type_t<T>>(value))
    {
    }
    /// A long double prints with the precision of a double.
    template <std::floating_point T>
    FormatArgument(T value)
        : m_kind(Kind::Real)
        , m_real(static_cast<double>(value))
    {
    }
    FormatArgument(const void *pointer)
        : m_kind(Kind::Pointer)
        , m_integer(reinterpret_cast<quintptr>(pointer))
    {
    }
    FormatArgument(std::nullptr_t) { }

    /// UTF-8, NUL-terminated; a null pointer is an absent text. Bytes that are not UTF-8 print as U+FFFD.
    FormatArgument(const char *text)
        : FormatArgument(Kind::Utf8, text, text ? qsizetype(std::char_traits<char>::length(text)) : 0)
    {
    }
    FormatArgument(const QByteArray &text)
        : FormatArgument(Kind::Utf8, text.isNull() ? nullptr : text.constData(), text.size())
    {
    }
    FormatArgument(std::string_view text)
        : FormatArgument(Kind::Utf8, text.data(), qsizetype(text.size()))
    {
    }
    FormatArgument(const std::string &text)
        : FormatArgument(std::string_view(text))
    {
    }
    FormatArgument(QStringView text)
        : FormatArgument(Kind::Text, text.utf16(), text.size())
    {
    }
    FormatArgument(const char16_t *text)
        : FormatArgument(QStringView(text))
    {
    }
    FormatArgument(const QString &text)
        : FormatArgument(Kind::Text, text.isNull() ? nullptr : text.utf16(), text.size())
    {
    }
    /// Any other type that describe() knows.
    template <class T>
    requires(
        !std::is_arithmetic_v<
            T> && !std::is_enum_v<T> && !std::is_convertible_v<T, QStringView> && !std::is_pointer_v<std::decay_t<T>>)
        FormatArgument(const T &value)
        : m_owned(describe(value))
    {
        m_data = m_owned.isNull() ? nullptr : m_owned.constData(); // shared, never changed: copies point to it too
        m_length = m_owned.size();
    }

private:
    friend class FormatValue;
    enum class Kind : quint8 { Bool, Signed, Unsigned, Real, Pointer, Text, Utf8 };

    FormatArgument(Kind kind, const void *data, qsizetype length)
        : m_kind(kind)
        , m_data(data)
        , m_length(length)
    {
    }

    Kind m_kind = Kind::Text;
    quint8 m_size = 8; // bytes of an integer's own type
    union {
        quint64 m_integer = 0;
        double m_real;
    };
    const void *m_data = nullptr; // null: an absent text
    qsizetype m_length = 0;
    QString m_owned;
};

/// format() with its arguments in an array. The first form takes UTF-16, the second UTF-8.
[[nodiscard]] KX_CORE_EXPORT QString formatArguments(QStringView format, std::span<const FormatArgument> arguments);
[[nodiscard]] KX_CORE_EXPORT QString formatArguments(const char *format, std::span<const FormatArgument> arguments);

/// Fills a printf-style format. `%@` prints any value that describe() knows; d i u x X o c C s S f F e E g G a A p and
/// %% mean what they mean to printf, with flags, width and precision (`*` takes an int argument; both end at 4096).
/// Length modifiers are read and ignored, since every argument's type is known. Nothing is ever read as another type: a
/// conversion that does not fit its argument converts the value where it can (a number to a number) and prints it as
/// `%@` where it cannot. `%c` prints the Unicode character with that code. A conversion without an argument, an unknown
/// one, a lone % and `%n` stand in the result as they are; left-over arguments are ignored. Digits are ASCII and the
/// decimal point is "." whatever the locale.
template <class... Arguments> [[nodiscard]] QString format(QStringView format, const Arguments &...arguments)
{
    const std::array<FormatArgument, sizeof...(Arguments)> list{FormatArgument(arguments)...};
    return formatArguments(format, list);
}
/// The format is UTF-8; null formats to "".
template <class... Arguments> [[nodiscard]] QString format(const char *format, const Arguments &...arguments)
{
    const std::array<FormatArgument, sizeof...(Arguments)> list{FormatArgument(arguments)...};
    return formatArguments(format, list);
}

} // namespace kx
