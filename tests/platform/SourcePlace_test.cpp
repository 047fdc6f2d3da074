#include "platform/SourcePlace.h"

#include <gtest/gtest.h>

namespace kestrix::platform {
namespace {

TEST(SourcePlace, IsWhatAUserCallsIt) {
    EXPECT_EQ(placeOf("bluetooth:"), "Any paired tester");
    EXPECT_EQ(placeOf("bluetooth:AA:BB:CC:DD:EE:FF"), "Bluetooth AA:BB:CC:DD:EE:FF");
    EXPECT_EQ(placeOf("serial:/dev/ttyUSB0?baud=9600"), "/dev/ttyUSB0");
    EXPECT_EQ(placeOf("tcp://192.168.1.20:4000"), "192.168.1.20:4000");
    EXPECT_EQ(placeOf("replay:/home/ann/Harbour Street 12.kxc?speed=max"), "Harbour Street 12.kxc");
    EXPECT_EQ(placeOf("simulator:house"), "Built-in tester");
}

TEST(SourcePlace, IsTheTextItselfWhereThatNamesNone) {
    EXPECT_EQ(placeOf("nonsense"), "nonsense");
    EXPECT_EQ(placeOf("serial:"), "serial:");
}

TEST(SourcePlace, IsOnePrintableLine) {
    EXPECT_EQ(placeOf("tcp://a\nb:1").find('\n'), std::string::npos);
}

}  // namespace
}  // namespace kestrix::platform
