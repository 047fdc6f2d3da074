// The line has ended, and for a while the way back is barred.
#include <gtest/gtest.h>

#include "tests/flow/faults/Fault.h"
#include "tests/flow/faults/LineFarEnd.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;
using platform::FailedStep;

void refusesForAMinute(FaultWorld& world) {
    world.leaves();
    world.passes(1min);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::Refused);
    world.comesBack();
}

void answersNoDial(FaultWorld& world) {
    auto& line = world.as<LineFarEnd>();
    line.becomeDeafToDials();
    world.ends();
    world.passes(30s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::NoAnswer);
    EXPECT_GT(line.dials(), 4);
    world.comesBack();
}

template <FailedStep Step>
void failsAt(FaultWorld& world) {
    world.as<LineFarEnd>().fail(Step);
    world.leaves();
    world.passes(20s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), Step);
    world.comesBack();
}

void isRenamedAndBack(FaultWorld& world) {
    world.farEnd().leave();
    world.playsToItsEnd(true);
    EXPECT_EQ(world.failedStep(), FailedStep::None);
}

Bytes threeFrames() {
    return frameOf(3) + frameOf(4) + frameOf(5);
}

constexpr Fault kDialFaults[] = {
    {"RefusedForAMinute", kLine | kTcp, refusesForAMinute},
    {"NoAnswer", kLine, answersNoDial},
    {"PortBusy", kLine, failsAt<FailedStep::Busy>},
    {"NoRights", kLine, failsAt<FailedStep::Rights>},
    {"DeviceGone", kLine, failsAt<FailedStep::Missing>},
    {"RenamedPort", kReplay, isRenamedAndBack, threeFrames},
};

}  // namespace

std::span<const Fault> dialFaults() {
    return kDialFaults;
}

}  // namespace kestrix::faults
