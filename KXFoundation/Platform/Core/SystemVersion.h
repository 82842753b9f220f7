// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <compare>

namespace kx {

/// The release of the application platform whose behaviour a program asks for, major number first.
struct SystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): it takes the defaulted comparison for a null pointer
    friend auto operator<=>(const SystemVersion &, const SystemVersion &) = default;
};

/// 11.0 unless it was set. From any thread.
[[nodiscard]] KX_CORE_EXPORT SystemVersion systemVersion();

/// For hosts, and tests, that want the behaviour for older systems. From any thread; it counts from the next question
/// on.
KX_CORE_EXPORT void setSystemVersion(SystemVersion version);

} // namespace kx
