#include "protocol/KV3820protocal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tests/protocol/RecordDifference.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::protocol {
namespace {

using kestrix::testing::FrameBuilder;

MeterReading decoded(std::span<const std::uint8_t> bytes) {
    KV3820protocal decoder;
    decoder.initFromNSdata(bytes);
    return decoder.getAllDataStructValue();
}

MeterReading decoded(const FrameBuilder& frame) {
    return decoded(frame.bytes());
}

std::string differenceFromAllZero(const MeterReading& record) {
    return firstDifference(MeterReading(), record);
}

// A frame with something in every byte.
FrameBuilder richFrame(char function) {
    return FrameBuilder(function)
        .setting(1, 1)
        .setting(2, 1)
        .setting(3, 1)
        .setting(4, 1)
        .testRunning(1)
        .reading(1, 1234, 0x12)
        .reading(2, 501, 0x11)
        .reading(3, 2304, 0x81)
        .reading(4, 50, 0x00)
        .status(0xEB)
        .alarm(0x07)
        .wires(3, 231)
        .unusedBytes(0xA5);
}

// ---- frames that hold nothing ----

TEST(KV3820protocal, FrameThatFailsTheChecksLeavesEveryFieldZeroOrEmpty) {
    for (const auto& [position, value] :
         {std::pair<std::size_t, std::uint8_t>{2, 0x1F}, {8, 0x54}, {9, 0xAB}, {10, '9'}}) {
        const MeterReading record = decoded(richFrame('5').byte(position, value));
        EXPECT_EQ(differenceFromAllZero(record), "") << "byte " << position;
        EXPECT_EQ(record.iFunction, 0);
    }
}

TEST(KV3820protocal, AnyThirdStartByteButOneLeavesTheRecordAllZero) {
    for (unsigned value = 0; value < 256; ++value) {
        const MeterReading record = decoded(richFrame('2').byte(2, static_cast<std::uint8_t>(value)));
        EXPECT_EQ(record.iFunction, value == 0x1E ? '2' : 0);
        EXPECT_EQ(differenceFromAllZero(record).empty(), value != 0x1E) << value;
    }
}

TEST(KV3820protocal, EitherMarkerByteWrongLeavesTheRecordAllZero) {
    EXPECT_EQ(differenceFromAllZero(decoded(richFrame('4').byte(8, 0xAA))), "");
    EXPECT_EQ(differenceFromAllZero(decoded(richFrame('4').byte(9, 0x55))), "");
    EXPECT_EQ(differenceFromAllZero(decoded(richFrame('4').byte(8, 0xAA).byte(9, 0x55))), "");
    EXPECT_NE(differenceFromAllZero(decoded(richFrame('4'))), "");
}

TEST(KV3820protocal, FunctionCodeOutsideOneToSixLeavesTheRecordAllZero) {
    for (const char code : {'0', '7', '\x00', '\xFF', '\x01', '\x06', '8'}) {
        EXPECT_EQ(differenceFromAllZero(decoded(richFrame(code))), "") << static_cast<int>(code);
    }
    for (const char code : {'1', '2', '3', '4', '5', '6'}) {
        EXPECT_EQ(decoded(richFrame(code)).iFunction, code);
    }
}

TEST(KV3820protocal, FirstTwoStartBytesAreNotExamined) {
    EXPECT_EQ(firstDifference(decoded(richFrame('3')), decoded(richFrame('3').byte(0, 0).byte(1, 0xFF))), "");
    EXPECT_EQ(decoded(richFrame('3').byte(0, 0).byte(1, 0xFF)).iFunction, '3');
}

TEST(KV3820protocal, FewerThanThirtyOneBytesGiveTheAllZeroRecord) {
    for (const char function : {'1', '2', '3', '4', '5', '6'}) {
        const FrameBuilder frame = richFrame(function);
        for (std::size_t size = 0; size <= 30; ++size) {
            // A buffer of exactly this size, so that a read beyond it is seen by the address checker.
            const std::vector<std::uint8_t> bytes(frame.bytes().begin(),
                                                  frame.bytes().begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_EQ(differenceFromAllZero(decoded(bytes)), "") << size << " bytes";
        }
    }
}

TEST(KV3820protocal, ThirtyOneBytesAreEnoughAndNothingBehindThemMatters) {
    for (const char function : {'1', '2', '3', '4', '5', '6'}) {
        const FrameBuilder frame = richFrame(function);
        const std::vector<std::uint8_t> shortest(frame.bytes().begin(), frame.bytes().begin() + 31);
        std::vector<std::uint8_t> longer(frame.bytes().begin(), frame.bytes().end());
        longer.resize(500, 0x7E);
        EXPECT_EQ(decoded(shortest).iFunction, function);
        EXPECT_EQ(firstDifference(decoded(frame), decoded(shortest)), "");
        EXPECT_EQ(firstDifference(decoded(frame), decoded(longer)), "");
    }
}

// ---- readings ----

TEST(KV3820protocal, ThirtyOneByteEarthFrameOfZerosDecodesAsEarth) {
    const FrameBuilder frame = FrameBuilder('1').byte(0, 0).byte(1, 0);
    const MeterReading record = decoded(std::span(frame.bytes()).first(31));
    EXPECT_EQ(record.iFunction, '1');
    EXPECT_EQ(record.ValData1.ValD1, 0.0);
    EXPECT_EQ(record.ValData1.strValD1, "0");
    EXPECT_EQ(record.ValData1.strUnitD1, "Ω");
    EXPECT_EQ(record.ValData2.strUnitD1, "mA");
}

TEST(KV3820protocal, NegativeReadingWithTwoDecimals) {
    const MeterReading record = decoded(FrameBuilder('1').byte(12, 0x39).byte(13, 0x30).byte(14, 0x82));
    EXPECT_EQ(record.ValData1.ValD1, -123.45);
    EXPECT_EQ(record.ValData1.strValD1, "-123.45");
    EXPECT_EQ(record.ValData1.pointPosD1, 2);
    EXPECT_EQ(record.strValue1, "-123.45");
}

TEST(KV3820protocal, MagnitudeZeroHasNoSign) {
    const MeterReading record = decoded(FrameBuilder('2').reading(1, 0, 0x82).reading(2, 0, 0x80));
    EXPECT_FALSE(std::signbit(record.ValData1.ValD1));
    EXPECT_EQ(record.ValData1.strValD1, "0.00");
    EXPECT_EQ(record.strValue2, "0");
    const MeterReading loop = decoded(FrameBuilder('5').reading(3, 0, 0x01).status(0x08));
    EXPECT_FALSE(std::signbit(loop.ValData3.ValD1));
    EXPECT_EQ(loop.ValData3.strValD1, "0.0");
    EXPECT_EQ(loop.strNpe, "0");
}

TEST(KV3820protocal, NoDataWinsOverOverloadForTheNumber) {
    for (const char function : {'1', '2', '3', '4', '5', '6'}) {
        const MeterReading record = decoded(richFrame(function).reading(1, 1234, 0x10).noDataOverload(0x11));
        EXPECT_EQ(record.ValData1.NoData, 1);
        EXPECT_EQ(record.ValData1.OlData, 1);
        EXPECT_EQ(record.ValData1.ValD1, 5000001.0) << function;
    }
}

TEST(KV3820protocal, OverloadAloneGivesItsOwnNumber) {
    const MeterReading record = decoded(richFrame('5').noDataOverload(0x0F));
    EXPECT_EQ(record.ValData1.ValD1, 5000002.0);
    EXPECT_EQ(record.ValData2.ValD1, 5000002.0);
    EXPECT_EQ(record.ValData3.ValD1, 5000002.0);
    EXPECT_EQ(record.ValData4.ValD1, 5000002.0);
    EXPECT_EQ(record.ValData4.NoData, 0);
}

TEST(KV3820protocal, LoopReadingThreeHasItsSignReversed) {
    EXPECT_EQ(decoded(FrameBuilder('5').reading(3, 2300, 0x01)).ValData3.ValD1, -230.0);
    EXPECT_EQ(decoded(FrameBuilder('5').reading(3, 2300, 0x81)).ValData3.ValD1, 230.0);
    EXPECT_EQ(decoded(FrameBuilder('5').reading(4, 501, 0x01)).ValData4.strValD1, "-50.1");
    EXPECT_EQ(decoded(FrameBuilder('5').reading(4, 501, 0x81)).ValData4.strValD1, "50.1");
    EXPECT_EQ(decoded(FrameBuilder('4').reading(3, 2300, 0x81)).ValData3.ValD1, -230.0);
    EXPECT_EQ(decoded(FrameBuilder('6').reading(3, 2300, 0x81)).ValData3.ValD1, -230.0);
}

TEST(KV3820protocal, LimitReadingsHaveNoSign) {
    const MeterReading record = decoded(FrameBuilder('5').reading(1, 199, 0x82).reading(2, 26, 0x90));
    EXPECT_EQ(record.ValData1.ValD1, 199 / 10.0 / 10.0);
    EXPECT_EQ(record.ValData1.bLess, 1);
    EXPECT_EQ(record.ValData2.strValD1, "26");
    EXPECT_EQ(record.ValData2.bLess, 1);
}

TEST(KV3820protocal, WireVoltagesKeepTheNumberOfAReadingWithoutData) {
    const MeterReading record =
        decoded(FrameBuilder('4').reading(3, 2304, 0x01).status(0x09).wires(3, 231).noDataOverload(0x40));
    EXPECT_EQ(record.ValData3.ValD1, 5000001.0);
    EXPECT_EQ(record.dLpe, 230.4);
    EXPECT_EQ(record.dNpe, 3.0);
    EXPECT_EQ(record.dLn, 231.0);
}

TEST(KV3820protocal, StatusBitZeroTellsWhichWireReadingThreeIs) {
    const FrameBuilder frame = FrameBuilder('6').setting(1, 2).reading(3, 52, 0x01).wires(230, 229);
    const MeterReading neutral = decoded(FrameBuilder(frame).status(0x08));
    EXPECT_EQ(neutral.dNpe, 5.2);
    EXPECT_EQ(neutral.dLpe, 230.0);
    const MeterReading line = decoded(FrameBuilder(frame).status(0x09));
    EXPECT_EQ(line.dLpe, 5.2);
    EXPECT_EQ(line.dNpe, 230.0);
    EXPECT_EQ(line.dLn, 229.0);
}

TEST(KV3820protocal, FaultVoltageIsTakenBeforeReadingTwoLosesItsNumber) {
    const MeterReading record = decoded(FrameBuilder('6').setting(1, 2).reading(2, 123, 0x21));
    EXPECT_EQ(record.ValData2.NoData, 1);
    EXPECT_EQ(record.ValData2.ValD1, 5000001.0);
    EXPECT_EQ(record.ValData2.strValD1, "---");
    EXPECT_EQ(record.dUf, 12.3);
}

TEST(KV3820protocal, LoopMarksAllSixAutoTestSlotsAsNoData) {
    const MeterReading record = decoded(FrameBuilder('5'));
    ValData noData;
    noData.NoData = 1;
    noData.ValD1 = 5000001.0;
    for (const ValData* slot :
         {&record.x120, &record.x12180, &record.x10, &record.x1180, &record.x50, &record.x5180}) {
        EXPECT_EQ(*slot, noData);
    }
}

// ---- flags ----

TEST(KV3820protocal, HighFlagAndRecordRequestStayClearInEveryRecord) {
    for (char function = '1'; function <= '6'; ++function) {
        FrameBuilder frame(function);
        for (std::size_t position = 0; position < FrameBuilder::kSize; ++position) {
            const bool isMarker = position == 2 || (position >= 8 && position <= 10);
            if (!isMarker) {
                frame.byte(position, 0xFF);
            }
        }
        const MeterReading record = decoded(frame);
        EXPECT_EQ(record.iFunction, function);
        EXPECT_EQ(record.bHighFlag, 0);
        EXPECT_FALSE(record.bRecord);
    }
}

TEST(KV3820protocal, EarthComparesItsBytesWithTheCharacterOne) {
    const MeterReading character = decoded(FrameBuilder('1').setting(4, '1').testRunning('1'));
    EXPECT_EQ(character.bCalFlag, 1);
    EXPECT_EQ(character.bTestFlag, 1);
    const MeterReading number = decoded(FrameBuilder('1').setting(4, 1).testRunning(1));
    EXPECT_EQ(number.bCalFlag, 0);
    EXPECT_EQ(number.bTestFlag, 0);
    EXPECT_EQ(decoded(FrameBuilder('3').setting(4, 1).testRunning('1')).bCalFlag, 1);
    EXPECT_EQ(decoded(FrameBuilder('3').setting(4, 1).testRunning('1')).bTestFlag, 0);
}

TEST(KV3820protocal, LoopAndRcdBeepWithTheWarningBit) {
    for (const char function : {'5', '6'}) {
        EXPECT_EQ(decoded(FrameBuilder(function).status(0x80)).bBeepFlag, 1);
        EXPECT_EQ(decoded(FrameBuilder(function).status(0x7F).setting(2, 1)).bBeepFlag, 0);
    }
    EXPECT_EQ(decoded(FrameBuilder('4').status(0x80)).bBeepFlag, 0);
    EXPECT_EQ(decoded(FrameBuilder('1').status(0x08)).bBeepFlag, 1);
}

// ---- RCD ----

TEST(KV3820protocal, RcdAutoModeStepFiveFillsNoSlot) {
    const MeterReading record = decoded(FrameBuilder('6').reading(1, 283, 0x15));
    EXPECT_EQ(record.iFunction, '7');
    EXPECT_EQ(record.ValData1.strValD1, "28.3");
    for (const ValData* slot :
         {&record.x120, &record.x12180, &record.x10, &record.x1180, &record.x50, &record.x5180}) {
        EXPECT_EQ(*slot, ValData());
    }
}

TEST(KV3820protocal, RcdAutoModeStepSixFillsX50) {
    const MeterReading record = decoded(FrameBuilder('6').reading(1, 283, 0x16));
    EXPECT_EQ(record.iFunction, '7');
    EXPECT_EQ(record.x50, record.ValData1);
    EXPECT_EQ(record.x50.ValD1, 28.3);
    EXPECT_EQ(record.x5180, ValData());
}

TEST(KV3820protocal, RcdAutoModeStepsFillTheirOwnSlotOnly) {
    ValData MeterReading::*const slots[16] = {
        &MeterReading::x120,
        &MeterReading::x12180,
        &MeterReading::x10,
        &MeterReading::x1180,
        nullptr,
        nullptr,
        &MeterReading::x50,
        &MeterReading::x5180,
    };
    for (std::size_t step = 0; step < 16; ++step) {
        MeterReading record =
            decoded(FrameBuilder('6').reading(1, 283, static_cast<std::uint8_t>(0x90 + step)));
        MeterReading expected = record;
        for (ValData MeterReading::*const slot : slots) {
            if (slot != nullptr) {
                expected.*slot = slot == slots[step] ? record.ValData1 : ValData();
            }
        }
        EXPECT_EQ(firstDifference(expected, record), "") << "step " << step;
        EXPECT_EQ(record.ValData1.bLess, 1);
    }
}

TEST(KV3820protocal, RcdAutoModeCopiesReadingOneAsItStandsWithoutData) {
    const MeterReading record = decoded(FrameBuilder('6').reading(1, 283, 0x12).noDataOverload(0x10));
    EXPECT_EQ(record.x10.ValD1, 5000001.0);
    EXPECT_EQ(record.x10.strValD1, "---");
    EXPECT_EQ(record.x10.NoData, 1);
    EXPECT_EQ(record.x10.pointPosD1, 1);
}

TEST(KV3820protocal, RcdRampHasMilliamperesWhateverTheUnitCode) {
    for (const unsigned unitCode : {0U, 1U, 2U, 3U}) {
        const auto attribute = static_cast<std::uint8_t>(unitCode * 32);
        const MeterReading ramp =
            decoded(FrameBuilder('6').setting(1, 5).reading(1, 21, attribute).noDataOverload(0x01));
        EXPECT_EQ(ramp.ValData1.strUnitD1, "mA");
        EXPECT_EQ(ramp.strUnit1, "mA");
        EXPECT_EQ(ramp.ValData1.NoData, unitCode == 2 ? 1 : 0);
        EXPECT_EQ(ramp.ValData1.OlData, unitCode == 2 ? 0 : 1);
    }
    EXPECT_EQ(decoded(FrameBuilder('6').setting(1, 4).reading(1, 21, 0x00)).ValData1.strUnitD1, "mS");
}

TEST(KV3820protocal, RcdTextsOfReadingsWithoutANumberAreReplaced) {
    const MeterReading record = decoded(FrameBuilder('6').setting(1, 2).noDataOverload(0x5C));
    EXPECT_EQ(record.ValData1.strValD1, "---");
    EXPECT_EQ(record.ValData2.strValD1, "0");
    EXPECT_EQ(record.ValData3.strValD1, "---");
    EXPECT_EQ(record.ValData4.strValD1, "OL");
    EXPECT_EQ(decoded(FrameBuilder('5').noDataOverload(0x5C)).ValData4.strValD1, "0");
}

}  // namespace
}  // namespace kestrix::protocol
