#pragma once

#include <array>
#include <string>
#include <string_view>

namespace kestrix::cli {

// A text three rows high, in the digits of a meter's display. Characters that have no large shape stand as
// they are in the middle row. All three rows take the same columns.
std::array<std::string, 3> largeDigits(std::string_view printableText);

}  // namespace kestrix::cli
