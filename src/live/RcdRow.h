#pragma once

#include <array>

#include "ui/Label.h"

namespace kestrix::live {

inline constexpr std::size_t kRcdRows = 6;

// What stands on one row of the RCD display, beside the trip time.
struct RcdRowTexts {
    const char* multiplier;  // of the rated current
    const char* angle;       // at which the fault current begins
};

inline constexpr std::array<RcdRowTexts, kRcdRows> kRcdRowTexts{{
    {"x1/2", "0° :"},
    {"x1/2", "180°:"},
    {"x1 ", "0° :"},
    {"x1 ", "180°:"},
    {"x5 ", "0° :"},
    {"x5 ", "180°:"},
}};

// One row of the RCD display: multiplier, angle, trip time, unit.
struct RcdRow {
    // number: 1 to 6.
    RcdRow(ui::Screen& screen, int number);

    ui::Label Row;
    ui::Label Angle;
    ui::Label Value;
    ui::Label Unit;
};

}  // namespace kestrix::live
