// SPDX-License-Identifier: MIT
// Both ends of the bridge at work: the native one here, the script in a page of the real engine.
#include "Support/EngineWarnings.h"

#include "ScriptPage.h"

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>

#include <QtCore/QJsonArray>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>

#include <memory>
#include <thread>

using kx::test::ScriptPage;

class BridgeEndToEndTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<ScriptPage> m_page;
    std::unique_ptr<KXWebViewJSBridge> m_bridge;

    void evaluate(const QString &command) { m_page->runJavaScript(command); }

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
        m_bridge = std::make_unique<KXWebViewJSBridge>();
        m_page->onConsoleLine = [this](const QString &line) {
            m_bridge->handleH5Message(line, [this](const QString &command) { evaluate(command); });
        };
        QWebEngineScript script;
        script.setInjectionPoint(QWebEngineScript::DocumentCreation);
        script.setWorldId(QWebEngineScript::MainWorld);
        script.setSourceCode(QString(
            QStringLiteral("window._vexaNativeObject = {h5InvokeNative: function (text) { console.log(text); }};")
            + KXWebViewJSBridge::javasctipt4Inject()));
        m_page->scripts().insert(script);
    }

    void cleanup()
    {
        QVERIFY2(m_page->errors.isEmpty(), qPrintable(m_page->errors.join(u'\n')));
        m_page.reset();
        m_bridge.reset();
    }
    void cleanupTestCase() { m_profile.reset(); }

    void aCallAtDocumentStartIsAnswered()
    {
        m_bridge->registerMethod(QStringLiteral("add"), [](const QJsonValue &parameters, const auto &completion) {
            completion(parameters[0].toInt() + parameters[1].toInt());
        });
        QVERIFY(m_page->show(QStringLiteral("<script>_vexa.invokeNativeOnce('add', [2, 3, null], function (sum) {"
                                            "document.title = 'sum ' + sum; });</script>")));
        QTRY_COMPARE(m_page->title(), QStringLiteral("sum 5"));
        QCOMPARE(m_page->json("Object.keys(_vexa.responseCallbacks)"), QStringLiteral("[]"));
    }

    void aRepeatedAnswerReachesTheSameCallback()
    {
        std::thread worker;
        m_bridge->registerMethod(
            QStringLiteral("progress"), [&](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
                worker = std::thread([completion] {
                    for (int i = 1; i <= 3; ++i)
                        completion(i);
                });
            });
        QVERIFY(
            m_page->show(QStringLiteral("<script>var seen = [];"
                                        "_vexa.invokeNative('progress', function (i) { seen.push(i); });</script>")));
        QTRY_VERIFY(worker.joinable());
        worker.join();
        QTRY_COMPARE(m_page->json("seen"), QStringLiteral("[1,2,3]"));
    }

    void thePageLearnsWhichMethodsExist()
    {
        m_bridge->registerMethod(QStringLiteral("play"), [](const QJsonValue &, const auto &) {});
        QVERIFY(m_page->show(
            QStringLiteral("<script>var known = {};['play', 'fly'].forEach(function (name) {"
                           "_vexa.canInvokeNative(name, function (yes) { known[name] = yes; }); });</script>")));
        QTRY_COMPARE(m_page->json("known"), QStringLiteral(R"({"play":"1","fly":"0"})"));
    }

    void nativeCallsThePage_data()
    {
        QTest::addColumn<bool>("once");
        QTest::newRow("once") << true;
        QTest::newRow("repeatedly") << false;
    }
    void nativeCallsThePage()
    {
        QFETCH(bool, once);
        QVERIFY(m_page->show(QStringLiteral(
            "<script>_vexa.registerMethod('twice', function (data, answer) { answer([data, data]); });</script>")));
        QList<QJsonValue> answers;
        evaluate(m_bridge->makeInvokeH5Cmd(
            QStringLiteral("twice"), QStringLiteral("x"), [&](const QJsonValue &data) { answers += data; }, once));
        QTRY_COMPARE(answers.size(), 1);
        QCOMPARE(answers[0], QJsonValue(QJsonArray{QStringLiteral("x"), QStringLiteral("x")}));
        QCOMPARE(m_bridge->callbackMap().size(), once ? 0 : 1);
    }

    void answersOfSeveralOneShotCallsDoNotMix()
    {
        QVERIFY(m_page->show(QStringLiteral("<script>var later = [];"
                                            "_vexa.registerMethod('name', function (data, answer) {"
                                            "  later.push(function () { answer('for ' + data); }); });</script>")));
        QStringList answers;
        for (int i = 0; i < 3; ++i) {
            evaluate(m_bridge->makeInvokeH5Cmd(
                QStringLiteral("name"), i,
                [&answers, i](const QJsonValue &data) { answers += QStringLiteral("%1 ").arg(i) + data.toString(); },
                true));
        }
        QTRY_COMPARE(m_page->run("later.length").toInt(), 3);
        m_page->run("later.reverse().forEach(function (answer) { answer(); })");
        QTRY_COMPARE(
            answers, (QStringList{QStringLiteral("2 for 2"), QStringLiteral("1 for 1"), QStringLiteral("0 for 0")}));
        QVERIFY(m_bridge->callbackMap().isEmpty());
    }

    void aCommandToAPageWithoutBridgeDoesNothing()
    {
        m_page->scripts().clear();
        QVERIFY(m_page->show(QStringLiteral("<title>plain</title>")));
        evaluate(m_bridge->makeInvokeH5Cmd(QStringLiteral("twice"), 1, {}, false));
        QCOMPARE(m_page->run("typeof window._vexa").toString(), QStringLiteral("undefined"));
    }

    void aMemberNamedProtoBecomesThePrototype()
    {
        m_bridge->registerMethod(QStringLiteral("echo"),
            [](const QJsonValue &parameters, const auto &completion) { completion(parameters); });
        QVERIFY(m_page->show(QStringLiteral("<script>var result; _vexa.invokeNativeOnce('echo',"
                                            "JSON.parse('{\"a\": 1, \"__proto__\": {\"b\": 2}}'),"
                                            "function (data) { result = [Object.keys(data), data.b]; });</script>")));
        QTRY_COMPARE(m_page->json("result"), QStringLiteral(R"([["a"],2])"));
    }

    void anyTextGoesThereAndBack_data()
    {
        QTest::addColumn<QString>("expression");
        const auto row = [](const char *name, const char *expression) {
            QTest::newRow(name) << QString::fromUtf8(expression);
        };
        row("quotes and tags", R"('\x22\'\\</script><!-- `${x}`')");
        row("line ends", R"('\n\r\u2028\u2029\t\b\f\v')");
        row("nul", R"('a\0b')");
        row("every control",
            "String.fromCharCode.apply(null, Array.from({length: 160}, function (_, i) { return i; }))");
        row("pair", R"('\ud83d\ude00')");
        row("lone high", R"('\ud83dx')");
        row("lone low", R"('\ude00')");
        row("swapped pair", R"('\ude00\ud83d')");
        row("noncharacters", R"('\ufffe\uffff\ufdd0')");
        row("chinese", R"('\u64ad\u653e\u5668')");
        row("numbers", "[0, -1, 0.1, 1e21, 5e-324, 1.7976931348623157e308, 9007199254740991, 1/3]");
        row("nested", "{a: [[], {}, [{b: {}}]], '': 1, 'toString': true}");
        row("a million", "'\u64ad'.repeat(1 << 20)");
    }
    void anyTextGoesThereAndBack()
    {
        QFETCH(QString, expression);
        m_bridge->registerMethod(QStringLiteral("echo"),
            [](const QJsonValue &parameters, const auto &completion) { completion(parameters); });
        QVERIFY(m_page->show(QStringLiteral("<script>var result = 'none yet';</script>")));
        m_page->run(QStringLiteral(
            "var original = (%1);"
            "_vexa.invokeNativeOnce('echo', original, function (data) {"
            "  function sorted(value) { return JSON.stringify(value, value && Object.keys(value).sort()); }"
            "  result = sorted(data) === sorted(original) ? 'same' : JSON.stringify(data); }); 0")
                        .arg(expression));
        QTRY_VERIFY_WITH_TIMEOUT(m_page->run("result").toString() != QStringLiteral("none yet"), 20000);
        QCOMPARE(m_page->run("result").toString(), QStringLiteral("same"));
    }
};

QTEST_MAIN(BridgeEndToEndTest)
#include "BridgeEndToEndTest.moc"
