// SPDX-License-Identifier: MIT
#include <KXFoundation/KXFoundationVersion.h>
#include <KXFoundation/Platform/Core/Format.h>

#include <cstdio>
#include <cstring>

int main()
{
    const QString line = kx::format("%@ %.1f", QStringLiteral("core"), KXFoundationVersionNumber);
    std::puts(qPrintable(line));
    return std::strncmp(reinterpret_cast<const char *>(KXFoundationVersionString), "KXFoundation ", 13) == 0 ? 0 : 1;
}
