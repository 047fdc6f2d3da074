#include "simulator/Random.h"

#include <gtest/gtest.h>

namespace kestrix::simulator {
namespace {

// The 10,000th number of the engine from its usual seed is fixed by the language's standard; the mapping is
// ours.
TEST(Random, MapsTheEngineTheSameWayEverywhere) {
    Random random{5489};
    for (int i = 0; i < 9999; ++i) random.byte();
    Random same = random;
    EXPECT_EQ(random.byte(), 9981545732273789042U >> 56U);
    EXPECT_DOUBLE_EQ(same.fraction(), static_cast<double>(9981545732273789042U >> 11U) / 9007199254740992.0);
}

TEST(Random, StaysInItsRanges) {
    Random random{7};
    double least = 1;
    double most = -1;
    for (int i = 0; i < 10000; ++i) {
        const double fraction = random.fraction();
        ASSERT_GE(fraction, 0);
        ASSERT_LT(fraction, 1);
        const double wobble = random.wobble(1);
        least = wobble < least ? wobble : least;
        most = wobble > most ? wobble : most;
    }
    EXPECT_GE(least, -1);
    EXPECT_LT(least, -0.99);
    EXPECT_LT(most, 1);
    EXPECT_GT(most, 0.99);
}

}  // namespace
}  // namespace kestrix::simulator
