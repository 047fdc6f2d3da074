#pragma once

#include <cstdint>

namespace kestrix::simulator {

enum class MotionKind : std::uint8_t { Still, Settle, Ramp };

// How a negative value shows in the attribute's top bit.
enum class SignRule : std::uint8_t { Plain, Reversed, Unsigned };

// How a reading moves from frame to frame. Values and noise are counted in the reading's last digit.
struct Motion {
    MotionKind kind = MotionKind::Still;
    SignRule sign = SignRule::Plain;
    double from = 0;
    double to = 0;
    double noise = 0;           // amplitude either way
    std::uint64_t frames = 0;   // until `to` is reached
    std::uint64_t elapsed = 0;  // frames that have passed when the step begins
};

// The value, without noise, `frame` frames after the step has begun.
double valueAt(const Motion& motion, std::uint64_t frame) noexcept;

}  // namespace kestrix::simulator
