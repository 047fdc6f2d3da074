#include "apps/kestrix-cli/ReadingTexts.h"

#include <array>

#include "apps/kestrix-cli/TerminalText.h"
#include "display/RcdRows.h"

namespace kestrix::cli {
namespace {

using protocol::MeterReading;
using protocol::ValData;

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string inVolts(std::string_view value) {
    const auto text = trimmed(value);
    return printable(text.ends_with('V') ? text : withUnit(text, "V"));
}

std::string slotText(const ValData& slot) {
    if (slot.OlData != 0) return "OL";
    if (slot.NoData != 0) return "----";
    if (slot.strValD1.empty()) return {};
    return withUnit((slot.bLess != 0 ? ">" : "") + slot.strValD1, slot.strUnitD1);
}

}  // namespace

std::string withUnit(std::string_view value, std::string_view unit) {
    const std::string shownUnit = printable(trimmed(unit));
    std::string text = printable(trimmed(value));
    if (!text.empty() && !shownUnit.empty()) text += ' ';
    return text + shownUnit;
}

std::vector<NamedText> settingsOf(const MeterReading& reading) {
    std::vector<NamedText> settings;
    const auto add = [&settings](const std::string& name, const std::string& value) {
        if (!name.empty()) settings.push_back({printable(name), printable(value)});
    };
    add(reading.strF1Name, reading.strF1Value);
    add(reading.strF2Name, reading.strF2Value);
    add(reading.strF3Name, reading.strF3Value);
    add(reading.strF4Name,
        reading.strF4Name == "ZERO" ? (reading.bCalFlag != 0 ? "ON" : "OFF") : reading.strF4Value);
    return settings;
}

std::vector<NamedText> wiresOf(const MeterReading& reading) {
    if (reading.strLpe.empty() && reading.strNpe.empty() && reading.strLn.empty()) return {};
    return {{"L-PE", inVolts(reading.strLpe)},
            {"N-PE", inVolts(reading.strNpe)},
            {"L-N", inVolts(reading.strLn)}};
}

std::vector<NamedText> limitsOf(const MeterReading& reading) {
    std::vector<NamedText> limits;
    for (const auto* text : {&reading.strUL, &reading.strUF}) {
        const auto colon = text->find(':');
        if (colon == std::string::npos) continue;
        limits.push_back({printable(text->substr(0, colon)), inVolts(text->substr(colon + 1))});
    }
    return limits;
}

std::vector<Symbol> symbolsOf(const MeterReading& reading, bool warning) {
    return {{"HOLD", reading.bHoldFlag != 0, false},
            {"LOCK", reading.bLockFlag != 0, false},
            {"ZERO", reading.bCalFlag != 0, false},
            {"BEEP", reading.bBeepFlag != 0, false},
            {"ALARM", warning, true},
            {"WARN", reading.bWarnFlag != 0, true},
            {"TEST", reading.bTestFlag != 0, false}};
}

std::string rcdRowName(std::size_t row) {
    const display::RcdRowTexts& texts = display::kRcdRowTexts[row];
    const std::string_view angle = trimmed(texts.angle.substr(0, texts.angle.find(':')));
    return std::string(trimmed(texts.multiplier)).append(" ").append(angle);
}

std::vector<NamedText> tripTimesOf(const MeterReading& reading) {
    if (reading.iFunction != '7') return {};
    constexpr std::array<ValData MeterReading::*, display::kRcdRows> slots{
        &MeterReading::x120,  &MeterReading::x12180, &MeterReading::x10,
        &MeterReading::x1180, &MeterReading::x50,    &MeterReading::x5180};
    std::vector<NamedText> tripTimes;
    for (std::size_t i = 0; i < slots.size(); ++i)
        tripTimes.push_back({rcdRowName(i), slotText(reading.*slots[i])});
    return tripTimes;
}

}  // namespace kestrix::cli
