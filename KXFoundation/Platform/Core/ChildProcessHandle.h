// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <memory>
#include <optional>

namespace kx {

/// What a child process is started with, in the system's own encoding, without NUL characters.
struct ChildProcessImage {
    QByteArray path; ///< Used as it is, also as the child's own name; relative to the current directory.
    QList<QByteArray> arguments; ///< Without the program's name.
    std::optional<QList<QByteArray>> environment; ///< "NAME=value"; none: that of this process.
};

struct ChildProcessEnd {
    bool signalled = false;
    int status = -1; ///< The exit status or the signal's number; -1 when somebody else has taken it from the system.
};

/// A running child process as the system knows it, with the reading end of the one pipe that is its standard output and
/// its standard error. The child gets no other descriptor than the first three, no blocked and no ignored signal.
/// Members are called by one thread at a time; only signals may be sent from others, until reap() is called.
class ChildProcessHandle {
public:
    enum class Signal { Interrupt, Terminate };

    /// Starts the program. The cost does not depend on the memory of this process. Null when that is not possible, with
    /// the errno value in `errorNumber`.
    [[nodiscard]] static std::unique_ptr<ChildProcessHandle> spawn(const ChildProcessImage &image, int &errorNumber);

    /// Gives the reading end back; whoever still writes into the pipe gets what writers into a closed pipe get.
    ~ChildProcessHandle();
    Q_DISABLE_COPY_MOVE(ChildProcessHandle)

    [[nodiscard]] qint64 identifier() const;

    void send(Signal signal) const;

    /// Waits for output and puts what one read gives into the empty `buffer`. False when the child has ended, even if
    /// there is more to read.
    [[nodiscard]] bool waitForOutput(QByteArray &buffer);

    /// Frees the system's record of the child; waits for the child's end if that has not come. Once.
    ChildProcessEnd reap();

    /// Puts what is in the pipe at this moment into the empty `buffer`; does not wait for the pipe's end, which another
    /// process may hold.
    void readRest(QByteArray &buffer);

private:
    struct Private;
    explicit ChildProcessHandle(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace kx
