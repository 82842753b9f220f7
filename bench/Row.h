// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <limits>
#include <string>

namespace kx::bench {

/// One row of the budget table: what we promise about the cost of a piece of work beside a peer's cost of the same
/// work.
struct Row {
    std::string name;
    std::string unit; ///< "ns", "us", "ms" or "s" for times; anything for measures.
    double budget; ///< Largest ratio ours / peer that keeps the promise.
    std::string floorText = {}; ///< What bounds the cost from below, where no number is measured for it.
};

using Work = std::function<void(benchmark::State &)>;
using Measure = std::function<double()>;

enum class Clock {
    Cpu, ///< The calling thread's processor time.
    Real, ///< Wall time of the timed loop.
    Manual, ///< What the work hands to State::SetIterationTime, in seconds.
};

/// Registers a timed row. The sides run interleaved in several repetitions, and the medians count. Use it from a static
/// initialiser: `static const bool registered = kx::bench::timed({...}, ours, peer);`
bool timed(const Row &row, const Work &ours, const Work &peer, const Work &floor = {}, Clock clock = Clock::Cpu);

/// Registers a row whose sides return one sample in the row's unit at each call.
bool measured(const Row &row, const Measure &ours, const Measure &peer, const Measure &floor = {});

/// Runs every row whose name matches the pattern, prints the table, writes JSON to `jsonFile` and the table into the
/// Markdown page `page` unless these are empty. Returns false when a row failed to run or a file could not be written.
bool runAll(const std::string &namePattern, int repetitions, const std::string &jsonFile, const std::string &page);

} // namespace kx::bench
