#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "protocol/KV3820protocal.h"
#include "tests/support/FrameBuilder.h"

// The texts that the live screen shows, through whole frames, each by its literal text.

namespace kestrix::protocol {
namespace {

using kestrix::testing::FrameBuilder;
using Texts = std::vector<std::string>;

MeterReading recordOf(const FrameBuilder& frame) {
    KV3820protocal decoder;
    decoder.initFromNSdata(frame.bytes());
    return decoder.getAllDataStructValue();
}

FrameBuilder rcd(std::uint8_t mode) {
    return FrameBuilder('6').setting(1, mode);
}

// The text of every value of one setting: the table's entries in order, then the empty text for every value
// beyond it.
void expectTable(FrameBuilder frame, std::size_t setting, std::string MeterReading::*text,
                 const Texts& table) {
    for (unsigned value = 0; value < 256; ++value) {
        const MeterReading record = recordOf(frame.setting(setting, static_cast<std::uint8_t>(value)));
        EXPECT_EQ(record.*text, value < table.size() ? table[value] : "") << "setting value " << value;
    }
}

void expectNames(const MeterReading& record, const Texts& names) {
    EXPECT_EQ((Texts{record.strF1Name, record.strF2Name, record.strF3Name, record.strF4Name}), names);
}

// ---- settings ----

TEST(DisplayTexts, InsulationTestVoltage) {
    expectTable(FrameBuilder('2'), 1, &MeterReading::strF1Value, {"125v", "250v", "500", "1000"});
}

TEST(DisplayTexts, InsulationReference) {
    expectTable(FrameBuilder('2'), 4, &MeterReading::strF4Value,
                {"0.125MΩ", "0.25MΩ", "0.5MΩ", "1.0MΩ", "2.0MΩ", "5.0MΩ", "10.0MΩ", "20.0MΩ", "50.0MΩ",
                 "100MΩ", "200MΩ"});
}

TEST(DisplayTexts, ContinuityLimit) {
    expectTable(FrameBuilder('3'), 1, &MeterReading::strF1Value,
                {"0.5Ω", "1.0Ω", "2.0Ω", "5.0Ω", "10.0Ω", "20.0Ω", "50.0Ω", "100.0Ω"});
}

TEST(DisplayTexts, BeeperIsOnForTheByteOneOnly) {
    for (const char function : {'2', '3'}) {
        for (unsigned value = 0; value < 256; ++value) {
            const MeterReading record =
                recordOf(FrameBuilder(function).setting(2, static_cast<std::uint8_t>(value)));
            EXPECT_EQ(record.strF2Value, value == 1 ? "ON" : "OFF") << value;
        }
    }
}

TEST(DisplayTexts, InsulationLockIsOnForTheByteOneOnly) {
    for (unsigned value = 0; value < 256; ++value) {
        const MeterReading record =
            recordOf(FrameBuilder('2').setting(3, static_cast<std::uint8_t>(value)).status(0x40));
        EXPECT_EQ(record.strF3Value, value == 1 ? "ON" : "OFF") << value;
    }
}

TEST(DisplayTexts, ZeroPictureIsNamedWhileTheLeadsAreNulled) {
    for (const char function : {'3', '5'}) {
        EXPECT_EQ(recordOf(FrameBuilder(function).setting(4, 1)).strF4Value, "PIC_CLRZERO");
        EXPECT_EQ(recordOf(FrameBuilder(function).setting(4, 0)).strF4Value, "");
        EXPECT_EQ(recordOf(FrameBuilder(function).setting(4, 2)).strF4Value, "");
    }
    EXPECT_EQ(recordOf(FrameBuilder('1').setting(4, '1')).strF4Value, "");
}

TEST(DisplayTexts, VoltageMode) {
    expectTable(FrameBuilder('4'), 1, &MeterReading::strF1Value, {"L-PE", "N-PE", "L-N", "Phase"});
}

TEST(DisplayTexts, LoopMode) {
    expectTable(FrameBuilder('5'), 1, &MeterReading::strF1Value, {"L-PE", "L-N"});
}

TEST(DisplayTexts, LoopCurrent) {
    expectTable(FrameBuilder('5'), 2, &MeterReading::strF2Value, {"NO Trip", "Hi Amp"});
}

TEST(DisplayTexts, RcdMode) {
    expectTable(rcd(0), 1, &MeterReading::strF1Value, {"Auto", "X1/2", "X1", "X2", "X5", "RAMP"});
}

TEST(DisplayTexts, RcdCurrentDependsOnTheMode) {
    const Texts longTable = {"30mA", "100mA", "300mA", "500mA", "650mA", "1000mA", "10mA"};
    const Texts mediumTable = {"30mA", "100mA", "300mA", "500mA", "650mA", "10mA"};
    const Texts shortTable = {"30mA", "100mA", "10mA"};
    expectTable(rcd(0), 2, &MeterReading::strF2Value, longTable);
    expectTable(rcd(1), 2, &MeterReading::strF2Value, longTable);
    expectTable(rcd(2), 2, &MeterReading::strF2Value, longTable);
    expectTable(rcd(3), 2, &MeterReading::strF2Value, mediumTable);
    expectTable(rcd(4), 2, &MeterReading::strF2Value, shortTable);
    expectTable(rcd(5), 2, &MeterReading::strF2Value, mediumTable);
    expectTable(rcd(6), 2, &MeterReading::strF2Value, {});
    expectTable(rcd(255), 2, &MeterReading::strF2Value, {});
    EXPECT_EQ(recordOf(rcd(6)).strF2Name, "Trip current");
}

TEST(DisplayTexts, RcdType) {
    expectTable(rcd(2), 3, &MeterReading::strF3Value, {"AC G", "AC S", "DC G", "DC S"});
    expectTable(rcd(0), 3, &MeterReading::strF3Value, {"AC G", "AC S", "DC G", "DC S"});
}

TEST(DisplayTexts, RcdAngle) {
    expectTable(rcd(2), 4, &MeterReading::strF4Value, {"0°", "180°"});
    expectTable(rcd(0), 4, &MeterReading::strF4Value, {});
}

TEST(DisplayTexts, SettingsNames) {
    expectNames(recordOf(FrameBuilder('1')), {"", "", "", "ZERO"});
    expectNames(recordOf(FrameBuilder('2')), {"Terminal voltage", "Beeper", "Lock", "Reference"});
    expectNames(recordOf(FrameBuilder('3')), {"Continuty", "Beeper", "", "ZERO"});
    expectNames(recordOf(FrameBuilder('4')), {"V/Phase", "", "", ""});
    expectNames(recordOf(FrameBuilder('5')), {"Loop/PFC", "Current", "", "ZERO"});
    expectNames(recordOf(rcd(1)), {"RCD", "Trip current", "Type Of RCD", "0°/180°"});
    expectNames(recordOf(rcd(0)), {"RCD", "Trip current", "Type Of RCD", ""});
}

// ---- function names and pictures ----

TEST(DisplayTexts, EarthRecordHasOnlyItsNameZeroAndItsPicture) {
    const MeterReading record =
        recordOf(FrameBuilder('1').setting(1, 1).setting(2, 1).setting(3, 1).status(0x02));
    EXPECT_EQ(record.strfunction, "EARTH");
    expectNames(record, {"", "", "", "ZERO"});
    EXPECT_EQ(record.strF1Value + record.strF2Value + record.strF3Value + record.strF4Value, "");
    EXPECT_EQ(record.bottompicIndex, 1);
    EXPECT_EQ(record.strNpe + record.strLpe + record.strLn + record.strUL + record.strUF, "");
}

TEST(DisplayTexts, FunctionNames) {
    EXPECT_EQ(recordOf(FrameBuilder('1')).strfunction, "EARTH");
    EXPECT_EQ(recordOf(FrameBuilder('2')).strfunction, "INSULATION");
    EXPECT_EQ(recordOf(FrameBuilder('3')).strfunction, "LOW OHM");
    EXPECT_EQ(recordOf(FrameBuilder('5')).strfunction, "LOOP/PFC");
}

TEST(DisplayTexts, VoltageFunctionNameTellsPhaseFromVoltage) {
    for (unsigned mode = 0; mode < 256; ++mode) {
        const MeterReading record = recordOf(FrameBuilder('4').setting(1, static_cast<std::uint8_t>(mode)));
        EXPECT_EQ(record.strfunction, mode == 3 ? "VOLTAGE/PHASE,Phase" : "VOLTAGE/PHASE,Voltage");
    }
}

TEST(DisplayTexts, RcdFunctionNameIsItsMode) {
    expectTable(rcd(0), 1, &MeterReading::strfunction, {"Auto", "X1/2", "X1", "X2", "X5", "RAMP"});
}

TEST(DisplayTexts, AutoModeRecordIsNamedAutoAndKeepsPictureZero) {
    for (unsigned status = 0; status < 256; ++status) {
        const MeterReading record = recordOf(rcd(0).setting(4, 1).status(static_cast<std::uint8_t>(status)));
        EXPECT_EQ(record.strfunction, "Auto");
        EXPECT_EQ(record.strF4Name, "");
        EXPECT_EQ(record.strF4Value, "");
        EXPECT_EQ(record.bottompicIndex, 0);
    }
}

TEST(DisplayTexts, ConnectionPictureFollowsTheLowFourStatusBits) {
    for (const char function : {'4', '5', '6'}) {
        for (unsigned status = 0; status < 256; ++status) {
            const std::uint8_t pictures[16] = {3, 2, 4, 5};
            const MeterReading record =
                recordOf(FrameBuilder(function).setting(1, 1).status(static_cast<std::uint8_t>(status)));
            EXPECT_EQ(record.bottompicIndex, pictures[status % 16]) << function << " " << status;
        }
    }
}

TEST(DisplayTexts, ConnectionPictureOfTheOtherFunctionsIsFixed) {
    for (unsigned status = 0; status < 256; ++status) {
        const auto byte = static_cast<std::uint8_t>(status);
        EXPECT_EQ(recordOf(FrameBuilder('1').status(byte)).bottompicIndex, 1);
        EXPECT_EQ(recordOf(FrameBuilder('2').status(byte)).bottompicIndex, 0);
        EXPECT_EQ(recordOf(FrameBuilder('3').status(byte)).bottompicIndex, 0);
    }
}

// ---- wire voltages and limits ----

TEST(DisplayTexts, WireVoltagesAreWholeVolts) {
    const FrameBuilder frame = FrameBuilder('4').reading(3, 2346, 0x01).status(0x09).wires(3, 231);
    for (const char function : {'4', '6'}) {
        const MeterReading record = recordOf(FrameBuilder(frame).function(function));
        EXPECT_EQ(record.strLpe, "235");
        EXPECT_EQ(record.strNpe, "3");
        EXPECT_EQ(record.strLn, "231");
    }
    EXPECT_EQ(recordOf(FrameBuilder(frame).function('5')).strLpe, "-235");
    EXPECT_EQ(recordOf(FrameBuilder(frame).function('4').reading(3, 3, 0x81)).strLpe, "-0");
}

TEST(DisplayTexts, WireVoltagesAreDashesWithoutStatusBitThree) {
    for (const char function : {'4', '5', '6'}) {
        const MeterReading record =
            recordOf(FrameBuilder(function).reading(3, 2346, 0x01).status(0xF7).wires(3, 231));
        EXPECT_EQ(record.strNpe, "---");
        EXPECT_EQ(record.strLpe, "---");
        EXPECT_EQ(record.strLn, "---");
        EXPECT_EQ(record.dNpe, 5000001.0);
    }
}

TEST(DisplayTexts, LoopTouchVoltageLimit) {
    const FrameBuilder frame = FrameBuilder('5').reading(4, 501, 0x01);
    EXPECT_EQ(recordOf(frame).strUL, "UL:501 V");
    EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x40)).strUL, "UL:---- V");
    EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0xBF)).strUL, "UL:501 V");
    EXPECT_EQ(recordOf(frame).strUF, "");
}

TEST(DisplayTexts, RcdTouchVoltageLimit) {
    for (const std::uint8_t mode : {std::uint8_t{0}, std::uint8_t{2}}) {
        const FrameBuilder frame = rcd(mode).reading(4, 50, 0x81);
        EXPECT_EQ(recordOf(frame).strUL, "UL:50");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x80)).strUL, "UL:--- ");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x7F)).strUL, "UL:50");
    }
}

TEST(DisplayTexts, RcdFaultVoltage) {
    for (const std::uint8_t mode : {std::uint8_t{0}, std::uint8_t{3}}) {
        const FrameBuilder frame = rcd(mode).reading(2, 1276, 0x32);
        EXPECT_EQ(recordOf(frame).strUF, "UF:12.8");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x20)).strUF, "UF:--- ");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0xDF)).strUF, "UF:12.8");
        EXPECT_EQ(recordOf(FrameBuilder(frame).reading(2, 1276, 0x22)).strUF, "UF:--- ");
        EXPECT_EQ(recordOf(FrameBuilder(frame).reading(2, 0, 0x30)).strUF, "UF:0.0");
    }
}

// ---- values and units ----

TEST(DisplayTexts, OverloadWinsOverNoDataInTheText) {
    for (char function = '1'; function <= '6'; ++function) {
        const FrameBuilder frame =
            FrameBuilder(function).reading(1, 12, 0x00).reading(2, 34, 0x00).setting(1, 1);
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x11)).strValue1, "OL");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x01)).strValue1, "OL");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x10)).strValue1, "----");
        if (function == '6') {
            continue;  // shows no second reading
        }
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x22)).strValue2, "OL");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x02)).strValue2, "OL");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0x20)).strValue2, "----");
        EXPECT_EQ(recordOf(FrameBuilder(frame).noDataOverload(0xCC)).strValue2, "34");
    }
}

TEST(DisplayTexts, VoltageLimitHasItsSignAndABlank) {
    const MeterReading record = recordOf(FrameBuilder('4').reading(1, 50, 0x01));
    EXPECT_EQ(record.strValue1, "< 5.0");
    EXPECT_EQ(record.ValData1.strValD1, "5.0");
    EXPECT_EQ(record.strUnit1, "V");
    EXPECT_EQ(recordOf(FrameBuilder('4').reading(1, 50, 0x81)).strValue1, "< -5.0");
    EXPECT_EQ(recordOf(FrameBuilder('4').reading(1, 50, 0x11)).strValue1, "5.0");
}

TEST(DisplayTexts, LoopLimitHasItsSignAndABlankOnTheMainReadingOnly) {
    const MeterReading record = recordOf(FrameBuilder('5').reading(1, 199, 0x82).reading(2, 26, 0x91));
    EXPECT_EQ(record.strValue1, "> 1.99");
    EXPECT_EQ(record.strValue2, "2.6");
    EXPECT_EQ(record.ValData2.bLess, 1);
}

TEST(DisplayTexts, RcdLimitHasItsSignWithoutABlank) {
    const MeterReading record = recordOf(rcd(2).reading(1, 3000, 0x90));
    EXPECT_EQ(record.strValue1, ">300.0");
    EXPECT_EQ(record.strUnit1, "mS");
    EXPECT_EQ(recordOf(rcd(2).reading(1, 3000, 0x90).noDataOverload(0x10)).strValue1, "----");
    EXPECT_EQ(recordOf(rcd(2).reading(1, 3000, 0x90).noDataOverload(0x01)).strValue1, "OL");
}

TEST(DisplayTexts, AutoModeLimitHasItsSignAndABlank) {
    EXPECT_EQ(recordOf(rcd(0).reading(1, 3000, 0x90)).strValue1, "> 300.0");
}

TEST(DisplayTexts, RcdShowsNoSecondReadingButAutoModeDoes) {
    const MeterReading single = recordOf(rcd(1).reading(2, 305, 0x11));
    EXPECT_EQ(single.strValue2, "");
    EXPECT_EQ(single.strUnit2, "");
    EXPECT_EQ(single.ValData2.strValD1, "30.5");
    const MeterReading automatic = recordOf(rcd(0).reading(2, 305, 0x11));
    EXPECT_EQ(automatic.strValue2, "30.5");
    EXPECT_EQ(automatic.strUnit2, "mS");
}

TEST(DisplayTexts, AutoTestTextsStayEmpty) {
    const MeterReading record = recordOf(rcd(0).reading(1, 283, 0x12));
    EXPECT_EQ(record.x10.strValD1, "28.3");
    EXPECT_EQ(
        record.strRCD1 + record.strRCD2 + record.strRCD3 + record.strRCD4 + record.strRCD5 + record.strRCD6,
        "");
}

// The unit of one reading by its unit code, in the order of the codes.
void expectUnits(FrameBuilder frame, std::size_t reading, ValData MeterReading::*value, const Texts& units) {
    for (std::size_t code = 0; code < units.size(); ++code) {
        const auto attribute = static_cast<std::uint8_t>(code * 16);
        EXPECT_EQ((recordOf(frame.reading(reading, 5, attribute)).*value).strUnitD1, units[code]) << code;
    }
}

TEST(DisplayTexts, UnitsByUnitCode) {
    const Texts everyOhm(8, "Ω");
    const Texts everyMilliampere(8, "mA");
    expectUnits(FrameBuilder('1'), 1, &MeterReading::ValData1, everyOhm);
    expectUnits(FrameBuilder('1'), 2, &MeterReading::ValData2, everyMilliampere);
    expectUnits(FrameBuilder('2'), 1, &MeterReading::ValData1,
                {"MΩ", "GΩ", "GΩ", "GΩ", "GΩ", "GΩ", "GΩ", "GΩ"});
    expectUnits(FrameBuilder('2'), 2, &MeterReading::ValData2, Texts(8, "V"));
    expectUnits(FrameBuilder('3'), 1, &MeterReading::ValData1, everyOhm);
    expectUnits(FrameBuilder('3'), 2, &MeterReading::ValData2, everyMilliampere);
    expectUnits(FrameBuilder('4'), 1, &MeterReading::ValData1,
                {"V", "V", "---", "1.2.3", "2.1.3", "", "", ""});
    expectUnits(FrameBuilder('4'), 2, &MeterReading::ValData2, {"HZ", "KHZ", "HZ", " ", "", "", "", ""});
    expectUnits(FrameBuilder('4'), 3, &MeterReading::ValData3, Texts(8, " "));
    expectUnits(FrameBuilder('4'), 4, &MeterReading::ValData4, Texts(8, " "));
    expectUnits(FrameBuilder('5'), 1, &MeterReading::ValData1, {"Ω", "mΩ", "Ω", "", "", "", "", ""});
    expectUnits(FrameBuilder('5'), 2, &MeterReading::ValData2, {"A", "KA", "A", "", "Ω", "", "", ""});
    expectUnits(FrameBuilder('5'), 3, &MeterReading::ValData3, Texts(8, "V"));
    expectUnits(FrameBuilder('5'), 4, &MeterReading::ValData4, Texts(8, "HZ"));
    expectUnits(rcd(1), 1, &MeterReading::ValData1, {"mS", "mS", "mA", "mA", "mS", "mS", "", ""});
    expectUnits(rcd(1), 2, &MeterReading::ValData2, {"mA", "mS", "V", "V", "", "", "", ""});
    expectUnits(rcd(1), 3, &MeterReading::ValData3, Texts(8, "V"));
    expectUnits(rcd(1), 4, &MeterReading::ValData4, Texts(8, "V"));
}

TEST(DisplayTexts, UnknownUnitCodeLeavesTheUnitEmptyAndTheValueShown) {
    const MeterReading record = recordOf(FrameBuilder('5').reading(1, 123, 0x72).reading(2, 45, 0x51));
    EXPECT_EQ(record.strUnit1, "");
    EXPECT_EQ(record.strValue1, "1.23");
    EXPECT_EQ(record.strUnit2, "");
    EXPECT_EQ(record.strValue2, "4.5");
}

TEST(DisplayTexts, PhaseSequenceIsShownAsTheUnit) {
    EXPECT_EQ(recordOf(FrameBuilder('4').setting(1, 3).reading(1, 0, 0x30)).strUnit1, "1.2.3");
    EXPECT_EQ(recordOf(FrameBuilder('4').setting(1, 3).reading(1, 0, 0x40)).strUnit1, "2.1.3");
    EXPECT_EQ(recordOf(FrameBuilder('4').setting(1, 3)).strfunction, "VOLTAGE/PHASE,Phase");
}

TEST(DisplayTexts, UnitCodeTwoMeansNoData) {
    EXPECT_EQ(recordOf(FrameBuilder('4').reading(2, 500, 0x21)).strValue2, "----");
    EXPECT_EQ(recordOf(FrameBuilder('5').reading(1, 123, 0x22)).strValue1, "----");
    EXPECT_EQ(recordOf(FrameBuilder('5').reading(2, 123, 0x22)).strValue2, "----");
    EXPECT_EQ(recordOf(FrameBuilder('5').reading(1, 123, 0x22).noDataOverload(0x01)).strValue1, "OL");
    EXPECT_EQ(recordOf(rcd(1).reading(1, 123, 0x40).noDataOverload(0x01)).strValue1, "----");
}

TEST(DisplayTexts, FrameWithAWrongMarkerHasNoTexts) {
    const MeterReading record = recordOf(FrameBuilder('5').reading(1, 123, 0x82).byte(9, 0));
    EXPECT_EQ(record.strValue1 + record.strValue2 + record.strUnit1 + record.strUnit2, "");
    EXPECT_EQ(record.strfunction + record.strF1Name + record.strUL + record.strNpe, "");
}

}  // namespace
}  // namespace kestrix::protocol
