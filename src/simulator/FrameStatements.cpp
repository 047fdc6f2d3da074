#include <cstdint>
#include <optional>
#include <string>

#include "simulator/ReadingValue.h"
#include "simulator/Statements.h"

namespace kestrix::simulator::statement {

namespace {

std::uint64_t takeFrames(Words& words, const ScenarioBuilder& tester) {
    const std::uint64_t frames = words.takeDuration().framesAt(tester.framePeriod());
    words.expectEnd();
    return frames;
}

}  // namespace

void rate(Words& words, ScenarioBuilder& tester) {
    if (words.takeIf("max")) {
        tester.setRate(std::nullopt);
    } else {
        const double rate = words.takeDecimal("a rate").value();
        if (rate < kMinRate || rate > kMaxRate) {
            throw StatementError{"a rate is from 0.1 to 1000 frames a second, or 'max'"};
        }
        tester.setRate(rate);
    }
    words.expectEnd();
}

void repeat(Words& words, ScenarioBuilder& tester) {
    if (words.takeIf("forever")) {
        tester.setRounds(std::nullopt);
    } else {
        tester.setRounds(
            static_cast<std::uint32_t>(words.takeWhole("'forever' or a number of rounds", 1, kMaxRounds)));
    }
    words.expectEnd();
}

void show(Words& words, ScenarioBuilder& tester) {
    tester.addFrames(Delivery::Frames, takeFrames(words, tester));
}

void burst(Words& words, ScenarioBuilder& tester) {
    const std::uint64_t frames = takeFrames(words, tester);
    if (frames > kMaxBurst) {
        throw StatementError{"a burst has at most " + std::to_string(kMaxBurst) + " frames"};
    }
    tester.addFrames(Delivery::Burst, frames);
}

void bytewise(Words& words, ScenarioBuilder& tester) {
    tester.addFrames(Delivery::Bytewise, takeFrames(words, tester));
}

// One frame says that the sequence has begun, then each result stands for two: a listener that takes every
// second frame from the third on finds each of them once.
void autoSequence(Words& words, ScenarioBuilder& tester) {
    constexpr std::uint8_t kSteps[] = {0, 1, 2, 3, 6, 7};
    constexpr std::uint64_t kFramesOfStep = 2;
    const FunctionRules& rules = tester.rules();
    Display& display = tester.display;
    if (display.function != Function::Rcd || display.settings[0] != 0) {
        throw StatementError{"an auto-sequence needs 'function rcd mode=auto'"};
    }
    if (display.autoTest) throw StatementError{"an auto-sequence switches auto-test on by itself"};
    const ReadingRule& rule = rules.readings[0];
    const bool testRunning = display.testRunning;
    display.autoTest = display.testRunning = true;
    display.autoStep = 0;
    Words dashes{"dashes"};
    takeValue(dashes, rule, display.readings[0], tester.motions[0]);
    tester.addFrames(Delivery::Frames, 1);
    for (const std::uint8_t step : kSteps) {
        display.autoStep = step;
        takeValue(words, rule, display.readings[0], tester.motions[0]);
        tester.addFrames(Delivery::Frames, kFramesOfStep);
    }
    words.expectEnd();
    display.autoTest = false;
    display.testRunning = testRunning;
}

}  // namespace kestrix::simulator::statement
