// SPDX-License-Identifier: MIT
#include "QueryDecoding.h"

#include <KXFoundation/Platform/Core/PercentEncoding.h>

#include <algorithm>
#include <optional>
#include <thread>
#include <utility>

namespace kx {

namespace {

// Characters of a query without a meaning of their own; encoding leaves them alone, too.
constexpr AsciiSet plain{"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$'()*+,;:@/?"};

// One of the texts between the "&"s.
struct Piece {
    QStringView key; // up to the first "="
    QStringView value; // from the last "="; without any, key and value are the whole piece
    bool plainKey; // nothing in the key changes when it is encoded
    bool plainValue; // no "%" in the value
    const char16_t *end; // at the "&" or at the end of the query
};

Piece readPiece(const char16_t *const begin, const char16_t *const end)
{
    const char16_t *firstEqual = nullptr;
    const char16_t *valueBegin = begin;
    bool plainKey = true;
    bool plainValue = true;
    const char16_t *at = begin;
    for (; at < end; ++at) {
        const char16_t c = *at;
        if (plain.contains(c))
            continue;
        if (c == u'&')
            break;
        if (c == u'=') {
            if (!firstEqual)
                firstEqual = at;
            valueBegin = at + 1;
            plainValue = true;
        } else {
            plainKey = plainKey && firstEqual;
            plainValue = plainValue && c != u'%';
        }
    }
    const char16_t *const keyEnd = firstEqual ? firstEqual : at;
    return {{begin, keyEnd - begin}, {valueBegin, at - valueBegin}, plainKey, plainValue, at};
}

} // namespace

DecodedValue decodeRepeatedly(QStringView value, QueryForm form, const std::atomic<int> &passLimit)
{
    // Steps, in this order:
    // 1. decode once (of a raw value, that and the encoding before it cancel out);
    // 2. while the text is absent or has a "%", decode it again. Deliberate: an absent text stays absent, so only the
    //    limit ends that.
    DecodedValue result{QString(), 1};
    QStringView last = value; // the last text that there was
    bool absent = false;
    const auto decode = [&] {
        if (absent) {
            std::this_thread::yield(); // nothing is left to decode: at least let others run
        } else if (std::optional<QString> decoded = removePercentEncoding(last)) {
            result.text = *std::move(decoded);
            last = result.text;
        } else {
            absent = true;
        }
    };
    if (form == QueryForm::Encoded)
        decode();
    while (absent || last.contains(u'%')) {
        const int limit = passLimit.load(std::memory_order_relaxed);
        if (limit > 0 && result.passes >= quint64(limit))
            break;
        ++result.passes;
        decode();
    }
    if (last.data() == value.data())
        result.text = value.toString();
    return result;
}

QHash<QString, QString> parseQuery(QStringView query, QueryForm form, const std::atomic<int> &passLimit)
{
    QHash<QString, QString> map;
    if (query.size() < 2)
        return map;
    const char16_t *const end = query.utf16() + query.size();
    constexpr qsizetype mostReserved = 256; // so that a row of "&" costs no memory
    map.reserve(std::min<qsizetype>(std::count(query.utf16(), end, u'&') + 1, mostReserved));
    for (const char16_t *begin = query.utf16();;) {
        const Piece piece = readPiece(begin, end);
        QString key = form == QueryForm::Raw && !piece.plainKey ? *addPercentEncoding(piece.key, urlQueryAllowed)
                                                                : piece.key.toString();
        // Without a "%", decoding changes nothing.
        QString value = piece.plainValue ? piece.value.toString() : decodeRepeatedly(piece.value, form, passLimit).text;
        map.emplace(std::move(key), std::move(value));
        if (piece.end == end)
            return map;
        begin = piece.end + 1;
    }
}

} // namespace kx
