#pragma once

#include <string>

#include "display/Display.h"

namespace kestrix::cli {

// The display as it is while the link is up, before the first record: nothing is hidden.
inline display::Display connectedDisplay() {
    display::Display display;
    display.link = display::LinkState::Connected;
    return display;
}

// Appends what the display shows, and the texts of its latest measurement, to `out` as one compact JSON
// object without a newline:
//
//   strfunction (null before the first record), intfunctions, parameters, results, showMode, lastSubFuncF2,
//   rcdStep, title (the name of the lit title, or null), blueImage: {hidden}, labels: {name: {text, hidden}}
//
// Labels are D1Value, D1Unit, D2Value, D2Unit and Row, Angle, Value and Unit of RCD1 to RCD6, in this order.
// Texts must be valid UTF-8: their bytes are not checked.
void appendScreenJson(std::string& out, const display::Display& display);

}  // namespace kestrix::cli
