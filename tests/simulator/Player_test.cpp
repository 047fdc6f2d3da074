#include "simulator/Player.h"

#include <gtest/gtest.h>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

using namespace std::chrono_literals;

const std::string kEarth = "function earth\nreading 1 14.3 ohm\n";

TEST(Player, SendsOneFrameAfterEachFramesTime) {
    const auto emissions = emissionsOf(kEarth + "show 1s");
    ASSERT_EQ(emissions.size(), 4U);
    for (const Emission& emission : emissions) {
        EXPECT_EQ(emission.wait, 250ms);
        EXPECT_TRUE(isFrame(emission.bytes));
        EXPECT_FALSE(emission.closes);
    }
}

TEST(Player, WaitsAddUpExactlyForAnyRate) {
    EXPECT_EQ(millisecondsOf(emissionsOf("rate 3\n" + kEarth + "show 3000 frames")), 999'999);
    EXPECT_EQ(millisecondsOf(emissionsOf("rate 7\nrepeat 70\n" + kEarth + "show 10 frames")), 100'000);
    EXPECT_EQ(millisecondsOf(emissionsOf("rate 1000\n" + kEarth + "show 2s")), 2000);
    for (const Emission& emission : emissionsOf("rate 3\n" + kEarth + "show 30 frames")) {
        EXPECT_GE(emission.wait, 333ms);
        EXPECT_LE(emission.wait, 334ms);
    }
}

TEST(Player, AsFastAsPossibleNeverWaits) {
    const auto emissions = emissionsOf("rate max\n" + kEarth + "show 10s\nbytewise 1 frame\nburst 2 frames");
    EXPECT_EQ(emissions.size(), 40U + 36U + 1U);
    EXPECT_EQ(millisecondsOf(emissions), 0);
}

TEST(Player, RepeatsAndFinishes) {
    Player player{parsed("repeat 3\n" + kEarth + "show 2 frames")};
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(player.finished());
        EXPECT_TRUE(isFrame(player.next().bytes));
    }
    EXPECT_TRUE(player.finished());
    const Emission after = player.next();
    EXPECT_EQ(after.wait, 0ms);
    EXPECT_TRUE(after.bytes.empty());
    EXPECT_FALSE(after.closes);
}

TEST(Player, RepeatsForEver) {
    Player player{parsed("repeat forever\n" + kEarth + "show 2 frames")};
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(isFrame(player.next().bytes));
    EXPECT_FALSE(player.finished());
}

TEST(Player, WithoutStepsIsFinishedAtOnce) {
    EXPECT_TRUE(Player{Scenario{}}.finished());
    Scenario none = parsed(kEarth + "show 1s");
    none.rounds = 0;
    EXPECT_TRUE(Player{none}.finished());
}

TEST(Player, EachRoundBeginsAnew) {
    const auto emissions =
        emissionsOf("repeat 2\nfunction earth\nreading 1 ramp 0 to 9 within 9 frames\nshow 3 frames");
    ASSERT_EQ(emissions.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(magnitudeIn(emissions[i].bytes, 1), static_cast<int>(i % 3));
}

const std::string kNoisy =
    "garbage 50\nfunction earth\nreading 1 14.3 noise 5\nline flip=0.1 drop=0.1 insert=0.1\nshow 50 frames";

TEST(Player, TheSameSeedSendsTheSameBytes) {
    EXPECT_EQ(bytesOf(emissionsOf(kNoisy, 42)), bytesOf(emissionsOf(kNoisy, 42)));
    EXPECT_NE(bytesOf(emissionsOf(kNoisy, 42)), bytesOf(emissionsOf(kNoisy, 43)));
}

TEST(Player, ReusesTheEmission) {
    Player fresh{parsed(kNoisy)};
    Player reused{parsed(kNoisy)};
    Emission emission{.wait = 5s, .bytes = {1, 2, 3}, .closes = true};
    while (!fresh.finished()) {
        const Emission expected = fresh.next();
        reused.next(emission);
        EXPECT_EQ(emission.wait, expected.wait);
        EXPECT_EQ(emission.bytes, expected.bytes);
        EXPECT_EQ(emission.closes, expected.closes);
    }
    EXPECT_TRUE(reused.finished());
}

TEST(Player, NoiseIsDrawnAnewForEachFrame) {
    const auto emissions = emissionsOf("function earth\nreading 1 5000 noise 500\nshow 2 frames");
    EXPECT_NE(emissions[0].bytes, emissions[1].bytes);
}

TEST(Player, HoldKeepsTheLastFramesReadings) {
    const auto emissions = emissionsOf(
        "function voltage\nreading 1 ramp 0 to 90 within 9 frames\nreading 2 50.0 noise 1\n"
        "wires L-PE=230 N-PE=0 L-N=230 noise 9\nshow 3 frames\non hold\nreading 3 overload\nshow 3 frames\n"
        "off hold\nshow 1 frame");
    ASSERT_EQ(emissions.size(), 7U);
    Bytes held = emissions[2].bytes;
    held[24] |= 0x02;
    for (std::size_t i = 3; i < 6; ++i) EXPECT_EQ(emissions[i].bytes, held) << i;
    EXPECT_EQ(magnitudeIn(emissions[6].bytes, 1), 60) << "the value has moved on behind it";
    EXPECT_EQ(emissions[6].bytes[25] & 0x04, 0x04);
}

TEST(Player, HoldDoesNotReachIntoAnotherFunction) {
    const auto emissions = emissionsOf(
        "function earth\nreading 1 5\nshow 1 frame\nfunction low-ohm\nreading 1 7\non hold\nshow 1 frame");
    EXPECT_EQ(magnitudeIn(emissions.at(1).bytes, 1), 7);
}

TEST(Player, NoiseStopsAtTheEndsOfTheDisplay) {
    int zeros = 0;
    for (const Emission& emission : emissionsOf("function loop\nreading 1 10 noise 50\nshow 200 frames")) {
        EXPECT_LE(magnitudeIn(emission.bytes, 1), 60);
        EXPECT_EQ(attributeIn(emission.bytes, 1), 0);
        zeros += magnitudeIn(emission.bytes, 1) == 0 ? 1 : 0;
    }
    EXPECT_GT(zeros, 50) << "two in five are below";
    for (const Emission& emission :
         emissionsOf("function earth\nreading 1 65535 noise 50\nshow 100 frames")) {
        EXPECT_GE(magnitudeIn(emission.bytes, 1), 65485);
    }
}

TEST(Player, NoiseAroundZeroChangesTheSign) {
    int negative = 0;
    for (const Emission& emission : emissionsOf("function earth\nreading 1 0 noise 50\nshow 200 frames")) {
        const bool marked = (attributeIn(emission.bytes, 1) & 0x80) != 0;
        EXPECT_FALSE(marked && magnitudeIn(emission.bytes, 1) == 0) << "nothing is not negative";
        negative += marked ? 1 : 0;
    }
    EXPECT_GT(negative, 50);
    EXPECT_LT(negative, 150);
}

}  // namespace
}  // namespace kestrix::simulator
