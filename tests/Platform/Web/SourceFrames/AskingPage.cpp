// SPDX-License-Identifier: MIT
#include "AskingPage.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEngineNewWindowRequest>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>
#include <QtWebEngineCore/QWebEngineSettings>

namespace kx::test {
namespace {

const QString mark = QStringLiteral("source frame: ");

QWebEngineScript scriptFor(const QString &name, const QString &source, quint32 world)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setRunsOnSubFrames(true);
    script.setWorldId(world);
    return script;
}

} // namespace

HttpResponse answer(const QByteArray &body, const QByteArray &type)
{
    HttpResponse response;
    response.body = body;
    response.contentType = type;
    return response;
}

void AskingPage::prepare(QWebEngineProfile &profile)
{
    const QString send = QStringLiteral("(function (log) { return function (text) { log('") + mark
        + QStringLiteral("' + text); }; }(console.debug.bind(console)))");
    profile.scripts()->insert(scriptFor(QStringLiteral("frames"),
        SourceFrameTracker::isolatedWorldScript().trimmed() + u'(' + send + QStringLiteral(");"),
        QWebEngineScript::UserWorld));
    profile.scripts()->insert(scriptFor(QStringLiteral("page"),
        SourceFrameTracker::pageWorldScript().trimmed() + QStringLiteral("();"), QWebEngineScript::MainWorld));
}

AskingPage::AskingPage(QWebEngineProfile *profile)
    : QWebEnginePage(profile)
{
    settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    settings()->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    connect(this, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo &info) {
        if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus)
            m_tracker.mainFrameLoadEnded();
    });
    connect(this, &QWebEnginePage::newWindowRequested, this, [this](QWebEngineNewWindowRequest &request) {
        ask({request.requestedUrl(), NavigationRequest::Kind::Other, NavigationRequest::Target::NewWindow});
    });
    m_view.setPage(this);
    m_view.resize(400, 300);
    m_view.show();
}

AskingPage::~AskingPage()
{
    disconnect(this, nullptr, this, nullptr); // the base class still signals when the members are gone
}

void AskingPage::ask(const NavigationRequest &request)
{
    const NavigationSource source = m_tracker.source(request);
    std::optional<bool> target;
    if (request.target != NavigationRequest::Target::NewWindow)
        target = request.target == NavigationRequest::Target::MainFrame;
    m_questions.append({request.url, source.frame.mainFrame, target});
}

bool AskingPage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    NavigationRequest request{url, NavigationRequest::Kind::Other,
        isMainFrame ? NavigationRequest::Target::MainFrame : NavigationRequest::Target::SubFrame};
    switch (type) {
    case NavigationTypeLinkClicked: request.kind = NavigationRequest::Kind::Link; break;
    case NavigationTypeTyped: request.kind = NavigationRequest::Kind::Typed; break;
    case NavigationTypeFormSubmitted: request.kind = NavigationRequest::Kind::Form; break;
    case NavigationTypeBackForward: request.kind = NavigationRequest::Kind::BackForward; break;
    case NavigationTypeReload: request.kind = NavigationRequest::Kind::Reload; break;
    case NavigationTypeOther: request.kind = NavigationRequest::Kind::Other; break;
    case NavigationTypeRedirect: request.kind = NavigationRequest::Kind::Redirect; break;
    }
    ask(request);
    return !m_refuses || url.path().startsWith(QLatin1String("/redirect"));
}

void AskingPage::javaScriptConsoleMessage(
    JavaScriptConsoleMessageLevel level, const QString &message, int line, const QString &source)
{
    if (message.startsWith(mark))
        m_tracker.signal(message.mid(mark.size()));
    else if (level == ErrorMessageLevel)
        qInfo("%s:%d: %s", qPrintable(source.left(80)), line, qPrintable(message));
}

bool AskingPage::waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    QTimer wake; // so that the limit is noticed although nothing happens
    wake.start(20);
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

bool AskingPage::loadAndWait(const QUrl &url)
{
    load(url);
    const QString state = QLatin1String("complete") + url.path();
    return waitFor([&] { return evaluate(QStringLiteral("document.readyState + location.pathname")) == state; });
}

QVariant AskingPage::evaluate(const QString &script)
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    return waitFor([answer] { return answer->has_value(); }) ? **answer : QVariant();
}

void AskingPage::click(const QPoint &position)
{
    QTest::mouseClick(m_view.focusProxy(), Qt::LeftButton, {}, position);
}

} // namespace kx::test
