// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeTask.h>

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <cerrno>

namespace kx {

QWebEngineUrlRequestJob::Error requestErrorFor(const KXError &error)
{
    using Job = QWebEngineUrlRequestJob;
    if (error.domain == URLErrorDomain) {
        switch (error.code) {
        case URLErrorFileDoesNotExist: return Job::UrlNotFound;
        case URLErrorUnsupportedURL: return Job::UrlInvalid;
        case URLErrorCancelled: return Job::RequestAborted;
        case URLErrorNoPermissionsToReadFile: return Job::RequestDenied;
        default: return Job::RequestFailed;
        }
    }
    if (error.domain == POSIXErrorDomain) {
        switch (error.code) {
        case ENOENT: return Job::UrlNotFound;
        case ECANCELED: return Job::RequestAborted;
        case EACCES:
        case EPERM: return Job::RequestDenied;
        default: return Job::RequestFailed;
        }
    }
    return Job::RequestFailed;
}

SchemeTask::SchemeTask(QWebEngineUrlRequestJob &job)
    : m_job(&job)
    , m_url(job.requestUrl())
    , m_method(job.requestMethod())
{
    const QMap<QByteArray, QByteArray> headers = job.requestHeaders();
    for (auto header = headers.cbegin(); header != headers.cend(); ++header)
        m_headers.insert(header.key(), header.value());
}

void SchemeTask::didReceiveResponse(const QByteArray &mimeType)
{
    if (!isOpen() || !m_body.expired())
        return;
    m_mimeType = mimeType;
    // The engine's thread reads the body until the job is destroyed, whatever becomes of the task.
    const auto body = std::make_shared<BodyStream>();
    m_body = body;
    QObject::connect(m_job, &QObject::destroyed, [body] {});
    // Waits for the end of this turn of the event loop: a body that is whole by then is given as such.
    QMetaObject::invokeMethod(
        m_job,
        [task = weak_from_this()] {
            if (const auto self = task.lock())
                self->reply();
        },
        Qt::QueuedConnection);
}

void SchemeTask::didReceiveData(const QByteArray &data)
{
    if (!isOpen())
        return;
    if (m_body.expired())
        didReceiveResponse("application/octet-stream");
    if (const auto body = m_body.lock())
        body->append(data);
}

void SchemeTask::didFinish()
{
    if (!isOpen())
        return;
    if (m_body.expired())
        didReceiveResponse("application/octet-stream");
    const auto body = m_body.lock();
    m_ended = true;
    body->finish();
    if (!m_replied)
        body->setWhole();
    reply();
}

void SchemeTask::didFailWithError(const KXError &error)
{
    if (!isOpen())
        return;
    m_ended = true;
    if (const auto body = m_body.lock(); body && m_replied)
        body->abort();
    m_replied = true;
    m_job->fail(requestErrorFor(error));
}

void SchemeTask::reply()
{
    const auto body = m_body.lock();
    if (m_replied || !m_job || !body)
        return;
    m_replied = true;
    m_job->reply(m_mimeType, body.get());
}

} // namespace kx
