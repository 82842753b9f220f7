// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <array>

/// A moment on the wall clock of the present time zone.
struct LocalTime {
    int year = 1970, month = 1, dayOfMonth = 1, hour = 0, minute = 0, second = 0;

    [[nodiscard]] static LocalTime now();
    [[nodiscard]] static LocalTime at(qint64 secondsSinceEpoch);

    [[nodiscard]] QString day() const; ///< yyyy-MM-dd
    [[nodiscard]] QString timeOfDay() const; ///< HH-mm-ss
};

/// What every line of one second has in common. Each thread keeps its last one, so that only the first line of a second
/// pays for the calendar and for asking about the terminal.
struct LogStamp {
    qint64 second = -1; ///< since the epoch
    quint64 zone = 0; ///< kx::timeZoneMark() when it was made
    bool terminal = false; ///< standard output is a terminal
    std::array<char16_t, 17> text{}; ///< "[MM-dd HH:mm:ss] "

    /// That of this moment. Valid until the same thread asks again.
    [[nodiscard]] static const LogStamp &now();
};
