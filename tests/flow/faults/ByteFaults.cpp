// What comes is not what was sent. The records are those that somebody else reads out of the same bytes.
#include <algorithm>
#include <random>
#include <string>

#include "tests/flow/faults/Fault.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;
using testing::FrameBuilder;

constexpr unsigned kPlayed = kLive | kReplay;
constexpr int kFirst = 100;  // no reading of before

Bytes frames(int count) {
    Bytes all;
    for (int i = 0; i < count; ++i) all = std::move(all) + frameOf(kFirst + i);
    return all;
}

// Between two frames, and again behind three more.
Bytes between(const Bytes& fault) {
    return frameOf(7) + fault + frames(3) + fault + frames(5);
}

Bytes sixByteFrame(char function) {
    const auto frame = FrameBuilder(function).reading(1, 321, 0).reading(2, 654, 0).bytes();
    return {frame.begin(), frame.end()};
}

Bytes duplicateStartBytes() {
    Bytes inside = frameOf(8);
    std::copy_n(frameOf(9).begin(), 3, inside.begin() + 20);
    return between(inside + Bytes{0x7E, 0x0D, 0x1E} + frameOf(10));
}

Bytes frameCutShort() {
    Bytes cut = frameOf(8);
    cut.resize(26);
    return between(cut);
}

Bytes frameTooLong() {
    return between(frameOf(8) + Bytes(5, 0x33));
}

Bytes byteLost() {
    Bytes lost = frameOf(8);
    lost.erase(lost.begin() + 12);
    return between(lost);
}

Bytes byteInserted() {
    Bytes more = frameOf(8);
    more.insert(more.begin() + 12, 0x7E);
    return between(more);
}

Bytes functionChange() {
    const Bytes before = frameOf(8);
    const Bytes behind = sixByteFrame('6');
    const Bytes mixed = Bytes(before.begin(), before.begin() + 18) + Bytes(behind.begin() + 18, behind.end());
    return between(mixed + behind + Bytes(before.begin(), before.begin() + 18) + behind + behind);
}

Bytes unknownFunction() {
    return between(sixByteFrame('9') + sixByteFrame('\0'));
}

Bytes damagedMarker() {
    Bytes damaged = frameOf(8);
    damaged[9] = 0xAB;
    return between(damaged);
}

Bytes modemsWords() {
    const std::string said = "\r\nRING\r\nNO CARRIER\r\n";
    return between({said.begin(), said.end()});
}

Bytes lineBreak() {
    return between(Bytes(50, 0));
}

template <int Million>
Bytes bitErrors() {
    std::mt19937 random(Million);
    Bytes all = frames(200);
    for (std::uint8_t& byte : all) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            if (random() % 1'000'000 < Million) byte = static_cast<std::uint8_t>(byte ^ 1U << bit);
        }
    }
    return all;
}

// The same line as a receiver takes it that looks twice as often as it should: a start bit, eight bits,
// lowest first, a stop bit.
Bytes atTwiceTheBaudRate(const Bytes& sent) {
    std::vector<bool> line;
    for (const unsigned byte : sent) {
        for (unsigned bit = 0; bit < 10; ++bit) {
            const bool level = bit == 9 || (bit > 0 && (byte >> (bit - 1) & 1U) != 0);
            line.insert(line.end(), 2, level);
        }
    }
    line.insert(line.end(), 10, true);
    Bytes taken;
    for (std::size_t at = 0; at + 10 <= line.size();) {
        if (line[at]) {
            ++at;
            continue;
        }
        unsigned byte = 0;
        for (unsigned bit = 0; bit < 8; ++bit) byte |= (line[at + 1 + bit] ? 1U : 0U) << bit;
        taken.push_back(static_cast<std::uint8_t>(byte));
        at += 10;
    }
    return taken;
}

Bytes wrongBaudRate() {
    return between(atTwiceTheBaudRate(frames(3)));
}

template <Bytes (*Sent)()>
void sends(FaultWorld& world) {
    if (!world.farEnd().plays().empty()) return world.playsToItsEnd();
    world.hearsAtPace(Sent());
    world.ends();
    world.expect(Link::Gone);
    world.comesBack();
}

void sendsEveryByteByItself(FaultWorld& world) {
    for (int i = 0; i < 5; ++i) {
        const Bytes slow = world.frame();
        for (const std::uint8_t byte : slow) {
            world.expect(Link::Connected);
            world.hears({byte});
            world.passes(byte == slow.back() ? 0ms : 6ms);
        }
        world.expect(Link::Connected, slow);
    }
}

void sendsTwiceAsFast(FaultWorld& world) {
    for (int i = 0; i < 40; ++i) {
        const Bytes next = world.frame();
        world.hears(next);
        world.passes(125ms);
        world.expect(Link::Connected, next);
    }
}

void floods(FaultWorld& world) {
    const Bytes flood = frames(5000);
    world.hears(flood);
    world.expect(Link::Connected, flood);
    const Bytes next = world.frame();
    world.hears(next);
    world.expect(Link::Connected, next);
}

void floodsWithNoise(FaultWorld& world) {
    std::mt19937 random(1);
    Bytes noise(65'536);
    for (std::uint8_t& byte : noise) byte = static_cast<std::uint8_t>(random());
    const Bytes next = world.frame();
    world.hears(noise + next + next);
    world.expect(Link::Connected, noise + next + next);
    world.ends();
    world.expect(Link::Gone);
    world.comesBack();
}

constexpr Fault kByteFaults[] = {
    {"DuplicateStartBytes", kPlayed, sends<duplicateStartBytes>, duplicateStartBytes},
    {"FrameCutShort", kPlayed, sends<frameCutShort>, frameCutShort},
    {"FrameTooLong", kPlayed, sends<frameTooLong>, frameTooLong},
    {"ByteLost", kPlayed, sends<byteLost>, byteLost},
    {"ByteInserted", kPlayed, sends<byteInserted>, byteInserted},
    {"FunctionChangeInsideAFrame", kPlayed, sends<functionChange>, functionChange},
    {"UnknownFunction", kPlayed, sends<unknownFunction>, unknownFunction},
    {"DamagedMarker", kPlayed, sends<damagedMarker>, damagedMarker},
    {"ModemsWordsBetweenFrames", kPlayed, sends<modemsWords>, modemsWords},
    {"LineBreak", kPlayed, sends<lineBreak>, lineBreak},
    {"WrongBaudRate", kPlayed, sends<wrongBaudRate>, wrongBaudRate},
    {"BitErrorsOneInTenThousand", kPlayed, sends<bitErrors<100>>, bitErrors<100>},
    {"BitErrorsOneInAThousand", kPlayed, sends<bitErrors<1'000>>, bitErrors<1'000>},
    {"BitErrorsOneInAHundred", kPlayed, sends<bitErrors<10'000>>, bitErrors<10'000>},
    {"EveryByteByItself", kLive, sendsEveryByteByItself},
    {"DoubleSpeed", kLive, sendsTwiceAsFast},
    {"Flood", kLive, floods},
    {"FloodOfNoise", kLive, floodsWithNoise},
};

}  // namespace

std::span<const Fault> byteFaults() {
    return kByteFaults;
}

}  // namespace kestrix::faults
