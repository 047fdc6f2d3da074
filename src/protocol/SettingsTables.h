#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "protocol/MeterReading.h"

// The texts of the tester's settings, each table in index order.
namespace kestrix::protocol {

using Texts = std::span<const std::string_view>;

inline constexpr std::array<std::string_view, 4> kInsulationVoltages{"125v", "250v", "500", "1000"};
inline constexpr std::array<std::string_view, 11> kInsulationReferences{
    "0.125MΩ", "0.25MΩ", "0.5MΩ", "1.0MΩ", "2.0MΩ", "5.0MΩ", "10.0MΩ", "20.0MΩ", "50.0MΩ", "100MΩ", "200MΩ"};
inline constexpr std::array<std::string_view, 8> kContinuityLimits{"0.5Ω",  "1.0Ω",  "2.0Ω",  "5.0Ω",
                                                                   "10.0Ω", "20.0Ω", "50.0Ω", "100.0Ω"};
inline constexpr std::array<std::string_view, 2> kOffOn{"OFF", "ON"};
inline constexpr std::array<std::string_view, 2> kZero{"", "PIC_CLRZERO"};
inline constexpr std::array<std::string_view, 4> kVoltageModes{"L-PE", "N-PE", "L-N", "Phase"};
inline constexpr std::uint8_t kVoltageModePhase = 3;
inline constexpr std::array<std::string_view, 2> kLoopModes{"L-PE", "L-N"};
inline constexpr std::array<std::string_view, 2> kLoopCurrents{"NO Trip", "Hi Amp"};
inline constexpr std::array<std::string_view, 6> kRcdModes{"Auto", "X1/2", "X1", "X2", "X5", "RAMP"};
inline constexpr std::array<std::string_view, 7> kRcdCurrentsLong{"30mA",  "100mA",  "300mA", "500mA",
                                                                  "650mA", "1000mA", "10mA"};
inline constexpr std::array<std::string_view, 6> kRcdCurrentsMedium{"30mA",  "100mA", "300mA",
                                                                    "500mA", "650mA", "10mA"};
inline constexpr std::array<std::string_view, 3> kRcdCurrentsShort{"30mA", "100mA", "10mA"};
inline constexpr std::array<Texts, 6> kRcdCurrentsByMode{kRcdCurrentsLong,  kRcdCurrentsLong,
                                                         kRcdCurrentsLong,  kRcdCurrentsMedium,
                                                         kRcdCurrentsShort, kRcdCurrentsMedium};
static_assert(kRcdCurrentsByMode.size() == kRcdModes.size(), "each RCD mode has its currents");
inline constexpr std::array<std::string_view, 4> kRcdTypes{"AC G", "AC S", "DC G", "DC S"};
inline constexpr std::array<std::string_view, 2> kRcdAngles{"0°", "180°"};

// An index beyond its table, which the tester never sends, has the empty text.
constexpr std::string_view textAt(Texts table, std::uint8_t index) {
    return index < table.size() ? table[index] : std::string_view{};
}

// One of the four name/value pairs: the value is the table's text at the record's field.
struct SettingRule {
    std::string_view name{};
    std::uint8_t MeterReading::*index = nullptr;  // none: the value is empty
    Texts values{};
};

enum class LimitTexts : std::uint8_t { None, Loop, Rcd };

// What the texts of one function are made of.
struct DisplayRule {
    std::uint8_t code = 0;    // ASCII
    std::string_view name{};  // strfunction; empty: the value of the first setting is the name
    std::array<SettingRule, 4> settings{};
    bool currentByMode = false;  // the second setting's table depends on the first (RCD)
    std::uint8_t picture = 0;
    bool pictureByStatus = false;
    bool wires = false;  // strNpe, strLpe, strLn
    LimitTexts limits = LimitTexts::None;
};

inline constexpr SettingRule kNoSetting{};
inline constexpr SettingRule kRcdMode{"RCD", &MeterReading::iSubFunc, kRcdModes};
inline constexpr SettingRule kRcdCurrent{"Trip current", &MeterReading::iSubFuncF2, {}};
inline constexpr SettingRule kRcdType{"Type Of RCD", &MeterReading::iSubFuncF3, kRcdTypes};

inline constexpr std::array<DisplayRule, 7> kDisplayRules{{
    {.code = '1',
     .name = "EARTH",
     .settings = {{kNoSetting, kNoSetting, kNoSetting, {"ZERO"}}},
     .picture = 1},
    {.code = '2',
     .name = "INSULATION",
     .settings = {{{"Terminal voltage", &MeterReading::iSubFunc, kInsulationVoltages},
                   {"Beeper", &MeterReading::bBeepFlag, kOffOn},
                   {"Lock", &MeterReading::bLockFlag, kOffOn},
                   {"Reference", &MeterReading::iSubFuncF4, kInsulationReferences}}}},
    {.code = '3',
     .name = "LOW OHM",
     .settings = {{{"Continuty", &MeterReading::iSubFunc, kContinuityLimits},
                   {"Beeper", &MeterReading::bBeepFlag, kOffOn},
                   kNoSetting,
                   {"ZERO", &MeterReading::bCalFlag, kZero}}}},
    {.code = '4',
     .name = "VOLTAGE/PHASE,",
     .settings = {{{"V/Phase", &MeterReading::iSubFunc, kVoltageModes}}},
     .pictureByStatus = true,
     .wires = true},
    {.code = '5',
     .name = "LOOP/PFC",
     .settings = {{{"Loop/PFC", &MeterReading::iSubFunc, kLoopModes},
                   {"Current", &MeterReading::iSubFuncF2, kLoopCurrents},
                   kNoSetting,
                   {"ZERO", &MeterReading::bCalFlag, kZero}}},
     .pictureByStatus = true,
     .wires = true,
     .limits = LimitTexts::Loop},
    {.code = '6',
     .settings = {{kRcdMode, kRcdCurrent, kRcdType, {"0°/180°", &MeterReading::iSubFuncF4, kRcdAngles}}},
     .currentByMode = true,
     .pictureByStatus = true,
     .wires = true,
     .limits = LimitTexts::Rcd},
    {.code = '7',
     .settings = {{kRcdMode, kRcdCurrent, kRcdType, kNoSetting}},
     .currentByMode = true,
     .wires = true,
     .limits = LimitTexts::Rcd},
}};

constexpr const DisplayRule* displayRule(std::uint8_t code) {
    const auto index = static_cast<std::size_t>(code) - '1';
    return index < kDisplayRules.size() ? &kDisplayRules[index] : nullptr;
}

constexpr bool displayRulesStandInCodeOrder() {
    for (const DisplayRule& rule : kDisplayRules) {
        if (displayRule(rule.code) != &rule) return false;
        for (const SettingRule& setting : rule.settings) {
            if (setting.name.empty() && setting.index != nullptr) return false;
        }
    }
    return displayRule(0) == nullptr;
}
static_assert(displayRulesStandInCodeOrder());

// The picture that the status byte's low bits select; 0 (for any other value) leaves the picture as it was.
inline constexpr std::array<std::uint8_t, 16> kPictureByStatus{3, 2, 4, 5};

}  // namespace kestrix::protocol
