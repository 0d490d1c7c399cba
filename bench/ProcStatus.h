#pragma once

#include <cstdio>
#include <cstring>
#include <ctime>

namespace rk31::bench {

// A "kB" field of /proc/self/status (VmHWM, RssAnon, RssFile, ...); -1 when it is not there.
inline long StatusKb(const char* field) {
    long value = -1;
    if (FILE* status = std::fopen("/proc/self/status", "r")) {
        char line[256];
        const std::size_t length = std::strlen(field);
        while (std::fgets(line, sizeof line, status) != nullptr) {
            if (std::strncmp(line, field, length) == 0 && line[length] == ':') {
                std::sscanf(line + length + 1, "%ld", &value);
                break;
            }
        }
        std::fclose(status);
    }
    return value;
}

// CLOCK_MONOTONIC in nanoseconds: one clock for every process of the machine, so a launcher
// and the program it starts can compare their readings.
inline long long MonotonicNs() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec;
}

// The resident set split by what backs it: heap and other anonymous memory, and mapped files
// (the code of the program and its libraries, font files), as " rss_anon_kb=.. rss_file_kb=..".
inline void PrintResidentSplit() {
    std::printf(" rss_anon_kb=%ld rss_file_kb=%ld", StatusKb("RssAnon"), StatusKb("RssFile"));
}

}  // namespace rk31::bench
