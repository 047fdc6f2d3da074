#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "Playing.h"
#include "simulator/Words.h"

namespace kestrix::simulator {
namespace {

std::string documentText() {
    const std::ifstream file{KESTRIX_SOURCE_DIR "/docs/scenarios.md"};
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> examples() {
    std::vector<std::string> blocks;
    std::istringstream lines{documentText()};
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```scenario") {
            inside = true;
            blocks.emplace_back();
        } else if (line == "```") {
            inside = false;
        } else if (inside) {
            blocks.back() += line + '\n';
        }
    }
    return blocks;
}

TEST(ScenarioDocument, EveryExamplePlays) {
    const auto blocks = examples();
    EXPECT_GE(blocks.size(), 9U);
    for (const std::string& block : blocks) {
        SCOPED_TRACE(block);
        const auto emissions = emissionsOf(block);
        EXPECT_TRUE(std::any_of(emissions.begin(), emissions.end(),
                                [](const Emission& emission) { return isFrame(emission.bytes); }));
    }
}

TEST(ScenarioDocument, TheExamplesUseEveryStatementFunctionAndFlag) {
    std::string all;
    for (const std::string& block : examples()) all += block;
    std::istringstream lines{all};
    std::string words;
    for (std::string line; std::getline(lines, line);) {
        Words split{line};
        while (!split.atEnd()) words += " " + std::string{split.take("a word")} + " ";
    }
    for (const char* word :
         {"auto-sequence", "burst",   "bytewise", "cut",        "damage",      "function", "garbage",
          "line",          "off",     "on",       "rate",       "reading",     "repeat",   "set",
          "show",          "silence", "step",     "switch-off", "touch-limit", "wires",    "earth",
          "insulation",    "low-ohm", "voltage",  "loop",       "rcd",         "warning",  "lock",
          "zero",          "beeper",  "hold",     "alarm",      "result",      "test",     "auto-test",
          "1.2.3",         "2.1.3",   "settle",   "ramp",       "dashes",      "overload", "max"}) {
        EXPECT_NE(words.find(" " + std::string{word} + " "), std::string::npos) << word;
    }
}

TEST(ScenarioDocument, QuotesARealMessage) {
    const std::string message = errorOf(std::string(11, '\n') + "function FOO");
    EXPECT_NE(documentText().find("`" + message + "`"), std::string::npos) << message;
}

}  // namespace
}  // namespace kestrix::simulator
