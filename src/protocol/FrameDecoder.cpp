#include "protocol/FrameDecoder.h"

#include <array>

#include "protocol/FixedPointText.h"
#include "protocol/FrameLayout.h"
#include "protocol/FunctionRules.h"

namespace kestrix::protocol {
namespace {

constexpr std::array<std::uint8_t MeterReading::*, 4> kSettingIndexes{
    &MeterReading::iSubFunc, &MeterReading::iSubFuncF2, &MeterReading::iSubFuncF3, &MeterReading::iSubFuncF4};

constexpr std::array<ValData MeterReading::*, 4> kReadingFields{
    &MeterReading::ValData1, &MeterReading::ValData2, &MeterReading::ValData3, &MeterReading::ValData4};

// The slot that an RCD auto-test step fills; steps without one fill nothing.
constexpr std::array<ValData MeterReading::*, 16> kStepSlots{
    &MeterReading::x120, &MeterReading::x12180, &MeterReading::x10, &MeterReading::x1180, nullptr, nullptr,
    &MeterReading::x50,  &MeterReading::x5180};

std::uint16_t word(const std::uint8_t* bytes, std::size_t low) {
    return static_cast<std::uint16_t>(bytes[low] + 256U * bytes[low + 1]);
}

void decodeFlags(const std::uint8_t* bytes, const FunctionRule& rule, MeterReading& record) {
    for (std::size_t i = 0; i < kSettingIndexes.size(); ++i) {
        if (rule.settings[i]) record.*kSettingIndexes[i] = bytes[kSettingRows[i].first];
    }
    record.bWarnFlag = bit(frame::kStatus, frame::kWarningBit).read(bytes);
    record.bHoldFlag = bit(frame::kStatus, frame::kHoldBit).read(bytes);
    record.bAlarmFlag = bit(frame::kAlarm, frame::kAlarmBit).read(bytes);
    record.bTestRet = bit(frame::kAlarm, frame::kResultBit).read(bytes);
    record.bBeepFlag = rule.beep.read(bytes);
    record.bCalFlag = rule.cal.read(bytes);
    record.bLockFlag = rule.lock.read(bytes);
    record.bTestFlag = rule.test.read(bytes);
    record.bTest = rule.rcdTest.read(bytes);
    const unsigned flags = bytes[frame::kNoDataOverload.first];
    for (std::size_t i = 0; i < rule.readingCount(); ++i) {
        ValData& reading = record.*kReadingFields[i];
        reading.NoData = static_cast<std::uint8_t>(flags >> (4 + i) & 1U);
        reading.OlData = static_cast<std::uint8_t>(flags >> i & 1U);
    }
}

void decodeReading(const std::uint8_t* bytes, const ReadingRule& rule, ValData& reading) {
    const unsigned attribute = bytes[2];
    const bool bit7 = (attribute & frame::kSignOrLimitBit) != 0;
    const AttributeLayout& layout = rule.attribute;
    const unsigned decimals = attribute >> layout.decimalsShift & layout.decimalsMask;
    const UnitMeaning& unit = (*rule.units)[attribute >> layout.unitShift & layout.unitMask];
    const std::uint16_t magnitude = word(bytes, 0);
    const bool negative = rule.sign != SignRule::Limit && bit7 == (rule.sign == SignRule::Signed);

    reading.ValD1 = fixedPointValue(magnitude, decimals, negative);
    char text[kFixedPointTextMax];
    reading.strValD1.assign(text, writeFixedPoint(text, magnitude, decimals, negative));
    reading.pointPosD1 = static_cast<std::uint8_t>(decimals);
    reading.strUnitD1 = unit.unit;
    if (unit.less || (rule.sign == SignRule::Limit && bit7)) reading.bLess = 1;
    if (unit.noData) reading.NoData = 1;
    if (unit.clearsOverload) reading.OlData = 0;
}

void decodeWireVoltages(const std::uint8_t* bytes, MeterReading& record) {
    const unsigned status = bytes[frame::kStatus.first];
    if ((status & frame::kBeeperOrWiresBit) == 0) {
        record.dLpe = record.dNpe = record.dLn = kNoDataValue;
        return;
    }
    const bool reading3IsLpe = (status & frame::kReading3IsLpeBit) != 0;
    const double wireA = word(bytes, frame::kWireA.first);
    record.dLpe = reading3IsLpe ? record.ValData3.ValD1 : wireA;
    record.dNpe = reading3IsLpe ? wireA : record.ValData3.ValD1;
    record.dLn = word(bytes, frame::kWireB.first);
}

// A reading without a number holds a sentinel; no data wins over overload.
void markMissing(ValData& reading, bool textToo) {
    if (reading.NoData == 0 && reading.OlData == 0) return;
    const bool noData = reading.NoData != 0;
    reading.ValD1 = noData ? kNoDataValue : kOverloadValue;
    if (textToo) reading.strValD1 = noData ? "---" : "OL";
}

void decodeAutoMode(const std::uint8_t* bytes, MeterReading& record) {
    record.iFunction = kRcdAuto;
    const unsigned step = bytes[frame::kReading1.first + 2] & frame::kStepMask;
    if (kStepSlots[step] != nullptr) record.*kStepSlots[step] = record.ValData1;
}

void markSlotsEmpty(MeterReading& record) {
    for (ValData MeterReading::*slot : kStepSlots) {
        if (slot == nullptr) continue;
        (record.*slot).NoData = 1;
        (record.*slot).ValD1 = kNoDataValue;
    }
}

}  // namespace

bool isMarked(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= frame::kDecodedLength && bytes[frame::kStart3.first] == frame::kStart3Value &&
           bytes[frame::kMarker.first] == frame::kMarkerValue[0] &&
           bytes[frame::kMarker.first + 1] == frame::kMarkerValue[1];
}

FrameCheck checkFrame(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < frame::kDecodedLength || bytes[frame::kStart3.first] != frame::kStart3Value)
        return FrameCheck::Foreign;
    return isMarked(bytes) && functionRule(bytes[frame::kFunction.first]) != nullptr ? FrameCheck::Valid
                                                                                     : FrameCheck::Empty;
}

void decodeFrame(std::span<const std::uint8_t> frameBytes, MeterReading& record) {
    const std::uint8_t* bytes = frameBytes.data();
    const FunctionRule& rule = *functionRule(bytes[frame::kFunction.first]);
    record.iFunction = rule.code;
    decodeFlags(bytes, rule, record);
    for (std::size_t i = 0; i < rule.readingCount(); ++i) {
        decodeReading(bytes + kReadingRows[i].first, rule.readings[i], record.*kReadingFields[i]);
    }
    if (rule.code == kRcd && record.iSubFunc == kRcdModeRamp) record.ValData1.strUnitD1 = "mA";
    if (rule.voltageLimit) record.dUl = word(bytes, frame::kReading4.first);
    if (rule.faultVoltage) record.dUf = record.ValData2.ValD1;
    if (rule.onMains) decodeWireVoltages(bytes, record);
    for (ValData MeterReading::*field : kReadingFields) markMissing(record.*field, rule.code == kRcd);
    if (rule.code == kLoop) markSlotsEmpty(record);
    if (rule.code == kRcd && record.iSubFunc == kRcdModeAuto) decodeAutoMode(bytes, record);
}

}  // namespace kestrix::protocol
