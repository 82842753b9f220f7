// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/ChildProcess.h>

#include <KXFoundation/Platform/Core/ChildOutput.h>
#include <KXFoundation/Platform/Core/ChildProcessHandle.h>
#include <KXFoundation/Platform/Core/FileTree.h>
#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/Core/Threads.h>

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <algorithm>
#include <cerrno>
#include <semaphore>
#include <system_error>
#include <thread>
#include <utility>

namespace kx {

namespace {

constexpr int fileNoSuchFile = 4; // of kx::CocoaErrorDomain

QString lastPathComponent(const QString &path)
{
    const QString name = withoutTrailingSlashes(path);
    return name.size() > 1 ? name.sliced(name.lastIndexOf(u'/') + 1) : name;
}

ChildProcessImage imageOf(
    const QString &path, const QStringList &arguments, const std::optional<ChildProcess::Environment> &environment)
{
    ChildProcessImage image{QFile::encodeName(path), {}, {}};
    for (const QString &argument : arguments)
        image.arguments.append(argument.toLocal8Bit());
    if (environment) {
        image.environment.emplace();
        for (const auto &[name, value] : environment->asKeyValueRange())
            image.environment->append(QString(name % u'=' % value).toLocal8Bit());
    }
    return image;
}

bool hasNul(const ChildProcessImage &image)
{
    const auto contains = [](const QByteArray &text) { return text.contains('\0'); };
    return contains(image.path) || std::any_of(image.arguments.cbegin(), image.arguments.cend(), contains)
        || (image.environment && std::any_of(image.environment->cbegin(), image.environment->cend(), contains));
}

} // namespace

// What the launching thread tells the watching one, which is made first: without it there must be no child.
struct ChildProcess::Start {
    std::unique_ptr<ChildProcessHandle> handle; // null: nothing to watch
    std::binary_semaphore known{0};
};

ChildProcess::ChildProcess() = default;

ChildProcess::~ChildProcess() = default;

std::shared_ptr<ChildProcess> ChildProcess::create()
{
    return std::shared_ptr<ChildProcess>(new ChildProcess);
}

void ChildProcess::setExecutableURL(const QUrl &url)
{
    const QString path = url.toLocalFile();
    setLaunchPath(path.isEmpty() ? path : QDir::current().absoluteFilePath(path));
}

void ChildProcess::setLaunchPath(const QString &path)
{
    const std::scoped_lock lock(m_mutex);
    if (m_identifier == 0)
        m_launchPath = path;
}

QString ChildProcess::launchPath() const
{
    const std::scoped_lock lock(m_mutex);
    return m_launchPath;
}

void ChildProcess::setArguments(const QStringList &arguments)
{
    const std::scoped_lock lock(m_mutex);
    if (m_identifier == 0)
        m_arguments = arguments;
}

void ChildProcess::setEnvironment(const std::optional<Environment> &environment)
{
    const std::scoped_lock lock(m_mutex);
    if (m_identifier == 0)
        m_environment = environment;
}

void ChildProcess::setOutput(const std::shared_ptr<ChildOutput> &output)
{
    const std::scoped_lock lock(m_mutex);
    if (m_identifier == 0)
        m_output = output;
}

std::shared_ptr<ChildOutput> ChildProcess::output() const
{
    const std::scoped_lock lock(m_mutex);
    return m_output;
}

void ChildProcess::setTerminationHandler(TerminationHandler handler)
{
    const std::scoped_lock lock(m_mutex);
    if (m_identifier == 0)
        m_handler.swap(handler); // the old one dies after the lock was given back
}

std::optional<KXError> ChildProcess::launch()
{
    const std::scoped_lock lock(m_mutex);
    if (m_identifier != 0)
        return KXError::fromErrno(EALREADY);
    const ChildProcessImage image = imageOf(m_launchPath, m_arguments, m_environment);
    if (hasNul(image))
        return KXError::fromErrno(EINVAL);

    const auto start = std::make_shared<Start>();
    try {
        const SignalsBlocked blocked; // inherited by the thread: the host's handlers run in the host's threads
        std::thread([self = shared_from_this(), start] { self->watch(*start); }).detach();
    } catch (const std::system_error &) {
        return KXError::fromErrno(EAGAIN);
    }
    int errorNumber = 0;
    start->handle = ChildProcessHandle::spawn(image, errorNumber);
    if (start->handle) {
        m_running = start->handle.get();
        m_identifier = m_running->identifier();
    }
    start->known.release();
    if (errorNumber == 0)
        return std::nullopt;
    // A script whose interpreter is missing is there itself.
    if (errorNumber == ENOENT && !fileExists(m_launchPath))
        return errorOfMissingFile(m_launchPath);
    return KXError::fromErrno(errorNumber);
}

void ChildProcess::watch(Start &start)
{
    start.known.acquire();
    std::unique_ptr<ChildProcessHandle> handle = std::move(start.handle);
    if (!handle)
        return;
    const std::shared_ptr<ChildOutput> output = this->output(); // there is a child: neither changes any more
    QByteArray bytes;
    const auto pass = [&] { output ? output->append(bytes) : bytes.resize(0); };
    while (handle->waitForOutput(bytes))
        pass();

    TerminationHandler handler;
    {
        const std::scoped_lock lock(m_mutex);
        m_running = nullptr; // before the number may become another process's
        const ChildProcessEnd end = handle->reap();
        m_status = end.status;
        m_reason = end.signalled ? TerminationReason::UncaughtSignal : TerminationReason::Exit;
        handler.swap(m_handler);
    }
    handle->readRest(bytes);
    pass();
    handle.reset(); // a handler may take its time, the descriptors need not
    if (handler)
        handler(shared_from_this());
}

bool ChildProcess::isLaunched() const
{
    return processIdentifier() != 0;
}

bool ChildProcess::isRunning() const
{
    const std::scoped_lock lock(m_mutex);
    return m_running;
}

qint64 ChildProcess::processIdentifier() const
{
    const std::scoped_lock lock(m_mutex);
    return m_identifier;
}

void ChildProcess::interrupt()
{
    const std::scoped_lock lock(m_mutex);
    if (m_running)
        m_running->send(ChildProcessHandle::Signal::Interrupt);
}

void ChildProcess::terminate()
{
    const std::scoped_lock lock(m_mutex);
    if (m_running)
        m_running->send(ChildProcessHandle::Signal::Terminate);
}

int ChildProcess::terminationStatus() const
{
    const std::scoped_lock lock(m_mutex);
    return m_status;
}

ChildProcess::TerminationReason ChildProcess::terminationReason() const
{
    const std::scoped_lock lock(m_mutex);
    return m_reason;
}

KXError ChildProcess::errorOfMissingFile(const QString &path)
{
    return {CocoaErrorDomain, fileNoSuchFile, format(u"The file “%@” doesn’t exist.", lastPathComponent(path)),
        {{FilePathKey, path}}};
}

} // namespace kx
