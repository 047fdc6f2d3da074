#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "simulator/Display.h"
#include "simulator/Motion.h"

// What each function of the tester can show, in the words of a scenario.
namespace kestrix::simulator {

// How "the value is a limit" is sent.
enum class LimitRule : std::uint8_t {
    None,
    AboveByMark,  // '>' by the attribute's top bit
    BelowByUnit,  // '<' by unit code 0
};

struct UnitName {
    std::string_view name;
    std::uint8_t code;
};

struct ReadingRule {
    std::span<const UnitName> units;  // the first is the usual one
    SignRule sign = SignRule::Plain;
    LimitRule limit = LimitRule::None;
    unsigned maxDecimals = 15;
};

struct SettingRule {
    std::string_view name;
    std::size_t place;                         // 0 to 3
    std::span<const std::string_view> values;  // the value's index is what is sent
};

struct FunctionRules {
    std::string_view name;
    std::span<const SettingRule> settings;
    std::span<const ReadingRule> readings;
};

const FunctionRules& rulesOf(Function function);
std::optional<Function> functionNamed(std::string_view name);

// The unit code of a name that the reading knows, or of "code0" to "code7" with any reading.
std::optional<std::uint8_t> unitCode(const ReadingRule& rule, std::string_view name);

// The index that says this trip current (in mA) in an RCD mode; each mode has its own list.
std::optional<std::uint8_t> tripCurrentIndex(std::uint8_t mode, std::string_view milliamperes);

}  // namespace kestrix::simulator
