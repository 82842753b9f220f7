// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"
#include "Support/Processes.h"

#include "PageFixture.h"

#include <QtCore/QRegularExpression>

using kx::test::descendants;
using kx::test::keepsFreedMemory;
using kx::test::PageFixture;
using kx::test::privateMemory;

/// That pages leave nothing behind.
class PageLifetimeTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { PageFixture::startEngine(); }
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void fiftyPagesLeaveNothingBehind()
    {
        const auto pool = std::make_shared<kx::ProcessPool>();
        const auto build = [&](int count) {
            for (int i = 0; i < count; ++i) {
                PageFixture fixture;
                fixture.configuration->processPool = pool;
                fixture.loadHtml("<script>webkit.messageHandlers.native.postMessage('x'.repeat(1000))</script><p>page");
                QTRY_COMPARE(fixture.messages.size(), 1);
            }
        };
        build(5); // what the engine makes once
        const qsizetype processes = descendants().size();
        const double before = privateMemory();
        build(50);
        QTRY_VERIFY2(descendants().size() <= processes + 1, qPrintable(QString::number(descendants().size())));
        const double grown = privateMemory() - before;
        qInfo("50 pages: %.1f MiB more, %d child processes after %d", grown, int(descendants().size()), int(processes));
        QVERIFY2(grown < 100 || keepsFreedMemory, qPrintable(QString::number(grown))); // a leaked page costs 80
    }

    void manyPagesAtOnce()
    {
        const auto pool = std::make_shared<kx::ProcessPool>();
        std::vector<std::unique_ptr<PageFixture>> fixtures;
        for (int i = 0; i < 8; ++i) {
            fixtures.push_back(std::make_unique<PageFixture>());
            fixtures.back()->configuration->processPool = pool;
            fixtures.back()->loadHtml("<script>webkit.messageHandlers.native.postMessage('here')</script>");
            QTRY_COMPARE(fixtures.back()->texts(), QStringList(QStringLiteral("here")));
        }
        // Each message went to its own page's handler.
        for (const auto &fixture : fixtures)
            QCOMPARE(fixture->messages.size(), 1);
    }

    void pagesOfOnePoolShareCookiesAndOthersDoNot()
    {
        const auto pool = std::make_shared<kx::ProcessPool>();
        PageFixture one;
        PageFixture two;
        PageFixture stranger;
        one.configuration->processPool = two.configuration->processPool = pool;
        one.serve("/plain", "");
        one.loadHtml("<script>document.cookie = 'a=1'</script>");
        const auto cookies = [&](PageFixture &fixture) {
            fixture.load(one.server.url("/plain"));
            return fixture.evaluate(QStringLiteral("document.cookie")).value.toString();
        };
        QCOMPARE(cookies(two), QStringLiteral("a=1"));
        QCOMPARE(cookies(stranger), QStringLiteral(""));
    }

    void aPageMayOutliveTheApplication()
    {
        // Left to the program's end: its engine page must go before the engine, without a warning.
        static PageFixture *left = new PageFixture;
        left->loadHtml("<p>left");
        QCOMPARE(left->client.finished, 1);
    }
};

QTEST_MAIN(PageLifetimeTest)
#include "PageLifetimeTest.moc"
