// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kx::test {

inline constexpr int patience = 20000; // milliseconds; reached only by a failing test

/// A named pipe by which a test and a child wait for each other.
class Gate {
public:
    Gate()
        : m_path(m_directory.filePath(QStringLiteral("gate")))
    {
        if (::mkfifo(QFile::encodeName(m_path).constData(), 0600) != 0)
            qFatal("no named pipe");
        m_pipe = ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CLOEXEC); // both ends: opening never waits
    }
    ~Gate() { ::close(m_pipe); }
    Q_DISABLE_COPY_MOVE(Gate)

    [[nodiscard]] const QString &path() const { return m_path; }
    /// Lets a child that awaits it, or will, go on.
    void open() const
    {
        if (::write(m_pipe, "!", 1) != 1)
            qFatal("the gate is stuck");
    }
    /// Waits for a child to tell; false when none does.
    [[nodiscard]] bool told() const
    {
        pollfd wait{m_pipe, POLLIN, 0};
        char byte = 0;
        return ::poll(&wait, 1, patience) == 1 && ::read(m_pipe, &byte, 1) == 1;
    }

private:
    QTemporaryDir m_directory;
    QString m_path;
    int m_pipe;
};

} // namespace kx::test
