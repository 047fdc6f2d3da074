#pragma once

#include <array>
#include <charconv>
#include <functional>
#include <map>
#include <string>

#include "protocol/MeterReading.h"

// The fields of a record by their names, as texts.
namespace kestrix::testing {

using protocol::MeterReading;
using protocol::ValData;

using Getter = std::function<std::string(const MeterReading&)>;

inline std::string shown(double number) {
    if (number == 0) return "";
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

#define KESTRIX_NUMBER(name)                                       \
    {                                                              \
#name, [](const MeterReading& r) { return shown(r.name); } \
    }
#define KESTRIX_TEXT(name)                                  \
    {                                                       \
#name, [](const MeterReading& r) { return r.name; } \
    }

// Every field but the readings' own: the number as the document writes it, empty when it is 0.
inline const std::map<std::string, Getter>& fields() {
    static const std::map<std::string, Getter> all{
        {"iFunction",
         [](const MeterReading& r) {
             return r.iFunction == 0 ? "" : std::string(1, static_cast<char>(r.iFunction));
         }},
        KESTRIX_NUMBER(bWarnFlag),
        KESTRIX_NUMBER(bCalFlag),
        KESTRIX_NUMBER(bBeepFlag),
        KESTRIX_NUMBER(bHoldFlag),
        KESTRIX_NUMBER(bLockFlag),
        KESTRIX_NUMBER(bAlarmFlag),
        KESTRIX_NUMBER(bHighFlag),
        KESTRIX_NUMBER(bTestFlag),
        KESTRIX_NUMBER(bTestRet),
        KESTRIX_NUMBER(bTest),
        KESTRIX_NUMBER(iSubFunc),
        KESTRIX_NUMBER(iSubFuncF2),
        KESTRIX_NUMBER(iSubFuncF3),
        KESTRIX_NUMBER(iSubFuncF4),
        KESTRIX_NUMBER(dLpe),
        KESTRIX_NUMBER(dNpe),
        KESTRIX_NUMBER(dLn),
        KESTRIX_NUMBER(dUf),
        KESTRIX_NUMBER(dUl),
        KESTRIX_TEXT(strfunction),
        KESTRIX_TEXT(strValue1),
        KESTRIX_TEXT(strValue2),
        KESTRIX_TEXT(strUnit1),
        KESTRIX_TEXT(strUnit2),
        KESTRIX_TEXT(strF1Name),
        KESTRIX_TEXT(strF1Value),
        KESTRIX_TEXT(strF2Name),
        KESTRIX_TEXT(strF2Value),
        KESTRIX_TEXT(strF3Name),
        KESTRIX_TEXT(strF3Value),
        KESTRIX_TEXT(strF4Name),
        KESTRIX_TEXT(strF4Value),
        KESTRIX_TEXT(strRCD1),
        KESTRIX_TEXT(strRCD2),
        KESTRIX_TEXT(strRCD3),
        KESTRIX_TEXT(strRCD4),
        KESTRIX_TEXT(strRCD5),
        KESTRIX_TEXT(strRCD6),
        KESTRIX_TEXT(strNpe),
        KESTRIX_TEXT(strLpe),
        KESTRIX_TEXT(strLn),
        KESTRIX_TEXT(strUL),
        KESTRIX_TEXT(strUF),
        KESTRIX_NUMBER(bottompicIndex)};
    return all;
}

#undef KESTRIX_NUMBER
#undef KESTRIX_TEXT

using Slot = ValData MeterReading::*;
inline const std::map<std::string, Slot> kSlots{
    {"ValData1", &MeterReading::ValData1}, {"ValData2", &MeterReading::ValData2},
    {"ValData3", &MeterReading::ValData3}, {"ValData4", &MeterReading::ValData4},
    {"x120", &MeterReading::x120},         {"x12180", &MeterReading::x12180},
    {"x10", &MeterReading::x10},           {"x1180", &MeterReading::x1180},
    {"x50", &MeterReading::x50},           {"x5180", &MeterReading::x5180}};

inline const std::map<std::string, std::string (*)(const ValData&)> kSlotFields{
    {"ValD1", [](const ValData& d) { return shown(d.ValD1); }},
    {"strValD1", [](const ValData& d) { return d.strValD1; }},
    {"pointPosD1", [](const ValData& d) { return shown(d.pointPosD1); }},
    {"strUnitD1", [](const ValData& d) { return d.strUnitD1; }},
    {"NoData", [](const ValData& d) { return shown(d.NoData); }},
    {"OlData", [](const ValData& d) { return shown(d.OlData); }},
    {"bLess", [](const ValData& d) { return shown(d.bLess); }}};

inline std::string fieldOf(const MeterReading& record, const std::string& name) {
    const std::size_t dot = name.find('.');
    if (dot == std::string::npos) return fields().at(name)(record);
    return kSlotFields.at(name.substr(dot + 1))(record.*kSlots.at(name.substr(0, dot)));
}

}  // namespace kestrix::testing
