// SPDX-License-Identifier: MIT
// The host with real pages: both ends of the bridge, panels, the mouse, what shines through.
#include "HostedPage.h"

#include "Support/Panels.h"

#include <KXFoundation/Category/TimerUtil.h>
#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QJsonArray>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <csignal>
#include <functional>
#include <optional>
#include <thread>

using namespace Qt::StringLiterals;
using kx::test::HostedPage;
using kx::test::whenPanelOpens;

namespace {

void answerNextPanel(int button, QString *text = nullptr)
{
    whenPanelOpens([button, text](QMessageBox *panel) {
        if (text)
            *text = panel->text();
        panel->buttons().at(button)->click();
    });
}

class Beneath : public QWidget {
public:
    using QWidget::QWidget;
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), QColor(200, 30, 40)); }
};

} // namespace

class KXWKWebViewPageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_page.reset(); }

    void isMadeInThreeWays();
    void pageCallsNativeOnce();
    void pageCallsNativeAndHearsRepeatedly();
    void answersOfOtherThreadsReachThePage();
    void pageAsksWhatNativeCanDo();
    void callsAtDocumentStartAreAnswered();
    void framesCallNativeToo();
    void nativeCallsThePage();
    void errorsOfCallsHaveTheScriptsText();
    void errorsOfRepliesGoToTheConsole();
    void methodsFromBeforeARebuildStillAnswer();
    void pageReportsItsEnd();
    void aGivenConfigurationHasNoBridge();
    void aGivenConfigurationLosesItsHandlerAtRebuild();
    void pageMayUseServedSchemes();

    void alertsAreShown();
    void confirmsAreAnswered();
    void promptsGetTheEmptyStringWithoutAPanel();
    void hostMayGoWhileAPageWaits();
    void webViewMayBeRebuiltWhileAPageWaits();
    void processMayDieWhileAPageWaits();

    void pageIsTransparent();
    void mousePassesThrough();
    void anIgnoringWebViewSwallowsTheMouse();
    void pageFillsTheHost();

private:
    std::unique_ptr<HostedPage> m_page;
};

void KXWKWebViewPageTest::initTestCase()
{
    kx::test::startEngine();
}

void KXWKWebViewPageTest::init()
{
    QTest::failOnWarning(QRegularExpression(
        u"^(?!This plugin does not support propagateSizeHints|No suitable graphics backend found)"_qs)); // of any
                                                                                                         // dialog, and
                                                                                                         // of the
                                                                                                         // engine
    m_page = std::make_unique<HostedPage>();
}

void KXWKWebViewPageTest::isMadeInThreeWays()
{
    QWidget window;
    const auto configuration = std::make_shared<kx::WebViewConfiguration>();
    auto *form = new KXWKWebView(&window);
    auto *placed = new KXWKWebView(QRectF(0, 0, 100, 100), &window);
    auto *configured = new KXWKWebView(configuration, &window);
    const QUrl url = m_page->file("<title>three</title>");
    for (KXWKWebView *host : {form, placed, configured}) {
        QCOMPARE(host->parentWidget(), &window);
        QCOMPARE(host->subviews(), QList<kx::ViewInterface *>{host->wkWebView()});
        QVERIFY(host->allowNavigation());
        QSignalSpy completed(host, &KXWKWebView::navigationCompleted);
        host->updateURL(url);
        QVERIFY(completed.wait());
        QTRY_COMPARE(HostedPage::value(*host->wkWebView(), u"document.title"_qs), QJsonValue(u"three"_qs));
    }
    QCOMPARE(form->frame().size(), QSizeF(0, 0));
    QCOMPARE(placed->frame().size(), QSizeF(100, 100));
    QCOMPARE(configured->configuration(), configuration);
    QCOMPARE(configured->wkWebView()->configuration(), configuration);
}

// --- the bridge
// -------------------------------------------------------------------------------------------------------

void KXWKWebViewPageTest::pageCallsNativeOnce()
{
    m_page->host->jsBridge()->registerMethod(u"add"_qs,
        [](const QJsonValue &data, const auto &completion) { completion(data[u"a"].toInt() + data[u"b"].toInt()); });
    m_page->show("<script>_vexa.invokeNativeOnce('add', {a: 2, b: 3, c: null}, function (sum) {"
                 "document.title = 'sum ' + sum; });</script>");
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"sum 5"_qs));
    QCOMPARE(m_page->value(u"Object.keys(_vexa.responseCallbacks).length"_qs), QJsonValue(0));
}

void KXWKWebViewPageTest::pageCallsNativeAndHearsRepeatedly()
{
    m_page->host->jsBridge()->registerMethod(u"progress"_qs, [](const QJsonValue &, const auto &completion) {
        for (int percent = 10; percent <= 30; percent += 10)
            completion(percent);
    });
    m_page->show("<script>var seen = []; _vexa.invokeNative('progress', {}, function (p) { seen.push(p); });</script>");
    QTRY_COMPARE(m_page->value(u"seen.join()"_qs), QJsonValue(u"10,20,30"_qs));
}

void KXWKWebViewPageTest::answersOfOtherThreadsReachThePage()
{
    std::jthread worker;
    m_page->host->jsBridge()->registerMethod(
        u"slow"_qs, [&worker](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
            worker = std::jthread([completion] { completion(u"done"_qs); });
        });
    m_page->show("<script>_vexa.invokeNativeOnce('slow', {}, function (a) { document.title = a; });</script>");
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"done"_qs));
}

void KXWKWebViewPageTest::pageAsksWhatNativeCanDo()
{
    m_page->host->jsBridge()->registerMethod(u"play"_qs, [](const QJsonValue &, const auto &) {});
    m_page->show("<script>var can = {};"
                 "['play', 'teleport'].forEach(function (m) {"
                 "_vexa.canInvokeNative(m, function (a) { can[m] = a; }); });</script>");
    QTRY_COMPARE(m_page->value(u"can.play + can.teleport"_qs), QJsonValue(u"10"_qs));
}

void KXWKWebViewPageTest::callsAtDocumentStartAreAnswered()
{
    QStringList calls;
    m_page->host->jsBridge()->registerMethod(
        u"early"_qs, [&calls](const QJsonValue &data, const auto &) { calls.append(data.toString()); });
    m_page->show("<script>for (var i = 0; i < 5; ++i) _vexa.invokeNative('early', String(i));</script>"
                 "<script>addEventListener('load', function () { _vexa.invokeNative('early', 'load'); });</script>");
    QTRY_COMPARE(calls.join(u','), u"0,1,2,3,4,load"_qs);
}

void KXWKWebViewPageTest::framesCallNativeToo()
{
    QStringList calls;
    m_page->host->jsBridge()->registerMethod(u"hello"_qs, [&calls](const QJsonValue &data, const auto &completion) {
        calls.append(data.toString());
        completion(u"heard"_qs);
    });
    m_page->show(
        "<script>_vexa.invokeNative('hello', 'main', function (a) { document.title += a; });</script>"
        "<iframe srcdoc=\"<script>_vexa.invokeNative('hello', 'frame', function () { window.answered = true; });"
        "</script>\"></iframe>");
    QTRY_COMPARE(calls.size(), 2);
    QVERIFY(calls.contains(u"frame"_qs));
    // Answers go to the main frame's bridge, whichever frame asked.
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"heardheard"_qs));
    QCOMPARE(m_page->value(u"String(frames[0].answered)"_qs), QJsonValue(u"undefined"_qs));
}

void KXWKWebViewPageTest::nativeCallsThePage()
{
    m_page->show("<script>_vexa.registerMethod('twice', function (d, answer) { answer({n: d.n * 2}); });</script>");
    QList<int> once;
    QList<int> always;
    const auto collect = [](QList<int> &list) {
        return [&list](const QJsonValue &answer) { list.append(answer[u"n"].toInt()); };
    };
    m_page->host->invokeH5Once(u"twice"_qs, QJsonObject{{u"n"_qs, 1}}, collect(once));
    m_page->host->invokeH5(u"twice"_qs, QJsonObject{{u"n"_qs, 2}}, collect(always));
    m_page->host->invokeH5Once(u"twice"_qs, QJsonObject{{u"n"_qs, 3}}, collect(once));
    QTRY_COMPARE(once, (QList<int>{2, 6}));
    QTRY_COMPARE(always, QList<int>{4});
    QCOMPARE(m_page->host->jsBridge()->callbackMap().keys(), QStringList{u"twice"_qs});
}

void KXWKWebViewPageTest::errorsOfCallsHaveTheScriptsText()
{
    m_page->show("<script>_vexa.registerMethod('bad', function () { throw new TypeError('no way'); });</script>");
    m_page->host->invokeH5(u"bad"_qs);
    QTRY_VERIFY(!m_page->log.lines().isEmpty());
    QCOMPARE(m_page->log.lines(),
        QStringList{u"[wk] js error:Error Domain=WebKitErrorDomain Code=4 \"TypeError: no way\""_qs});
    m_page->host->invokeH5(u"unknown"_qs); // the page ignores it
    (void)m_page->value(u"1"_qs);
    QCOMPARE(m_page->log.lines().size(), 1);
}

void KXWKWebViewPageTest::errorsOfRepliesGoToTheConsole()
{
    m_page->host->jsBridge()->registerMethod(
        u"play"_qs, [](const QJsonValue &, const auto &completion) { completion(1); });
    QTest::ignoreMessage(QtWarningMsg, "Error Domain=WebKitErrorDomain Code=4 \"RangeError: far\"");
    m_page->show("<script>_vexa.invokeNativeOnce('play', {}, function () { window.called = true;"
                 "throw new RangeError('far'); });</script>");
    QTRY_COMPARE(m_page->value(u"window.called === true"_qs), QJsonValue(true));
    QVERIFY(m_page->log.lines().isEmpty());
}

void KXWKWebViewPageTest::methodsFromBeforeARebuildStillAnswer()
{
    m_page->host->jsBridge()->registerMethod(
        u"name"_qs, [](const QJsonValue &, const auto &completion) { completion(u"player"_qs); });
    m_page->show("first");
    m_page->host->rebuildWebview();
    m_page->show("<script>_vexa.invokeNativeOnce('name', {}, function (n) { document.title = n; });</script>");
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"player"_qs));
}

void KXWKWebViewPageTest::pageReportsItsEnd()
{
    m_page->host->setName(u"root"_qs);
    const QSignalSpy completed(m_page->host, &KXWKWebView::navigationCompleted);
    m_page->host->updateURL(m_page->file("<script>addEventListener('load', function () {"
                                         "_vexa.invokeNative('common_HN_loadCompleted'); });</script>"));
    const auto timer = m_page->host->loadTimer();
    zq_pause(timer); // so that it is not the timer
    QTRY_COMPARE(completed.size(), 1);
    QVERIFY(!timer->isValid());
}

void KXWKWebViewPageTest::aGivenConfigurationHasNoBridge()
{
    const auto given = std::make_shared<kx::WebViewConfiguration>();
    given->preferences.allowFileAccessFromFileURLs = true;
    given->userContentController->addUserScript(
        {u"window.own = 'mine'"_qs, kx::UserScript::InjectionTime::DocumentStart, true});
    m_page = std::make_unique<HostedPage>(given);
    m_page->show("<title>given</title>");
    QCOMPARE(
        m_page->value(u"[typeof _vexa, window.own, document.title].join()"_qs), QJsonValue(u"undefined,mine,given"_qs));
}

void KXWKWebViewPageTest::aGivenConfigurationLosesItsHandlerAtRebuild()
{
    const auto given = std::make_shared<kx::WebViewConfiguration>();
    QStringList messages;
    given->userContentController->addScriptMessageHandler(
        [&messages](const kx::ScriptMessage &message) { messages.append(message.body.toString()); },
        KXWebViewJSBridge::h5NativeMapBridgeName());
    const QByteArray page =
        "<script>var handlers = window.webkit && webkit.messageHandlers;"
        "if (handlers && handlers._vexaNativeObject) handlers._vexaNativeObject.postMessage('here');"
        "document.title = 'loaded';</script>";
    m_page = std::make_unique<HostedPage>(given);
    m_page->show(page);
    QTRY_COMPARE(messages, QStringList{u"here"_qs});
    m_page->host->rebuildWebview();
    QCOMPARE(m_page->host->wkWebView()->configuration(), given);
    m_page->show(page);
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"loaded"_qs));
    QCOMPARE(messages.size(), 1);
}

void KXWKWebViewPageTest::pageMayUseServedSchemes()
{
    KXURLSchemeManager::sharedManager().onComingRequest([](const kx::URLSchemeTaskPtr &task) {
        task->didReceiveResponse("text/javascript");
        task->didReceiveData("document.title = 'clip " + task->url().path().toUtf8() + "';");
        task->didFinish();
    });
    m_page->show("<script src='clip://library/one'></script>");
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"clip /one"_qs));
    KXURLSchemeManager::sharedManager().onComingRequest({});
}

// --- panels
// -----------------------------------------------------------------------------------------------------------

void KXWKWebViewPageTest::alertsAreShown()
{
    QString text;
    answerNextPanel(0, &text);
    m_page->show("<script>alert('<b>full</b>'); document.title = 'after';</script>");
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"after"_qs));
    QCOMPARE(text, u"<b>full</b>"_qs);
}

void KXWKWebViewPageTest::confirmsAreAnswered()
{
    m_page->show("page");
    answerNextPanel(0);
    QCOMPARE(m_page->value(u"confirm('yes?')"_qs), QJsonValue(true));
    answerNextPanel(1);
    QCOMPARE(m_page->value(u"confirm('no?')"_qs), QJsonValue(false));
}

void KXWKWebViewPageTest::promptsGetTheEmptyStringWithoutAPanel()
{
    m_page->show("page");
    QCOMPARE(m_page->value(u"JSON.stringify(prompt('name?', 'preset'))"_qs), QJsonValue(u"\"\""_qs));
}

void KXWKWebViewPageTest::hostMayGoWhileAPageWaits()
{
    m_page->show("page");
    whenPanelOpens([this](QMessageBox *panel) {
        delete m_page->host;
        panel->buttons().first()->click();
    });
    m_page->host->wkWebView()->executeJavaScript(u"confirm('still there?')"_qs);
    QTRY_VERIFY(!m_page->host);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    m_page = std::make_unique<HostedPage>(); // the engine works on
    m_page->show("<title>next</title>");
    QCOMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"next"_qs));
}

void KXWKWebViewPageTest::webViewMayBeRebuiltWhileAPageWaits()
{
    m_page->show("<title>page</title>");
    const QPointer<KXWebView> first = m_page->host->wkWebView();
    whenPanelOpens([this](QMessageBox *panel) {
        m_page->host->rebuildWebview();
        m_page->host->reloadCurrentURL(); // happens when the panel is closed: the engine waits for it
        panel->buttons().first()->click();
    });
    first->executeJavaScript(u"confirm('still there?')"_qs);
    QTRY_VERIFY(!first);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"page"_qs));
    QCOMPARE(m_page->host->subviews(), QList<kx::ViewInterface *>{m_page->host->wkWebView()});
}

void KXWKWebViewPageTest::processMayDieWhileAPageWaits()
{
    m_page->show("<title>page</title>");
    connect(m_page->host, &KXWKWebView::webContentProcessTerminated, m_page->host, &KXWKWebView::reloadCurrentURL);
    std::optional<KXError> error;
    whenPanelOpens([this](QMessageBox *panel) {
        QCOMPARE(::kill(pid_t(m_page->host->wkWebView()->page().rendererProcessId()), SIGKILL), 0);
        panel->buttons().first()->click();
    });
    m_page->host->wkWebView()->executeJavaScript(u"confirm('alive?')"_qs, [&error](const auto &told) { error = told; });
    QTRY_VERIFY(error);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(error->code, qint64(kx::WebErrorViewInvalidated));
    QCOMPARE(m_page->host->autoRebuildCount(), 0);
    QTRY_COMPARE(m_page->value(u"document.title"_qs), QJsonValue(u"page"_qs));
}

// --- the view
// ---------------------------------------------------------------------------------------------------------

void KXWKWebViewPageTest::pageIsTransparent()
{
    Beneath beneath(m_page->window.get());
    beneath.setGeometry(0, 0, 320, 240);
    beneath.lower();
    beneath.show();
    m_page->show("<style>body { margin: 0; background: transparent }"
                 "div { width: 100px; height: 100px; background: rgb(0, 0, 255) }</style><div></div>");
    const auto pixel = [this](int x, int y) { return m_page->window->grab().toImage().pixelColor(x, y); };
    QTRY_COMPARE(pixel(50, 50), QColor(0, 0, 255)); // the page has painted,
    QCOMPARE(pixel(200, 150), QColor(200, 30, 40)); // and lets shine through where it has not
}

void KXWKWebViewPageTest::mousePassesThrough()
{
    Beneath beneath(m_page->window.get());
    beneath.setGeometry(0, 0, 320, 240);
    beneath.lower();
    beneath.show();
    m_page->show("<script>var seen = 0; ['mousedown', 'mousemove', 'mouseenter'].forEach(function (e) {"
                 "document.addEventListener(e, function () { ++seen; }); });</script>"
                 "<body style='height: 200px'>");
    m_page->host->setUserInteraction(false);
    m_page->click({160, 100});
    QCOMPARE(beneath.presses, 1);
    m_page->host->setUserInteraction(true);
    m_page->click({161, 101});
    QTRY_VERIFY(m_page->value(u"seen"_qs).toInt() > 0);
    QCOMPARE(beneath.presses, 1);
    // Nothing came late from the first click: of presses there is one.
    m_page->show("<script>var downs = 0; document.addEventListener('mousedown', function () { ++downs; });"
                 "</script><body style='height: 200px'>");
    m_page->host->setUserInteraction(false);
    m_page->click({160, 100});
    m_page->host->setUserInteraction(true);
    m_page->click({160, 100});
    QTRY_COMPARE(m_page->value(u"downs"_qs), QJsonValue(1));
}

void KXWKWebViewPageTest::anIgnoringWebViewSwallowsTheMouse()
{
    m_page->show("<script>var seen = ''; ['mousemove', 'mousedown', 'click', 'contextmenu'].forEach(function (e) {"
                 "addEventListener(e, function (v) { seen += e + v.button + ' '; v.preventDefault(); }); });</script>"
                 "<body style='height: 200px'>");
    m_page->host->wkWebView()->setIgnoreMouseEnvent(true);
    m_page->click({100, 100});
    QTest::mouseDClick(m_page->window->windowHandle(), Qt::LeftButton, {}, {100, 100});
    QTest::mousePress(m_page->window->windowHandle(), Qt::RightButton, {}, {100, 100});
    QTest::mouseRelease(m_page->window->windowHandle(), Qt::RightButton, {}, {100, 100});
    // The right button passes, after all that has not.
    QTRY_VERIFY(m_page->value(u"seen"_qs).toString().contains(u"mousedown2"_qs));
    const QString seen = m_page->value(u"seen"_qs).toString();
    QVERIFY2(!seen.contains(u"mousedown0"_qs) && !seen.contains(u"click"_qs) && !seen.contains(u"mousemove"_qs),
        qPrintable(seen));
    m_page->host->wkWebView()->setIgnoreMouseEnvent(false);
    m_page->click({120, 100});
    QTRY_VERIFY(m_page->value(u"seen"_qs).toString().contains(u"click0"_qs));
}

void KXWKWebViewPageTest::pageFillsTheHost()
{
    m_page->show("page");
    QTRY_COMPARE(m_page->value(u"innerWidth + 'x' + innerHeight"_qs), QJsonValue(u"320x240"_qs));
    m_page->host->setFrame(QRectF(10, 20, 200, 100));
    QTRY_COMPARE(m_page->value(u"innerWidth + 'x' + innerHeight"_qs), QJsonValue(u"200x100"_qs));
}

int main(int argc, char *argv[])
{
    KXURLSchemeManager::sharedManager().setProxySchemes({u"clip"_qs}); // before the engine starts
    const QApplication application(argc, argv);
    KXWKWebViewPageTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "KXWKWebViewPageTest.moc"
