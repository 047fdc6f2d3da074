#include "simulator/ScenarioBuilder.h"

#include <gtest/gtest.h>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

TEST(ScenarioBuilder, AFunctionClearsTheDisplay) {
    const Scenario scenario = parsed(
        "function rcd mode=x5 current=10\nwires L-PE=230 N-PE=0 L-N=230 noise 2\non hold lock\nstep 3\n"
        "show 1 frame\nfunction rcd\nshow 1 frame");
    const Step& cleared = scenario.steps.at(1);
    EXPECT_EQ(cleared.display.settings, (std::array<std::uint8_t, 4>{}));
    EXPECT_FALSE(cleared.display.hold || cleared.display.lock || cleared.display.wiresPresent);
    EXPECT_EQ(cleared.display.autoStep, 0);
    EXPECT_EQ(cleared.mainsNoise, 0);
    for (const Reading& reading : cleared.display.readings) EXPECT_TRUE(reading.noData);
}

TEST(ScenarioBuilder, MovementsGoOnFromStepToStep) {
    const Scenario scenario = parsed(
        "function earth\nreading 1 ramp 0 to 9 within 9 frames\nshow 2 frames\nburst 3 frames\n"
        "silence 9s\ncut after 1 off 1s\nshow 1 frame");
    EXPECT_EQ(scenario.steps[0].motions[0].elapsed, 0U);
    EXPECT_EQ(scenario.steps[1].motions[0].elapsed, 2U);
    EXPECT_EQ(scenario.steps[3].motions[0].elapsed, 5U);
    EXPECT_EQ(scenario.steps[4].motions[0].elapsed, 6U);
}

TEST(ScenarioBuilder, BoundsTheSteps) {
    std::string text = "function earth\n";
    for (std::size_t i = 0; i < kMaxSteps; ++i) text += "show 1s\n";
    EXPECT_EQ(parsed(text).steps.size(), kMaxSteps);
    EXPECT_EQ(errorOf(text + "show 1s\n"), "line 5002: more than 5000 steps");
    EXPECT_EQ(errorOf(text + "silence 1s\n"), "line 5002: more than 5000 steps");
}

TEST(ScenarioBuilder, BoundsTheDamagesOfAFrame) {
    std::string text = "function earth\n";
    for (std::size_t i = 0; i < kMaxDamages; ++i) text += "damage drop 0\n";
    EXPECT_EQ(parsed(text + "show 1s").steps[0].damages.size(), kMaxDamages);
    EXPECT_EQ(errorOf(text + "damage drop 0\n"), "line 18: more than 16 damages to one frame");
}

TEST(ScenarioBuilder, DamageNeedsAFrame) {
    EXPECT_EQ(errorOf("function earth\nshow 1s\ndamage drop 0\nsilence 1s"),
              "line 4: no frame follows that the damage could be done to");
}

TEST(ScenarioBuilder, DamageFallsOnOneStepOnly) {
    const Scenario scenario = parsed("function earth\ndamage drop 0\nshow 1s\nshow 1s");
    EXPECT_EQ(scenario.steps[0].damages.size(), 1U);
    EXPECT_TRUE(scenario.steps[1].damages.empty());
}

}  // namespace
}  // namespace kestrix::simulator
