#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/AccessorySource.h"
#include "platform/AccessoryUri.h"
#include "platform/GeneratedChannel.h"
#include "platform/LastUsed.h"
#include "platform/Listener.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// A source, or why there is none, as one line.
struct SourceOrProblem {
    std::unique_ptr<AccessorySource> source;
    std::string problem;
    bool wrongUri = false;  // the URI itself is wrong, rather than what it names
};

// The producers of a "simulator:" URI, or why there are none.
struct SimulatorOrProblem {
    GeneratedDialer::MakeProducer producers;
    std::string problem;
    bool wrongUri = false;  // an option is wrong, rather than that there is no such scenario
};

// Makes them; the application supplies it. It takes the options that it knows out of the URI.
using SimulatorFactory = std::function<SimulatorOrProblem(AccessoryUri& uri)>;

// One kind of source, as help texts and errors tell it.
struct SourceKind {
    std::string_view scheme;
    std::string_view form;     // how its URI is written
    std::string_view example;  // a URI of it
};
std::vector<SourceKind> sourceKinds();

// The forms of all kinds, for a help text: "tcp://host:port, serial:PORT?baud=9600, ... or
// simulator:SCENARIO".
std::string sourceForms();

// Turns a URI of one of these kinds into its source. listeners: what a whole frame is. The scheduler, and
// what lastUsed refers to, must outlive the source.
SourceOrProblem makeAccessorySource(const std::string& uri, Scheduler& scheduler,
                                    const SimulatorFactory& simulator, ListenerFactory listeners,
                                    const LastUsed& lastUsed = {});

}  // namespace kestrix::platform
