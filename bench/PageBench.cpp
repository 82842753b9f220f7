// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>
#include <KXFoundation/Platform/Web/WebEngine.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtWebChannel/QWebChannel>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>
#include <QtWebEngineWidgets/QWebEngineView>

// A page calls native code, which answers: through the bridge and the library's page here, through QWebChannel with its
// own script there. Both run the same driver in the page, and a trip ends when the page has its answer.
namespace {

using kx::bench::Clock;
using kx::bench::timed;

constexpr int tripsAtATime = 2000; // so many that the start and the end of a run do not count

/// `call(data, answered)` is the side's own; `run` tells by `call("done")`.
const QString driver = QStringLiteral("function run(trips, inFlight) {"
                                      "  var started = 0, answered = 0;"
                                      "  function trip() {"
                                      "    started += 1;"
                                      "    call({number: started, text: 'some text'}, function () {"
                                      "      answered += 1;"
                                      "      if (answered === trips) call('done', function () {});"
                                      "      else if (started < trips) trip();"
                                      "    });"
                                      "  }"
                                      "  for (var i = 0; i < inFlight; i += 1) trip();"
                                      "}");

/// What both sides do with a call: note the end of a run, answer with what came.
class Echo : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE QJsonValue echo(const QJsonValue &value)
    {
        if (value.isString()) {
            m_done = true;
            Q_EMIT done();
        }
        return value;
    }
    void waitUntilDone()
    {
        QEventLoop loop;
        connect(this, &Echo::done, &loop, &QEventLoop::quit);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        if (!m_done)
            loop.exec();
    }
    [[nodiscard]] bool takeDone() { return std::exchange(m_done, false); }

Q_SIGNALS:
    void done();

private:
    bool m_done = false;
};

void measure(benchmark::State &state, Echo &echo, int inFlight, const std::function<void(const QString &)> &evaluate)
{
    const auto run = [&] {
        evaluate(QStringLiteral("run(%1, %2)").arg(tripsAtATime).arg(inFlight));
        echo.waitUntilDone();
        return echo.takeDone();
    };
    run(); // the page's compiler has seen it all then
    while (state.KeepRunningBatch(tripsAtATime)) {
        QElapsedTimer timer;
        timer.start();
        if (!run()) {
            state.SkipWithError("the page did not answer");
            return;
        }
        state.SetIterationTime(double(timer.nsecsElapsed()) * 1e-9);
    }
}

class Client final : public kx::WebPageClient {
public:
    kx::NavigationPolicy decidePolicyForNavigationAction(const kx::NavigationAction &) override
    {
        return kx::NavigationPolicy::Allow;
    }
    void didFinishNavigation() override { loaded.quit(); }
    void didFailProvisionalNavigation(const KXError &) override { loaded.exit(1); }
    void didFailNavigation(const KXError &) override { loaded.exit(1); }
    void webContentProcessDidTerminate() override { }
    void runJavaScriptAlertPanel(const QString &, const kx::FrameInfo &) override { }
    bool runJavaScriptConfirmPanel(const QString &, const kx::FrameInfo &) override { return false; }
    QString runJavaScriptTextInputPanel(const QString &, const QString &, const kx::FrameInfo &) override { return {}; }
    void createWebView(const kx::NavigationAction &, const kx::WindowFeatures &) override { }

    QEventLoop loaded;
};

void bridgeTrips(benchmark::State &state, int inFlight)
{
    Echo echo;
    KXWebViewJSBridge bridge;
    bridge.registerMethod(QStringLiteral("echo"),
        [&](const QJsonValue &parameters, const auto &completion) { completion(echo.echo(parameters)); });

    Client client;
    const auto configuration = std::make_shared<kx::WebViewConfiguration>();
    std::unique_ptr<kx::WebPage> page;
    configuration->userContentController->addScriptMessageHandler(
        [&](const kx::ScriptMessage &message) {
            bridge.handleH5Message(
                message.body, [&](const QString &command) { page->executeJavaScript(command, [](const auto &) {}); });
        },
        KXWebViewJSBridge::h5NativeMapBridgeName());
    configuration->userContentController->addUserScript(
        {KXWebViewJSBridge::javasctipt4Inject(), kx::UserScript::InjectionTime::DocumentStart, false});
    configuration->userContentController->addUserScript({driver
            + QStringLiteral("function call(data, answered) { window.%1.invokeNativeOnce('echo', data, answered); }")
                  .arg(KXWebViewJSBridge::h5BridgeObjectName()),
        kx::UserScript::InjectionTime::DocumentStart, true});
    page = kx::WebEngine::real().makePage(configuration, client);
    page->widget()->resize(320, 240);
    page->widget()->show();
    page->load(QUrl(QStringLiteral("data:text/html,<p>ours")));
    if (client.loaded.exec() != 0) {
        state.SkipWithError("the page did not load");
        return;
    }
    measure(state, echo, inFlight, [&](const QString &script) { page->executeJavaScript(script, {}); });
}

void channelTrips(benchmark::State &state, int inFlight)
{
    QFile channelScript(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    if (!channelScript.open(QFile::ReadOnly)) {
        state.SkipWithError("qwebchannel.js is not there");
        return;
    }
    Echo echo;
    QWebChannel channel;
    channel.registerObject(QStringLiteral("native"), &echo);
    QWebEngineProfile profile;
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(QString::fromUtf8(channelScript.readAll()) + driver
        + QStringLiteral("function call(data, answered) { native.echo(data, answered); }"
                         "new QWebChannel(qt.webChannelTransport, function (channel) {"
                         "  window.native = channel.objects.native; call('done', function () {}); });"));
    profile.scripts()->insert(script);
    QWebEnginePage page(&profile);
    page.setWebChannel(&channel);
    QWebEngineView view;
    view.setPage(&page);
    view.resize(320, 240);
    view.show();
    page.load(QUrl(QStringLiteral("data:text/html,<p>peer")));
    echo.waitUntilDone();
    if (!echo.takeDone()) {
        state.SkipWithError("the channel did not open");
        return;
    }
    measure(state, echo, inFlight, [&](const QString &text) { page.runJavaScript(text); });
}

const bool registered =
    timed(
        {"page.roundtrip.p50", "us", 1.0, "engine IPC"}, [](benchmark::State &state) { bridgeTrips(state, 1); },
        [](benchmark::State &state) { channelTrips(state, 1); }, {}, Clock::Manual)
    && timed(
        {"page.roundtrip.burst", "us", 1.0, "engine IPC"}, [](benchmark::State &state) { bridgeTrips(state, 64); },
        [](benchmark::State &state) { channelTrips(state, 64); }, {}, Clock::Manual);

} // namespace

#include "PageBench.moc"
