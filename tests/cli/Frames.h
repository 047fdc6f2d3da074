#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/support/FrameBuilder.h"

namespace kestrix::cli {

inline std::string bytesOf(const testing::FrameBuilder& frame) {
    return {frame.bytes().begin(), frame.bytes().end()};
}

// An insulation measurement whose main reading shows these digits.
inline std::string insulationFrame(std::uint16_t digits) {
    return bytesOf(testing::FrameBuilder('2').reading(1, digits, 0x00));
}

// So many frames, each with other digits than the one before.
inline std::string manyFrames(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) bytes += insulationFrame(static_cast<std::uint16_t>(i % 60000));
    return bytes;
}

}  // namespace kestrix::cli
