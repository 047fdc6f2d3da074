#pragma once

#include <cstddef>
#include <cstdint>

#include "display/Display.h"
#include "protocol/MeterReading.h"

// The steps from one display to the next. Each depends on nothing but the display and what came, and works in
// place, so that a record which changes little allocates nothing.
namespace kestrix::display {

// Groups of what is shown and hidden together, by their numbers.
inline constexpr std::int32_t kReadings = 1;
inline constexpr std::int32_t kFirstReadingOnly = 2;  // the second is hidden whatever the flag says
inline constexpr std::int32_t kRcdRows1To4 = 3;
inline constexpr std::int32_t kRcdRows5And6 = 4;
inline constexpr std::int32_t kRcdValues = 5;

// A record came: any record is shown, whatever its function and the state of the link.
void recordCame(Display& display, const protocol::MeterReading& record);

// The link state changed: 0 not connected, 1 connected. False, and the display as it was, for any other.
// Trip times that are shown stay so while the link is down.
bool linkStateChanged(Display& display, std::int32_t state);

// Any other group than the five does nothing.
void setHidden(Display& display, std::int32_t group, bool hidden);

// All six trip times become a blank.
void clearRcdValues(Display& display);

// Whether Record takes the latest measurement: only one whose function has a name.
inline bool canBeRecorded(const Display& display) {
    return display.strfunction.has_value() && !display.strfunction->empty();
}

// Whether Record takes trip times that were measured before the link went.
inline bool recordsRowsOfEarlierLink(const Display& display) {
    return display.intfunctions == '7' && display.rowsOfEarlierLink;
}

// Whether the trip time of this row (0 to 5) is to be read: its row stands there, and it holds a time.
bool showsTripTime(const Display& display, std::size_t row);

// Whether a record of the present connection is on the display.
bool showsReading(const Display& display);

}  // namespace kestrix::display
