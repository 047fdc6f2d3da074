#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

using namespace std::chrono_literals;

const std::string kEarthReading = "function earth\nreading 1 14.3 ohm\n";

TEST(PlayerFaults, SilenceIsAWaitWithoutBytes) {
    const auto emissions = emissionsOf(kEarthReading + "show 1 frame\nsilence 4s\nshow 1 frame");
    ASSERT_EQ(emissions.size(), 3U);
    EXPECT_EQ(emissions[1].wait, 4s);
    EXPECT_TRUE(emissions[1].bytes.empty());
    EXPECT_FALSE(emissions[1].closes);
    EXPECT_EQ(emissions[2].wait, 250ms);
}

TEST(PlayerFaults, BurstIsManyFramesAtOnce) {
    const auto emissions =
        emissionsOf("function earth\nreading 1 ramp 0 to 9 within 9 frames\nburst 3 frames");
    ASSERT_EQ(emissions.size(), 1U);
    EXPECT_EQ(emissions[0].wait, 250ms);
    const Bytes& bytes = emissions[0].bytes;
    ASSERT_EQ(bytes.size(), 108U);
    for (std::ptrdiff_t i = 0; i < 3; ++i) {
        const Bytes frame(bytes.begin() + 36 * i, bytes.begin() + 36 * (i + 1));
        EXPECT_TRUE(isFrame(frame));
        EXPECT_EQ(magnitudeIn(frame, 1), i);
    }
}

TEST(PlayerFaults, BytewiseSpreadsAFrameOverItsTime) {
    const auto whole = emissionsOf(kEarthReading + "show 2 frames");
    const auto emissions = emissionsOf(kEarthReading + "bytewise 2 frames");
    ASSERT_EQ(emissions.size(), 72U);
    for (const Emission& emission : emissions) {
        EXPECT_EQ(emission.bytes.size(), 1U);
        EXPECT_GE(emission.wait, 6ms);  // 250 / 36 = 6.9
        EXPECT_LE(emission.wait, 7ms);
    }
    EXPECT_EQ(bytesOf(emissions), bytesOf(whole));
    EXPECT_EQ(millisecondsOf(emissions), 500);
}

TEST(PlayerFaults, BytewiseKeepsTheTimeOfALostFrame) {
    const auto emissions = emissionsOf(kEarthReading + "line drop=1\nbytewise 3 frames");
    ASSERT_EQ(emissions.size(), 3U);
    EXPECT_EQ(millisecondsOf(emissions), 750);
    EXPECT_TRUE(bytesOf(emissions).empty());
}

TEST(PlayerFaults, CutSendsTheBeginningOfAFrameAndEndsTheChannel) {
    const auto whole = frameOf(kEarthReading + "show 1 frame");
    const auto emissions = emissionsOf(kEarthReading + "cut after 18 bytes off 2s\nshow 1 frame");
    ASSERT_EQ(emissions.size(), 3U);
    EXPECT_EQ(emissions[0].bytes, Bytes(whole.begin(), whole.begin() + 18));
    EXPECT_TRUE(emissions[0].closes);
    EXPECT_EQ(emissions[1].wait, 2s) << "off for so long, then a new channel";
    EXPECT_TRUE(emissions[1].bytes.empty());
    EXPECT_FALSE(emissions[1].closes);
    EXPECT_EQ(emissions[2].bytes, whole);
}

TEST(PlayerFaults, SwitchOffEndsTheChannel) {
    const auto emissions =
        emissionsOf(kEarthReading + "show 1 frame\nswitch-off 3s\ngarbage 5\nshow 1 frame");
    ASSERT_EQ(emissions.size(), 5U);
    EXPECT_TRUE(emissions[1].closes);
    EXPECT_TRUE(emissions[1].bytes.empty());
    EXPECT_EQ(emissions[1].wait, 0s);
    EXPECT_EQ(emissions[2].wait, 3s);
    EXPECT_FALSE(emissions[2].closes);
    EXPECT_EQ(emissions[3].bytes.size(), 5U);
}

TEST(PlayerFaults, AScenarioThatEndsOffStaysOff) {
    const auto emissions = emissionsOf(kEarthReading + "repeat 2\nshow 1 frame\nswitch-off 3s");
    ASSERT_EQ(emissions.size(), 5U);
    EXPECT_TRUE(emissions[1].closes);
    EXPECT_EQ(emissions[2].wait, 3s) << "the second round switches it on again";
    EXPECT_TRUE(emissions[4].closes) << "and nothing follows the second time";
}

TEST(PlayerFaults, GarbageIsRandomAndAtOnce) {
    const auto emissions = emissionsOf("garbage 1000\n" + kEarthReading + "show 1 frame", 1);
    EXPECT_EQ(emissions[0].wait, 0ms);
    ASSERT_EQ(emissions[0].bytes.size(), 1000U);
    std::array<int, 256> seen{};
    for (const std::uint8_t byte : emissions[0].bytes) ++seen[byte];
    EXPECT_GT(std::count_if(seen.begin(), seen.end(), [](int n) { return n > 0; }), 200);
}

TEST(PlayerFaults, DamageFallsOnTheFirstFrameOnly) {
    const Bytes whole = frameOf(kEarthReading + "show 1 frame");
    const auto emissions = emissionsOf(
        kEarthReading + "damage flip 12 0x01\ndamage drop 0\ndamage insert 2 0x7E\nshow 2 frames");
    Bytes damaged = whole;
    damaged[12] ^= 0x01;
    damaged.erase(damaged.begin());
    damaged.insert(damaged.begin() + 2, 0x7E);
    EXPECT_EQ(emissions[0].bytes, damaged);
    EXPECT_EQ(emissions[1].bytes, whole);
}

TEST(PlayerFaults, DamageReachesBurstsPiecesAndCuts) {
    const Bytes whole = frameOf(kEarthReading + "show 1 frame");
    EXPECT_EQ(bytesOf(emissionsOf(kEarthReading + "damage drop 3\nburst 2 frames")).size(), 71U);
    EXPECT_EQ(emissionsOf(kEarthReading + "damage drop 3\nbytewise 2 frames").size(), 71U);
    EXPECT_EQ(emissionsOf(kEarthReading + "damage flip 0\ncut after 2 off 1s")[0].bytes, (Bytes{0x81, 0x0D}));
}

TEST(PlayerFaults, ANoisyLineHarmsFramesUntilItIsClean) {
    const auto emissions =
        emissionsOf(kEarthReading + "line flip=0.05 drop=0.05\nshow 100 frames\nline clean\nshow 100 frames");
    int harmed = 0;
    for (std::size_t i = 0; i < 100; ++i) harmed += isFrame(emissions[i].bytes) ? 0 : 1;
    EXPECT_GT(harmed, 50);
    for (std::size_t i = 100; i < 200; ++i) EXPECT_TRUE(isFrame(emissions[i].bytes));
}

}  // namespace
}  // namespace kestrix::simulator
