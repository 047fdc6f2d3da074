// `kestrix-cli decode --screen`, held against a second telling of the rules, over streams that nobody wrote
// by hand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/cli/ExpectedScreen.h"
#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/cli/ScreenRecords.h"

namespace kestrix::cli {
namespace {

using nlohmann::ordered_json;
using testing::FrameBuilder;

// Holds what the program says of these bytes against what it says without --screen, and against the second
// telling of the rules. Gives the screens.
std::vector<ordered_json> expectTheRules(const std::string& bytes) {
    const Result plain = run({"decode"}, bytes);
    const Result with = run({"decode", "--screen"}, bytes);
    EXPECT_EQ(with.status, 0);
    EXPECT_EQ(with.error, plain.error);
    const std::vector<std::string> plainLines = linesOf(plain.output);
    const std::vector<std::string> lines = linesOf(with.output);
    EXPECT_EQ(lines.size(), plainLines.size());
    ExpectedScreen expected;
    std::vector<ordered_json> screens;
    for (std::size_t i = 0; i < std::min(lines.size(), plainLines.size()); ++i) {
        expected.receive(ordered_json::parse(plainLines[i]));
        const std::string recordAlone = plainLines[i].substr(0, plainLines[i].size() - 1);
        EXPECT_EQ(lines[i], recordAlone + ",\"screen\":" + expected.json().dump() + "}") << "record " << i;
        if (::testing::Test::HasFailure()) break;
        screens.push_back(expected.json());
    }
    return screens;
}

// A tester's ways: a while in one function, settings that stay, tests that run and stop.
std::string wanderingTester(unsigned seed, std::size_t count) {
    std::mt19937 random(seed);
    const auto below = [&random](unsigned limit) { return static_cast<std::uint8_t>(random() % limit); };
    std::string bytes;
    while (count > 0) {
        FrameBuilder frame(static_cast<char>('1' + below(6)));
        frame.setting(1, below(3) == 0 ? below(7) : 0).setting(2, below(4));
        frame.setting(3, below(3)).setting(4, below(3)).status(below(2) == 0 ? 0x09 : below(255));
        for (auto records = 1U + below(40); records > 0 && count > 0; --records, --count) {
            for (std::size_t n = 1; n <= 4; ++n)
                frame.reading(n, static_cast<std::uint16_t>(random()), below(9) == 0 ? below(255) : 0x00);
            frame.noDataOverload(below(5) == 0 ? below(255) : 0).wires(below(250), below(250));
            if (below(30) == 0) frame.setting(2, below(4));
            frame.alarm(below(50) == 0 ? 0 : static_cast<std::uint8_t>(0x02 | below(8)));
            bytes += bytesOf(frame);
        }
    }
    return bytes;
}

TEST(DecodeScreenRules, AWanderingTesterIsShownAsTheRulesSay) {
    std::set<int> functions;
    std::set<int> layouts;
    std::set<std::string> visible;
    for (const ordered_json& screen : expectTheRules(wanderingTester(20240611, 4000))) {
        functions.insert(screen.at("intfunctions").get<int>());
        layouts.insert(screen.at("showMode").get<int>());
        visible.insert(visibleValues(screen));
    }
    EXPECT_THAT(functions, ::testing::IsSupersetOf({49, 50, 51, 52, 53, 54, 55}));
    EXPECT_EQ(layouts, (std::set<int>{0, 1, 2, 3}));
    EXPECT_THAT(visible, ::testing::IsSupersetOf({"1", "2", "3", "4", "5", "6"}));
}

// Bytes that wish no good: noise, start bytes, frames of any content, cut and damaged ones.
std::string hostileBytes(unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes;
    const auto anything = [&](std::size_t count) {
        for (; count > 0; --count) bytes += static_cast<char>(random() % 256);
    };
    for (int piece = 0; piece < 150; ++piece) {
        std::string frame = bytesOf(FrameBuilder(static_cast<char>('0' + random() % 9)));
        for (std::size_t i = 0; i < frame.size(); ++i) {
            const bool examined = i < 3 || (i >= 8 && i <= 10);
            if (!examined || random() % 60 == 0) frame[i] = static_cast<char>(random() % 256);
        }
        if (random() % 2 == 0) frame[3] = 0;  // which alone makes the automatic sequence
        switch (random() % 5) {
            case 0:
                anything(random() % 100);
                break;
            case 1:
                bytes += "\x7E\x0D\x1E";
                break;
            case 2:
                bytes += frame.substr(0, random() % frame.size());
                break;
            default:
                bytes += frame;
        }
    }
    return bytes;
}

TEST(DecodeScreenRules, HostileBytesGiveWhatTheRulesSay) {
    std::set<int> functions;
    for (unsigned seed = 1; seed <= 30 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        for (const ordered_json& screen : expectTheRules(hostileBytes(seed)))
            functions.insert(screen.at("intfunctions").get<int>());
    }
    EXPECT_EQ(functions, (std::set<int>{0, 49, 50, 51, 52, 53, 54, 55}));
}

// The most memory that decoding so many frames takes, in KiB.
long peakOfDecodingWithScreen(std::size_t rounds) {
    Surroundings setup;
    setup.output = "/dev/null";
    Program program({"decode", "--screen"}, setup);
    const std::string frames = wanderingTester(1, 10'000);
    for (std::size_t i = 0; i < rounds; ++i) EXPECT_TRUE(program.send(frames));
    // All is read but what the pipe holds, which is less than the rounds differ by.
    const long peak = program.peakKilobytes();
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.error(), "");
    return peak;
}

TEST(DecodeScreenRules, NeedsNoMoreMemoryForMore) {
    const long small = peakOfDecodingWithScreen(3);   // 1 MB
    const long large = peakOfDecodingWithScreen(40);  // 14 MB
    EXPECT_GT(small, 1000);
    EXPECT_LT(large - small, 4096);
}

}  // namespace
}  // namespace kestrix::cli
