// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QTemporaryDir>

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int linesPerSync = 50;
constexpr int callsPerSample = 10000;
constexpr int durableLinesPerSample = 1000;
constexpr double half = 0.5;
constexpr double ninetyNineOfHundred = 0.99;

double nanoseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::nano>(time).count();
}

// Times each call by itself, one right behind the other, and returns the percentile in nanoseconds.
template <class Call> double percentileOfCalls(double part, const Call &call)
{
    std::vector<double> samples(callsPerSample);
    for (int i = 0; i < callsPerSample; ++i) {
        const Clock::time_point start = Clock::now();
        call(i);
        samples[std::size_t(i)] = nanoseconds(Clock::now() - start);
    }
    const auto at = samples.begin() + std::ptrdiff_t(part * (callsPerSample - 1));
    std::nth_element(samples.begin(), at, samples.end());
    return *at;
}

// One logger on its own directory, its file already made.
class Ours {
public:
    Ours()
    {
        m_logger.setLogBaseDirectory(m_directory.path());
        m_logger.save();
    }
    void call(int i) { m_logger.writeLogFormat(2, "wk", "clip %d of %s loaded in %.1f ms", i, "playlist", 12.5); }
    void save() { m_logger.save(); }

private:
    QTemporaryDir m_directory;
    KXLogger m_logger;
};

// The same line and pattern; with `syncEvery` that many lines go to the disk together.
class Spdlog {
public:
    explicit Spdlog(int syncEvery)
        : m_syncEvery(syncEvery)
    {
        const std::string path = m_directory.filePath(QStringLiteral("peer.log")).toStdString();
        m_logger = std::make_shared<spdlog::logger>("wk", std::make_shared<spdlog::sinks::basic_file_sink_mt>(path));
        m_logger->set_pattern("[%m-%d %H:%M:%S] [%n] %v");
        m_descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    }
    ~Spdlog() { ::close(m_descriptor); }
    void call(int i)
    {
        m_logger->info("clip {} of {} loaded in {:.1f} ms", i, "playlist", 12.5);
        if (m_syncEvery != 0 && i % m_syncEvery == m_syncEvery - 1) {
            m_logger->flush();
            ::fdatasync(m_descriptor);
        }
    }

private:
    QTemporaryDir m_directory;
    std::shared_ptr<spdlog::logger> m_logger;
    int m_descriptor = -1;
    int m_syncEvery;
};

double ourCall(double part)
{
    Ours log;
    const double result = percentileOfCalls(part, [&](int i) { log.call(i); });
    log.save(); // the other side shall not run beside our writing
    return result;
}

double spdlogCall(double part, int syncEvery)
{
    Spdlog log(syncEvery);
    return percentileOfCalls(part, [&](int i) { log.call(i); });
}

double ourDurableLine()
{
    Ours log;
    const Clock::time_point start = Clock::now();
    for (int i = 1; i < durableLinesPerSample; ++i) // the mark of save() is the last line
        log.call(i);
    log.save();
    return nanoseconds(Clock::now() - start) / durableLinesPerSample / 1000;
}

double bareDurableLine()
{
    const QTemporaryDir directory;
    const std::string path = directory.filePath(QStringLiteral("bare.log")).toStdString();
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    const std::string line = "[03-07 09:15:02] [wk] clip 500 of playlist loaded in 12.5 ms\n";
    ::fdatasync(file);
    bool complete = file >= 0;
    const Clock::time_point start = Clock::now();
    for (int i = 1; i <= durableLinesPerSample; ++i) {
        complete = ::write(file, line.data(), line.size()) == ssize_t(line.size()) && complete;
        if (i % linesPerSync == 0)
            ::fdatasync(file);
    }
    const double result = nanoseconds(Clock::now() - start) / durableLinesPerSample / 1000;
    ::close(file);
    return complete ? result : std::numeric_limits<double>::quiet_NaN();
}

const bool registered =
    kx::bench::measured(
        {"log.call.p50", "ns", 0.6, "20 ns timer"}, [] { return ourCall(half); }, [] { return spdlogCall(half, 0); })
    && kx::bench::measured(
        {"log.call.p99", "ns", 0.05, "no disk wait"}, [] { return ourCall(ninetyNineOfHundred); },
        [] { return spdlogCall(ninetyNineOfHundred, linesPerSync); })
    && kx::bench::measured({"log.durable", "us", 1.05, "that loop"}, ourDurableLine, bareDurableLine);

} // namespace
