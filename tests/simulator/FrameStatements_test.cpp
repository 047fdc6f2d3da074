#include <gtest/gtest.h>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

using namespace std::chrono_literals;

TEST(RateStatement, CountsAndSpacesFrames) {
    const Scenario scenario = parsed("function earth\nshow 2s\nrate 10\nshow 2s\nrate 0.5\nshow 2s");
    EXPECT_EQ(scenario.steps[0].frames, 8U);
    EXPECT_EQ(scenario.steps[0].period, 250ms);
    EXPECT_EQ(scenario.steps[1].frames, 20U);
    EXPECT_EQ(scenario.steps[1].period, 100ms);
    EXPECT_EQ(scenario.steps[2].frames, 1U);
    EXPECT_EQ(scenario.steps[2].period, 2s);
}

TEST(RateStatement, MaxWaitsForNothingAndCountsAsBefore) {
    const Scenario scenario = parsed("rate 10\nrate max\nfunction earth\nshow 2s");
    EXPECT_EQ(scenario.steps[0].frames, 20U);
    EXPECT_EQ(scenario.steps[0].period, 0ns);
}

TEST(RateStatement, Errors) {
    EXPECT_EQ(errorOf("rate"), "line 1: expected a rate at the end of the line");
    EXPECT_EQ(errorOf("rate fast"), "line 1: expected a rate, not 'fast'");
    for (const char* rate : {"0", "0.09", "-4", "1001"}) {
        EXPECT_EQ(errorOf(std::string{"rate "} + rate),
                  "line 1: a rate is from 0.1 to 1000 frames a second, or 'max'");
    }
    EXPECT_EQ(errorOf("rate 4 frames"), "line 1: unexpected 'frames'");
    EXPECT_EQ(errorOf("rate 0.1\nrate 1000\nrate max"), "line 3: the scenario sends no frame");
}

TEST(RepeatStatement, SetsTheRounds) {
    EXPECT_EQ(parsed("repeat forever\nfunction earth\nshow 1s").rounds, std::nullopt);
    EXPECT_EQ(parsed("function earth\nshow 1s\nrepeat 3").rounds, 3U);
    EXPECT_EQ(errorOf("repeat 3\nrepeat forever"), "line 2: repeat is given twice");
    EXPECT_EQ(errorOf("repeat 0"),
              "line 1: expected 'forever' or a number of rounds from 1 to 1000000, not '0'");
    EXPECT_EQ(errorOf("repeat 3 times"), "line 1: unexpected 'times'");
}

TEST(ShowStatement, Errors) {
    EXPECT_EQ(errorOf("function earth\nshow"), "line 2: expected a duration at the end of the line");
    EXPECT_EQ(errorOf("function earth\nshow 1s more"), "line 2: unexpected 'more'");
}

TEST(BurstStatement, IsBounded) {
    EXPECT_EQ(parsed("function earth\nburst 1000 frames").steps[0].frames, 1000U);
    EXPECT_EQ(errorOf("function earth\nburst 1001 frames"), "line 2: a burst has at most 1000 frames");
}

struct Taken {
    int step;
    int tenths;  // of a millisecond, or -1 for dashes or overload
};

// A listener that takes a value from each 3rd, 5th, ... 13th frame in a row that has the auto-test flag.
std::vector<Taken> takenFrom(const std::vector<Emission>& emissions) {
    std::vector<Taken> rows;
    int inARow = 0;
    for (const Emission& emission : emissions) {
        const Bytes& frame = emission.bytes;
        inARow = (frame[26] & 0x02) != 0 ? inARow + 1 : 0;
        if (inARow >= 3 && inARow <= 13 && inARow % 2 == 1) {
            const bool missing = (frame[25] & 0x11) != 0;
            const int scale = (frame[14] & 0x10) != 0 ? 1 : 10;
            rows.push_back({frame[14] & 0x0F, missing ? -1 : scale * magnitudeIn(frame, 1)});
        }
        if (inARow == 13) inARow = 0;
    }
    return rows;
}

void expectRows(const std::vector<Taken>& rows, const std::vector<int>& tenths) {
    constexpr int kSteps[] = {0, 1, 2, 3, 6, 7};
    ASSERT_EQ(rows.size(), tenths.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].step, kSteps[i % 6]) << "row " << i;
        EXPECT_EQ(rows[i].tenths, tenths[i]) << "row " << i;
    }
}

TEST(AutoSequenceStatement, GivesEachStepsValueInItsOwnRow) {
    const auto emissions = emissionsOf(
        "function rcd mode=auto current=30\nshow 1s\nauto-sequence >1999 412 23.6 overload 11.2 dashes\nshow "
        "1s");
    expectRows(takenFrom(emissions), {19990, 4120, 236, -1, 112, -1});
}

TEST(AutoSequenceStatement, TwoInARowAndRoundAfterRound) {
    const auto emissions = emissionsOf(
        "repeat 2\nfunction rcd mode=auto\nauto-sequence 1 2 3 4 5 6\nauto-sequence 7 8 9 10 11 12");
    expectRows(takenFrom(emissions), {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120,
                                      10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120});
}

TEST(AutoSequenceStatement, HasThirteenFramesUnderTest) {
    const auto emissions = emissionsOf("function rcd mode=auto\nauto-sequence >1 2 3 4 5 6\nshow 1 frame");
    ASSERT_EQ(emissions.size(), 14U);
    for (std::size_t i = 0; i < 13; ++i) {
        EXPECT_EQ(emissions[i].bytes[7], 1) << i;
        EXPECT_EQ(emissions[i].bytes[26], 0x02) << i;
    }
    EXPECT_EQ(emissions[0].bytes[25] & 0x10, 0x10) << "it begins with dashes";
    EXPECT_EQ(emissions[1].bytes[14], 0x80) << "a limit in step 0";
    EXPECT_EQ(emissions[13].bytes[7], 0);
    EXPECT_EQ(emissions[13].bytes[26], 0);
    EXPECT_EQ(magnitudeIn(emissions[13].bytes, 1), 6) << "the last result stays";
}

TEST(AutoSequenceStatement, LeavesTheTestFlagAsItWas) {
    const auto emissions = emissionsOf("function rcd\non test\nauto-sequence 1 2 3 4 5 6\nshow 1 frame");
    EXPECT_EQ(emissions.at(13).bytes[7], 1);
}

TEST(AutoSequenceStatement, Errors) {
    const std::string needs = "line 2: an auto-sequence needs 'function rcd mode=auto'";
    EXPECT_EQ(errorOf("function earth\nauto-sequence 1 2 3 4 5 6"), needs);
    EXPECT_EQ(errorOf("function rcd mode=x1\nauto-sequence 1 2 3 4 5 6"), needs);
    EXPECT_EQ(errorOf("function rcd\non auto-test\nauto-sequence 1 2 3 4 5 6"),
              "line 3: an auto-sequence switches auto-test on by itself");
    EXPECT_EQ(errorOf("function rcd\nauto-sequence 1 2 3 4 5"),
              "line 2: expected a value at the end of the line");
    EXPECT_EQ(errorOf("function rcd\nauto-sequence 1 2 3 4 5 6 7"), "line 2: unexpected '7'");
    EXPECT_EQ(errorOf("function rcd\nauto-sequence 1 2 3 4 5 6.25"),
              "line 2: this reading has at most 1 decimal");
}

}  // namespace
}  // namespace kestrix::simulator
