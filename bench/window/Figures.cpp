#include "bench/window/Figures.h"

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

namespace kestrix::bench {
namespace {

long statusKib(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name)) return std::strtol(line.c_str() + name.size(), nullptr, 10);
    }
    return 0;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

long long nanoseconds(Clock::time_point time) {
    return std::chrono::nanoseconds(time.time_since_epoch()).count();
}

Clock::time_point timeOf(long long nanoseconds) {
    return Clock::time_point(std::chrono::nanoseconds(nanoseconds));
}

long long numberOf(const char* text) {
    return std::strtoll(text, nullptr, 10);
}

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

double percentile(std::vector<double> values, double share) {
    if (values.empty()) return 0;
    const auto rank = static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(values.size())));
    const auto place = values.begin() + std::max<std::ptrdiff_t>(rank - 1, 0);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

double median(std::vector<double> values) {
    return percentile(std::move(values), 0.5);
}

long memoryKib() {
    return statusKib("VmRSS:");
}

long peakMemoryKib() {
    return statusKib("VmHWM:");
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace kestrix::bench
