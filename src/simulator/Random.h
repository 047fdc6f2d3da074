#pragma once

#include <cstdint>
#include <random>

namespace kestrix::simulator {

// The same numbers from the same seed with every standard library (whose own distributions differ).
class Random {
  public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    std::uint8_t byte() { return static_cast<std::uint8_t>(engine_() >> 56U); }
    // In [0, 1).
    double fraction() { return static_cast<double>(engine_() >> 11U) * 0x1.0p-53; }
    // In [-amplitude, amplitude).
    double wobble(double amplitude) { return (2 * fraction() - 1) * amplitude; }

  private:
    std::mt19937_64 engine_;
};

}  // namespace kestrix::simulator
