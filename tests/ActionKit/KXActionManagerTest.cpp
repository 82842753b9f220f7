// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionManager.h>

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <atomic>
#include <thread>
#include <vector>

// The registry belongs to the process: each test uses a scheme of its own.
class KXActionManagerTest : public QObject {
    Q_OBJECT

private:
    static std::shared_ptr<KXActionProcessor> registered(const QString &scheme)
    {
        auto processor = std::make_shared<KXActionProcessor>(scheme);
        KXActionManager::registerProcessor(processor);
        return processor;
    }

    static void compareError(const KXError &error, qint64 code, const QString &description)
    {
        QCOMPARE(error.domain, KXActionManager::errorDomain());
        QCOMPARE(error.code, code);
        QCOMPARE(error.localizedDescription, description);
    }

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void failsBeforeAnyRegistration() // keep first
    {
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx://action.cmd/play"), &error));
        compareError(error, -100, QStringLiteral("can't find match Processor for [kx]！"));
    }

    void callsTheHandlerOfSchemeAndPath()
    {
        const auto processor = registered(QStringLiteral("kx1"));
        QString id;
        std::thread::id thread;
        processor->registerHandler(
            [&](const KXActionItem &item) {
                id = item.queryMap().value(QStringLiteral("id"));
                thread = std::this_thread::get_id();
            },
            QStringLiteral("/play"));
        KXError error{QStringLiteral("untouched"), 5, {}, {}};
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx1://action.cmd/play?id=1"), &error));
        QCOMPARE(id, QStringLiteral("1"));
        QVERIFY(thread == std::this_thread::get_id());
        QCOMPARE(error.domain, QStringLiteral("untouched"));
    }

    void ignoresTheHost()
    {
        const auto processor = registered(QStringLiteral("kx2"));
        int calls = 0;
        processor->registerHandler([&](const KXActionItem &) { ++calls; }, QStringLiteral("/play"));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx2://action.cmd/play?id=1")));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx2://other.host/play")));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx2:/play")));
        QCOMPARE(calls, 3);
    }

    void reportsATextThatIsNoUrl()
    {
        for (const QString &text : {QString(), QStringLiteral(""), QStringLiteral("  "), QStringLiteral("1:x")}) {
            KXError error;
            QVERIFY(!KXActionManager::handleActionWithURL(text, &error));
            compareError(error, -100, QStringLiteral("URL 不合法！"));
        }
    }

    void reportsAnAbsentItem()
    {
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithItem(nullptr, &error));
        compareError(error, -101, QStringLiteral("item 不能为空！"));
    }

    void reportsAMissingScheme()
    {
        const auto nameless = registered(QString());
        nameless->registerHandler([](const KXActionItem &) {}, QStringLiteral("play"));
        const auto blank = registered(QStringLiteral(""));
        blank->registerHandler([](const KXActionItem &) {}, QStringLiteral("play"));
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("play"), &error));
        compareError(error, -100, QStringLiteral("can't find match Processor for [(null)]！"));
    }

    void reportsAMissingHandler()
    {
        registered(QStringLiteral("kx3"));
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx3://other.host/stop?x=1"), &error));
        compareError(error, -100, QStringLiteral("can't find match Handler for [kx3://action.cmd/stop]！"));
    }

    void reportsAnAbsentPath()
    {
        const auto processor = registered(QStringLiteral("kx4"));
        processor->registerHandler([](const KXActionItem &) {}, QStringLiteral(""));
        KXActionItem item;
        item.setScheme(QStringLiteral("kx4"));
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithItem(&item, &error));
        compareError(error, -100, QStringLiteral("can't find match Handler for [kx4://action.cmd(null)]！"));
        item.setPath(QStringLiteral("")); // empty is not absent
        QVERIFY(KXActionManager::handleActionWithItem(&item, &error));
    }

    void needsNoErrorToFillIn()
    {
        registered(QStringLiteral("kx5"));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("")));
        QVERIFY(!KXActionManager::handleActionWithItem(nullptr));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("nobody://h/p")));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx5://h/p")));
    }

    void comparesSchemesExactly()
    {
        const auto processor = registered(QStringLiteral("Kx6"));
        processor->registerHandler([](const KXActionItem &) {}, QStringLiteral("/p"));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("Kx6://h/p")));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx6://h/p")));
    }

    void theNewestProcessorOfASchemeDecides()
    {
        const auto older = registered(QStringLiteral("kx7"));
        int olderCalls = 0;
        older->registerHandler([&](const KXActionItem &) { ++olderCalls; }, QStringLiteral("/play"));
        older->registerHandler([&](const KXActionItem &) { ++olderCalls; }, QStringLiteral("/stop"));
        const auto newer = registered(QStringLiteral("kx7"));
        int newerCalls = 0;
        newer->registerHandler([&](const KXActionItem &) { ++newerCalls; }, QStringLiteral("/play"));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx7://h/play")));
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx7://h/stop"), &error));
        compareError(error, -100, QStringLiteral("can't find match Handler for [kx7://action.cmd/stop]！"));
        QCOMPARE(olderCalls, 0);
        QCOMPARE(newerCalls, 1);
        KXActionManager::registerProcessor(older); // once more, and it is the newest
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx7://h/stop")));
        QCOMPARE(olderCalls, 1);
    }

    void theSchemeOfARegistrationIsNotUsed()
    {
        const auto processor = std::make_shared<KXActionProcessor>(QStringLiteral("kx8"));
        processor->registerHandler([](const KXActionItem &) {}, QStringLiteral("/p"));
        KXActionManager::registerProcessor(processor, QStringLiteral("other8"));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx8://h/p")));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("other8://h/p")));
        processor->setScheme(QStringLiteral("renamed8"));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("renamed8://h/p")));
    }

    void ignoresANullProcessor()
    {
        KXActionManager::registerProcessor(nullptr);
        KXActionManager::registerProcessor(nullptr, QStringLiteral("kx9"));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx9://h/p")));
    }

    void aHandlerMayRegisterAndRemoveItself()
    {
        const auto processor = registered(QStringLiteral("kx10"));
        int calls = 0;
        processor->registerHandler(
            [&, guard = std::make_shared<int>(1)](const KXActionItem &) {
                processor->registerHandler({}, QStringLiteral("/p"));
                registered(QStringLiteral("kx10"));
                calls += *guard;
            },
            QStringLiteral("/p"));
        QVERIFY(KXActionManager::handleActionWithURL(QStringLiteral("kx10://h/p")));
        QVERIFY(!KXActionManager::handleActionWithURL(QStringLiteral("kx10://h/p")));
        QCOMPARE(calls, 1);
    }

    void theErrorDomainBelongsToTheApplication()
    {
        QCOMPARE(KXActionManager::errorDomain(), QStringLiteral("example.kxfoundation.action"));
        KXActionManager::setErrorDomain(QStringLiteral("org.player.actions"));
        KXError error;
        QVERIFY(!KXActionManager::handleActionWithItem(nullptr, &error));
        QCOMPARE(error.domain, QStringLiteral("org.player.actions"));
        KXActionManager::setErrorDomain(QString());
        QCOMPARE(KXActionManager::errorDomain(), QStringLiteral("example.kxfoundation.action"));
    }

    void registersWhileOtherThreadsDispatch()
    {
        constexpr int registrars = 3;
        constexpr int dispatchers = 3;
        constexpr int rounds = 100;
        const auto shared = registered(QStringLiteral("kx11"));
        std::atomic<int> calls = 0;
        shared->registerHandler([&](const KXActionItem &) { ++calls; }, QStringLiteral("/p"));
        std::vector<std::thread> threads;
        for (int t = 0; t < registrars; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < rounds; ++i) {
                    const QString own = QString::asprintf("kx11-%d-%d", t, i);
                    registered(own)->registerHandler([&](const KXActionItem &) { ++calls; }, QStringLiteral("/p"));
                    shared->registerHandler([&](const KXActionItem &) { ++calls; }, QString(u"/" + own));
                    KXActionManager::setErrorDomain(own);
                }
            });
        }
        std::atomic<int> failures = 0;
        for (int t = 0; t < dispatchers; ++t) {
            threads.emplace_back([&] {
                for (int i = 0; i < rounds; ++i) {
                    KXError error;
                    failures += !KXActionManager::handleActionWithURL(QStringLiteral("kx11://h/p?a=%41"), &error);
                    failures += KXActionManager::handleActionWithURL(QStringLiteral("kx11-none://h/p"), &error);
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        KXActionManager::setErrorDomain(QString());
        QCOMPARE(failures.load(), 0);
        QCOMPARE(calls.load(), dispatchers * rounds);
        // No registration was lost.
        for (int t = 0; t < registrars; ++t) {
            for (int i = 0; i < rounds; ++i) {
                QVERIFY(KXActionManager::handleActionWithURL(QString::asprintf("kx11-%d-%d://h/p", t, i)));
                QVERIFY(KXActionManager::handleActionWithURL(QString::asprintf("kx11://h/kx11-%d-%d", t, i)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(KXActionManagerTest)
#include "KXActionManagerTest.moc"
