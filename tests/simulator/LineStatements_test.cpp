#include <gtest/gtest.h>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

using namespace std::chrono_literals;

const std::string kEarth = "function earth\n";

TEST(PauseStatements, TakeTimeOrFrames) {
    const Scenario scenario = parsed(
        "rate 10\nsilence 1.5s\nswitch-off 3 frames\nfunction earth\ncut after 18 bytes off 2s\nshow 1s");
    EXPECT_EQ(scenario.steps[0].delivery, Delivery::Silence);
    EXPECT_EQ(scenario.steps[0].pause, 1500ms);
    EXPECT_EQ(scenario.steps[1].delivery, Delivery::SwitchOff);
    EXPECT_EQ(scenario.steps[1].pause, 300ms);
    EXPECT_EQ(scenario.steps[2].delivery, Delivery::Cut);
    EXPECT_EQ(scenario.steps[2].bytes, 18U);
    EXPECT_EQ(scenario.steps[2].pause, 2s);
}

TEST(PauseStatements, Errors) {
    EXPECT_EQ(errorOf("silence"), "line 1: expected a duration at the end of the line");
    EXPECT_EQ(errorOf("silence 1s x"), "line 1: unexpected 'x'");
    EXPECT_EQ(errorOf("rate 0.1\nsilence 8641 frames"), "line 2: a duration is at most a day");
    EXPECT_EQ(errorOf("switch-off 2"), "line 1: expected 'frames', 's' or 'ms' at the end of the line");
    EXPECT_EQ(errorOf(kEarth + "cut 18 off 1s"), "line 2: expected 'after', not '18'");
    EXPECT_EQ(errorOf(kEarth + "cut after 37 off 1s"),
              "line 2: expected a number of bytes from 0 to 36, not '37'");
    EXPECT_EQ(errorOf(kEarth + "cut after 18 bytes"), "line 2: expected 'off' at the end of the line");
}

TEST(GarbageStatement, IsBounded) {
    EXPECT_EQ(parsed("garbage 65536 bytes\n" + kEarth + "show 1s").steps[0].bytes, 65536U);
    EXPECT_EQ(errorOf("garbage 65537"), "line 1: expected a number of bytes from 1 to 65536, not '65537'");
    EXPECT_EQ(errorOf("garbage 0"), "line 1: expected a number of bytes from 1 to 65536, not '0'");
    EXPECT_EQ(errorOf("garbage 5 frames"), "line 1: unexpected 'frames'");
}

TEST(DamageStatement, IsReadInOrder) {
    const auto damages = parsed(kEarth +
                                "damage flip 12\ndamage flip 3 0x01\ndamage drop 35\n"
                                "damage insert 0 126\nshow 1s")
                             .steps.at(0)
                             .damages;
    ASSERT_EQ(damages.size(), 4U);
    EXPECT_EQ(damages[0].kind, DamageKind::Flip);
    EXPECT_EQ(damages[0].place, 12U);
    EXPECT_EQ(damages[0].value, 0xFF);
    EXPECT_EQ(damages[1].value, 0x01);
    EXPECT_EQ(damages[2].kind, DamageKind::Drop);
    EXPECT_EQ(damages[2].place, 35U);
    EXPECT_EQ(damages[3].kind, DamageKind::Insert);
    EXPECT_EQ(damages[3].value, 126);
}

TEST(DamageStatement, Errors) {
    EXPECT_EQ(errorOf("damage"), "line 1: expected 'flip', 'drop' or 'insert' at the end of the line");
    EXPECT_EQ(errorOf("damage burn 1"), "line 1: expected 'flip', 'drop' or 'insert', not 'burn'");
    EXPECT_EQ(errorOf("damage flip 36"), "line 1: expected a byte of the frame from 0 to 35, not '36'");
    EXPECT_EQ(errorOf("damage flip 1 0"), "line 1: expected the bits to flip from 1 to 255, not '0'");
    EXPECT_EQ(errorOf("damage insert 1"), "line 1: expected the byte to insert at the end of the line");
    EXPECT_EQ(errorOf("damage insert 1 256"), "line 1: expected the byte to insert from 0 to 255, not '256'");
    EXPECT_EQ(errorOf("damage drop 1 2"), "line 1: unexpected '2'");
}

TEST(LineStatement, ReplacesTheNoiseBefore) {
    const Scenario scenario =
        parsed(kEarth + "line flip=0.5 insert=1\nshow 1s\nline drop=0.25\nshow 1s\n" + "line clean\nshow 1s");
    EXPECT_EQ(scenario.steps[0].line.flip, 0.5);
    EXPECT_EQ(scenario.steps[0].line.drop, 0);
    EXPECT_EQ(scenario.steps[0].line.insert, 1);
    EXPECT_EQ(scenario.steps[1].line.flip, 0);
    EXPECT_EQ(scenario.steps[1].line.drop, 0.25);
    EXPECT_TRUE(scenario.steps[2].line.clean());
}

TEST(LineStatement, Errors) {
    EXPECT_EQ(errorOf("line"), "line 1: expected 'clean', flip=, drop= or insert= at the end of the line");
    EXPECT_EQ(errorOf("line twist=1"), "line 1: the line has no 'twist'");
    EXPECT_EQ(errorOf("line flip"), "line 1: expected name=value, not 'flip'");
    for (const char* value : {"1.1", "-0.1", "1%"}) {
        EXPECT_EQ(errorOf(std::string{"line flip="} + value),
                  "line 1: flip is a probability from 0 to 1, not '" + std::string{value} + "'");
    }
    EXPECT_EQ(errorOf("line clean flip=1"), "line 1: unexpected 'flip=1'");
}

}  // namespace
}  // namespace kestrix::simulator
