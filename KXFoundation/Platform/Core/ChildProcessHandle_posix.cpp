// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/ChildProcessHandle.h>

#include <KXFoundation/Platform/Core/Descriptor.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kx {

namespace {

constexpr qsizetype smallRead = qsizetype(64) * 1024; // what a pipe holds unless asked for more
constexpr qsizetype largeRead = qsizetype(1024) * 1024; // the most that the system allows everybody
// How often a child whose output is open is asked whether it has ended, where the system cannot tell by itself.
constexpr int askInterval = 20; // milliseconds

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

// Both ends are closed in whatever else this process starts at the same time.
std::optional<Pipe> openPipe()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    if (::fcntl(pipe.reading.number(), F_SETFL, O_NONBLOCK) != 0) // the child's end stays as programs expect it
        return std::nullopt;
    return pipe;
}

std::vector<char *> pointers(const QList<QByteArray> &texts)
{
    std::vector<char *> list;
    list.reserve(size_t(texts.size()) + 1);
    for (const QByteArray &text : texts)
        list.push_back(const_cast<char *>(text.constData())); // the system only reads them
    list.push_back(nullptr);
    return list;
}

// posix_spawn's two descriptions, made so that the child starts like one of a shell.
class SpawnPlan {
public:
    explicit SpawnPlan(int output)
    {
        keep(::posix_spawnattr_init(&m_attributes));
        keep(::posix_spawn_file_actions_init(&m_actions));
        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        keep(::posix_spawnattr_setsigmask(&m_attributes, &none));
        keep(::posix_spawnattr_setsigdefault(&m_attributes, &all));
        keep(::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
        keep(::posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO));
        keep(::posix_spawn_file_actions_adddup2(&m_actions, output, STDERR_FILENO));
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
        // What the host has left open for its children is not meant for this one.
        keep(::posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1));
#endif
    }
    ~SpawnPlan()
    {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    Q_DISABLE_COPY_MOVE(SpawnPlan)

    int run(pid_t &child, const ChildProcessImage &image) const
    {
        if (m_error != 0)
            return m_error;
        const std::vector<char *> arguments = pointers(QList<QByteArray>{image.path} + image.arguments);
        const std::vector<char *> variables = image.environment ? pointers(*image.environment) : std::vector<char *>();
        return ::posix_spawn(&child, image.path.constData(), &m_actions, &m_attributes, arguments.data(),
            image.environment ? variables.data() : environ);
    }

private:
    void keep(int error)
    {
        if (m_error == 0)
            m_error = error;
    }

    posix_spawnattr_t m_attributes;
    posix_spawn_file_actions_t m_actions;
    int m_error = 0;
};

// Becomes readable when the child ends. Closed where the system has no such thing.
Descriptor openProcess(pid_t child)
{
#ifdef SYS_pidfd_open
    return Descriptor(int(::syscall(SYS_pidfd_open, child, 0)));
#else
    Q_UNUSED(child)
    return Descriptor();
#endif
}

// True when the child has ended, or is no longer ours to ask about. With WNOHANG in `options` it does not wait.
bool hasEnded(pid_t child, int options)
{
    siginfo_t info{};
    const int result = uninterrupted([&] { return ::waitid(P_PID, id_t(child), &info, WEXITED | WNOWAIT | options); });
    return result < 0 || info.si_pid == child;
}

} // namespace

struct ChildProcessHandle::Private {
    pid_t child;
    Descriptor output; // closed when all writers have closed theirs
    Descriptor process;
    qsizetype readSize = smallRead;
    bool widened = false;

    // What one read gives, at most `limit` bytes.
    void read(QByteArray &buffer, qsizetype limit)
    {
        buffer.resize(limit);
        const ssize_t length = uninterrupted([&] { return ::read(output.number(), buffer.data(), size_t(limit)); });
        buffer.resize(std::max<ssize_t>(length, 0));
        if (length == 0 || (length < 0 && errno != EAGAIN))
            output.close();
    }

    // The child is faster than we are: gives it more room. Only then, since the system counts each user's pipes.
    void widen()
    {
#ifdef F_SETPIPE_SZ
        if (!std::exchange(widened, true) && ::fcntl(output.number(), F_SETPIPE_SZ, int(largeRead)) > 0)
            readSize = largeRead;
#endif
    }
};

ChildProcessHandle::ChildProcessHandle(std::unique_ptr<Private> data)
    : d(std::move(data))
{
}

ChildProcessHandle::~ChildProcessHandle() = default;

std::unique_ptr<ChildProcessHandle> ChildProcessHandle::spawn(const ChildProcessImage &image, int &errorNumber)
{
    std::optional<Pipe> pipe = openPipe();
    if (!pipe) {
        errorNumber = errno;
        return nullptr;
    }
    const SpawnPlan plan(pipe->writing.number());
    pid_t child = 0;
    errorNumber = plan.run(child, image);
    if (errorNumber != 0)
        return nullptr;
    return std::unique_ptr<ChildProcessHandle>(new ChildProcessHandle(
        std::make_unique<Private>(Private{child, std::move(pipe->reading), openProcess(child)})));
}

qint64 ChildProcessHandle::identifier() const
{
    return d->child;
}

void ChildProcessHandle::send(Signal signal) const
{
    const int number = signal == Signal::Interrupt ? SIGINT : SIGTERM;
#ifdef SYS_pidfd_send_signal
    // Never meets a stranger, even if the host has taken the child's end from the system and the number is used again.
    if (d->process.isOpen()) {
        ::syscall(SYS_pidfd_send_signal, d->process.number(), number, nullptr, 0);
        return;
    }
#endif
    ::kill(d->child, number);
}

bool ChildProcessHandle::waitForOutput(QByteArray &buffer)
{
    while (true) {
        if (!d->output.isOpen() && !d->process.isOpen())
            return !hasEnded(d->child, 0);
        pollfd waits[] = {{d->process.number(), POLLIN, 0}, {d->output.number(), POLLIN, 0}};
        if (::poll(waits, std::size(waits), d->process.isOpen() ? -1 : askInterval) < 0)
            continue;
        if (d->process.isOpen() ? waits[0].revents != 0 : hasEnded(d->child, WNOHANG))
            return false;
        if (waits[1].revents == 0)
            continue;
        d->read(buffer, d->readSize);
        if (buffer.size() == d->readSize)
            d->widen();
        if (!buffer.isEmpty())
            return true;
    }
}

ChildProcessEnd ChildProcessHandle::reap()
{
    int status = 0;
    if (uninterrupted([&] { return ::waitpid(d->child, &status, 0); }) != d->child)
        return {};
    if (WIFSIGNALED(status))
        return {true, WTERMSIG(status)};
    return {false, WEXITSTATUS(status)};
}

void ChildProcessHandle::readRest(QByteArray &buffer)
{
    int available = 0;
    if (d->output.isOpen() && ::ioctl(d->output.number(), FIONREAD, &available) == 0 && available > 0)
        d->read(buffer, available);
}

} // namespace kx
