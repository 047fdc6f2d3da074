#include "platform/AccessoryUri.h"

#include <gtest/gtest.h>

namespace kestrix::platform {
namespace {

TEST(AccessoryUri, SchemeTargetAndOptions) {
    const auto uri = parseAccessoryUri("serial:/dev/rfcomm0?baud=9600&parity=none");
    ASSERT_TRUE(uri);
    EXPECT_EQ(uri->scheme, "serial");
    EXPECT_EQ(uri->target, "/dev/rfcomm0");
    EXPECT_EQ(uri->options, (std::map<std::string, std::string>{{"baud", "9600"}, {"parity", "none"}}));
}

TEST(AccessoryUri, TwoSlashesBehindTheSchemeOfAnyKindAreDropped) {
    EXPECT_EQ(parseAccessoryUri("serial:///dev/rfcomm0")->target, "/dev/rfcomm0");
    EXPECT_EQ(parseAccessoryUri("simulator://house")->target, "house");
    EXPECT_EQ(parseAccessoryUri("tcp://localhost:4000")->target, "localhost:4000");
    EXPECT_EQ(parseAccessoryUri("TCP:localhost:4000")->scheme, "tcp");
}

TEST(AccessoryUri, AFileMayHaveAQuestionMarkAPercentSignAndBlanks) {
    EXPECT_EQ(parseAccessoryUri("replay:/a b/why?.kxc")->target, "/a b/why?.kxc");
    EXPECT_EQ(parseAccessoryUri("replay:100%.kxc?speed=max")->target, "100%.kxc");
    EXPECT_EQ(parseAccessoryUri("replay:a?b=c?speed=2")->target, "a?b=c");
}

TEST(AccessoryUri, ACapturesFileIsItselfWhateverItsNameLooksLike) {
    for (const char* path : {"/srv/a b/why?.kxc", "/srv/a?speed=max", "a?b=c&d=e.kxc", "/srv/a?b=c?speed=2"})
        EXPECT_EQ(parseAccessoryUri(captureUri(path))->target, path);
    EXPECT_EQ(captureUri("/srv/why?.kxc"), "replay:/srv/why?.kxc");
}

TEST(AccessoryUri, ARelativePathIsMadeOneOfTheFolder) {
    const auto absolute = [](const char* uri) { return withAbsolutePath(uri, "/srv/x"); };
    EXPECT_EQ(absolute("replay:site.kxc?speed=0.2"), "replay:/srv/x/site.kxc?speed=0.2");
    EXPECT_EQ(absolute("replay://../a?b=c?speed=2"), "replay:/srv/a?b=c?speed=2");
    EXPECT_EQ(absolute("serial:./port?baud=9600"), "serial:/srv/x/port?baud=9600");
    EXPECT_EQ(absolute("simulator:my.kxs"), "simulator:/srv/x/my.kxs");
    EXPECT_EQ(parseAccessoryUri(withAbsolutePath("replay:site.kxc", "/srv/a?b=c"))->target,
              "/srv/a?b=c/site.kxc");
    for (const char* same : {"replay:/srv/site.kxc", "simulator:", "simulator:house?seed=3",
                             "bluetooth:", "tcp://a:1", "serial:/dev/rfcomm0", "no uri"})
        EXPECT_EQ(absolute(same), same);
}

TEST(AccessoryUri, OptionsAndTheCaseOfAnAddressMakeNoOtherPlace) {
    EXPECT_TRUE(isSamePlace("serial:/dev/ttyUSB0?baud=9600", "serial:///dev/ttyUSB0"));
    EXPECT_TRUE(isSamePlace("bluetooth:aa:bb:cc:dd:ee:ff", "bluetooth:AA:BB:CC:DD:EE:FF"));
    EXPECT_FALSE(isSamePlace("bluetooth:", "bluetooth:AA:BB:CC:DD:EE:FF"));
    EXPECT_FALSE(isSamePlace("serial:/dev/ttyUSB0", "serial:/dev/TTYUSB0"));
    EXPECT_FALSE(isSamePlace("replay:a", "serial:a"));
    EXPECT_TRUE(isSamePlace("no uri", "no uri"));
}

TEST(AccessoryUri, ATextWithoutASchemeIsNone) {
    EXPECT_FALSE(parseAccessoryUri(""));
    EXPECT_FALSE(parseAccessoryUri("house.kxc"));
    EXPECT_FALSE(parseAccessoryUri(":x"));
    EXPECT_FALSE(parseAccessoryUri("/dev/tty:0"));
}

TEST(AccessoryUri, TakingAnOptionRemovesIt) {
    auto uri = parseAccessoryUri("simulator:house?seed=3");
    EXPECT_EQ(takeOption(*uri, "speed"), std::nullopt);
    EXPECT_EQ(takeOption(*uri, "seed"), "3");
    EXPECT_TRUE(uri->options.empty());
}

TEST(AccessoryUri, HostAndPort) {
    EXPECT_EQ(parseHostAndPort("tester.local:4000")->host, "tester.local");
    EXPECT_EQ(parseHostAndPort("tester.local:4000")->port, 4000);
    EXPECT_EQ(parseHostAndPort("[::1]:65535")->host, "::1");
    EXPECT_EQ(parseHostAndPort("a:0", 0)->port, 0);
}

TEST(AccessoryUri, WrongHostsAndPortsAreNone) {
    for (const char* text :
         {"", "host", ":4000", "host:", "host:0", "host:65536", "host:-1", "host:4000x", "host: 4000",
          "::1:4000", "[]:1", "[::1:4000", "a b:1", "a/b:1", "host:99999999999"}) {
        EXPECT_FALSE(parseHostAndPort(text)) << text;
    }
}

TEST(AccessoryUri, Numbers) {
    EXPECT_EQ(parseNumber("1", 1, 9), 1);
    EXPECT_EQ(parseNumber("9", 1, 9), 9);
    for (const char* text : {"", "0", "10", "1 ", "+1", "0x1", "1.0", "-1"})
        EXPECT_FALSE(parseNumber(text, 1, 9)) << text;
}

TEST(AccessoryUri, PlaySpeeds) {
    EXPECT_EQ(parsePlaySpeed("max"), 0.0);
    EXPECT_EQ(parsePlaySpeed("1"), 1.0);
    EXPECT_EQ(parsePlaySpeed("0.1"), 0.1);
    for (const char* text : {"", "0", "0.0999", "-1", "nan", "inf", "1e9", "fast", "1x"})
        EXPECT_FALSE(parsePlaySpeed(text)) << text;
}

}  // namespace
}  // namespace kestrix::platform
