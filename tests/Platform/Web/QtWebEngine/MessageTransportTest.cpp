// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "PageFixture.h"

#include <QtCore/QRegularExpression>

using kx::test::PageFixture;

namespace {

const QByteArray post = "webkit.messageHandlers.native.postMessage";

QByteArray script(const QByteArray &code)
{
    return "<script>" + code + "</script>";
}

} // namespace

/// Messages from real pages to native code.
class MessageTransportTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { PageFixture::startEngine(); }
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void reachesNativeCodeFromEveryKindOfFrame_data()
    {
        QTest::addColumn<QByteArray>("html");
        QTest::newRow("main frame") << script(post + "('here')");
        QTest::newRow("same origin") << QByteArray("<iframe src='/frame'></iframe>");
        QTest::newRow("other origin") << QByteArray("<iframe src='http://localhost:PORT/frame'></iframe>");
        QTest::newRow("sandboxed") << QByteArray("<iframe sandbox='allow-scripts' src='/frame'></iframe>");
        QTest::newRow("srcdoc") << QByteArray("<iframe srcdoc=\"" + script(post + "('here')") + "\"></iframe>");
        QTest::newRow("data") << QByteArray(
            "<iframe src=\"data:text/html," + script(post + "('here')") + "\"></iframe>");
        QTest::newRow("blob") << QByteArray("<iframe id=f></iframe>"
            + script("f.src = URL.createObjectURL(new Blob([\"<scr\" + \"ipt>" + post
                + "('here')</scr\" + \"ipt>\"], {type: 'text/html'}))"));
        QTest::newRow("frame in a frame") << QByteArray("<iframe src='http://localhost:PORT/outer'></iframe>");
    }
    void reachesNativeCodeFromEveryKindOfFrame()
    {
        QFETCH(QByteArray, html);
        PageFixture fixture;
        fixture.serve("/frame", script(post + "('here')"));
        fixture.serve("/outer", "<iframe src='/frame'></iframe>");
        fixture.loadHtml(html.replace("PORT", QByteArray::number(fixture.server.port())));
        QTRY_COMPARE(fixture.texts(), QStringList(QStringLiteral("here")));
    }

    void keepsTheOrderFromTheDocumentsStart()
    {
        PageFixture fixture;
        fixture.loadHtml(script("for (var i = 0; i < 3000; i++) " + post
            + "('' + i);"
              "Promise.resolve().then(function () { "
            + post
            + "('promise'); });"
              "setTimeout(function () { "
            + post + "('timer'); }, 0);"));
        QTRY_COMPARE(fixture.messages.size(), 3002);
        QStringList expected;
        for (int i = 0; i < 3000; ++i)
            expected.append(QString::number(i));
        expected << QStringLiteral("promise") << QStringLiteral("timer");
        QCOMPARE(fixture.texts(), expected);
    }

    void losesNothingAtTheEndOfADocument()
    {
        PageFixture fixture;
        fixture.loadHtml(script("['beforeunload', 'pagehide', 'unload'].forEach(function (type) {"
                                "  addEventListener(type, function () { "
            + post + "(type); }); });"));
        fixture.loadHtml(script(post + "('next')"));
        QTRY_COMPARE(fixture.texts(),
            QStringList({QStringLiteral("beforeunload"), QStringLiteral("pagehide"), QStringLiteral("unload"),
                QStringLiteral("next")}));
    }

    void losesNothingOfAFrameThatIsRemoved()
    {
        PageFixture fixture;
        fixture.serve("/frame",
            script("function say(text) { " + post
                + "(text); }"
                  "addEventListener('pagehide', function () { say('hide'); });"
                  "addEventListener('unload', function () { say('unload'); });"));
        fixture.loadHtml("<iframe id=f src='/frame'></iframe>");
        fixture.evaluate(
            QStringLiteral("f.contentWindow.say('before'); f.remove(); %1('after')").arg(QString::fromUtf8(post)));
        QTRY_COMPARE(fixture.messages.size(), 4);
        QCOMPARE(fixture.texts(),
            QStringList(
                {QStringLiteral("before"), QStringLiteral("hide"), QStringLiteral("unload"), QStringLiteral("after")}));
    }

    void worksInADocumentThatIsWrittenAnew()
    {
        PageFixture fixture;
        fixture.loadHtml("<iframe id=f src='/frame'></iframe>");
        fixture.evaluate(QStringLiteral("document.open(); document.write('new'); document.close(); %1('still')")
                             .arg(QString::fromUtf8(post)));
        QTRY_COMPARE(fixture.texts(), QStringList(QStringLiteral("still")));
    }

    void carriesAnyText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("nul") << QString(u'\0') + QStringLiteral("x") + QString(u'\0');
        QTest::newRow("lone high surrogate") << QStringLiteral("a") + QChar(0xd83d) + QStringLiteral("b");
        QTest::newRow("lone low surrogate") << QString(QChar(0xde00)) + QStringLiteral("b");
        QTest::newRow("surrogates the wrong way round") << QString(QChar(0xde00)) + QChar(0xd83d);
        QTest::newRow("emoji") << QStringLiteral("\U0001F600");
        QTest::newRow("line ends") << QStringLiteral("a\r\nb\u2028c\u2029d");
        QTest::newRow("byte order mark") << QStringLiteral("\uFEFFx\uFFFE\uFFFF");
        QTest::newRow("like a record") << QStringLiteral("s0,3,abc");
        QTest::newRow("every unit") << [] {
            QString all(0x10000, Qt::Uninitialized);
            for (int i = 0; i < 0x10000; ++i)
                all[i] = QChar(ushort(i));
            return all;
        }();
    }
    void carriesAnyText()
    {
        QFETCH(QString, text);
        PageFixture fixture;
        QStringList units;
        for (const QChar unit : text)
            units.append(QString::number(unit.unicode()));
        fixture.loadHtml(script("var s = ''; [" + units.join(u',').toLatin1()
            + "].forEach(function (c) { s += String.fromCharCode(c); }); " + post + "(s); " + post + "('end');"));
        QTRY_COMPARE(fixture.messages.size(), 2);
        QVERIFY(fixture.messages.at(0).isString());
        QVERIFY(fixture.messages.at(0).toString() == text);
        QCOMPARE(fixture.messages.at(1).toString(), QStringLiteral("end"));
    }

    void carriesAMegabyte()
    {
        PageFixture fixture;
        fixture.loadHtml(
            script(post + "('first'); " + post + "('\\u65e5'.repeat(1 << 20) + 'end'); " + post + "('last')"));
        QTRY_COMPARE(fixture.messages.size(), 3);
        const QString text = fixture.messages.at(1).toString();
        QCOMPARE(text.size(), (1 << 20) + 3);
        QVERIFY(text.startsWith(QStringLiteral("日日")) && text.endsWith(QStringLiteral("日end")));
    }

    void carriesStringsAndObjectsOnly_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QJsonValue>("body");
        QTest::newRow("string") << QByteArray("'text'") << QJsonValue(QStringLiteral("text"));
        QTest::newRow("object") << QByteArray("{a: 1, b: [true, null], c: {}}")
                                << QJsonValue(QJsonObject{{QStringLiteral("a"), 1},
                                       {QStringLiteral("b"), QJsonArray{true, QJsonValue::Null}},
                                       {QStringLiteral("c"), QJsonObject()}});
        QTest::newRow("empty object") << QByteArray("{}") << QJsonValue(QJsonObject());
        for (const QByteArray &other : {QByteArray("[1]"), QByteArray("1"), QByteArray("true"), QByteArray("null"),
                 QByteArray(""), QByteArray("undefined"), QByteArray("function () {}"), QByteArray("Symbol()"),
                 QByteArray("{toJSON: function () {}}"), QByteArray("new Date(0)"), QByteArray("10n")})
            QTest::addRow("nothing: %s", other.constData()) << other << QJsonValue(QJsonValue::Undefined);
    }
    void carriesStringsAndObjectsOnly()
    {
        QFETCH(QByteArray, value);
        QFETCH(QJsonValue, body);
        PageFixture fixture;
        fixture.loadHtml(script(post + "(" + value + ")"));
        QTRY_COMPARE(fixture.messages.size(), 1);
        QCOMPARE(fixture.messages.constFirst(), body);
    }

    void throwsWhereAnObjectHasNoText()
    {
        PageFixture fixture;
        fixture.loadHtml("");
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("circular")));
        const auto result = fixture.evaluate(QStringLiteral("var o = {}; o.o = o; %1(o)").arg(QString::fromUtf8(post)));
        QVERIFY(result.error);
        QVERIFY(result.error->localizedDescription.contains(QLatin1String("circular")));
    }

    void worksUnderTheStrictestPolicy_data()
    {
        QTest::addColumn<QByteArray>("policy");
        QTest::newRow("nothing") << QByteArray("default-src 'none'");
        QTest::newRow("sandbox") << QByteArray("default-src 'none'; sandbox allow-scripts");
        QTest::newRow("trusted types") << QByteArray("default-src 'none'; require-trusted-types-for 'script'");
    }
    void worksUnderTheStrictestPolicy()
    {
        QFETCH(QByteArray, policy);
        PageFixture fixture;
        fixture.configuration->userContentController->addUserScript(
            {QString::fromUtf8(post) + QStringLiteral("('script')"), kx::UserScript::InjectionTime::DocumentStart,
                true});
        fixture.loadHtml("<p>text", {{"Content-Security-Policy", policy}});
        fixture.evaluate(QString::fromUtf8(post) + QStringLiteral("('evaluated')"));
        fixture.page->executeJavaScript(QString::fromUtf8(post) + QStringLiteral("(\"executed\")"), {});
        QTRY_COMPARE(fixture.texts(),
            QStringList({QStringLiteral("script"), QStringLiteral("evaluated"), QStringLiteral("executed")}));
    }

    void isBeyondTheReachOfThePage()
    {
        PageFixture fixture;
        fixture.loadHtml(script("function broken() { throw new Error('tampered'); }"
                                "['debug', 'log', 'error'].forEach(function (name) { console[name] = broken; });"
                                "EventTarget.prototype.dispatchEvent = EventTarget.prototype.addEventListener = broken;"
                                "window.EventTarget = window.CompositionEvent = window.FocusEvent = broken;"
                                "JSON.stringify = Promise.prototype.then = Array.prototype.forEach = broken;"
                                "Function.prototype.call = Function.prototype.apply = Function.prototype.bind = broken;"
                                "performance.now = broken;"
                                "Object.defineProperty(Object.prototype, 'data', {get: broken, set: broken});"
                                "Object.defineProperty(Object.prototype, 'view', {get: broken});"
                                "Object.defineProperty(CompositionEvent = Object, 'prototype', {});"
            + post + "('text'); " + post + "({a: 1});"));
        QTRY_COMPARE(fixture.messages.size(), 2);
        QCOMPARE(fixture.messages.at(0), QJsonValue(QStringLiteral("text")));
        QCOMPARE(fixture.messages.at(1), QJsonValue(QJsonObject{{QStringLiteral("a"), 1}}));
    }

    void leavesThePagesOwnLinesToTheLog()
    {
        PageFixture fixture;
        QTest::ignoreMessage(QtCriticalMsg, "s0,5,hello");
        fixture.loadHtml(script("console.error('s0,5,hello'); console.debug('');" + post + "('end')"));
        QTRY_COMPARE(fixture.texts(), QStringList(QStringLiteral("end")));
    }

    void showsThePageNothingElse()
    {
        PageFixture fixture;
        fixture.configuration->userContentController->addScriptMessageHandler({}, QStringLiteral("__proto__"));
        fixture.loadHtml("");
        fixture.configuration->userContentController->addScriptMessageHandler({}, QStringLiteral("late"));
        QCOMPARE(fixture.evaluate(QStringLiteral("Object.getOwnPropertyNames(webkit.messageHandlers).join()")).value,
            QJsonValue(QStringLiteral("__proto__,native")));
        QCOMPARE(fixture.evaluate(QStringLiteral("Object.keys(webkit).join()")).value,
            QJsonValue(QStringLiteral("messageHandlers")));
        const QString globals =
            fixture.evaluate(QStringLiteral("Object.getOwnPropertyNames(window).join()")).value.toString();
        QVERIFY(globals.contains(QLatin1String("webkit")));
        QVERIFY(!globals.contains(QLatin1String("kx")));
        QVERIFY(!globals.contains(QLatin1String("qt")));
        const QString source =
            fixture.evaluate(QStringLiteral("'' + webkit.messageHandlers.native.postMessage")).value.toString();
        QVERIFY(!source.contains(QRegularExpression(QStringLiteral("[0-9a-f]{16}"))));
    }

    void showsNothingAtAllWithoutHandlers()
    {
        PageFixture fixture;
        fixture.configuration->userContentController->removeScriptMessageHandlerForName(QStringLiteral("native"));
        fixture.loadHtml("");
        QCOMPARE(fixture.evaluate(QStringLiteral("typeof webkit")).value, QJsonValue(QStringLiteral("undefined")));
    }

    void runsUserScriptsInTheirOrderAndPlace()
    {
        using Time = kx::UserScript::InjectionTime;
        PageFixture fixture;
        auto &controller = *fixture.configuration->userContentController;
        const auto add = [&](const QByteArray &name, Time time, bool mainOnly) {
            controller.addUserScript(
                {QString::fromUtf8(post + "((window === top ? 'main ' : 'sub ') + '" + name + " ' + !!window.pageRan)"),
                    time, mainOnly});
        };
        add("end", Time::DocumentEnd, false);
        controller.addUserScript({QStringLiteral("this is no script"), Time::DocumentStart, true});
        add("first", Time::DocumentStart, false);
        add("second", Time::DocumentStart, true);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("SyntaxError")));
        fixture.serve("/frame", script("pageRan = true"));
        fixture.loadHtml(script("pageRan = true") + "<iframe src='/frame'></iframe>");
        QTRY_COMPARE(fixture.messages.size(), 5);
        const QStringList texts = fixture.texts();
        QCOMPARE(texts.filter(QStringLiteral("main")),
            QStringList({QStringLiteral("main first false"), QStringLiteral("main second false"),
                QStringLiteral("main end true")}));
        QCOMPARE(texts.filter(QStringLiteral("sub")),
            QStringList({QStringLiteral("sub first false"), QStringLiteral("sub end true")}));
    }
};

QTEST_MAIN(MessageTransportTest)
#include "MessageTransportTest.moc"
