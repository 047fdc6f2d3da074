#pragma once

#include <chrono>
#include <vector>

namespace kestrix::bench {

using Clock = std::chrono::steady_clock;  // the same in every process

// Nanoseconds of Clock.
long long nanoseconds(Clock::time_point time);
Clock::time_point timeOf(long long nanoseconds);
// Of an argument; 0 when it is none.
long long numberOf(const char* text);

double milliseconds(Clock::duration duration);

// The least value that `share` (0 to 1) of all values do not exceed; 0 without values.
double percentile(std::vector<double> values, double share);
double median(std::vector<double> values);

// Of this process: the memory that it holds and the most that it ever held.
long memoryKib();
long peakMemoryKib();
// Of this process so far, on all cores, in user and kernel mode.
double processorSeconds();

}  // namespace kestrix::bench
