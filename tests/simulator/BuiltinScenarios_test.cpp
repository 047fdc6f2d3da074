#include "simulator/BuiltinScenarios.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

Scenario oneRound(std::string_view name) {
    const auto text = builtinScenario(name);
    if (!text) {
        ADD_FAILURE() << "no scenario " << name;
        return {};
    }
    Scenario scenario = parsed(*text);
    EXPECT_EQ(scenario.rounds, std::nullopt) << name << " is for demonstration and goes on";
    scenario.rounds = 1;
    return scenario;
}

TEST(BuiltinScenarios, AreNamedAsTheirFiles) {
    std::set<std::string> files;
    for (const auto& entry :
         std::filesystem::directory_iterator{KESTRIX_SOURCE_DIR "/src/simulator/scenarios"}) {
        files.insert(entry.path().stem().string());
    }
    const auto names = builtinScenarioNames();
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), files);
    for (const char* name : {"house", "earth", "insulation", "low-ohm", "voltage", "loop", "rcd", "rcd-auto",
                             "faults", "flood"}) {
        EXPECT_TRUE(builtinScenario(name)) << name;
    }
    EXPECT_TRUE(builtinScenario(kDefaultScenario));
    EXPECT_EQ(builtinScenario("House"), std::nullopt);
    EXPECT_EQ(builtinScenario(""), std::nullopt);
}

TEST(BuiltinScenarios, PlayAFullRoundOfPlainFrames) {
    for (const std::string_view name : builtinScenarioNames()) {
        if (name == "faults") continue;
        for (const Emission& emission : emissionsOf(oneRound(name))) {
            ASSERT_TRUE(isFrame(emission.bytes)) << name;
            ASSERT_FALSE(emission.closes) << name;
        }
    }
}

TEST(BuiltinScenarios, ShowTheFunctionOfTheirName) {
    const std::pair<const char*, char> expected[] = {{"earth", '1'},   {"insulation", '2'}, {"low-ohm", '3'},
                                                     {"voltage", '4'}, {"loop", '5'},       {"rcd", '6'},
                                                     {"rcd-auto", '6'}};
    for (const auto& [name, code] : expected) {
        for (const Emission& emission : emissionsOf(oneRound(name))) {
            ASSERT_EQ(emission.bytes.at(10), code) << name;
            if (code == '6') {
                ASSERT_EQ(emission.bytes[3] == 0, std::string_view{name} == "rcd-auto");
            }
        }
    }
}

// When each function, with the automatic RCD mode as '7', is first seen.
std::map<int, std::int64_t> firstSeen(const std::vector<Emission>& emissions) {
    std::map<int, std::int64_t> seen;
    std::int64_t now = 0;
    for (const Emission& emission : emissions) {
        now += emission.wait.count();
        const bool automatic = emission.bytes.at(10) == '6' && emission.bytes[3] == 0;
        seen.emplace(automatic ? '7' : emission.bytes[10], now);
    }
    return seen;
}

TEST(House, ShowsEveryFunctionInARoundOfAboutAMinute) {
    const auto emissions = emissionsOf(oneRound("house"));
    EXPECT_GE(millisecondsOf(emissions), 60'000);
    EXPECT_LE(millisecondsOf(emissions), 90'000);
    const auto seen = firstSeen(emissions);
    EXPECT_EQ(seen.size(), 7U);
    for (const char code : {'4', '3', '2'}) EXPECT_LE(seen.at(code), 18'000) << code;
}

TEST(House, ChangesWithinTheFirstSecond) {
    const auto emissions = emissionsOf(oneRound("house"));
    EXPECT_NE(emissions[0].bytes, emissions[3].bytes);
}

// Prospective fault current and loop impedance belong together: I = 230 V / Z, as far as their digits tell.
TEST(House, FaultCurrentsFollowFromTheImpedances) {
    int checked = 0;
    for (const char* name : {"house", "loop"}) {
        for (const Emission& emission : emissionsOf(oneRound(name))) {
            const Bytes& frame = emission.bytes;
            const bool limits = ((attributeIn(frame, 1) | attributeIn(frame, 2)) & 0x80) != 0;
            if (frame[10] != '5' || (frame[25] & 0x33) != 0 || limits) continue;
            const auto value = [&frame](std::size_t reading) {
                return magnitudeIn(frame, reading) * std::pow(10.0, -(attributeIn(frame, reading) & 0x0F));
            };
            const double ohm = value(1) * ((attributeIn(frame, 1) & 0x70) == 0x10 ? 0.001 : 1);
            const double ampere = value(2) * ((attributeIn(frame, 2) & 0x70) == 0x10 ? 1000 : 1);
            EXPECT_NEAR(ampere * ohm, 230, 230 * 0.005) << name << ' ' << ohm << " ohm";
            ++checked;
        }
    }
    EXPECT_GT(checked, 30);
}

TEST(Faults, ShowsEachFault) {
    const Scenario scenario = oneRound("faults");
    std::set<Delivery> deliveries;
    std::set<DamageKind> damages;
    bool noisy = false;
    for (const Step& step : scenario.steps) {
        deliveries.insert(step.delivery);
        for (const Damage& fault : step.damages) damages.insert(fault.kind);
        noisy = noisy || (step.line.flip > 0 && step.line.drop > 0 && step.line.insert > 0);
    }
    EXPECT_EQ(deliveries.size(), 7U);
    EXPECT_EQ(damages.size(), 3U);
    EXPECT_TRUE(noisy);
}

TEST(Faults, SendsThemInTurn) {
    const auto emissions = emissionsOf(oneRound("faults"));
    std::set<std::size_t> sizes;
    int closings = 0;
    std::chrono::milliseconds longest{0};
    for (const Emission& emission : emissions) {
        sizes.insert(emission.bytes.size());
        closings += emission.closes ? 1 : 0;
        longest = std::max(longest, emission.wait);
    }
    EXPECT_FALSE(isFrame(emissions.front().bytes)) << "garbage first";
    EXPECT_TRUE(isFrame(emissions.back().bytes)) << "and well again at the end";
    for (const std::size_t size : {0U, 1U, 3U, 18U, 35U, 36U, 37U, 100U, 40U * 36U}) {
        EXPECT_TRUE(sizes.count(size)) << size << " bytes";
    }
    EXPECT_EQ(closings, 2);
    EXPECT_GT(longest, std::chrono::seconds{3}) << "a silence that a listener must notice";
}

TEST(Flood, NeverWaitsAndKeepsChanging) {
    const auto emissions = emissionsOf(oneRound("flood"));
    EXPECT_EQ(millisecondsOf(emissions), 0);
    EXPECT_EQ(emissions.size(), 60'000U);
    std::size_t same = 0;
    for (std::size_t i = 1; i < emissions.size(); ++i)
        same += emissions[i].bytes == emissions[i - 1].bytes ? 1 : 0;
    EXPECT_LT(same, 600U);
}

}  // namespace
}  // namespace kestrix::simulator
