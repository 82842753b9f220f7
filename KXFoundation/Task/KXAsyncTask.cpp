// SPDX-License-Identifier: MIT
#include <KXFoundation/Task/KXAsyncTask.h>

#include <KXFoundation/Platform/Core/ChildOutput.h>
#include <KXFoundation/Platform/Core/ChildProcess.h>
#include <KXFoundation/Platform/Core/FileTree.h>
#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/Core/Strings.h>
#include <KXFoundation/Platform/Core/SystemVersion.h>

#include <QtCore/QDir>

#include <cerrno>
#include <utility>

namespace {

constexpr kx::SystemVersion executableUrlVersion{10, 13};
// Deliberate: 113, so that of the systems there are only those from 11 on report a failed launch.
constexpr kx::SystemVersion reportingLaunchVersion{10, 113};

// Absolute from now on, and with a single slash in front: behind two, a URL has the name of a host.
QUrl fileUrlOf(const QString &path)
{
    if (path.isEmpty())
        return {};
    QString absolute = path.startsWith(u'/') ? path : kx::childPath(QDir::currentPath(), path);
    while (absolute.startsWith(u"//"))
        absolute.remove(0, 1);
    return QUrl::fromLocalFile(absolute);
}

} // namespace

std::shared_ptr<KXAsyncTask> KXAsyncTask::initWithExecutePath(const QString &path)
{
    return std::shared_ptr<KXAsyncTask>(new KXAsyncTask(path));
}

KXAsyncTask::KXAsyncTask(QString path)
    : m_executePath(std::move(path))
    , m_task(kx::ChildProcess::create())
{
    passOnExecutePath();
}

KXAsyncTask::~KXAsyncTask()
{
    terminate();
    if (m_output) {
        m_output->stopNotifying();
        m_output->discard(); // a child that does not obey may go on for long
    }
}

std::shared_ptr<kx::ChildProcess> KXAsyncTask::task() const
{
    const std::scoped_lock lock(m_mutex);
    return m_task;
}

void KXAsyncTask::setTask(const std::shared_ptr<kx::ChildProcess> &task)
{
    std::shared_ptr<kx::ChildProcess> before = task; // the old one dies after the lock was given back
    const std::scoped_lock lock(m_mutex);
    m_task.swap(before);
}

void KXAsyncTask::setExecutePath(const QString &path)
{
    m_executePath = path;
    passOnExecutePath();
}

void KXAsyncTask::passOnExecutePath()
{
    const std::shared_ptr<kx::ChildProcess> process = task();
    if (!process)
        return;
    if (kx::systemVersion() >= executableUrlVersion)
        process->setExecutableURL(fileUrlOf(m_executePath));
    else
        process->setLaunchPath(m_executePath);
}

void KXAsyncTask::setArguments(const QStringList &arguments)
{
    m_arguments = arguments;
    if (const std::shared_ptr<kx::ChildProcess> process = task())
        process->setArguments(arguments);
}

void KXAsyncTask::setEnvironment(const std::optional<Environment> &environment)
{
    m_environment = environment;
    if (const std::shared_ptr<kx::ChildProcess> process = task())
        process->setEnvironment(environment);
}

KXAsyncTask::LogReveiver KXAsyncTask::logReveiver() const
{
    const std::scoped_lock lock(m_mutex);
    return m_logReveiver;
}

void KXAsyncTask::setLogReveiver(LogReveiver receiver)
{
    const std::scoped_lock lock(m_mutex);
    m_logReveiver.swap(receiver); // the old one dies after the lock was given back
}

std::optional<KXError> KXAsyncTask::execute(Completion completion)
{
    const std::shared_ptr<kx::ChildProcess> process = task();
    if (!process)
        return std::nullopt;
    if (process->isLaunched())
        return KXError::fromErrno(EALREADY);

    m_output = kx::ChildOutput::create();
    process->setOutput(m_output);
    if (m_realTimeLog)
        listen(m_output);
    process->setTerminationHandler(
        [weak = weak_from_this(), completion = std::move(completion)](const std::shared_ptr<kx::ChildProcess> &ended) {
            const std::shared_ptr<KXAsyncTask> self = weak.lock();
            if (self)
                self->finish(*ended);
            if (completion)
                completion(self);
        });
    std::optional<KXError> error = launch(*process);
    if (!process->isLaunched())
        process->setTerminationHandler({}); // nobody will call it; it may refer to this object
    return error;
}

std::optional<KXError> KXAsyncTask::launch(kx::ChildProcess &process)
{
    if (kx::systemVersion() >= reportingLaunchVersion)
        return process.launch();
    const QString path = process.launchPath();
    if (!kx::fileExists(path))
        return kx::ChildProcess::errorOfMissingFile(path);
    const std::optional<KXError> unreported = process.launch();
    return std::nullopt;
}

bool KXAsyncTask::isRunning() const
{
    const std::shared_ptr<kx::ChildProcess> process = task();
    return process && process->isRunning();
}

void KXAsyncTask::terminate()
{
    const std::shared_ptr<kx::ChildProcess> process = task();
    if (!process || !process->isRunning())
        return;
    process->interrupt();
    process->terminate();
}

void KXAsyncTask::listen(const std::shared_ptr<kx::ChildOutput> &output)
{
    output->notifyOnce([weak = weak_from_this(), listened = std::weak_ptr(output)] {
        const std::shared_ptr<kx::ChildOutput> ready = listened.lock();
        if (const std::shared_ptr<KXAsyncTask> self = weak.lock(); self && ready)
            self->onReceivedLog(ready);
    });
}

void KXAsyncTask::onReceivedLog(const std::shared_ptr<kx::ChildOutput> &output)
{
    sendPiece(*output);
    listen(output);
}

void KXAsyncTask::sendPiece(kx::ChildOutput &output) const
{
    const QByteArray piece = output.availableData();
    if (logReveiver()) // else, decoding may be much work for nothing
        _sendLog(kx::decodeUtf8(piece).value_or(QString()));
}

void KXAsyncTask::_sendLog(const QString &log) const
{
    const LogReveiver receiver = logReveiver();
    if (receiver && !log.isEmpty())
        receiver(log);
}

void KXAsyncTask::finish(kx::ChildProcess &process)
{
    const std::shared_ptr<kx::ChildOutput> output = process.output();
    output->stopNotifying();
    sendPiece(*output);
    const int status = process.terminationStatus();
    _sendLog(kx::format(u"terminationStatus:%d", status)
        + kx::format(u"terminationReason:%ld", int(process.terminationReason())));
    m_terminationStatus = status;
    setTask(nullptr);
}
