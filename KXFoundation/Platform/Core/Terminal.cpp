// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Terminal.h>

#include <KXFoundation/Platform/Core/Descriptor.h>

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
    writeAll(STDERR_FILENO, bytes);
}

} // namespace kx
