// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "AskingPage.h"
#include "Support/HttpServer.h"

#include <QtTest/QtTest>

using namespace kx;
using namespace kx::test;

/// Cases that the matrix of SourceFramesMatrixTest has no place for, each on a page of its own.
class SourceFramesCasesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { const AskingPage first; } // the engine's start has warnings of its own about the platform
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }
    void tellsTheSpecialCases_data();
    void tellsTheSpecialCases();
    void knownGapsAreStillThere_data();
    void knownGapsAreStillThere();
    void tellsFramesApartWithScriptsSwitchedOff_data();
    void tellsFramesApartWithScriptsSwitchedOff();
    void aFrameCannotPassForARedirectOfTheMainFrame();

private:
    HttpServer m_server;
};

void SourceFramesCasesTest::tellsTheSpecialCases_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("policy"); // the page's Content-Security-Policy
    QTest::addColumn<QString>("script"); // run by the main frame; empty clicks in the page's corner instead
    QTest::addColumn<bool>("sourceIsMain");
    QTest::addColumn<bool>("targetIsMain");
    const QByteArray block = " style='position:fixed;left:0;top:0;width:300px;height:100px;display:block;border:0'";
    const QByteArray link = "<a href=/dest" + block + " target=_top>x</a>";
    const QByteArray cross = m_server.url("/callable", "localhost").toEncoded();
    // An iframe whose document is `text`.
    const auto frame = [&block](const QByteArray &attributes, QByteArray text) -> QByteArray {
        return "<iframe " + attributes + block + " srcdoc=\"" + text.replace('&', "&amp;").replace('"', "&quot;")
            + "\"></iframe>";
    };
    const auto row = [](const char *name, const QByteArray &page, const char *script, bool sourceIsMain,
                         bool targetIsMain = true, const QByteArray &policy = {}) {
        QTest::newRow(name) << page << policy << QString::fromLatin1(script) << sourceIsMain << targetIsMain;
    };

    row("script without a click", {}, "location = '/dest'", true);
    row("link to an odd address", "<a href='/dest \xc3\xa4|<>`{}?q=%zz&[]#\xc3\xa4'" + block + ">x</a>", "", true);
    row("link of a custom scheme", "<a href='kx://host/dest'" + block + ">x</a>", "", true);
    row("link in a drawing",
        "<svg width=300 height=100 style='position:fixed;left:0;top:0'><a href='/dest'><rect width=300 height=100 "
        "/></a></svg>",
        "", true);
    row("link in a frame's drawing",
        frame({},
            "<svg width=300 height=100 style='position:fixed;left:0;top:0'><a target='_top' href='/dest'><rect "
            "width=300 height=100 /></a></svg>"),
        "", false);
    row("page that rewrote itself",
        "<script>onload = function () { document.open(); document.write(\"" + link
            + "\"); document.close(); }</script>",
        "", true);
    row("frame that rewrote itself",
        frame({},
            "<script>onload = function () { document.open(); document.write(`" + link
                + "`); document.close(); }</script>"),
        "", false);
    row("link in a frame without scripts", frame("sandbox='allow-same-origin allow-top-navigation'", link), "", false);
    row("form in a frame without scripts",
        frame("sandbox='allow-same-origin allow-forms allow-top-navigation'",
            "<form action=/dest target=_top><button" + block + ">x</button></form>"),
        "", false);
    row("link in an opaque frame without scripts", frame("sandbox='allow-top-navigation'", link), "", false);
    row("link of the main frame into a frame",
        "<a href=/dest target=n" + block + ">x</a><iframe name=n src=/callable></iframe>", "", true, false);
    row("script of the main frame in a frame", "<iframe src=/callable></iframe>", "frames[0].location = '/dest'", true,
        false);
    row("script of the main frame in a cross-origin frame", "<iframe src='" + cross + "'></iframe>",
        "frames[0].location = '/dest'", true, false);
    row("frame's function called by the main frame", "<iframe src=/callable></iframe>", "frames[0].go('/dest')", false);
    row("main frame's function called by a frame",
        "<script>function leave() { top.location = '/dest'; }</script><iframe src=/callable></iframe>",
        "frames[0].call('leave')", true);
    row("frame's link clicked by the main frame's script", "<iframe src=/callable></iframe>",
        "frames[0].document.links[0].click()", false);
    row("main frame's link clicked by a frame's script", "<a href=/dest>x</a><iframe src=/callable></iframe>",
        "frames[0].click()", true);
    row("opaque page without frames", {}, "location = '/dest'", true, true, "sandbox allow-scripts");
    const QByteArray tampering =
        "<script>EventTarget.prototype.addEventListener.call(window, 'click', function (e) { "
        "e.stopImmediatePropagation(); }, true);"
        "navigation.addEventListener('navigate', function (e) { e.stopImmediatePropagation(); });"
        "EventTarget.prototype.dispatchEvent = EventTarget.prototype.addEventListener = function () { throw 1; };"
        "Object.getPrototypeOf = Object.defineProperty = Reflect.apply = function () { throw 2; };"
        "Error = CustomEvent = console = undefined; Performance.prototype.getEntriesByName = null;"
        "Object.defineProperty(Object.prototype, 'call', { get: function () { throw 3; } });</script>";
    row("link of a page that tampers", tampering + link, "", true);
    row("script of a page that tampers", tampering, "location = '/dest'", true);
    row("frame of a page that tampers", tampering + frame({}, link), "", false);
    row("script of a frame of a page that tampers", tampering + "<iframe src=/callable></iframe>",
        "frames[0].go('/dest')", false);
}

void SourceFramesCasesTest::tellsTheSpecialCases()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, policy);
    QFETCH(QString, script);
    QFETCH(bool, sourceIsMain);
    QFETCH(bool, targetIsMain);
    m_server.serve("/callable",
        answer("<!doctype html><a href=/dest target=_top>x</a><script>function go(url) { top.location = url; }"
               "function call(name) { top[name](); } function click() { top.document.links[0].click(); }</script>"));
    HttpResponse response = answer("<!doctype html><body>" + page);
    if (!policy.isEmpty())
        response.headers.append(qMakePair(QByteArray("Content-Security-Policy"), policy));
    m_server.serve("/special", response);

    AskingPage asking;
    QVERIFY(asking.loadAndWait(m_server.url("/special")));
    asking.refuseFromNow();
    asking.forgetQuestions();
    const auto isAsked = [&asking] {
        return !asking.questions().isEmpty()
            && asking.questions().constLast().url.path().startsWith(QLatin1String("/dest"));
    };
    if (script.isEmpty()) {
        QVERIFY(asking.waitFor([&] {
            asking.click(QPoint(100, 50));
            return asking.waitFor(isAsked, std::chrono::milliseconds(150));
        }));
    } else {
        asking.evaluate(script);
        QVERIFY(asking.waitFor(isAsked));
    }
    QCOMPARE(asking.questions().constLast().sourceIsMain, sourceIsMain);
    QCOMPARE(asking.questions().constLast().targetIsMain, std::optional(targetIsMain));
}

// Gaps of docs/source-frames.md that no row of the matrix shows. All are frames of the main frame's own origin.
void SourceFramesCasesTest::knownGapsAreStillThere_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::newRow("strict script that both frames have")
        << QByteArray("<script src=/leave.js></script><iframe srcdoc='<script src=/leave.js></script>'></iframe>");
    QTest::newRow("page that froze Error") << QByteArray(
        "<script>Object.freeze(Error);</script>"
        "<iframe srcdoc=\"<script>onmessage = function () { top.location = '/dest'; }</script>\"></iframe>");
}

void SourceFramesCasesTest::knownGapsAreStillThere()
{
    QFETCH(QByteArray, page);
    m_server.serve("/leave.js",
        answer("'use strict'; addEventListener('message', () => { top.location = '/dest'; });", "text/javascript"));
    m_server.serve("/special", answer("<!doctype html>" + page));
    AskingPage asking;
    QVERIFY(asking.loadAndWait(m_server.url("/special")));
    asking.refuseFromNow();
    asking.forgetQuestions();
    asking.evaluate(QStringLiteral("frames[0].postMessage(1)"));
    QVERIFY(asking.waitFor([&] { return !asking.questions().isEmpty(); }));
    QVERIFY2(asking.questions().constFirst().sourceIsMain, "the gap has closed: take it out of the list");
}

void SourceFramesCasesTest::tellsFramesApartWithScriptsSwitchedOff_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<bool>("sourceIsMain");
    const QByteArray link =
        "<a href=/dest target=_top style='position:fixed;left:0;top:0;width:300px;height:100px'>x</a>";
    const QByteArray frame =
        " style='position:fixed;left:0;top:0;width:300px;height:100px;border:0' srcdoc=\"" + link + "\"></iframe>";
    QTest::newRow("link") << link << true;
    QTest::newRow("link in a frame") << QByteArray("<iframe" + frame) << false;
    QTest::newRow("link in an opaque frame") << QByteArray("<iframe sandbox='allow-top-navigation'" + frame) << false;
    QTest::newRow("refresh") << QByteArray("<meta http-equiv=refresh content='0;url=/dest'>") << true;
}

void SourceFramesCasesTest::tellsFramesApartWithScriptsSwitchedOff()
{
    QFETCH(QByteArray, page);
    QFETCH(bool, sourceIsMain);
    m_server.serve("/special", answer("<!doctype html>" + page));
    WebPreferences preferences;
    preferences.javaScriptEnabled = false;
    AskingPage asking(preferences);
    asking.load(m_server.url("/special"));
    const auto isAsked = [&asking] {
        return !asking.questions().isEmpty() && asking.questions().constLast().url.path() == QLatin1String("/dest");
    };
    QVERIFY(asking.waitFor([&] {
        asking.click(QPoint(100, 50));
        return asking.waitFor(isAsked, std::chrono::milliseconds(150));
    }));
    QCOMPARE(asking.questions().constLast().sourceIsMain, sourceIsMain);
}

void SourceFramesCasesTest::aFrameCannotPassForARedirectOfTheMainFrame()
{
    HttpResponse never;
    never.silent = true;
    m_server.serve("/redirect-never", never);
    m_server.serve("/special",
        answer("<!doctype html><iframe sandbox='allow-scripts allow-top-navigation' srcdoc=\"<script>onmessage = "
               "function (e) { top.location.replace(e.data); }</script>\"></iframe>"));
    AskingPage page;
    QVERIFY(page.loadAndWait(m_server.url("/special")));
    page.refuseFromNow();
    page.forgetQuestions();
    page.evaluate(QStringLiteral("location = '/redirect-never'"));
    QVERIFY(page.waitFor([&] { return m_server.requests().contains("/redirect-never"); }));
    QCOMPARE(page.questions().size(), 1);
    QVERIFY(page.questions().constFirst().sourceIsMain);
    page.evaluate(
        QStringLiteral("frames[0].postMessage('") + m_server.url("/dest").toString() + QStringLiteral("', '*')"));
    QVERIFY(page.waitFor([&] { return page.questions().size() == 2; }));
    QVERIFY(!page.questions().constLast().sourceIsMain);
}

QTEST_MAIN(SourceFramesCasesTest)
#include "SourceFramesCasesTest.moc"
