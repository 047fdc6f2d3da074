#pragma once

#include <cstdint>
#include <span>

#include "protocol/MeterReading.h"

// The first two steps from a frame to its record; the third is DisplayTexts.
namespace kestrix::protocol {

enum class FrameCheck : std::uint8_t {
    Foreign,  // too short, or the third start byte is wrong: nothing is derived
    Empty,    // wrong marker or function code: no readings, empty value texts
    Valid,
};

// Looks at the start byte, the marker and the function code of at least 31 bytes. There is no checksum to
// test.
FrameCheck checkFrame(std::span<const std::uint8_t> frame);

// Whether the third start byte and the marker stand in their places: a tester sent it, at a function that may
// be unknown.
bool isMarked(std::span<const std::uint8_t> frame);

// Fills function, settings, flags, readings, wire voltages and the RCD slot of an all-zero record from a
// Valid frame.
void decodeFrame(std::span<const std::uint8_t> frame, MeterReading& record);

}  // namespace kestrix::protocol
