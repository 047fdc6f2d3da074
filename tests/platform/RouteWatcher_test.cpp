// In a network of its own, which a user may make without rights: no other machine is in it.
#include "platform/RouteWatcher.h"

#include <gtest/gtest.h>

#include <QProcess>

#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

// A cable with both its ends here.
constexpr const char* kLink =
    "ip link add there type veth peer name here && ip link set here up && ip link set there up && "
    "ip address add 192.0.2.1/24 dev there";

class RouteWatcherTest : public ::testing::Test {
  protected:
    void SetUp() override {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(QStringLiteral("unshare"), {QStringLiteral("--map-root-user"), QStringLiteral("--net"),
                                                   QStringLiteral(KESTRIX_ROUTE_WATCH)});
        ASSERT_EQ(line(), "unreachable")
            << "this test needs network namespaces: unshare --map-root-user --net";
    }
    void TearDown() override {
        process_.closeWriteChannel();
        EXPECT_TRUE(process_.waitForFinished(30'000));
    }
    void command(const char* text) {
        process_.write(text);
        process_.write("\n");
    }
    // The next line that the program says, "done" behind commands left out.
    std::string line() {
        QByteArray said;
        testing::spinUntil([&] {
            while (process_.canReadLine() && (said.isEmpty() || said == "done"))
                said = process_.readLine().trimmed();
            return (!said.isEmpty() && said != "done") || process_.state() == QProcess::NotRunning;
        });
        return said.toStdString();
    }

    QProcess process_;
};

TEST_F(RouteWatcherTest, FollowsTheDefaultRoute) {
    command(kLink);
    command("ip route add default via 192.0.2.2");
    EXPECT_EQ(line(), "reachable");
    command("ip route del default");
    EXPECT_EQ(line(), "unreachable");
    command("ip -6 address add 2001:db8::1/64 dev there nodad");
    command("ip -6 route add default via 2001:db8::2");
    EXPECT_EQ(line(), "reachable");
    command("ip -6 route add unreachable default metric 9999");
    command("ip -6 route del default via 2001:db8::2");
    EXPECT_EQ(line(), "unreachable");
}

// The kernel does not say then that the route has gone.
TEST_F(RouteWatcherTest, ALinkThatGoesDownTakesTheRouteWithIt) {
    command(kLink);
    command("ip route add default via 192.0.2.2");
    EXPECT_EQ(line(), "reachable");
    command("ip link set there down");
    EXPECT_EQ(line(), "unreachable");
}

TEST_F(RouteWatcherTest, RoutesToSomeMachinesAreNotEnough) {
    command(kLink);
    command("ip route add 198.51.100.0/24 via 192.0.2.2");
    command("ip route add default via 192.0.2.2 table 77");
    command("ip route add default via 192.0.2.2");
    EXPECT_EQ(line(), "reachable");
    command("ip link del there");
    EXPECT_EQ(line(), "unreachable");
}

}  // namespace
}  // namespace kestrix::platform
