#include "platform/SearchAdvice.h"

#include <gtest/gtest.h>

#include "platform/AccessorySources.h"

namespace kestrix::platform {
namespace {

constexpr FailedStep kSteps[] = {FailedStep::Missing,  FailedStep::Rights,   FailedStep::Busy,
                                 FailedStep::Refused,  FailedStep::NoAnswer, FailedStep::NoBytes,
                                 FailedStep::NoFrames, FailedStep::Ended,    FailedStep::Other};

// Only Bluetooth has an adapter and pairing, and its problems say themselves what to do.
TEST(SearchAdvice, SaysASentenceForEveryStepOfEveryOtherKind) {
    for (const SourceKind& kind : sourceKinds()) {
        if (kind.scheme == "bluetooth") continue;
        for (const FailedStep step : kSteps) {
            const std::string advice = adviceFor(step, std::string(kind.example));
            ASSERT_FALSE(advice.empty()) << kind.scheme << ' ' << static_cast<int>(step);
            EXPECT_EQ(advice.back(), '.') << advice;
        }
    }
}

TEST(SearchAdvice, SaysNothingWhileNothingHasFailed) {
    EXPECT_EQ(adviceFor(FailedStep::None, "tcp://host:1"), "");
}

TEST(SearchAdvice, IsOfTheKindWhereThatMatters) {
    EXPECT_EQ(adviceFor(FailedStep::Rights, "serial:/dev/ttyS0"),
              "Ask for the right to use serial ports (group dialout).");
    EXPECT_EQ(adviceFor(FailedStep::Missing, "tcp://host:1"), "Check the address.");
    EXPECT_EQ(adviceFor(FailedStep::NoAnswer, "serial:/dev/ttyS0"),
              "Switch the tester on and bring it near.");
}

// What its own lines say must not be said twice; what every source says of an open channel has its advice.
TEST(SearchAdvice, OfBluetoothIsOnlyForAChannelThatWasOpen) {
    for (int step = static_cast<int>(FailedStep::Adapter); step <= static_cast<int>(FailedStep::NoAnswer);
         ++step) {
        EXPECT_EQ(adviceFor(static_cast<FailedStep>(step), "bluetooth:"), "") << step;
        EXPECT_EQ(adviceFor(static_cast<FailedStep>(step), "bluetooth:AA:BB:CC:00:00:01"), "") << step;
    }
    for (const FailedStep step : {FailedStep::NoBytes, FailedStep::NoFrames, FailedStep::Ended})
        EXPECT_NE(adviceFor(step, "bluetooth:"), "") << static_cast<int>(step);
}

}  // namespace
}  // namespace kestrix::platform
