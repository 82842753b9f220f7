// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionItem.h>

#include "QueryDecoding.h"

#include <KXFoundation/Platform/Core/PercentEncoding.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace {
std::atomic<int> passLimit = 0;
}

std::optional<KXActionItem> KXActionItem::actionItemWithString(const QString &string)
{
    return initWithURLString(string);
}

std::optional<KXActionItem> KXActionItem::initWithURLString(const QString &urlString)
{
    // Steps, in this order: trim, encode, parse. Encoding goes character by character and leaves "?" alone, and what it
    // gives always is a query; so the query is cut off first, and encoded when somebody asks for it.
    const QStringView trimmed = QStringView(urlString).trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    const QChar *const mark = std::find(trimmed.begin(), trimmed.end(), u'?');
    const QStringView head(trimmed.begin(), mark);
    std::optional<kx::Url> url;
    if (kx::urlQueryAllowed.containsAll(head))
        url = kx::Url::parse(head);
    else if (const std::optional<QString> encoded = kx::addPercentEncoding(head, kx::urlQueryAllowed))
        url = kx::Url::parse(*encoded);
    if (!url)
        return std::nullopt;
    std::optional<KXActionItem> item = KXActionItem(*std::move(url));
    if (mark != trimmed.end()) {
        const QStringView query(mark + 1, trimmed.end());
        if (!kx::isPaired(query))
            return std::nullopt;
        item->m_source = urlString;
        item->m_rawQuery = {query.data() - urlString.constData(), query.size()};
    }
    return item;
}

KXActionItem::KXActionItem(kx::Url &&url)
    : m_url(std::move(url))
{
}

KXActionItem KXActionItem::initWithURL(kx::Url url)
{
    return KXActionItem(std::move(url));
}

const QString &KXActionItem::query() const
{
    if (!m_source.isNull() && m_url.query.isNull())
        m_url.query = *kx::addPercentEncoding(rawQuery(), kx::urlQueryAllowed);
    return m_url.query;
}

void KXActionItem::setQuery(const QString &query)
{
    m_url.query = query;
    m_source.clear();
}

QStringView KXActionItem::rawQuery() const
{
    return QStringView(m_source).sliced(m_rawQuery.begin, m_rawQuery.length);
}

const QHash<QString, QString> &KXActionItem::queryMap() const
{
    using kx::QueryForm;
    if (!m_queryMap) {
        // A single character may become several when it is encoded, and only then is a pair: see parseQuery().
        const bool raw = !m_source.isNull() && m_rawQuery.length > 1;
        m_queryMap = raw ? kx::parseQuery(rawQuery(), QueryForm::Raw, passLimit)
                         : kx::parseQuery(query(), QueryForm::Encoded, passLimit);
    }
    return *m_queryMap;
}

void KXActionItem::setDecodePassLimit(int limit)
{
    passLimit.store(std::max(limit, 0), std::memory_order_relaxed);
}

int KXActionItem::decodePassLimit()
{
    return passLimit.load(std::memory_order_relaxed);
}
