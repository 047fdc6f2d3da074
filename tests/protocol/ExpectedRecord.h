#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "protocol/MeterReading.h"

namespace kestrix::protocol {

// A second, slow and literal reading of the frame format: one function per tester function, no tables, texts
// by the standard library. It shares nothing with the decoder but the record, so that one can be checked by
// the other.
MeterReading expectedRecord(std::span<const std::uint8_t> frame);

// The bytes that a frame's hexadecimal text stands for.
std::vector<std::uint8_t> expectedBytes(std::string_view text);

}  // namespace kestrix::protocol
