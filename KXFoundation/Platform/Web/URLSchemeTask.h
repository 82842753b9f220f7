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
/// at any point; now or later, as long as the task is not stopped. Calls on a finished or stopped task do nothing.
/// An engine without streaming status and headers passes the body and its media type only.
class KX_WEB_EXPORT URLSchemeTask {
public:
    virtual ~URLSchemeTask();

    [[nodiscard]] virtual QUrl url() const = 0;
    [[nodiscard]] virtual QByteArray method() const = 0;
    /// Request headers by name, as far as the engine tells them.
    [[nodiscard]] virtual QHash<QByteArray, QByteArray> headers() const = 0;
    /// Whether the engine gave the request up before it was answered.
    [[nodiscard]] virtual bool isStopped() const = 0;

    /// `mimeType` is a media type such as "text/html"; a parameter such as ";charset=utf-8" may follow.
    virtual void didReceiveResponse(const QByteArray &mimeType) = 0;
    virtual void didReceiveData(const QByteArray &data) = 0;
    virtual void didFinish() = 0;
    virtual void didFailWithError(const KXError &error) = 0;
};

using URLSchemeTaskPtr = std::shared_ptr<URLSchemeTask>;

/// Serves the requests of a scheme. Both operations run on the main thread.
class KX_WEB_EXPORT URLSchemeHandler {
public:
    virtual ~URLSchemeHandler();
    virtual void startURLSchemeTask(const URLSchemeTaskPtr &task) = 0;
    /// The engine gave up an unfinished task: nobody waits for its answer any more.
    virtual void stopURLSchemeTask(const URLSchemeTaskPtr &task) = 0;
};

} // namespace kx
