// The line ends or fails, in order or in the middle of something.
#include "tests/flow/faults/Fault.h"
#include "tests/flow/faults/LineFarEnd.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;

constexpr std::ptrdiff_t kHalf = 18;

Bytes firstHalf(const Bytes& frame) {
    return {frame.begin(), frame.begin() + kHalf};
}

Bytes secondHalf(const Bytes& frame) {
    return {frame.begin() + kHalf, frame.end()};
}

void isSwitchedOff(FaultWorld& world) {
    world.leaves();
    world.expect(Link::Gone);
    world.passes(20s);
    world.expect(Link::Gone);
    world.comesBack();
}

void isSwitchedOffAndOn(FaultWorld& world) {
    world.leaves();
    world.expect(Link::Gone);
    world.farEnd().comeBack();
    world.passes(900ms);
    world.comesBack();
}

void endsBehindAFrame(FaultWorld& world) {
    const Bytes last = world.frame();
    world.hears(last);
    world.ends();
    world.expect(Link::Gone, last);
    world.comesBack();
}

void endsBehindHalfAFrame(FaultWorld& world) {
    world.hears(firstHalf(world.frame()));
    world.expect(Link::Connected);
    world.ends();
    world.expect(Link::Gone);
    world.comesBack();
}

void splitsAFrameOverTheReconnection(FaultWorld& world) {
    const Bytes split = world.frame();
    world.hears(firstHalf(split));
    world.ends();
    world.expect(Link::Gone);
    world.comesBack(Return::InTime, secondHalf(split));
}

void splitsTheStartBytesOverTheReconnection(FaultWorld& world) {
    const Bytes split = world.frame();
    world.hears({split[0], split[1]});
    world.ends();
    world.expect(Link::Gone);
    world.comesBack(Return::InTime, {split.begin() + 2, split.end()});
}

void sendsNothingButHalves(FaultWorld& world) {
    world.ends();
    for (int line = 0; line < 5; ++line) {
        world.isReachedAgain();
        const Bytes split = world.frame();
        world.hears(line % 2 == 0 ? firstHalf(split) : secondHalf(split));
        world.ends();
        world.expect(Link::Gone);
    }
    world.comesBack();
}

// What came before the end is delivered, although nobody had read it.
void endsBeforeAnybodyHasRead(FaultWorld& world) {
    const Bytes whole = world.frame() + world.frame();
    world.leavesWaiting(whole + firstHalf(world.frame()));
    world.ends();
    world.expect(Link::Gone, whole);
    world.comesBack();
}

void fails(FaultWorld& world) {
    world.hears(firstHalf(world.frame()));
    world.breaksOff();
    world.expect(Link::Gone);
    world.comesBack();
}

void failsSilently(FaultWorld& world) {
    world.as<LineFarEnd>().failSilently();
    world.passes(2999ms);
    world.expect(Link::Connected);
    world.passes(1ms);
    world.expect(Link::Gone);
    world.comesBack();
}

void dropsTwentyTimes(FaultWorld& world) {
    for (int i = 0; i < 20; ++i) {
        world.hears(firstHalf(world.frame()));
        world.ends();
        world.expect(Link::Gone);
        world.comesBack();
    }
}

void playsOn(FaultWorld& world) {
    world.playsToItsEnd();
}

Bytes aFrameAndAHalf() {
    return frameOf(3) + firstHalf(frameOf(4));
}

constexpr Fault kEndFaults[] = {
    {"SwitchedOff", kLive, isSwitchedOff},
    {"SwitchedOffAndOnWithinASecond", kLive, isSwitchedOffAndOn},
    {"EndBehindAFrame", kLive, endsBehindAFrame},
    {"HalfFrameThenEnd", kLive, endsBehindHalfAFrame},
    {"HalfFrameThenEnd", kReplay, playsOn, aFrameAndAHalf},
    {"FrameSplitOverTheReconnection", kLive, splitsAFrameOverTheReconnection},
    {"StartBytesSplitOverTheReconnection", kLive, splitsTheStartBytesOverTheReconnection},
    {"NothingButHalvesAndEnds", kLive, sendsNothingButHalves},
    {"EndBeforeAnybodyHasRead", kLine | kTcp | kBluetooth, endsBeforeAnybodyHasRead},
    {"InputOutputError", kLine | kTcp | kSerial, fails},
    {"InputOutputErrorThatNothingTells", kLine, failsSilently},
    {"TwentyDrops", kLive, dropsTwentyTimes},
};

}  // namespace

std::span<const Fault> endFaults() {
    return kEndFaults;
}

}  // namespace kestrix::faults
