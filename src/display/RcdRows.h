#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kestrix::display {

inline constexpr std::size_t kRcdRows = 6;

// What stands on one row of the RCD display beside the trip time.
struct RcdRowTexts {
    std::string_view multiplier;  // of the rated current
    std::string_view angle;       // at which the fault current begins
};

inline constexpr std::array<RcdRowTexts, kRcdRows> kRcdRowTexts{{
    {"x1/2", "0° :"},
    {"x1/2", "180°:"},
    {"x1 ", "0° :"},
    {"x1 ", "180°:"},
    {"x5 ", "0° :"},
    {"x5 ", "180°:"},
}};

inline constexpr std::string_view kRcdUnit = "ms";

// The rows that every auto test shows; the others are shown for some settings only.
inline constexpr std::size_t kFirstRcdRows = 4;

}  // namespace kestrix::display
