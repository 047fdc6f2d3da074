#include "apps/kestrix-cli/LookingTime.h"

#include <gtest/gtest.h>

namespace kestrix::cli {
namespace {

// A service says after 5.12 s that a device does not answer.
constexpr int kSecondsUntilTwoAreKnownToBeOutOfReach = 11;

TEST(LookingTime, IsEnoughToKnowTwoBluetoothDevicesOutOfReach) {
    EXPECT_GE(secondsToLookAt({"bluetooth:"}), kSecondsUntilTwoAreKnownToBeOutOfReach);
    EXPECT_GE(secondsToLookAt({"tcp://a:1", "BLUETOOTH:AA:BB:CC:DD:EE:FF"}),
              kSecondsUntilTwoAreKnownToBeOutOfReach);
}

TEST(LookingTime, IsShortWhereAnAnswerComesSoon) {
    EXPECT_EQ(secondsToLookAt({}), 5);
    EXPECT_EQ(secondsToLookAt({"tcp://a:1", "serial:/dev/rfcomm0", "no uri"}), 5);
}

}  // namespace
}  // namespace kestrix::cli
