// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/JSBridge/JSONText.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace kx {

namespace {

enum class Kept { AsItIs, Changed, Nothing };

template <class Value> Kept clean(const Value &value, int depthLeft, QJsonValue &changed);

// Copies nothing up to the first member that is not kept as it is.
Kept cleanArray(const QJsonArray &in, int depthLeft, QJsonValue &changed)
{
    QJsonArray out;
    bool same = true;
    for (auto it = in.begin(); it != in.end(); ++it) {
        QJsonValue inner;
        const Kept kept = clean(*it, depthLeft, inner);
        if (same && kept != Kept::AsItIs) {
            same = false;
            std::for_each(in.begin(), it, [&](const QJsonValue &earlier) { out.append(earlier); });
        }
        if (!same && kept != Kept::Nothing)
            out.append(kept == Kept::Changed ? inner : *it);
    }
    if (same)
        return Kept::AsItIs;
    changed = out;
    return Kept::Changed;
}

Kept cleanObject(const QJsonObject &in, int depthLeft, QJsonValue &changed)
{
    QJsonObject out;
    bool same = true;
    for (auto it = in.begin(); it != in.end(); ++it) {
        QJsonValue inner;
        const Kept kept = clean(it.value(), depthLeft, inner);
        if (same && kept != Kept::AsItIs) {
            same = false;
            for (auto earlier = in.begin(); earlier != it; ++earlier)
                out.insert(earlier.key(), earlier.value());
        }
        if (!same && kept != Kept::Nothing)
            out.insert(it.key(), kept == Kept::Changed ? inner : it.value());
    }
    if (same)
        return Kept::AsItIs;
    changed = out;
    return Kept::Changed;
}

template <class Value> Kept clean(const Value &value, int depthLeft, QJsonValue &changed)
{
    switch (value.type()) {
    case QJsonValue::Null:
    case QJsonValue::Undefined: return Kept::Nothing;
    case QJsonValue::Array: return depthLeft > 0 ? cleanArray(value.toArray(), depthLeft - 1, changed) : Kept::Nothing;
    case QJsonValue::Object:
        return depthLeft > 0 ? cleanObject(value.toObject(), depthLeft - 1, changed) : Kept::Nothing;
    default: return Kept::AsItIs;
    }
}

bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

// Moves from behind the quote that begins a string to behind the one that ends it; null where the string is none.
const char16_t *passString(const char16_t *at, const char16_t *const end)
{
    for (; at < end; ++at) {
        if (*at == u'"')
            return at + 1;
        if (*at < 0x20 || (*at == u'\\' && (++at == end || !QStringView(u"\"\\/bfnrtu").contains(QChar(*at)))))
            return nullptr;
    }
    return nullptr;
}

// Whether the text is free of what Qt's parser lets pass though it is no JSON (RFC 8259): control characters and
// unknown escapes in strings, and a decimal point without a digit on both sides.
bool isStrict(QStringView text)
{
    const char16_t *const begin = text.utf16();
    const char16_t *const end = begin + text.size();
    for (const char16_t *at = begin; at < end;) {
        const char16_t unit = *at++;
        if (unit == u'"') {
            at = passString(at, end);
            if (!at)
                return false;
        } else if (unit == u'.' && (at - begin < 2 || at == end || !isDigit(at[-2]) || !isDigit(*at))) {
            return false;
        }
    }
    return true;
}

// Text that grows by units and short runs: QString's own append() costs more than the JSON around it.
class TextBuffer {
public:
    void add(char16_t unit)
    {
        makeRoom(1);
        *m_at++ = unit;
    }
    void add(QStringView run)
    {
        makeRoom(run.size());
        m_at = std::copy(run.utf16(), run.utf16() + run.size(), m_at);
    }
    void addAscii(const char *begin, const char *end)
    {
        makeRoom(end - begin);
        m_at = std::copy(begin, end, m_at);
    }
    void addBlanks(qsizetype count)
    {
        makeRoom(count);
        m_at = std::fill_n(m_at, count, u' ');
    }
    QString take()
    {
        m_text.truncate(m_at - begin());
        return std::move(m_text);
    }

private:
    char16_t *begin() { return reinterpret_cast<char16_t *>(m_text.data()); }
    void makeRoom(qsizetype count)
    {
        if (m_end - m_at >= count) [[likely]]
            return;
        const qsizetype used = m_at - begin();
        m_text.resize(std::max<qsizetype>(2 * m_text.size(), used + count + 1024));
        m_at = begin() + used;
        m_end = begin() + m_text.size();
    }

    QString m_text;
    char16_t *m_at = begin();
    char16_t *m_end = m_at;
};

// The indentation is four blanks a level.
class Writer {
public:
    explicit Writer(int nestingLimit)
        : m_depthLimit(nestingLimit)
    {
    }

    QString take() { return m_out.take(); }

    template <class Value> void write(const Value &value)
    {
        switch (value.type()) {
        case QJsonValue::Bool: m_out.add(value.toBool() ? u"true" : u"false"); break;
        case QJsonValue::Double: writeNumber(value.toInteger(0), value.toInteger(1), value.toDouble()); break;
        case QJsonValue::String: writeString(value.toString()); break;
        case QJsonValue::Array: writeArray(value.toArray()); break;
        case QJsonValue::Object: writeObject(value.toObject()); break;
        default: m_out.add(u"null");
        }
    }

private:
    // A number is an integer exactly if its integer value does not depend on the default that stands for "none". NaN
    // has to go first: it passes for an integer.
    void writeNumber(qint64 integer, qint64 again, double real)
    {
        std::array<char, 32> digits; // the longest double takes 24
        if (!std::isfinite(real))
            m_out.add(u"null");
        else if (integer == again)
            m_out.addAscii(digits.data(), std::to_chars(digits.begin(), digits.end(), integer).ptr);
        else
            m_out.addAscii(digits.data(), std::to_chars(digits.begin(), digits.end(), real).ptr);
    }

    void writeString(const QString &text)
    {
        const QStringView view(text);
        qsizetype written = 0;
        m_out.add(u'"');
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
            m_out.add(view.sliced(written, at - written));
            writeEscaped(unit);
            written = at + 1;
        }
        m_out.add(view.sliced(written));
        m_out.add(u'"');
    }

    void writeEscaped(char16_t unit)
    {
        m_out.add(u'\\');
        switch (unit) {
        case u'"':
        case u'\\': m_out.add(unit); break;
        case u'\b': m_out.add(u'b'); break;
        case u'\f': m_out.add(u'f'); break;
        case u'\n': m_out.add(u'n'); break;
        case u'\r': m_out.add(u'r'); break;
        case u'\t': m_out.add(u't'); break;
        default:
            m_out.add(u'u');
            for (int shift = 12; shift >= 0; shift -= 4)
                m_out.add(u"0123456789abcdef"[(unit >> shift) & 0xF]);
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
            m_out.add(u": ");
            write(it.value());
        }
        close(u'}');
    }

    // Begins a container; false when nothing of it is left to write.
    bool open(char16_t bracket, bool isEmpty, QStringView emptyText)
    {
        if (m_depth == m_depthLimit || isEmpty) {
            m_out.add(m_depth == m_depthLimit ? u"null" : emptyText);
            return false;
        }
        ++m_depth;
        m_out.add(bracket);
        return true;
    }

    void close(char16_t bracket)
    {
        --m_depth;
        newLine(true);
        m_out.add(bracket);
    }

    void newLine(bool first)
    {
        m_out.add(first ? u"\n" : u",\n");
        m_out.addBlanks(qsizetype(4) * m_depth);
    }

    TextBuffer m_out;
    int m_depth = 0;
    int m_depthLimit;
};

} // namespace

QJsonObject parseJSONObject(const QString &text)
{
    return isStrict(text) ? QJsonDocument::fromJson(text.toUtf8()).object() : QJsonObject();
}

bool nestsDeeper(const QJsonValue &value, int limit)
{
    const auto anyDeeper = [limit](const auto &container) {
        return limit == 0 || std::any_of(container.begin(), container.end(), [limit](const QJsonValue &member) {
            return nestsDeeper(member, limit - 1);
        });
    };
    return value.isArray() ? anyDeeper(value.toArray()) : value.isObject() && anyDeeper(value.toObject());
}

QJsonValue withoutJSONNulls(const QJsonValue &value, int nestingLimit)
{
    QJsonValue changed;
    switch (clean(value, nestingLimit, changed)) {
    case Kept::AsItIs: return value;
    case Kept::Changed: return changed;
    case Kept::Nothing: break;
    }
    return QJsonValue::Undefined;
}

QString indentedJSON(const QJsonObject &object, int nestingLimit)
{
    // The message and its body come on top of what the limit grants to the data.
    Writer writer(nestingLimit + 2);
    writer.write(QJsonValue(object));
    return writer.take();
}

} // namespace kx
