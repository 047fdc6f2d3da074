#pragma once

#include <cstdint>
#include <vector>

namespace kestrix::bench {

// The bytes of at least `frames` frames of the built-in round through a house, whole frames only.
std::vector<std::uint8_t> testerStream(std::size_t frames);

}  // namespace kestrix::bench
