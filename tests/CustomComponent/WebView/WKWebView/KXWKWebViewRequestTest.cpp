// SPDX-License-Identifier: MIT
// What a host asks its web view to load, and how it notices the end, on the fake engine.
#include "FakeHost.h"

#include <KXFoundation/Platform/Core/Timer.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QElapsedTimer>
#include <QtTest/QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using kx::test::handlerName;
using kx::test::methodMessage;
using Load = kx::test::FakeWebPage::Load;

class KXWKWebViewRequestTest : public kx::test::FakeHostTest {
    Q_OBJECT
private Q_SLOTS:
    void init() { makeHost(); }

    void emptyURLDoesNothing();
    void loadsAPlainRequest();
    void loadsAFileWithReadAccessTwoLevelsUp();
    void stopsALoadUnderWay();
    void reloadsTheCurrentURL();
    void completesOneSecondAfterALoadBegan();
    void restartsTheOneTimer();
    void endOfALoadEndsTheTimer();
    void completesOnceForEachReport();
    void completesWithTheWebViewOfThatTime();
    void completionMayBeSetUntilItIsDue();
    void pageReportsItsEnd();
};

void KXWKWebViewRequestTest::emptyURLDoesNothing()
{
    m_host->updateURL(QUrl());
    m_host->reloadCurrentURL();
    m_host->updateURL(QUrl(u"http://[no address"_qs));
    QVERIFY(m_host->url().isEmpty());
    QVERIFY(page()->loads.isEmpty());
    QVERIFY(!m_host->loadTimer());
}

void KXWKWebViewRequestTest::loadsAPlainRequest()
{
    const QUrl url(u"https://a.example/x/y.html?z=1#w"_qs);
    m_host->updateURL(url);
    QCOMPARE(m_host->url(), url);
    QCOMPARE(page()->loads, (QList<Load>{{url, {}}}));
    QVERIFY(page()->loads.first().readAccessDirectory.isNull());
    QCOMPARE(page()->stops, 0);
}

void KXWKWebViewRequestTest::loadsAFileWithReadAccessTwoLevelsUp()
{
    const QUrl url(u"file:///a/b/c/d.html?z=1"_qs);
    m_host->updateURL(url);
    QCOMPARE(page()->loads, (QList<Load>{{url, u"/a/b"_qs}}));
}

void KXWKWebViewRequestTest::stopsALoadUnderWay()
{
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QCOMPARE(page()->stops, 1);
    QCOMPARE(page()->loads.size(), 2);
    page()->finish();
    m_host->updateURL(QUrl(u"https://c.example/"_qs));
    QCOMPARE(page()->stops, 1);
}

void KXWKWebViewRequestTest::reloadsTheCurrentURL()
{
    const QUrl url(u"https://a.example/"_qs);
    m_host->setUrl(url);
    QVERIFY(page()->loads.isEmpty());
    m_host->reloadCurrentURL();
    QCOMPARE(page()->loads, (QList<Load>{{url, {}}}));
    m_host->updateURL(m_host->url());
    QCOMPARE(page()->loads, (QList<Load>{{url, {}}, {url, {}}}));
}

void KXWKWebViewRequestTest::completesOneSecondAfterALoadBegan()
{
    QElapsedTimer clock;
    clock.start();
    QList<KXWebView *> completions;
    m_host->onFinishNavigation([&completions](KXWebView *webView) { completions.append(webView); });
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const std::weak_ptr timer = m_host->loadTimer();
    QVERIFY(timer.lock());
    QVERIFY(!timer.lock()->repeats());
    QCOMPARE(timer.lock()->timeInterval(), 1.0);
    QTRY_VERIFY(!m_host->loadTimer());
    QVERIFY(completions.isEmpty()); // 0.05 seconds later
    QTRY_COMPARE(completions, QList<KXWebView *>{m_host->wkWebView()});
    QVERIFY(clock.elapsed() >= 1050);
    QVERIFY(timer.expired());
}

void KXWKWebViewRequestTest::restartsTheOneTimer()
{
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const auto timer = m_host->loadTimer();
    const auto due = timer->fireDate();
    QTest::qWait(20);
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QCOMPARE(m_host->loadTimer(), timer);
    QVERIFY(timer->fireDate() >= due + std::chrono::milliseconds(19));
    // The moved timer fires as the first would have.
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    QTRY_COMPARE(completed.size(), 1);
    QVERIFY(!timer->isValid());
}

void KXWKWebViewRequestTest::endOfALoadEndsTheTimer()
{
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    const auto timer = m_host->loadTimer();
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    QVERIFY(!timer->isValid());
    QVERIFY(!m_host->loadTimer());
    m_host->updateURL(QUrl(u"https://b.example/"_qs));
    QVERIFY(m_host->loadTimer());
    QVERIFY(m_host->loadTimer() != timer);
}

void KXWKWebViewRequestTest::completesOnceForEachReport()
{
    int completions = 0;
    m_host->setCompletion([&completions](KXWebView *) { ++completions; });
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    m_host->onNavigationCompletion();
    m_host->onNavigationCompletion();
    page()->commit();
    page()->fail({kx::URLErrorDomain, kx::URLErrorNetworkConnectionLost, u"cut"_qs, {}});
    QTRY_COMPARE(completions, 3);
    QCOMPARE(completed.size(), 3);
}

void KXWKWebViewRequestTest::completesWithTheWebViewOfThatTime()
{
    KXWebView *seen = nullptr;
    m_host->setCompletion([&seen](KXWebView *webView) { seen = webView; });
    m_host->onNavigationCompletion();
    m_host->rebuildWebview();
    QTRY_VERIFY(seen);
    QCOMPARE(seen, m_host->wkWebView());
}

void KXWKWebViewRequestTest::completionMayBeSetUntilItIsDue()
{
    bool called = false;
    m_host->setCompletion([](KXWebView *) { QFAIL("replaced"); });
    m_host->onNavigationCompletion();
    m_host->setCompletion([&called](KXWebView *) { called = true; });
    QTRY_VERIFY(called);

    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->setCompletion({});
    m_host->onNavigationCompletion();
    QTRY_COMPARE(completed.size(), 1);
}

void KXWKWebViewRequestTest::pageReportsItsEnd()
{
    m_host->setName(u"root"_qs);
    const QSignalSpy completed(m_host.get(), &KXWKWebView::navigationCompleted);
    m_host->updateURL(QUrl(u"https://a.example/"_qs));
    QTest::ignoreMessage(QtInfoMsg, "===WKWebView didFinishNavigation:https://a.example/");
    page()->finish();
    QVERIFY(m_host->loadTimer()); // the main page says itself when it is ready
    page()->post(handlerName, methodMessage(u"common_HN_loadCompleted"_qs, u",\"once\":1,\"mid\":2"_qs));
    QTRY_COMPARE(completed.size(), 1);
    QVERIFY(!m_host->loadTimer());
    QVERIFY(page()->scripts.isEmpty()); // no answer
}

QTEST_MAIN(KXWKWebViewRequestTest)
#include "KXWKWebViewRequestTest.moc"
