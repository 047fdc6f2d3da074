#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "display/Display.h"
#include "protocol/MeterReading.h"

namespace kestrix::cli {

// What the display in the terminal shows. All texts are UTF-8 and may come from anywhere: control characters
// in them never reach the terminal.
struct DisplayState {
    std::string source;        // URI of the tester
    display::Display display;  // link state, title, readings, RCD rows, warning
    // The latest record, for what stands beside those: settings, wires, symbols. None before the first frame.
    std::optional<protocol::MeterReading> reading;
    double framesPerSecond = 0;
    std::optional<double> secondsSinceLastFrame;  // none before the first frame
    std::uint64_t frames = 0;                     // since the start
    std::string problem;                          // empty when all is well
};

struct TerminalStyle {
    bool colour = true;  // false: no escape codes at all, the lit title stands in [brackets]
    int columns = 80;    // width of the terminal; below 40 the display is cut off at the right
};

// The lines of the display, top to bottom, without line ends; none is wider than style.columns, and the
// display is at most 80 columns wide. Their number is the same for every state, so the display stands still
// while it is redrawn.
std::vector<std::string> renderDisplay(const DisplayState& state, const TerminalStyle& style);

// The display without its least important lines, so that it is no higher than `rows`.
std::vector<std::string> fitHeight(std::vector<std::string> lines, int rows);

// One line of text for one reading, without a line end and without escape codes. Equal readings give equal
// lines.
std::string renderLine(const protocol::MeterReading& reading);

// What to write to a terminal that shows `previous` so that it shows `next`: empty when nothing changed.
// Before and after, the cursor stands in the first column of the line below the lines shown; `previous` is
// empty at first. The terminal must be higher than the display.
std::string redrawInPlace(const std::vector<std::string>& previous, const std::vector<std::string>& next);

}  // namespace kestrix::cli
