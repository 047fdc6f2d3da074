#include "simulator/Words.h"

#include <gtest/gtest.h>

#include <functional>

namespace kestrix::simulator {
namespace {

using namespace std::chrono_literals;

std::string thrown(const std::function<void()>& action) {
    try {
        action();
    } catch (const StatementError& error) {
        return error.message;
    }
    return "nothing";
}

TEST(Words, SplitAtBlanksAndEndAtAComment) {
    Words words{" \ta  b#c\td\r # e"};
    EXPECT_EQ(words.take("x"), "a");
    EXPECT_EQ(words.peek(), "b#c");
    EXPECT_FALSE(words.takeIf("b"));
    EXPECT_TRUE(words.takeIf("b#c"));
    EXPECT_EQ(words.take("x"), "d");
    EXPECT_TRUE(words.atEnd());
    EXPECT_EQ(words.peek(), "");
    EXPECT_TRUE(Words{"#"}.atEnd());
    EXPECT_TRUE(Words{""}.atEnd());
}

TEST(Words, TellWhatTheyExpected) {
    EXPECT_EQ(thrown([] { Words{""}.take("a unit"); }), "expected a unit at the end of the line");
    EXPECT_EQ(thrown([] { Words{"too"}.expect("to"); }), "expected 'to', not 'too'");
    EXPECT_EQ(thrown([] { Words{""}.expect("to"); }), "expected 'to' at the end of the line");
    EXPECT_EQ(thrown([] { Words{"more"}.expectEnd(); }), "unexpected 'more'");
    EXPECT_EQ(thrown([] { Words{""}.expectEnd(); }), "nothing");
    EXPECT_EQ(thrown([] { Words{"x"}.takeDecimal("a value"); }), "expected a value, not 'x'");
}

TEST(Words, QuoteAnyBytesReadably) {
    EXPECT_EQ(inQuotes("a\x01\xFF~"),
              "'a?"
              "?~'");
    EXPECT_EQ(inQuotes(std::string(40, 'x')), "'" + std::string(40, 'x') + "'");
    EXPECT_EQ(inQuotes(std::string(41, 'x')), "'" + std::string(40, 'x') + "...'");
}

void expectDecimal(std::string_view word, std::int64_t counts, unsigned decimals) {
    const auto number = readDecimal(word);
    ASSERT_TRUE(number) << word;
    EXPECT_EQ(number->counts, counts) << word;
    EXPECT_EQ(number->decimals, decimals) << word;
}

TEST(Words, Decimals) {
    expectDecimal("0.45", 45, 2);
    expectDecimal("-12.0", -120, 1);
    expectDecimal("+7", 7, 0);
    expectDecimal("5.", 5, 0);
    expectDecimal(".5", 5, 1);
    expectDecimal("123456789012345", 123456789012345, 0);
    for (const char* word : {"", "-", ".", "1.2.3", "1e5", "0x10", "1234567890123456", "--1", "1 2", "inf"}) {
        EXPECT_FALSE(readDecimal(word)) << word;
    }
}

TEST(Words, DecimalsInAnotherLastDigit) {
    EXPECT_DOUBLE_EQ((Decimal{45, 2}.value()), 0.45);
    EXPECT_DOUBLE_EQ((Decimal{45, 2}.countsAt(3)), 450);
    EXPECT_DOUBLE_EQ((Decimal{45, 2}.countsAt(1)), 4.5);
}

TEST(Words, WholeNumbers) {
    EXPECT_EQ(wholeNumber("42", "x", 0, 99), 42U);
    EXPECT_EQ(wholeNumber("0xfF", "x", 0, 255), 255U);
    for (const char* word : {"100", "-1", "1.0", "0x", "0x100", "", "99999999999999999999", "4a"}) {
        EXPECT_EQ(thrown([word] { wholeNumber(word, "a byte", 0, 99); }),
                  "expected a byte from 0 to 99, not " + inQuotes(word));
    }
    EXPECT_EQ(thrown([] { wholeNumber("2", "a byte", 3, 9); }), "expected a byte from 3 to 9, not '2'");
}

TEST(Words, Durations) {
    EXPECT_EQ(Words{"12 frames"}.takeDuration().frames, 12U);
    EXPECT_EQ(Words{"1frame"}.takeDuration().frames, 1U);
    EXPECT_EQ(Words{"3s"}.takeDuration().time, 3s);
    EXPECT_EQ(Words{"0.5 s"}.takeDuration().time, 500ms);
    EXPECT_EQ(Words{"250ms"}.takeDuration().time, 250ms);
    EXPECT_EQ(Words{"86400s"}.takeDuration().time, 24h);
}

TEST(Words, WrongDurations) {
    const auto message = [](const char* line) { return thrown([line] { Words{line}.takeDuration(); }); };
    const std::string expected = "expected a duration such as '12 frames', '3s' or '250ms', not ";
    EXPECT_EQ(message(""), "expected a duration at the end of the line");
    EXPECT_EQ(message("3"), "expected 'frames', 's' or 'ms' at the end of the line");
    EXPECT_EQ(message("x"), expected + "'x'");
    EXPECT_EQ(message("3min"), expected + "'min'");
    EXPECT_EQ(message("3 h"), expected + "'h'");
    EXPECT_EQ(message("0s"), "a duration is longer than nothing");
    EXPECT_EQ(message("-3s"), "a duration is longer than nothing");
    EXPECT_EQ(message("86401s"), "a duration is at most a day");
    EXPECT_EQ(message("1.5 frames"), "expected a number of frames from 1 to 1000000000, not '1.5'");
    EXPECT_EQ(message("1000000001 frames"),
              "expected a number of frames from 1 to 1000000000, not '1000000001'");
}

TEST(Words, DurationsByTheRate) {
    const Duration seconds{.frames = std::nullopt, .time = 1100ms};
    EXPECT_EQ(seconds.framesAt(250ms), 4U);
    EXPECT_EQ(seconds.framesAt(100ms), 11U);
    EXPECT_EQ(seconds.framesAt(300ms), 4U) << "to the nearest frame: 3.7";
    EXPECT_EQ(seconds.timeAt(100ms), 1100ms);
    const Duration frames{.frames = 7, .time = {}};
    EXPECT_EQ(frames.framesAt(250ms), 7U);
    EXPECT_EQ(frames.timeAt(100ms), 700ms);
    const Duration tiny{.frames = std::nullopt, .time = 1us};
    EXPECT_EQ(tiny.framesAt(250ms), 1U);
    EXPECT_EQ(tiny.timeAt(250ms), 1ms);
    const Duration huge{.frames = 1'000'000'000, .time = {}};
    EXPECT_EQ(thrown([&huge] { huge.timeAt(10s); }), "a duration is at most a day");
}

TEST(Words, Pairs) {
    EXPECT_EQ(splitPair("a=b=c").name, "a");
    EXPECT_EQ(splitPair("a=b=c").value, "b=c");
    for (const char* word : {"a", "=b", "a=", "="}) {
        EXPECT_EQ(thrown([word] { splitPair(word); }), "expected name=value, not " + inQuotes(word));
    }
}

}  // namespace
}  // namespace kestrix::simulator
