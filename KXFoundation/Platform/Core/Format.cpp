// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Format.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <QtCore/QLocale>
#include <QtCore/QVariant>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kx {

namespace {

const QString absentText = QStringLiteral("(null)");

// A width or precision beyond this is cut, so that a hostile format cannot exhaust memory.
constexpr int widestField = 4096;

struct Conversion {
    bool left = false, plus = false, blank = false, alternate = false, zero = false;
    int width = 0;
    int precision = -1; // -1: none given
    char16_t letter = 0;
};

QString padded(const Conversion &conversion, QString body, qsizetype signLength, bool zeroAllowed)
{
    const qsizetype missing = conversion.width - body.size();
    if (missing <= 0)
        return body;
    if (conversion.left)
        return body + QString(missing, u' ');
    if (conversion.zero && zeroAllowed)
        return body.insert(signLength, QString(missing, u'0'));
    return QString(missing, u' ') + body;
}

QString signText(const Conversion &conversion, bool negative)
{
    return negative ? QStringLiteral("-") : conversion.plus ? QStringLiteral("+") : conversion.blank ? QStringLiteral(" ") : QString();
}

} // namespace

class Formatter {
public:
    Formatter(QStringView format, std::span<const FormatArgument> arguments)
        : m_format(format)
        , m_arguments(arguments)
    {
    }

    QString run()
    {
        m_out.reserve(m_format.size() + 32);
        qsizetype at = 0;
        while (at < m_format.size()) {
            const qsizetype percent = m_format.indexOf(u'%', at);
            if (percent < 0)
                break;
            m_out += m_format.sliced(at, percent - at);
            at = convert(percent);
        }
        m_out += m_format.sliced(std::min(at, m_format.size()));
        return m_out;
    }

private:
    using Kind = FormatArgument::Kind;

    // Handles the conversion that starts at `start` (a "%"); returns where the text goes on.
    qsizetype convert(qsizetype start)
    {
        qsizetype at = start + 1;
        const auto peek = [&] { return at < m_format.size() ? m_format[at].unicode() : char16_t(0); };
        if (peek() == u'%') {
            m_out += u'%';
            return at + 1;
        }
        Conversion conversion;
        for (bool more = true; more;) {
            switch (peek()) {
            case u'-': conversion.left = true; break;
            case u'+': conversion.plus = true; break;
            case u' ': conversion.blank = true; break;
            case u'#': conversion.alternate = true; break;
            case u'0': conversion.zero = true; break;
            default: more = false; continue;
            }
            ++at;
        }
        const auto number = [&](int absent) {
            if (peek() == u'*') {
                ++at;
                const FormatArgument *argument = next();
                return argument ? int(std::clamp<qint64>(signedValue(*argument), -widestField, widestField)) : absent;
            }
            int value = absent;
            for (; peek() >= u'0' && peek() <= u'9'; ++at)
                value = std::min(std::max(value, 0) * 10 + (peek() - u'0'), widestField);
            return value;
        };
        conversion.width = number(0);
        if (conversion.width < 0) {
            conversion.left = true;
            conversion.width = -conversion.width;
        }
        if (peek() == u'.') {
            ++at;
            conversion.precision = number(0);
        }
        while (at < m_format.size() && QStringView(u"hljztqL").contains(m_format[at]))
            ++at;
        conversion.letter = peek();
        if (at < m_format.size())
            ++at;
        static constexpr QStringView known = u"@diuxXoDUOcCsSfFeEgGaAp";
        const FormatArgument *argument = conversion.letter && known.contains(QChar(conversion.letter)) ? next() : nullptr;
        if (argument)
            append(conversion, *argument);
        else
            m_out += m_format.sliced(start, at - start);
        return at;
    }

    const FormatArgument *next() { return m_next < m_arguments.size() ? &m_arguments[m_next++] : nullptr; }

    static bool isInteger(const FormatArgument &argument)
    {
        return argument.m_kind == Kind::Signed || argument.m_kind == Kind::Unsigned || argument.m_kind == Kind::Bool
            || argument.m_kind == Kind::Pointer;
    }

    // The value as a signed number of the argument's own width, as printf reads it for %d.
    static qint64 signedValue(const FormatArgument &argument)
    {
        if (argument.m_kind == Kind::Real) {
            const double value = argument.m_real;
            if (std::isnan(value))
                return 0;
            if (value >= 9223372036854775808.0)
                return std::numeric_limits<qint64>::max();
            if (value < -9223372036854775808.0)
                return std::numeric_limits<qint64>::min();
            return qint64(value);
        }
        switch (argument.m_size) {
        case 1: return argument.m_kind == Kind::Signed ? qint8(argument.m_integer) : qint64(argument.m_integer);
        case 2: return argument.m_kind == Kind::Signed ? qint16(argument.m_integer) : qint64(argument.m_integer);
        case 4: return qint32(argument.m_integer);
        default: return qint64(argument.m_integer);
        }
    }

    static quint64 unsignedValue(const FormatArgument &argument)
    {
        if (argument.m_kind == Kind::Real)
            return quint64(signedValue(argument));
        return argument.m_size < 8 && argument.m_size >= 4 ? quint32(argument.m_integer)
            : argument.m_size < 4 && argument.m_kind == Kind::Signed ? quint32(signedValue(argument)) // promoted to int
                                                                      : argument.m_integer;
    }

    static double realValue(const FormatArgument &argument)
    {
        if (argument.m_kind == Kind::Real)
            return argument.m_real;
        return argument.m_kind == Kind::Signed ? double(signedValue(argument)) : double(argument.m_integer);
    }

    static QString plainText(const FormatArgument &argument)
    {
        switch (argument.m_kind) {
        case Kind::Bool: return QString::number(argument.m_integer);
        case Kind::Signed: return QString::number(signedValue(argument));
        case Kind::Unsigned: return QString::number(argument.m_integer);
        case Kind::Real: return QString::number(argument.m_real, 'g', QLocale::FloatingPointShortest);
        case Kind::Pointer: return u"0x" + QString::number(argument.m_integer, 16);
        case Kind::Text: break;
        }
        return argument.m_text.isNull() ? absentText : argument.m_text;
    }

    void append(const Conversion &conversion, const FormatArgument &argument)
    {
        const bool number = isInteger(argument) || argument.m_kind == Kind::Real;
        switch (conversion.letter) {
        case u'd':
        case u'D':
        case u'i':
            if (number)
                return appendInteger(conversion, argument);
            break;
        case u'u':
        case u'U':
        case u'x':
        case u'X':
        case u'o':
        case u'O':
            if (number)
                return appendUnsigned(conversion, argument);
            break;
        case u'c':
        case u'C':
            if (isInteger(argument)) {
                m_out += padded(conversion, QString(QChar(char16_t(argument.m_integer))), 0, false);
                return;
            }
            break;
        case u'p':
            if (isInteger(argument)) {
                m_out += padded(conversion, u"0x" + QString::number(argument.m_integer, 16), 2, false);
                return;
            }
            break;
        case u's':
        case u'S':
        case u'@':
            break;
        default:
            if (number)
                return appendReal(conversion, realValue(argument));
            break;
        }
        QString text = plainText(argument);
        if (conversion.precision >= 0)
            text.truncate(conversion.precision);
        m_out += padded(conversion, text, 0, false);
    }

    void appendInteger(const Conversion &conversion, const FormatArgument &argument)
    {
        const qint64 value = signedValue(argument);
        const bool negative = value < 0;
        const quint64 magnitude = negative ? 0 - quint64(value) : quint64(value);
        appendDigits(conversion, signText(conversion, negative), QString::number(magnitude));
    }

    void appendUnsigned(const Conversion &conversion, const FormatArgument &argument)
    {
        const quint64 value = unsignedValue(argument);
        const char16_t letter = conversion.letter;
        QString digits = letter == u'u' || letter == u'U' ? QString::number(value)
            : letter == u'o' || letter == u'O'            ? QString::number(value, 8)
                                                          : QString::number(value, 16);
        if (letter == u'X')
            digits = digits.toUpper();
        QString prefix;
        if (conversion.alternate && value != 0) {
            if (letter == u'x' || letter == u'X')
                prefix = letter == u'x' ? QStringLiteral("0x") : QStringLiteral("0X");
            else if (letter == u'o' || letter == u'O')
                digits.prepend(u'0');
        }
        appendDigits(conversion, prefix, digits);
    }

    void appendDigits(const Conversion &conversion, const QString &prefix, QString digits)
    {
        if (conversion.precision == 0 && digits == u"0")
            digits.clear();
        if (digits.size() < conversion.precision)
            digits.prepend(QString(conversion.precision - digits.size(), u'0'));
        m_out += padded(conversion, prefix + digits, prefix.size(), conversion.precision < 0);
    }

    void appendReal(const Conversion &conversion, double value)
    {
        const char16_t lower = conversion.letter | 0x20;
        const bool upper = conversion.letter != lower;
        const QString sign = signText(conversion, std::signbit(value));
        QString body;
        if (!std::isfinite(value)) {
            body = std::isnan(value) ? QStringLiteral("nan") : QStringLiteral("inf");
        } else if (lower == u'a') {
            const int precision = conversion.precision;
            body = precision < 0 ? QString::asprintf("%a", std::fabs(value))
                                 : QString::asprintf("%.*a", precision, std::fabs(value));
        } else {
            const int precision = conversion.precision < 0 ? 6 : conversion.precision;
            body = QString::number(std::fabs(value), char(lower), lower == u'g' && precision == 0 ? 1 : precision);
        }
        if (upper)
            body = body.toUpper();
        m_out += padded(conversion, sign + body, sign.size(), std::isfinite(value));
    }

    QStringView m_format;
    std::span<const FormatArgument> m_arguments;
    std::size_t m_next = 0;
    QString m_out;
};

QString formatArguments(QStringView format, std::span<const FormatArgument> arguments)
{
    return Formatter(format, arguments).run();
}

QString describe(const QString &text)
{
    return text.isNull() ? absentText : text;
}

QString describe(const QUrl &url)
{
    return url.isEmpty() ? absentText : url.toString(QUrl::FullyEncoded);
}

QString describe(const QStringList &list)
{
    return u"(" + list.join(u", ") + u")";
}

QString describe(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
    case QJsonValue::Undefined: return absentText;
    case QJsonValue::String: return value.toString();
    case QJsonValue::Object: return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    case QJsonValue::Array: return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    default: return value.toVariant().toString();
    }
}

} // namespace kx
