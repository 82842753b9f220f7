// SPDX-License-Identifier: MIT
#include "BridgeMessages.h"

#include <QtTest/QTest>

using namespace kx::test;

class KXWebViewJSBridgeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void exportsTheAgreedSuccessValue() { QCOMPARE(kInvokeSucced, QStringLiteral("invokeSucced")); }

    void startsEmpty()
    {
        const KXWebViewJSBridge bridge;
        QCOMPARE(bridge.mid(), 0);
        QVERIFY(bridge.methodHandlerMap().isEmpty());
        QVERIFY(bridge.callbackMap().isEmpty());
    }

    void itsTablesCanBeReplaced()
    {
        KXWebViewJSBridge bridge;
        bridge.setMethodHandlerMap({{QStringLiteral("play"), answerDone}});
        bridge.setCallbackMap({{QStringLiteral("stop"), [](const QJsonValue &) {}}});
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        QCOMPARE(recorder.commands.size(), 1);
        QCOMPARE(bridge.callbackMap().keys(), QStringList{QStringLiteral("stop")});
        bridge.setMethodHandlerMap(bridge.methodHandlerMap());
        bridge.setCallbackMap(bridge.callbackMap());
        QCOMPARE(bridge.methodHandlerMap().size(), 1);
        QCOMPARE(bridge.callbackMap().size(), 1);
        bridge.setMethodHandlerMap({});
        QVERIFY(bridge.methodHandlerMap().isEmpty());
    }

    // Registration

    void aNameOfOneCharacterIsNoMethodAndNoKey()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("a"), answerDone);
        bridge.registerMethod(QString(), answerDone);
        bridge.registerCallback(QStringLiteral("a"), [](const QJsonValue &) {});
        bridge.registerCallback(QString(), [](const QJsonValue &) {});
        QVERIFY(bridge.methodHandlerMap().isEmpty());
        QVERIFY(bridge.callbackMap().isEmpty());
        bridge.registerMethod(QStringLiteral("ab"), answerDone);
        bridge.registerCallback(QStringLiteral("ab"), [](const QJsonValue &) {});
        QCOMPARE(bridge.methodHandlerMap().size(), 1);
        QCOMPARE(bridge.callbackMap().size(), 1);
    }

    void aSecondHandlerReplacesTheFirst()
    {
        KXWebViewJSBridge bridge;
        int first = 0, second = 0;
        bridge.registerMethod(QStringLiteral("play"), [&](const QJsonValue &, const auto &) { ++first; });
        bridge.registerMethod(QStringLiteral("play"), [&](const QJsonValue &, const auto &) { ++second; });
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), {});
        QCOMPARE(first, 0);
        QCOMPARE(second, 1);
    }

    void anAbsentHandlerRemovesNothingButAnAbsentCallbackDoes()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        bridge.registerMethod(QStringLiteral("play"), {});
        bridge.registerMethod(QStringLiteral("stop"), {});
        QCOMPARE(bridge.methodHandlerMap().keys(), QStringList{QStringLiteral("play")});
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), recorder.sender());
        QCOMPARE(recorder.commands.size(), 1);
        bridge.registerCallback(QStringLiteral("play"), [](const QJsonValue &) {});
        bridge.registerCallback(QStringLiteral("play"), {});
        QVERIFY(bridge.callbackMap().isEmpty());
    }

    // Messages from the page

    void aMethodGetsItsParametersWithoutNulls()
    {
        KXWebViewJSBridge bridge;
        QJsonValue received;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &parameters, const auto &) { received = parameters; });
        bridge.handleH5Message(
            pageMessage("method", R"({"method":"play","data":{"a":null,"b":[1,null,{"c":null}]}})"), {});
        QCOMPARE(received, json(R"({"b":[1,{}]})"));
        bridge.handleH5Message(pageMessage("method", R"({"method":"play","data":null})"), {});
        QVERIFY(received.isUndefined());
        received = 1;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), {});
        QVERIFY(received.isUndefined());
    }

    void nullsAreRemoved_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QJsonValue>("cleaned");
        QTest::newRow("absent") << absent << absent;
        QTest::newRow("null") << QJsonValue(QJsonValue::Null) << absent;
        QTest::newRow("string") << json("\"x\"") << json("\"x\"");
        QTest::newRow("false") << json("false") << json("false");
        QTest::newRow("zero") << json("0") << json("0");
        QTest::newRow("empty array") << json("[]") << json("[]");
        QTest::newRow("empty object") << json("{}") << json("{}");
        QTest::newRow("no nulls") << json(R"({"a":[1,{"b":2}]})") << json(R"({"a":[1,{"b":2}]})");
        QTest::newRow("first of an array") << json("[null,1,2]") << json("[1,2]");
        QTest::newRow("last of an array") << json("[1,2,null]") << json("[1,2]");
        QTest::newRow("only nulls") << json("[null,null]") << json("[]");
        QTest::newRow("nested arrays") << json("[1,[null],[2,[null,3]]]") << json("[1,[],[2,[3]]]");
        QTest::newRow("members") << json(R"({"a":null,"b":1,"c":null,"d":{"e":null}})") << json(R"({"b":1,"d":{}})");
        QTest::newRow("null as text") << json(R"(["null"])") << json(R"(["null"])");
    }
    void nullsAreRemoved()
    {
        QFETCH(QJsonValue, value);
        QFETCH(QJsonValue, cleaned);
        QCOMPARE(KXWebViewJSBridge::removeJSONNullValues(value), cleaned);
    }

    void nullsAreRemovedFromBigContainers()
    {
        QJsonObject object;
        QJsonArray array;
        for (int i = 0; i < 50000; ++i) {
            array.append(i % 2 ? QJsonValue(i) : QJsonValue());
            object.insert(QString::number(100000 + i), i % 2 ? QJsonValue(i) : QJsonValue());
        }
        QCOMPARE(KXWebViewJSBridge::removeJSONNullValues(array).toArray().size(), 25000);
        QCOMPARE(KXWebViewJSBridge::removeJSONNullValues(object).toObject().size(), 25000);
    }

    void whatNestsTooDeepIsLeftOutOfParameters()
    {
        const int limit = KXWebViewJSBridge::NestingLimit;
        QCOMPARE(KXWebViewJSBridge::removeJSONNullValues(nestedArrays(limit)), nestedArrays(limit));
        QCOMPARE(KXWebViewJSBridge::removeJSONNullValues(nestedArrays(limit + 3)), nestedArrays(limit));
    }

    void anObjectIsAMessageLikeItsText()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        const QString text = pageMessage("method", R"({"method":"play","mid":5})");
        Recorder recorder;
        bridge.handleH5Message(text, recorder.sender());
        bridge.handleH5Message(QJsonValue(text), recorder.sender());
        bridge.handleH5Message(QJsonDocument::fromJson(text.toUtf8()).object(), recorder.sender());
        QCOMPARE(recorder.commands.size(), 3);
        QCOMPARE(recorder.commands[1], recorder.commands[0]);
        QCOMPARE(recorder.commands[2], recorder.commands[0]);
    }

    void anAnswerCarriesTheMidInItsOwnType_data()
    {
        QTest::addColumn<QByteArray>("mid");
        for (const char *mid : {"7", "\"7\"", "\"9223372036854775807\"", "9223372036854775807", "-9223372036854775808",
                 "9007199254740993", "2.5", "\"\"", "0", "true", "null", "[1]"})
            QTest::newRow(mid) << QByteArray(mid);
    }
    void anAnswerCarriesTheMidInItsOwnType()
    {
        QFETCH(QByteArray, mid);
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        Recorder recorder;
        bridge.handleH5Message(
            pageMessage("method", R"({"method":"play","once":1,"mid":)" + mid + "}"), recorder.sender());
        QCOMPARE(recorder.commands.size(), 1);
        QCOMPARE(message(recorder.commands[0]),
            json(R"({"type":"handler","message":{"method":"play","once":1,"data":"done","mid":)" + mid + "}}")
                .toObject());
    }

    void anAnswerWithoutMidHasNoOnce()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play","once":0})"), recorder.sender());
        QCOMPARE(message(recorder.commands.value(0)),
            json(R"({"type":"handler","message":{"method":"play","data":"done"}})").toObject());
    }

    void anUnregisteredMethodGetsNoReply()
    {
        KXWebViewJSBridge bridge;
        Recorder recorder;
        bridge.handleH5Message(pageMessage("method", R"({"method":"play","mid":2})"), recorder.sender());
        QVERIFY(recorder.commands.isEmpty());
    }

    void aMethodWithoutReplySenderStillRuns()
    {
        KXWebViewJSBridge bridge;
        int runs = 0;
        bridge.registerMethod(QStringLiteral("play"), [&](const QJsonValue &, const auto &completion) {
            ++runs;
            completion(1);
        });
        bridge.handleH5Message(pageMessage("method", R"({"method":"play"})"), {});
        bridge.invokeNativeMethod(QStringLiteral("play"), absent, KXWebViewJSBridge::Completion());
        QCOMPARE(runs, 2);
    }

    void nativeCodeCanRunANativeMethod()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("echo"),
            [](const QJsonValue &parameters, const auto &completion) { completion(parameters); });
        QJsonValue result;
        bridge.invokeNativeMethod(
            QStringLiteral("echo"), json("[1,null]"), [&](const QJsonValue &value) { result = value; });
        QCOMPARE(result, json("[1]"));
    }

    void aWaitingCallbackWithoutMidStays()
    {
        KXWebViewJSBridge bridge;
        QList<QJsonValue> answers;
        (void)bridge.makeInvokeH5Cmd(
            QStringLiteral("seek"), absent, [&](const QJsonValue &data) { answers += data; }, false);
        bridge.handleH5Message(pageMessage("handler", R"({"method":"seek","data":{"a":null}})"), {});
        bridge.handleH5Message(pageMessage("handler", R"({"method":"seek"})"), {});
        // Only a mid makes a one-shot of an answer.
        bridge.handleH5Message(pageMessage("handler", R"({"method":"seek","once":1,"data":2})"), {});
        QCOMPARE(answers, (QList<QJsonValue>{json(R"({"a":null})"), absent, 2}));
        QCOMPARE(bridge.callbackMap().size(), 1);
    }

    void aMidMakesTheSameKeyAsTextAndAsNumber_data()
    {
        QTest::addColumn<QByteArray>("mid");
        QTest::addColumn<QString>("key");
        QTest::newRow("number") << QByteArray("12") << QStringLiteral("play12");
        QTest::newRow("text") << QByteArray("\"12\"") << QStringLiteral("play12");
        QTest::newRow("number written as a fraction") << QByteArray("12.0") << QStringLiteral("play12");
        QTest::newRow("64 bits") << QByteArray("9223372036854775807") << QStringLiteral("play9223372036854775807");
        QTest::newRow("64 bits as text") << QByteArray("\"9223372036854775807\"")
                                         << QStringLiteral("play9223372036854775807");
        QTest::newRow("beyond 2^53") << QByteArray("9007199254740993") << QStringLiteral("play9007199254740993");
        QTest::newRow("negative") << QByteArray("-3") << QStringLiteral("play-3");
        QTest::newRow("minus zero") << QByteArray("-0") << QStringLiteral("play0");
        QTest::newRow("fraction") << QByteArray("2.5") << QStringLiteral("play2.5");
        QTest::newRow("empty text") << QByteArray("\"\"") << QStringLiteral("play");
        QTest::newRow("null") << QByteArray("null") << QStringLiteral("play(null)");
    }
    void aMidMakesTheSameKeyAsTextAndAsNumber()
    {
        QFETCH(QByteArray, mid);
        QFETCH(QString, key);
        KXWebViewJSBridge bridge;
        int calls = 0;
        bridge.registerCallback(key, [&](const QJsonValue &) { ++calls; });
        bridge.handleH5Message(pageMessage("handler", R"({"method":"play","mid":)" + mid + "}"), {});
        QCOMPARE(calls, 1);
        QVERIFY(bridge.callbackMap().isEmpty()); // a mid was present, so it is gone after the call
    }

    void aOneShotCallbackIsRemovedAfterItsCall()
    {
        KXWebViewJSBridge bridge;
        bool waitedDuringCall = false;
        bridge.registerCallback(QStringLiteral("play1"),
            [&](const QJsonValue &) { waitedDuringCall = bridge.callbackMap().contains(QStringLiteral("play1")); });
        bridge.handleH5Message(pageMessage("handler", R"({"method":"play","mid":1})"), {});
        QVERIFY(waitedDuringCall);
        QVERIFY(bridge.callbackMap().isEmpty());
    }

    void aKeyRegisteredAnewDuringItsOneShotCallGoesToo()
    {
        KXWebViewJSBridge bridge;
        bridge.registerCallback(QStringLiteral("play1"),
            [&](const QJsonValue &) { bridge.registerCallback(QStringLiteral("play1"), [](const QJsonValue &) {}); });
        bridge.handleH5Message(pageMessage("handler", R"({"method":"play","mid":1})"), {});
        QVERIFY(bridge.callbackMap().isEmpty());
    }

    void anInvokeTestTellsWhetherAMethodExists()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        Recorder recorder;
        bridge.handleH5Message(pageMessage("invokeTest", R"({"method":"play","data":{}})"), recorder.sender());
        bridge.handleH5Message(pageMessage("invokeTest", R"({"method":"fly","data":{}})"), recorder.sender());
        bridge.handleH5Message(pageMessage("invokeTest", R"({"method":"fly","mid":"3"})"), recorder.sender());
        bridge.handleH5Message(pageMessage("invokeTest", R"({"method":"play"})"), {});
        QCOMPARE(recorder.commands.size(), 3);
        QCOMPARE(message(recorder.commands[0]),
            json(R"({"type":"handler","message":{"method":"play","data":"1"}})").toObject());
        QCOMPARE(message(recorder.commands[1]),
            json(R"({"type":"handler","message":{"method":"fly","data":"0"}})").toObject());
        QCOMPARE(message(recorder.commands[2]),
            json(R"({"type":"handler","message":{"method":"fly","data":"0","mid":"3","once":1}})").toObject());
    }

    void whatIsNoMessageChangesAndSendsNothing_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
        row("absent", QString());
        row("empty", QStringLiteral(""));
        row("no JSON", QStringLiteral("hello"));
        row("cut", QStringLiteral(R"({"type":"method","message":{"method":"play")"));
        row("garbage behind", pageMessage("method", R"({"method":"play"})") + QStringLiteral(" x"));
        row("array at the top",
            QString(QStringLiteral("[") + pageMessage("method", R"({"method":"play"})") + QStringLiteral("]")));
        row("string at the top", QStringLiteral("\"method\""));
        row("unknown type", pageMessage("other", R"({"method":"play"})"));
        row("type in capitals", pageMessage("Method", R"({"method":"play"})"));
        row("type is a number", QStringLiteral(R"({"type":0,"message":{"method":"play"}})"));
        row("no type", QStringLiteral(R"({"message":{"method":"play"}})"));
        row("no body", QStringLiteral(R"({"type":"method"})"));
        row("body is an array", QStringLiteral(R"({"type":"method","message":["play"]})"));
        row("method is a number", pageMessage("method", R"({"method":1})"));
        row("no method, asked for", pageMessage("invokeTest", "{}"));
        row("no method, answered", pageMessage("handler", R"({"mid":"play1"})"));
        row("number too large", pageMessage("method", R"({"method":"play","data":1e999})"));
        row("huge and no JSON", QString(4 << 20, u'['));
        const auto data = [&](const char *name, const QByteArray &json) {
            row(name, pageMessage("method", R"({"method":"play","data":)" + json + "}"));
        };
        data("line feed in a string", "\"a\nb\"");
        data("tab in a string", "\"\t\"");
        data("nul in a string", QByteArray("\"\0\"", 3));
        data("control character in a key", "{\"\x1f\":1}");
        data("unknown escape", "\"\\q\"");
        data("escaped apostrophe", "\"\\'\"");
        data("capital escape", "\"\\N\"");
        data("escape without its digits", "\"\\u12\"");
        data("no digit behind the point", "[1.]");
        data("no digit before the point", ".5");
        data("no digit between sign and point", "-.5");
        data("exponent right behind the point", "1.e5");
        data("leading zero", "01");
        data("plus sign", "+1");
        data("not a number", "NaN");
        data("comma behind the last", "[1,]");
        data("comment", "/**/1");
        data("apostrophes for quotes", "'a'");
        row("cut in an escape", QStringLiteral("{\"type\":\"method\\"));
        row("a point alone", QStringLiteral("."));
    }
    void whatIsNoMessageChangesAndSendsNothing()
    {
        QFETCH(QString, text);
        KXWebViewJSBridge bridge;
        int calls = 0;
        bridge.registerMethod(QStringLiteral("play"), [&](const QJsonValue &, const auto &) { ++calls; });
        bridge.registerCallback(QStringLiteral("play"), [&](const QJsonValue &) { ++calls; });
        bridge.registerCallback(QStringLiteral("play1"), [&](const QJsonValue &) { ++calls; });
        Recorder recorder;
        bridge.handleH5Message(text, recorder.sender());
        bridge.handleH5Message(QJsonValue(text), recorder.sender());
        QCOMPARE(calls, 0);
        QVERIFY(recorder.commands.isEmpty());
        QCOMPARE(bridge.callbackMap().size(), 2);
    }

    void otherJSONValuesAreNoMessages_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("absent") << absent;
        QTest::newRow("null") << QJsonValue(QJsonValue::Null);
        QTest::newRow("number") << QJsonValue(1);
        QTest::newRow("true") << QJsonValue(true);
        QTest::newRow("array") << json(R"([{"type":"invokeTest","message":{"method":"play"}}])");
    }
    void otherJSONValuesAreNoMessages()
    {
        QFETCH(QJsonValue, value);
        KXWebViewJSBridge bridge;
        Recorder recorder;
        bridge.handleH5Message(value, recorder.sender());
        QVERIFY(recorder.commands.isEmpty());
    }

    void nestingIsLimited_data()
    {
        QTest::addColumn<int>("depth"); // of the data; the message and its body come on top
        QTest::addColumn<bool>("handled");
        const int limit = KXWebViewJSBridge::NestingLimit;
        QTest::newRow("at the limit") << limit - 2 << true;
        QTest::newRow("beyond it") << limit - 1 << false;
        QTest::newRow("far beyond it") << limit * 8 << false;
    }
    void nestingIsLimited()
    {
        QFETCH(int, depth);
        QFETCH(bool, handled);
        KXWebViewJSBridge bridge;
        QList<QJsonValue> received;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &parameters, const auto &) { received += parameters; });
        const QByteArray data = QByteArray(depth, '[') + QByteArray(depth, ']');
        bridge.handleH5Message(pageMessage("method", R"({"method":"play","data":)" + data + "}"), {});
        bridge.handleH5Message(QJsonObject{{QStringLiteral("type"), QStringLiteral("method")},
                                   {QStringLiteral("message"),
                                       QJsonObject{{QStringLiteral("method"), QStringLiteral("play")},
                                           {QStringLiteral("data"), nestedArrays(depth)}}}},
            {});
        if (handled)
            QCOMPARE(received, (QList<QJsonValue>{nestedArrays(depth), nestedArrays(depth)}));
        else
            QVERIFY(received.isEmpty());
    }

    void theLastOfEqualKeysCounts()
    {
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("play"), answerDone);
        Recorder recorder;
        bridge.handleH5Message(
            pageMessage("method", R"({"method":"fly","mid":1,"method":"play","mid":2})"), recorder.sender());
        QCOMPARE(body(recorder.commands.value(0)).value(u"mid"), QJsonValue(2));
    }

    void anyTextComesThrough_data()
    {
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<QString>("text");
        QTest::newRow("lone high") << QByteArray("\\ud83d") << QString(QChar(0xd83d));
        QTest::newRow("lone low") << QByteArray("x\\ude00x")
                                  << QString(QStringLiteral("x") + QChar(0xde00) + QStringLiteral("x"));
        QTest::newRow("escaped pair") << QByteArray("\\ud83d\\ude00") << QStringLiteral("\U0001F600");
        QTest::newRow("nul") << QByteArray("a\\u0000b")
                             << QString(QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
        QTest::newRow("separators") << QByteArray("\u2028\u2029") << QStringLiteral("\u2028\u2029");
        QTest::newRow("every escape") << QByteArray("\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0041")
                                      << QStringLiteral("\"\\/\b\f\n\r\tA");
        QTest::newRow("points") << QByteArray("a. .5 1. \x7f") << QStringLiteral("a. .5 1. \x7f");
        QTest::newRow("a million") << QByteArray(1 << 20, 'x') << QString(1 << 20, u'x');
    }
    void anyTextComesThrough()
    {
        QFETCH(QByteArray, written);
        QFETCH(QString, text);
        KXWebViewJSBridge bridge;
        bridge.registerMethod(QStringLiteral("echo"),
            [](const QJsonValue &parameters, const auto &completion) { completion(parameters); });
        Recorder recorder;
        bridge.handleH5Message(
            pageMessage("method", R"({"method":"echo","data":")" + written + R"("})"), recorder.sender());
        QCOMPARE(body(recorder.commands.value(0)).value(u"data").toString(), text);
    }

    void aLoneSurrogateThatIsNotEscapedBecomesAQuestionMark()
    {
        KXWebViewJSBridge bridge;
        QJsonValue received;
        bridge.registerMethod(
            QStringLiteral("play"), [&](const QJsonValue &parameters, const auto &) { received = parameters; });
        bridge.handleH5Message(QString(QStringLiteral(R"({"type":"method","message":{"method":"play","data":")")
                                   + QChar(0xd83d) + QStringLiteral(R"("}})")),
            {});
        QCOMPARE(received, QJsonValue(QStringLiteral("?")));
    }
};

QTEST_GUILESS_MAIN(KXWebViewJSBridgeTest)
#include "KXWebViewJSBridgeTest.moc"
