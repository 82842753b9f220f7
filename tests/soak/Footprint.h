// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

/// What this process holds at a moment.
struct Footprint {
    double minutes = 0; ///< Since the start.
    int rounds = 0; ///< Done by then.
    double heap = 0; ///< MiB in use, of what malloc() gives.
    double memory = 0; ///< MiB that the process alone holds, the engine's memory in it included.
    int descriptors = 0;
    int threads = 0;
    int processes = 0; ///< Child processes, the engine's included, and theirs.

    static Footprint now();
};

/// The samples as a Markdown table.
[[nodiscard]] QString table(const QList<Footprint> &samples);

/// Compares the medians of the first and the last third of the samples. What grew beyond what noise explains, one line
/// each; empty when everything is flat.
[[nodiscard]] QStringList growth(const QList<Footprint> &samples);
