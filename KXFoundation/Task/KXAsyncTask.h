// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace kx {
class ChildOutput;
class ChildProcess;
} // namespace kx

/// Runs one external program, once, without blocking its caller, and hands on what the program prints. Standard output
/// and standard error are one stream here, read as it comes: the child never waits for whoever reads, and what nobody
/// has read yet stands in memory.
///
/// Make it, set arguments(), environment(), realTimeLog() and logReveiver(), then call execute(). Afterwards
/// terminate(), isRunning(), terminationStatus(), task() and logReveiver() may be used from any thread; everything else
/// belongs to one thread. When the last reference goes while the child runs, the child is told to end.
///
/// The receiver gets text, one call at a time and in the order of the stream: live pieces in the event loop of the
/// thread that called execute(), the rest and the status line on a thread of the task's own, which waits for a live
/// call that is still under way. (A receiver that in turn waits for the end of the task would wait forever.) A piece is
/// whatever has arrived since the last one, neither joined nor cut into lines; a piece that is not valid UTF-8 by
/// itself, for instance because it ends inside a character, is dropped.
class KX_CORE_EXPORT KXAsyncTask : public std::enable_shared_from_this<KXAsyncTask> {
public:
    using Environment = QMap<QString, QString>;
    using LogReveiver = std::function<void(const QString &text)>;
    using Completion = std::function<void(const std::shared_ptr<KXAsyncTask> &task)>;

    /// A path, absolute or relative to the current directory; a bare name is not looked up in PATH.
    [[nodiscard]] static std::shared_ptr<KXAsyncTask> initWithExecutePath(const QString &path);
    ~KXAsyncTask();
    Q_DISABLE_COPY_MOVE(KXAsyncTask)

    /// The child process: a fresh one at first, none once it has ended.
    [[nodiscard]] std::shared_ptr<kx::ChildProcess> task() const;
    /// Replaces the child process as it stands; program, arguments and environment are not passed on to the new one.
    void setTask(const std::shared_ptr<kx::ChildProcess> &task);

    [[nodiscard]] QString executePath() const { return m_executePath; }
    /// This setter and the next two pass the value on to the child process at once.
    void setExecutePath(const QString &path);

    /// Without the program's name.
    [[nodiscard]] QStringList arguments() const { return m_arguments; }
    void setArguments(const QStringList &arguments);

    /// None (the default) lets the child inherit this process's environment; an empty one gives it no variable at all.
    [[nodiscard]] std::optional<Environment> environment() const { return m_environment; }
    void setEnvironment(const std::optional<Environment> &environment);

    /// True delivers output while the child runs, provided that the thread which calls execute() runs an event loop;
    /// false (the default) delivers it whole at the end. Counts at the time of execute().
    [[nodiscard]] bool realTimeLog() const { return m_realTimeLog; }
    void setRealTimeLog(bool realTimeLog) { m_realTimeLog = realTimeLog; }

    /// Without one, what would be delivered is dropped.
    [[nodiscard]] LogReveiver logReveiver() const;
    void setLogReveiver(LogReveiver receiver);

    /// The exit status of the child, or the signal's number; 0 until it has ended.
    [[nodiscard]] qint32 terminationStatus() const { return m_terminationStatus; }

    /// Starts the child. Returns why that failed, or none. A failure leaves everything as it was, so that another try
    /// is possible, and drops the completion. Once the child has ended, this does nothing and returns none; while it
    /// runs, an error (EALREADY) and nothing else happens.
    ///
    /// At the end of the child, on the task's own thread, in this order: the receiver gets the rest of the output, then
    /// the line "terminationStatus:%dterminationReason:%ld" (the reason is 1 for an exit, 2 for a signal);
    /// terminationStatus() is set, task() cleared, and the completion called. It gets null if this object is gone by
    /// then. None of this needs an event loop. A process that the child leaves behind delays nothing; what it prints
    /// later is lost.
    ///
    /// Deliberate: on systems before 10.113 a file that exists but cannot be started is not reported.
    std::optional<KXError> execute(Completion completion = {});

    [[nodiscard]] bool isRunning() const;

    /// Sends the child the interrupt signal and at once the termination signal, and does not wait for its end. Does
    /// nothing when it does not run.
    void terminate();

private:
    explicit KXAsyncTask(QString path);
    void passOnExecutePath();
    static std::optional<KXError> launch(kx::ChildProcess &process);
    void onReceivedLog(const std::shared_ptr<kx::ChildOutput> &output);
    void listen(const std::shared_ptr<kx::ChildOutput> &output);
    void sendPiece(kx::ChildOutput &output) const;
    void _sendLog(const QString &log) const;
    void finish(kx::ChildProcess &process);

    QString m_executePath;
    QStringList m_arguments;
    std::optional<Environment> m_environment;
    bool m_realTimeLog = false;
    std::shared_ptr<kx::ChildOutput> m_output; // of the launch
    std::atomic<qint32> m_terminationStatus = 0;

    mutable std::mutex m_mutex; // of what follows
    std::shared_ptr<kx::ChildProcess> m_task;
    LogReveiver m_logReveiver;
};
