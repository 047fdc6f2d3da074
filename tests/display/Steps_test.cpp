// What one record after another does to the display.
#include <gtest/gtest.h>

#include <string>

#include "display/Steps.h"
#include "tests/display/DisplayFixture.h"

namespace kestrix::display {
namespace {

constexpr std::uint8_t kFunctions[] = {'1', '2', '3', '4', '5', '6', '7', 0, '8', 255};

bool twoReadings(std::uint8_t function) {
    return function != '6' && function != '7';
}

std::string traced(std::uint8_t first, std::uint8_t second) {
    return "from " + std::to_string(first) + " to " + std::to_string(second);
}

using DispatchTest = DisplayFixture;

TEST_F(DispatchTest, BeforeTheFirstRecordThereIsNoFunction) {
    EXPECT_FALSE(display_.strfunction.has_value());
    EXPECT_EQ(display_.intfunctions, 0);
    EXPECT_EQ(display_.parameters, "");
    EXPECT_EQ(display_.results, "");
}

TEST_F(DispatchTest, TheFunctionIsThatOfTheLatestRecord) {
    for (const std::uint8_t function : kFunctions) {
        protocol::MeterReading record = recordOf(function);
        record.strfunction = "F " + std::to_string(function);
        receive(record);
        EXPECT_EQ(display_.strfunction, record.strfunction);
        EXPECT_EQ(display_.intfunctions, function);
    }
}

TEST_F(DispatchTest, ARecordWithoutAFunctionsNameIsStillARecord) {
    receive({});
    EXPECT_EQ(display_.strfunction, "");
}

TEST_F(DispatchTest, TheTitleOfTheFunctionIsLit) {
    receive(recordOf('1'));
    EXPECT_EQ(display_.title, Title::Earth);
    receive(recordOf('7'));
    EXPECT_EQ(display_.title, Title::Rcd);
    receive(recordOf('9'));
    EXPECT_EQ(display_.title, Title::None);
}

TEST_F(DispatchTest, TheWarningImageIsShownWhileTheAlarmFlagIsNotZero) {
    for (const std::uint8_t function : kFunctions) {
        for (const int alarm : {0, 1, 0, 2, 255, 0}) {
            protocol::MeterReading record = recordOf(function);
            record.bAlarmFlag = static_cast<std::uint8_t>(alarm);
            receive(record);
            EXPECT_EQ(display_.warning, alarm != 0);
        }
    }
}

TEST_F(DispatchTest, TheRecordFlagIsNotLookedAt) {
    protocol::MeterReading record = recordOf('2');
    receive(record);
    const Display before = display_;
    record.bRecord = true;
    receive(record);
    EXPECT_EQ(display_, before);
}

TEST_F(DispatchTest, TwoReadingsStandInTheirPlaces) {
    for (const std::uint8_t function : kFunctions) {
        if (!twoReadings(function)) continue;
        display_.first = display_.second = {"old", "old", true};
        receive(recordOf(function));
        EXPECT_EQ(display_.first.value, "1.23");
        EXPECT_EQ(display_.first.unit, "MΩ");
        EXPECT_EQ(display_.second.value, "45.6");
        EXPECT_EQ(display_.second.unit, "V");
    }
}

TEST_F(DispatchTest, OneReadingLeavesTheSecondsTexts) {
    display_.second.value = "old";
    display_.second.unit = "old";
    receive(recordOf('6'));
    EXPECT_EQ(display_.first.value, "1.23");
    EXPECT_EQ(display_.first.unit, "MΩ");
    EXPECT_EQ(display_.second.value, "old");
    EXPECT_EQ(display_.second.unit, "old");
}

TEST_F(DispatchTest, TheSequenceLeavesTheReadingsTexts) {
    receive(recordOf('1'));
    receive(sequenceRecord(1, "18"));
    EXPECT_EQ(display_.first.value, "1.23");
    EXPECT_EQ(display_.second.value, "45.6");
}

TEST_F(DispatchTest, MissingTextsAreEmpty) {
    receive(recordOf('1'));
    receive({});
    EXPECT_EQ(display_.first, Reading());
    EXPECT_EQ(display_.second, Reading());
}

TEST_F(DispatchTest, ShowModeSaysTheLayoutOfTheLastRecord) {
    struct Row {
        std::uint8_t function, mode;
        std::int32_t showMode;
    };
    constexpr Row rows[] = {{'6', 0, 1}, {'1', 0, 0}, {'7', 0, 3}, {'7', 1, 3},   {'7', 2, 2},
                            {'5', 0, 0}, {'7', 9, 2}, {0, 0, 0},   {'7', 255, 2}, {'9', 0, 0}};
    for (const Row& row : rows) {
        protocol::MeterReading record = recordOf(row.function);
        record.iSubFuncF2 = row.mode;
        receive(record);
        EXPECT_EQ(display_.counters.showMode, row.showMode) << int{row.function};
    }
}

TEST_F(DispatchTest, OnlySequenceRecordsAreRememberedByTheirSetting) {
    receive(sequenceRecord(0, "18", 5));
    EXPECT_EQ(display_.counters.lastSubFuncF2, 5);
    for (const std::uint8_t function : kFunctions) {
        if (function == '7') continue;
        protocol::MeterReading record = recordOf(function);
        record.iSubFuncF2 = 3;
        receive(record);
        EXPECT_EQ(display_.counters.lastSubFuncF2, 5);
    }
}

// What is shown behind a record of `to`. hiddenValues: the RCD values were hidden before it.
std::string expectedAfter(std::uint8_t to, bool hiddenValues) {
    if (to == '6') return "D1";
    const std::string values = hiddenValues ? "" : " values1-6";
    return (to == '7' ? "rows1-4 rows5-6" : "D1 D2") + values;
}

// Once code '6' has hidden the RCD values, only a running sequence shows one of them again.
TEST_F(DispatchTest, EveryFunctionShowsItsGroupsBehindEveryOtherAndBack) {
    for (const std::uint8_t from : kFunctions) {
        for (const std::uint8_t to : kFunctions) {
            SCOPED_TRACE(traced(from, to));
            for (std::int32_t group = 1; group <= 4; ++group) setHidden(display_, group, true);
            setHidden(display_, kRcdValues, false);
            bool hiddenValues = false;
            for (const std::uint8_t function : {from, to, from, to}) {
                hiddenValues = hiddenValues || function == '6';
                receive(recordOf(function));
                EXPECT_EQ(shownParts(display_), expectedAfter(function, hiddenValues));
            }
        }
    }
}

TEST_F(DispatchTest, SwitchingFromFunction7To1ClearsTheRcdRowsAndBothMainReadingsReappear) {
    receiveRunning(5);
    EXPECT_EQ(tripTimes(display_), "[18][18][ ][ ][ ][ ]");
    receive(recordOf('1'));
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
    EXPECT_EQ(shownParts(display_), "D1 D2 value2");
    EXPECT_EQ(display_.first.value, "1.23");
    EXPECT_EQ(display_.second.value, "45.6");
}

TEST_F(DispatchTest, EveryTwoReadingRecordClearsTheTripTimes) {
    receive(recordOf('1'));
    display_.rcdRows[2].value = "18";
    receive(recordOf('1'));
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
}

TEST_F(DispatchTest, OneReadingKeepsTheHiddenTripTimes) {
    receiveRunning(3);
    receive(recordOf('6'));
    EXPECT_EQ(tripTimes(display_), "[18][ ][ ][ ][ ][ ]");
    EXPECT_EQ(shownParts(display_), "D1");
}

TEST_F(DispatchTest, ASequenceThatComesBehindAReadingBeginsWithEmptyRows) {
    receiveRunning(3);
    receive(recordOf('6'));  // shows the first reading
    receive(sequenceRecord(0));
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
}

TEST_F(DispatchTest, ASequenceThatGoesOnKeepsItsRows) {
    receiveRunning(3);
    receive(sequenceRecord(0));
    receive(sequenceRecord(0));
    EXPECT_EQ(tripTimes(display_), "[18][ ][ ][ ][ ][ ]");
}

// Groups are switched where the second reading is hidden: behind a sequence, a single reading, a disconnect.
TEST_F(DispatchTest, WhereTheSecondReadingIsShownTwoReadingsSwitchNoGroups) {
    setHidden(display_, kReadings, false);
    setHidden(display_, kRcdRows1To4, false);
    receive(recordOf('1'));
    EXPECT_EQ(shownParts(display_), "D1 D2 rows1-4 values1-6");
}

TEST_F(DispatchTest, ASingleReadingSwitchesGroupsOnEveryRecord) {
    for (int i = 0; i < 2; ++i) {
        for (std::int32_t group = 3; group <= 5; ++group) setHidden(display_, group, false);
        setHidden(display_, kReadings, i == 0);
        receive(recordOf('6'));
        EXPECT_EQ(shownParts(display_), "D1");
    }
}

}  // namespace
}  // namespace kestrix::display
