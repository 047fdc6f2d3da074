// The faults that a scenario can play, on the simulator's source.
#include "tests/flow/faults/Fault.h"

namespace kestrix::faults {
namespace {

template <int Losses>
void plays(FaultWorld& world) {
    world.playsThrough(Losses);
}

constexpr auto playsWithoutALoss = plays<0>;
constexpr auto losesItsLine = plays<1>;

constexpr Fault kScenarioFaults[] = {
    {"Silence", kSimulator, losesItsLine, nullptr, "silence 4s\nreading 1 0.03 ohm\nshow 9s"},
    {"SilenceOfTwoSeconds", kSimulator, playsWithoutALoss, nullptr,
     "silence 2s\nreading 1 0.03 ohm\nshow 2s"},
    {"SwitchedOff", kSimulator, losesItsLine, nullptr, "show 1s\nswitch-off 8s\nreading 1 0.03 ohm\nshow 9s"},
    {"HalfFrameThenEnd", kSimulator, losesItsLine, nullptr,
     "reading 1 0.03 ohm\ncut after 18 bytes off 2s\nreading 1 0.04 ohm\nshow 9s"},
    {"ByteLost", kSimulator, playsWithoutALoss, nullptr, "damage drop 20\nreading 1 0.03 ohm\nshow 2s"},
    {"ByteInserted", kSimulator, playsWithoutALoss, nullptr,
     "damage insert 5 0x7E\nreading 1 0.03 ohm\nshow 2s"},
    {"BitErrorsOneInAHundred", kSimulator, playsWithoutALoss, nullptr,
     "line flip=0.08\nreading 1 ramp 1.00 to 9.00 within 40s ohm\nshow 40s\nline clean\nshow 1s"},
    {"EveryByteByItself", kSimulator, playsWithoutALoss, nullptr,
     "reading 1 ramp 1.00 to 9.00 within 5s ohm\nbytewise 10 frames\nshow 1s"},
    {"Flood", kSimulator, playsWithoutALoss, nullptr,
     "reading 1 ramp 1.00 to 9.00 within 5s ohm\nburst 1000 frames\nshow 1s"},
    {"FloodOfNoise", kSimulator, playsWithoutALoss, nullptr,
     "garbage 65536 bytes\nreading 1 0.03 ohm\nshow 2s"},
    {"FunctionChangeInsideAFrame", kSimulator, playsWithoutALoss, nullptr,
     "damage drop 30\nshow 1 frame\nfunction voltage mode=L-PE\nreading 1 230.1 V\nshow 2s"},
};

}  // namespace

std::span<const Fault> scenarioFaults() {
    return kScenarioFaults;
}

}  // namespace kestrix::faults
