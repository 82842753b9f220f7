// SPDX-License-Identifier: MIT
#include "EndSignals.h"

#include <QtCore/QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array endSignals{SIGTERM, SIGINT};
std::array<int, 2> pipeEnds{-1, -1}; // a handler may write into a pipe, and little else

void passOn(int signal)
{
    const int interrupted = errno;
    const auto byte = static_cast<char>(signal);
    const auto written = ::write(pipeEnds[1], &byte, 1);
    static_cast<void>(written); // full of signals already: one is enough
    errno = interrupted;
}

} // namespace

EndSignals::EndSignals()
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("no pipe");
    connect(new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this), &QSocketNotifier::activated, this,
        &EndSignals::read);
    for (const int signal : endSignals)
        std::signal(signal, passOn);
}

EndSignals::~EndSignals()
{
    for (const int signal : endSignals)
        std::signal(signal, SIG_DFL);
    for (const int end : pipeEnds)
        ::close(end);
}

void EndSignals::read()
{
    char signal = 0;
    if (::read(pipeEnds[0], &signal, 1) == 1)
        Q_EMIT arrived(signal == SIGTERM ? u"SIGTERM"_s : u"SIGINT"_s);
}
