// SPDX-License-Identifier: MIT
#include "Row.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <vector>

namespace kx::bench {

namespace {

struct Entry {
    Row row;
    std::vector<std::pair<std::string, Work>> works; // by side: "ours", "peer", "floor"
    std::vector<std::pair<std::string, Measure>> measures;
    Clock clock = Clock::Cpu;
};

using Samples = std::map<std::string, std::vector<double>>; // by "<row>/<side>", in the row's unit

std::vector<Entry> &entries()
{
    static std::vector<Entry> list;
    return list;
}

double unitsPerSecond(const std::string &unit)
{
    return unit == "ns" ? 1e9 : unit == "us" ? 1e6 : unit == "ms" ? 1e3 : 1;
}

std::optional<double> median(std::vector<double> samples)
{
    if (samples.empty())
        return std::nullopt;
    const auto middle = samples.begin() + std::ptrdiff_t(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

// Collects every repetition of every benchmark.
class Collector : public benchmark::BenchmarkReporter {
public:
    explicit Collector(Samples &samples)
        : m_samples(samples)
    {
    }
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            const std::string name = run.run_name.function_name;
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
                m_failed = true;
                continue;
            }
            if (run.run_type != Run::RT_Iteration)
                continue;
            const auto entry = std::find_if(entries().begin(), entries().end(),
                [&](const Entry &e) { return name.rfind(e.row.name + "/", 0) == 0; });
            const double accumulated =
                entry->clock == Clock::Cpu ? run.cpu_accumulated_time : run.real_accumulated_time;
            m_samples[name].push_back(accumulated / double(run.iterations) * unitsPerSecond(entry->row.unit));
        }
    }
    [[nodiscard]] bool failed() const { return m_failed; }

private:
    Samples &m_samples;
    bool m_failed = false;
};

std::string numberText(std::optional<double> value)
{
    if (!value)
        return "-";
    char text[64];
    const double size = std::fabs(*value);
    std::snprintf(text, sizeof text, size >= 100 ? "%.0f" : size >= 10 ? "%.1f" : size >= 1 ? "%.2f" : "%.3f", *value);
    return text;
}

std::string jsonNumber(std::optional<double> value)
{
    if (!value)
        return "null";
    char text[64];
    std::snprintf(text, sizeof text, "%.6g", *value);
    return text;
}

} // namespace

bool timed(const Row &row, const Work &ours, const Work &peer, const Work &floor, Clock clock)
{
    Entry entry{row, {{"ours", ours}, {"peer", peer}}, {}, clock};
    if (floor)
        entry.works.emplace_back("floor", floor);
    entries().push_back(entry);
    return true;
}

bool measured(const Row &row, const Measure &ours, const Measure &peer, const Measure &floor)
{
    Entry entry{row, {}, {{"ours", ours}, {"peer", peer}}, Clock::Manual};
    if (floor)
        entry.measures.emplace_back("floor", floor);
    entries().push_back(entry);
    return true;
}

bool runAll(const std::string &namePattern, int repetitions, const std::string &jsonFile)
{
    std::vector<Entry> chosen;
    const std::regex pattern(namePattern);
    std::copy_if(entries().begin(), entries().end(), std::back_inserter(chosen),
        [&](const Entry &entry) { return std::regex_search(entry.row.name, pattern); });
    std::sort(chosen.begin(), chosen.end(), [](const Entry &a, const Entry &b) { return a.row.name < b.row.name; });

    Samples samples;
    bool anyTimed = false;
    for (const Entry &entry : chosen) {
        for (const auto &[side, work] : entry.works) {
            anyTimed = true;
            auto *registered = benchmark::RegisterBenchmark((entry.row.name + "/" + side).c_str(), work);
            registered->Repetitions(repetitions)->ReportAggregatesOnly(false);
            if (entry.clock == Clock::Real)
                registered->UseRealTime();
            else if (entry.clock == Clock::Manual)
                registered->UseManualTime();
        }
    }
    Collector collector(samples);
    if (anyTimed)
        benchmark::RunSpecifiedBenchmarks(&collector);
    for (const Entry &entry : chosen) {
        for (int i = 0; i < repetitions && !entry.measures.empty(); ++i) {
            for (const auto &[side, measure] : entry.measures)
                samples[entry.row.name + "/" + side].push_back(measure());
        }
    }

    std::printf("%-24s %6s %10s %10s %7s %10s %7s\n", "name", "unit", "ours", "peer", "ratio", "floor", "budget");
    std::string json;
    bool complete = !collector.failed();
    for (const Entry &entry : chosen) {
        const Row &row = entry.row;
        const std::optional<double> ours = median(samples[row.name + "/ours"]);
        const std::optional<double> peer = median(samples[row.name + "/peer"]);
        const std::optional<double> floor = median(samples[row.name + "/floor"]);
        const std::optional<double> ratio = ours && peer && *peer > 0 ? std::optional(*ours / *peer) : std::nullopt;
        complete = complete && ratio;
        std::printf("%-24s %6s %10s %10s %7s %10s %6sx%s\n", row.name.c_str(), row.unit.c_str(),
            numberText(ours).c_str(), numberText(peer).c_str(), numberText(ratio).c_str(),
            floor || row.floorText.empty() ? numberText(floor).c_str() : row.floorText.c_str(),
            numberText(row.budget).c_str(), ratio && *ratio > row.budget ? "  over budget" : "");
        json += (json.empty() ? "  " : ",\n  ") + (R"({"name": ")" + row.name) + R"(", "ours": )" + jsonNumber(ours)
            + R"(, "peer": )" + jsonNumber(peer) + R"(, "unit": ")" + row.unit + R"(", "ratio": )" + jsonNumber(ratio)
            + R"(, "floor": )" + jsonNumber(floor) + "}";
    }
    if (!jsonFile.empty()) {
        std::ofstream out(jsonFile);
        out << "[\n" << json << "\n]\n";
        complete = complete && out.good();
    }
    return complete;
}

} // namespace kx::bench
