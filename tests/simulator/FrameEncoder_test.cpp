#include "simulator/FrameEncoder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace kestrix::simulator {
namespace {

// Each frame below is worked out by hand, in the order of its bytes: start (3), settings (4), test, marker
// (2), function, unused, four readings (3 each: low, high, attribute), status, missing, result, wires A and B
// (2 each), unused (5).

TEST(FrameEncoder, Earth) {
    Display d;
    d.function = Function::Earth;
    d.readings[0] = {.magnitude = 143, .decimals = 1};  // 14.3: 143 = 0x008F; one decimal
    d.readings[1] = {.magnitude = 25, .decimals = 1};   // 2.5: 0x0019
    d.zero = d.testRunning = true;                      // '1' = 0x31 in bytes 6 and 7
    d.warning = d.lock = d.beeper = d.hold = true;      // 0x80 + 0x40 + 0x08 + 0x02 = 0xCA
    d.alarm = d.result = true;                          // 0x01 + 0x04
    const Frame expected = {0x7E, 0x0D, 0x1E, 0x00, 0x00, 0x00, 0x31, 0x31, 0x55, 0xAA, 0x31, 0x00,
                            0x8F, 0x00, 0x01, 0x19, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                            0xCA, 0x00, 0x05, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(encodeFrame(d), expected);
}

TEST(FrameEncoder, Insulation) {
    Display d;
    d.function = Function::Insulation;
    d.settings = {3, 0x77, 0x77, 10};                                  // the middle two belong to flags here
    d.readings[0] = {.magnitude = 185, .decimals = 2, .unitCode = 1};  // 1.85 GΩ: 0x00B9; 0x10 + 2
    d.readings[1] = {.magnitude = 1045, .overload = true};             // 1045 = 0x0415; overload bit 1
    d.beeper = d.lock = d.testRunning = true;                          // 1 in bytes 4, 5 and 7
    d.zero = d.warning = true;                                         // 0x20 + 0x80
    const Frame expected = {0x7E, 0x0D, 0x1E, 0x03, 0x01, 0x01, 0x0A, 0x01, 0x55, 0xAA, 0x32, 0x00,
                            0xB9, 0x00, 0x12, 0x15, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                            0xA0, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(encodeFrame(d), expected);
}

TEST(FrameEncoder, LowOhm) {
    Display d;
    d.function = Function::LowOhm;
    d.settings = {2, 0x77, 0, 0x77};
    d.readings[0] = {.magnitude = 2, .decimals = 2, .marked = true};  // -0.02: 0x80 + 2
    d.readings[1] = {.magnitude = 206, .noData = true};               // 0x00CE; no-data bit 5
    d.beeper = d.zero = true;                                         // 1 in bytes 4 and 6
    d.lock = true;                                                    // 0x40
    const Frame expected = {0x7E, 0x0D, 0x1E, 0x02, 0x01, 0x00, 0x01, 0x00, 0x55, 0xAA, 0x33, 0x00,
                            0x02, 0x00, 0x82, 0xCE, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                            0x40, 0x20, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(encodeFrame(d), expected);
}

TEST(FrameEncoder, VoltageWithLinePeAsThirdReading) {
    Display d;
    d.function = Function::Voltage;
    d.settings = {3, 0, 0, 0};
    d.readings[0] = {.magnitude = 400, .unitCode = 3};   // 0x0190, phase order 1.2.3: 0x30
    d.readings[1] = {.magnitude = 500, .decimals = 1};   // 50.0: 0x01F4
    d.readings[2] = {.magnitude = 2304, .decimals = 1};  // 230.4: 0x0900
    d.readings[3].noData = true;                         // no-data bit 7
    d.beeper = d.zero = true;                            // 1 in bytes 4 and 6
    d.wiresPresent = d.thirdIsLinePe = true;             // 0x08 + 0x01
    d.hold = true;                                       // 0x02
    d.wireA = 1;
    d.wireB = 229;  // 0x00E5
    d.alarm = true;
    const Frame expected = {0x7E, 0x0D, 0x1E, 0x03, 0x01, 0x00, 0x01, 0x00, 0x55, 0xAA, 0x34, 0x00,
                            0x90, 0x01, 0x30, 0xF4, 0x01, 0x01, 0x00, 0x09, 0x01, 0x00, 0x00, 0x00,
                            0x0B, 0x80, 0x01, 0x01, 0x00, 0xE5, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(encodeFrame(d), expected);
}

TEST(FrameEncoder, Loop) {
    Display d;
    d.function = Function::Loop;
    d.settings = {1, 1, 0, 0};
    d.readings[0] = {.magnitude = 55, .decimals = 2};  // 0.55: 0x0037
    d.readings[1] = {
        .magnitude = 200, .decimals = 1, .marked = true, .unitCode = 1};  // >20.0 kA: 0x80+0x10+1
    d.readings[2] = {.magnitude = 230, .marked = true};                   // 0x00E6
    d.readings[3] = {.magnitude = 50, .marked = true};                    // 0x0032
    d.zero = d.testRunning = true;                                        // 1 in bytes 6 and 7
    d.beeper = d.lock = true;                                             // 0x80 + 0x40
    d.wiresPresent = d.thirdIsLinePe = true;                              // 0x09
    d.wireB = 231;                                                        // 0x00E7
    d.result = true;
    const Frame expected = {0x7E, 0x0D, 0x1E, 0x01, 0x01, 0x00, 0x01, 0x01, 0x55, 0xAA, 0x35, 0x00,
                            0x37, 0x00, 0x02, 0xC8, 0x00, 0x91, 0xE6, 0x00, 0x80, 0x32, 0x00, 0x80,
                            0xC9, 0x00, 0x04, 0x00, 0x00, 0xE7, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(encodeFrame(d), expected);
}

TEST(FrameEncoder, RcdWithNeutralPeAsThirdReading) {
    Display d;
    d.function = Function::Rcd;
    d.settings = {2, 2, 3, 1};
    // >23.6 mA in step 7: 236 = 0x00EC; limit 0x80, unit 1 in bits 6-5 0x20, one decimal in bit 4 0x10, 7.
    d.readings[0] = {.magnitude = 236, .decimals = 1, .marked = true, .unitCode = 1};
    d.autoStep = 7;
    d.readings[1] = {.magnitude = 4, .decimals = 1, .unitCode = 3, .overload = true};  // 0.4 V: 0x30 + 1
    d.readings[2] = {.magnitude = 1, .noData = true};
    d.readings[3] = {.magnitude = 50};
    d.testRunning = true;
    d.zero = d.warning = true;  // 0x20 + 0x80
    d.wiresPresent = true;      // 0x08
    d.thirdIsLinePe = false;
    d.wireA = 300;    // 0x012C
    d.wireB = 65535;  // 0xFFFF
    d.alarm = d.autoTest = d.result = true;
    const Frame expected = {0x7E, 0x0D, 0x1E, 0x02, 0x02, 0x03, 0x01, 0x01, 0x55, 0xAA, 0x36, 0x00,
                            0xEC, 0x00, 0xB7, 0x04, 0x00, 0x31, 0x01, 0x00, 0x00, 0x32, 0x00, 0x00,
                            0xA8, 0x42, 0x07, 0x2C, 0x01, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(encodeFrame(d), expected);
}

struct FlagCase {
    const char* name;
    bool Display::*flag;
    // By function, earth to RCD: the byte and what it becomes; byte 0 says that nothing is sent.
    std::array<std::pair<std::size_t, std::uint8_t>, kFunctions> places;
};

const FlagCase kFlagCases[] = {
    {"warning",
     &Display::warning,
     {{{24, 0x80}, {24, 0x80}, {24, 0x80}, {24, 0x80}, {24, 0x80}, {24, 0x80}}}},
    {"lock", &Display::lock, {{{24, 0x40}, {5, 0x01}, {24, 0x40}, {24, 0x40}, {24, 0x40}, {24, 0x40}}}},
    {"zero", &Display::zero, {{{6, 0x31}, {24, 0x20}, {6, 0x01}, {6, 0x01}, {6, 0x01}, {24, 0x20}}}},
    {"beeper", &Display::beeper, {{{24, 0x08}, {4, 0x01}, {4, 0x01}, {4, 0x01}, {24, 0x80}, {24, 0x80}}}},
    {"hold", &Display::hold, {{{24, 0x02}, {24, 0x02}, {24, 0x02}, {24, 0x02}, {24, 0x02}, {24, 0x02}}}},
    {"alarm", &Display::alarm, {{{26, 0x01}, {26, 0x01}, {26, 0x01}, {26, 0x01}, {26, 0x01}, {26, 0x01}}}},
    {"result", &Display::result, {{{26, 0x04}, {26, 0x04}, {26, 0x04}, {26, 0x04}, {26, 0x04}, {26, 0x04}}}},
    {"autoTest", &Display::autoTest, {{{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {26, 0x02}}}},
    {"test", &Display::testRunning, {{{7, 0x31}, {7, 0x01}, {7, 0x01}, {7, 0x01}, {7, 0x01}, {7, 0x01}}}},
    {"wires", &Display::wiresPresent, {{{0, 0}, {0, 0}, {0, 0}, {24, 0x09}, {24, 0x09}, {24, 0x09}}}},
};

TEST(FrameEncoder, EachFlagChangesItsOwnByteAlone) {
    for (const FlagCase& test : kFlagCases) {
        for (std::size_t f = 0; f < kFunctions; ++f) {
            Display d;
            d.function = static_cast<Function>(f);
            Frame expected = encodeFrame(d);
            const auto [byte, value] = test.places[f];
            if (byte != 0) {
                ASSERT_EQ(expected[byte], 0);
                expected[byte] = value;
            }
            d.*test.flag = true;
            EXPECT_EQ(encodeFrame(d), expected) << test.name << " in function " << f + 1;
        }
    }
}

TEST(FrameEncoder, SettingsStandWhereNoFlagTakesTheirByte) {
    const std::array<std::array<std::uint8_t, 4>, kFunctions> expected = {
        {{1, 2, 3, 0}, {1, 0, 0, 4}, {1, 0, 3, 0}, {1, 0, 3, 0}, {1, 2, 3, 0}, {1, 2, 3, 4}}};
    for (std::size_t f = 0; f < kFunctions; ++f) {
        Display d;
        d.function = static_cast<Function>(f);
        d.settings = {1, 2, 3, 4};
        const Frame frame = encodeFrame(d);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(frame[3 + i], expected[f][i]) << f + 1 << " setting " << i + 1;
    }
}

TEST(FrameEncoder, MissingBitsOfEachReading) {
    for (std::size_t i = 0; i < kReadings; ++i) {
        Display d;
        d.readings[i].noData = true;
        EXPECT_EQ(encodeFrame(d)[25], 0x10 << i);
        d.readings[i] = {.overload = true};
        EXPECT_EQ(encodeFrame(d)[25], 0x01 << i);
    }
}

TEST(FrameEncoder, FieldsAreCutToTheirBits) {
    Display d;
    d.readings[1] = {.decimals = 0xFF, .unitCode = 0xFF};
    EXPECT_EQ(encodeFrame(d)[17], 0x7F);
    d.function = Function::Rcd;
    d.readings[0] = {.decimals = 0xFF, .unitCode = 0xFF};
    d.autoStep = 0xFF;
    EXPECT_EQ(encodeFrame(d)[14], 0x7F);
}

TEST(FrameEncoder, MoreStatusBitsJoinTheStatus) {
    Display d;
    d.function = Function::Voltage;
    d.moreStatus = 0x04;
    d.hold = true;
    EXPECT_EQ(encodeFrame(d)[24], 0x06);
}

}  // namespace
}  // namespace kestrix::simulator
