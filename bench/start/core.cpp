// SPDX-License-Identifier: MIT
// A background program on the Core library: uses it once and ends.
#include "PeakMemory.h"

#include <KXFoundation/Platform/Core/Format.h>

#include <QtCore/QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const bool empty = kx::format("%@ %d", QStringLiteral("argument"), argc).isEmpty();
    printPeakMemoryIfAsked(argc, argv);
    return empty ? 1 : 0;
}
