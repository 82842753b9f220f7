// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QUrl>

#include <memory>

namespace kx {

/// One request for a custom URL scheme, waiting for its answer. Main thread only.
///
/// Answer it with didReceiveResponse(), any number of didReceiveData() and one didFinish(), or with didFailWithError()
/// at any point; now or later, as long as the task is not stopped. Calls on a finished, failed or stopped task do
/// nothing, and a task may be kept after its page is gone. One that is never answered keeps its page waiting.
///
/// The engine takes the body and its media type only: a status and headers cannot be answered, and the body of a
/// request cannot be read. An answer that is complete before control returns to the event loop has a length and can be
/// read in ranges, as seeking in a media element needs; any other is a stream. Data waits in memory, not copied, until
/// the engine has taken it.
class KX_WEB_EXPORT URLSchemeTask {
public:
    virtual ~URLSchemeTask();

    /// With the fragment, if the page gave one.
    [[nodiscard]] virtual QUrl url() const = 0;
    [[nodiscard]] virtual QByteArray method() const = 0;
    /// Request headers by name, as far as the engine tells them.
    [[nodiscard]] virtual QHash<QByteArray, QByteArray> headers() const = 0;
    /// Whether the engine gave the request up before it was answered.
    [[nodiscard]] virtual bool isStopped() const = 0;

    /// `mimeType` is a media type such as "text/html"; a parameter such as ";charset=utf-8" may follow. A second
    /// response is ignored. Data without a response before it is "application/octet-stream".
    virtual void didReceiveResponse(const QByteArray &mimeType) = 0;
    virtual void didReceiveData(const QByteArray &data) = 0;
    virtual void didFinish() = 0;
    /// The page sees a network error; data that it did not get yet is dropped.
    virtual void didFailWithError(const KXError &error) = 0;
};

using URLSchemeTaskPtr = std::shared_ptr<URLSchemeTask>;

/// Serves the requests of a scheme. Both operations run on the main thread, and the handler dies there: after that,
/// requests for its scheme fail.
class KX_WEB_EXPORT URLSchemeHandler {
public:
    URLSchemeHandler();
    virtual ~URLSchemeHandler();
    Q_DISABLE_COPY_MOVE(URLSchemeHandler)

    virtual void startURLSchemeTask(const URLSchemeTaskPtr &task) = 0;
    /// The engine gave up an unfinished task: nobody waits for its answer any more.
    virtual void stopURLSchemeTask(const URLSchemeTaskPtr &task) = 0;

    /// Expires when the handler is destroyed; does not keep it alive.
    [[nodiscard]] std::weak_ptr<URLSchemeHandler> weakReference() const { return m_self; }

private:
    std::shared_ptr<URLSchemeHandler> m_self;
};

} // namespace kx
