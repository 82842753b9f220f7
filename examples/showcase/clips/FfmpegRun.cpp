// SPDX-License-Identifier: MIT
#include "FfmpegRun.h"

#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Task/KXAsyncTask.h>

#include <QtCore/QStandardPaths>

FfmpegRun::FfmpegRun(const QStringList &arguments, QObject *parent)
    : QObject(parent)
    , m_task(KXAsyncTask::initWithExecutePath(program()))
{
    // A child has its parent's standard input, which ffmpeg would take for commands.
    m_task->setArguments(
        QStringList{QStringLiteral("-nostdin"), QStringLiteral("-y"), QStringLiteral("-v"), QStringLiteral("error")}
        + arguments);
    m_task->setLogReveiver(
        [](const QString &text) { KXLogger::sharedLogger().writeLogFormat(1, "ffmpeg", "%@", text.trimmed()); });
}

FfmpegRun::~FfmpegRun() = default;

QString FfmpegRun::program()
{
    return QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
}

void FfmpegRun::start(const Work &afterwards)
{
    // The end comes on the task's own thread, when this object may be gone: the proxy finds out on the main thread.
    const auto completion = [proxy = KXRWeakProxy(this), afterwards](const std::shared_ptr<KXAsyncTask> &task) {
        if (!task)
            return; // this object has gone while ffmpeg ran
        const bool succeeded = task->terminationStatus() == 0;
        if (succeeded && afterwards)
            afterwards();
        proxy.post(&FfmpegRun::finish, succeeded);
    };
    if (const std::optional<KXError> error = m_task->execute(completion)) {
        KXLogger::sharedLogger().writeLogFormat(2, "ffmpeg", "not started: %@", error->localizedDescription);
        KXRWeakProxy(this).post(&FfmpegRun::finish, false);
    }
}

void FfmpegRun::finish(bool succeeded)
{
    Q_EMIT ended(succeeded);
}
