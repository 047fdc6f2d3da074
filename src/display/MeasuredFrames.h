#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "display/RcdRows.h"
#include "protocol/MeterReading.h"

namespace kestrix::display {

// What the tester sent for the texts of a measurement.
struct MeasuredFrames {
    protocol::FrameBytes reading{};  // of the record; zeros before the first one
    std::uint32_t equalInARow = 0;   // how many like it came one behind the other over one link, it included
    // Of the trip times that stand in the texts of an RCD sequence: row by row, none where no record has set
    // one.
    std::array<std::optional<protocol::FrameBytes>, kRcdRows> tripTimes{};

    // Displays that show the same are equal, whatever frames they were read from.
    friend bool operator==(const MeasuredFrames&, const MeasuredFrames&) { return true; }
};

}  // namespace kestrix::display
