// SPDX-License-Identifier: MIT
#include "BridgeMessages.h"

#include <QtTest/QTest>

#include <cmath>
#include <limits>

using namespace kx::test;

namespace {

// `depth` arrays inside each other.
QJsonValue nestedArrays(int depth)
{
    QJsonValue value = QJsonArray();
    for (int i = 1; i < depth; ++i)
        value = QJsonArray{value};
    return value;
}

} // namespace

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

    // Messages to the page

    void aCallToThePageWithoutOnceHasNoMid()
    {
        KXWebViewJSBridge bridge;
        const QString command = bridge.makeInvokeH5Cmd(
            QStringLiteral("seek"), 12, [](const QJsonValue &) {}, false);
        QCOMPARE(message(command), json(R"({"type":"method","message":{"method":"seek","data":12}})").toObject());
        QCOMPARE(bridge.mid(), 0);
        QCOMPARE(bridge.callbackMap().keys(), QStringList{QStringLiteral("seek")});
    }

    void aOneShotCallCountsItsMidUp()
    {
        KXWebViewJSBridge bridge;
        QList<int> called;
        const QString first = bridge.makeInvokeH5Cmd(
            QStringLiteral("seek"), absent, [&](const QJsonValue &) { called += 1; }, true);
        const QString second = bridge.makeInvokeH5Cmd(
            QStringLiteral("seek"), absent, [&](const QJsonValue &) { called += 2; }, true);
        QCOMPARE(message(first), json(R"({"type":"method","message":{"method":"seek","once":1,"mid":1}})").toObject());
        QCOMPARE(body(second).value(u"mid"), QJsonValue(2));
        QVERIFY(bridge.callbackMap().contains(QStringLiteral("seek1")));
        QVERIFY(bridge.callbackMap().contains(QStringLiteral("seek2")));

        bridge.handleH5Message(pageMessage("handler", R"({"method":"seek","mid":2,"once":1,"data":{}})"), {});
        QCOMPARE(called, QList<int>{2});
        QCOMPARE(bridge.callbackMap().keys(), QStringList{QStringLiteral("seek1")});
        bridge.handleH5Message(pageMessage("handler", R"({"method":"seek","mid":2,"once":1,"data":{}})"), {});
        QCOMPARE(called, QList<int>{2});
    }

    void aCallWithoutCallbackRemovesTheWaitingOne()
    {
        KXWebViewJSBridge bridge;
        const auto callback = [](const QJsonValue &) {};
        (void)bridge.makeInvokeH5Cmd(QStringLiteral("seek"), absent, callback, false);
        (void)bridge.makeInvokeH5Cmd(QStringLiteral("seek"), absent, {}, false);
        QVERIFY(bridge.callbackMap().isEmpty());
        bridge.registerCallback(QStringLiteral("seek1"), callback);
        const QString command = bridge.makeInvokeH5Cmd(QStringLiteral("seek"), absent, {}, true);
        QVERIFY(bridge.callbackMap().isEmpty());
        QCOMPARE(body(command).value(u"mid"), QJsonValue(1));
    }

    void theMidGoesBeyondWhatDoublesCountAndNeverWraps()
    {
        KXWebViewJSBridge bridge;
        bridge.setMid(9007199254740992);
        const QString command = bridge.makeInvokeH5Cmd(
            QStringLiteral("seek"), absent, [](const QJsonValue &) {}, true);
        QVERIFY(command.contains(QStringLiteral("\"mid\": 9007199254740993")));
        QVERIFY(bridge.callbackMap().contains(QStringLiteral("seek9007199254740993")));
        bridge.setMid(std::numeric_limits<qint64>::max());
        QVERIFY(bridge.makeInvokeH5Cmd(QStringLiteral("seek"), absent, {}, true)
                    .contains(QStringLiteral("\"mid\": 9223372036854775807")));
        QCOMPARE(bridge.mid(), std::numeric_limits<qint64>::max());
    }

    void kindsHaveTheirNames_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("type");
        QTest::newRow("method") << 0 << QStringLiteral("method");
        QTest::newRow("handler") << 1 << QStringLiteral("handler");
        QTest::newRow("beyond") << 2 << QStringLiteral("");
        QTest::newRow("negative") << -1 << QStringLiteral("");
    }
    void kindsHaveTheirNames()
    {
        QFETCH(int, kind);
        QFETCH(QString, type);
        const QString command = KXWebViewJSBridge::packageCmd(kind, QStringLiteral("seek"), absent, absent);
        QCOMPARE(message(command),
            (QJsonObject{{QStringLiteral("type"), type},
                {QStringLiteral("message"), QJsonObject{{QStringLiteral("method"), QStringLiteral("seek")}}}}));
    }

    void absentDataIsLeftOutAndNullDataIsSent()
    {
        const auto data = [](const QJsonValue &value) {
            return body(KXWebViewJSBridge::packageCmd(0, QStringLiteral("seek"), value, absent)).value(u"data");
        };
        QVERIFY(data(absent).isUndefined());
        QVERIFY(data(QJsonValue::Null).isNull());
        QCOMPARE(data(QStringLiteral("")), QJsonValue(QStringLiteral("")));
    }

    void aMessageIsIndented()
    {
        const QString text = KXWebViewJSBridge::_packageMessage(
            1, QStringLiteral("list"), json(R"({"a":[1,"x"],"e":{},"f":[]})"), QStringLiteral("7"));
        QCOMPARE(text, QStringLiteral(R"({
    "message": {
        "data": {
            "a": [
                1,
                "x"
            ],
            "e": {},
            "f": []
        },
        "method": "list",
        "mid": "7",
        "once": 1
    },
    "type": "handler"
})"));
    }

    void numbersKeepTheirDigits_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << QJsonValue(0) << QStringLiteral("0");
        QTest::newRow("the default's look-alike") << QJsonValue(1) << QStringLiteral("1");
        QTest::newRow("largest") << QJsonValue(std::numeric_limits<qint64>::max())
                                 << QStringLiteral("9223372036854775807");
        QTest::newRow("smallest") << QJsonValue(std::numeric_limits<qint64>::min())
                                  << QStringLiteral("-9223372036854775808");
        QTest::newRow("beyond 2^53") << QJsonValue(qint64(9007199254740993)) << QStringLiteral("9007199254740993");
        QTest::newRow("fraction") << QJsonValue(0.1) << QStringLiteral("0.1");
        QTest::newRow("third") << QJsonValue(1.0 / 3) << QStringLiteral("0.3333333333333333");
        QTest::newRow("whole double") << QJsonValue(2.0) << QStringLiteral("2");
        QTest::newRow("big double") << QJsonValue(1e300) << QStringLiteral("1e+300");
        QTest::newRow("small double") << QJsonValue(5e-324) << QStringLiteral("5e-324");
        QTest::newRow("negative zero") << QJsonValue(-0.0) << QStringLiteral("0");
        QTest::newRow("not a number") << QJsonValue(std::nan("")) << QStringLiteral("null");
        QTest::newRow("infinity") << QJsonValue(-std::numeric_limits<double>::infinity()) << QStringLiteral("null");
    }
    void numbersKeepTheirDigits()
    {
        QFETCH(QJsonValue, value);
        QFETCH(QString, text);
        const QString packaged = KXWebViewJSBridge::_packageMessage(0, QStringLiteral("seek"), value, absent);
        const QString line = packaged.section(QStringLiteral("\"data\": "), 1).section(QStringLiteral(",\n"), 0, 0);
        QCOMPARE(line, text);
    }

    void stringsAreSafeInsideAScript_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        QTest::newRow("plain") << QStringLiteral("a/b'c<d>") << QStringLiteral("a/b'c<d>");
        QTest::newRow("empty") << QStringLiteral("") << QString();
        QTest::newRow("quotes") << QStringLiteral("\"\\") << QStringLiteral("\\\"\\\\");
        QTest::newRow("control") << QStringLiteral("\b\f\n\r\t\x01\x1f")
                                 << QStringLiteral("\\b\\f\\n\\r\\t\\u0001\\u001f");
        QTest::newRow("nul") << QString(QChar(0)) << QStringLiteral("\\u0000");
        QTest::newRow("separators") << QStringLiteral("\u2027\u2028\u2029\u202a")
                                    << QStringLiteral("\u2027\\u2028\\u2029\u202a");
        QTest::newRow("chinese") << QStringLiteral("\u64ad\u653e") << QStringLiteral("\u64ad\u653e");
        QTest::newRow("pair") << QStringLiteral("\U0001F600") << QStringLiteral("\U0001F600");
        QTest::newRow("lone high") << QString(QStringLiteral("a") + QChar(0xd83d)) << QStringLiteral("a\\ud83d");
        QTest::newRow("lone low") << QString(QChar(0xde00) + QStringLiteral("a")) << QStringLiteral("\\ude00a");
        QTest::newRow("swapped pair") << QString(QString(QChar(0xde00)) + QChar(0xd83d))
                                      << QStringLiteral("\\ude00\\ud83d");
        QTest::newRow("high before pair")
            << QString(QString(QChar(0xd83d)) + QStringLiteral("\U0001F600")) << QStringLiteral("\\ud83d\U0001F600");
        QTest::newRow("private use") << QString(QChar(0xe000)) << QString(QChar(0xe000));
        QTest::newRow("last") << QString(QChar(0xffff)) << QString(QChar(0xffff));
    }
    void stringsAreSafeInsideAScript()
    {
        QFETCH(QString, text);
        QFETCH(QString, written);
        const QString packaged =
            KXWebViewJSBridge::_packageMessage(0, QStringLiteral("seek"), QJsonObject{{text, text}}, absent);
        const QString line = QString(u'"' + written + QStringLiteral("\": \"") + written + u'"');
        QVERIFY2(packaged.contains(line), qPrintable(packaged));
        QCOMPARE(QJsonDocument::fromJson(packaged.toUtf8()).object()[u"message"][u"data"], (QJsonObject{{text, text}}));
    }

    void dataBeyondTheNestingLimitIsSentAsNull()
    {
        const int limit = KXWebViewJSBridge::NestingLimit;
        const QString within =
            KXWebViewJSBridge::_packageMessage(0, QStringLiteral("seek"), nestedArrays(limit), absent);
        QCOMPARE(within.count(u'['), limit);
        QVERIFY(!within.contains(QStringLiteral("null")));
        const QString beyond =
            KXWebViewJSBridge::_packageMessage(0, QStringLiteral("seek"), nestedArrays(limit + 1), absent);
        QCOMPARE(beyond.count(u'['), limit);
        QCOMPARE(beyond.count(QStringLiteral("null")), 1);
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

    void manyNullsAreRemovedInLinearTime()
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
