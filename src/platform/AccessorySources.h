#pragma once

#include <memory>
#include <string>

#include "platform/AccessorySource.h"
#include "platform/AccessoryUri.h"
#include "platform/GeneratedChannel.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// A source, or why there is none, as one line.
struct SourceOrProblem {
    std::unique_ptr<AccessorySource> source;
    std::string problem;
    bool wrongUri = false;  // the URI itself is wrong, rather than what it names
};

// Makes the producers of a "simulator:" URI; the application supplies it. It takes the options that it knows
// out of the URI. None, with the reason in `problem`, when it cannot.
using SimulatorFactory =
    std::function<GeneratedDialer::MakeProducer(AccessoryUri& uri, std::string& problem)>;

// Turns a URI into its source: tcp://host:port, serial:/dev/rfcomm0?baud=9600, replay:FILE?speed=1 (or max),
// simulator:, simulator:SCENARIO. The scheduler must outlive the source.
SourceOrProblem makeAccessorySource(const std::string& uri, Scheduler& scheduler,
                                    const SimulatorFactory& simulator);

}  // namespace kestrix::platform
