// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Terminal.h>

#include <QtCore/QByteArray>

#include <cerrno>

#include <unistd.h>

namespace kx {

bool standardOutputIsTerminal()
{
    const int before = errno; // asking about a plain file sets it
    const bool terminal = ::isatty(STDOUT_FILENO) == 1;
    errno = before;
    return terminal;
}

void writeLineToStandardError(QStringView line)
{
    QByteArray bytes = line.toUtf8();
    bytes += '\n';
    QByteArrayView rest = bytes;
    while (!rest.isEmpty()) {
        const ssize_t written = ::write(STDERR_FILENO, rest.data(), size_t(rest.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        rest = rest.sliced(written);
    }
}

} // namespace kx
