// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/RealPage.h>

#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccessInterceptor.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>

#include <QtCore/QFileInfo>
#include <QtWebEngineCore/QWebEngineFullScreenRequest>
#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEngineNewWindowRequest>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineSettings>

#include <utility>

namespace kx {

namespace {

using EngineType = QWebEnginePage::NavigationType;

NavigationType navigationType(EngineType type)
{
    switch (type) {
    case EngineType::NavigationTypeLinkClicked: return NavigationType::LinkActivated;
    case EngineType::NavigationTypeFormSubmitted: return NavigationType::FormSubmitted;
    case EngineType::NavigationTypeBackForward: return NavigationType::BackForward;
    case EngineType::NavigationTypeReload: return NavigationType::Reload;
    default: return NavigationType::Other;
    }
}

NavigationRequest::Kind requestKind(EngineType type)
{
    switch (type) {
    case EngineType::NavigationTypeLinkClicked: return NavigationRequest::Kind::Link;
    case EngineType::NavigationTypeTyped: return NavigationRequest::Kind::Typed;
    case EngineType::NavigationTypeFormSubmitted: return NavigationRequest::Kind::Form;
    case EngineType::NavigationTypeBackForward: return NavigationRequest::Kind::BackForward;
    case EngineType::NavigationTypeReload: return NavigationRequest::Kind::Reload;
    case EngineType::NavigationTypeRedirect: return NavigationRequest::Kind::Redirect;
    case EngineType::NavigationTypeOther: break;
    }
    return NavigationRequest::Kind::Other;
}

void apply(const WebPreferences &preferences, QWebEngineSettings &settings)
{
    using Settings = QWebEngineSettings;
    settings.setAttribute(Settings::JavascriptEnabled, preferences.javaScriptEnabled);
    settings.setAttribute(Settings::JavascriptCanOpenWindows, preferences.javaScriptCanOpenWindowsAutomatically);
    settings.setAttribute(Settings::FullScreenSupportEnabled, preferences.fullScreenEnabled);
    settings.setAttribute(Settings::LocalContentCanAccessFileUrls, preferences.allowFileAccessFromFileURLs);
    settings.setAttribute(Settings::LocalContentCanAccessRemoteUrls, preferences.allowFileAccessFromFileURLs);
    settings.setAttribute(Settings::ErrorPageEnabled, false);
    settings.setAttribute(Settings::AutoLoadIconsForPage, false); // nobody shows them
    // So that the policy is asked about these too. None is ever opened: acceptNavigation() refuses them.
    settings.setUnknownUrlSchemePolicy(Settings::AllowAllUnknownUrlSchemes);
}

/// Whether the engine tells what becomes of a load of this URL. For any other it shows an empty page without asking, or
/// does nothing at all.
bool isLoadable(const QUrl &url)
{
    if (!url.isValid() || url.isRelative() || url.scheme() == QLatin1String("javascript"))
        return false;
    return !url.scheme().startsWith(QLatin1String("http")) || !url.host().isEmpty();
}

} // namespace

RealPage::RealPage(
    const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client, PageProfile profile)
    : m_configuration(configuration)
    , m_client(client)
    , m_profile(std::move(profile))
    , m_view(new PageView)
{
    makeEnginePage();
}

RealPage::~RealPage()
{
    shutDown();
}

void RealPage::shutDown()
{
    m_scripts.setPage(nullptr);
    m_request.reset();
    if (m_page)
        m_page->disconnect(this);
    EnginePage::dispose(std::exchange(m_page, nullptr), m_view);
    m_view.clear();
    m_profile = {};
}

void RealPage::makeEnginePage()
{
    EnginePage *const former = m_page;
    m_page = new EnginePage(m_profile.profile, *this);
    apply(m_configuration->preferences, *m_page->settings());
    m_readAccess = new ReadAccessInterceptor(*m_page);
    m_page->setUrlRequestInterceptor(m_readAccess);
    connect(m_page, &QWebEnginePage::loadingChanged, this, &RealPage::loadingChanged);
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this, &RealPage::processTerminated);
    connect(m_page, &QWebEnginePage::newWindowRequested, this, &RealPage::newWindowRequested);
    connect(m_page, &QWebEnginePage::fullScreenRequested, this, [this](QWebEngineFullScreenRequest request) {
        request.accept();
        if (m_view)
            m_view->setFullScreen(request.toggleOn());
    });
    setDrawsBackground(m_drawsBackground);
    if (m_view)
        m_view->setPage(m_page);
    m_scripts.setPage(m_page);
    m_sourceFrames = SourceFrameTracker();
    m_dead = false;
    m_isBegun = false;
    if (former) {
        former->disconnect(this);
        EnginePage::dispose(former, nullptr);
    }
}

void RealPage::load(const QUrl &url)
{
    // A file without a granted directory gets its own.
    begin({url, url.isLocalFile() ? QFileInfo(url.toLocalFile()).path() : QString()});
}

void RealPage::loadFile(const QUrl &url, const QString &readAccessDirectory)
{
    begin({url, readAccessDirectory});
}

void RealPage::begin(const Request &request)
{
    if (!m_page)
        return;
    ++m_orders;
    m_loads.begin(request.url);
    // The engine asks about a navigation from inside load(), and the policy must not be asked from inside ours.
    if (!std::exchange(m_request, request))
        QMetaObject::invokeMethod(this, &RealPage::loadRequested, Qt::QueuedConnection);
}

void RealPage::loadRequested()
{
    const auto request = std::exchange(m_request, std::nullopt);
    if (!request)
        return;
    if (!isLoadable(request->url)) {
        m_loads.navigationAsked(request->url, false, LoadState::Answer::Unsupported);
        m_loads.stopped(request->url);
        return;
    }
    if (m_dead)
        makeEnginePage();
    if (request->url.isLocalFile())
        m_readAccess->grant(request->url, request->readAccessDirectory);
    // The engine does not ask about this scheme.
    if (request->url.scheme() == QLatin1String("about")) {
        const QPointer<RealPage> alive(this);
        if (!acceptNavigation(request->url, EngineType::NavigationTypeTyped, true)) {
            if (alive)
                m_loads.stopped(request->url);
            return;
        }
    }
    if (!m_page)
        return;
    m_isBegun = true;
    m_page->load(request->url);
}

void RealPage::stopLoading()
{
    ++m_orders;
    m_request.reset();
    m_loads.stop();
    // A page that has not begun has nothing to stop. Asked nevertheless, the engine would begin it, which crashes in a
    // view that is being deleted.
    if (m_page && (m_isBegun || rendererProcessId() != 0))
        m_page->triggerAction(QWebEnginePage::Stop);
}

QUrl RealPage::url() const
{
    if (m_loads.isLoading())
        return m_loads.url();
    return m_page ? m_page->url() : QUrl();
}

void RealPage::evaluateJavaScript(const QString &script, EvaluationHandler completion)
{
    m_scripts.evaluate(script, std::move(completion));
}

void RealPage::executeJavaScript(const QString &script, ExecutionHandler completion)
{
    m_scripts.execute(script, std::move(completion));
}

void RealPage::setDrawsBackground(bool draws)
{
    m_drawsBackground = draws;
    if (m_page)
        m_page->setBackgroundColor(draws ? Qt::white : Qt::transparent);
}

void RealPage::setIgnoresMouseEvents(bool ignores)
{
    if (m_view)
        m_view->setIgnoresMouseEvents(ignores);
}

qint64 RealPage::rendererProcessId() const
{
    return m_page && !m_dead ? m_page->renderProcessPid() : 0;
}

bool RealPage::servesScheme(const QString &scheme) const
{
    const QByteArray name = scheme.toUtf8();
    return isLoadedByTheEngine(name) || m_profile.profile->urlSchemeHandler(name);
}

bool RealPage::acceptNavigation(const QUrl &url, EngineType type, bool mainFrame)
{
    using Target = NavigationRequest::Target;
    const NavigationSource source =
        m_sourceFrames.source({url, requestKind(type), mainFrame ? Target::MainFrame : Target::SubFrame});
    const NavigationAction action = {url, navigationType(type), source.frame, FrameInfo{mainFrame}};
    const bool served = servesScheme(url.scheme());

    const QPointer<RealPage> alive(this);
    const quint64 orders = m_orders;
    const bool allowed = m_client.decidePolicyForNavigationAction(action) == NavigationPolicy::Allow;
    if (!alive || !m_page)
        return false;
    if (mainFrame && orders != m_orders) { // the client wants something else by now
        m_loads.dropped(url);
        return false;
    }
    if (mainFrame) {
        const auto answer = !allowed ? LoadState::Answer::Refused
            : served                 ? LoadState::Answer::Allowed
                                     : LoadState::Answer::Unsupported;
        m_loads.navigationAsked(url, source.serverRedirect, answer);
    }
    return allowed && served;
}

void RealPage::loadingChanged(const QWebEngineLoadingInfo &info)
{
    switch (info.status()) {
    case QWebEngineLoadingInfo::LoadStartedStatus: m_loads.started(info.url()); return;
    case QWebEngineLoadingInfo::LoadStoppedStatus: m_loads.stopped(info.url()); break;
    case QWebEngineLoadingInfo::LoadSucceededStatus: m_loads.succeeded(); break;
    case QWebEngineLoadingInfo::LoadFailedStatus:
        // An error page of a server is a document like any other.
        if (info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain)
            m_loads.succeeded();
        else
            m_loads.failed(info.errorCode(), info.url());
        break;
    }
    m_sourceFrames.mainFrameLoadEnded();
}

void RealPage::loadEnded(const LoadEnd &end)
{
    m_queue.post([this, end] {
        if (!end.error)
            m_client.didFinishNavigation();
        else if (end.committed)
            m_client.didFailNavigation(*end.error);
        else
            m_client.didFailProvisionalNavigation(*end.error);
    });
}

void RealPage::processTerminated()
{
    m_dead = true;
    m_scripts.processTerminated();
    if (m_view)
        m_view->setFullScreen(false);
    if (!m_loads.processTerminated())
        m_queue.post([this] { m_client.webContentProcessDidTerminate(); });
}

bool RealPage::consoleLine(const QString &line, const QString &source)
{
    const auto records = m_profile.transport->read(line);
    if (!records)
        return m_scripts.consoleLine(line, source);
    for (const TransportRecord &record : *records) {
        switch (record.kind) {
        case TransportRecord::Kind::DocumentStart:
            m_loads.documentStarted(m_page->url());
            m_scripts.documentStarted();
            break;
        case TransportRecord::Kind::SourceFrame: m_sourceFrames.signal(record.text); break;
        case TransportRecord::Kind::String:
        case TransportRecord::Kind::Json:
        case TransportRecord::Kind::Other: m_queue.post([this, record] { deliver(record); }); break;
        }
    }
    return true;
}

void RealPage::deliver(const TransportRecord &record)
{
    if (!m_page)
        return;
    const QString name = m_profile.transport->handlerNames().value(record.handler);
    if (const ScriptMessageHandler handler = m_configuration->userContentController->scriptMessageHandler(name))
        handler({name, record.body()});
}

void RealPage::newWindowRequested(const QWebEngineNewWindowRequest &request)
{
    const NavigationSource source = m_sourceFrames.source(
        {request.requestedUrl(), NavigationRequest::Kind::Other, NavigationRequest::Target::NewWindow});
    const NavigationAction action = {request.requestedUrl(), NavigationType::Other, source.frame, std::nullopt};
    const QRect geometry = request.requestedGeometry();
    WindowFeatures features;
    if (geometry.x() != 0 || geometry.y() != 0) {
        features.x = geometry.x();
        features.y = geometry.y();
    }
    if (geometry.width() > 0)
        features.width = geometry.width();
    if (geometry.height() > 0)
        features.height = geometry.height();
    m_queue.post([this, action, features] {
        const QPointer<RealPage> alive(this);
        const NavigationPolicy policy = m_client.decidePolicyForNavigationAction(action);
        if (alive && policy == NavigationPolicy::Allow)
            m_client.createWebView(action, features);
    });
}

// The engine tells the origin of the frame that opens a panel, not the frame: all count as the main frame.
void RealPage::alert(const QString &message)
{
    m_client.runJavaScriptAlertPanel(message, FrameInfo());
}

bool RealPage::confirm(const QString &message)
{
    return m_client.runJavaScriptConfirmPanel(message, FrameInfo());
}

bool RealPage::prompt(const QString &message, const QString &defaultText, QString *result)
{
    *result = m_client.runJavaScriptTextInputPanel(message, defaultText, FrameInfo());
    return true;
}

} // namespace kx
