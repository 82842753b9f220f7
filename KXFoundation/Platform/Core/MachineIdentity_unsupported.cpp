// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/MachineIdentity.h>

namespace kx {

QString hardwareUuid(const QString &)
{
    return {};
}

QString hardwareSerialNumber(const QString &)
{
    return {};
}

QString processorBrand(const QString &)
{
    return {};
}

QString loginName()
{
    return qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME"));
}

} // namespace kx
