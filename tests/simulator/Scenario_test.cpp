#include "simulator/Scenario.h"

#include <gtest/gtest.h>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

TEST(Scenario, ReadsStatementsCommentsAndBlankLines) {
    const Scenario scenario = parsed("# a comment\n\n  function earth # chosen\r\n\tshow 2 frames\n");
    ASSERT_EQ(scenario.steps.size(), 1U);
    EXPECT_EQ(scenario.steps[0].frames, 2U);
    EXPECT_EQ(scenario.rounds, 1U);
}

TEST(Scenario, ReadsATextWithAByteOrderMarkAndWithoutALastLineEnd) {
    EXPECT_EQ(parsed("\xEF\xBB\xBF"
                     "function earth\nshow 1 frame")
                  .steps.size(),
              1U);
}

TEST(Scenario, TellsTheLineOfTheFirstError) {
    EXPECT_EQ(errorOf("function earth\n\n# three\nfunction FOO\nnonsense\n"),
              "line 4: unknown function 'FOO'");
    EXPECT_EQ(errorOf("nonsense\n"), "line 1: unknown statement 'nonsense'");
    EXPECT_EQ(errorOf("function earth\nshow 1 frame\nbad"), "line 3: unknown statement 'bad'");
}

TEST(Scenario, RefusesWhatNeverSendsAFrame) {
    EXPECT_EQ(errorOf(""), "line 1: the scenario sends no frame");
    EXPECT_EQ(errorOf("function earth\nsilence 1s\ngarbage 5\n"), "line 3: the scenario sends no frame");
}

TEST(Scenario, RefusesLongTextsAndLines) {
    EXPECT_EQ(errorOf(std::string(262145, '\n')), "line 1: the text is longer than 262144 bytes");
    EXPECT_EQ(errorOf(std::string(262144, '\n')), "line 262144: the scenario sends no frame");
    EXPECT_EQ(errorOf("\n#" + std::string(1000, 'x')), "line 2: the line is longer than 1000 bytes");
    EXPECT_EQ(parsed("#" + std::string(999, 'x') + "\nfunction earth\nshow 1s").steps.size(), 1U);
}

TEST(Scenario, TakesAnyBytes) {
    EXPECT_EQ(errorOf(std::string_view{"\0\xFF\n", 3}),
              "line 1: unknown statement '?"
              "?'");
}

TEST(Scenario, StatementsNeedAFunctionFirst) {
    for (const char* line : {"set mode=L-PE", "on lock", "off lock", "reading 1 5", "wires off",
                             "touch-limit 50", "step 1", "show 1s", "burst 1 frame", "bytewise 1 frame",
                             "cut after 3 off 1s", "auto-sequence 1 2 3 4 5 6"}) {
        EXPECT_EQ(errorOf(line), "line 1: no function is chosen yet") << line;
    }
}

}  // namespace
}  // namespace kestrix::simulator
