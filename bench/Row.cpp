// SPDX-License-Identifier: MIT
#include "Row.h"

#include "Report.h"

#include <algorithm>
#include <cstdio>
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

bool runAll(const std::string &namePattern, int repetitions, const std::string &jsonFile, const std::string &page)
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

    std::vector<Result> results;
    bool complete = !collector.failed();
    for (const Entry &entry : chosen) {
        const std::string &name = entry.row.name;
        results.push_back({entry.row, median(samples[name + "/ours"]), median(samples[name + "/peer"]),
            median(samples[name + "/floor"])});
        complete = complete && results.back().ratio();
    }
    printTable(results);
    if (!jsonFile.empty())
        complete = writeJson(results, jsonFile) && complete;
    if (!page.empty())
        complete = writePage(results, page) && complete;
    return complete;
}

} // namespace kx::bench
