// The automatic sequence of the RCD test: six trip times from the records of a running test.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "display/Steps.h"
#include "tests/display/DisplayFixture.h"

namespace kestrix::display {
namespace {

using RcdSequenceTest = DisplayFixture;

TEST_F(RcdSequenceTest,
       TheRowsFillOnRecords3To13OfTheSequenceRecord1ClearsAllRowsAndTheRecordBehind13ClearsAgain) {
    const char* const expected[] = {
        kNoTripTimes,           kNoTripTimes,         "[3][ ][ ][ ][ ][ ]",  "[3][ ][ ][ ][ ][ ]",
        "[3][5][ ][ ][ ][ ]",   "[3][5][ ][ ][ ][ ]", "[3][5][7][ ][ ][ ]",  "[3][5][7][ ][ ][ ]",
        "[3][5][7][9][ ][ ]",   "[3][5][7][9][ ][ ]", "[3][5][7][9][11][ ]", "[3][5][7][9][11][ ]",
        "[3][5][7][9][11][13]",
    };
    for (int round = 0; round < 3; ++round) {
        setTripTimes("old");
        for (int number = 1; number <= 13; ++number) {
            SCOPED_TRACE(number);
            receive(sequenceRecord(1, std::to_string(number).c_str()));
            EXPECT_EQ(tripTimes(display_), expected[number - 1]);
            EXPECT_EQ(display_.counters.rcdStep, number % 13);
        }
    }
}

TEST_F(RcdSequenceTest, OnlyTheValueWrittenLastStaysVisible) {
    const char* const expected[] = {"values1-6", "values1-6", "value1", "value1", "value2",
                                    "value2",    "value3",    "value3", "value4", "value4",
                                    "value5",    "value5",    "value6"};
    for (const char* values : expected) {
        receiveRunning(1);
        EXPECT_EQ(shownParts(display_), std::string("rows1-4 rows5-6 ") + values);
    }
    receiveRunning(1);
    EXPECT_EQ(shownParts(display_), "rows1-4 rows5-6 value6");
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
}

TEST_F(RcdSequenceTest, BTestDroppingTo0InTheMiddleResetsRcdStepTo0AndLeavesTheRowsTextsInPlace) {
    receiveRunning(7);
    EXPECT_EQ(display_.counters.rcdStep, 7);
    receive(sequenceRecord(0, "99"));
    EXPECT_EQ(display_.counters.rcdStep, 0);
    EXPECT_EQ(tripTimes(display_), "[18][18][18][ ][ ][ ]");
    EXPECT_EQ(shownParts(display_), "rows1-4 rows5-6 value3");
    receiveRunning(1);
    EXPECT_EQ(display_.counters.rcdStep, 1);
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
}

TEST_F(RcdSequenceTest, WithoutARunningTestNothingIsTaken) {
    for (int i = 0; i < 20; ++i) {
        receive(sequenceRecord(0));
        EXPECT_EQ(display_.counters.rcdStep, 0);
    }
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
}

TEST_F(RcdSequenceTest, AnyBTestThatIsNotZeroRunsIt) {
    receive(sequenceRecord(255));
    receive(sequenceRecord(2));
    EXPECT_EQ(display_.counters.rcdStep, 2);
}

TEST_F(RcdSequenceTest, OnEveryEvenStepAndOnStepZeroTheRowsStay) {
    for (const int step : {2, 4, 6, 8, 10, 12}) {
        SCOPED_TRACE(step);
        display_.counters.rcdStep = step - 1;
        setTripTimes("old");
        setHidden(display_, kRcdValues, false);
        receiveRunning(1);
        EXPECT_EQ(display_.counters.rcdStep, step);
        EXPECT_EQ(tripTimes(display_), "[old][old][old][old][old][old]");
        EXPECT_EQ(shownParts(display_), "rows1-4 rows5-6 values1-6");
    }
}

TEST_F(RcdSequenceTest, AStepAboveThirteenIsStepZero) {
    display_.counters.rcdStep = 13;
    setTripTimes("old");
    receiveRunning(1);
    EXPECT_EQ(display_.counters.rcdStep, 0);
    EXPECT_EQ(tripTimes(display_), "[old][old][old][old][old][old]");
    receiveRunning(1);
    EXPECT_EQ(display_.counters.rcdStep, 1);
}

TEST_F(RcdSequenceTest, AChangeOfISubFuncF2ClearsAllSixRowsAndItsValueSaysHowManyAreShown) {
    struct Row {
        std::uint8_t mode;
        const char* rows;
    };
    constexpr Row rows[] = {{1, "rows1-4 rows5-6 values1-6"}, {2, "rows1-4 values1-6"},
                            {3, "rows1-4 values1-6"},         {0, "rows1-4 rows5-6 values1-6"},
                            {255, "rows1-4 values1-6"},       {1, "rows1-4 rows5-6 values1-6"}};
    receive(sequenceRecord(0, "18", 0));
    for (const Row& row : rows) {
        SCOPED_TRACE(int{row.mode});
        setTripTimes("old");
        receive(sequenceRecord(0, "18", row.mode));
        EXPECT_EQ(tripTimes(display_), kNoTripTimes);
        EXPECT_EQ(shownParts(display_), row.rows);
        setTripTimes("old");
        receive(sequenceRecord(0, "18", row.mode));
        EXPECT_EQ(tripTimes(display_), "[old][old][old][old][old][old]");
        EXPECT_EQ(shownParts(display_), row.rows);
        EXPECT_EQ(display_.counters.lastSubFuncF2, row.mode);
    }
}

TEST_F(RcdSequenceTest, AChangeOfTheSettingDoesNotMoveTheStep) {
    receiveRunning(4);
    receive(sequenceRecord(1, "19", 1));
    EXPECT_EQ(display_.counters.rcdStep, 5);
    EXPECT_EQ(tripTimes(display_), "[ ][19][ ][ ][ ][ ]");
}

TEST_F(RcdSequenceTest, AnotherFunctionLeavesTheStepWhereItIs) {
    receiveRunning(4);
    receive(recordOf('6'));
    receive(recordOf('1'));
    EXPECT_EQ(display_.counters.rcdStep, 4);
    receiveRunning(1);
    EXPECT_EQ(display_.counters.rcdStep, 5);
    EXPECT_EQ(tripTimes(display_), "[ ][18][ ][ ][ ][ ]");
}

TEST_F(RcdSequenceTest, TheStoredTextsHoldTheRowsAsTheyStandInTheirLabels) {
    receiveRunning(5);
    EXPECT_EQ(display_.results,
              "x1/2 0° :18ms,x1/2 180°:18ms,x1  0° : ms,x1  180°: ms,x5  0° : ms,x5  180°: ms,"
              ",L-PE=230V,N-PE=1V,L-N=229V,UF:2.5V,UL:50V");
    receive(sequenceRecord(0, "99"));
    EXPECT_TRUE(display_.results.starts_with("x1/2 0° :18ms,x1/2 180°:18ms,x1  "));
}

}  // namespace
}  // namespace kestrix::display
