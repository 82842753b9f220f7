// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace kx {

class ChildOutput;
class ChildProcessHandle;

/// User information of an error: the path of the file that it is about.
inline const QString FilePathKey = QStringLiteral("NSFilePath");

/// One run of an external program: described first, launched once, watched by a thread of its own until it has ended.
/// That thread reads the output as it comes, so that the child never waits for its reader, and keeps this object alive.
/// The child inherits the standard input and the current directory, but no other descriptor; its signals are neither
/// blocked nor ignored.
///
/// Setters do nothing once the child runs or has run. Every member may be called from any thread.
class KX_CORE_EXPORT ChildProcess : public std::enable_shared_from_this<ChildProcess> {
public:
    using Environment = QMap<QString, QString>;
    using TerminationHandler = std::function<void(const std::shared_ptr<ChildProcess> &process)>;

    enum class TerminationReason {
        Exit = 1, ///< The program ended by itself.
        UncaughtSignal = 2,
    };

    [[nodiscard]] static std::shared_ptr<ChildProcess> create();
    ~ChildProcess();
    Q_DISABLE_COPY_MOVE(ChildProcess)

    /// The program as a file; a relative path counts from the present current directory.
    void setExecutableURL(const QUrl &url);
    /// The same as a path; a relative one counts from the directory that is current at the launch. A name without "/"
    /// is such a path, too: nothing is looked up in PATH.
    void setLaunchPath(const QString &path);
    /// Null when there is none.
    [[nodiscard]] QString launchPath() const;

    /// Without the program's name.
    void setArguments(const QStringList &arguments);
    /// None lets the child inherit that of this process; an empty one leaves it without any variable.
    void setEnvironment(const std::optional<Environment> &environment);

    /// Where the child's standard output and standard error go, through one pipe; none drops what they write.
    void setOutput(const std::shared_ptr<ChildOutput> &output);
    [[nodiscard]] std::shared_ptr<ChildOutput> output() const;

    /// Called once, on the watching thread, when the child has ended and everything that was in the pipe at that moment
    /// is in output(). Processes that the child leaves behind are not waited for: they write into a closed pipe from
    /// then on, which by default ends them.
    void setTerminationHandler(TerminationHandler handler);

    /// Starts the child. The result is the failure, if any: errorOfMissingFile() for a program that does not exist,
    /// otherwise the system's, such as EACCES for a file that may not be executed, EINVAL for a text with a NUL
    /// character and EALREADY after a launch that succeeded. After a failure everything is as it was before.
    [[nodiscard]] std::optional<KXError> launch();

    /// True once the child was started, also after its end.
    [[nodiscard]] bool isLaunched() const;
    /// True from the launch until the child has ended.
    [[nodiscard]] bool isRunning() const;
    /// The system's number of the child; 0 before the launch.
    [[nodiscard]] qint64 processIdentifier() const;

    /// Sends the interrupt signal; does nothing when the child does not run.
    void interrupt();
    /// Sends the termination signal; does nothing when the child does not run.
    void terminate();

    /// The exit status, or the number of the signal that ended the child; 0 before its end. -1 if the host took the
    /// status from the system itself, by waiting for every child or by ignoring the signal of their ends.
    [[nodiscard]] int terminationStatus() const;
    /// Exit before the child's end.
    [[nodiscard]] TerminationReason terminationReason() const;

    /// In the domain of file helpers, code 4, with the path under FilePathKey.
    [[nodiscard]] static KXError errorOfMissingFile(const QString &path);

private:
    struct Start;
    ChildProcess();
    void watch(Start &start);

    mutable std::mutex m_mutex; // of everything below
    QString m_launchPath;
    QStringList m_arguments;
    std::optional<Environment> m_environment;
    std::shared_ptr<ChildOutput> m_output;
    TerminationHandler m_handler;
    const ChildProcessHandle *m_running = nullptr; // owned by the watching thread; null when the child does not run
    qint64 m_identifier = 0;
    int m_status = 0;
    TerminationReason m_reason = TerminationReason::Exit;
};

} // namespace kx
