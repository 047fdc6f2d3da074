#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "display/MeasuredFrames.h"
#include "display/RcdRows.h"
#include "display/Titles.h"

namespace kestrix::display {

enum class LinkState : std::uint8_t { NotConnected, Connected };

// A reading with its unit; both are shown and hidden together.
struct Reading {
    std::string value;
    std::string unit;
    bool hidden = false;

    bool operator==(const Reading&) const = default;
};

// None where no record has set the trip time. It is not shown: rows that show the same are equal.
struct RowFrame : std::optional<protocol::FrameBytes> {
    using std::optional<protocol::FrameBytes>::optional;
    friend bool operator==(const RowFrame&, const RowFrame&) { return true; }
};

// One row of the RCD auto test. The trip time is shown and hidden apart from the row's other texts
// (kRcdRowTexts, kRcdUnit), which are always the same.
struct RcdRow {
    std::string value = " ";  // trip time
    bool valueHidden = false;
    bool hidden = false;  // multiplier, angle and unit
    RowFrame frame{};     // that the trip time was read from

    bool operator==(const RcdRow&) const = default;
};

// Kept for the life of the process: a disconnect does not change them.
struct Counters {
    std::int32_t showMode = 0;       // 0 two readings, 1 one, 2 RCD with four rows, 3 RCD with six
    std::int32_t lastSubFuncF2 = 0;  // of the last RCD auto-test record
    std::int32_t rcdStep = 0;        // position in the RCD auto test, 0 to 13

    bool operator==(const Counters&) const = default;
};

// What the tester's display shows, and the texts of its latest measurement. Texts are UTF-8. As it is made,
// nothing is hidden and no record has come. Steps.h leads from one value to the next.
struct Display {
    LinkState link = LinkState::NotConnected;
    Title title = Title::None;  // the one that is lit
    bool warning = false;       // a limit is exceeded
    Reading first;
    Reading second;
    std::array<RcdRow, kRcdRows> rcdRows;
    bool rowsOfEarlierLink = false;  // a trip time among them is of before the link went

    // Of the latest record; no function before the first one. What Record stores.
    std::optional<std::string> strfunction;
    std::int32_t intfunctions = 0;  // a character code
    std::string parameters;
    std::string results;
    MeasuredFrames measured;  // what these texts were made from

    Counters counters;

    bool operator==(const Display&) const = default;
};

}  // namespace kestrix::display
