// Nothing comes any more, or nothing that a tester would send.
#include "tests/flow/faults/Fault.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;

Bytes beginningOf(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

Bytes restOf(const Bytes& bytes, std::size_t behind) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(behind), bytes.end()};
}

void fallsSilent(FaultWorld& world) {
    world.passes(2999ms);
    world.expect(Link::Connected);
    world.passes(1ms);
    world.expect(Link::Gone);
    world.passes(7s);
    world.expect(Link::Gone);
    world.comesBack();
}

void pausesForTwoSeconds(FaultWorld& world) {
    for (int i = 0; i < 5; ++i) {
        world.passes(2s);
        world.expect(Link::Connected);
        const Bytes next = world.frame();
        world.hears(next);
        world.expect(Link::Connected, next);
    }
}

void sendsHalfAFrameAndFallsSilent(FaultWorld& world) {
    const Bytes cut = world.frame();
    world.hears(beginningOf(cut, 18));
    world.passes(2999ms);
    world.expect(Link::Connected);
    world.passes(1ms);
    world.expect(Link::Gone);
    world.comesBack(Return::InTime, restOf(cut, 18));
}

void sendsOneByteASecond(FaultWorld& world) {
    const Bytes slow = world.frame();
    std::size_t sent = 0;
    for (; sent < 3; ++sent) {
        world.expect(Link::Connected);
        world.hears({slow[sent]});
        world.passes(1s);
    }
    world.expect(Link::Gone);
    for (int line = 0; line < 3; ++line) {  // each is given up: a whole frame would take 36 s
        world.isReachedAgain();
        for (int i = 0; i < 2; ++i) {
            world.hears({slow[sent++]});
            world.passes(1s);
        }
        world.drops([&] { world.passes(1s); });
        world.expect(Link::Gone);
    }
    world.comesBack();
}

template <std::uint8_t... Pattern>
void sendsNothingButNoise(FaultWorld& world) {
    const Bytes noise{Pattern...};
    for (int i = 0; i < 29; ++i) {
        world.hears(noise);
        world.passes(100ms);
        world.expect(Link::Connected);
    }
    world.hears(noise);
    world.passes(100ms);
    world.expect(Link::Gone);
    for (int line = 0; line < 2; ++line) {
        world.isReachedAgain();
        world.hears(noise);
        world.expect(Link::Gone);
        world.drops([&] { world.passes(3s); });
        world.expect(Link::Gone);
    }
    world.comesBack();
}

// Frames by their start bytes, but no tester's.
void sendsStartBytesOnly(FaultWorld& world) {
    Bytes foreign(36);
    foreign[0] = 0x7E;
    foreign[1] = 0x0D;
    foreign[2] = 0x1E;
    for (int i = 0; i < 11; ++i) {
        world.hears(foreign);
        world.passes(250ms);
        world.expect(Link::Connected, foreign);
    }
    world.hears(foreign);
    world.expect(Link::Connected, foreign);
    world.passes(250ms);
    world.expect(Link::Gone);
    world.comesBack();
}

void answersButSendsNothing(FaultWorld& world) {
    world.ends();
    world.expect(Link::Gone);
    for (int i = 0; i < 3; ++i) {
        world.isReachedAgain();
        world.expect(Link::Gone);
        world.drops([&] { world.passes(3s); });
        world.expect(Link::Gone);
    }
    world.comesBack();
}

void isAnotherDevice(FaultWorld& world) {
    const std::string said = "\r\nOK\r\n$GPGGA,092750.000,5321.6802,N\r\n";
    const Bytes chatter(said.begin(), said.end());
    world.ends();
    world.isReachedAgain();
    for (int i = 0; i < 29; ++i) {
        world.hears(chatter);
        world.passes(100ms);
    }
    world.expect(Link::Gone);
    world.drops([&] { world.passes(100ms); });
    world.comesBack();
}

void isSilentForTenMinutes(FaultWorld& world) {
    world.passes(3s);
    world.expect(Link::Gone);
    world.farEnd().leave();
    world.passes(10min);
    world.expect(Link::Gone);
    world.comesBack();
}

constexpr Fault kSilenceFaults[] = {
    {"Silence", kLive, fallsSilent},
    {"SilenceOfTwoSeconds", kLive, pausesForTwoSeconds},
    {"SilenceForTenMinutes", kLive, isSilentForTenMinutes},
    {"HalfFrameThenSilence", kLive, sendsHalfAFrameAndFallsSilent},
    {"OneByteASecond", kLive, sendsOneByteASecond},
    {"NothingButNoise", kLive, sendsNothingButNoise<0x00, 0x55, 0xA3, 0x7E, 0x20>},
    {"NothingButZeros", kLive, sendsNothingButNoise<0x00, 0x00, 0x00, 0x00>},
    {"NothingButOnes", kLive, sendsNothingButNoise<0xFF, 0xFF, 0xFF, 0xFF>},
    {"StartBytesOnly", kLive, sendsStartBytesOnly},
    {"AcceptedButNothingSent", kLive, answersButSendsNothing},
    {"WrongChannel", kLive, isAnotherDevice},
};

}  // namespace

std::span<const Fault> silenceFaults() {
    return kSilenceFaults;
}

}  // namespace kestrix::faults
