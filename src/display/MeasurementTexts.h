#pragma once

#include <string>
#include <string_view>

#include "display/Display.h"
#include "protocol/MeterReading.h"

namespace kestrix::display {

// Rebuilds the two texts by which a measurement is stored, from the record that is on the display:
// `parameters`, the settings ("name=value,name=value"), and `results`, the readings. A function outside '1'
// to '7' has no texts: `results` is then empty, and `parameters` stays that of the record before.
void describeMeasurement(Display& display, const protocol::MeterReading& record);

// Appends one row of the RCD readings as it is stored, "x1/2 0° :18ms,". A value "----" counts as none.
void appendRcdResult(std::string& text, std::string_view value, std::string_view multiplier,
                     std::string_view angle);

}  // namespace kestrix::display
