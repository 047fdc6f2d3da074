#pragma once

#include <functional>
#include <string_view>

namespace kestrix::app {

// Sends every line of Qt's log to `sink`, in the form that the log has and printable: what a device calls
// itself must not drive the terminal. Without a sink the lines go to standard error.
void installPrintableLog(std::function<void(std::string_view line)> sink = {});

// One line to a pipe, terminal or file, unless that would have to wait for a reader: who logs may hold a
// display. lost: lines that found no room since the last one; the next that does says how many.
void writeUnlessFull(int descriptor, std::string_view line, unsigned long& lost);

}  // namespace kestrix::app
