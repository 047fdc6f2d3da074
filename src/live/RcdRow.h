#pragma once

#include "display/RcdRows.h"
#include "ui/Label.h"

namespace kestrix::live {

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
