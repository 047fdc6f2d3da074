#include "simulator/FunctionRules.h"

#include <algorithm>

namespace kestrix::simulator {

namespace {

using Name = std::string_view;

constexpr UnitName kOhm[] = {{"ohm", 0}, {"Ω", 0}};
constexpr UnitName kMilliampere[] = {{"mA", 0}};
constexpr UnitName kVolt[] = {{"V", 0}};
constexpr UnitName kInsulation[] = {{"Mohm", 0}, {"MΩ", 0}, {"Gohm", 1}, {"GΩ", 1}};
constexpr UnitName kVoltage[] = {{"V", 1}, {"---", 2}, {"1.2.3", 3}, {"2.1.3", 4}};
constexpr UnitName kFrequency[] = {{"Hz", 0}, {"kHz", 1}, {"none", 3}};
constexpr UnitName kImpedance[] = {{"ohm", 0}, {"Ω", 0}, {"mohm", 1}, {"mΩ", 1}};
constexpr UnitName kFaultCurrent[] = {{"A", 0}, {"kA", 1}, {"none", 3}, {"ohm", 4}, {"Ω", 4}};
constexpr UnitName kLoopFourth[] = {{"Hz", 0}};
constexpr UnitName kTrip[] = {{"ms", 0}, {"mA", 1}, {"none", 3}};
constexpr UnitName kFaultVoltage[] = {{"V", 3}, {"mA", 0}, {"ms", 1}};

constexpr ReadingRule kResistanceReadings[] =  // earth and low ohm
    {{kOhm}, {kMilliampere}};
constexpr ReadingRule kInsulationReadings[] = {{kInsulation}, {kVolt}};
constexpr ReadingRule kVoltageReadings[] = {
    {kVoltage, SignRule::Plain, LimitRule::BelowByUnit}, {kFrequency}, {kVolt}, {kVolt}};
constexpr ReadingRule kLoopReadings[] = {{kImpedance, SignRule::Unsigned, LimitRule::AboveByMark},
                                         {kFaultCurrent, SignRule::Unsigned, LimitRule::AboveByMark},
                                         {kVolt, SignRule::Reversed},
                                         {kLoopFourth, SignRule::Reversed}};
constexpr ReadingRule kRcdReadings[] = {{kTrip, SignRule::Unsigned, LimitRule::AboveByMark, 1},
                                        {kFaultVoltage, SignRule::Unsigned, LimitRule::AboveByMark},
                                        {kVolt},
                                        {kVolt}};

constexpr Name kTestVoltages[] = {"125", "250", "500", "1000"};
constexpr Name kReferences[] = {"0.125", "0.25", "0.5",  "1.0", "2.0", "5.0",
                                "10.0",  "20.0", "50.0", "100", "200"};
constexpr Name kLimits[] = {"0.5", "1.0", "2.0", "5.0", "10.0", "20.0", "50.0", "100.0"};
constexpr Name kVoltageModes[] = {"L-PE", "N-PE", "L-N", "phase"};
constexpr Name kLoopModes[] = {"L-PE", "L-N"};
constexpr Name kLoopCurrents[] = {"no-trip", "high"};
constexpr Name kRcdModes[] = {"auto", "x1/2", "x1", "x2", "x5", "ramp"};
constexpr Name kRcdTypes[] = {"AC-G", "AC-S", "DC-G", "DC-S"};
constexpr Name kAngles[] = {"0", "180"};

constexpr SettingRule kInsulationSettings[] = {{"voltage", 0, kTestVoltages}, {"reference", 3, kReferences}};
constexpr SettingRule kLowOhmSettings[] = {{"limit", 0, kLimits}};
constexpr SettingRule kVoltageSettings[] = {{"mode", 0, kVoltageModes}};
constexpr SettingRule kLoopSettings[] = {{"mode", 0, kLoopModes}, {"current", 1, kLoopCurrents}};
// The trip current depends on the mode: see tripCurrentIndex.
constexpr SettingRule kRcdSettings[] = {
    {"mode", 0, kRcdModes}, {"type", 2, kRcdTypes}, {"angle", 3, kAngles}};

constexpr Name kLongCurrents[] = {"30", "100", "300", "500", "650", "1000", "10"};
constexpr Name kMediumCurrents[] = {"30", "100", "300", "500", "650", "10"};
constexpr Name kShortCurrents[] = {"30", "100", "10"};
constexpr std::span<const Name> kTripCurrents[] = {kLongCurrents,   kLongCurrents,  kLongCurrents,
                                                   kMediumCurrents, kShortCurrents, kMediumCurrents};
static_assert(std::size(kTripCurrents) == std::size(kRcdModes));

constexpr FunctionRules kRules[] = {
    {"earth", {}, kResistanceReadings},
    {"insulation", kInsulationSettings, kInsulationReadings},
    {"low-ohm", kLowOhmSettings, kResistanceReadings},
    {"voltage", kVoltageSettings, kVoltageReadings},
    {"loop", kLoopSettings, kLoopReadings},
    {"rcd", kRcdSettings, kRcdReadings},
};
static_assert(std::size(kRules) == kFunctions);

}  // namespace

const FunctionRules& rulesOf(Function function) {
    return kRules[static_cast<std::size_t>(function)];
}

std::optional<Function> functionNamed(std::string_view name) {
    for (std::size_t i = 0; i < kFunctions; ++i) {
        if (kRules[i].name == name) return static_cast<Function>(i);
    }
    return std::nullopt;
}

std::optional<std::uint8_t> unitCode(const ReadingRule& rule, std::string_view name) {
    for (const UnitName& unit : rule.units) {
        if (unit.name == name) return unit.code;
    }
    constexpr Name kRaw = "code";
    if (name.size() == kRaw.size() + 1 && name.substr(0, kRaw.size()) == kRaw && name.back() >= '0' &&
        name.back() <= '7') {
        return static_cast<std::uint8_t>(name.back() - '0');
    }
    return std::nullopt;
}

std::optional<std::uint8_t> tripCurrentIndex(std::uint8_t mode, std::string_view milliamperes) {
    if (mode >= std::size(kTripCurrents)) return std::nullopt;
    const auto currents = kTripCurrents[mode];
    const auto found = std::find(currents.begin(), currents.end(), milliamperes);
    if (found == currents.end()) return std::nullopt;
    return static_cast<std::uint8_t>(found - currents.begin());
}

}  // namespace kestrix::simulator
