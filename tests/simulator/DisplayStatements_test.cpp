#include <gtest/gtest.h>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

std::array<std::uint8_t, 4> settingsOf(const std::string& lines) {
    return parsed(lines + "\nshow 1 frame").steps.at(0).display.settings;
}

using Settings = std::array<std::uint8_t, 4>;

TEST(FunctionStatement, TakesTheSettingsOfEachFunction) {
    EXPECT_EQ(settingsOf("function earth"), (Settings{0, 0, 0, 0}));
    EXPECT_EQ(settingsOf("function insulation voltage=1000 reference=200"), (Settings{3, 0, 0, 10}));
    EXPECT_EQ(settingsOf("function low-ohm limit=100.0"), (Settings{7, 0, 0, 0}));
    EXPECT_EQ(settingsOf("function voltage mode=phase"), (Settings{3, 0, 0, 0}));
    EXPECT_EQ(settingsOf("function loop current=high mode=L-N"), (Settings{1, 1, 0, 0}));
    EXPECT_EQ(settingsOf("function rcd mode=ramp current=650 type=DC-G angle=180"), (Settings{5, 4, 2, 1}));
}

TEST(FunctionStatement, SendsItsCode) {
    const char* const names[] = {"earth", "insulation", "low-ohm", "voltage", "loop", "rcd"};
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(frameOf("function " + std::string{names[i]} + "\nshow 1 frame")[10], '1' + i);
    }
}

TEST(FunctionStatement, FindsTheCurrentInTheListOfTheModeInAnyOrder) {
    EXPECT_EQ(settingsOf("function rcd current=10 mode=x5"), (Settings{4, 2, 0, 0}));
    EXPECT_EQ(settingsOf("function rcd mode=auto current=10"), (Settings{0, 6, 0, 0}));
    EXPECT_EQ(settingsOf("function rcd mode=auto current=10\nset mode=x2"), (Settings{3, 5, 0, 0}));
    EXPECT_EQ(errorOf("function rcd mode=auto current=300\nset mode=x5"),
              "line 2: this rcd mode has no current '300'");
}

TEST(FunctionStatement, Errors) {
    EXPECT_EQ(errorOf("function"), "line 1: expected a function at the end of the line");
    EXPECT_EQ(errorOf("function FOO"), "line 1: unknown function 'FOO'");
    EXPECT_EQ(errorOf("function earth limit=2.0"), "line 1: earth has no setting 'limit'");
    EXPECT_EQ(errorOf("function low-ohm limit=3"), "line 1: limit cannot be '3'");
    EXPECT_EQ(errorOf("function low-ohm 2.0"), "line 1: expected name=value, not '2.0'");
}

TEST(SetStatement, KeepsTheRest) {
    EXPECT_EQ(settingsOf("function loop mode=L-N\nset current=high"), (Settings{1, 1, 0, 0}));
    const Bytes frame = frameOf("function low-ohm\nreading 1 0.46\non lock\nset limit=2.0\nshow 1 frame");
    EXPECT_EQ(magnitudeIn(frame, 1), 46);
    EXPECT_EQ(frame[24], 0x40);
}

TEST(SetStatement, TakesRawBytes) {
    EXPECT_EQ(settingsOf("function rcd setting1=6 setting2=0xFF setting3=7 setting4=255"),
              (Settings{6, 255, 7, 255}));
    EXPECT_EQ(settingsOf("function rcd current=10 setting2=9\nset mode=x5"), (Settings{4, 9, 0, 0}));
    EXPECT_EQ(errorOf("function rcd setting1=256"), "line 1: expected a setting from 0 to 255, not '256'");
    EXPECT_EQ(errorOf("function rcd setting5=1"), "line 1: rcd has no setting 'setting5'");
    EXPECT_EQ(errorOf("function rcd setting1=6 current=30"), "line 1: this rcd mode has no current '30'");
}

TEST(SetStatement, Errors) {
    EXPECT_EQ(errorOf("function rcd\nset"), "line 2: expected name=value at the end of the line");
    EXPECT_EQ(errorOf("function rcd\nset mode=x3"), "line 2: mode cannot be 'x3'");
}

struct FlagWord {
    const char* word;
    std::size_t byte;
    std::uint8_t value;  // in the RCD function
};

TEST(FlagStatements, SwitchEachFlagOnAndOff) {
    constexpr FlagWord kWords[] = {{"warning", 24, 0x80}, {"lock", 24, 0x40},      {"zero", 24, 0x20},
                                   {"beeper", 24, 0x80},  {"hold", 24, 0x02},      {"alarm", 26, 0x01},
                                   {"result", 26, 0x04},  {"auto-test", 26, 0x02}, {"test", 7, 0x01},
                                   {"status0", 24, 0x01}, {"status1", 24, 0x02},   {"status2", 24, 0x04},
                                   {"status3", 24, 0x08}};
    const Bytes plain = frameOf("function rcd\nshow 1 frame");
    for (const FlagWord& flag : kWords) {
        const std::string on = std::string{"function rcd\non "} + flag.word;
        Bytes expected = plain;
        expected[flag.byte] = flag.value;
        EXPECT_EQ(frameOf(on + "\nshow 1 frame"), expected) << flag.word;
        EXPECT_EQ(frameOf(on + "\noff " + flag.word + "\nshow 1 frame"), plain) << flag.word;
    }
}

TEST(FlagStatements, TakeSeveral) {
    EXPECT_EQ(frameOf("function rcd\non lock alarm hold\noff lock hold\nshow 1 frame")[24], 0);
    EXPECT_EQ(frameOf("function rcd\non lock alarm hold\noff lock\nshow 1 frame")[24], 0x02);
}

TEST(FlagStatements, Errors) {
    EXPECT_EQ(errorOf("function rcd\non"), "line 2: expected a flag at the end of the line");
    EXPECT_EQ(errorOf("function rcd\noff light"), "line 2: unknown flag 'light'");
    EXPECT_EQ(errorOf("function rcd\non status4"), "line 2: unknown flag 'status4'");
    EXPECT_EQ(errorOf("function loop\non auto-test"), "line 2: loop has no auto-test");
}

}  // namespace
}  // namespace kestrix::simulator
