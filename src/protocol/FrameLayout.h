#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The layout of one frame as the tester sends it. The decoder, the documentation's byte ruler and the tests
// read these rows; no offset stands anywhere else.
namespace kestrix::protocol::frame {

struct Row {
    std::size_t first;   // byte position from 0
    std::size_t length;  // bytes
    std::string_view name;

    constexpr std::size_t end() const { return first + length; }
};

inline constexpr std::size_t kLength = 36;         // bytes of a whole frame
inline constexpr std::size_t kDecodedLength = 31;  // bytes that the decoder needs

inline constexpr Row kStart{0, 2, "start bytes 7E 0D"};
inline constexpr Row kStart3{2, 1, "third start byte 1E"};
inline constexpr Row kSetting1{3, 1, "setting 1"};
inline constexpr Row kSetting2{4, 1, "setting 2 or beeper"};
inline constexpr Row kSetting3{5, 1, "setting 3 or lock"};
inline constexpr Row kSetting4{6, 1, "setting 4 or zero"};
inline constexpr Row kTestRunning{7, 1, "test running"};
inline constexpr Row kMarker{8, 2, "marker 55 AA"};
inline constexpr Row kFunction{10, 1, "function code '1' to '6'"};
inline constexpr Row kUnused{11, 1, "not examined"};
inline constexpr Row kReading1{12, 3, "reading 1: magnitude low, high, attribute"};
inline constexpr Row kReading2{15, 3, "reading 2"};
inline constexpr Row kReading3{18, 3, "reading 3"};
inline constexpr Row kReading4{21, 3, "reading 4; its magnitude is also the voltage limit"};
inline constexpr Row kStatus{24, 1, "status"};
inline constexpr Row kNoDataOverload{25, 1, "no data (bits 4-7), overload (bits 0-3)"};
inline constexpr Row kAlarm{26, 1, "alarm (bit 0), test (1), result (2)"};
inline constexpr Row kWireA{27, 2, "wire voltage A: low, high"};
inline constexpr Row kWireB{29, 2, "wire voltage B (L-N): low, high"};
inline constexpr Row kTail{31, 5, "not examined"};

inline constexpr std::array kRows{kStart,          kStart3,      kSetting1, kSetting2, kSetting3,
                                  kSetting4,       kTestRunning, kMarker,   kFunction, kUnused,
                                  kReading1,       kReading2,    kReading3, kReading4, kStatus,
                                  kNoDataOverload, kAlarm,       kWireA,    kWireB,    kTail};

// Values that the frame check wants to see.
inline constexpr std::uint8_t kStart3Value = 0x1E;
inline constexpr std::array<std::uint8_t, 2> kMarkerValue{0x55, 0xAA};

// Status bits.
inline constexpr std::uint8_t kWarningBit = 0x80;
inline constexpr std::uint8_t kLockBit = 0x40;
inline constexpr std::uint8_t kZeroBit = 0x20;
inline constexpr std::uint8_t kBeeperOrWiresBit = 0x08;  // EARTH: beeper; with mains: wire voltages present
inline constexpr std::uint8_t kHoldBit = 0x02;
inline constexpr std::uint8_t kReading3IsLpeBit = 0x01;
inline constexpr std::uint8_t kPictureMask = 0x0F;

// Alarm byte bits.
inline constexpr std::uint8_t kAlarmBit = 0x01;
inline constexpr std::uint8_t kTestBit = 0x02;
inline constexpr std::uint8_t kResultBit = 0x04;

// Attribute byte of a reading.
inline constexpr std::uint8_t kSignOrLimitBit = 0x80;
inline constexpr std::uint8_t kStepMask = 0x0F;  // RCD reading 1: auto-test step

constexpr bool rowsCoverTheFrame() {
    std::size_t at = 0;
    for (const Row& row : kRows) {
        if (row.first != at || row.length == 0) return false;
        at = row.end();
    }
    return at == kLength;
}
static_assert(rowsCoverTheFrame(),
              "rows must follow one another, without a gap or an overlap, to the frame's end");
static_assert(kWireB.end() == kDecodedLength);

}  // namespace kestrix::protocol::frame
