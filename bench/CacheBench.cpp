// SPDX-License-Identifier: MIT
// Four reads to one write of random keys, a fifth of which the cache has no room for.
#include "Row.h"

#include <KXFoundation/MemoryCache/KXMemoryCache.h>

#include <QtCore/QCache>
#include <QtCore/QString>

#include <random>
#include <vector>

namespace {

struct Step {
    quint32 key;
    bool set;
};

struct Trace {
    std::vector<QString> keys;
    std::vector<Step> steps;

    explicit Trace(quint32 limit)
    {
        std::mt19937 random(limit); // the same steps for both sides
        const quint32 count = limit + limit / 4 + 1;
        for (quint32 i = 0; i < count; ++i)
            keys.push_back(QStringLiteral("thumbnail/clip-%1").arg(i * 7919 % 100'000, 6, 10, QChar(u'0')));
        for (int i = 0; i < 65536; ++i)
            steps.push_back({quint32(random() % count), random() % 5 == 0});
    }
};

void ours(benchmark::State &state, quint32 limit)
{
    const Trace trace(limit);
    KXMemoryCache<QString, int> cache;
    cache.setCountLimit(limit);
    qint64 sum = 0;
    std::size_t at = 0;
    while (state.KeepRunning()) {
        const Step step = trace.steps[at++ % trace.steps.size()];
        const QString &key = trace.keys[step.key];
        if (step.set)
            cache.setObject(int(at), key);
        else
            sum += cache.objectForKey(key).value_or(0);
    }
    benchmark::DoNotOptimize(sum);
}

void peer(benchmark::State &state, quint32 limit)
{
    const Trace trace(limit);
    QCache<QString, int> cache(limit);
    qint64 sum = 0;
    std::size_t at = 0;
    while (state.KeepRunning()) {
        const Step step = trace.steps[at++ % trace.steps.size()];
        const QString &key = trace.keys[step.key];
        if (step.set) {
            cache.insert(key, new int(int(at)));
        } else {
            const int *value = cache.object(key);
            sum += value ? *value : 0;
        }
    }
    benchmark::DoNotOptimize(sum);
}

bool row(const char *name, quint32 limit, const char *floor)
{
    return kx::bench::timed(
        {name, "ns", 0.75, floor}, [limit](auto &state) { ours(state, limit); },
        [limit](auto &state) { peer(state, limit); });
}

const bool registered =
    row("cache.3", 3, "scan") && row("cache.64", 64, "one slot") && row("cache.10000", 10'000, "one slot");

} // namespace
