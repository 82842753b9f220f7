// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/QtWebEngine/BodyStream.h>
#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtCore/QPointer>
#include <QtWebEngineCore/QWebEngineUrlRequestJob>

namespace kx {

/// How the engine is told about a failure; the page sees it as a network error of that kind.
[[nodiscard]] QWebEngineUrlRequestJob::Error requestErrorFor(const KXError &error);

/// A request job of the engine as a task. The engine owns the job and destroys it after its answer was passed on, or
/// when it gives the request up; the task may live on and then does nothing.
class SchemeTask final : public URLSchemeTask, public std::enable_shared_from_this<SchemeTask> {
public:
    explicit SchemeTask(QWebEngineUrlRequestJob &job);

    [[nodiscard]] QUrl url() const override { return m_url; }
    [[nodiscard]] QByteArray method() const override { return m_method; }
    [[nodiscard]] QHash<QByteArray, QByteArray> headers() const override { return m_headers; }
    [[nodiscard]] bool isStopped() const override { return !m_ended && !m_job; }

    void didReceiveResponse(const QByteArray &mimeType) override;
    void didReceiveData(const QByteArray &data) override;
    void didFinish() override;
    void didFailWithError(const KXError &error) override;

private:
    [[nodiscard]] bool isOpen() const { return !m_ended && m_job; }
    void reply();

    QPointer<QWebEngineUrlRequestJob> m_job;
    QUrl m_url;
    QByteArray m_method;
    QHash<QByteArray, QByteArray> m_headers;
    QByteArray m_mimeType;
    std::weak_ptr<BodyStream> m_body; ///< Lives as long as the job; made by the response.
    bool m_replied = false; ///< The engine has the body's device.
    bool m_ended = false; ///< Finished or failed by us.
};

} // namespace kx
