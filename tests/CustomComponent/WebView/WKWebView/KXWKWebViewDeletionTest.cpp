// SPDX-License-Identifier: MIT
// A host may go at any time, on the fake engine.
#include "FakeHost.h"

#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>
#include <KXFoundation/Platform/Core/Timer.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <functional>

using namespace Qt::StringLiterals;
using kx::test::handlerName;
using kx::test::methodMessage;

class KXWKWebViewDeletionTest : public kx::test::FakeHostTest {
    Q_OBJECT
private Q_SLOTS:
    void init() { makeHost(); }

    void onlyItsOwnerKeepsIt();
    void mayBeDeletedInItsCallbacks_data();
    void mayBeDeletedInItsCallbacks();
};

void KXWKWebViewDeletionTest::onlyItsOwnerKeepsIt()
{
    const auto configuration = m_host->wkWebView()->configuration();
    const kx::ScriptMessageHandler handler = configuration->userContentController->scriptMessageHandler(handlerName);
    const std::shared_ptr<KXRWeakProxy> proxy = m_host->weakProxy();
    KXWebViewJSBridge::Completion answer;
    m_host->jsBridge()->registerMethod(
        u"later"_qs, [&answer](const QJsonValue &, const auto &completion) { answer = completion; });
    handler({handlerName, methodMessage(u"later"_qs)});
    QVERIFY(answer);
    m_host->setCompletion([](KXWebView *) { QFAIL("after the host"); });
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const std::shared_ptr<kx::Timer> timer = m_host->loadTimer();
    m_host->invokeH5(u"stop"_qs); // under evaluation while the host goes
    m_host->onNavigationCompletion();
    m_host.reset();

    QVERIFY(m_engine.pages.isEmpty());
    QVERIFY(!proxy->target());
    handler({handlerName, methodMessage(u"later"_qs)});
    answer(1);
    timer->invokeBlock();
    QTest::qWait(60);
}

void KXWKWebViewDeletionTest::mayBeDeletedInItsCallbacks_data()
{
    QTest::addColumn<std::function<void(KXWKWebViewDeletionTest *)>>("provoke");
    using Provoke = std::function<void(KXWKWebViewDeletionTest *)>;
    const auto row = [](const char *name, const Provoke &provoke) { QTest::newRow(name) << provoke; };
    const auto deletes = [](KXWKWebViewDeletionTest *test) { return [test](auto &&...) { test->m_host.reset(); }; };
    const QUrl url(u"https://a.example/"_qs);
    row("completion", [deletes](KXWKWebViewDeletionTest *test) {
        test->m_host->setCompletion(deletes(test));
        test->m_host->onNavigationCompletion();
    });
    row("completed signal", [](KXWKWebViewDeletionTest *test) {
        connect(test->m_host.get(), &KXWKWebView::navigationCompleted, test, [test] { test->m_host.reset(); });
        test->m_host->onNavigationCompletion();
    });
    row("starting navigation", [deletes, url](KXWKWebViewDeletionTest *test) {
        test->m_host->willStartNewNavigationAction(deletes(test));
        test->m_host->updateURL(url);
    });
    row("started signal", [url](KXWKWebViewDeletionTest *test) {
        connect(test->m_host.get(), &KXWKWebView::navigationStarted, test, [test] { test->m_host.reset(); });
        test->m_host->updateURL(url);
    });
    row("missing page", [deletes, url](KXWKWebViewDeletionTest *test) {
        test->m_host->loadLocalH5NotExsit(deletes(test));
        test->m_host->updateURL(url);
        test->page()->fail({kx::URLErrorDomain, kx::URLErrorFileDoesNotExist, {},
            {{kx::FailingURLStringKey, u"file:///gone/x.html"_qs}}});
    });
    row("new window", [deletes](KXWKWebViewDeletionTest *test) {
        test->m_host->onWebViewNavigationAction(deletes(test));
        test->page()->openWindow({}, {});
    });
    row("native method", [](KXWKWebViewDeletionTest *test) {
        test->m_host->jsBridge()->registerMethod(
            u"close"_qs, [test](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) {
                const KXWebViewJSBridge::Completion answer = completion;
                test->m_host.reset();
                answer(1);
            });
        test->page()->post(handlerName, methodMessage(u"close"_qs));
    });
    row("answer of the page", [deletes](KXWKWebViewDeletionTest *test) {
        test->m_host->invokeH5(u"ask"_qs, QJsonValue::Undefined, deletes(test));
        test->page()->post(handlerName, u"{\"type\":\"handler\",\"message\":{\"method\":\"ask\",\"data\":5}}"_qs);
    });
    row("evaluation", [deletes](KXWKWebViewDeletionTest *test) {
        test->m_host->wkWebView()->evaluateJavaScript(u"1"_qs, deletes(test));
    });
    row("terminated signal", [](KXWKWebViewDeletionTest *test) {
        connect(test->m_host.get(), &KXWKWebView::webContentProcessTerminated, test, [test] { test->m_host.reset(); });
        test->page()->die();
    });
    row("changed URL", [url](KXWKWebViewDeletionTest *test) {
        connect(test->m_host.get(), &KXWKWebView::urlChanged, test, [test] { test->m_host.reset(); });
        test->m_host->updateURL(url);
    });
}

void KXWKWebViewDeletionTest::mayBeDeletedInItsCallbacks()
{
    QFETCH(std::function<void(KXWKWebViewDeletionTest *)>, provoke);
    provoke(this);
    QTRY_VERIFY(!m_host);
    QVERIFY(m_engine.pages.isEmpty());
    QCoreApplication::processEvents();
}

QTEST_MAIN(KXWKWebViewDeletionTest)
#include "KXWKWebViewDeletionTest.moc"
