// SPDX-License-Identifier: MIT
#pragma once

#include "Support/EngineWarnings.h"

#include "RecordingPageClient.h"

#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

namespace kx::test {

/// What every page of every engine promises. A test class for one engine derives from this and says how its pages are
/// driven; the functions here then run as its own test functions.
class WebPageContract : public QObject {
    Q_OBJECT
protected:
    virtual WebEngine &engine() = 0;
    /// A URL that loads once letFinish() was called.
    virtual QUrl goodUrl() = 0;
    /// Whose load neither begins its document nor ends by itself.
    virtual QUrl silentUrl() = 0;
    /// A local file that does not exist.
    virtual QUrl missingFile() { return QUrl(QStringLiteral("file:///nowhere/at%20all.html?from=here")); }
    /// Lets the engine say what it has to say at its start, before warnings are failures.
    virtual void startEngine() { }
    virtual void letFinish(WebPage &) { }
    virtual void letFailAsMissing(WebPage &) { }
    virtual void killRenderer(WebPage &page) = 0;
    /// The page posts a string to a handler.
    virtual void post(WebPage &page, const QString &handler, const QString &text) = 0;
    /// The page shows an alert.
    virtual void alert(WebPage &page, const QString &text) = 0;

    struct Fixture {
        std::shared_ptr<WebViewConfiguration> configuration;
        RecordingPageClient client;
        std::unique_ptr<WebPage> page;
    };
    std::unique_ptr<Fixture> make()
    {
        auto fixture = std::make_unique<Fixture>();
        fixture->configuration = std::make_shared<WebViewConfiguration>(engine());
        fixture->configuration->preferences.allowFileAccessFromFileURLs = true;
        fixture->configuration->userContentController->addScriptMessageHandler(
            [this](const ScriptMessage &message) {
                m_messages.append(message.body.toString());
                if (m_onMessage)
                    m_onMessage();
            },
            QStringLiteral("native"));
        fixture->page = engine().makePage(fixture->configuration, fixture->client);
        fixture->page->widget()->resize(320, 240);
        fixture->page->widget()->show();
        m_messages.clear();
        m_onMessage = nullptr;
        return fixture;
    }
    void loadGood(Fixture &fixture)
    {
        const int before = fixture.client.finished;
        fixture.page->load(goodUrl());
        QTRY_VERIFY(!fixture.client.actions.isEmpty());
        letFinish(*fixture.page);
        QTRY_COMPARE(fixture.client.finished, before + 1);
    }

    QStringList m_messages;
    std::function<void()> m_onMessage;

private Q_SLOTS:
    void initTestCase() { startEngine(); }
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void asksThePolicyAndFinishesALoad()
    {
        const auto fixture = make();
        QVERIFY(!fixture->page->isLoading());
        fixture->page->load(goodUrl());
        QVERIFY(fixture->page->isLoading());
        QVERIFY(fixture->client.actions.isEmpty()); // not from inside load()
        QCOMPARE(fixture->page->url(), goodUrl());
        QTRY_COMPARE(fixture->client.actions.size(), 1);
        const NavigationAction action = fixture->client.actions.constFirst();
        QCOMPARE(action.url, goodUrl());
        QVERIFY(action.sourceFrame.mainFrame);
        QCOMPARE(action.targetFrame, std::optional(FrameInfo{true}));
        letFinish(*fixture->page);
        QTRY_COMPARE(fixture->client.ends, QStringList(QStringLiteral("finished")));
        QVERIFY(!fixture->page->isLoading());
        QCOMPARE(fixture->page->url(), goodUrl());
    }

    void refusesWhatThePolicyRefuses()
    {
        const auto fixture = make();
        fixture->client.decide = [](const NavigationAction &) { return NavigationPolicy::Cancel; };
        fixture->page->load(goodUrl());
        QTRY_COMPARE(fixture->client.ends.size(), 1);
        QCOMPARE(fixture->client.provisionalFailures.size(), 1);
        const KXError error = fixture->client.provisionalFailures.constFirst();
        QCOMPARE(error.domain, WebErrorDomain);
        QCOMPARE(error.code, qint64(WebErrorFrameLoadInterrupted));
        QVERIFY(!fixture->page->isLoading());
    }

    void reportsAStopOnce()
    {
        const auto fixture = make();
        fixture->page->load(silentUrl());
        QTRY_COMPARE(fixture->client.actions.size(), 1);
        fixture->page->stopLoading();
        QVERIFY(!fixture->page->isLoading());
        QVERIFY(fixture->client.ends.isEmpty()); // not from inside stopLoading()
        fixture->page->stopLoading();
        QTRY_COMPARE(fixture->client.ends, QStringList(QStringLiteral("provisional -999")));
        loadGood(*fixture); // and nothing of the stopped load comes later
        QCOMPARE(fixture->client.ends.size(), 2);
    }

    void stopsALoadThatHasNotReachedTheEngine()
    {
        const auto fixture = make();
        fixture->page->load(goodUrl());
        fixture->page->stopLoading();
        QTRY_COMPARE(fixture->client.ends, QStringList(QStringLiteral("provisional -999")));
        QVERIFY(fixture->client.actions.isEmpty());
    }

    void aSecondLoadEndsTheFirst()
    {
        const auto fixture = make();
        fixture->page->load(silentUrl());
        QTRY_COMPARE(fixture->client.actions.size(), 1);
        fixture->page->load(goodUrl());
        QTRY_COMPARE(fixture->client.actions.size(), 2);
        letFinish(*fixture->page);
        QTRY_COMPARE(
            fixture->client.ends, QStringList({QStringLiteral("provisional -999"), QStringLiteral("finished")}));
    }

    void aMissingFileIsAnUrlError()
    {
        const auto fixture = make();
        fixture->page->loadFile(missingFile(), QStringLiteral("/nowhere"));
        QTRY_COMPARE(fixture->client.actions.size(), 1);
        letFailAsMissing(*fixture->page);
        QTRY_COMPARE(fixture->client.ends, QStringList(QStringLiteral("provisional -1100")));
        const KXError error = fixture->client.provisionalFailures.constFirst();
        QCOMPARE(error.domain, URLErrorDomain);
        QCOMPARE(error.userInfo.value(FailingURLStringKey).toString(),
            QStringLiteral("file:///nowhere/at%20all.html?from=here"));
    }

    void deliversMessagesToTheHandlerThatIsThereThen()
    {
        const auto fixture = make();
        loadGood(*fixture);
        post(*fixture->page, QStringLiteral("native"), QStringLiteral("one"));
        QTRY_COMPARE(m_messages, QStringList(QStringLiteral("one")));
        fixture->configuration->userContentController->removeScriptMessageHandlerForName(QStringLiteral("native"));
        post(*fixture->page, QStringLiteral("native"), QStringLiteral("two"));
        bool answered = false;
        fixture->page->evaluateJavaScript(QStringLiteral("0"), [&](const auto &, const auto &) { answered = true; });
        QTRY_VERIFY(answered);
        QCOMPARE(m_messages, QStringList(QStringLiteral("one")));
    }

    void answersEvaluationsLaterAndOnce()
    {
        const auto fixture = make();
        loadGood(*fixture);
        int answers = 0;
        fixture->page->evaluateJavaScript(QStringLiteral("0"), [&](const auto &, const auto &error) {
            ++answers;
            QVERIFY(!error);
        });
        QCOMPARE(answers, 0);
        QTRY_COMPARE(answers, 1);
        fixture->page->evaluateJavaScript(QStringLiteral("0"), {}); // nobody listens
        fixture->page->executeJavaScript(QStringLiteral("f(0)"), {});
    }

    void aDeathInALoadIsOneFailure()
    {
        const auto fixture = make();
        loadGood(*fixture); // so that there is a process
        fixture->client.ends.clear();
        fixture->page->load(silentUrl());
        QTRY_COMPARE(fixture->client.actions.size(), 2);
        std::optional<KXError> evaluation;
        fixture->page->evaluateJavaScript(
            QStringLiteral("new Promise(function(){})"), [&](const auto &, const auto &error) { evaluation = error; });
        killRenderer(*fixture->page);
        QTRY_COMPARE(fixture->client.ends, QStringList(QStringLiteral("provisional 1")));
        QCOMPARE(fixture->client.provisionalFailures.constLast().domain, CFNetworkErrorDomain);
        QVERIFY(!fixture->page->isLoading());
        QCOMPARE(fixture->page->rendererProcessId(), 0);
        loadGood(*fixture); // the page goes on with a new process
        QCOMPARE(fixture->client.ends.size(), 2);
        QVERIFY(fixture->page->rendererProcessId() > 0);
        post(*fixture->page, QStringLiteral("native"), QStringLiteral("alive"));
        QTRY_COMPARE(m_messages, QStringList(QStringLiteral("alive")));
    }

    void aDeathAtRestIsNoFailure()
    {
        const auto fixture = make();
        loadGood(*fixture);
        fixture->client.ends.clear();
        killRenderer(*fixture->page);
        QTRY_COMPARE(fixture->client.ends, QStringList(QStringLiteral("terminated")));
        std::optional<KXError> evaluation;
        fixture->page->evaluateJavaScript(
            QStringLiteral("1"), [&](const auto &, const auto &error) { evaluation = error; });
        QTRY_VERIFY(evaluation);
        QCOMPARE(evaluation->code, qint64(WebErrorViewInvalidated));
    }

    void mayBeDeletedWhenALoadEnds()
    {
        const auto fixture = make();
        fixture->client.onEnd = [&] { fixture->page.reset(); };
        fixture->page->load(goodUrl());
        QTRY_VERIFY(!fixture->client.actions.isEmpty());
        if (fixture->page) // or it has loaded by itself in the meantime
            letFinish(*fixture->page);
        QTRY_VERIFY(!fixture->page);
        QCOMPARE(fixture->client.ends.size(), 1);
    }

    void mayBeDeletedWhenThePolicyIsAsked()
    {
        const auto fixture = make();
        fixture->client.decide = [&](const NavigationAction &) {
            fixture->page.reset();
            return NavigationPolicy::Allow;
        };
        fixture->page->load(goodUrl());
        QTRY_VERIFY(!fixture->page);
        QTest::qWait(0);
        QVERIFY(fixture->client.ends.isEmpty());
    }

    void mayBeDeletedByAMessage()
    {
        const auto fixture = make();
        loadGood(*fixture);
        m_onMessage = [&] { fixture->page.reset(); };
        post(*fixture->page, QStringLiteral("native"), QStringLiteral("one"));
        post(*fixture->page, QStringLiteral("native"), QStringLiteral("two"));
        QTRY_VERIFY(!fixture->page);
        QTest::qWait(0);
        QCOMPARE(m_messages, QStringList(QStringLiteral("one")));
    }

    void mayBeDeletedInsideAPanel()
    {
        const auto fixture = make();
        loadGood(*fixture);
        fixture->client.onPanel = [&] {
            QTimer::singleShot(0, fixture->page->widget(), [&] { fixture->page.reset(); });
            QTRY_VERIFY(!fixture->page); // an event loop inside the panel
        };
        alert(*fixture->page, QStringLiteral("hello"));
        QTRY_VERIFY(!fixture->page);
        QCOMPARE(fixture->client.panels, QStringList(QStringLiteral("alert hello")));
    }

    void answersWhatWasEvaluatedBeforeItsEnd()
    {
        const auto fixture = make();
        loadGood(*fixture);
        std::optional<KXError> evaluation;
        fixture->page->evaluateJavaScript(
            QStringLiteral("1"), [&](const auto &, const auto &error) { evaluation = error; });
        fixture->page.reset();
        QVERIFY(!evaluation);
        QTRY_VERIFY(evaluation);
        QCOMPARE(evaluation->code, qint64(WebErrorViewInvalidated));
    }

    void itsWidgetGoesWithIt()
    {
        const auto fixture = make();
        QWidget parent;
        fixture->page->widget()->setParent(&parent);
        const QPointer<QWidget> widget = fixture->page->widget();
        fixture->page.reset();
        QVERIFY(!widget);
        QVERIFY(parent.children().isEmpty());
    }

    void survivesItsWidget()
    {
        const auto fixture = make();
        auto parent = std::make_unique<QWidget>();
        fixture->page->widget()->setParent(parent.get());
        parent.reset();
        QVERIFY(!fixture->page->widget());
        fixture->page->setIgnoresMouseEvents(true);
        fixture->page->setDrawsBackground(false);
        fixture->page->stopLoading();
        loadGood(*fixture);
    }
};

} // namespace kx::test
