// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/RealPage.h>

#include <KXFoundation/Platform/Web/WebErrors.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineSettings>
#include <QtWebEngineWidgets/QWebEngineView>

namespace kx {

RealPage::RealPage(const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client,
    const std::shared_ptr<QWebEngineProfile> &profile)
    : m_configuration(configuration)
    , m_client(client)
    , m_profile(profile)
    , m_page(std::make_unique<QWebEnginePage>(profile.get()))
    , m_view(new QWebEngineView)
{
    m_page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    m_page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    m_view->setPage(m_page.get());
    connect(m_page.get(), &QWebEnginePage::loadFinished, this, [this](bool ok) {
        if (ok)
            m_client.didFinishNavigation();
    });
}

RealPage::~RealPage()
{
    delete m_view;
}

QWidget *RealPage::widget() const
{
    return m_view;
}
void RealPage::load(const QUrl &url)
{
    m_page->load(url);
}
void RealPage::loadFile(const QUrl &url, const QString &)
{
    m_page->load(url);
}
void RealPage::stopLoading()
{
    m_page->triggerAction(QWebEnginePage::Stop);
}
bool RealPage::isLoading() const
{
    return m_page->isLoading();
}
QUrl RealPage::url() const
{
    return m_page->url();
}

void RealPage::evaluateJavaScript(const QString &script, EvaluationHandler completion)
{
    m_page->runJavaScript(script, [completion](const QVariant &value) {
        if (completion)
            completion(value.isValid() ? QJsonValue::fromVariant(value) : QJsonValue(QJsonValue::Undefined), {});
    });
}

void RealPage::setDrawsBackground(bool draws)
{
    m_page->setBackgroundColor(draws ? Qt::white : Qt::transparent);
}

void RealPage::setIgnoresMouseEvents(bool) { }
qint64 RealPage::rendererProcessId() const
{
    return m_page->renderProcessPid();
}

} // namespace kx
