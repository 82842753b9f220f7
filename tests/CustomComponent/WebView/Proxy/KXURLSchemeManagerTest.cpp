// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEngineUrlScheme>

#include <array>
#include <atomic>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

struct FakeTask final : kx::URLSchemeTask {
    QUrl url() const override { return QUrl(u"early://host/page"_qs); }
    QByteArray method() const override { return "GET"; }
    QHash<QByteArray, QByteArray> headers() const override { return {}; }
    bool isStopped() const override { return false; }
    void didReceiveResponse(const QByteArray &) override { ++answers; }
    void didReceiveData(const QByteArray &) override { ++answers; }
    void didFinish() override { ++answers; }
    void didFailWithError(const KXError &) override { ++answers; }
    int answers = 0;
};

} // namespace

class KXURLSchemeManagerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void isMadeOnceForAllThreads();
    void givesTheTaskToTheStartCallback();
    void givesTheTaskToTheStopCallback();
    void leavesATaskUnansweredWithoutACallback();
    void laterCallbackReplacesTheFirst();
    void callbackMayReplaceItselfWhileItRuns();
    void engineSideReachesTheSameCallbacks();
    void keepsItsSchemesAsGiven();
    void makesEarlySchemesSecureLocalAndOpenToOtherOrigins();
    void warnsOnceForALateScheme();
    void refusesWhatIsNoSchemeOfItsOwn_data();
    void refusesWhatIsNoSchemeOfItsOwn();

private:
    KXURLSchemeManager &m_manager = KXURLSchemeManager::sharedManager();
};

void KXURLSchemeManagerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_manager.setStartRequestBlock({});
    m_manager.setStopRequestBlock({});
    m_manager.setProxySchemes({});
}

void KXURLSchemeManagerTest::isMadeOnceForAllThreads()
{
    std::array<KXURLSchemeManager *, 8> seen{};
    std::atomic<int> waiting = int(seen.size());
    {
        std::array<std::jthread, 8> threads;
        for (size_t i = 0; i < threads.size(); ++i) {
            threads[i] = std::jthread([&, i] {
                --waiting;
                while (waiting > 0) // all begin together
                    std::this_thread::yield();
                seen[i] = &KXURLSchemeManager::sharedManager();
            });
        }
    }
    for (KXURLSchemeManager *manager : seen)
        QCOMPARE(manager, &m_manager);
}

void KXURLSchemeManagerTest::givesTheTaskToTheStartCallback()
{
    QList<kx::URLSchemeTaskPtr> started, stopped;
    m_manager.onComingRequest([&](const kx::URLSchemeTaskPtr &task) { started.append(task); });
    m_manager.onStopRequest([&](const kx::URLSchemeTaskPtr &task) { stopped.append(task); });
    const auto task = std::make_shared<FakeTask>();
    m_manager.webViewStartURLSchemeTask(nullptr, task);
    QCOMPARE(started, QList<kx::URLSchemeTaskPtr>{task});
    QVERIFY(stopped.isEmpty());
}

void KXURLSchemeManagerTest::givesTheTaskToTheStopCallback()
{
    QList<kx::URLSchemeTaskPtr> started, stopped;
    m_manager.onComingRequest([&](const kx::URLSchemeTaskPtr &task) { started.append(task); });
    m_manager.onStopRequest([&](const kx::URLSchemeTaskPtr &task) { stopped.append(task); });
    const auto task = std::make_shared<FakeTask>();
    m_manager.webViewStopURLSchemeTask(nullptr, task);
    QCOMPARE(stopped, QList<kx::URLSchemeTaskPtr>{task});
    QVERIFY(started.isEmpty());
}

void KXURLSchemeManagerTest::leavesATaskUnansweredWithoutACallback()
{
    QVERIFY(!m_manager.startRequestBlock());
    QVERIFY(!m_manager.stopRequestBlock());
    const auto task = std::make_shared<FakeTask>();
    m_manager.webViewStartURLSchemeTask(nullptr, task);
    m_manager.webViewStopURLSchemeTask(nullptr, task);
    QCOMPARE(task->answers, 0);
    QCOMPARE(task.use_count(), 1L);
}

void KXURLSchemeManagerTest::laterCallbackReplacesTheFirst()
{
    int first = 0, second = 0;
    m_manager.onComingRequest([&](const kx::URLSchemeTaskPtr &) { ++first; });
    m_manager.onComingRequest([&](const kx::URLSchemeTaskPtr &) { ++second; });
    m_manager.webViewStartURLSchemeTask(nullptr, std::make_shared<FakeTask>());
    QCOMPARE(first, 0);
    QCOMPARE(second, 1);
}

void KXURLSchemeManagerTest::callbackMayReplaceItselfWhileItRuns()
{
    int after = 0;
    const auto state = std::make_shared<int>(7); // dies with the callback that holds it
    int seen = 0;
    m_manager.onComingRequest([this, state = state, &seen, &after](const kx::URLSchemeTaskPtr &) {
        m_manager.onComingRequest([&after](const kx::URLSchemeTaskPtr &) { ++after; });
        seen = *state;
    });
    m_manager.webViewStartURLSchemeTask(nullptr, std::make_shared<FakeTask>());
    QCOMPARE(seen, 7);
    QCOMPARE(after, 0);
    m_manager.webViewStartURLSchemeTask(nullptr, std::make_shared<FakeTask>());
    QCOMPARE(after, 1);
    QCOMPARE(state.use_count(), 1L);
}

void KXURLSchemeManagerTest::engineSideReachesTheSameCallbacks()
{
    int started = 0, stopped = 0;
    m_manager.onComingRequest([&](const kx::URLSchemeTaskPtr &) { ++started; });
    m_manager.onStopRequest([&](const kx::URLSchemeTaskPtr &) { ++stopped; });
    kx::URLSchemeHandler &handler = m_manager;
    handler.startURLSchemeTask(std::make_shared<FakeTask>());
    handler.stopURLSchemeTask(std::make_shared<FakeTask>());
    QCOMPARE(started, 1);
    QCOMPARE(stopped, 1);
}

void KXURLSchemeManagerTest::keepsItsSchemesAsGiven()
{
    // Order, case and repetitions are the application's; both names were listed before the application object.
    const QStringList schemes{u"second"_qs, u"Early"_qs, u"early"_qs, u"early"_qs};
    m_manager.setProxySchemes(schemes);
    QCOMPARE(m_manager.proxySchemes(), schemes);
}

void KXURLSchemeManagerTest::makesEarlySchemesSecureLocalAndOpenToOtherOrigins()
{
    for (const char *name : {"early", "second"}) {
        const QWebEngineUrlScheme scheme = QWebEngineUrlScheme::schemeByName(name);
        QCOMPARE(scheme.name(), QByteArray(name));
        QCOMPARE(scheme.flags(),
            QWebEngineUrlScheme::Flags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::LocalScheme
                | QWebEngineUrlScheme::CorsEnabled));
        QCOMPARE(scheme.syntax(), QWebEngineUrlScheme::Syntax::Host);
    }
}

void KXURLSchemeManagerTest::warnsOnceForALateScheme()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^URL scheme \"late\": listed after the application"_qs));
    m_manager.setProxySchemes({u"early"_qs, u"late"_qs});
    QCOMPARE(m_manager.proxySchemes(), (QStringList{u"early"_qs, u"late"_qs}));
    m_manager.setProxySchemes({u"late"_qs}); // no second warning
    QVERIFY(QWebEngineUrlScheme::schemeByName("late").name().isEmpty());
}

void KXURLSchemeManagerTest::refusesWhatIsNoSchemeOfItsOwn_data()
{
    QTest::addColumn<QString>("scheme");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char *name, const QString &scheme, const QString &warning) {
        QTest::newRow(name) << scheme << warning;
    };
    row("empty", u""_qs, u"not a scheme"_qs);
    row("digit first", u"1a"_qs, u"not a scheme"_qs);
    row("colon", u"a:"_qs, u"not a scheme"_qs);
    row("letter outside ASCII", u"é"_qs, u"not a scheme"_qs);
    row("null character", QString(u'a') % QChar::Null, u"not a scheme"_qs);
    row("http", u"http"_qs, u"belongs to the web engine"_qs);
    row("https in capitals", u"HTTPS"_qs, u"belongs to the web engine"_qs);
    row("file", u"file"_qs, u"belongs to the web engine"_qs);
}

void KXURLSchemeManagerTest::refusesWhatIsNoSchemeOfItsOwn()
{
    QFETCH(QString, scheme);
    QFETCH(QString, warning);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    m_manager.setProxySchemes({scheme});
    QVERIFY(QWebEngineUrlScheme::schemeByName(scheme.toUtf8()).name().isEmpty());
}

int main(int argc, char **argv)
{
    KXURLSchemeManager::sharedManager().setProxySchemes({QStringLiteral("Early"), QStringLiteral("second")});
    QCoreApplication application(argc, argv);
    KXURLSchemeManagerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "KXURLSchemeManagerTest.moc"
