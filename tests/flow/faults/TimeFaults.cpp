// Clocks that jump, a main thread that stands still, and testers that do not wait for each other.
#include <gtest/gtest.h>

#include "tests/flow/faults/Fault.h"
#include "tests/flow/faults/LineFarEnd.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;
using std::chrono::hours;

constexpr hours kYear{365 * 24};

template <int Milliseconds>
void standsStillWhileFramesCome(FaultWorld& world) {
    for (int i = 0; i < 3; ++i) {
        const Bytes waiting = world.frame() + world.frame();
        world.leavesWaiting(waiting);
        world.stalls(std::chrono::milliseconds(Milliseconds));
        world.expect(Link::Connected, waiting);
    }
}

void standsStillWhileNothingComes(FaultWorld& world) {
    world.stalls(4s);
    world.expect(Link::Gone);
    world.comesBack();
}

template <int Hours>
void clockJumps(FaultWorld& world) {
    world.setClock(hours(Hours));
    world.passes(2s);
    world.expect(Link::Connected);
    const Bytes next = world.frame();
    world.hears(next);
    world.expect(Link::Connected, next);
    world.setClock(-hours(Hours));
    world.passes(2999ms);
    world.expect(Link::Connected);
    world.passes(1ms);
    world.expect(Link::Gone);
    world.setClock(hours(Hours));
    world.comesBack();
}

void sleepsForANight(FaultWorld& world) {
    world.drops([&] { world.sleeps(8h); });
    world.expect(Link::Gone);
    world.comesBack();
}

// What waits since the evening is no reading of the morning.
void sleepsWhileAFrameWaits(FaultWorld& world) {
    world.leavesWaiting(world.frame());
    world.drops([&] { world.sleeps(8h); });
    world.expect(Link::Gone);
    world.comesBack();
}

void sleepsForTwoSeconds(FaultWorld& world) {
    world.sleeps(2s);
    world.expect(Link::Connected);
    const Bytes next = world.frame();
    world.hears(next);
    world.expect(Link::Connected, next);
}

// One is shown at a time, and the other when that one has gone.
void secondTesterTakesOverAndGivesBack(FaultWorld& world) {
    auto owned = std::make_unique<LineFarEnd>();
    LineFarEnd& second = *owned;
    world.addTester(std::move(owned));
    second.send(world.frame());
    world.expect(Link::Connected);
    world.ends();
    world.expect(Link::Connected);
    const Bytes taken = world.frame();
    second.send(taken);
    world.expect(Link::Connected, taken);
    world.isReachedAgain();
    world.hears(world.frame());
    world.expect(Link::Connected);
    second.leave();
    world.expect(Link::Connected);
    const Bytes given = world.frame();
    world.hears(given);
    world.expect(Link::Connected, given);
}

void secondTesterIsNoise(FaultWorld& world) {
    auto owned = std::make_unique<LineFarEnd>();
    LineFarEnd& second = *owned;
    world.addTester(std::move(owned));
    second.send(Bytes(300, 0x7E));
    const Bytes next = world.frame();
    world.hears(next);
    world.expect(Link::Connected, next);
    world.ends();
    second.send(Bytes(300, 0x7E));
    world.expect(Link::Gone);
    world.comesBack();
}

constexpr Fault kTimeFaults[] = {
    {"MainThreadStalledForFourSeconds", kLive, standsStillWhileFramesCome<4'000>},
    {"MainThreadStalledForAnHour", kLive, standsStillWhileFramesCome<3'600'000>},
    {"MainThreadStalledWhileNothingComes", kLive, standsStillWhileNothingComes},
    {"ClockSetBackAYear", kLive, clockJumps<-kYear.count()>},
    {"ClockSetAheadAYear", kLive, clockJumps<kYear.count()>},
    {"SuspendAndResume", kLive, sleepsForANight},
    {"SuspendAndResumeWhileAFrameWaits", kLive, sleepsWhileAFrameWaits},
    {"SuspendAndResumeAtOnce", kLive, sleepsForTwoSeconds},
    {"TwoTestersAtOnce", kLive, secondTesterTakesOverAndGivesBack},
    {"SecondTesterIsNoise", kLive, secondTesterIsNoise},
};

}  // namespace

std::span<const Fault> timeFaults() {
    return kTimeFaults;
}

}  // namespace kestrix::faults
