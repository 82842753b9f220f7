// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "PageFixture.h"

#include <QtCore/QRegularExpression>

using kx::test::PageFixture;

/// Scripts that native code runs in real pages.
class ScriptRunnerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { PageFixture::startEngine(); }
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void givesTheValueOfAScript_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("number") << QStringLiteral("1.5") << QJsonValue(1.5);
        QTest::newRow("string") << QStringLiteral("'a' + 'é\U0001F600'") << QJsonValue(QStringLiteral("aé\U0001F600"));
        QTest::newRow("empty string") << QStringLiteral("''") << QJsonValue(QStringLiteral(""));
        QTest::newRow("boolean") << QStringLiteral("!0") << QJsonValue(true);
        QTest::newRow("null") << QStringLiteral("null") << QJsonValue(QJsonValue::Undefined); // the engine's answer
        QTest::newRow("undefined") << QStringLiteral("undefined") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("empty script") << QStringLiteral("") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("array") << QStringLiteral("[1, [2], {}]")
                               << QJsonValue(QJsonArray{1, QJsonArray{2}, QJsonObject()});
        QTest::newRow("object") << QStringLiteral("({a: {b: null}})")
                                << QJsonValue(QJsonObject{
                                       {QStringLiteral("a"), QJsonObject{{QStringLiteral("b"), QJsonValue::Null}}}});
        QTest::newRow("value of a statement") << QStringLiteral("if (true) { 7; }") << QJsonValue(7);
        QTest::newRow("plain call") << QStringLiteral("String(3)") << QJsonValue(QStringLiteral("3"));
        QTest::newRow("ends in a comment") << QStringLiteral("4 // four") << QJsonValue(4);
        QTest::newRow("strict") << QStringLiteral("'use strict'; (function () { return typeof this; })()")
                                << QJsonValue(QStringLiteral("undefined"));
    }
    void givesTheValueOfAScript()
    {
        QFETCH(QString, script);
        QFETCH(QJsonValue, value);
        PageFixture fixture;
        fixture.loadHtml("");
        const auto result = fixture.evaluate(script);
        QVERIFY(!result.error);
        QCOMPARE(result.value, value);
    }

    void givesTheTextOfAnError_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("text");
        QTest::newRow("error") << QStringLiteral("throw new Error('boom')") << QStringLiteral("Error: boom");
        QTest::newRow("string") << QStringLiteral("throw 'boom'") << QStringLiteral("boom");
        QTest::newRow("reference") << QStringLiteral("nothing.there")
                                   << QStringLiteral("ReferenceError: nothing is not defined");
        QTest::newRow("in a page's function") << QStringLiteral("broken()") << QStringLiteral("TypeError: of the page");
        QTest::newRow("syntax") << QStringLiteral("var a = ;") << QStringLiteral("SyntaxError: Unexpected token ';'");
        QTest::newRow("a brace too many")
            << QStringLiteral("} window.out = 1; {") << QStringLiteral("SyntaxError: Unexpected token '}'");
        QTest::newRow("a brace too few") << QStringLiteral("if (1) {")
                                         << QStringLiteral("SyntaxError: Unexpected end of input");
        QTest::newRow("an open comment") << QStringLiteral("1 /* one")
                                         << QStringLiteral("SyntaxError: Invalid or unexpected token");
        QTest::newRow("an open template")
            << QStringLiteral("`one") << QStringLiteral("SyntaxError: Unexpected end of input");
        QTest::newRow("return") << QStringLiteral("return 1")
                                << QStringLiteral("SyntaxError: Illegal return statement");
        QTest::newRow("plain call") << QStringLiteral("nobody(1);")
                                    << QStringLiteral("ReferenceError: nobody is not defined");
        QTest::newRow("plain call of a broken function")
            << QStringLiteral("broken(1);") << QStringLiteral("TypeError: of the page");
    }
    void givesTheTextOfAnError()
    {
        QFETCH(QString, script);
        QFETCH(QString, text);
        PageFixture fixture;
        fixture.loadHtml("<script>function broken() { throw new TypeError('of the page'); }</script>");
        if (script == QLatin1String("broken()"))
            QTest::ignoreMessage(QtCriticalMsg, "Uncaught TypeError: of the page");
        const auto result = fixture.evaluate(script);
        QVERIFY(result.error);
        QCOMPARE(result.error->domain, kx::WebErrorDomain);
        QCOMPARE(result.error->code, qint64(kx::WebErrorJavaScriptException));
        QCOMPARE(result.error->localizedDescription, text);
        QVERIFY(result.value.isUndefined());

        std::optional<std::optional<KXError>> executed;
        fixture.page->executeJavaScript(script, [&](const std::optional<KXError> &error) { executed = error; });
        QTRY_VERIFY(executed);
        QVERIFY(*executed);
        QCOMPARE((*executed)->localizedDescription, text);
        QCOMPARE(fixture.evaluate(QStringLiteral("typeof window.out")).value, QJsonValue(QStringLiteral("undefined")));
    }

    void declaresWhatAScriptDeclares()
    {
        PageFixture fixture;
        fixture.loadHtml("");
        fixture.evaluate(QStringLiteral("var a = 1; let b = 2; const c = 3; function d() { return 4; } class E {}"));
        QCOMPARE(fixture.evaluate(QStringLiteral("[a, b, c, d(), typeof E, window.a, typeof window.b].join()")).value,
            QJsonValue(QStringLiteral("1,2,3,4,function,1,undefined")));
    }

    void keepsTheOrderOfAllKinds()
    {
        PageFixture fixture;
        fixture.loadHtml("<script>log = []; function say(what) { log.push(what); }</script>");
        QStringList answers;
        QStringList expected;
        for (int i = 0; i < 30; ++i) {
            const QString say = QStringLiteral("say(%1)").arg(i);
            const QString number = QString::number(i);
            expected.append(number);
            if (i % 3 == 0)
                fixture.page->evaluateJavaScript(
                    say, [&, number](const auto &, const auto &) { answers.append(number); });
            else
                fixture.page->executeJavaScript(say + (i % 3 == 1 ? QStringLiteral(";") : QStringLiteral("; // slow")),
                    [&, number](const auto &) { answers.append(number); });
        }
        QTRY_COMPARE(answers, expected);
        QCOMPARE(fixture.evaluate(QStringLiteral("log.join(' ')")).value, QJsonValue(expected.join(u' ')));
    }

    void oneThatThrowsDoesNotTouchTheOthers()
    {
        PageFixture fixture;
        fixture.loadHtml("<script>sum = 0; function add(n) { sum += n; } function fail() {"
                         "throw {toString: function () { throw 1; }}; }</script>");
        QStringList answers;
        for (const char *command : {"add(1);", "fail();", "add(10);", "missing();", "if(window.add){window.add(100);}",
                 "if(window.gone){window.gone(1);}"}) {
            fixture.page->executeJavaScript(QString::fromLatin1(command), [&](const std::optional<KXError> &error) {
                answers.append(error ? error->localizedDescription : QStringLiteral("ok"));
            });
        }
        QTRY_COMPARE(answers.size(), 6);
        QCOMPARE(answers,
            QStringList({QStringLiteral("ok"), QStringLiteral("unknown error"), QStringLiteral("ok"),
                QStringLiteral("ReferenceError: missing is not defined"), QStringLiteral("ok"), QStringLiteral("ok")}));
        QCOMPARE(fixture.evaluate(QStringLiteral("sum")).value, QJsonValue(111));
    }

    void givesNoErrorForARejectedPromise()
    {
        PageFixture fixture;
        fixture.loadHtml("");
        const auto result = fixture.evaluate(QStringLiteral("void Promise.reject(new Error('later'))"));
        QVERIFY(!result.error);
    }

    void answersBeforeTheFirstLoad()
    {
        PageFixture fixture;
        fixture.make();
        QCOMPARE(fixture.evaluate(QStringLiteral("1 + 1")).value, QJsonValue(2));
    }

    void answersScriptsThatTheirDocumentDoesNotOutlive_data()
    {
        QTest::addColumn<QByteArray>("host");
        QTest::newRow("same process") << QByteArray("127.0.0.1");
        QTest::newRow("other process") << QByteArray("localhost");
    }
    void answersScriptsThatTheirDocumentDoesNotOutlive()
    {
        QFETCH(QByteArray, host);
        PageFixture fixture;
        fixture.serve("/next", "<script>next = 1</script>");
        fixture.loadHtml("");
        int answers = 0;
        const QString next = fixture.server.url("/next", host).toString();
        fixture.page->evaluateJavaScript(QStringLiteral("location = '%1'; 1").arg(next), {});
        for (int i = 0; i < 200; ++i) {
            fixture.page->evaluateJavaScript(
                QStringLiteral("'%1'.repeat(1000)").arg(i), [&](const auto &, const auto &) { ++answers; });
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(fixture.client.finished, 2);
        QTRY_COMPARE(answers, 200);
        QCOMPARE(fixture.evaluate(QStringLiteral("next")).value, QJsonValue(1));
    }

    void tellsNothingWhereScriptsAreOff()
    {
        PageFixture fixture;
        fixture.configuration->preferences.javaScriptEnabled = false;
        fixture.loadHtml("<script>ran = 1</script>");
        const auto result = fixture.evaluate(QStringLiteral("1"));
        QVERIFY(result.value.isUndefined() || !result.error);
    }
};

QTEST_MAIN(ScriptRunnerTest)
#include "ScriptRunnerTest.moc"
