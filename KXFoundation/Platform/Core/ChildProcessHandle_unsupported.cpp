// SPDX-License-Identifier: MIT
// For systems without the processes that the library knows how to start: every launch fails.
#include <KXFoundation/Platform/Core/ChildProcessHandle.h>

#include <cerrno>
#include <utility>

namespace kx {

struct ChildProcessHandle::Private { };

ChildProcessHandle::ChildProcessHandle(std::unique_ptr<Private> data)
    : d(std::move(data))
{
}

ChildProcessHandle::~ChildProcessHandle() = default;

std::unique_ptr<ChildProcessHandle> ChildProcessHandle::spawn(const ChildProcessImage &, int &errorNumber)
{
    errorNumber = ENOSYS;
    return nullptr;
}

qint64 ChildProcessHandle::identifier() const
{
    return 0;
}

void ChildProcessHandle::send(Signal) const { }

bool ChildProcessHandle::waitForOutput(QByteArray &)
{
    return false;
}

ChildProcessEnd ChildProcessHandle::reap()
{
    return {};
}

void ChildProcessHandle::readRest(QByteArray &) { }

} // namespace kx
