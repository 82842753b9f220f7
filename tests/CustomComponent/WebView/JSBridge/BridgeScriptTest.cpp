// SPDX-License-Identifier: MIT
// The page's script, run in the real engine.
#include "Support/EngineWarnings.h"

#include "ScriptPage.h"

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>

#include <memory>

using kx::test::ScriptPage;

class BridgeScriptTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<ScriptPage> m_page;

    void inject() { m_page->run(QString(KXWebViewJSBridge::javasctipt4Inject() + QStringLiteral("void 0"))); }

    // What the page has sent since the last call.
    QString sent() { return m_page->json("sent.splice(0)"); }
    QString waiting() { return m_page->json("Object.keys(_vexa.responseCallbacks)"); }

private Q_SLOTS:
    void initTestCase()
    {
        m_profile = std::make_unique<QWebEngineProfile>();
        // The first page starts the engine, whose processes may not be there in time for it.
        QTRY_VERIFY(ScriptPage(m_profile.get()).show(QStringLiteral("<!doctype html><title>started</title>")));
    }

    void init()
    {
        QTest::failOnWarning(kx::test::anyWarningButTheEngines());
        m_page = std::make_unique<ScriptPage>(m_profile.get());
        QVERIFY(m_page->show(QStringLiteral("<!doctype html><title>page</title>")));
        m_page->run("var sent = [], answers = [];"
                    "var _vexaNativeObject = {h5InvokeNative: function (text) { sent.push(JSON.parse(text)); }};"
                    "function keep(data) { answers.push(data === undefined ? 'absent' : data); }");
    }

    void cleanup() { m_page.reset(); }
    void cleanupTestCase() { m_profile.reset(); }

    // The text

    void namesAreFixed()
    {
        QCOMPARE(KXWebViewJSBridge::h5BridgeObjectName(), QStringLiteral("_vexa"));
        QCOMPARE(KXWebViewJSBridge::h5NativeMapBridgeName(), QStringLiteral("_vexaNativeObject"));
        QCOMPARE(KXWebViewJSBridge::jsBridgeReadyIdentity(), QStringLiteral("_vexa://iamready"));
        QCOMPARE(KXWebViewJSBridge::makeInvokeH5Cmd(QStringLiteral("{%1}")),
            QStringLiteral("if(window._vexa){window._vexa.invokeH5({%1});}"));
    }

    void everyPlaceholderIsFilled()
    {
        QCOMPARE(KXWebViewJSBridge::fillReplaceholder(
                     QStringLiteral("__h5BridgeName__ __h5NativeMapBridgeName__ a__h5BridgeName__b __h5bridgename__")),
            QStringLiteral("_vexa _vexaNativeObject a_vexab __h5bridgename__"));
        QCOMPARE(KXWebViewJSBridge::fillReplaceholder(QStringLiteral("")), QStringLiteral(""));
        QVERIFY(!KXWebViewJSBridge::javasctipt4Inject().contains(QStringLiteral("__h5")));
        QVERIFY(!KXWebViewJSBridge::javasctipt4Debug().contains(QStringLiteral("__h5")));
    }

    void theScriptIsOneFunctionRunAtOnce()
    {
        const QString script = KXWebViewJSBridge::javasctipt4Inject();
        QVERIFY(script.startsWith(QStringLiteral(";(function(){")));
        QVERIFY(script.endsWith(QStringLiteral("})();")));
    }

    void theScriptLeavesOneGlobalOnly()
    {
        m_page->run("var before = Object.getOwnPropertyNames(window).concat('before')");
        inject();
        QCOMPARE(m_page->json("Object.getOwnPropertyNames(window).filter(function (name) {"
                              "return before.indexOf(name) < 0; })"),
            QStringLiteral(R"(["_vexa"])"));
    }

    // The object

    void aNewObjectIsEmpty()
    {
        inject();
        QCOMPARE(
            m_page->json("[_vexa.mid, _vexa.methodHandler, _vexa.responseCallbacks]"), QStringLiteral("[1,{},{}]"));
        QVERIFY(m_page->run("/^main([1-9][0-9]{0,2}|1000)$/.test(_vexa.name)").toBool());
    }

    void itsNameIsDrawnByLot_data()
    {
        QTest::addColumn<QString>("random");
        QTest::addColumn<QString>("name");
        QTest::newRow("exactly 0") << QStringLiteral("0") << QStringLiteral("main0");
        QTest::newRow("just above 0") << QStringLiteral("1e-9") << QStringLiteral("main1");
        QTest::newRow("middle") << QStringLiteral("0.5") << QStringLiteral("main500");
        QTest::newRow("just below 1") << QStringLiteral("1 - 1e-9") << QStringLiteral("main1000");
    }
    void itsNameIsDrawnByLot()
    {
        QFETCH(QString, random);
        m_page->run(QStringLiteral("Math.random = function () { return %1; }; 0").arg(random));
        inject();
        QTEST(m_page->run("_vexa.name").toString(), "name");
    }

    void aSecondInjectionChangesNothing()
    {
        inject();
        m_page->run("var first = _vexa; _vexa.registerMethod('play', keep); _vexa.invokeNativeOnce('load', keep);");
        inject();
        QVERIFY(m_page->run("_vexa === first && _vexa.mid === 2 && _vexa.methodHandler.play === keep").toBool());
        QCOMPARE(waiting(), QStringLiteral(R"(["load2"])"));
    }

    // Calls to the program

    void whatIsSentDependsOnTheArguments_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("message"); // empty when nothing is sent
        QTest::addColumn<QString>("keys");
        const auto row = [](const char *call, const char *message, const char *keys) {
            QTest::newRow(call) << QString::fromUtf8(call) << QString::fromUtf8(message) << QString::fromUtf8(keys);
        };
        row("invokeNative('m')", R"({"method":"m","data":{},"once":0})", "[]");
        row("invokeNative('m', 5)", R"({"method":"m","data":5,"once":0})", "[]");
        row("invokeNative('m', null)", R"({"method":"m","data":null,"once":0})", "[]");
        row("invokeNative('m', undefined)", R"({"method":"m","once":0})", "[]");
        row("invokeNative('m', keep)", R"({"method":"m","data":{},"once":0})", R"(["m"])");
        row("invokeNative('m', [1], keep)", R"({"method":"m","data":[1],"once":0})", R"(["m"])");
        row("invokeNative('m', 5, undefined)", R"({"method":"m","data":5,"once":0})", "[]");
        row("invokeNativeOnce('m')", R"({"method":"m","data":{},"once":1})", "[]");
        row("invokeNativeOnce('m', 5)", R"({"method":"m","data":5,"once":1})", "[]");
        row("invokeNativeOnce('m', keep)", R"({"method":"m","data":{},"once":1,"mid":2})", R"(["m2"])");
        row("invokeNativeOnce('m', {a:1}, keep)", R"({"method":"m","data":{"a":1},"once":1,"mid":2})", R"(["m2"])");
        row("invokeNativeOnce('m', 5, null)", R"({"method":"m","data":5,"once":1})", "[]");
        row("_invokeNative('m', 1)", R"({"method":"m","data":{},"once":1})", "[]");
        row("_invokeNative('m', 0, keep)", R"({"method":"m","data":{},"once":0})", R"(["m"])");
        row("_invokeNative('m', 1, 5, keep)", R"({"method":"m","data":5,"once":1,"mid":2})", R"(["m2"])");
        row("doSend({method: 'm', x: 1}, keep)", R"({"method":"m","x":1})", R"(["m"])");
        row("invokeNative()", "", "[]");
        row("invokeNativeOnce()", "", "[]");
        row("invokeNative('m', 5, keep, 1)", "", "[]");
        row("_invokeNative('m')", "", "[]");
        row("_invokeNative('m', 0, 5, keep, 1)", "", "[]");
    }
    void whatIsSentDependsOnTheArguments()
    {
        QFETCH(QString, call);
        QFETCH(QString, message);
        QFETCH(QString, keys);
        inject();
        m_page->run(QString(QStringLiteral("_vexa.") + call + QStringLiteral("; 0")));
        QCOMPARE(sent(),
            message.isEmpty()
                ? QStringLiteral("[]")
                : QString(QStringLiteral(R"([{"type":"method","message":)") + message + QStringLiteral("}]")));
        QCOMPARE(waiting(), keys);
    }

    void oneShotIdsCountUpToTheBoundAndBeginAgain()
    {
        inject();
        m_page->run("_vexa.mid = 9007199254740990;"
                    "for (var i = 0; i < 3; i++) { _vexa.invokeNativeOnce('m', keep); }");
        QCOMPARE(
            m_page->json("sent.map(function (m) { return m.message.mid; })"), QStringLiteral("[9007199254740991,1,2]"));
        QCOMPARE(waiting(), QStringLiteral(R"(["m9007199254740991","m1","m2"])"));
    }

    void aOneShotCallbackIsForgottenAfterItsAnswer()
    {
        inject();
        m_page->run("_vexa.invokeNativeOnce('m', function (data) { answers.push(data, "
                    "Object.keys(_vexa.responseCallbacks)); });"
                    "_vexa.invokeH5({type: 'handler', message: {method: 'm', mid: 2, once: 1, data: 'yes'}});");
        QCOMPARE(m_page->json("answers"), QStringLiteral(R"(["yes",["m2"]])"));
        QCOMPARE(waiting(), QStringLiteral("[]"));
    }

    void aMidGivenAsTextFindsTheSameCallback()
    {
        inject();
        m_page->run("_vexa.invokeNativeOnce('m', keep);"
                    "_vexa.invokeH5({type: 'handler', message: {method: 'm', mid: '2', data: 'yes'}});");
        QCOMPARE(m_page->json("answers"), QStringLiteral(R"(["yes"])"));
        QCOMPARE(waiting(), QStringLiteral("[]"));
    }

    void anotherCallbackStaysUntilItIsReplaced()
    {
        inject();
        m_page->run("_vexa.invokeNative('m', 1, keep);"
                    "var answer = {type: 'handler', message: {method: 'm', data: 'first'}};"
                    "_vexa.invokeH5(answer); _vexa.invokeH5({type: 'handler', message: {method: 'm', mid: 0}});"
                    "_vexa.invokeNative('m', 1, function (data) { answers.push('second'); });"
                    "_vexa.invokeH5(answer);");
        QCOMPARE(m_page->json("answers"), QStringLiteral(R"(["first","absent","second"])"));
        QCOMPARE(waiting(), QStringLiteral(R"(["m"])"));
    }

    void anAnswerWithoutCallbackIsAConsoleError()
    {
        inject();
        m_page->run("_vexa.invokeH5({type: 'handler', message: {method: 'm', mid: 9}});"
                    "_vexa.invokeH5({type: 'handler', message: {method: 'constructor'}});");
        QTRY_COMPARE(m_page->errors,
            (QStringList{QStringLiteral("can't find callback:m9"), QStringLiteral("can't find callback:constructor")}));
    }

    void canInvokeNativeAsksAndKeepsItsCallback()
    {
        inject();
        m_page->run("_vexa.canInvokeNative('m'); _vexa.canInvokeNative('m', keep);"
                    "var answer = {type: 'handler', message: {method: 'm', data: '1'}};"
                    "_vexa.invokeH5(answer); _vexa.invokeH5(answer);");
        QCOMPARE(sent(), QStringLiteral(R"([{"type":"invokeTest","message":{"method":"m","data":{}}}])"));
        QCOMPARE(m_page->json("answers"), QStringLiteral(R"(["1","1"])"));
        QCOMPARE(waiting(), QStringLiteral(R"(["m"])"));
    }

    void aCallbackWaitsBeforeItsMessageGoesOut()
    {
        m_page->run(
            "_vexaNativeObject.h5InvokeNative = function (text) {"
            "  var call = JSON.parse(text).message;"
            "  _vexa.invokeH5({type: 'handler', message: {method: call.method, mid: call.mid, data: call.mid}});"
            "}; 0");
        inject();
        m_page->run(
            "_vexa.invokeNative('a', keep); _vexa.invokeNativeOnce('b', keep); _vexa.canInvokeNative('c', keep);");
        QCOMPARE(m_page->json("answers"), QStringLiteral(R"(["absent",2,"absent"])"));
        QCOMPARE(waiting(), QStringLiteral(R"(["a","c"])"));
        QVERIFY(m_page->errors.isEmpty());
    }

    // Calls from the program

    void aRegisteredMethodIsCalledAndAnswers()
    {
        inject();
        m_page->run("_vexa.registerMethod('m', function (data, answer) { answers.push(data); answer([data]); });"
                    "_vexa.invokeH5({type: 'method', message: {method: 'm', data: 5}});"
                    "_vexa.invokeH5({type: 'method', message: {method: 'm', data: 6, mid: 3, once: 1}});");
        QCOMPARE(m_page->json("answers"), QStringLiteral("[5,6]"));
        QCOMPARE(sent(),
            QStringLiteral(R"([{"type":"handler","message":{"method":"m","data":[5]}},)"
                           R"({"type":"handler","message":{"method":"m","data":[6],"mid":3,"once":1}}])"));
    }

    void anAnswerThatIsFalsyBecomesAnEmptyObject_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("data");
        for (const char *falsy : {"0", "''", "null", "false", "NaN", "undefined", ""})
            QTest::newRow(*falsy ? falsy : "none") << QString::fromUtf8(falsy) << QStringLiteral("{}");
        QTest::newRow("text 0") << QStringLiteral("'0'") << QStringLiteral("\"0\"");
        QTest::newRow("empty array") << QStringLiteral("[]") << QStringLiteral("[]");
        QTest::newRow("true") << QStringLiteral("true") << QStringLiteral("true");
    }
    void anAnswerThatIsFalsyBecomesAnEmptyObject()
    {
        QFETCH(QString, answer);
        QFETCH(QString, data);
        inject();
        m_page->run(QStringLiteral("_vexa.registerHandler('m', function (data, answer) { answer(%1); });"
                                   "_vexa.invokeH5({type: 'method', message: {method: 'm'}});")
                        .arg(answer));
        QCOMPARE(m_page->json("sent[0].message.data"), data);
    }

    void methodsThatAreNotRegisteredAreIgnored()
    {
        inject();
        m_page->run("_vexa.registerMethod('m', keep); _vexa.registerMethod('m');"
                    "['m', 'other', 'toString', '__proto__'].forEach(function (name) {"
                    "  _vexa.invokeH5({type: 'method', message: {method: name, mid: 1}}); });");
        QCOMPARE(sent(), QStringLiteral("[]"));
        QCOMPARE(m_page->json("answers"), QStringLiteral("[]"));
        QVERIFY(m_page->errors.isEmpty());
    }

    void otherTypesAreIgnored()
    {
        inject();
        m_page->run("_vexa.registerMethod('m', keep); _vexa.invokeNative('m', keep); sent = [];"
                    "['invokeTest', 'Method', ''].forEach(function (type) {"
                    "  _vexa.invokeH5({type: type, message: {method: 'm'}}); });");
        QCOMPARE(m_page->json("answers"), QStringLiteral("[]"));
        QCOMPARE(sent(), QStringLiteral("[]"));
    }

    // The way to the program

    void theMessageHandlerIsUsedWhereThereIsNoNativeObject()
    {
        m_page->run("_vexaNativeObject = undefined; window.webkit = {messageHandlers: {_vexaNativeObject: {"
                    "postMessage: function (text) { sent.push(typeof text, JSON.parse(text)); }}}};");
        inject();
        m_page->run("_vexa.invokeNative('m');");
        QCOMPARE(sent(), QStringLiteral(R"(["string",{"type":"method","message":{"method":"m","data":{},"once":0}}])"));
    }

    void theNativeObjectComesBeforeTheMessageHandler()
    {
        m_page->run(
            "window.webkit = {messageHandlers: {_vexaNativeObject: {postMessage: function () { sent.push('no'); }}}};");
        inject();
        m_page->run("_vexa.invokeNative('m');");
        QCOMPARE(m_page->json("sent.length + sent[0].type"), QStringLiteral("\"1method\""));
    }

    void withoutAWayMessagesAreDropped_data()
    {
        QTest::addColumn<QString>("channel");
        QTest::newRow("nothing") << QStringLiteral("undefined");
        QTest::newRow("no handlers") << QStringLiteral("{}");
        QTest::newRow("another handler") << QStringLiteral("{messageHandlers: {other: {postMessage: keep}}}");
    }
    void withoutAWayMessagesAreDropped()
    {
        QFETCH(QString, channel);
        m_page->run(QStringLiteral("_vexaNativeObject = undefined; window.webkit = %1; 0").arg(channel));
        inject();
        QCOMPARE(
            m_page->run("_vexa.invokeNativeOnce('m', keep); _vexa.canInvokeNative('n', keep); 'went on'").toString(),
            QStringLiteral("went on"));
        QCOMPARE(m_page->json("answers"), QStringLiteral("[]"));
        QVERIFY(m_page->errors.isEmpty());
    }

    // Those who wait for the bridge

    void waitingCallersAreCalledInOrderThenForgotten()
    {
        m_page->run(
            "window._vexaCallers = ["
            "  function (bridge) { answers.push(1, bridge === _vexa); }, function (bridge) { answers.push(2); }];");
        inject();
        QTRY_COMPARE(m_page->json("answers"), QStringLiteral("[1,true,2]"));
        QVERIFY(!m_page->run("'_vexaCallers' in window").toBool());
    }

    void callersThatComeRightAfterTheScriptAreCalledToo()
    {
        m_page->run(
            QString(KXWebViewJSBridge::javasctipt4Inject() + QStringLiteral("window._vexaCallers = [keep]; 0")));
        QTRY_COMPARE(m_page->run("answers.length").toInt(), 1);
    }

    void aSecondInjectionCallsNobody()
    {
        m_page->run("window._vexaCallers = [keep];");
        inject();
        QTRY_COMPARE(m_page->run("answers.length").toInt(), 1);
        m_page->run("window._vexaCallers = [keep];");
        inject();
        m_page->run("setTimeout(function () { answers.push('later'); }, 0); 0"); // comes behind what the script started
        QTRY_COMPARE(m_page->run("answers[answers.length - 1]").toString(), QStringLiteral("later"));
        QCOMPARE(m_page->run("answers.length").toInt(), 2);
        QVERIFY(m_page->run("'_vexaCallers' in window").toBool());
    }

    void whatIsNoListOfCallersIsLeftAlone()
    {
        m_page->run("window._vexaCallers = {0: keep, length: 1};");
        inject();
        m_page->run("setTimeout(function () { answers.push('later'); }, 0); 0");
        QTRY_COMPARE(m_page->json("answers"), QStringLiteral(R"(["later"])"));
        QVERIFY(m_page->run("'_vexaCallers' in window").toBool());
        QVERIFY(m_page->errors.isEmpty());
    }

    void aCallersListThatCannotBeDeletedIsEmptied()
    {
        QVERIFY(m_page->show(
            QStringLiteral("<script>var answers = 0, _vexaCallers = [function () { answers++; }];</script>")));
        inject();
        QTRY_COMPARE(m_page->run("answers").toInt(), 1);
        QVERIFY(m_page->run("window._vexaCallers === undefined").toBool());
    }

    void aCallerThatThrowsDoesNotStopTheOthers()
    {
        m_page->run("window._vexaCallers = [function () { throw new Error('first'); }, keep];");
        inject();
        QTRY_COMPARE(m_page->run("answers.length").toInt(), 1);
        QTRY_COMPARE(m_page->errors, QStringList{QStringLiteral("Uncaught Error: first")});
        QVERIFY(!m_page->run("'_vexaCallers' in window").toBool());
    }

    // The debug script

    void theDebugScriptShowsErrors_data()
    {
        QTest::addColumn<QString>("thrown");
        QTest::addColumn<QRegularExpression>("alert");
        const auto row = [](const char *thrown, const char *alert) {
            QTest::newRow(thrown) << QString::fromUtf8(thrown)
                                  << QRegularExpression(QRegularExpression::anchoredPattern(QString::fromUtf8(alert)));
        };
        row("new TypeError('boom')", R"(name: TypeError\nmessage: boom\nstack: "TypeError: boom\\n    at .*")");
        row("'text'", R"("text")");
        row("{a: [1]}", R"(\{"a":\[1\]\})");
        row("0", "0");
        row("null", R"("Uncaught null")");
    }
    void theDebugScriptShowsErrors()
    {
        QFETCH(QString, thrown);
        QFETCH(QRegularExpression, alert);
        // In the page's own script: the engine hides from the page what scripts from outside throw.
        QVERIFY(m_page->show(QStringLiteral("<script>function fail() { throw %1; }</script>").arg(thrown)));
        m_page->run(QString(KXWebViewJSBridge::javasctipt4Debug() + QStringLiteral("setTimeout(fail, 0); 0")));
        QTRY_COMPARE(m_page->alerts.size(), 1);
        QVERIFY2(alert.match(m_page->alerts.first()).hasMatch(), qPrintable(m_page->alerts.first()));
    }
};

QTEST_MAIN(BridgeScriptTest)
#include "BridgeScriptTest.moc"
