#include "platform/BluetoothModule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include "platform/AccessoryListings.h"
#include "tests/platform/BluezFixture.h"

namespace kestrix::platform {
namespace {

using ::testing::HasSubstr;
using testing::spinUntil;
using ::testing::StartsWith;

constexpr const char* kAddress = "AA:BB:CC:00:00:01";

class BluetoothModule : public BluezTest {};

TEST_F(BluetoothModule, ItsDialerReachesATester) {
    startBluez();
    bluez_->addDevice({});
    const BluetoothParts parts = loadBluetooth();
    ASSERT_EQ(parts.problem, "");
    const std::unique_ptr<Dialer> dialer = parts.makeDialer(kAddress, {}, scheduler_);
    std::unique_ptr<ByteChannel> channel;
    dialer->dial([&](Dialer::Outcome outcome) { channel = std::move(outcome.channel); });
    ASSERT_TRUE(spinUntil([&] { return channel != nullptr; }));
    bluez_->send(kAddress, "hello");
    EXPECT_TRUE(spinUntil([&] { return channel->bytesAvailable() == 5; }));
}

TEST_F(BluetoothModule, ItsListingIsTheOneThatTheApplicationGets) {
    startBluez();
    bluez_->addDevice({});
    const std::unique_ptr<AccessoryListing> listing = makeBluetoothListing(scheduler_);
    EXPECT_TRUE(spinUntil([&] { return listing->seen().size() == 1; }));
}

// All of them know of one service, and register the profile once.
TEST_F(BluetoothModule, WhatIsMadeSharesOneRegistration) {
    startBluez();
    bluez_->addDevice({});
    const BluetoothParts parts = loadBluetooth();
    const BluetoothParts again = loadBluetooth();
    const auto one = parts.makeDialer(kAddress, {}, scheduler_);
    const auto other = again.makeDialer("", {}, scheduler_);
    int failed = 0;
    std::vector<std::unique_ptr<ByteChannel>> channels;
    for (Dialer* dialer : {one.get(), other.get()})
        dialer->dial([&](Dialer::Outcome outcome) {
            failed += outcome.channel ? 0 : 1;
            channels.push_back(std::move(outcome.channel));
        });
    EXPECT_TRUE(spinUntil([&] { return !channels.empty(); }));
    EXPECT_EQ(bluez_->registrations, 1);
}

TEST_F(BluetoothModule, OneThatIsNotThereIsSaidInOneLine) {
    const BluetoothParts parts = loadBluetooth(QStringLiteral("/nowhere/kestrix-bluetooth.so"));
    EXPECT_EQ(parts.makeDialer, nullptr);
    EXPECT_EQ(parts.makeListing, nullptr);
    EXPECT_THAT(parts.problem, StartsWith("the installation is not complete, there is no Bluetooth: "));
    EXPECT_THAT(parts.problem, HasSubstr("/nowhere/kestrix-bluetooth.so"));
}

}  // namespace
}  // namespace kestrix::platform
