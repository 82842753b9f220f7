// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QtGlobal>

namespace kx {

/// A number that changes when the C library takes up another local time zone. Costs a few loads: for caches of local
/// time. A change of the environment variable TZ alone counts once something has read the local time (or called tzset).
[[nodiscard]] quint64 timeZoneMark();

} // namespace kx
