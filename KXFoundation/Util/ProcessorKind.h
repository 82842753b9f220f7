// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

namespace kx {

/// "3" for a processor that calls itself one of Intel's, "4" for all others, also for one without a name.
[[nodiscard]] inline QString processorKind(QStringView brandText)
{
    return brandText.contains(u"Intel") ? QStringLiteral("3") : QStringLiteral("4");
}

} // namespace kx
