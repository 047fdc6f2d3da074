// `kestrix-cli decode --screen`, as a whole program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/cli/ScreenRecords.h"

namespace kestrix::cli {
namespace {

using nlohmann::ordered_json;
using testing::FrameBuilder;
using ::testing::SizeIs;
using ::testing::StartsWith;

// A record of the RCD automatic sequence: reading 1 in whole milliseconds.
FrameBuilder rcdAuto(std::uint16_t milliseconds, bool testing, std::uint8_t current = 0) {
    return FrameBuilder('6').setting(2, current).reading(1, milliseconds, 0x00).alarm(testing ? 0x02 : 0x00);
}

std::vector<ordered_json> screensOf(const std::vector<FrameBuilder>& frames) {
    std::string bytes;
    for (const FrameBuilder& frame : frames) bytes += bytesOf(frame);
    const Result result = run({"decode", "--screen"}, bytes);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    return screensIn(result.output);
}

TEST(DecodeScreen, ARecordKeepsItsFieldsAndTheScreenStandsBehindThem) {
    const std::string bytes = insulationFrame(1234);
    const std::string plain = run({"decode"}, bytes).output;
    const std::string with = run({"decode", "--screen"}, bytes).output;
    ASSERT_THAT(plain, ::testing::EndsWith("}\n"));
    EXPECT_THAT(with, StartsWith(plain.substr(0, plain.size() - 2) + ",\"screen\":{\"strfunction\":"));
    EXPECT_EQ(ordered_json::parse(with).size(), 57U);
    EXPECT_EQ(plain.find("screen"), std::string::npos);
}

// The sequence that the tester sends while it works: a result on every second record.
TEST(DecodeScreen, ThirteenRecordsOfASequenceFillTheSixRows) {
    std::vector<FrameBuilder> frames;
    for (std::uint16_t n = 1; n <= 14; ++n) frames.push_back(rcdAuto(100 + n, true));
    const std::vector<ordered_json> screens = screensOf(frames);
    ASSERT_THAT(screens, SizeIs(14));

    const std::vector<std::string> visible{"123456", "123456", "1", "1", "2", "2", "3",
                                           "3",      "4",      "4", "5", "5", "6", "6"};
    const std::vector<int> steps{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0, 1};
    for (std::size_t i = 0; i < screens.size(); ++i) {
        SCOPED_TRACE("record " + std::to_string(i + 1));
        EXPECT_EQ(screens[i].at("rcdStep"), steps[i]);
        EXPECT_EQ(visibleValues(screens[i]), visible[i]);
        EXPECT_EQ(screens[i].at("showMode"), 3);
        EXPECT_EQ(screens[i].at("title"), "fun6");
        EXPECT_TRUE(isHidden(screens[i], "D1Value"));
        EXPECT_FALSE(isHidden(screens[i], "RCD6Row"));
        for (int row = 1; row <= 6; ++row) {
            // Filled by record 3, 5, ... 13; the fourteenth begins anew.
            const int filledAt = 2 * row + 1;
            const auto record = static_cast<int>(i) + 1;
            const bool filled = record >= filledAt && record < 14;
            EXPECT_EQ(textOf(screens[i], rcdValue(row)), filled ? std::to_string(100 + filledAt) : " ");
        }
    }
    EXPECT_EQ(screens[12].at("parameters"), "Trip current=30mA,Type Of RCD=AC G");
    EXPECT_EQ(screens[12].at("results"),
              "x1/2 0° :103ms,x1/2 180°:105ms,x1  0° :107ms,x1  180°:109ms,x5  0° :111ms,x5  180°:113ms,,"
              "L-PE=---V,N-PE=---V,L-N=---V,UF:0.0V,UL:0V");
    EXPECT_EQ(screens[13].at("results"),
              "x1/2 0° : ms,x1/2 180°: ms,x1  0° : ms,x1  180°: ms,x5  0° : ms,x5  180°: ms,,"
              "L-PE=---V,N-PE=---V,L-N=---V,UF:0.0V,UL:0V");
}

TEST(DecodeScreen, ASequenceThatStopsKeepsItsTextsAndStartsAnew) {
    const auto screens = screensOf(
        {rcdAuto(11, true), rcdAuto(12, true), rcdAuto(13, true), rcdAuto(14, false), rcdAuto(15, true)});
    ASSERT_THAT(screens, SizeIs(5));
    EXPECT_EQ(screens[3].at("rcdStep"), 0);
    EXPECT_EQ(textOf(screens[3], "RCD1Value"), "13");
    EXPECT_EQ(screens[4].at("rcdStep"), 1);
    EXPECT_EQ(textOf(screens[4], "RCD1Value"), " ");
    EXPECT_EQ(visibleValues(screens[4]), "1");
}

TEST(DecodeScreen, AnotherTripCurrentClearsTheRowsAndSaysHowMany) {
    const auto screens =
        screensOf({rcdAuto(11, true), rcdAuto(12, true), rcdAuto(13, true), rcdAuto(14, true, 1),
                   rcdAuto(15, true, 2), rcdAuto(16, true, 2), rcdAuto(17, true, 0)});
    ASSERT_THAT(screens, SizeIs(7));
    EXPECT_EQ(textOf(screens[2], "RCD1Value"), "13");
    EXPECT_EQ(textOf(screens[3], "RCD1Value"), " ");
    EXPECT_EQ(screens[3].at("showMode"), 3);
    EXPECT_EQ(screens[3].at("lastSubFuncF2"), 1);
    EXPECT_FALSE(isHidden(screens[3], "RCD5Row"));
    EXPECT_EQ(screens[4].at("showMode"), 2);
    EXPECT_EQ(screens[4].at("lastSubFuncF2"), 2);
    EXPECT_EQ(textOf(screens[4], "RCD2Value"), "15");
    for (const char* label : {"RCD5Row", "RCD6Row", "RCD5Angle", "RCD6Angle", "RCD5Unit", "RCD6Unit"}) {
        EXPECT_TRUE(isHidden(screens[4], label)) << label;
        EXPECT_FALSE(isHidden(screens[6], label)) << label;
    }
    EXPECT_FALSE(isHidden(screens[4], "RCD4Row"));
    EXPECT_EQ(textOf(screens[5], "RCD2Value"), "15");
    EXPECT_EQ(textOf(screens[6], "RCD2Value"), " ") << "cleared before the third row is filled";
    EXPECT_EQ(textOf(screens[6], "RCD3Value"), "17");
}

TEST(DecodeScreen, ARowWithoutANumberHasNoneInTheResults) {
    const auto screens = screensOf(
        {rcdAuto(11, true), rcdAuto(12, true), rcdAuto(13, true).noDataOverload(0x10), rcdAuto(14, false)});
    ASSERT_THAT(screens, SizeIs(4));
    EXPECT_EQ(textOf(screens[2], "RCD1Value"), "----");
    EXPECT_THAT(screens[2].at("results").get<std::string>(), StartsWith("x1/2 0° :ms,x1/2 180°: ms,"));
}

// From one layout to the next and back, in one process.
TEST(DecodeScreen, EveryFunctionAfterAnother) {
    const FrameBuilder rcd = FrameBuilder('6').setting(1, 2).reading(1, 236, 0x10);
    const FrameBuilder earth = FrameBuilder('1').reading(1, 1430, 0x02).reading(2, 25, 0x01);
    const auto screens = screensOf({earth, rcd, earth, rcdAuto(11, false), earth});
    ASSERT_THAT(screens, SizeIs(5));

    struct Visible {
        bool first, second, rows, values;
        int showMode;
    };
    // All is visible at first; the rows go with the first function that hides them, the values with RCD.
    const std::vector<Visible> expected{{true, true, true, true, 0},
                                        {true, false, false, false, 1},
                                        {true, true, false, false, 0},
                                        {false, false, true, false, 3},
                                        {true, true, false, false, 0}};
    for (std::size_t i = 0; i < screens.size(); ++i) {
        SCOPED_TRACE("record " + std::to_string(i + 1));
        EXPECT_EQ(!isHidden(screens[i], "D1Value"), expected[i].first);
        EXPECT_EQ(!isHidden(screens[i], "D2Unit"), expected[i].second);
        EXPECT_EQ(!isHidden(screens[i], "RCD1Row"), expected[i].rows);
        EXPECT_EQ(!isHidden(screens[i], "RCD6Unit"), expected[i].rows);
        EXPECT_EQ(visibleValues(screens[i]), expected[i].values ? "123456" : "");
        EXPECT_EQ(screens[i].at("showMode"), expected[i].showMode);
    }
    EXPECT_EQ(textOf(screens[0], "D1Value"), "14.30");
    EXPECT_EQ(textOf(screens[1], "D1Value"), "23.6");
    EXPECT_EQ(textOf(screens[1], "D2Value"), "2.5") << "kept, and hidden";
    EXPECT_EQ(screens[4].at("results"), "14.30Ω,2.5mA");
}

TEST(DecodeScreen, AFrameThatHoldsNothingKeepsTheParametersAndDropsTheResults) {
    const FrameBuilder alarmed = FrameBuilder('2').reading(1, 5, 0x00).alarm(0x01);
    const auto screens = screensOf({alarmed, FrameBuilder('8'), FrameBuilder('2').byte(9, 0xAB)});
    ASSERT_THAT(screens, SizeIs(3));
    EXPECT_FALSE(screens[0].at("blueImage").at("hidden"));
    for (const std::size_t i : {1U, 2U}) {
        EXPECT_EQ(screens[i].at("intfunctions"), 0);
        EXPECT_EQ(screens[i].at("strfunction"), "");
        EXPECT_EQ(screens[i].at("title"), nullptr);
        EXPECT_EQ(screens[i].at("results"), "");
        EXPECT_EQ(screens[i].at("parameters"), "Terminal voltage=125v,Beeper=OFF,Lock=OFF,Reference=0.125MΩ");
        EXPECT_EQ(textOf(screens[i], "D1Value"), "");
        EXPECT_TRUE(screens[i].at("blueImage").at("hidden"));
    }
}

TEST(DecodeScreen, OneFrameTextHasItsScreen) {
    const FrameBuilder frame = rcdAuto(21, true).alarm(0x03);
    const Result text = run({"decode", "--screen", "--frame", frame.hexText()});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.error, "");
    EXPECT_EQ(text.output, run({"decode", "--screen"}, bytesOf(frame)).output);
    ASSERT_THAT(screensIn(text.output), SizeIs(1));
    EXPECT_EQ(screensIn(text.output)[0].at("rcdStep"), 1);
    EXPECT_FALSE(screensIn(text.output)[0].at("blueImage").at("hidden"));

    const Result nothing = run({"decode", "--frame", "7e", "--screen"});
    ASSERT_THAT(screensIn(nothing.output), SizeIs(1));
    EXPECT_EQ(screensIn(nothing.output)[0].at("strfunction"), "");
    EXPECT_EQ(screensIn(nothing.output)[0].at("title"), nullptr);
}

// A window system that there is none of would end a program that needs one.
TEST(DecodeScreen, NeedsNoDisplay) {
    Surroundings setup;
    setup.environment = {"QT_QPA_PLATFORM=none-of-the-kind", "DISPLAY=", "WAYLAND_DISPLAY="};
    const Result result = run({"decode", "--screen"}, insulationFrame(1), setup);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(screensIn(result.output), SizeIs(1));
}

// Every "decode ... --frame HEX ... | jq -c PATH" of the document gives the line below it.
TEST(DecodeScreen, TheExamplesOfTheDocumentAreReal) {
    static const std::regex example(
        R"(\$ kestrix-cli (decode( --screen)? --frame ([0-9a-f]+)) \| jq -c (\.[\w.]+))");
    std::istringstream document(contentOf(KESTRIX_SOURCE_DIR "/docs/command-line.md"));
    int examples = 0;
    int withScreen = 0;
    std::smatch match;
    for (std::string line; std::getline(document, line);) {
        if (!std::regex_match(line, match, example)) continue;
        std::vector<std::string> arguments{"decode", "--frame", match[3]};
        if (match[2].matched) arguments.emplace_back("--screen");
        std::string pointer = match[4];
        std::replace(pointer.begin(), pointer.end(), '.', '/');
        const ordered_json record = ordered_json::parse(run(arguments).output);
        std::string answer;
        std::getline(document, answer);
        EXPECT_EQ(record.at(ordered_json::json_pointer(pointer)).dump(), answer) << line;
        ++examples;
        withScreen += match[2].matched ? 1 : 0;
    }
    EXPECT_GE(examples, 3);
    EXPECT_GE(withScreen, 2);
}

// The document lists the screen's fields as they stand in the output.
TEST(DecodeScreen, EveryFieldIsListedInItsOrder) {
    const std::string document = contentOf(KESTRIX_SOURCE_DIR "/docs/command-line.md");
    std::size_t at = document.find("| Fields of `screen` |");
    ASSERT_NE(at, std::string::npos);
    const auto screens = screensOf({rcdAuto(1, true)});
    ASSERT_THAT(screens, SizeIs(1));
    for (const auto& item : screens[0].items()) {
        const std::size_t found = document.find("`" + item.key() + "`", at);
        ASSERT_NE(found, std::string::npos) << item.key();
        at = found;
    }
}

}  // namespace
}  // namespace kestrix::cli
