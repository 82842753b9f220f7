// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/JSBridge/JSONText.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>

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

// Writes into a string that grows; the indentation is four blanks a level.
class Writer {
public:
    explicit Writer(int nestingLimit)
        : m_depthLimit(nestingLimit)
    {
        m_out.reserve(512);
    }

    QString take() { return std::move(m_out); }

    template <class Value> void write(const Value &value)
    {
        switch (value.type()) {
        case QJsonValue::Bool: m_out += value.toBool() ? QLatin1String("true") : QLatin1String("false"); break;
        case QJsonValue::Double: writeNumber(value.toInteger(0), value.toInteger(1), value.toDouble()); break;
        case QJsonValue::String: writeString(value.toString()); break;
        case QJsonValue::Array: writeArray(value.toArray()); break;
        case QJsonValue::Object: writeObject(value.toObject()); break;
        default: m_out += QLatin1String("null");
        }
    }

private:
    // A number is an integer exactly if its integer value does not depend on the default that stands for "none". NaN
    // has to go first: it passes for an integer.
    void writeNumber(qint64 integer, qint64 again, double real)
    {
        if (!std::isfinite(real))
            m_out += QLatin1String("null");
        else if (integer == again)
            m_out += QString::number(integer);
        else
            m_out += QString::number(real, 'g', QLocale::FloatingPointShortest);
    }

    void writeString(const QString &text)
    {
        const QChar *const end = text.cend();
        const QChar *written = text.cbegin();
        m_out += u'"';
        for (const QChar *at = written; at != end; ++at) {
            const char16_t unit = at->unicode();
            if (unit >= 0x20 && unit != u'"' && unit != u'\\' && unit < 0x2028) [[likely]]
                continue;
            if (QChar::isHighSurrogate(unit) && at + 1 != end && at[1].isLowSurrogate()) {
                ++at;
                continue;
            }
            if (unit > 0x2029 && !QChar::isSurrogate(unit))
                continue;
            m_out.append(written, at - written);
            writeEscaped(unit);
            written = at + 1;
        }
        m_out.append(written, end - written);
        m_out += u'"';
    }

    void writeEscaped(char16_t unit)
    {
        m_out += u'\\';
        switch (unit) {
        case u'"':
        case u'\\': m_out += QChar(unit); break;
        case u'\b': m_out += u'b'; break;
        case u'\f': m_out += u'f'; break;
        case u'\n': m_out += u'n'; break;
        case u'\r': m_out += u'r'; break;
        case u'\t': m_out += u't'; break;
        default: m_out += u'u' + QString::number(unit, 16).rightJustified(4, u'0');
        }
    }

    void writeArray(const QJsonArray &array)
    {
        if (!open(u'[', array.isEmpty(), QLatin1String("[]")))
            return;
        for (auto it = array.begin(); it != array.end(); ++it) {
            newLine(it == array.begin());
            write(*it);
        }
        close(u']');
    }

    void writeObject(const QJsonObject &object)
    {
        if (!open(u'{', object.isEmpty(), QLatin1String("{}")))
            return;
        for (auto it = object.begin(); it != object.end(); ++it) {
            newLine(it == object.begin());
            writeString(it.key());
            m_out += QLatin1String(": ");
            write(it.value());
        }
        close(u'}');
    }

    // Begins a container; false when nothing of it is left to write.
    bool open(char16_t bracket, bool isEmpty, QLatin1String emptyText)
    {
        if (m_depth == m_depthLimit) {
            m_out += QLatin1String("null");
            return false;
        }
        if (isEmpty) {
            m_out += emptyText;
            return false;
        }
        ++m_depth;
        m_out += bracket;
        return true;
    }

    void close(char16_t bracket)
    {
        --m_depth;
        newLine(true);
        m_out += bracket;
    }

    void newLine(bool first)
    {
        m_out += first ? QLatin1String("\n") : QLatin1String(",\n");
        m_out.resize(m_out.size() + 4 * m_depth, u' ');
    }

    QString m_out;
    int m_depth = 0;
    int m_depthLimit;
};

} // namespace

QJsonObject parseJSONObject(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
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
