// What a state of the link, a group number and a function code do to the display.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "tests/display/DisplayFixture.h"
#include "tests/display/Groups.h"

namespace kestrix::display {
namespace {

constexpr std::int32_t kOddNumbers[] = {2, 3, -1, 100, std::numeric_limits<std::int32_t>::min()};

protocol::MeterReading alarmed(std::uint8_t function) {
    protocol::MeterReading record = recordOf(function);
    record.bAlarmFlag = 1;
    return record;
}

using LinkStateStep = DisplayFixture;

TEST(NewDisplay, HidesNothingAndHasNoRecord) {
    const Display display;
    EXPECT_EQ(shownParts(display), "D1 D2 rows1-4 rows5-6 values1-6");
    EXPECT_EQ(tripTimes(display), kNoTripTimes);
    EXPECT_EQ(display.title, Title::None);
    EXPECT_FALSE(display.warning);
    EXPECT_FALSE(display.strfunction.has_value());
    EXPECT_FALSE(showsReading(display));
    EXPECT_FALSE(canBeRecorded(display));
}

TEST_F(LinkStateStep, NotConnectedHidesAllButTheTripTimesAndUnlightsTitleAndWarning) {
    for (const std::uint8_t function : {'1', '2', '3', '4', '5', '6', '7'}) {
        SCOPED_TRACE(int{function});
        display_ = {};
        linkStateChanged(display_, 1);
        receive(alarmed(function));
        EXPECT_NE(display_.title, Title::None);
        EXPECT_TRUE(display_.warning);
        EXPECT_TRUE(showsReading(display_));
        EXPECT_TRUE(linkStateChanged(display_, 0));
        EXPECT_EQ(display_.link, LinkState::NotConnected);
        EXPECT_EQ(display_.title, Title::None);
        EXPECT_FALSE(display_.warning);
        EXPECT_FALSE(showsReading(display_));
        EXPECT_EQ(shownParts(display_), function == '6' ? "" : "values1-6");
    }
}

TEST_F(LinkStateStep, ADisconnectWhileAnRcdSequenceIsShownHidesTheRowsButLeavesTheVisibleTripTime) {
    linkStateChanged(display_, 1);
    receiveRunning(5);
    EXPECT_TRUE(showsTripTime(display_, 1));
    linkStateChanged(display_, 0);
    EXPECT_EQ(shownParts(display_), "value2");
    EXPECT_EQ(tripTimes(display_), "[18][18][ ][ ][ ][ ]");
    EXPECT_FALSE(showsTripTime(display_, 1)) << "its row has gone, so it says nothing";
    EXPECT_EQ(display_.counters.rcdStep, 5);
}

TEST_F(LinkStateStep, ConnectedShowsNoReadingOfBefore) {
    linkStateChanged(display_, 1);
    receive(alarmed('1'));
    linkStateChanged(display_, 0);
    EXPECT_TRUE(linkStateChanged(display_, 1));
    EXPECT_EQ(display_.link, LinkState::Connected);
    EXPECT_EQ(shownParts(display_), "values1-6");
    EXPECT_FALSE(showsReading(display_));
    EXPECT_EQ(display_.title, Title::None);
    receive(alarmed('1'));
    EXPECT_TRUE(showsReading(display_));
}

TEST_F(LinkStateStep, ADropOfTheLinkKeepsTheLatestMeasurementAndTheCounters) {
    linkStateChanged(display_, 1);
    receiveRunning(4);
    Display expected = display_;
    linkStateChanged(display_, 0);
    EXPECT_EQ(display_.strfunction, expected.strfunction);
    EXPECT_EQ(display_.parameters, expected.parameters);
    EXPECT_EQ(display_.results, expected.results);
    EXPECT_EQ(display_.counters, expected.counters);
    EXPECT_TRUE(canBeRecorded(display_));
}

TEST_F(LinkStateStep, AnyOtherStateChangesNothing) {
    for (const bool connected : {false, true}) {
        linkStateChanged(display_, connected ? 1 : 0);
        receive(alarmed('1'));
        const Display before = display_;
        for (const std::int32_t state : kOddNumbers) {
            EXPECT_FALSE(linkStateChanged(display_, state)) << state;
            EXPECT_EQ(display_, before) << state;
        }
    }
}

TEST_F(LinkStateStep, ARecordIsShownInWhateverStateTheLinkIs) {
    receive(alarmed('6'));
    EXPECT_EQ(display_.link, LinkState::NotConnected);
    EXPECT_EQ(shownParts(display_), "D1");
    EXPECT_TRUE(display_.warning);
    EXPECT_FALSE(showsReading(display_));
}

TEST_F(LinkStateStep, AStartInTheConnectedStateHidesNothing) {
    display_ = {};
    linkStateChanged(display_, 1);
    EXPECT_EQ(shownParts(display_), "D1 D2 rows1-4 rows5-6 values1-6");
    receive(recordOf('1'));
    EXPECT_EQ(shownParts(display_), "D1 D2 rows1-4 rows5-6 values1-6");
    receive(recordOf('6'));
    EXPECT_EQ(shownParts(display_), "D1");
}

TEST(Groups, EachHidesAndShowsItsParts) {
    for (const GroupParts& row : kGroupParts) {
        SCOPED_TRACE(row.group);
        Display display;
        setHidden(display, row.group, true);
        EXPECT_EQ(shownParts(display), row.hidden);
        for (std::int32_t group = 1; group <= 5; ++group) setHidden(display, group, true);
        EXPECT_EQ(shownParts(display), "");
        setHidden(display, row.group, false);
        EXPECT_EQ(shownParts(display), row.shown);
    }
}

TEST(Groups, Group2AndHiddenFalseShowsTheFirstReadingAndHidesTheSecond) {
    Display display;
    setHidden(display, 2, false);
    EXPECT_EQ(shownParts(display), "D1 rows1-4 rows5-6 values1-6");
}

TEST(Groups, AnyOtherGroupDoesNothing) {
    Display display;
    for (const std::int32_t group : {0, 6, -1, 100}) setHidden(display, group, true);
    EXPECT_EQ(display, Display());
}

TEST(Titles, EachCodeHasItsTitleInTheOrderOfTheDial) {
    struct Row {
        std::int32_t code;
        const char* name;
        const char* text;
    };
    constexpr Row rows[] = {{'1', "fun2", "RE"}, {'2', "fun1", "INSULATION"}, {'3', "fun3", "LOW OHM"},
                            {'4', "fun4", "V"},  {'5', "fun5", "LOOP/PFC"},   {'6', "fun6", "RCD"},
                            {'7', "fun6", "RCD"}};
    for (const Row& row : rows) {
        const TitleTexts* texts = textsOf(titleOf(row.code));
        ASSERT_NE(texts, nullptr) << row.code;
        EXPECT_EQ(texts->name, row.name);
        EXPECT_EQ(texts->text, row.text);
    }
}

TEST(Titles, ACodeOf0OrAbove7HasNone) {
    for (const std::int32_t code : {0, '1' - 1, '7' + 1, 1, 7, 255, -1, std::numeric_limits<int>::max()})
        EXPECT_EQ(titleOf(code), Title::None) << code;
    EXPECT_EQ(textsOf(Title::None), nullptr);
}

using RecordRule = DisplayFixture;

// A frame that was not understood keeps the parameters of the record before: nothing of it may be stored.
TEST_F(RecordRule, OnlyAMeasurementWhoseFunctionHasANameCanBeRecorded) {
    EXPECT_FALSE(canBeRecorded(display_));
    receive(recordOf('2'));
    EXPECT_TRUE(canBeRecorded(display_));
    receive({});
    EXPECT_FALSE(canBeRecorded(display_));
    EXPECT_NE(display_.parameters, "");
    receive(recordOf('6'));
    EXPECT_TRUE(canBeRecorded(display_));
}

}  // namespace
}  // namespace kestrix::display
