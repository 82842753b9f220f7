// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstring>

/// With the argument "memory" a start program prints its peak resident memory in KiB. (The parent cannot tell it: what
/// the kernel reports for a child begins at the parent's own size.)
inline void printPeakMemoryIfAsked(int argc, char **argv)
{
    if (argc < 2 || std::strcmp(argv[1], "memory") != 0)
        return;
    std::FILE *status = std::fopen("/proc/self/status", "r");
    char line[256];
    long kibibytes = 0;
    while (status && std::fgets(line, sizeof line, status)) {
        if (std::sscanf(line, "VmHWM: %ld", &kibibytes) == 1)
            std::printf("%ld\n", kibibytes);
    }
    if (status)
        std::fclose(status);
}
