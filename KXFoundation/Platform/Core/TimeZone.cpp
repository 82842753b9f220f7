// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/TimeZone.h>

#include <atomic>
#include <ctime>

namespace kx {

quint64 timeZoneMark()
{
    // The C library writes these without telling anyone; a torn or stale view only costs or saves one look at the
    // calendar.
    const auto load = [](auto &variable) { return quint64(std::atomic_ref(variable).load(std::memory_order_relaxed)); };
    const auto address = [](char *&name) {
        return quint64(reinterpret_cast<quintptr>(std::atomic_ref(name).load(std::memory_order_relaxed)));
    };
    constexpr quint64 spread = 0x9E3779B97F4A7C15; // golden ratio: keeps the four parts from cancelling out
    quint64 mark = load(::timezone);
    mark = mark * spread + load(::daylight);
    mark = mark * spread + address(::tzname[0]);
    return mark * spread + address(::tzname[1]);
}

} // namespace kx
