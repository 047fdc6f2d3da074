#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "live/RcdRow.h"
#include "protocol/MeterReading.h"

namespace kestrix::live {

// The trip times of the RCD rows 1 to 6, as their labels show them.
using RcdValues = std::array<std::string, kRcdRows>;

// The settings of a measurement, as they are stored: "name=value,name=value". function: '1' to '7'.
// False, and `text` as it was, for any other.
bool parametersText(std::int32_t function, const protocol::MeterReading& record, std::string& text);

// The readings of a measurement, as they are stored. Empty for a function outside '1' to '7'.
std::string resultsText(std::int32_t function, const protocol::MeterReading& record, const RcdValues& rcd);

// One RCD row of the stored readings, "x1/2 0° :18ms,". A value "----" counts as none.
std::string rcdResultText(std::string_view value, std::string_view multiplier, std::string_view angle);

}  // namespace kestrix::live
