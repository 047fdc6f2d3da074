#include "live/MeasurementTexts.h"

#include <span>

namespace kestrix::live {
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

constexpr Piece kReadings[] = {Reading1, Reading2};
constexpr Piece kVoltageReadings[] = {Reading1, Reading2, WireVoltages};
constexpr Piece kLoopReadings[] = {Reading1, Reading2, WireVoltages, Limit};
constexpr Piece kRcdReading[] = {Phase, Reading1, WireVoltages, FaultAndLimitInVolts};
constexpr Piece kRcdReadings[] = {RcdRows, WireVoltages, FaultAndLimitInVolts};

constexpr FunctionTexts kFunctionTexts[] = {
    {'1', {}, kReadings},
    {'2', kAllSettings, kReadings},
    {'3', kJudgedSettings, kReadings},
    {'4', kFirstSetting, kVoltageReadings},
    {'5', kJudgedSettings, kLoopReadings},
    {'6', kRcdSettings, kRcdReading},
    {'7', kRcdSettings, kRcdReadings},
};

void appendSetting(std::string& text, std::string_view name, std::string_view value) {
    text.append(name).append("=").append(value);
}

void appendRcdRows(std::string& text, const RcdValues& rcd) {
    for (std::size_t row = 0; row < kRcdRows; ++row)
        text += rcdResultText(rcd[row], kRcdRowTexts[row].multiplier, kRcdRowTexts[row].angle);
}

void append(std::string& text, Piece piece, const MeterReading& record, const RcdValues& rcd) {
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
            return appendRcdRows(text, rcd);
    }
}

void appendJoined(std::string& text, std::span<const Piece> pieces, const MeterReading& record,
                  const RcdValues& rcd) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) text += ',';
        append(text, pieces[i], record, rcd);
    }
}

const FunctionTexts* textsOf(std::int32_t function) {
    for (const FunctionTexts& row : kFunctionTexts) {
        if (row.function == function) return &row;
    }
    return nullptr;
}

}  // namespace

bool parametersText(std::int32_t function, const MeterReading& record, std::string& text) {
    const FunctionTexts* row = textsOf(function);
    if (row == nullptr) return false;
    text.clear();
    appendJoined(text, row->parameters, record, {});
    return true;
}

std::string resultsText(std::int32_t function, const MeterReading& record, const RcdValues& rcd) {
    std::string text;
    if (const FunctionTexts* row = textsOf(function)) appendJoined(text, row->results, record, rcd);
    return text;
}

std::string rcdResultText(std::string_view value, std::string_view multiplier, std::string_view angle) {
    std::string text;
    text.append(multiplier).append(" ").append(angle);
    if (value != "----") text.append(value);
    return text.append("ms,");
}

}  // namespace kestrix::live
