// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

class KXAsyncTask;

/// One run of ffmpeg in the background. Deleting it ends the program.
class FfmpegRun : public QObject {
    Q_OBJECT
public:
    /// Called on a thread of the run's own when ffmpeg has done its work, before ended(): for what takes its time.
    using Work = std::function<void()>;

    /// What ffmpeg is to do, without the options that keep it quiet.
    explicit FfmpegRun(const QStringList &arguments, QObject *parent = nullptr);
    ~FfmpegRun() override;

    /// The path of the program; null where it is not installed.
    [[nodiscard]] static QString program();
    void start(const Work &afterwards = {});

Q_SIGNALS:
    /// On the main thread, once, never from within start().
    void ended(bool succeeded);

private:
    void finish(bool succeeded);

    std::shared_ptr<KXAsyncTask> m_task;
};
