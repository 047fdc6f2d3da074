#pragma once

#include <span>

#include "tests/flow/faults/FaultWorld.h"

namespace kestrix::faults {

// One fault of a link: what happens to a tester that is connected, and what has to be seen of it. It is a
// test for each of its kinds.
struct Fault {
    const char* name;
    unsigned kinds;
    void (*script)(FaultWorld&);
    // What a capture holds, and a scenario plays, behind the two frames that are recorded.
    Bytes (*capture)() = nullptr;
    const char* scenario = "";
};

std::span<const Fault> silenceFaults();
std::span<const Fault> endFaults();
std::span<const Fault> dialFaults();
std::span<const Fault> serialFaults();
std::span<const Fault> bluetoothFaults();
std::span<const Fault> byteFaults();
std::span<const Fault> timeFaults();
std::span<const Fault> scenarioFaults();

}  // namespace kestrix::faults
