// SPDX-License-Identifier: MIT
#include <KXFoundation/MemoryCache/KXMemoryCache.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

// The walks that define what a cache does, one pair after the other, over a plain list.
template <class Key, class Value, class WalkIndex = qint32> class WalkedCache {
public:
    using Pair = _KXMemoryCachePair<Key, Value>;

    void setCountLimit(quint64 limit)
    {
        if (limit != m_limit) {
            m_limit = limit;
            clean();
        }
    }
    void setObject(const Value &value, const Key &key)
    {
        if (static_cast<WalkIndex>(m_pairs.size()) > 0) {
            for (std::size_t i = m_pairs.size(); i-- > 0;) {
                if (m_pairs[i].key() == key)
                    m_pairs.erase(m_pairs.begin() + std::ptrdiff_t(i));
            }
        }
        m_pairs.emplace_back(key, value);
        clean();
    }
    std::optional<Value> objectForKey(const Key &key) const
    {
        for (std::size_t i = m_pairs.size(); i-- > 0;) {
            if (m_pairs[i].key() == key)
                return m_pairs[i].value();
        }
        return std::nullopt;
    }
    void removeObjectForKey(const Key &key)
    {
        if (m_pairs.empty())
            return;
        std::size_t walked = 0;
        while (walked + 1 < m_pairs.size() && !(m_pairs[walked].key() == key))
            ++walked;
        const auto index = static_cast<WalkIndex>(walked);
        if (index >= 0)
            m_pairs.erase(m_pairs.begin() + index);
    }
    void removeAllObjects() { m_pairs.clear(); }
    void removeFirstObject()
    {
        if (!m_pairs.empty())
            m_pairs.erase(m_pairs.begin());
    }
    void removeLastObject()
    {
        if (!m_pairs.empty())
            m_pairs.pop_back();
    }
    QList<Pair> cacheQueue() const { return {m_pairs.begin(), m_pairs.end()}; }
    void setCacheQueue(const QList<Pair> &pairs) { m_pairs = {pairs.begin(), pairs.end()}; }

private:
    void clean()
    {
        while (m_pairs.size() > m_limit)
            m_pairs.erase(m_pairs.begin());
    }

    std::vector<Pair> m_pairs;
    quint64 m_limit = 0;
};

// Few hashes for many keys, so that runs of the table grow long and meet.
struct Crowded {
    int number = 0;
    friend bool operator==(const Crowded &, const Crowded &) = default;
    friend std::size_t qHash(const Crowded &key, std::size_t) { return std::size_t(key.number % 7); }
};

// Nothing but equality.
struct Unhashable {
    int number = 0;
    friend bool operator==(const Unhashable &, const Unhashable &) = default;
};
static_assert(!kx::keyhash::Hashable<Unhashable>);

template <class Key> Key keyOf(int number)
{
    if constexpr (std::is_same_v<Key, QString>)
        return QStringLiteral("key %1").arg(number);
    else if constexpr (std::is_same_v<Key, std::string>)
        return "key " + std::to_string(number);
    else
        return Key{number};
}

// Random operations on the cache and the model; they must read alike after each.
template <class Key> void compareWithWalks(int operations, unsigned seed)
{
    std::mt19937 random(seed);
    const auto below = [&](unsigned limit) { return int(random() % limit); };
    std::vector<Key> keys;
    keys.reserve(200);
    for (int i = 0; i < 200; ++i)
        keys.push_back(keyOf<Key>(i));

    KXMemoryCache<Key, int> cache;
    WalkedCache<Key, int> model;
    const auto setLimit = [&](quint64 limit) {
        cache.setCountLimit(limit);
        model.setCountLimit(limit);
    };
    setLimit(5);
    unsigned keysInUse = 10;
    for (int i = 0; i < operations; ++i) {
        const Key &key = keys[std::size_t(below(keysInUse))];
        const int operation = below(1000);
        if (operation < 500) {
            if (cache.objectForKey(key) != model.objectForKey(key))
                QFAIL(qPrintable(QStringLiteral("get, operation %1").arg(i)));
        } else if (operation < 900) {
            cache.setObject(i, key);
            model.setObject(i, key);
        } else if (operation < 940) {
            cache.removeObjectForKey(key);
            model.removeObjectForKey(key);
        } else if (operation < 960) {
            cache.removeFirstObject();
            model.removeFirstObject();
        } else if (operation < 980) {
            cache.removeLastObject();
            model.removeLastObject();
        } else if (operation < 985) {
            // Small caches mostly, larger ones at times: every size in which pairs are found differently.
            keysInUse = below(4) == 0 ? 200 : 20;
            setLimit(quint64(below(keysInUse)));
        } else if (operation < 987) {
            cache.removeAllObjects();
            model.removeAllObjects();
        } else if (operation < 989) {
            // A queue from outside, with repeated keys at times, and longer than the limit at times.
            QList<_KXMemoryCachePair<Key, int>> pairs;
            const int size = below(30);
            const unsigned from = below(2) == 0 ? 5 : 200;
            for (int k = 0; k < size; ++k)
                pairs.append({keys[std::size_t(below(from))], -k});
            cache.setCacheQueue(pairs);
            model.setCacheQueue(pairs);
        } else if (cache.cacheQueue() != model.cacheQueue()) {
            QFAIL(qPrintable(QStringLiteral("queue, operation %1").arg(i)));
        }
    }
    QCOMPARE(cache.cacheQueue(), model.cacheQueue());
}

} // namespace

class PairQueueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void doesWhatTheWalksDo() { compareWithWalks<QString>(1'000'000, 1); }
    void doesWhatTheWalksDoUnderAStandardHash() { compareWithWalks<std::string>(100'000, 2); }
    void doesWhatTheWalksDoWithNumbers() { compareWithWalks<int>(100'000, 3); }
    void doesWhatTheWalksDoWithCollidingHashes() { compareWithWalks<Crowded>(300'000, 4); }
    void doesWhatTheWalksDoWithoutAHash() { compareWithWalks<Unhashable>(100'000, 5); }

    // Counting in 8 bits shows at 128 pairs what counting in 32 shows at 2^31.
    void walksEndWhereTheirIndexWraps()
    {
        kx::PairQueue<int, int, qint8> queue;
        WalkedCache<int, int, qint8> model;
        model.setCountLimit(std::numeric_limits<quint64>::max());
        std::mt19937 random(6);
        for (int i = 0; i < 20'000; ++i) {
            const int key = int(random() % 700);
            if (random() % 100 < 70) {
                queue.set({key, i});
                model.setObject(i, key);
            } else if (random() % 100 < 60) {
                queue.removeOldestOrLast(key);
                model.removeObjectForKey(key);
            } else {
                const int *value = queue.newest(key);
                QCOMPARE(value ? std::optional(*value) : std::nullopt, model.objectForKey(key));
            }
            if (i % 50 == 0)
                QCOMPARE(queue.pairs(), model.cacheQueue());
            if (queue.count() > 600) {
                queue.clear();
                model.removeAllObjects();
            }
        }
        QCOMPARE(queue.pairs(), model.cacheQueue());
    }

    void aFullWalkRemovesNothingPastItsIndex()
    {
        kx::PairQueue<int, int, qint8> queue;
        for (int i = 0; i < 129; ++i)
            queue.set({i, i});
        QCOMPARE(queue.count(), quint64(129));
        queue.removeOldestOrLast(1000); // the last index is 128, which is -128 in 8 bits
        QCOMPARE(queue.count(), quint64(129));
        queue.removeOldestOrLast(0);
        QCOMPARE(queue.count(), quint64(128)); // as many as are negative in 8 bits
        queue.set({5, -5}); // so the pair before stays
        QCOMPARE(queue.count(), quint64(129));
        QCOMPARE(*queue.newest(5), -5);
        queue.removeOldestOrLast(5); // the older one
        QCOMPARE(*queue.newest(5), -5);
    }

    void aLargeQueueOfOneKeyWorks()
    {
        QList<_KXMemoryCachePair<QString, int>> pairs;
        for (int i = 0; i < 2000; ++i)
            pairs.append({QStringLiteral("same"), i});
        kx::PairQueue<QString, int> queue;
        queue.setPairs(pairs);
        QCOMPARE(*queue.newest(QStringLiteral("same")), 1999);
        queue.removeOldestOrLast(QStringLiteral("same"));
        QCOMPARE(queue.pairs().first().value(), 1);
        queue.set({QStringLiteral("same"), -1});
        QCOMPARE(queue.count(), quint64(1));
    }
};

QTEST_GUILESS_MAIN(PairQueueTest)
#include "PairQueueTest.moc"
