#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kestrix::simulator {

inline constexpr std::size_t kReadings = 4;
inline constexpr std::size_t kSettings = 4;

enum class Function : std::uint8_t { Earth, Insulation, LowOhm, Voltage, Loop, Rcd };
inline constexpr std::size_t kFunctions = 6;

// One reading as it stands on the display.
struct Reading {
    std::uint16_t magnitude = 0;  // the digits without their decimal point
    std::uint8_t decimals = 0;    // 0 to 15; the first RCD reading has 0 or 1
    bool marked = false;          // the attribute's top bit: a sign, or "this is a limit", by function
    std::uint8_t unitCode = 0;    // 0 to 7; the first RCD reading has 0 to 3
    bool noData = false;          // dashes
    bool overload = false;        // "OL"

    bool operator==(const Reading&) const = default;
};

// What a tester tells about itself in one frame. A flag that its function has no place for is not sent.
struct Display {
    Function function = Function::Earth;
    std::array<std::uint8_t, kSettings>
        settings{};  // raw table indexes; one whose byte a flag takes is not sent
    std::array<Reading, kReadings> readings{};

    bool warning = false;
    bool lock = false;
    bool zero = false;
    bool beeper = false;
    bool hold = false;
    bool alarm = false;
    bool result = false;       // pass / fail of a test
    bool autoTest = false;     // the RCD automatic sequence is under way
    bool testRunning = false;  // the test button is at work

    bool wiresPresent = false;    // voltage, loop and RCD: the third reading and both below are wire voltages
    bool thirdIsLinePe = true;    // the third reading is L-PE and A is N-PE; otherwise the other way round
    std::uint16_t wireA = 0;      // volts
    std::uint16_t wireB = 0;      // L-N, volts
    std::uint8_t autoStep = 0;    // RCD: 0 to 15
    std::uint8_t moreStatus = 0;  // further bits set in the status byte
};

}  // namespace kestrix::simulator
