// SPDX-License-Identifier: MIT
#include "JSONWriter.h"

#include <KXFoundation/Platform/Core/TextBuffer.h>

#include <QtCore/QJsonArray>

#include <array>
#include <charconv>
#include <cmath>

namespace kx {

namespace {

// The indentation is four blanks a level.
class Writer {
public:
    explicit Writer(int nestingLimit)
        : m_depthLimit(nestingLimit)
    {
    }

    [[nodiscard]] QString text() const { return m_out.view().toString(); }

    template <class Value> void write(const Value &value)
    {
        switch (value.type()) {
        case QJsonValue::Bool: m_out.append(value.toBool() ? u"true" : u"false"); break;
        case QJsonValue::Double: writeNumber(value.toInteger(0), value.toInteger(1), value.toDouble()); break;
        case QJsonValue::String: writeString(value.toString()); break;
        case QJsonValue::Array: writeArray(value.toArray()); break;
        case QJsonValue::Object: writeObject(value.toObject()); break;
        default: m_out.append(u"null");
        }
    }

private:
    // A number is an integer exactly if its integer value does not depend on the default that stands for "none". NaN
    // has to go first: it passes for an integer.
    void writeNumber(qint64 integer, qint64 again, double real)
    {
        if (!std::isfinite(real))
            m_out.append(u"null");
        else if (integer == again)
            writeDigits(integer);
        else
            writeDigits(real);
    }

    template <class Number> void writeDigits(Number number)
    {
        std::array<char, 32> digits; // the longest double takes 24
        const char *const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        m_out.appendAscii({digits.data(), std::size_t(end - digits.data())});
    }

    void writeString(const QString &text)
    {
        const QStringView view(text);
        qsizetype written = 0;
        m_out.append(u'"');
        for (qsizetype at = 0; at < view.size(); ++at) {
            const char16_t unit = view[at].unicode();
            if (unit >= 0x20 && unit != u'"' && unit != u'\\' && unit < 0x2028) [[likely]]
                continue;
            if (QChar::isHighSurrogate(unit) && at + 1 < view.size() && view[at + 1].isLowSurrogate()) {
                ++at;
                continue;
            }
            if (unit > 0x2029 && !QChar::isSurrogate(unit))
                continue;
            m_out.append(view.sliced(written, at - written));
            writeEscaped(unit);
            written = at + 1;
        }
        m_out.append(view.sliced(written));
        m_out.append(u'"');
    }

    void writeEscaped(char16_t unit)
    {
        m_out.append(u'\\');
        switch (unit) {
        case u'"':
        case u'\\': m_out.append(unit); break;
        case u'\b': m_out.append(u'b'); break;
        case u'\f': m_out.append(u'f'); break;
        case u'\n': m_out.append(u'n'); break;
        case u'\r': m_out.append(u'r'); break;
        case u'\t': m_out.append(u't'); break;
        default:
            m_out.append(u'u');
            for (int shift = 12; shift >= 0; shift -= 4)
                m_out.append(u"0123456789abcdef"[(unit >> shift) & 0xF]);
        }
    }

    void writeArray(const QJsonArray &array)
    {
        if (!open(u'[', array.isEmpty(), u"[]"))
            return;
        for (auto it = array.begin(); it != array.end(); ++it) {
            newLine(it == array.begin());
            write(*it);
        }
        close(u']');
    }

    void writeObject(const QJsonObject &object)
    {
        if (!open(u'{', object.isEmpty(), u"{}"))
            return;
        for (auto it = object.begin(); it != object.end(); ++it) {
            newLine(it == object.begin());
            writeString(it.key());
            m_out.append(u": ");
            write(it.value());
        }
        close(u'}');
    }

    // Begins a container; false when nothing of it is left to write.
    bool open(char16_t bracket, bool isEmpty, QStringView emptyText)
    {
        if (m_depth == m_depthLimit || isEmpty) {
            m_out.append(m_depth == m_depthLimit ? u"null" : emptyText);
            return false;
        }
        ++m_depth;
        m_out.append(bracket);
        return true;
    }

    void close(char16_t bracket)
    {
        --m_depth;
        newLine(true);
        m_out.append(bracket);
    }

    void newLine(bool first)
    {
        m_out.append(first ? u"\n" : u",\n");
        m_out.appendFill(qsizetype(4) * m_depth, u' ');
    }

    TextBuffer m_out;
    int m_depth = 0;
    int m_depthLimit;
};

} // namespace

QString indentedJSON(const QJsonObject &object, int nestingLimit)
{
    // The message and its body come on top of what the limit grants to the data.
    Writer writer(nestingLimit + 2);
    writer.write(QJsonValue(object));
    return writer.text();
}

} // namespace kx
