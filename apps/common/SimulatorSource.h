#pragma once

#include <cstdint>
#include <string>

#include "platform/AccessorySources.h"

namespace kestrix::app {

// Producers that play a scenario: a built-in name, a file, or empty for the default one. speed: times real
// time, 0 for flat out. None, with the reason in `problem`, when there is no such scenario or it does not
// parse.
platform::GeneratedDialer::MakeProducer simulatorProducers(const std::string& scenario, std::uint64_t seed,
                                                           double speed, std::string& problem);

// The "simulator:" source, with the options seed=N and speed=N|max.
platform::SimulatorOrProblem simulatorSource(platform::AccessoryUri& uri);

}  // namespace kestrix::app
