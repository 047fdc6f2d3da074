#pragma once

#include <optional>
#include <string>

#include "apps/kestrix-cli/ExitStatus.h"

namespace kestrix::cli {

struct SimulateOptions {
    std::optional<std::string> tcp;  // HOST:PORT; port 0 takes a free one
    std::optional<std::string> pty;  // name of the serial port to make
    std::string scenario;
    std::string seed = "1";
    std::string speed = "1";
};

// A tester in software for other programs, at exactly one of the two places, until it is interrupted. Says on
// standard output where it is.
ExitStatus simulate(const SimulateOptions& options);

// The names of the built-in scenarios, one a line.
ExitStatus listScenarios();

}  // namespace kestrix::cli
