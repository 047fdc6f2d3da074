#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "protocol/FrameLayout.h"

// How the bytes of a frame become flags, settings and readings: one row per function code.
namespace kestrix::protocol {

// A flag is set when the masked byte equals the wanted value. A mask of 0 never matches: the flag is not set.
struct FlagRule {
    std::size_t byte = 0;
    std::uint8_t mask = 0;
    std::uint8_t wanted = 1;

    constexpr std::uint8_t read(const std::uint8_t* bytes) const {
        return (bytes[byte] & mask) == wanted ? std::uint8_t{1} : std::uint8_t{0};
    }
};
constexpr FlagRule equals(frame::Row row, std::uint8_t value) {
    return {row.first, 0xFF, value};
}
constexpr FlagRule bit(frame::Row row, std::uint8_t mask) {
    return {row.first, mask, mask};
}
inline constexpr FlagRule kNotSet{};

// What a reading's unit code means.
struct UnitMeaning {
    std::string_view unit{};
    bool less = false;    // the value is a limit although bit 7 is the sign
    bool noData = false;  // the code itself says that there is no value
    bool clearsOverload = false;
};
using UnitTable = std::array<UnitMeaning, 8>;

constexpr UnitTable always(std::string_view unit) {
    UnitTable table{};
    for (UnitMeaning& row : table) row.unit = unit;
    return table;
}

enum class SignRule : std::uint8_t {
    Signed,    // bit 7 set: negative
    Reversed,  // bit 7 clear: negative
    Limit,     // bit 7 sets bLess; never negative
};

struct AttributeLayout {
    std::uint8_t unitShift = 4;
    std::uint8_t unitMask = 0x07;
    std::uint8_t decimalsShift = 0;
    std::uint8_t decimalsMask = 0x0F;
};
inline constexpr AttributeLayout kPlainAttribute{};
inline constexpr AttributeLayout kRcdMainAttribute{5, 0x03, 4, 0x01};  // its low bits are the auto-test step

inline constexpr UnitTable kNoUnits{};

struct ReadingRule {
    const UnitTable* units = &kNoUnits;
    SignRule sign = SignRule::Signed;
    AttributeLayout attribute = kPlainAttribute;
};

inline constexpr UnitTable kOhm = always("Ω");
inline constexpr UnitTable kMilliampere = always("mA");
inline constexpr UnitTable kVolt = always("V");
inline constexpr UnitTable kHertz = always("HZ");
inline constexpr UnitTable kBlank = always(" ");
inline constexpr UnitTable kInsulationResistance{
    {{"MΩ"}, {"GΩ"}, {"GΩ"}, {"GΩ"}, {"GΩ"}, {"GΩ"}, {"GΩ"}, {"GΩ"}}};
inline constexpr UnitTable kVoltageOrPhase{{{"V", true}, {"V"}, {"---"}, {"1.2.3"}, {"2.1.3"}, {}, {}, {}}};
inline constexpr UnitTable kFrequency{{{"HZ"}, {"KHZ"}, {"HZ", false, true}, {" "}, {}, {}, {}, {}}};
inline constexpr UnitTable kLoopImpedance{{{"Ω"}, {"mΩ"}, {"Ω", false, true}, {}, {}, {}, {}, {}}};
inline constexpr UnitTable kFaultCurrent{{{"A"}, {"KA"}, {"A", false, true}, {""}, {"Ω"}, {}, {}, {}}};
inline constexpr UnitTable kRcdMain{{{"mS"}, {"mA"}, {"mS", false, true, true}, {}, {}, {}, {}, {}}};
inline constexpr UnitTable kRcdSecond{{{"mA"}, {"mS"}, {"V", false, true}, {"V"}, {}, {}, {}, {}}};

inline constexpr std::array<frame::Row, 4> kSettingRows{frame::kSetting1, frame::kSetting2, frame::kSetting3,
                                                        frame::kSetting4};
inline constexpr std::array<frame::Row, 4> kReadingRows{frame::kReading1, frame::kReading2, frame::kReading3,
                                                        frame::kReading4};

struct FunctionRule {
    std::uint8_t code = 0;           // ASCII
    std::array<bool, 4> settings{};  // which of the setting bytes are settings
    FlagRule beep, cal, lock, test;
    FlagRule rcdTest = kNotSet;  // bTest
    std::array<ReadingRule, 4> readings{};
    bool onMains = false;       // has readings 3 and 4 and the wire voltages
    bool voltageLimit = false;  // has dUl
    bool faultVoltage = false;  // has dUf

    constexpr std::size_t readingCount() const { return onMains ? 4 : 2; }
};

inline constexpr std::uint8_t kEarth = '1', kInsulation = '2', kLowOhm = '3', kVoltagePhase = '4',
                              kLoop = '5', kRcd = '6', kRcdAuto = '7';

// EARTH compares its zero and test bytes with the character '1', all others with the number 1; LOOP/PFC and
// RCD take the beeper from the warning's bit. That is how the tester sends them.
inline constexpr std::array<FunctionRule, 6> kFunctionRules{{
    {.code = kEarth,
     .settings = {},
     .beep = bit(frame::kStatus, frame::kBeeperOrWiresBit),
     .cal = equals(frame::kSetting4, '1'),
     .lock = bit(frame::kStatus, frame::kLockBit),
     .test = equals(frame::kTestRunning, '1'),
     .readings = {{{&kOhm}, {&kMilliampere}}}},
    {.code = kInsulation,
     .settings = {true, false, false, true},
     .beep = equals(frame::kSetting2, 1),
     .cal = bit(frame::kStatus, frame::kZeroBit),
     .lock = equals(frame::kSetting3, 1),
     .test = equals(frame::kTestRunning, 1),
     .readings = {{{&kInsulationResistance}, {&kVolt}}}},
    {.code = kLowOhm,
     .settings = {true, false, false, false},
     .beep = equals(frame::kSetting2, 1),
     .cal = equals(frame::kSetting4, 1),
     .lock = bit(frame::kStatus, frame::kLockBit),
     .test = equals(frame::kTestRunning, 1),
     .readings = {{{&kOhm}, {&kMilliampere}}}},
    {.code = kVoltagePhase,
     .settings = {true, false, false, false},
     .beep = equals(frame::kSetting2, 1),
     .cal = equals(frame::kSetting4, 1),
     .lock = bit(frame::kStatus, frame::kLockBit),
     .test = equals(frame::kTestRunning, 1),
     .readings = {{{&kVoltageOrPhase}, {&kFrequency}, {&kBlank}, {&kBlank}}},
     .onMains = true},
    {.code = kLoop,
     .settings = {true, true, false, false},
     .beep = bit(frame::kStatus, frame::kWarningBit),
     .cal = equals(frame::kSetting4, 1),
     .lock = bit(frame::kStatus, frame::kLockBit),
     .test = equals(frame::kTestRunning, 1),
     .readings = {{{&kLoopImpedance, SignRule::Limit},
                   {&kFaultCurrent, SignRule::Limit},
                   {&kVolt, SignRule::Reversed},
                   {&kHertz, SignRule::Reversed}}},
     .onMains = true,
     .voltageLimit = true},
    {.code = kRcd,
     .settings = {true, true, true, true},
     .beep = bit(frame::kStatus, frame::kWarningBit),
     .cal = bit(frame::kStatus, frame::kZeroBit),
     .lock = bit(frame::kStatus, frame::kLockBit),
     .test = equals(frame::kTestRunning, 1),
     .rcdTest = bit(frame::kAlarm, frame::kTestBit),
     .readings = {{{&kRcdMain, SignRule::Limit, kRcdMainAttribute},
                   {&kRcdSecond, SignRule::Limit},
                   {&kVolt},
                   {&kVolt}}},
     .onMains = true,
     .voltageLimit = true,
     .faultVoltage = true},
}};

inline constexpr std::uint8_t kRcdModeAuto = 0;
inline constexpr std::uint8_t kRcdModeRamp = 5;

constexpr const FunctionRule* functionRule(std::uint8_t code) {
    const auto index = static_cast<std::size_t>(code) - kEarth;
    return index < kFunctionRules.size() ? &kFunctionRules[index] : nullptr;
}

constexpr bool rulesStandInCodeOrder() {
    for (const FunctionRule& rule : kFunctionRules) {
        if (functionRule(rule.code) != &rule) return false;
    }
    return functionRule(0) == nullptr && functionRule(kRcdAuto) == nullptr;
}
static_assert(rulesStandInCodeOrder());

}  // namespace kestrix::protocol
