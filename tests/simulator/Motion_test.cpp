#include "simulator/Motion.h"

#include <gtest/gtest.h>

namespace kestrix::simulator {
namespace {

TEST(Motion, StillStandsAtItsValue) {
    const Motion motion{.from = 3, .to = 7};
    EXPECT_EQ(valueAt(motion, 0), 7);
    EXPECT_EQ(valueAt(motion, 1000), 7);
}

TEST(Motion, RampMovesEvenlyAndThenStays) {
    const Motion motion{.kind = MotionKind::Ramp, .from = 100, .to = 20, .frames = 8};
    EXPECT_DOUBLE_EQ(valueAt(motion, 0), 100);
    EXPECT_DOUBLE_EQ(valueAt(motion, 2), 80);
    EXPECT_DOUBLE_EQ(valueAt(motion, 7), 30);
    EXPECT_EQ(valueAt(motion, 8), 20);
    EXPECT_EQ(valueAt(motion, 9), 20);
}

TEST(Motion, SettlingIsExponentialWithFiveTimeConstants) {
    const Motion motion{.kind = MotionKind::Settle, .from = 0, .to = 1000, .frames = 10};
    EXPECT_DOUBLE_EQ(valueAt(motion, 0), 0);
    EXPECT_NEAR(valueAt(motion, 2), 632.12, 0.01);  // 1 - 1/e after one time constant, a fifth of the time
    EXPECT_NEAR(valueAt(motion, 4), 864.66, 0.01);
    EXPECT_EQ(valueAt(motion, 10), 1000);
}

TEST(Motion, GoesOnFromWhatHasPassed) {
    const Motion motion{.kind = MotionKind::Ramp, .from = 0, .to = 10, .frames = 10, .elapsed = 4};
    EXPECT_DOUBLE_EQ(valueAt(motion, 0), 4);
    EXPECT_DOUBLE_EQ(valueAt(motion, 3), 7);
}

}  // namespace
}  // namespace kestrix::simulator
