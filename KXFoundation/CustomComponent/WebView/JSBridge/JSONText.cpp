// SPDX-License-Identifier: MIT
#include "JSONText.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

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

} // namespace kx
