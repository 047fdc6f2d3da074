#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/MeterReading.h"

namespace kestrix::cli {

// A reading's content as a terminal shows it. All texts are printable (TerminalText.h).

struct NamedText {
    std::string name;
    std::string value;
};

struct Symbol {
    std::string_view name;
    bool lit;
    bool urgent;  // stands out more than the others
};

// "0.39 Ω": a value and its unit with a blank between them, or the one of them that is there.
std::string withUnit(std::string_view value, std::string_view unit);

// The settings that the function has. ZERO, whose value is a picture elsewhere, is ON or OFF.
std::vector<NamedText> settingsOf(const protocol::MeterReading& reading);

// L-PE, N-PE and L-N, for the functions that measure them; and the limit and fault voltage.
std::vector<NamedText> wiresOf(const protocol::MeterReading& reading);
std::vector<NamedText> limitsOf(const protocol::MeterReading& reading);

// HOLD, LOCK, ZERO, BEEP, ALARM, WARN, TEST: always all of them, in this order. warning: whether ALARM is
// lit.
std::vector<Symbol> symbolsOf(const protocol::MeterReading& reading, bool warning);

// The name of a row of the RCD display, 0 to 5: "x1/2 0°" to "x5 180°".
std::string rcdRowName(std::size_t row);

// The six slots of an RCD auto test, named "x1/2 0°" to "x5 180°"; the value is empty where the reading has
// none. Nothing in every other function.
std::vector<NamedText> tripTimesOf(const protocol::MeterReading& reading);

}  // namespace kestrix::cli
