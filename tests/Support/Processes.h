// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>

namespace kx::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool keepsFreedMemory = true; ///< To find uses of it.
#else
inline constexpr bool keepsFreedMemory = false;
#endif

/// Every process that descends from this one and still runs.
[[nodiscard]] QList<qint64> descendants();

/// Memory that this process alone holds, in MiB.
[[nodiscard]] double privateMemory();

} // namespace kx::test
