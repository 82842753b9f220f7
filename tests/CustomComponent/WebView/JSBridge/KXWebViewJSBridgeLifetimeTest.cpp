// SPDX-License-Identifier: MIT
#include "BridgeMessages.h"

#include <QtTest/QTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using namespace kx::test;

class KXWebViewJSBridgeLifetimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void aHandlerMayWithdrawItselfAndRegisterOthers()
    {
        KXWebViewJSBridge bridge;
        Recorder recorder;
        const auto captured = std::make_shared<QString>(QStringLiteral("still here"));
        bridge.registerMethod(QStringLiteral("play"), [&bridge, captured](const QJsonValue &, const auto &completion) {
            bridge.setMethodHandlerMap({});
            for (int i = 0; i < 100; ++i)
                bridge.registerMethod(QStringLiteral("other%1").arg(i), answerDone);
            completion(*captured);
        });
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        QCOMPARE(body(recorder.commands.value(0)).value(u"data"), QJsonValue(QStringLiteral("still here")));
        QCOMPARE(bridge.methodHandlerMap().size(), 100);
    }

    void aCallbackMayRemoveItselfAndRegisterOthers()
    {
        KXWebViewJSBridge bridge;
        const auto captured = std::make_shared<QString>(QStringLiteral("still here"));
        QString seen;
        bridge.registerCallback(QStringLiteral("play"), [&bridge, &seen, captured](const QJsonValue &) {
            bridge.registerCallback(QStringLiteral("play"), {});
            for (int i = 0; i < 100; ++i)
                bridge.registerCallback(QStringLiteral("other%1").arg(i), [](const QJsonValue &) {});
            seen = *captured;
        });
        bridge.handleH5Message(pageMessage("handler", R"({"method":"play"})"), {});
        QCOMPARE(seen, QStringLiteral("still here"));
        QCOMPARE(bridge.callbackMap().size(), 100);
    }

    void whatDiesWithACallableMayRegisterOthers()
    {
        constexpr int many = 200; // so that the tables grow
        KXWebViewJSBridge bridge;
        int deaths = 0;
        const auto registersAtItsEnd = [&] {
            return std::shared_ptr<void>(nullptr, [&](void *) {
                ++deaths;
                for (int i = 0; i < many; ++i) {
                    const QString name = QStringLiteral("other%1.%2").arg(deaths).arg(i);
                    bridge.registerCallback(name, [](const QJsonValue &) {});
                    bridge.registerMethod(name, answerDone);
                }
            });
        };
        const auto wait = [&](const char *key) {
            bridge.registerCallback(QString::fromLatin1(key), [token = registersAtItsEnd()](const QJsonValue &) {});
        };
        wait("removed");
        bridge.registerCallback(QStringLiteral("removed"), {});
        QCOMPARE(bridge.callbackMap().size(), many);
        wait("replaced");
        bridge.registerCallback(QStringLiteral("replaced"), [](const QJsonValue &) {});
        QCOMPARE(bridge.callbackMap().size(), 2 * many + 1);
        wait("play1");
        bridge.handleH5Message(pageMessage("handler", R"({"method":"play","mid":1})"), {});
        QCOMPARE(bridge.callbackMap().size(), 3 * many + 1);
        wait("swept");
        bridge.setCallbackMap({});
        QCOMPARE(bridge.callbackMap().size(), many);
        QCOMPARE(bridge.methodHandlerMap().size(), 4 * many);

        const auto offer = [&] {
            bridge.registerMethod(
                QStringLiteral("play"), [token = registersAtItsEnd()](const QJsonValue &, const auto &) {});
        };
        offer();
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        QCOMPARE(bridge.methodHandlerMap().size(), 5 * many + 1);
        offer();
        bridge.setMethodHandlerMap({});
        QCOMPARE(bridge.methodHandlerMap().size(), many);
        wait("left");
        offer();
        // And with the bridge.
    }

    void anyCallableMayDeleteTheBridge_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("native method") << pageMessage("method", R"({"method":"play"})");
        QTest::newRow("callback") << pageMessage("handler", R"({"method":"play"})");
        QTest::newRow("one-shot callback") << pageMessage("handler", R"({"method":"play","mid":1})");
        QTest::newRow("reply sender") << pageMessage("method", R"({"method":"answer"})");
        QTest::newRow("reply sender of a test") << pageMessage("invokeTest", R"({"method":"answer"})");
    }
    void anyCallableMayDeleteTheBridge()
    {
        QFETCH(QString, text);
        auto bridge = std::make_unique<KXWebViewJSBridge>();
        int calls = 0;
        const auto end = [&] {
            ++calls;
            bridge.reset();
        };
        bridge->registerMethod(QStringLiteral("play"), [&](const QJsonValue &, const auto &) { end(); });
        bridge->registerMethod(QStringLiteral("answer"), answerDone);
        bridge->registerCallback(QStringLiteral("play"), [&](const QJsonValue &) { end(); });
        bridge->registerCallback(QStringLiteral("play1"), [&](const QJsonValue &) { end(); });
        bridge->handleH5Message(text, [&](const QString &) { end(); });
        QCOMPARE(calls, 1);
        QVERIFY(!bridge);
    }

    void aLateAnswerIsSent()
    {
        KXWebViewJSBridge bridge;
        KXWebViewJSBridge::Completion completion;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &, const auto &given) { completion = given; });
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play","mid":4})"), recorder.sender());
        QVERIFY(recorder.commands.isEmpty());
        bridge.setMethodHandlerMap({}); // the call that is under way is not affected
        completion(json("[1]"));
        QCOMPARE(body(recorder.commands.value(0)), json(R"({"method":"play","data":[1],"mid":4,"once":1})").toObject());
    }

    void eachFurtherAnswerIsSentToo()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), [](const QJsonValue &, const auto &completion) {
            completion(1);
            completion(absent);
        });
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        QCOMPARE(recorder.commands.size(), 2);
        QCOMPARE(body(recorder.commands[0]).value(u"data"), QJsonValue(1));
        QVERIFY(!body(recorder.commands[1]).contains(u"data"));
    }

    void anAnswerAfterTheBridgesDeathGoesNowhere()
    {
        auto bridge = std::make_unique<KXWebViewJSBridge>();
        KXWebViewJSBridge::Completion completion;
        bridge->registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &, const auto &given) { completion = given; });
        Recorder recorder;
        bridge->handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        bridge.reset();
        completion(1);
        std::thread([&] { completion(2); }).join();
        QCoreApplication::processEvents();
        QVERIFY(recorder.commands.isEmpty());
    }

    void aBridgeThatDiesBeforeAPostedAnswerArrivesDropsIt()
    {
        auto bridge = std::make_unique<KXWebViewJSBridge>();
        bridge->registerMethod(QStringLiteral("play"),
            [](const QJsonValue &, const auto &completion) { std::thread([&] { completion(1); }).join(); });
        Recorder recorder;
        bridge->handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        bridge.reset();
        QCoreApplication::processEvents();
        QVERIFY(recorder.commands.isEmpty());
    }

    void anAnswerGivenWhileTheBridgeIsBeingDeletedGoesNowhere()
    {
        auto bridge = std::make_unique<KXWebViewJSBridge>();
        Recorder recorder;
        KXWebViewJSBridge::Completion completion;
        bool answered = false;
        bridge->registerMethod(QStringLiteral("play"), [&, atEnd = std::shared_ptr<void>(nullptr, [&](void *) {
            completion(1);
            answered = true;
        })](const QJsonValue &, const auto &given) { completion = given; });
        bridge->handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        bridge.reset();
        QVERIFY(answered);
        QVERIFY(recorder.commands.isEmpty());
    }

    void aReplySenderMayDropItsOwnCompletion()
    {
        KXWebViewJSBridge bridge;
        KXWebViewJSBridge::Completion completion;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &, const auto &given) { completion = given; });
        QString seen;
        const auto captured = std::make_shared<QString>(QStringLiteral("still here"));
        bridge.handleH5Message(
            pageMessage("method", R"({"method":"play"})"), [&completion, &seen, captured](const QString &) {
                completion = {};
                seen = *captured;
            });
        completion(1);
        QCOMPARE(seen, QStringLiteral("still here"));
    }

    // Threads

    void answersFromAnotherThreadAreSentOnTheMainThreadInOrder()
    {
        KXWebViewJSBridge bridge;
        std::thread worker;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
                worker = std::thread([completion] {
                    for (int i = 0; i < 100; ++i)
                        completion(i);
                });
            });
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        worker.join();
        QVERIFY(recorder.commands.isEmpty());
        QTRY_COMPARE(recorder.commands.size(), 100);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(body(recorder.commands[i]).value(u"data"), QJsonValue(i));
            QCOMPARE(recorder.threads[i], QThread::currentThread());
        }
    }

    void aMessageThatCameOnTheWrongThreadIsAnsweredOnTheMainThread()
    {
        KXWebViewJSBridge bridge;
        KXWebViewJSBridge::Completion completion;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &, const auto &given) { completion = given; });
        Recorder recorder;
        std::thread([&] {
            bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        }).join();
        completion(1);
        QTRY_COMPARE(recorder.commands.size(), 1);
        QCOMPARE(recorder.threads[0], QThread::currentThread());
    }

    void severalThreadsMayAnswerOneCall()
    {
        KXWebViewJSBridge bridge;
        std::vector<std::thread> workers;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &parameters, const KXWebViewJSBridge::Completion &completion) {
                for (int i = 0; i < 4; ++i) {
                    workers.emplace_back([completion, parameters] {
                        for (int n = 0; n < 50; ++n)
                            completion(parameters);
                    });
                }
            });
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play","data":{"a":[1,null]}})"), recorder.sender());
        QTRY_COMPARE(recorder.commands.size(), 200);
        for (std::thread &worker : workers)
            worker.join();
        for (const QString &command : std::as_const(recorder.commands))
            QCOMPARE(body(command).value(u"data"), json(R"({"a":[1]})"));
    }

    void aReplySenderDiesOnTheMainThread()
    {
        KXWebViewJSBridge bridge;
        std::thread worker;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
                worker = std::thread([kept = KXWebViewJSBridge::Completion(completion)]() mutable { kept = {}; });
            });
        std::atomic<QThread *> diedOn = nullptr;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"),
            [token = std::shared_ptr<void>(nullptr, [&](void *) { diedOn = QThread::currentThread(); })](
                const QString &) {});
        worker.join();
        QTRY_COMPARE(diedOn.load(), QThread::currentThread());
    }

    void aBridgeMayDieWhileThreadsAnswer()
    {
        for (int round = 0; round < 20; ++round) {
            auto bridge = std::make_unique<KXWebViewJSBridge>();
            std::vector<std::thread> workers;
            bridge->registerMethod(
                QStringLiteral("play"), [&](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
                    for (int i = 0; i < 2; ++i) {
                        workers.emplace_back([completion] {
                            for (int n = 0; n < 50; ++n)
                                completion(n);
                        });
                    }
                });
            bool alive = true;
            int afterDeath = 0;
            bridge->handleH5Message(
                pageMessage("method", R"({"method":"play"})"), [&](const QString &) { afterDeath += alive ? 0 : 1; });
            QCoreApplication::processEvents();
            bridge.reset();
            alive = false;
            for (std::thread &worker : workers)
                worker.join();
            QCoreApplication::processEvents();
            QCOMPARE(afterDeath, 0);
        }
    }
};

QTEST_GUILESS_MAIN(KXWebViewJSBridgeLifetimeTest)
#include "KXWebViewJSBridgeLifetimeTest.moc"
