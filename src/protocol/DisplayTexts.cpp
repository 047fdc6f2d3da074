#include "protocol/DisplayTexts.h"

#include <initializer_list>
#include <string_view>

#include "protocol/FixedPointText.h"
#include "protocol/FrameLayout.h"
#include "protocol/FunctionRules.h"
#include "protocol/SettingsTables.h"

namespace kestrix::protocol {
namespace {

struct SettingField {
    std::string MeterReading::*name;
    std::string MeterReading::*value;
};
constexpr std::array<SettingField, 4> kSettingTexts{{{&MeterReading::strF1Name, &MeterReading::strF1Value},
                                                     {&MeterReading::strF2Name, &MeterReading::strF2Value},
                                                     {&MeterReading::strF3Name, &MeterReading::strF3Value},
                                                     {&MeterReading::strF4Name, &MeterReading::strF4Value}}};

struct RcdText {
    ValData MeterReading::*slot;
    std::string MeterReading::*text;
};
constexpr std::array<RcdText, 6> kRcdTexts{{{&MeterReading::x120, &MeterReading::strRCD1},
                                            {&MeterReading::x12180, &MeterReading::strRCD2},
                                            {&MeterReading::x10, &MeterReading::strRCD3},
                                            {&MeterReading::x1180, &MeterReading::strRCD4},
                                            {&MeterReading::x50, &MeterReading::strRCD5},
                                            {&MeterReading::x5180, &MeterReading::strRCD6}}};

// For the text overload wins over no data, other than for the number.
void assignReading(std::string& text, std::string_view prefix, const ValData& reading) {
    if (reading.OlData != 0) {
        text = "OL";
    } else if (reading.NoData != 0) {
        text = "----";
    } else {
        text.assign(prefix).append(reading.strValD1);
    }
}

// Here no data wins, other than for a reading.
void assignRcdResult(std::string& text, const ValData& slot) {
    text = slot.strValD1;
    if (slot.OlData != 0) text = "OL";
    if (slot.NoData != 0) text = "----";
}

std::string_view limitPrefix(const MeterReading& record) {
    if (record.ValData1.bLess == 0) return "";
    if (record.iFunction == kVoltagePhase) return "< ";
    return record.iFunction == kRcd ? ">" : "> ";
}

void deriveValueTexts(MeterReading& record) {
    assignReading(record.strValue1, limitPrefix(record), record.ValData1);
    record.strUnit1 = record.ValData1.strUnitD1;
    if (record.iFunction == kRcd) {
        // Auto mode carries its own code, so no decoded record takes this branch and strRCD1..6 stay empty.
        if (record.iSubFunc != kRcdModeAuto) return;
        for (const RcdText& row : kRcdTexts) assignRcdResult(record.*row.text, record.*row.slot);
        return;
    }
    assignReading(record.strValue2, "", record.ValData2);
    record.strUnit2 = record.ValData2.strUnitD1;
}

void deriveSettings(const DisplayRule& rule, MeterReading& record) {
    for (std::size_t i = 0; i < rule.settings.size(); ++i) {
        const SettingRule& setting = rule.settings[i];
        record.*kSettingTexts[i].name = setting.name;
        if (setting.index != nullptr)
            record.*kSettingTexts[i].value = textAt(setting.values, record.*setting.index);
    }
    if (rule.currentByMode && record.iSubFunc < kRcdCurrentsByMode.size())
        record.strF2Value = textAt(kRcdCurrentsByMode[record.iSubFunc], record.iSubFuncF2);
}

void assignVolts(std::string& text, std::string_view label, double volts, unsigned decimals,
                 std::string_view unit) {
    char digits[kFixedPointTextMax];
    text.assign(label).append(digits, writeRounded(digits, volts, decimals)).append(unit);
}

void deriveWires(MeterReading& record) {
    if (record.dNpe == kNoDataValue) {
        record.strNpe = record.strLpe = record.strLn = "---";
        return;
    }
    assignVolts(record.strNpe, "", record.dNpe, 0, "");
    assignVolts(record.strLpe, "", record.dLpe, 0, "");
    assignVolts(record.strLn, "", record.dLn, 0, "");
}

// The two functions spell their limits differently; each text is the tester's own.
void deriveLimits(LimitTexts kind, MeterReading& record) {
    if (kind == LimitTexts::Loop) {
        if (record.ValData3.NoData != 0) {
            record.strUL = "UL:---- V";
        } else {
            assignVolts(record.strUL, "UL:", record.dUl, 0, " V");
        }
    } else if (kind == LimitTexts::Rcd) {
        if (record.ValData2.NoData != 0) {
            record.strUF = "UF:--- ";
        } else {
            assignVolts(record.strUF, "UF:", record.dUf, 1, "");
        }
        if (record.ValData4.NoData != 0) {
            record.strUL = "UL:--- ";
        } else {
            assignVolts(record.strUL, "UL:", record.dUl, 0, "");
        }
    }
}

void deriveName(const DisplayRule& rule, MeterReading& record) {
    record.strfunction = rule.name.empty() ? std::string_view(record.strF1Value) : rule.name;
    if (rule.code == kVoltagePhase)
        record.strfunction += record.iSubFunc == kVoltageModePhase ? "Phase" : "Voltage";
}

}  // namespace

void deriveTexts(std::uint8_t status, MeterReading& record) {
    deriveValueTexts(record);
    const DisplayRule* rule = displayRule(record.iFunction);
    if (rule == nullptr) return;
    deriveSettings(*rule, record);
    if (rule->wires) deriveWires(record);
    deriveLimits(rule->limits, record);
    record.bottompicIndex = rule->picture;
    if (rule->pictureByStatus) record.bottompicIndex = kPictureByStatus[status & frame::kPictureMask];
    deriveName(*rule, record);
}

}  // namespace kestrix::protocol
