// SPDX-License-Identifier: MIT
// The same program on bare QtCore.
#include "PeakMemory.h"

#include <QtCore/QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const bool empty = QStringLiteral("%1 %2").arg(QStringLiteral("argument")).arg(argc).isEmpty();
    printPeakMemoryIfAsked(argc, argv);
    return empty ? 1 : 0;
}
