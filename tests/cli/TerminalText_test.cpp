#include "apps/kestrix-cli/TerminalText.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrix::cli {
namespace {

constexpr const char* kReplaced = "\uFFFD";

TEST(TerminalText, PrintableKeepsWhatCanBeShown) {
    const std::string text = "0.39 MΩ 180° é 漢字 😀 e\u0301 ┏";
    EXPECT_EQ(printable(text), text);
    EXPECT_EQ(printable(""), "");
}

TEST(TerminalText, PrintableReplacesEveryControlCharacter) {
    for (int code = 0; code < 0x20; ++code)
        EXPECT_EQ(printable(std::string(1, static_cast<char>(code))), kReplaced);
    EXPECT_EQ(printable("\x7f"), kReplaced);
    EXPECT_EQ(printable("a\x1b[2Jb"), std::string("a") + kReplaced + "[2Jb");
    for (const char* text : {"\u0080", "\u009b", "\u009f", "\u202e", "\u2028", "\u2066", "\ufeff"}) {
        EXPECT_EQ(printable(text), kReplaced);
    }
}

TEST(TerminalText, PrintableReplacesWhatIsNotUtf8ByteByByte) {
    EXPECT_EQ(printable("a\x80z"), std::string("a") + kReplaced + "z");
    EXPECT_EQ(printable("\xce"), kReplaced);                               // cut off
    EXPECT_EQ(printable("\xc0\x8a"), std::string(kReplaced) + kReplaced);  // a line feed in two bytes
    EXPECT_EQ(printable("\xffx"), std::string(kReplaced) + "x");
    EXPECT_EQ(printable("\xed\xa0\x80"), kReplaced);  // half of a pair
    EXPECT_EQ(printable("\xf5\x80\x80\x80"), std::string(kReplaced) + kReplaced + kReplaced + kReplaced);
}

TEST(TerminalText, ColumnsAreCountedAsATerminalShowsThem) {
    EXPECT_EQ(columnsOf(std::string_view("")), 0);
    EXPECT_EQ(columnsOf(std::string_view("MΩ 180°")), 7);
    EXPECT_EQ(columnsOf(std::string_view("┏━┓●…")), 5);
    EXPECT_EQ(columnsOf(std::string_view("漢字")), 4);
    EXPECT_EQ(columnsOf(std::string_view("😀")), 2);
    EXPECT_EQ(columnsOf(std::string_view("e\u0301")), 1);
    EXPECT_EQ(columnsOf(Row{{"Ω"}, {"°C", Ink::Bad}}), 3);
}

TEST(TerminalText, ClippedByWholeCharacters) {
    EXPECT_EQ(clipped(std::string_view("ΩΩΩ"), 3), "ΩΩΩ");
    EXPECT_EQ(clipped(std::string_view("ΩΩΩΩ"), 3), "ΩΩ…");
    EXPECT_EQ(clipped(std::string_view("漢字漢字"), 4), "漢…");
    EXPECT_EQ(clipped(std::string_view("e\u0301xyz"), 2), "e\u0301…");
    EXPECT_EQ(clipped(std::string_view("long"), 1), "…");
    EXPECT_EQ(clipped(std::string_view("long"), 0), "");
    EXPECT_EQ(clipped(std::string_view("long"), -3), "");
}

TEST(TerminalText, RowsAreClippedAcrossTheirSpans) {
    const Row row{{"abc", Ink::Bold}, {"def"}, {"ghi", Ink::Bad}};
    EXPECT_EQ(rendered(clipped(row, 9), false), "abcdefghi");
    EXPECT_EQ(rendered(clipped(row, 8), false), "abcdefg…");
    EXPECT_EQ(rendered(clipped(row, 6), false), "abcde…");
    EXPECT_EQ(rendered(clipped(row, 4), false), "abc…");
    EXPECT_EQ(rendered(clipped(row, 0), false), "");
}

TEST(TerminalText, InksShowOnlyInColour) {
    const Row row{{"a"}, {"b", Ink::Bold}};
    EXPECT_EQ(rendered(row, false), "ab");
    EXPECT_EQ(rendered(row, true), "a\x1b[1mb\x1b[0m");
}

}  // namespace
}  // namespace kestrix::cli
