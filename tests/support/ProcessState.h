#pragma once

#include <cstddef>

namespace kestrix::testing {

// What leaks show in.
std::size_t openDescriptors();
std::size_t allocatedBytes();  // on the heap, live

}  // namespace kestrix::testing
