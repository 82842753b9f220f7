// SPDX-License-Identifier: MIT
#include "FormatValue.h"

#include <QtCore/QLocale>

#include <cmath>
#include <limits>

namespace kx {

qint64 FormatValue::toSigned() const
{
    if (m_argument.m_kind == Kind::Real) {
        const double value = m_argument.m_real;
        if (std::isnan(value))
            return 0;
        if (value >= 0x1p63)
            return std::numeric_limits<qint64>::max();
        return value < -0x1p63 ? std::numeric_limits<qint64>::min() : qint64(value);
    }
    if (!isNumber())
        return 0;
    // Smaller integers are promoted with their value, those of int's size are read as int.
    return m_argument.m_size == 4 ? qint32(m_argument.m_integer) : qint64(m_argument.m_integer);
}

quint64 FormatValue::toUnsigned() const
{
    if (m_argument.m_kind == Kind::Real)
        return m_argument.m_real >= 0x1p64 ? std::numeric_limits<quint64>::max()
            : m_argument.m_real >= 0x1p63  ? quint64(m_argument.m_real)
                                           : quint64(toSigned());
    return m_argument.m_size <= 4 ? quint32(m_argument.m_integer) : m_argument.m_integer;
}

double FormatValue::toReal() const
{
    switch (m_argument.m_kind) {
    case Kind::Real: return m_argument.m_real;
    case Kind::Signed: return double(qint64(m_argument.m_integer));
    default: return double(m_argument.m_integer);
    }
}

void FormatValue::append(TextBuffer &out, const FormatField &field) const
{
    switch (field.letter) {
    case u'd':
    case u'D':
    case u'i':
        if (isNumber())
            return appendSigned(out, field, toSigned());
        break;
    case u'u':
    case u'U':
    case u'x':
    case u'X':
    case u'o':
    case u'O':
        if (isNumber())
            return appendUnsigned(out, field, toUnsigned());
        break;
    case u'c':
    case u'C':
        if (isInteger())
            return appendCharacter(out, field);
        break;
    case u'p':
        if (isInteger())
            return appendPointer(out, field, m_argument.m_integer);
        break;
    case u's':
    case u'S':
    case u'@': break;
    default:
        if (isNumber())
            return appendReal(out, field, toReal());
    }
    appendDescription(out, field);
}

void FormatValue::appendCharacter(TextBuffer &out, const FormatField &field) const
{
    // A char is the byte that it is, whether its type is signed or not.
    const quint64 code = m_argument.m_size == 1 ? quint8(m_argument.m_integer) : m_argument.m_integer;
    FormatField unlimited = field;
    unlimited.precision = -1;
    if (code > QChar::LastValidCodePoint)
        return appendText(out, unlimited, u"\uFFFD");
    const auto units = QChar::fromUcs4(char32_t(code));
    appendText(out, unlimited, units);
}

void FormatValue::appendDescription(TextBuffer &out, const FormatField &field) const
{
    FormatField plain;
    plain.letter = u'u';
    TextBuffer text;
    TextBuffer &target = field.isPlain() ? out : text;
    switch (m_argument.m_kind) {
    case Kind::Signed: appendSigned(target, plain, qint64(m_argument.m_integer)); break;
    case Kind::Bool:
    case Kind::Unsigned: appendUnsigned(target, plain, m_argument.m_integer); break;
    case Kind::Real: target.append(QString::number(m_argument.m_real, 'g', QLocale::FloatingPointShortest)); break;
    case Kind::Pointer: appendPointer(target, plain, m_argument.m_integer); break;
    case Kind::Text:
    case Kind::Utf8:
        if (!m_argument.m_data)
            target.append(u"(null)");
        else if (m_argument.m_kind == Kind::Utf8)
            target.appendUtf8({static_cast<const char *>(m_argument.m_data), m_argument.m_length});
        else
            target.append(QStringView(static_cast<const char16_t *>(m_argument.m_data), m_argument.m_length));
    }
    if (&target == &text)
        appendText(out, field, text.view());
}

} // namespace kx
