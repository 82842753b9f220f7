// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeHandler.h>

#include <KXFoundation/Platform/Web/QtWebEngine/SchemeTask.h>

namespace kx {

SchemeHandler::SchemeHandler(const URLSchemeHandler &handler, QObject *parent)
    : QWebEngineUrlSchemeHandler(parent)
    , m_handler(handler.weakReference())
{
}

void SchemeHandler::requestStarted(QWebEngineUrlRequestJob *job)
{
    const auto handler = m_handler.lock();
    if (!handler) {
        job->fail(QWebEngineUrlRequestJob::RequestFailed);
        return;
    }
    const auto task = std::make_shared<SchemeTask>(*job);
    // Without a context object: the end of this handler (its profile goes) must not hide the end of the job. The
    // connection also keeps the task alive while the engine waits for its answer.
    connect(job, &QObject::destroyed, [task, weakHandler = m_handler] {
        // The engine destroys the job after a complete answer too; only an unfinished task was given up.
        const auto receiver = weakHandler.lock();
        if (receiver && task->isStopped())
            receiver->stopURLSchemeTask(task);
    });
    handler->startURLSchemeTask(task);
}

} // namespace kx
