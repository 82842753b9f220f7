// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "PageFixture.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

using kx::test::PageFixture;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool keepsFreedMemory = true; // to find uses of it
#else
constexpr bool keepsFreedMemory = false;
#endif

/// Resident memory of this process, in MB.
double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QFile::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
}

/// Processes below this one: the engine's renderers and helpers.
int childProcesses()
{
    QHash<qint64, qint64> parents;
    for (const QString &name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile file(QStringLiteral("/proc/%1/stat").arg(name));
        if (name.toLongLong() > 0 && file.open(QFile::ReadOnly)) {
            const QByteArray stat = file.readAll();
            const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
            if (fields.value(0) != "Z")
                parents.insert(name.toLongLong(), fields.value(1).toLongLong());
        }
    }
    int count = 0;
    for (auto it = parents.cbegin(); it != parents.cend(); ++it) {
        for (qint64 at = it.value(); at > 1; at = parents.value(at)) {
            if (at == QCoreApplication::applicationPid()) {
                ++count;
                break;
            }
        }
    }
    return count;
}

} // namespace

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
        const int processes = childProcesses();
        const double before = residentMegabytes();
        build(50);
        QTRY_VERIFY2(childProcesses() <= processes + 1, qPrintable(QString::number(childProcesses())));
        const double grown = residentMegabytes() - before;
        qInfo("50 pages: %.1f MB more, %d child processes after %d", grown, childProcesses(), processes);
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
