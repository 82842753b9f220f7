// SPDX-License-Identifier: MIT
// What a move of the pointer costs over 1,000 tracking areas, beside Qt alone with as many widgets. Each side is a
// program of its own: once there are views in an application, every window in it is watched.
#include "Row.h"

#include <cstdio>
#include <cstdlib>

namespace {

double moveMicroseconds(const char *program)
{
    std::FILE *output = popen(program, "r");
    double microseconds = 0;
    if (!output || std::fscanf(output, "%lf", &microseconds) != 1 || pclose(output) != 0)
        std::abort();
    return microseconds;
}

const bool registered = kx::bench::measured(
    {"track.1000", "us", 1.6}, [] { return moveMicroseconds(KX_TRACK_VIEWS); },
    [] { return moveMicroseconds(KX_TRACK_QT); });

} // namespace
