// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/WebEngine.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <memory>

class QWebEnginePage;
class QWebEngineProfile;
class QWebEngineView;

namespace kx {

/// A page on Qt WebEngine.
class RealPage final : public QObject, public WebPage {
    Q_OBJECT
public:
    RealPage(const std::shared_ptr<WebViewConfiguration> &configuration, WebPageClient &client,
        const std::shared_ptr<QWebEngineProfile> &profile);
    ~RealPage() override;

    [[nodiscard]] QWidget *widget() const override;
    void load(const QUrl &url) override;
    void loadFile(const QUrl &url, const QString &readAccessDirectory) override;
    void stopLoading() override;
    [[nodiscard]] bool isLoading() const override;
    [[nodiscard]] QUrl url() const override;
    void evaluateJavaScript(const QString &script, EvaluationHandler completion) override;
    void setDrawsBackground(bool draws) override;
    void setIgnoresMouseEvents(bool ignores) override;
    [[nodiscard]] qint64 rendererProcessId() const override;

private:
    std::shared_ptr<WebViewConfiguration> m_configuration;
    WebPageClient &m_client;
    std::shared_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEnginePage> m_page;
    QPointer<QWebEngineView> m_view;
};

} // namespace kx
