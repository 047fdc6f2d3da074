#include "apps/kestrix-cli/TerminalDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "apps/kestrix-cli/LargeDigits.h"
#include "apps/kestrix-cli/TerminalText.h"
#include "display/Steps.h"
#include "tests/cli/ExampleReadings.h"

namespace kestrix::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Lines = std::vector<std::string>;

constexpr TerminalStyle kPlain{false, 80};
constexpr std::string_view kFunctions = "1234567";

// Behind the record, on a display that a tester has just been connected to.
DisplayState connectedWith(const protocol::MeterReading& reading) {
    DisplayState state{"simulator:", {}, reading, 10.0, 0.1, 421, ""};
    display::linkStateChanged(state.display, 0);
    display::linkStateChanged(state.display, 1);
    display::recordCame(state.display, reading);
    return state;
}

void disconnect(DisplayState& state) {
    display::linkStateChanged(state.display, 0);
}

std::string joined(const Lines& lines) {
    std::string text;
    for (const auto& line : lines) text += line + "\n";
    return text;
}

std::string plainText(const DisplayState& state, int columns = 80) {
    return joined(renderDisplay(state, {false, columns}));
}

std::string withoutEscapeCodes(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\x1b') {
            out += text[i];
        } else {
            i = text.find('m', i);
        }
    }
    return out;
}

// The three lines of a large text stand below each other at one place.
bool showsLarge(const Lines& lines, const std::string& text) {
    const auto rows = largeDigits(text);
    for (std::size_t i = 0; i + 2 < lines.size(); ++i) {
        const auto at = lines[i].find(rows[0]);
        if (at == std::string::npos) continue;
        const auto columns = columnsOf(std::string_view(lines[i]).substr(0, at));
        bool all = true;
        for (std::size_t k = 1; k < 3; ++k) {
            const auto found = lines[i + k].find(rows[k]);
            all = all && found != std::string::npos &&
                  columnsOf(std::string_view(lines[i + k]).substr(0, found)) == columns;
        }
        if (all) return true;
    }
    return false;
}

TEST(TerminalDisplay, LightsTheTitleOfTheFunction) {
    const std::vector<std::string> lit{"[RE]",       "[INSULATION]", "[LOW OHM]", "[V]",
                                       "[LOOP/PFC]", "[RCD]",        "[RCD]"};
    for (std::size_t i = 0; i < kFunctions.size(); ++i) {
        const auto titles = renderDisplay(connectedWith(exampleReading(kFunctions[i])), kPlain)[1];
        EXPECT_THAT(titles, HasSubstr(lit[i]));
        EXPECT_EQ(titles.find('['), titles.rfind('[')) << "one title only: " << titles;
    }
}

TEST(TerminalDisplay, TitlesStandInTheOrderOfTheDial) {
    const auto titles = renderDisplay({}, kPlain)[1];
    std::size_t last = 0;
    for (const char* title : {"INSULATION", " RE ", "LOW OHM", " V ", "LOOP/PFC", " RCD "}) {
        const auto at = titles.find(title);
        ASSERT_NE(at, std::string::npos) << title;
        EXPECT_GE(at, last);
        last = at;
    }
}

TEST(TerminalDisplay, LightingATitleMovesNoOther) {
    const auto dark = renderDisplay({}, kPlain)[1];
    for (const char function : kFunctions) {
        auto lit = renderDisplay(connectedWith(exampleReading(function)), kPlain)[1];
        for (auto& c : lit) {
            if (c == '[' || c == ']') c = ' ';
        }
        EXPECT_EQ(lit, dark);
    }
}

TEST(TerminalDisplay, ShowsTheReadingsOfEveryFunction) {
    for (const char function : kFunctions) {
        const auto reading = exampleReading(function);
        const auto lines = renderDisplay(connectedWith(reading), kPlain);
        const bool autoTest = function == '7';  // has rows in place of readings
        EXPECT_EQ(showsLarge(lines, reading.strValue1), !autoTest) << joined(lines);
        if (autoTest || function == '6') {
            EXPECT_EQ(lines[10].find_first_not_of(" │x1/20°80·"), std::string::npos) << lines[10];
        } else {
            EXPECT_THAT(joined(lines), HasSubstr(reading.strValue2 + " " + reading.strUnit2));
        }
    }
}

TEST(TerminalDisplay, MainReadingStandsInTheMiddle) {
    const auto lines = renderDisplay(connectedWith(exampleReading('4')), kPlain);
    const std::string content =
        lines[5].substr(std::string("│").size(), lines[5].size() - 2 * std::string("│").size());
    const auto left = static_cast<int>(content.find_first_not_of(' '));
    const auto unit = columnsOf(std::string_view("  V"));
    const int width = columnsOf(std::string_view(largeDigits("230.4")[0])) + unit;
    EXPECT_NEAR(2 * left + width, 78, 2);
}

TEST(TerminalDisplay, AValueTooWideForLargeDigitsIsShownAsText) {
    auto reading = exampleReading('1');
    reading.strValue1 = "-123456.789012";
    EXPECT_THAT(plainText(connectedWith(reading), 40), HasSubstr("-123456.789012 Ω"));
}

TEST(TerminalDisplay, SettingsStandAsNameAndValue) {
    const auto insulation = plainText(connectedWith(exampleReading('2')));
    for (const char* text : {"Terminal voltage: 250v", "Beeper: OFF", "Lock: ON", "Reference: 0.125MΩ"}) {
        EXPECT_THAT(insulation, HasSubstr(text));
    }
    EXPECT_THAT(plainText(connectedWith(exampleReading('3'))), HasSubstr("ZERO: ON"));
    EXPECT_THAT(plainText(connectedWith(exampleReading('1'))), HasSubstr("ZERO: OFF"));
}

TEST(TerminalDisplay, ValuesOfSettingsAreWholeInANarrowTerminal) {
    for (const char function : kFunctions) {
        const auto reading = exampleReading(function);
        const auto text = plainText(connectedWith(reading), 40);
        for (const auto* value : {&reading.strF1Value, &reading.strF2Value, &reading.strF3Value}) {
            EXPECT_THAT(text, HasSubstr(*value));
        }
    }
}

TEST(TerminalDisplay, WireVoltagesWhereTheFunctionHasThem) {
    for (const char function : kFunctions) {
        const auto text = plainText(connectedWith(exampleReading(function)));
        for (const char* wire : {"L-PE 231 V", "N-PE 2 V", "L-N 229 V"}) {
            EXPECT_EQ(text.find(wire) != std::string::npos, function >= '4') << function << wire;
        }
    }
}

TEST(TerminalDisplay, LimitAndFaultVoltage) {
    EXPECT_THAT(plainText(connectedWith(exampleReading('5'))), HasSubstr("UL 50 V"));
    const auto rcd = plainText(connectedWith(exampleReading('6')));
    EXPECT_THAT(rcd, HasSubstr("UL --- V"));
    EXPECT_THAT(rcd, HasSubstr("UF 0.3 V"));
    EXPECT_THAT(plainText(connectedWith(exampleReading('4'))), Not(HasSubstr("│ UL")));
}

TEST(TerminalDisplay, EachSymbolFollowsItsFlag) {
    struct Flag {
        const char* name;
        std::uint8_t protocol::MeterReading::*member;
    };
    using Reading = protocol::MeterReading;
    const std::vector<Flag> flags{{"HOLD", &Reading::bHoldFlag},   {"LOCK", &Reading::bLockFlag},
                                  {"ZERO", &Reading::bCalFlag},    {"BEEP", &Reading::bBeepFlag},
                                  {"ALARM", &Reading::bAlarmFlag}, {"WARN", &Reading::bWarnFlag},
                                  {"TEST", &Reading::bTestFlag}};
    for (const auto& set : flags) {
        auto reading = exampleReading('4');
        reading.*set.member = 1;
        const auto symbols = renderDisplay(connectedWith(reading), kPlain)[3];
        for (const auto& flag : flags) {
            EXPECT_EQ(symbols.find(flag.name) != std::string::npos, flag.name == set.name) << flag.name;
        }
    }
}

// The trip time of the row that was written last, and in large digits; the others are a dot, as in the
// window.
TEST(TerminalDisplay, AnAutoTestShowsItsRowsAndTheLatestTripTime) {
    auto reading = exampleReading('7');
    reading.bTest = 1;
    auto state = connectedWith(reading);
    for (const char* row : {"x1/2 0°         ·", "x1/2 180°       ·", "x1 0°           ·",
                            "x1 180°         ·", "x5 0°           ·", "x5 180°         ·"})
        EXPECT_THAT(plainText(state), HasSubstr(row));
    for (int i = 2; i <= 9; ++i) display::recordCame(state.display, reading);
    EXPECT_THAT(plainText(state), HasSubstr("x1 0°           ·"));
    EXPECT_THAT(plainText(state), HasSubstr("x1 180°   18.3 ms"));
    EXPECT_TRUE(showsLarge(renderDisplay(state, kPlain), "18.3"));
    EXPECT_THAT(plainText(connectedWith(exampleReading('6'))), Not(HasSubstr("x1/2")));
}

TEST(TerminalDisplay, AnAutoTestWithFourRowsShowsFour) {
    auto reading = exampleReading('7');
    reading.iSubFuncF2 = 2;
    const auto text = plainText(connectedWith(reading));
    EXPECT_THAT(text, HasSubstr("x1 180°"));
    EXPECT_THAT(text, Not(HasSubstr("x5")));
}

TEST(TerminalDisplay, LinkState) {
    auto state = connectedWith(exampleReading('1'));
    auto text = plainText(state);
    for (const char* part :
         {"● Connected", "10.0 frames/s", "last frame 0.1 s ago", "421 frames", "simulator:"}) {
        EXPECT_THAT(text, HasSubstr(part));
    }
    EXPECT_THAT(text, Not(HasSubstr("Not Connected")));
    disconnect(state);
    state.secondsSinceLastFrame.reset();
    state.problem = "no such port";
    text = plainText(state);
    for (const char* part : {"○ Not Connected", "no frame yet", "no such port"})
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_THAT(text, Not(HasSubstr("● Connected")));
}

// The worst that could happen: a value that stands there after its tester has gone.
TEST(TerminalDisplay, WithoutALinkNothingOfTheReadingIsShown) {
    for (const int columns : {40, 80, 132}) {
        for (const bool colour : {false, true}) {
            for (const char function : kFunctions) {
                auto with = connectedWith(exampleReading(function));
                disconnect(with);
                auto without = with;
                without.reading.reset();
                EXPECT_EQ(renderDisplay(with, {colour, columns}), renderDisplay(without, {colour, columns}));
            }
        }
    }
    auto gone = connectedWith(exampleReading('6'));
    disconnect(gone);
    const auto lines = renderDisplay(gone, kPlain);
    for (std::size_t i = 1; i + 3 < lines.size(); ++i) {
        EXPECT_EQ(lines[i].find_first_of("0123456789[]"), std::string::npos) << lines[i];
    }
}

TEST(TerminalDisplay, ConnectedWithoutAReading) {
    DisplayState state;
    display::linkStateChanged(state.display, 1);
    const auto text = plainText(state);
    EXPECT_THAT(text, HasSubstr("Waiting for a reading"));
    EXPECT_THAT(text, Not(HasSubstr("[")));
}

TEST(TerminalDisplay, AFrameThatHeldNothingLightsNothing) {
    EXPECT_THAT(plainText(connectedWith({})), Not(HasSubstr("[")));
}

TEST(TerminalDisplay, NoLineIsWiderThanTheTerminal) {
    auto state = connectedWith(exampleReading('6'));
    state.source = "replay:/" + std::string(200, 'x') + "漢字";
    state.problem = std::string(300, 'y');
    for (const int columns : {-2, 0, 1, 2, 3, 5, 8, 13, 21, 39, 40, 41, 60, 79, 80, 81, 132}) {
        for (const char function : kFunctions) {
            state.reading = exampleReading(function);
            state.reading->strF1Value += std::string(50, 'w');
            display::recordCame(state.display, *state.reading);
            for (const bool colour : {false, true}) {
                for (const auto& line : renderDisplay(state, {colour, columns})) {
                    const auto text = withoutEscapeCodes(line);
                    ASSERT_LE(columnsOf(std::string_view(text)), std::max(columns, 0)) << text;
                }
            }
        }
    }
}

TEST(TerminalDisplay, ATooNarrowTerminalShowsTheLeftPart) {
    const auto state = connectedWith(exampleReading('6'));
    const auto whole = renderDisplay(state, {false, 40});
    const auto cut = renderDisplay(state, {false, 25});
    ASSERT_EQ(cut.size(), whole.size());
    for (std::size_t i = 0; i < cut.size(); ++i) {
        EXPECT_EQ(cut[i], clipped(std::string_view(whole[i]), 25));
    }
}

TEST(TerminalDisplay, NeighboursNeverTouch) {
    auto reading = exampleReading('4');
    reading.strLpe = reading.strNpe = "-6553";
    reading.strF1Value = reading.strF2Value = "wide value";
    reading.strF1Name = reading.strF2Name = "a long name";
    const auto text = plainText(connectedWith(reading), 40);
    EXPECT_THAT(text, HasSubstr("-6553 V N"));
    EXPECT_THAT(text, HasSubstr("wide value a"));
}

TEST(TerminalDisplay, TheFrameIsStraight) {
    for (const int columns : {40, 41, 57, 80, 132}) {
        for (const char function : kFunctions) {
            for (const auto& line :
                 renderDisplay(connectedWith(exampleReading(function)), {false, columns})) {
                EXPECT_EQ(columnsOf(std::string_view(line)), std::min(columns, 80)) << line;
                EXPECT_TRUE(line.ends_with("│") || line.ends_with("┐") || line.ends_with("┤") ||
                            line.ends_with("┘"));
            }
        }
    }
}

TEST(TerminalDisplay, StandsStillWhateverItShows) {
    const auto height = renderDisplay({}, kPlain).size();
    EXPECT_LE(height, 23U) << "fits a terminal of 24 lines with the cursor below it";
    for (const char function : kFunctions) {
        for (const int columns : {10, 40, 80}) {
            EXPECT_EQ(renderDisplay(connectedWith(exampleReading(function)), {true, columns}).size(), height);
        }
    }
}

TEST(TerminalDisplay, ColoursOnlyWhenAsked) {
    const auto state = connectedWith(exampleReading('3'));
    const auto plain = plainText(state);
    const auto coloured = joined(renderDisplay(state, {true, 80}));
    EXPECT_EQ(plain.find('\x1b'), std::string::npos);
    EXPECT_THAT(coloured, HasSubstr("44m LOW OHM \x1b[0m"));
    auto expected = plain;
    for (auto& c : expected) {
        if (c == '[' || c == ']') c = ' ';
    }
    EXPECT_EQ(withoutEscapeCodes(coloured), expected) << "the same picture";
}

TEST(TerminalDisplay, ALowWindowKeepsTheMainReadingAndTheLinkStateLongest) {
    const Lines whole = renderDisplay(connectedWith(exampleReading('3')), kPlain);
    for (int rows = 0; rows <= 30; ++rows) {
        const Lines fitted = fitHeight(whole, rows);
        EXPECT_EQ(fitted.size(), std::min(whole.size(), static_cast<std::size_t>(rows)));
        // What stays stands in the order of the whole.
        std::size_t at = 0;
        for (const auto& line : fitted) {
            while (at < whole.size() && whole[at] != line) ++at;
            EXPECT_LT(at, whole.size()) << "a line of its own: " << line;
            ++at;
        }
        if (rows >= 1) {
            EXPECT_THAT(joined(fitted), HasSubstr("Connected")) << rows;
        }
        if (rows >= 4) {
            EXPECT_TRUE(std::search(fitted.begin(), fitted.end(), whole.begin() + 5, whole.begin() + 8) !=
                        fitted.end())
                << rows;
        }
    }
}

TEST(TerminalDisplay, ControlCharactersDoNotReachTheTerminal) {
    auto state = connectedWith(exampleReading('5'));
    const std::string hostile =
        "a\x1b]0;x\x07\r\n\t\x9b"
        "2J\u009b\x7f"
        "b";
    state.source = state.problem = hostile;
    for (auto* text : {&state.reading->strValue1, &state.reading->strUnit1, &state.reading->strValue2,
                       &state.reading->strF1Name, &state.reading->strF1Value, &state.reading->strLpe}) {
        *text = hostile;
    }
    display::recordCame(state.display, *state.reading);
    for (const auto& line : renderDisplay(state, kPlain)) EXPECT_EQ(printable(line), line);
}

TEST(TerminalDisplay, NumbersThatAreNone) {
    auto state = connectedWith(exampleReading('1'));
    state.framesPerSecond = std::numeric_limits<double>::quiet_NaN();
    state.secondsSinceLastFrame = std::numeric_limits<double>::infinity();
    const auto text = plainText(state);
    EXPECT_THAT(text, HasSubstr("0.0 frames/s"));
    EXPECT_THAT(text, HasSubstr("no frame yet"));
}

}  // namespace
}  // namespace kestrix::cli
