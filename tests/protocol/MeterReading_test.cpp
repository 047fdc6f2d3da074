#include "protocol/MeterReading.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "protocol/KV3820protocal.h"
#include "tests/protocol/RecordDifference.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::protocol {
namespace {

using kestrix::testing::FrameBuilder;

KV3820protocal loopDecoder() {
    KV3820protocal decoder;
    decoder.initFromNSdata(
        FrameBuilder('5').reading(1, 123, 0x82).reading(2, 1840, 0x01).status(0x08).wires(231, 2).bytes());
    return decoder;
}

TEST(MeterReading, StartsAllZero) {
    const MeterReading record;
    EXPECT_FALSE(record.bRecord);
    EXPECT_EQ(record.iFunction, 0);
    EXPECT_EQ(record.dNpe, 0.0);
    EXPECT_EQ(record.strfunction, "");
    EXPECT_EQ(record.x5180.NoData, 0);
    EXPECT_EQ(record.ValData1.strValD1, "");
    EXPECT_EQ(record.bottompicIndex, 0);
}

TEST(MeterReading, HoldsFiftySixFieldsInTheirOrderAndBehindThemTheFrame) {
    const MeterReading r;
    const auto& [f01, f02, f03, f04, f05, f06, f07, f08, f09, f10, f11, f12, f13, f14, f15, f16, f17, f18,
                 f19, f20, f21, f22, f23, f24, f25, f26, f27, f28, f29, f30, f31, f32, f33, f34, f35, f36,
                 f37, f38, f39, f40, f41, f42, f43, f44, f45, f46, f47, f48, f49, f50, f51, f52, f53, f54,
                 f55, f56, frame] = r;
    const std::vector<const void*> inPlace = {
        &f01, &f02, &f03, &f04, &f05, &f06, &f07, &f08, &f09, &f10, &f11, &f12, &f13, &f14,
        &f15, &f16, &f17, &f18, &f19, &f20, &f21, &f22, &f23, &f24, &f25, &f26, &f27, &f28,
        &f29, &f30, &f31, &f32, &f33, &f34, &f35, &f36, &f37, &f38, &f39, &f40, &f41, &f42,
        &f43, &f44, &f45, &f46, &f47, &f48, &f49, &f50, &f51, &f52, &f53, &f54, &f55, &f56};
    const std::vector<const void*> inOrder = {
        &r.bRecord,    &r.bWarnFlag,     &r.bCalFlag,   &r.bBeepFlag,  &r.bHoldFlag, &r.bLockFlag,
        &r.bAlarmFlag, &r.bHighFlag,     &r.bTestFlag,  &r.bTestRet,   &r.bTest,     &r.iFunction,
        &r.iSubFunc,   &r.iSubFuncF2,    &r.iSubFuncF3, &r.iSubFuncF4, &r.ValData1,  &r.ValData2,
        &r.ValData3,   &r.ValData4,      &r.x120,       &r.x12180,     &r.x10,       &r.x1180,
        &r.x50,        &r.x5180,         &r.dLpe,       &r.dNpe,       &r.dLn,       &r.dUf,
        &r.dUl,        &r.strfunction,   &r.strValue1,  &r.strValue2,  &r.strUnit1,  &r.strUnit2,
        &r.strF1Name,  &r.strF1Value,    &r.strF2Name,  &r.strF2Value, &r.strF3Name, &r.strF3Value,
        &r.strF4Name,  &r.strF4Value,    &r.strRCD1,    &r.strRCD2,    &r.strRCD3,   &r.strRCD4,
        &r.strRCD5,    &r.strRCD6,       &r.strNpe,     &r.strLpe,     &r.strLn,     &r.strUL,
        &r.strUF,      &r.bottompicIndex};
    EXPECT_EQ(inPlace, inOrder);
    EXPECT_EQ(&frame, &r.frame);
}

TEST(ValData, HoldsSevenFieldsInTheirOrder) {
    const ValData reading;
    const auto& [value, text, decimals, unit, noData, overload, less] = reading;
    EXPECT_EQ(&value, &reading.ValD1);
    EXPECT_EQ(&text, &reading.strValD1);
    EXPECT_EQ(&decimals, &reading.pointPosD1);
    EXPECT_EQ(&unit, &reading.strUnitD1);
    EXPECT_EQ(&noData, &reading.NoData);
    EXPECT_EQ(&overload, &reading.OlData);
    EXPECT_EQ(&less, &reading.bLess);
}

TEST(ValData, SentinelsAreExact) {
    EXPECT_EQ(kNoDataValue, 5000001.0);
    EXPECT_EQ(kOverloadValue, 5000002.0);
}

TEST(MeterReading, ChangedCopyLeavesItsOriginalUnchanged) {
    const MeterReading original = loopDecoder().getAllDataStructValue();
    MeterReading copy = original;
    copy.strValue1[0] = '#';
    copy.strfunction.append(" and a text that needs memory of its own");
    copy.ValData1.strUnitD1.clear();
    copy.x50.ValD1 = 1;
    EXPECT_EQ(firstDifference(loopDecoder().getAllDataStructValue(), original), "");
    EXPECT_NE(firstDifference(copy, original), "");
}

TEST(MeterReading, ChangedOriginalLeavesItsCopyUnchanged) {
    MeterReading original = loopDecoder().getAllDataStructValue();
    const MeterReading copy = original;
    original.strValue1 = "changed, and long enough to need memory of its own";
    original.ValData3.strValD1[0] = '#';
    EXPECT_EQ(copy.strValue1, "> 1.23");
    EXPECT_EQ(firstDifference(loopDecoder().getAllDataStructValue(), copy), "");
}

TEST(KV3820protocal, RecordTakenOutAndChangedLeavesTheDecodersRecordUnchanged) {
    const KV3820protocal decoder = loopDecoder();
    MeterReading taken = decoder.getAllDataStructValue();
    taken.strValue1[0] = '#';
    taken.iFunction = 0;
    EXPECT_EQ(decoder.return3820data().strValue1, "> 1.23");
    EXPECT_EQ(decoder.return3820data().iFunction, '5');
}

TEST(KV3820protocal, ChangedDecoderLeavesTheRecordTakenOutUnchanged) {
    KV3820protocal decoder = loopDecoder();
    const MeterReading taken = decoder.getAllDataStructValue();
    decoder.setReturn3820data(MeterReading());
    EXPECT_EQ(taken.strValue1, "> 1.23");
    EXPECT_EQ(taken.iFunction, '5');
    EXPECT_EQ(decoder.return3820data().iFunction, 0);
}

TEST(KV3820protocal, RecordOutlivesItsDecoder) {
    MeterReading taken;
    {
        const KV3820protocal decoder = loopDecoder();
        taken = decoder.getAllDataStructValue();
    }
    EXPECT_EQ(firstDifference(loopDecoder().return3820data(), taken), "");
}

TEST(KV3820protocal, NewDecoderHoldsTheAllZeroRecord) {
    EXPECT_EQ(firstDifference(MeterReading(), KV3820protocal().return3820data()), "");
}

TEST(KV3820protocal, SetReturn3820dataReplacesTheWholeRecord) {
    MeterReading record;
    record.bRecord = true;
    record.bHighFlag = 1;
    record.strRCD6 = "31.5";
    record.x5180.bLess = 1;
    record.dUf = -1.5;
    KV3820protocal decoder = loopDecoder();
    decoder.setReturn3820data(record);
    EXPECT_EQ(firstDifference(record, decoder.return3820data()), "");
    EXPECT_EQ(firstDifference(record, decoder.getAllDataStructValue()), "");
}

TEST(KV3820protocal, SetReturn3820dataTakesACopy) {
    MeterReading record;
    record.strValue1 = "12.5";
    KV3820protocal decoder;
    decoder.setReturn3820data(record);
    record.strValue1[0] = '#';
    EXPECT_EQ(decoder.return3820data().strValue1, "12.5");
}

TEST(KV3820protocal, InitStructAndValueClearsTheRecordRequestAndNothingElse) {
    MeterReading record = loopDecoder().getAllDataStructValue();
    record.bRecord = true;
    record.bHighFlag = 1;
    record.strRCD3 = "31.5";
    KV3820protocal decoder;
    decoder.setReturn3820data(record);
    decoder.initStructAndValue();
    MeterReading expected = record;
    expected.bRecord = false;
    EXPECT_EQ(firstDifference(expected, decoder.return3820data()), "");
}

TEST(KV3820protocal, DecodingClearsTheRecordRequestEvenOfARefusedFrame) {
    MeterReading record;
    record.bRecord = true;
    KV3820protocal decoder;
    decoder.setReturn3820data(record);
    decoder.initFromNSdata(FrameBuilder('1').byte(2, 0x1F).bytes());
    EXPECT_FALSE(decoder.return3820data().bRecord);
}

TEST(KV3820protocal, GetAllDataStructValueOfALivingDecoderLeavesItsRecordInPlace) {
    const KV3820protocal decoder = loopDecoder();
    EXPECT_EQ(firstDifference(decoder.getAllDataStructValue(), decoder.getAllDataStructValue()), "");
    EXPECT_EQ(decoder.return3820data().strfunction, "LOOP/PFC");
}

TEST(KV3820protocal, GetAllDataStructValueOfADyingDecoderHandsTheWholeRecordOver) {
    KV3820protocal decoder = loopDecoder();
    const MeterReading expected = decoder.getAllDataStructValue();
    const MeterReading moved = std::move(decoder).getAllDataStructValue();
    EXPECT_EQ(firstDifference(expected, moved), "");
    static_assert(
        std::is_same_v<decltype(std::declval<KV3820protocal&&>().getAllDataStructValue()), MeterReading>);
}

TEST(KV3820protocal, InitialisersHandTheDecoderBackForChaining) {
    KV3820protocal decoder;
    const FrameBuilder frame('3');
    EXPECT_EQ(&decoder.initFromNSdata(frame.bytes()), &decoder);
    EXPECT_EQ(&decoder.initFromString(frame.hexText()), &decoder);
    EXPECT_EQ(&decoder.initFromString(""), &decoder);
}

TEST(RecordDifference, NamesTheFirstFieldThatDiffers) {
    MeterReading changed;
    changed.x10.strUnitD1 = "mS";
    changed.bottompicIndex = 3;
    EXPECT_EQ(firstDifference(MeterReading(), changed), "x10.strUnitD1: expected \"\", got \"mS\"");
}

TEST(RecordDifference, TellsNegativeZeroFromZero) {
    MeterReading changed;
    changed.ValData2.ValD1 = -0.0;
    EXPECT_EQ(firstDifference(MeterReading(), changed), "ValData2.ValD1: expected 0, got -0");
}

}  // namespace
}  // namespace kestrix::protocol
