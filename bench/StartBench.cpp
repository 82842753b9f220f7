// SPDX-License-Identifier: MIT
// What a host pays to start with the Core library linked, beside a bare QtCore program.
#include "Row.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// One start is at the mercy of the scheduler; a sample is the median of this many.
using Starts = std::array<double, 31>;

double median(Starts starts)
{
    std::nth_element(starts.begin(), starts.begin() + starts.size() / 2, starts.end());
    return starts[starts.size() / 2];
}

double startMilliseconds(const char *program)
{
    Starts starts;
    for (double &start : starts) {
        char *const arguments[] = {const_cast<char *>(program), nullptr};
        const auto begin = std::chrono::steady_clock::now();
        pid_t child = 0;
        int status = 0;
        if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0
            || waitpid(child, &status, 0) != child || status != 0)
            std::abort();
        start = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    }
    return median(starts);
}

double startMebibytes(const char *program)
{
    Starts starts;
    for (double &start : starts) {
        std::FILE *output = popen((std::string(program) + " memory").c_str(), "r");
        double kibibytes = 0;
        if (!output || std::fscanf(output, "%lf", &kibibytes) != 1 || pclose(output) != 0)
            std::abort();
        start = kibibytes / 1024;
    }
    return median(starts);
}

const bool time = kx::bench::measured(
    {"start.core", "ms", 1.1}, [] { return startMilliseconds(KX_START_CORE); },
    [] { return startMilliseconds(KX_START_QT); });
const bool memory = kx::bench::measured(
    {"start.core.rss", "MiB", 1.1}, [] { return startMebibytes(KX_START_CORE); },
    [] { return startMebibytes(KX_START_QT); });

} // namespace
