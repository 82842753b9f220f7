// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/Category/StringUrlEncode.h>

#include <QtCore/QUrl>

#include <algorithm>

using kx::fuzz::check;

namespace {

constexpr int passLimit = 4;

// The value after its passes, by another decoder.
QString naiveValue(QString value)
{
    for (int pass = 0; pass < passLimit && (pass == 0 || value.contains(u'%')); ++pass) {
        const QString decoded = kx::DecodeUtf8String(value);
        if (decoded.isEmpty() && !value.isEmpty())
            break;
        value = decoded;
    }
    return value;
}

QHash<QString, QString> naiveMap(const QString &query)
{
    QHash<QString, QString> map;
    for (const QString &piece : query.size() < 2 ? QStringList() : query.split(u'&')) {
        const qsizetype equals = piece.indexOf(u'=');
        map.insert(equals < 0 ? piece : piece.first(equals), naiveValue(piece.sliced(piece.lastIndexOf(u'=') + 1)));
    }
    return map;
}

} // namespace

// Any bytes, as a URL that somebody wrote and as one that a program made.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    KXActionItem::setDecodePassLimit(passLimit);
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    if (const std::optional<KXActionItem> item = KXActionItem::initWithURLString(text)) {
        const QHash<QString, QString> map = item->queryMap();
        check(map == naiveMap(item->query()), "the pairs are right");
        KXActionItem again;
        again.setQuery(item->query());
        check(again.queryMap() == map, "the encoded query has the same pairs");
    }
    if (const std::optional<kx::Url> url = kx::Url::parse(text)) {
        const KXActionItem item = KXActionItem::initWithURL(*url);
        check(item.scheme() == url->scheme && item.host() == url->host && item.port() == url->port
                && item.path() == url->path && item.query() == url->query,
            "the components are taken over");
        check(item.queryMap().size() <= url->query.count(u'&') + 1, "there are no more pairs than pieces");
    }
    (void)KXActionItem::initWithURL(QUrl(text)).queryMap();
    return 0;
}
