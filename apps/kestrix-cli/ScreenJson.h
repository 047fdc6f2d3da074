#pragma once

#include <string>

#include "live/MeterDisplay.h"

namespace kestrix::cli {

// The live screen's display as it is while the link is up, before the first record: every label is visible.
class ConnectedDisplay final : public live::MeterDisplay {
  public:
    ConnectedDisplay();
};

// Appends what the display shows, and the texts of its latest measurement, to `out` as one compact JSON
// object without a newline:
//
//   strfunction (null before the first record), intfunctions, parameters, results, showMode, lastSubFuncF2,
//   rcdStep, title (the name of the lit title, or null), blueImage: {hidden}, labels: {name: {text, hidden}}
//
// Labels are D1Value, D1Unit, D2Value, D2Unit and Row, Angle, Value and Unit of RCD1 to RCD6, in this order.
void appendScreenJson(std::string& out, const live::MeterDisplay& display);

}  // namespace kestrix::cli
