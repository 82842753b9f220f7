// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/Platform/Core/Format.h>

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

#include <functional>

namespace {

using Map = QHash<QString, QString>;

// An action as pages send it: one parameter is a URL of its own.
QString shortUrl()
{
    return QStringLiteral("kx://action.cmd/play?url=http%3A%2F%2Fa.tv%2Fv%3Fp%3D1&id=7&t=12.5");
}

// 50 pairs, every second value with escapes.
QString longUrl()
{
    QString text = QStringLiteral("kx://action.cmd/playlist/append?");
    for (int i = 0; i < 50; ++i) {
        if (i > 0)
            text += u'&';
        text += i % 2 == 0 ? kx::format(u"parameter%d=clip%%20number%%20%d%%3A%%20%%2Fa%%2F", i, i)
                           : kx::format(u"parameter%d=a-plain-value-letters-%d", i, i);
    }
    return text;
}

Map readByUs(const QString &text)
{
    const std::optional<KXActionItem> item = KXActionItem::actionItemWithString(text);
    return item->queryMap();
}

Map readByPeer(const QString &text)
{
    const QUrl url(text);
    Map map;
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto &[key, value] : items)
        map.insert(key, value);
    return map;
}

kx::bench::Work reading(const QString &text, const std::function<Map(const QString &)> &read)
{
    return [=](benchmark::State &state) {
        if (read(text) != readByPeer(text)) {
            state.SkipWithError("the two readings differ");
            return;
        }
        for (auto _ : state)
            benchmark::DoNotOptimize(read(text));
        state.SetBytesProcessed(state.iterations() * text.size());
    };
}

// The one copy that decoding cannot do without.
kx::bench::Work copying(const QString &text)
{
    return [=](benchmark::State &state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(QString(text.constData(), text.size()));
    };
}

const bool registered[] = {
    kx::bench::timed(
        {"url.66B", "ns", 0.45}, reading(shortUrl(), readByUs), reading(shortUrl(), readByPeer), copying(shortUrl())),
    kx::bench::timed(
        {"url.2kB", "ns", 0.5}, reading(longUrl(), readByUs), reading(longUrl(), readByPeer), copying(longUrl())),
};

} // namespace
