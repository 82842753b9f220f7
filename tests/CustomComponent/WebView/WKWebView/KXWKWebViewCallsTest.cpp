// SPDX-License-Identifier: MIT
// Calls through the bridge in both directions, and what a web view asks its host, on the fake engine.
#include "FakeHost.h"

#include "Support/SharedLog.h"

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QJsonObject>
#include <QtTest/QSignalSpy>

#include <optional>

using namespace Qt::StringLiterals;
using kx::test::handlerName;
using kx::test::methodMessage;

class KXWKWebViewCallsTest : public kx::test::FakeHostTest {
    Q_OBJECT
private Q_SLOTS:
    void init() { makeHost(); }

    void handsMessagesToTheBridge();
    void hearsNothingWithoutABridge();
    void evaluationErrorsOfRepliesGoToTheConsole();
    void callsThePage();
    void callsThePageOnce();
    void evaluationErrorsOfCallsGoToTheLog();
    void answersEveryResponse();
    void offersNewWindows();
    void tellsWhenAnIdleProcessDies();
};

void KXWKWebViewCallsTest::handsMessagesToTheBridge()
{
    m_host->jsBridge()->registerMethod(
        u"double"_qs, [](const QJsonValue &data, const auto &completion) { completion(data.toInt() * 2); });
    page()->post(handlerName, methodMessage(u"double"_qs, u",\"data\":21"_qs));
    QTRY_COMPARE(page()->scripts.size(), 1);
    QCOMPARE(page()->scripts.first(),
        KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::HandlerMessage, u"double"_qs, 42, QJsonValue::Undefined));
    page()->post(handlerName,
        QJsonObject{{u"type"_qs, u"invokeTest"_qs}, {u"message"_qs, QJsonObject{{u"method"_qs, u"triple"_qs}}}});
    QTRY_COMPARE(page()->scripts.size(), 2);
    QCOMPARE(page()->scripts.last(),
        KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::HandlerMessage, u"triple"_qs, u"0"_qs, QJsonValue::Undefined));
}

void KXWKWebViewCallsTest::hearsNothingWithoutABridge()
{
    m_host->setJsBridge(nullptr);
    page()->post(handlerName, methodMessage(u"play"_qs));
    QCoreApplication::processEvents();
    QVERIFY(page()->scripts.isEmpty());
}

void KXWKWebViewCallsTest::evaluationErrorsOfRepliesGoToTheConsole()
{
    const kx::test::SharedLog log;
    m_host->jsBridge()->registerMethod(u"play"_qs, [](const QJsonValue &, const auto &completion) { completion(1); });
    page()->evaluationError =
        KXError{kx::WebErrorDomain, kx::WebErrorJavaScriptException, u"ReferenceError: x is not defined"_qs, {}};
    QTest::ignoreMessage(QtWarningMsg, "Error Domain=WebKitErrorDomain Code=4 \"ReferenceError: x is not defined\"");
    page()->post(handlerName, methodMessage(u"play"_qs));
    QTRY_COMPARE(page()->scripts.size(), 1);
    QCoreApplication::processEvents();
    QVERIFY(log.lines().isEmpty());
}

void KXWKWebViewCallsTest::callsThePage()
{
    QList<QJsonValue> answers;
    const auto collect = [&answers](const QJsonValue &answer) { answers.append(answer); };
    m_host->invokeH5(u"volume"_qs, QJsonObject{{u"by"_qs, 3}}, collect);
    QCOMPARE(page()->scripts,
        QStringList{KXWebViewJSBridge::packageCmd(
            KXWebViewJSBridge::MethodMessage, u"volume"_qs, QJsonObject{{u"by"_qs, 3}}, QJsonValue::Undefined)});
    for (const int answer : {5, 6}) {
        page()->post(
            handlerName, u"{\"type\":\"handler\",\"message\":{\"method\":\"volume\",\"data\":%1}}"_qs.arg(answer));
    }
    QTRY_COMPARE(answers, (QList<QJsonValue>{5, 6}));
    m_host->invokeH5(u"volume"_qs);
    QVERIFY(m_host->jsBridge()->callbackMap().isEmpty());
    QVERIFY(!page()->scripts.last().contains(u"data"));
}

void KXWKWebViewCallsTest::callsThePageOnce()
{
    QList<QJsonValue> answers;
    const auto collect = [&answers](const QJsonValue &answer) { answers.append(answer); };
    m_host->invokeH5Once(u"volume"_qs, QJsonValue::Undefined, collect);
    QCOMPARE(page()->scripts,
        QStringList{
            KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::MethodMessage, u"volume"_qs, QJsonValue::Undefined, 1)});
    for (int i = 0; i < 2; ++i) {
        page()->post(handlerName,
            u"{\"type\":\"handler\",\"message\":{\"method\":\"volume\",\"data\":5,\"mid\":1,\"once\":1}}"_qs);
    }
    QTRY_COMPARE(answers, QList<QJsonValue>{5});
    QCoreApplication::processEvents();
    QCOMPARE(answers.size(), 1);
}

void KXWKWebViewCallsTest::evaluationErrorsOfCallsGoToTheLog()
{
    const kx::test::SharedLog log;
    KXLogger::sharedLogger().setLogType(2);
    page()->evaluationError = KXError{kx::WebErrorDomain, kx::WebErrorJavaScriptException, u"TypeError: no"_qs, {}};
    m_host->invokeH5(u"stop"_qs);
    m_host->invokeH5Once(u"stop"_qs);
    QCoreApplication::processEvents();
    const QString line = u"[wk] js error:Error Domain=WebKitErrorDomain Code=4 \"TypeError: no\""_qs;
    QCOMPARE(log.lines(), (QStringList{line, line}));
    KXLogger::sharedLogger().setLogType(3);
    m_host->invokeH5(u"stop"_qs);
    QCoreApplication::processEvents();
    QCOMPARE(log.lines().size(), 2);
}

void KXWKWebViewCallsTest::answersEveryResponse()
{
    QList<kx::NavigationPolicy> answers;
    m_host->setAllowNavigation(false);
    m_host->webViewDecidePolicyForNavigationResponse(
        m_host->wkWebView(), {}, [&answers](kx::NavigationPolicy policy) { answers.append(policy); });
    QCOMPARE(answers, QList<kx::NavigationPolicy>{kx::NavigationPolicy::Allow});
}

void KXWKWebViewCallsTest::offersNewWindows()
{
    kx::NavigationAction action;
    action.url = QUrl(u"https://a.example/new"_qs);
    page()->openWindow(action, {}); // nobody listens
    QList<QUrl> urls;
    std::optional<double> width;
    m_host->onWebViewNavigationAction([&](const kx::NavigationAction &asked, const kx::WindowFeatures &wanted) {
        urls.append(asked.url);
        width = wanted.width;
    });
    const QSignalSpy requested(m_host.get(), &KXWKWebView::newWindowRequested);
    kx::WindowFeatures features;
    features.width = 640;
    page()->openWindow(action, features);
    QCOMPARE(urls, QList<QUrl>{action.url});
    QCOMPARE(width, 640);
    QCOMPARE(requested.size(), 1);
    QCOMPARE(m_host->webViewCreateWebViewWithConfiguration(m_host->wkWebView(), nullptr, action, {}), nullptr);
}

void KXWKWebViewCallsTest::tellsWhenAnIdleProcessDies()
{
    const kx::test::SharedLog log;
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    const QSignalSpy terminated(m_host.get(), &KXWKWebView::webContentProcessTerminated);
    page()->die();
    QCOMPARE(terminated.size(), 1);
    QCOMPARE(m_host->autoRebuildCount(), 0);
    QCOMPARE(m_engine.configurations.size(), 1);
    QCOMPARE(log.lines(), QStringList{u"[wk] web content process terminated https://a.example/"_qs});
}

QTEST_MAIN(KXWKWebViewCallsTest)
#include "KXWKWebViewCallsTest.moc"
