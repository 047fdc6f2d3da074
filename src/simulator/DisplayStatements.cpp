#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/Statements.h"

namespace kestrix::simulator::statement {

namespace {

struct Flag {
    std::string_view name;
    bool Display::*member;
};

constexpr std::array<Flag, 9> kFlags = {{{"warning", &Display::warning},
                                         {"lock", &Display::lock},
                                         {"zero", &Display::zero},
                                         {"beeper", &Display::beeper},
                                         {"hold", &Display::hold},
                                         {"alarm", &Display::alarm},
                                         {"result", &Display::result},
                                         {"auto-test", &Display::autoTest},
                                         {"test", &Display::testRunning}}};

// "status0" to "status3": a bit of the status byte that no other word may reach in this function.
bool switchStatusBit(std::string_view name, bool on, Display& display) {
    constexpr std::string_view kPrefix = "status";
    if (name.size() != kPrefix.size() + 1 || name.substr(0, kPrefix.size()) != kPrefix) return false;
    if (name.back() < '0' || name.back() > '3') return false;
    const unsigned bit = 1U << static_cast<unsigned>(name.back() - '0');
    display.moreStatus = static_cast<std::uint8_t>(on ? display.moreStatus | bit : display.moreStatus & ~bit);
    return true;
}

void switchFlags(Words& words, ScenarioBuilder& tester, bool on) {
    const FunctionRules& rules = tester.rules();
    do {
        const std::string_view name = words.take("a flag");
        const auto* flag =
            std::find_if(kFlags.begin(), kFlags.end(), [name](const Flag& f) { return f.name == name; });
        if (flag == kFlags.end()) {
            if (switchStatusBit(name, on, tester.display)) continue;
            throw StatementError{"unknown flag " + inQuotes(name)};
        }
        if (flag->member == &Display::autoTest && tester.display.function != Function::Rcd) {
            throw StatementError{std::string{rules.name} + " has no auto-test"};
        }
        tester.display.*flag->member = on;
    } while (!words.atEnd());
}

// "setting1=7": the raw byte, also one that no tester sends.
bool setRaw(const Pair& pair, ScenarioBuilder& tester) {
    constexpr std::string_view kPrefix = "setting";
    if (pair.name.size() != kPrefix.size() + 1 || pair.name.substr(0, kPrefix.size()) != kPrefix)
        return false;
    if (pair.name.back() < '1' || pair.name.back() > '4') return false;
    const auto place = static_cast<std::size_t>(pair.name.back() - '1');
    tester.display.settings[place] = static_cast<std::uint8_t>(wholeNumber(pair.value, "a setting", 0, 255));
    if (place == 1) tester.tripCurrent.clear();
    return true;
}

void setNamed(const Pair& pair, const FunctionRules& rules, ScenarioBuilder& tester) {
    const auto rule = std::find_if(rules.settings.begin(), rules.settings.end(),
                                   [&pair](const SettingRule& r) { return r.name == pair.name; });
    if (rule == rules.settings.end()) {
        throw StatementError{std::string{rules.name} + " has no setting " + inQuotes(pair.name)};
    }
    const auto value = std::find(rule->values.begin(), rule->values.end(), pair.value);
    if (value == rule->values.end()) {
        throw StatementError{std::string{pair.name} + " cannot be " + inQuotes(pair.value)};
    }
    tester.display.settings[rule->place] = static_cast<std::uint8_t>(value - rule->values.begin());
}

// The index of a trip current depends on the mode, which may stand before or behind it.
void resolveTripCurrent(ScenarioBuilder& tester) {
    if (tester.tripCurrent.empty()) return;
    const auto index = tripCurrentIndex(tester.display.settings[0], tester.tripCurrent);
    if (!index) throw StatementError{"this rcd mode has no current " + inQuotes(tester.tripCurrent)};
    tester.display.settings[1] = *index;
}

void applySettings(Words& words, ScenarioBuilder& tester) {
    const FunctionRules& rules = tester.rules();
    while (!words.atEnd()) {
        const Pair pair = splitPair(words.take("a setting"));
        if (tester.display.function == Function::Rcd && pair.name == "current") {
            tester.tripCurrent = pair.value;
        } else if (!setRaw(pair, tester)) {
            setNamed(pair, rules, tester);
        }
    }
    resolveTripCurrent(tester);
}

}  // namespace

void function(Words& words, ScenarioBuilder& tester) {
    const std::string_view name = words.take("a function");
    const auto function = functionNamed(name);
    if (!function) throw StatementError{"unknown function " + inQuotes(name)};
    tester.choose(*function);
    applySettings(words, tester);
}

void set(Words& words, ScenarioBuilder& tester) {
    tester.rules();
    if (words.atEnd()) words.take("name=value");
    applySettings(words, tester);
}

void on(Words& words, ScenarioBuilder& tester) {
    switchFlags(words, tester, true);
}

void off(Words& words, ScenarioBuilder& tester) {
    switchFlags(words, tester, false);
}

}  // namespace kestrix::simulator::statement
