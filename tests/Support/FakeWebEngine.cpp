// SPDX-License-Identifier: MIT
#include "FakeWebEngine.h"

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QCoreApplication>

#include <utility>

namespace kx::test {

namespace {

KXError goneError()
{
    return {WebErrorDomain, WebErrorViewInvalidated, QStringLiteral("The page is gone"), {}};
}

} // namespace

FakeWebPage::FakeWebPage(
    FakeWebEngine &engine, const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client)
    : m_engine(engine)
    , m_configuration(configuration)
    , m_client(client)
    , m_widget(new QWidget)
{
    m_engine.pages.append(this);
}

FakeWebPage::~FakeWebPage()
{
    m_engine.pages.removeOne(this);
    delete m_widget;
    for (const auto &[number, handler] : m_evaluations) {
        if (handler) {
            QMetaObject::invokeMethod(
                qApp, [handler = handler] { handler(QJsonValue::Undefined, goneError()); }, Qt::QueuedConnection);
        }
    }
}

void FakeWebPage::begin(const Load &load)
{
    if (m_loading)
        endAsStopped();
    loads.append(load);
    m_url = load.url;
    m_loading = true;
    m_committed = false;
    m_alive = true;
    const int number = ++m_loadNumber;
    QMetaObject::invokeMethod(
        this,
        [this, number] {
            if (number != m_loadNumber || !m_loading)
                return;
            const QPointer self(this);
            const NavigationPolicy policy = ask({m_url, NavigationType::Other, {true}, FrameInfo{true}});
            if (self && m_loading && number == m_loadNumber && policy == NavigationPolicy::Cancel)
                fail({WebErrorDomain, WebErrorFrameLoadInterrupted, QStringLiteral("Refused"), {}});
        },
        Qt::QueuedConnection);
}

void FakeWebPage::stopLoading()
{
    ++stops;
    if (m_loading)
        endAsStopped();
}

void FakeWebPage::endAsStopped()
{
    m_loading = false;
    const KXError error{URLErrorDomain, URLErrorCancelled, QStringLiteral("Stopped"),
        {{FailingURLStringKey, m_url.toString(QUrl::FullyEncoded)}}};
    const bool committed = m_committed;
    QMetaObject::invokeMethod(
        this,
        [this, error, committed] {
            committed ? m_client.didFailNavigation(error) : m_client.didFailProvisionalNavigation(error);
        },
        Qt::QueuedConnection);
}

void FakeWebPage::evaluateJavaScript(const QString &script, EvaluationHandler completion)
{
    scripts.append(script);
    const int number = ++m_lastEvaluation;
    m_evaluations.emplace(number, std::move(completion));
    QMetaObject::invokeMethod(
        this, [this, number] { answerEvaluation(number, m_alive ? evaluationError : goneError()); },
        Qt::QueuedConnection);
}

void FakeWebPage::answerEvaluation(int number, const std::optional<KXError> &error)
{
    const auto evaluation = m_evaluations.extract(number);
    if (!evaluation.empty() && evaluation.mapped())
        evaluation.mapped()(error ? QJsonValue(QJsonValue::Undefined) : QJsonValue(), error);
}

void FakeWebPage::finish()
{
    m_loading = false;
    m_committed = true;
    m_client.didFinishNavigation();
}

void FakeWebPage::fail(const KXError &error)
{
    m_loading = false;
    m_committed ? m_client.didFailNavigation(error) : m_client.didFailProvisionalNavigation(error);
}

void FakeWebPage::die()
{
    m_alive = false;
    const QPointer self(this);
    for (const auto &[number, handler] : std::exchange(m_evaluations, {})) {
        if (handler)
            handler(QJsonValue::Undefined, goneError());
    }
    if (!self)
        return;
    if (m_loading) {
        fail({CFNetworkErrorDomain, ProcessDiedDuringLoad, QStringLiteral("The process died"),
            {{FailingURLStringKey, m_url.toString(QUrl::FullyEncoded)}}});
    } else {
        m_client.webContentProcessDidTerminate();
    }
}

void FakeWebPage::openWindow(const NavigationAction &action, const WindowFeatures &features)
{
    const QPointer self(this);
    if (ask(action) == NavigationPolicy::Allow && self)
        m_client.createWebView(action, features);
}

void FakeWebPage::post(const QString &handlerName, const QJsonValue &body)
{
    QMetaObject::invokeMethod(
        this,
        [this, handlerName, body] {
            const auto controller = m_configuration->userContentController;
            if (const ScriptMessageHandler handler = controller->scriptMessageHandler(handlerName))
                handler({handlerName, body});
        },
        Qt::QueuedConnection);
}

std::unique_ptr<WebPage> FakeWebEngine::makePage(
    const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client)
{
    configurations.append(configuration);
    return std::make_unique<FakeWebPage>(*this, configuration, client);
}

} // namespace kx::test
