// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Format.h>

#include "FormatText.h"
#include "FormatValue.h"

#include <KXFoundation/Platform/Core/AsciiSet.h>

#include <algorithm>

namespace kx {

namespace {

// Literal runs are short: a plain loop beats a call of the library's search.
template <class View> qsizetype indexOfPercent(View text, qsizetype from)
{
    for (qsizetype i = from; i < text.size(); ++i) {
        if (text.data()[i] == u'%')
            return i;
    }
    return -1;
}

constexpr AsciiSet lengthModifiers("hljztqL");
constexpr AsciiSet conversions("@diuxXoDUOcCsSfFeEgGaAp");

void appendLiteral(TextBuffer &out, QStringView text)
{
    out.append(text);
}

void appendLiteral(TextBuffer &out, QByteArrayView text)
{
    out.appendUtf8(text);
}

// Everything but literal text is ASCII, so UTF-16 and UTF-8 formats are read by the same steps.
template <class View> class Formatter {
public:
    Formatter(TextBuffer &out, View format, std::span<const FormatArgument> arguments)
        : m_out(out)
        , m_format(format)
        , m_arguments(arguments)
    {
    }

    void run()
    {
        while (true) {
            if constexpr (std::is_same_v<View, QByteArrayView>)
                m_at += m_out.appendAsciiUntil('%', m_format.sliced(m_at));
            const qsizetype percent = indexOfPercent(m_format, m_at);
            if (percent < 0)
                break;
            appendLiteral(m_out, m_format.sliced(m_at, percent - m_at));
            m_at = percent + 1;
            if (!convert())
                appendLiteral(m_out, m_format.sliced(percent, m_at - percent)); // stands as it is
        }
        appendLiteral(m_out, m_format.sliced(m_at));
    }

private:
    // Reads the conversion behind a "%" and prints it; false when there is nothing to print.
    bool convert()
    {
        if (peek() == u'%') {
            ++m_at;
            m_out.append(u'%');
            return true;
        }
        FormatField field;
        readFlags(field);
        field.width = readNumber(0);
        if (field.width < 0) {
            field.left = true;
            field.width = -field.width;
        }
        if (peek() == u'.') {
            ++m_at;
            field.precision = readNumber(0);
        }
        while (lengthModifiers.contains(peek()))
            ++m_at;
        field.letter = peek();
        if (m_at < m_format.size() && field.letter < 0x80)
            ++m_at;
        if (!conversions.contains(field.letter))
            return false;
        const FormatArgument *argument = next();
        if (argument)
            FormatValue(*argument).append(m_out, field);
        return argument;
    }

    void readFlags(FormatField &field)
    {
        for (;; ++m_at) {
            switch (peek()) {
            case u'-': field.left = true; break;
            case u'+': field.plus = true; break;
            case u' ': field.blank = true; break;
            case u'#': field.alternate = true; break;
            case u'0': field.zero = true; break;
            default: return;
            }
        }
    }

    int readNumber(int absent)
    {
        if (peek() == u'*') {
            ++m_at;
            const FormatArgument *argument = next();
            constexpr qint64 widest = FormatField::widest;
            return argument ? int(std::clamp(FormatValue(*argument).toSigned(), -widest, widest)) : absent;
        }
        int value = absent;
        for (; peek() >= u'0' && peek() <= u'9'; ++m_at)
            value = std::min(value * 10 + (peek() - u'0'), FormatField::widest);
        return value;
    }

    // 0 at the end; bytes of a longer UTF-8 sequence come out above 0x7F.
    [[nodiscard]] char16_t peek() const
    {
        if (m_at >= m_format.size())
            return 0;
        if constexpr (std::is_same_v<View, QStringView>)
            return m_format[m_at].unicode();
        else
            return static_cast<unsigned char>(m_format[m_at]);
    }

    const FormatArgument *next() { return m_next < m_arguments.size() ? &m_arguments[m_next++] : nullptr; }

    TextBuffer &m_out;
    View m_format;
    std::span<const FormatArgument> m_arguments;
    std::size_t m_next = 0;
    qsizetype m_at = 0;
};

} // namespace

void appendFormatted(TextBuffer &out, QStringView format, std::span<const FormatArgument> arguments)
{
    Formatter(out, format, arguments).run();
}

void appendFormatted(TextBuffer &out, const char *utf8Format, std::span<const FormatArgument> arguments)
{
    Formatter(out, QByteArrayView(utf8Format), arguments).run();
}

QString formatArguments(QStringView format, std::span<const FormatArgument> arguments)
{
    TextBuffer out;
    appendFormatted(out, format, arguments);
    return out.view().toString();
}

QString formatArguments(const char *format, std::span<const FormatArgument> arguments)
{
    TextBuffer out;
    appendFormatted(out, format, arguments);
    return out.view().toString();
}

} // namespace kx
