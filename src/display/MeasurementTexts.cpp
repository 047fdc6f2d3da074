#include "display/MeasurementTexts.h"

#include <cstdint>
#include <span>

namespace kestrix::display {
namespace {

using protocol::MeterReading;

// The pieces that the stored texts are made of; each row below is a list of them, joined by commas.
enum class Piece : std::uint8_t {
    Setting1,  // name=value
    Setting2,
    Setting3,
    Setting4,
    Verdict,   // setting 4 with OK or NG in place of its value
    Reading1,  // value and unit
    Reading2,
    Phase,
    WireVoltages,
    Limit,  // its text holds the unit
    FaultAndLimitInVolts,
    RcdRows,  // each ends in a comma of its own
};

struct FunctionTexts {
    std::int32_t function;
    std::span<const Piece> parameters;
    std::span<const Piece> results;
};

using enum Piece;
constexpr Piece kAllSettings[] = {Setting1, Setting2, Setting3, Setting4};
constexpr Piece kJudgedSettings[] = {Setting1, Setting2, Verdict};
constexpr Piece kFirstSetting[] = {Setting1};
constexpr Piece kRcdSettings[] = {Setting2, Setting3};

constexpr Piece kReadingPieces[] = {Reading1, Reading2};
constexpr Piece kVoltageReadings[] = {Reading1, Reading2, WireVoltages};
constexpr Piece kLoopReadings[] = {Reading1, Reading2, WireVoltages, Limit};
constexpr Piece kRcdReading[] = {Phase, Reading1, WireVoltages, FaultAndLimitInVolts};
constexpr Piece kRcdReadings[] = {RcdRows, WireVoltages, FaultAndLimitInVolts};

constexpr FunctionTexts kFunctionTexts[] = {
    {'1', {}, kReadingPieces},
    {'2', kAllSettings, kReadingPieces},
    {'3', kJudgedSettings, kReadingPieces},
    {'4', kFirstSetting, kVoltageReadings},
    {'5', kJudgedSettings, kLoopReadings},
    {'6', kRcdSettings, kRcdReading},
    {'7', kRcdSettings, kRcdReadings},
};

void appendSetting(std::string& text, std::string_view name, std::string_view value) {
    text.append(name).append("=").append(value);
}

void appendRcdRows(std::string& text, const Display& display) {
    for (std::size_t row = 0; row < kRcdRows; ++row)
        appendRcdResult(text, display.rcdRows[row].value, kRcdRowTexts[row].multiplier,
                        kRcdRowTexts[row].angle);
}

void append(std::string& text, Piece piece, const MeterReading& record, const Display& display) {
    switch (piece) {
        case Setting1:
            return appendSetting(text, record.strF1Name, record.strF1Value);
        case Setting2:
            return appendSetting(text, record.strF2Name, record.strF2Value);
        case Setting3:
            return appendSetting(text, record.strF3Name, record.strF3Value);
        case Setting4:
            return appendSetting(text, record.strF4Name, record.strF4Value);
        case Verdict:
            return appendSetting(text, record.strF4Name, record.strF4Value.empty() ? "NG" : "OK");
        case Reading1:
            text.append(record.strValue1).append(record.strUnit1);
            return;
        case Reading2:
            text.append(record.strValue2).append(record.strUnit2);
            return;
        case Phase:
            return appendSetting(text, "Phase", record.strF4Value);
        case WireVoltages:
            text.append("L-PE=").append(record.strLpe).append("V,");
            text.append("N-PE=").append(record.strNpe).append("V,");
            text.append("L-N=").append(record.strLn).append("V");
            return;
        case Limit:
            text.append(record.strUL);
            return;
        case FaultAndLimitInVolts:
            text.append(record.strUF).append("V,").append(record.strUL).append("V");
            return;
        case RcdRows:
            return appendRcdRows(text, display);
    }
}

void appendJoined(std::string& text, std::span<const Piece> pieces, const MeterReading& record,
                  const Display& display) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) text += ',';
        append(text, pieces[i], record, display);
    }
}

const FunctionTexts* functionTexts(std::int32_t function) {
    for (const FunctionTexts& row : kFunctionTexts) {
        if (row.function == function) return &row;
    }
    return nullptr;
}

}  // namespace

void describeMeasurement(Display& display, const MeterReading& record) {
    display.results.clear();
    const FunctionTexts* row = functionTexts(record.iFunction);
    if (row == nullptr) return;
    display.parameters.clear();
    appendJoined(display.parameters, row->parameters, record, display);
    appendJoined(display.results, row->results, record, display);
}

void appendRcdResult(std::string& text, std::string_view value, std::string_view multiplier,
                     std::string_view angle) {
    text.append(multiplier).append(" ").append(angle);
    if (value != "----") text.append(value);
    text.append(kRcdUnit).append(",");
}

}  // namespace kestrix::display
