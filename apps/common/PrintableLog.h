#pragma once

#include <functional>
#include <string_view>

namespace kestrix::app {

// Sends every line of Qt's log to `sink`, in the form that the log has and printable: what a device calls
// itself must not drive the terminal. Without a sink the lines go to standard error.
void installPrintableLog(std::function<void(std::string_view line)> sink = {});

}  // namespace kestrix::app
