// SPDX-License-Identifier: MIT
#include "BridgeMessages.h"

#include <QtTest/QTest>

#include <cmath>
#include <limits>

using namespace kx::test;

// What the bridge sends to the page.
class KXWebViewJSBridgeCommandsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

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
};

QTEST_GUILESS_MAIN(KXWebViewJSBridgeCommandsTest)
#include "KXWebViewJSBridgeCommandsTest.moc"
