#include "tests/protocol/ExpectedRecord.h"

#include <cstddef>
#include <string>

#include "tests/protocol/ExpectedReading.h"
#include "tests/protocol/ExpectedSettings.h"

namespace kestrix::protocol {
namespace {

using namespace expected;

MeterReading start(Frame frame) {
    MeterReading r;
    r.iFunction = frame[10];
    r.bWarnFlag = bit(frame[24], 7);
    r.bHoldFlag = bit(frame[24], 1);
    r.bAlarmFlag = bit(frame[26], 0);
    r.bTestRet = bit(frame[26], 2);
    r.ValData1.NoData = bit(frame[25], 4);
    r.ValData2.NoData = bit(frame[25], 5);
    r.ValData1.OlData = bit(frame[25], 0);
    r.ValData2.OlData = bit(frame[25], 1);
    return r;
}

void setFlagsOfReadings3And4(MeterReading& r, Frame frame) {
    r.ValData3.NoData = bit(frame[25], 6);
    r.ValData4.NoData = bit(frame[25], 7);
    r.ValData3.OlData = bit(frame[25], 2);
    r.ValData4.OlData = bit(frame[25], 3);
}

// Before the numbers of readings without data are replaced.
void setWires(MeterReading& r, Frame frame) {
    const double a = word(frame, 27);
    const double b = word(frame, 29);
    if (bit(frame[24], 3) == 0) {
        r.dLpe = r.dNpe = r.dLn = 5000001.0;
        r.strLpe = r.strNpe = r.strLn = "---";
        return;
    }
    if (bit(frame[24], 0) == 1) {
        r.dLpe = r.ValData3.ValD1;
        r.dNpe = a;
    } else {
        r.dNpe = r.ValData3.ValD1;
        r.dLpe = a;
    }
    r.dLn = b;
    r.strLpe = printed("", r.dLpe, 0, "");
    r.strNpe = printed("", r.dNpe, 0, "");
    r.strLn = printed("", r.dLn, 0, "");
}

void replaceNumbers(MeterReading& r) {
    replaceNumber(r.ValData1);
    replaceNumber(r.ValData2);
    replaceNumber(r.ValData3);
    replaceNumber(r.ValData4);
}

void showTwoReadings(MeterReading& r, const char* limitPrefix) {
    r.strValue1 = shown(r.ValData1, limitPrefix);
    r.strValue2 = shown(r.ValData2, "");
    r.strUnit1 = r.ValData1.strUnitD1;
    r.strUnit2 = r.ValData2.strUnitD1;
}

void setPicture(MeterReading& r, Frame frame) {
    const int low = frame[24] % 16;
    if (low == 0) r.bottompicIndex = 3;
    if (low == 1) r.bottompicIndex = 2;
    if (low == 2) r.bottompicIndex = 4;
    if (low == 3) r.bottompicIndex = 5;
}

std::string offOn(std::uint8_t on) {
    return on == 1 ? "ON" : "OFF";
}

std::string zero(std::uint8_t calibrated) {
    return calibrated == 1 ? "PIC_CLRZERO" : "";
}

MeterReading earth(Frame frame) {
    MeterReading r = start(frame);
    r.bBeepFlag = bit(frame[24], 3);
    r.bCalFlag = flag(frame[6] == '1');
    r.bLockFlag = bit(frame[24], 6);
    r.bTestFlag = flag(frame[7] == '1');
    setReading(r.ValData1, frame, 12, Bit7::Sign);
    r.ValData1.strUnitD1 = "Ω";
    setReading(r.ValData2, frame, 15, Bit7::Sign);
    r.ValData2.strUnitD1 = "mA";
    replaceNumbers(r);
    showTwoReadings(r, "");
    r.strF4Name = "ZERO";
    r.bottompicIndex = 1;
    r.strfunction = "EARTH";
    return r;
}

MeterReading insulation(Frame frame) {
    MeterReading r = start(frame);
    r.iSubFunc = frame[3];
    r.iSubFuncF4 = frame[6];
    r.bBeepFlag = flag(frame[4] == 1);
    r.bCalFlag = bit(frame[24], 5);
    r.bLockFlag = flag(frame[5] == 1);
    r.bTestFlag = flag(frame[7] == 1);
    r.ValData1.strUnitD1 = setReading(r.ValData1, frame, 12, Bit7::Sign) == 0 ? "MΩ" : "GΩ";
    setReading(r.ValData2, frame, 15, Bit7::Sign);
    r.ValData2.strUnitD1 = "V";
    replaceNumbers(r);
    showTwoReadings(r, "");
    r.strF1Name = "Terminal voltage";
    r.strF1Value = insulationVoltage(frame[3]);
    r.strF2Name = "Beeper";
    r.strF2Value = offOn(r.bBeepFlag);
    r.strF3Name = "Lock";
    r.strF3Value = offOn(r.bLockFlag);
    r.strF4Name = "Reference";
    r.strF4Value = insulationReference(frame[6]);
    r.strfunction = "INSULATION";
    return r;
}

MeterReading lowOhm(Frame frame) {
    MeterReading r = start(frame);
    r.iSubFunc = frame[3];
    r.bBeepFlag = flag(frame[4] == 1);
    r.bCalFlag = flag(frame[6] == 1);
    r.bLockFlag = bit(frame[24], 6);
    r.bTestFlag = flag(frame[7] == 1);
    setReading(r.ValData1, frame, 12, Bit7::Sign);
    r.ValData1.strUnitD1 = "Ω";
    setReading(r.ValData2, frame, 15, Bit7::Sign);
    r.ValData2.strUnitD1 = "mA";
    replaceNumbers(r);
    showTwoReadings(r, "");
    r.strF1Name = "Continuty";
    r.strF1Value = continuityLimit(frame[3]);
    r.strF2Name = "Beeper";
    r.strF2Value = offOn(r.bBeepFlag);
    r.strF4Name = "ZERO";
    r.strF4Value = zero(r.bCalFlag);
    r.strfunction = "LOW OHM";
    return r;
}

void setVoltageUnits(MeterReading& r, unsigned unit1, unsigned unit2) {
    if (unit1 == 0) {
        r.ValData1.strUnitD1 = "V";
        r.ValData1.bLess = 1;
    }
    if (unit1 == 1) r.ValData1.strUnitD1 = "V";
    if (unit1 == 2) r.ValData1.strUnitD1 = "---";
    if (unit1 == 3) r.ValData1.strUnitD1 = "1.2.3";
    if (unit1 == 4) r.ValData1.strUnitD1 = "2.1.3";
    if (unit2 == 0) r.ValData2.strUnitD1 = "HZ";
    if (unit2 == 1) r.ValData2.strUnitD1 = "KHZ";
    if (unit2 == 2) {
        r.ValData2.strUnitD1 = "HZ";
        r.ValData2.NoData = 1;
    }
    if (unit2 == 3) r.ValData2.strUnitD1 = " ";
}

MeterReading voltage(Frame frame) {
    MeterReading r = start(frame);
    setFlagsOfReadings3And4(r, frame);
    r.iSubFunc = frame[3];
    r.bBeepFlag = flag(frame[4] == 1);
    r.bCalFlag = flag(frame[6] == 1);
    r.bLockFlag = bit(frame[24], 6);
    r.bTestFlag = flag(frame[7] == 1);
    const unsigned unit1 = setReading(r.ValData1, frame, 12, Bit7::Sign);
    const unsigned unit2 = setReading(r.ValData2, frame, 15, Bit7::Sign);
    setVoltageUnits(r, unit1, unit2);
    setReading(r.ValData3, frame, 18, Bit7::Sign);
    r.ValData3.strUnitD1 = " ";
    setReading(r.ValData4, frame, 21, Bit7::Sign);
    r.ValData4.strUnitD1 = " ";
    setWires(r, frame);
    replaceNumbers(r);
    showTwoReadings(r, "< ");
    r.strF1Name = "V/Phase";
    r.strF1Value = voltageMode(frame[3]);
    setPicture(r, frame);
    r.strfunction = frame[3] == 3 ? "VOLTAGE/PHASE,Phase" : "VOLTAGE/PHASE,Voltage";
    return r;
}

void setLoopUnits(MeterReading& r, unsigned unit1, unsigned unit2) {
    if (unit1 == 0) r.ValData1.strUnitD1 = "Ω";
    if (unit1 == 1) r.ValData1.strUnitD1 = "mΩ";
    if (unit1 == 2) {
        r.ValData1.strUnitD1 = "Ω";
        r.ValData1.NoData = 1;
    }
    if (unit2 == 0) r.ValData2.strUnitD1 = "A";
    if (unit2 == 1) r.ValData2.strUnitD1 = "KA";
    if (unit2 == 2) {
        r.ValData2.strUnitD1 = "A";
        r.ValData2.NoData = 1;
    }
    if (unit2 == 4) r.ValData2.strUnitD1 = "Ω";
}

MeterReading loop(Frame frame) {
    MeterReading r = start(frame);
    setFlagsOfReadings3And4(r, frame);
    r.iSubFunc = frame[3];
    r.iSubFuncF2 = frame[4];
    r.bBeepFlag = bit(frame[24], 7);
    r.bCalFlag = flag(frame[6] == 1);
    r.bLockFlag = bit(frame[24], 6);
    r.bTestFlag = flag(frame[7] == 1);
    const unsigned unit1 = setReading(r.ValData1, frame, 12, Bit7::Limit);
    const unsigned unit2 = setReading(r.ValData2, frame, 15, Bit7::Limit);
    setLoopUnits(r, unit1, unit2);
    setReading(r.ValData3, frame, 18, Bit7::ReversedSign);
    r.ValData3.strUnitD1 = "V";
    setReading(r.ValData4, frame, 21, Bit7::ReversedSign);
    r.ValData4.strUnitD1 = "HZ";
    r.dUl = word(frame, 21);
    setWires(r, frame);
    replaceNumbers(r);
    for (ValData* slot : {&r.x120, &r.x12180, &r.x10, &r.x1180, &r.x50, &r.x5180}) {
        slot->NoData = 1;
        slot->ValD1 = 5000001.0;
    }
    showTwoReadings(r, "> ");
    r.strUL = r.ValData3.NoData == 1 ? "UL:---- V" : printed("UL:", r.dUl, 0, " V");
    r.strF1Name = "Loop/PFC";
    r.strF1Value = loopMode(frame[3]);
    r.strF2Name = "Current";
    r.strF2Value = loopCurrent(frame[4]);
    r.strF4Name = "ZERO";
    r.strF4Value = zero(r.bCalFlag);
    setPicture(r, frame);
    r.strfunction = "LOOP/PFC";
    return r;
}

void setRcdUnits(MeterReading& r, int mode, unsigned unit1, unsigned unit2) {
    if (unit1 == 0) r.ValData1.strUnitD1 = "mS";
    if (unit1 == 1) r.ValData1.strUnitD1 = "mA";
    if (unit1 == 2) {
        r.ValData1.strUnitD1 = "mS";
        r.ValData1.NoData = 1;
        r.ValData1.OlData = 0;
    }
    if (mode == 5) r.ValData1.strUnitD1 = "mA";
    if (unit2 == 0) r.ValData2.strUnitD1 = "mA";
    if (unit2 == 1) r.ValData2.strUnitD1 = "mS";
    if (unit2 == 2) {
        r.ValData2.strUnitD1 = "V";
        r.ValData2.NoData = 1;
    }
    if (unit2 == 3) r.ValData2.strUnitD1 = "V";
}

void setRcdSettings(MeterReading& r, Frame frame) {
    r.strF1Name = "RCD";
    r.strF1Value = rcdMode(frame[3]);
    r.strF2Name = "Trip current";
    r.strF2Value = rcdCurrent(frame[3], frame[4]);
    r.strF3Name = "Type Of RCD";
    r.strF3Value = rcdType(frame[5]);
    if (r.iFunction == '6') {
        r.strF4Name = "0°/180°";
        r.strF4Value = rcdAngle(frame[6]);
    }
    r.strfunction = r.strF1Value;
}

MeterReading rcd(Frame frame) {
    MeterReading r = start(frame);
    setFlagsOfReadings3And4(r, frame);
    r.iSubFunc = frame[3];
    r.iSubFuncF2 = frame[4];
    r.iSubFuncF3 = frame[5];
    r.iSubFuncF4 = frame[6];
    r.bBeepFlag = bit(frame[24], 7);
    r.bCalFlag = bit(frame[24], 5);
    r.bLockFlag = bit(frame[24], 6);
    r.bTestFlag = flag(frame[7] == 1);
    r.bTest = bit(frame[26], 1);
    setNumber(r.ValData1, word(frame, 12), bit(frame[14], 4), false);
    r.ValData1.bLess = bit(frame[14], 7);
    const unsigned unit2 = setReading(r.ValData2, frame, 15, Bit7::Limit);
    setRcdUnits(r, frame[3], frame[14] / 32U % 4U, unit2);
    setReading(r.ValData3, frame, 18, Bit7::Sign);
    r.ValData3.strUnitD1 = "V";
    setReading(r.ValData4, frame, 21, Bit7::Sign);
    r.ValData4.strUnitD1 = "V";
    r.dUl = word(frame, 21);
    r.dUf = r.ValData2.ValD1;
    setWires(r, frame);
    replaceNumbers(r);
    for (ValData* reading : {&r.ValData1, &r.ValData2, &r.ValData3, &r.ValData4}) {
        if (reading->NoData == 1) {
            reading->strValD1 = "---";
        } else if (reading->OlData == 1) {
            reading->strValD1 = "OL";
        }
    }
    r.strUF = r.ValData2.NoData == 1 ? "UF:--- " : printed("UF:", r.dUf, 1, "");
    r.strUL = r.ValData4.NoData == 1 ? "UL:--- " : printed("UL:", r.dUl, 0, "");
    if (frame[3] == 0) {
        r.iFunction = '7';
        const int step = frame[14] % 16;
        if (step == 0) r.x120 = r.ValData1;
        if (step == 1) r.x12180 = r.ValData1;
        if (step == 2) r.x10 = r.ValData1;
        if (step == 3) r.x1180 = r.ValData1;
        if (step == 6) r.x50 = r.ValData1;
        if (step == 7) r.x5180 = r.ValData1;
        showTwoReadings(r, "> ");
    } else {
        r.strValue1 = shown(r.ValData1, ">");
        r.strUnit1 = r.ValData1.strUnitD1;
        setPicture(r, frame);
    }
    setRcdSettings(r, frame);
    return r;
}

int digit(char character, bool capital) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    return character - (capital ? 'A' : 'a') + 10;
}

}  // namespace

MeterReading expectedRecord(std::span<const std::uint8_t> frame) {
    if (frame.size() < 31 || frame[2] != 0x1E || frame[8] != 0x55 || frame[9] != 0xAA) {
        return {};
    }
    if (frame[10] == '1') return earth(frame);
    if (frame[10] == '2') return insulation(frame);
    if (frame[10] == '3') return lowOhm(frame);
    if (frame[10] == '4') return voltage(frame);
    if (frame[10] == '5') return loop(frame);
    if (frame[10] == '6') return rcd(frame);
    return {};
}

std::vector<std::uint8_t> expectedBytes(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const bool capital = text[i] >= 'A' && text[i] <= 'F';
        bytes.push_back(
            static_cast<std::uint8_t>(16 * digit(text[i], capital) + digit(text[i + 1], capital)));
    }
    return bytes;
}

}  // namespace kestrix::protocol
