// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWebView.h>
#include <KXFoundation/Platform/Web/WebErrors.h>
#include <KXFoundation/Platform/Web/WebView.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using kx::NavigationPolicy;
using kx::test::FakeWebEngine;
using kx::test::FakeWebPage;

namespace {

/// Remembers what it hears, and keeps the handlers for later.
class Delegate : public kx::WebNavigationDelegate, public kx::WebUIDelegate {
public:
    void webViewDecidePolicyForNavigationAction(
        kx::WebView *view, const kx::NavigationAction &, const kx::NavigationDecisionHandler &decisionHandler) override
    {
        heard(view, u"policy"_qs);
        decide = decisionHandler;
        if (answer)
            decisionHandler(*answer);
    }
    void webViewDidFinishNavigation(kx::WebView *view) override { heard(view, u"finish"_qs); }
    void webViewDidFailProvisionalNavigation(kx::WebView *view, const std::optional<KXError> &error) override
    {
        heard(view, u"provisional %1"_qs.arg(error->code));
    }
    void webViewDidFailNavigation(kx::WebView *view, const std::optional<KXError> &error) override
    {
        heard(view, u"fail %1"_qs.arg(error->code));
    }
    void webViewWebContentProcessDidTerminate(kx::WebView *view) override { heard(view, u"terminate"_qs); }
    void webViewRunJavaScriptConfirmPanelWithMessage(kx::WebView *view, const QString &message, const kx::FrameInfo &,
        const std::function<void(bool)> &completionHandler) override
    {
        heard(view, u"confirm "_qs + message);
        confirm = completionHandler;
        if (answer)
            completionHandler(*answer == NavigationPolicy::Allow);
    }

    QStringList all;
    std::optional<NavigationPolicy> answer = NavigationPolicy::Allow;
    kx::NavigationDecisionHandler decide;
    std::function<void(bool)> confirm;
    kx::WebView *lastView = nullptr;

private:
    void heard(kx::WebView *from, const QString &what)
    {
        lastView = from;
        all.append(what);
    }
};

} // namespace

class WebViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void keepsItsConfiguration();
    void worksWithoutDelegates();
    void tellsItsDelegate();
    void unansweredQuestionIsRefused();
    void firstAnswerCounts();
    void lateAnswersAreIgnored();
    void defaultDelegateAllowsAndDoesNothing();
    void forgetsADelegateThatIsGone();
    void handsOnToThePage();
    void pageFillsIt();
    void survivesItsPagesWidget();
    void ignoringTheMouseIsToldToThePage();

private:
    FakeWebPage *page() { return m_engine.page(); }

    FakeWebEngine m_engine;
    std::unique_ptr<kx::WebView> m_view;
};

void WebViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_view.reset();
    m_view =
        std::make_unique<kx::WebView>(QRectF(10, 20, 320, 200), std::make_shared<kx::WebViewConfiguration>(m_engine));
}

void WebViewTest::keepsItsConfiguration()
{
    const std::weak_ptr configuration = m_view->configuration();
    QVERIFY(!configuration.expired());
    QCOMPARE(m_engine.configurations.last().lock(), configuration.lock());
    m_view.reset();
    QVERIFY(configuration.expired());
    QVERIFY(m_engine.pages.isEmpty());
}

void WebViewTest::worksWithoutDelegates()
{
    QCOMPARE(m_view->navigationDelegate(), nullptr);
    QCOMPARE(m_view->UIDelegate(), nullptr);
    QCOMPARE(page()->ask({}), NavigationPolicy::Allow);
    page()->alert(u"x"_qs);
    QVERIFY(!page()->confirm(u"x"_qs));
    const QString text = page()->prompt(u"x"_qs);
    QVERIFY(text.isEmpty() && !text.isNull());
    page()->openWindow({}, {});
    m_view->load(QUrl(u"https://a.example/"_qs));
    page()->die();
    page()->finish();
    page()->fail({});
    page()->die();
}

void WebViewTest::tellsItsDelegate()
{
    Delegate delegate;
    m_view->setNavigationDelegate(&delegate);
    m_view->setUIDelegate(&delegate);
    m_view->load(QUrl(u"https://a.example/"_qs));
    QTRY_COMPARE(delegate.all, QStringList{u"policy"_qs});
    page()->fail({kx::URLErrorDomain, -1003, {}, {}});
    page()->commit();
    page()->fail({kx::URLErrorDomain, -1005, {}, {}});
    page()->finish();
    page()->die();
    QVERIFY(page()->confirm(u"sure?"_qs));
    QCOMPARE(delegate.all,
        (QStringList{u"policy"_qs, u"provisional -1003"_qs, u"fail -1005"_qs, u"finish"_qs, u"terminate"_qs,
            u"confirm sure?"_qs}));
    QCOMPARE(delegate.lastView, m_view.get());
}

void WebViewTest::unansweredQuestionIsRefused()
{
    Delegate delegate;
    delegate.answer.reset();
    m_view->setNavigationDelegate(&delegate);
    m_view->setUIDelegate(&delegate);
    QCOMPARE(page()->ask({}), NavigationPolicy::Cancel);
    QVERIFY(!page()->confirm(u"x"_qs));
}

void WebViewTest::firstAnswerCounts()
{
    struct Twice : kx::WebNavigationDelegate {
        void webViewDecidePolicyForNavigationAction(
            kx::WebView *, const kx::NavigationAction &, const kx::NavigationDecisionHandler &decisionHandler) override
        {
            decisionHandler(NavigationPolicy::Allow);
            decisionHandler(NavigationPolicy::Cancel);
        }
    } delegate;
    m_view->setNavigationDelegate(&delegate);
    QCOMPARE(page()->ask({}), NavigationPolicy::Allow);
}

void WebViewTest::lateAnswersAreIgnored()
{
    Delegate delegate;
    delegate.answer.reset();
    m_view->setNavigationDelegate(&delegate);
    m_view->setUIDelegate(&delegate);
    (void)page()->ask({});
    (void)page()->confirm(u"x"_qs);
    m_view.reset();
    delegate.decide(NavigationPolicy::Allow);
    delegate.confirm(true);
}

void WebViewTest::defaultDelegateAllowsAndDoesNothing()
{
    kx::WebNavigationDelegate navigation;
    kx::WebUIDelegate ui;
    m_view->setNavigationDelegate(&navigation);
    m_view->setUIDelegate(&ui);
    QCOMPARE(page()->ask({}), NavigationPolicy::Allow);
    QVERIFY(!page()->confirm(u"x"_qs));
    QCOMPARE(page()->prompt(u"x"_qs), u""_qs);
    page()->alert(u"x"_qs); // comes back
    page()->openWindow({}, {});
    m_view->load(QUrl(u"kx:1"_qs));
    page()->fail({});
    m_view->load(QUrl(u"kx:2"_qs));
    page()->commit();
    page()->fail({});
    m_view->load(QUrl(u"kx:3"_qs));
    page()->commit();
    page()->finish();
    page()->die();
    bool allowed = false;
    navigation.webViewDecidePolicyForNavigationResponse(
        m_view.get(), {}, [&allowed](NavigationPolicy policy) { allowed = policy == NavigationPolicy::Allow; });
    QVERIFY(allowed);
}

void WebViewTest::forgetsADelegateThatIsGone()
{
    {
        Delegate delegate;
        delegate.answer = NavigationPolicy::Cancel;
        m_view->setNavigationDelegate(&delegate);
        m_view->setUIDelegate(&delegate);
        QCOMPARE(page()->ask({}), NavigationPolicy::Cancel);
    }
    QCOMPARE(m_view->navigationDelegate(), nullptr);
    QCOMPARE(m_view->UIDelegate(), nullptr);
    QCOMPARE(page()->ask({}), NavigationPolicy::Allow);
}

void WebViewTest::handsOnToThePage()
{
    m_view->loadFileURL(QUrl(u"file:///a/b.html"_qs), u"/a"_qs);
    QCOMPARE(page()->loads, (QList<FakeWebPage::Load>{{QUrl(u"file:///a/b.html"_qs), u"/a"_qs}}));
    QVERIFY(m_view->isLoading());
    QCOMPARE(m_view->url(), QUrl(u"file:///a/b.html"_qs));
    m_view->stopLoading();
    QVERIFY(!m_view->isLoading());
    m_view->evaluateJavaScript(u"1"_qs);
    m_view->executeJavaScript(u"2"_qs);
    QCOMPARE(page()->scripts, (QStringList{u"1"_qs, u"2"_qs}));
    QVERIFY(m_view->drawsBackground());
    m_view->setDrawsBackground(false);
    QVERIFY(!page()->drawsBackground);
    QCOMPARE(&m_view->page(), page());
}

void WebViewTest::pageFillsIt()
{
    QCOMPARE(m_view->frame(), QRectF(10, 20, 320, 200));
    QCOMPARE(page()->widget()->geometry(), QRect(0, 0, 320, 200));
    QCOMPARE(m_view->focusProxy(), page()->widget());
    m_view->show();
    m_view->resize(100, 50);
    QCOMPARE(page()->widget()->geometry(), QRect(0, 0, 100, 50));
}

void WebViewTest::survivesItsPagesWidget()
{
    m_view->show();
    delete page()->widget();
    m_view->resize(100, 50);
    m_view.reset();
    QVERIFY(m_engine.pages.isEmpty());
}

void WebViewTest::ignoringTheMouseIsToldToThePage()
{
    KXWebView view(QRectF(), std::make_shared<kx::WebViewConfiguration>(m_engine));
    const QSignalSpy changed(&view, &KXWebView::ignoreMouseEnventChanged);
    QVERIFY(!view.ignoreMouseEnvent());
    QVERIFY(!page()->ignoresMouseEvents);
    view.setIgnoreMouseEnvent(true);
    view.setIgnoreMouseEnvent(true);
    QVERIFY(page()->ignoresMouseEvents);
    QVERIFY(view.setProperty("ignoreMouseEnvent", false));
    QVERIFY(!page()->ignoresMouseEvents);
    QCOMPARE(changed.size(), 2);
}

QTEST_MAIN(WebViewTest)
#include "WebViewTest.moc"
