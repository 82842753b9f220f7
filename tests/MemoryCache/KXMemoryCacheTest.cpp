// SPDX-License-Identifier: MIT
#include <KXFoundation/MemoryCache/KXMemoryCache.h>

#include <QtCore/QJsonValue>
#include <QtCore/QMutex>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <algorithm>
#include <atomic>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Cache = KXMemoryCache<QString, QString>;

QString operator""_s(const char16_t *text, std::size_t length)
{
    return QString::fromUtf16(text, qsizetype(length));
}

// The keys of the pairs, oldest first.
template <class Value> QString order(const KXMemoryCache<QString, Value> &cache)
{
    QString keys;
    for (const auto &pair : cache.cacheQueue())
        keys += pair.key();
    return keys;
}

// Sets each letter to itself.
void fill(Cache &cache, const QString &letters)
{
    for (const QChar letter : letters)
        cache.setObject(QString(letter), QString(letter));
}

// A re-entrant lock that counts how it is used.
struct CountingLock {
    int held = 0;
    int taken = 0;
    int deepest = 0;
    void lock()
    {
        ++taken;
        deepest = std::max(deepest, ++held);
    }
    void unlock() { --held; }
};

} // namespace

class KXMemoryCacheTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void keepsNothingUntilALimitIsSet()
    {
        Cache cache;
        QCOMPARE(cache.countLimit(), quint64(0));
        cache.setObject(u"1"_s, u"a"_s);
        QVERIFY(!cache.objectForKey(u"a"_s));
        QVERIFY(cache.cacheQueue().isEmpty());
        QVERIFY(!cache.lock());
    }

    void readingDoesNotSaveFromEviction()
    {
        Cache cache;
        cache.setCountLimit(2);
        fill(cache, u"abc"_s);
        QVERIFY(!cache.objectForKey(u"a"_s));
        QCOMPARE(cache.objectForKey(u"b"_s), u"b"_s);
        fill(cache, u"d"_s);
        QCOMPARE(order(cache), u"cd"_s);
    }

    void settingAgainMovesToTheEnd()
    {
        Cache cache;
        cache.setCountLimit(2);
        fill(cache, u"aba"_s);
        QCOMPARE(order(cache), u"ba"_s);
        fill(cache, u"c"_s);
        QCOMPARE(order(cache), u"ac"_s);
    }

    void settingAgainReplacesTheValue()
    {
        Cache cache;
        cache.setCountLimit(2);
        cache.setObject(u"1"_s, u"a"_s);
        cache.setObject(u"2"_s, u"a"_s);
        QCOMPARE(cache.objectForKey(u"a"_s), u"2"_s);
        QCOMPARE(cache.cacheQueue().size(), 1);
    }

    void aLowerLimitDropsTheOldestAtOnce()
    {
        Cache cache;
        cache.setCountLimit(5);
        fill(cache, u"abcde"_s);
        cache.setCountLimit(2);
        QCOMPARE(order(cache), u"de"_s);
        QCOMPARE(cache.countLimit(), quint64(2));
    }

    void theSameLimitAgainDoesNothing()
    {
        Cache cache;
        cache.setCountLimit(2);
        cache.setCacheQueue({{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}, {u"c"_s, u"3"_s}});
        cache.setCountLimit(2);
        QCOMPARE(order(cache), u"abc"_s); // not even what a given queue has too many
        cache.setCountLimit(1);
        QCOMPARE(order(cache), u"c"_s);
    }

    void takesLimitsOfSixtyFourBits()
    {
        Cache cache;
        cache.setCountLimit(std::numeric_limits<quint64>::max());
        QCOMPARE(cache.countLimit(), std::numeric_limits<quint64>::max());
        fill(cache, u"ab"_s);
        QCOMPARE(order(cache), u"ab"_s);
    }

    void removesAKnownKey()
    {
        Cache cache;
        cache.setCountLimit(5);
        fill(cache, u"abc"_s);
        cache.removeObjectForKey(u"a"_s);
        QCOMPARE(order(cache), u"bc"_s);
    }

    void removingAnUnknownKeyRemovesTheNewest()
    {
        Cache cache;
        cache.setCountLimit(5);
        fill(cache, u"abc"_s);
        cache.removeObjectForKey(u"x"_s);
        QCOMPARE(order(cache), u"ab"_s);
        cache.removeObjectForKey(QString());
        QCOMPARE(order(cache), u"a"_s);
    }

    void removalsFromAnEmptyCacheDoNothing()
    {
        Cache cache;
        cache.setCountLimit(2);
        cache.removeObjectForKey(u"a"_s);
        cache.removeFirstObject();
        cache.removeLastObject();
        cache.removeAllObjects();
        fill(cache, u"ab"_s);
        QCOMPARE(order(cache), u"ab"_s);
    }

    void removesFromBothEnds()
    {
        Cache cache;
        cache.setCountLimit(5);
        fill(cache, u"abcd"_s);
        cache.removeFirstObject();
        QCOMPARE(order(cache), u"bcd"_s);
        cache.removeLastObject();
        QCOMPARE(order(cache), u"bc"_s);
        cache.removeAllObjects();
        QCOMPARE(order(cache), u""_s);
        QVERIFY(!cache.objectForKey(u"b"_s));
    }

    void anAbsentValueOrKeyChangesNothing()
    {
        Cache cache;
        cache.setCountLimit(5);
        fill(cache, u"ab"_s);
        cache.setObject(QString(), u"a"_s);
        cache.setObject(u"1"_s, QString());
        QCOMPARE(order(cache), u"ab"_s);
        QCOMPARE(cache.objectForKey(u"a"_s), u"a"_s);
        QVERIFY(!cache.objectForKey(QString()));
    }

    void emptyIsNotAbsent()
    {
        Cache cache;
        cache.setCountLimit(5);
        cache.setObject(u""_s, u""_s);
        const std::optional<QString> value = cache.objectForKey(u""_s);
        QVERIFY(value && value->isEmpty() && !value->isNull());
        QVERIFY(!cache.objectForKey(QString()));
    }

    void whatIsAbsentDependsOnTheType()
    {
        KXMemoryCache<int, QJsonValue> json;
        json.setCountLimit(5);
        json.setObject(QJsonValue::Undefined, 1);
        json.setObject(QJsonValue::Null, 2);
        QCOMPARE(json.cacheQueue().size(), 1);
        QVERIFY(json.objectForKey(2)->isNull());

        KXMemoryCache<int, std::shared_ptr<int>> pointers;
        pointers.setCountLimit(5);
        pointers.setObject(nullptr, 1);
        pointers.setObject(std::make_shared<int>(7), 0); // a key of 0 is a key
        QCOMPARE(pointers.cacheQueue().size(), 1);
        QCOMPARE(**pointers.objectForKey(0), 7);
    }

    void keepsRepeatedKeysOfAGivenQueueUntilTheyAreSet()
    {
        Cache cache;
        cache.setCountLimit(10);
        cache.setCacheQueue({{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}, {u"a"_s, u"3"_s}, {u"c"_s, u"4"_s}, {u"a"_s, u"5"_s}});
        QCOMPARE(order(cache), u"abaca"_s);
        QCOMPARE(cache.objectForKey(u"a"_s), u"5"_s); // the newest
        cache.removeObjectForKey(u"a"_s); // the oldest
        QCOMPARE(order(cache), u"baca"_s);
        QCOMPARE(cache.objectForKey(u"a"_s), u"5"_s);
        cache.setObject(u"6"_s, u"a"_s); // instead of both
        QCOMPARE(order(cache), u"bca"_s);
    }

    void aGivenQueueMayHoldMoreThanTheLimitAndAbsentParts()
    {
        Cache cache;
        cache.setCountLimit(2);
        cache.setCacheQueue({{QString(), u"1"_s}, {u"a"_s, QString()}, {u"b"_s, u"2"_s}});
        QCOMPARE(cache.cacheQueue().size(), 3);
        QVERIFY(!cache.objectForKey(QString()));
        QVERIFY(!cache.objectForKey(u""_s));
        QVERIFY(!cache.objectForKey(u"a"_s));
        cache.setObject(u"3"_s, u"c"_s);
        QCOMPARE(order(cache), u"bc"_s);
    }

    void theQueueThatWasReadIsACopy()
    {
        Cache cache;
        cache.setCountLimit(3);
        fill(cache, u"ab"_s);
        QList<Cache::Pair> pairs = cache.cacheQueue();
        pairs.first().setKey(u"x"_s);
        pairs.first().setValue(u"y"_s);
        pairs.removeLast();
        QCOMPARE(order(cache), u"ab"_s);
        cache.setCacheQueue(pairs);
        QCOMPARE(cache.objectForKey(u"x"_s), u"y"_s);
    }

    void takesTheLockAroundEveryOperation()
    {
        Cache cache;
        cache.setCountLimit(3);
        const auto lock = std::make_shared<CountingLock>();
        cache.setLock(lock);
        QVERIFY(cache.lock() == KXMemoryCacheLock(lock));
        const std::vector<std::pair<const char *, std::function<void()>>> operations = {
            {"countLimit", [&] { (void)cache.countLimit(); }},
            {"setCountLimit", [&] { cache.setCountLimit(3); }},
            {"objectForKey", [&] { (void)cache.objectForKey(u"a"_s); }},
            {"objectForKey, absent", [&] { (void)cache.objectForKey(QString()); }},
            {"removeObjectForKey", [&] { cache.removeObjectForKey(u"a"_s); }},
            {"removeAllObjects", [&] { cache.removeAllObjects(); }},
            {"removeFirstObject", [&] { cache.removeFirstObject(); }},
            {"removeLastObject", [&] { cache.removeLastObject(); }},
        };
        for (const auto &[name, operation] : operations) {
            lock->taken = 0;
            operation();
            QVERIFY2(lock->taken == 1 && lock->held == 0, name);
        }
        lock->taken = 0;
        cache.setObject(QString(), u"a"_s);
        QCOMPARE(lock->taken, 0); // nothing to do, so nothing to guard
        QCOMPARE(lock->deepest, 1);
    }

    void takesTheLockAgainWhileItReadsTheLimit()
    {
        Cache cache;
        const auto lock = std::make_shared<CountingLock>();
        cache.setLock(lock);
        cache.setCountLimit(2);
        QCOMPARE(lock->deepest, 2);
        lock->deepest = 0;
        cache.setObject(u"1"_s, u"a"_s);
        QCOMPARE(lock->deepest, 2);
        QCOMPARE(lock->held, 0);
    }

    void theQueueAndTheLockAreReadWithoutTheLock()
    {
        Cache cache;
        const auto lock = std::make_shared<CountingLock>();
        cache.setLock(lock);
        cache.setCacheQueue(cache.cacheQueue());
        cache.setLock(cache.lock());
        QCOMPARE(lock->taken, 0);
        cache.setLock(nullptr);
        QVERIFY(!cache.lock());
        QCOMPARE(lock.use_count(), 1); // and nothing keeps it
    }

    // What the header says of locks that are not re-entrant: the second attempt of one thread is the one that blocks.
    void aPlainMutexWouldWaitForItself()
    {
        struct Plain {
            bool held = false;
            bool blocked = false;
            void lock() { blocked = blocked || std::exchange(held, true); } // std::mutex would not come back
            void unlock() { held = false; }
        };
        const auto lock = std::make_shared<Plain>();
        Cache cache;
        cache.setLock(lock);
        (void)cache.objectForKey(u"a"_s);
        QVERIFY(!lock->blocked);
        cache.setObject(u"1"_s, u"a"_s);
        QVERIFY(lock->blocked);
    }

    // Qt's locks serve as well; the thread sanitizer cannot see into them, so the test with threads takes another.
    void takesQtsRecursiveLock()
    {
        Cache cache;
        const auto lock = std::make_shared<QRecursiveMutex>();
        cache.setLock(lock);
        cache.setCountLimit(2);
        fill(cache, u"abc"_s);
        QCOMPARE(order(cache), u"bc"_s);
        bool free = false; // for another thread, too
        std::thread([&] { free = lock->tryLock() && (lock->unlock(), true); }).join();
        QVERIFY(free);
    }

    void servesThreadsUnderARecursiveLock()
    {
        KXMemoryCache<QString, std::shared_ptr<const int>> cache;
        cache.setLock(std::make_shared<std::recursive_mutex>());
        cache.setCountLimit(50);
        std::atomic<int> wrong = 0;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&cache, &wrong, thread] {
                for (int i = 0; i < 5000; ++i) {
                    const int number = (i * 7 + thread) % 90;
                    const QString key = QString::number(number);
                    if (i % 5 == 0)
                        cache.setObject(std::make_shared<const int>(number), key);
                    else if (i % 97 == 0)
                        cache.removeObjectForKey(key);
                    else if (i % 501 == 0)
                        cache.setCountLimit(quint64(20 + i % 40));
                    else if (const auto value = cache.objectForKey(key); value && **value != number)
                        ++wrong;
                    if (i % 1000 == 0) {
                        const std::lock_guard guard(cache.lock());
                        if (quint64(cache.cacheQueue().size()) > cache.countLimit())
                            ++wrong;
                    }
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(wrong.load(), 0);
    }

    void aValueMayUseTheCacheWhileItGoes()
    {
        using Value = std::shared_ptr<int>;
        KXMemoryCache<int, Value> cache;
        cache.setCountLimit(3);
        QList<int> gone;
        const auto value = [&](int number) {
            return Value(new int(number), [&](int *going) {
                gone.append(*going);
                delete going;
                (void)cache.objectForKey(1);
                cache.setObject(nullptr, 2);
                if (gone.size() < 3)
                    cache.removeFirstObject();
            });
        };
        for (int i = 0; i < 4; ++i)
            cache.setObject(value(i), i); // dropping 0 drops 1, which drops 2
        QCOMPARE(gone, QList<int>({0, 1, 2}));
        cache.setObject(value(33), 3);
        QCOMPARE(gone.last(), 3);
        cache.removeAllObjects();
        QCOMPARE(gone.last(), 33);
        QVERIFY(cache.cacheQueue().isEmpty());
    }

    void dropsValuesAtOnce()
    {
        KXMemoryCache<int, std::shared_ptr<int>> cache;
        cache.setCountLimit(20);
        std::vector<std::weak_ptr<int>> values;
        for (int i = 0; i < 30; ++i) {
            const auto value = std::make_shared<int>(i);
            values.push_back(value);
            cache.setObject(value, i);
        }
        for (std::size_t i = 0; i < values.size(); ++i)
            QCOMPARE(values[i].expired(), i < 10);
        cache.removeObjectForKey(15);
        QVERIFY(values[15].expired());
        cache.setObject(std::make_shared<int>(0), 16);
        QVERIFY(values[16].expired());
        cache.removeLastObject(); // the new 16
        cache.removeLastObject();
        QVERIFY(values[29].expired() && !values[28].expired());
        cache.setCacheQueue({});
        QVERIFY(values[28].expired());
    }
};

QTEST_GUILESS_MAIN(KXMemoryCacheTest)
#include "KXMemoryCacheTest.moc"
