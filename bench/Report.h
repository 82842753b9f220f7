// SPDX-License-Identifier: MIT
#pragma once

#include "Row.h"

#include <optional>
#include <string>
#include <vector>

namespace kx::bench {

/// What came out of a row: medians in the row's unit, absent where a side gave nothing.
struct Result {
    Row row;
    std::optional<double> ours;
    std::optional<double> peer;
    std::optional<double> floor;

    [[nodiscard]] std::optional<double> ratio() const;
    [[nodiscard]] bool isOverBudget() const;
};

void printTable(const std::vector<Result> &results);

/// A list of {"name", "ours", "peer", "unit", "ratio", "floor"}. False when the file cannot be written.
bool writeJson(const std::vector<Result> &results, const std::string &path);

/// Replaces what stands in a Markdown page between the lines "<!-- measured -->" and "<!-- /measured -->" by the table
/// and a line on the machine. False when the page has no such place or cannot be written.
bool writePage(const std::vector<Result> &results, const std::string &path);

} // namespace kx::bench
