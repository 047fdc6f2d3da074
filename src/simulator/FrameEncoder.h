#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "simulator/Display.h"

namespace kestrix::simulator {

inline constexpr std::size_t kFrameBytes = 36;

using Frame = std::array<std::uint8_t, kFrameBytes>;

// The frame that a tester with this display sends. Values beyond a field's bits are cut to it.
Frame encodeFrame(const Display& display) noexcept;

}  // namespace kestrix::simulator
