// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/SystemVersion.h>

#include <mutex>

namespace kx {

namespace {

std::mutex mutex;
SystemVersion version{11, 0, 0};

} // namespace

SystemVersion systemVersion()
{
    const std::scoped_lock lock(mutex);
    return version;
}

void setSystemVersion(SystemVersion other)
{
    const std::scoped_lock lock(mutex);
    version = other;
}

} // namespace kx
