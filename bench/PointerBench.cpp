// SPDX-License-Identifier: MIT
// What events of the pointer cost on their way to a view, beside Qt alone with plain widgets. Each side is a program of
// its own: once there are views or windows of the library in an application, every window in it is watched.
#include "Row.h"

#include <cstdio>
#include <cstdlib>

namespace {

using kx::bench::measured;

double microsecondsOf(const char *program)
{
    std::FILE *output = popen(program, "r");
    double microseconds = 0;
    if (!output || std::fscanf(output, "%lf", &microseconds) != 1 || pclose(output) != 0)
        std::abort();
    return microseconds;
}

// A move over 1,000 tracking areas.
const bool track = measured(
    {"track.1000", "us", 1.6}, [] { return microsecondsOf(KX_TRACK_VIEWS); },
    [] { return microsecondsOf(KX_TRACK_QT); });
// An event that a window hands on to its view: a copy, which goes through the application's filters once more.
const bool deliver = measured(
    {"window.deliver", "us", 1.8}, [] { return microsecondsOf(KX_DELIVER_VIEWS); },
    [] { return microsecondsOf(KX_DELIVER_QT); });

} // namespace
