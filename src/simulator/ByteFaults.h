#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulator/Random.h"

namespace kestrix::simulator {

enum class DamageKind : std::uint8_t { Flip, Drop, Insert };

// One chosen fault in one frame. A place behind the frame's end is left alone (Insert: appends).
struct Damage {
    DamageKind kind = DamageKind::Flip;
    std::size_t place = 0;   // byte of the frame, from 0
    std::uint8_t value = 0;  // Flip: the bits to turn over; Insert: the byte
};

// Faults by chance: the probability for each byte that is sent.
struct LineNoise {
    double flip = 0;  // one bit of it turned over
    double drop = 0;
    double insert = 0;  // a random byte in front of it

    bool clean() const { return flip <= 0 && drop <= 0 && insert <= 0; }
};

void damage(std::vector<std::uint8_t>& frame, const Damage& fault);

// Appends `bytes` to `out` as they come through a noisy line.
void sendThrough(const LineNoise& line, const std::vector<std::uint8_t>& bytes, Random& random,
                 std::vector<std::uint8_t>& out);

}  // namespace kestrix::simulator
