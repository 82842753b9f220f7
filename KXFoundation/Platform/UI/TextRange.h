// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

namespace kx {

/// The location that stands for "nowhere".
inline constexpr quint64 notFound = 0x7FFFFFFFFFFFFFFF;

/// A stretch of a text, in UTF-16 code units.
struct TextRange {
    quint64 location = 0;
    quint64 length = 0;

    /// Whether the range lies in a text of this length. An empty one may stand at its end.
    [[nodiscard]] constexpr bool isWithin(quint64 textLength) const
    {
        return location <= textLength && length <= textLength - location;
    }

    constexpr bool operator==(const TextRange &other) const = default;
};

} // namespace kx
