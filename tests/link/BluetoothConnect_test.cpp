// The events of the tester, the latches and the session.
#include "link/BluetoothConnect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/link/BluetoothConnectFixture.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::link {
namespace {

using platform::AccessoryPtr;
using platform::NotificationCenter;

TEST_F(BluetoothConnectTest, StartWithATesterOpensItsSessionAndPublishesOne) {
    source_->appear(accessory(1, {"first", "second"}));
    start();
    EXPECT_EQ(log_, Log{"state 1"});
    EXPECT_EQ(storedState(), 1);
    EXPECT_EQ(source_->openedProtocols, Log{"first"});
    EXPECT_EQ(connect_.strprotocol(), "first");
    EXPECT_TRUE(BluetoothConnect::bBlueConnected);
}

TEST_F(BluetoothConnectTest, StartWithoutATesterPublishesZero) {
    start();
    EXPECT_EQ(log_, Log{"state 0"});
    EXPECT_EQ(storedState(), 0);
    EXPECT_TRUE(source_->openedProtocols.empty());
    EXPECT_FALSE(BluetoothConnect::bBlueConnected);
}

TEST_F(BluetoothConnectTest, StartLeavesTheLatchesUntouched) {
    start();
    EXPECT_FALSE(BluetoothConnect::bConnectNotified);
    EXPECT_FALSE(BluetoothConnect::bDisconnectNotified);
}

TEST_F(BluetoothConnectTest, StartLogsTheConnectedAccessory) {
    source_->appear(accessory(3));
    source_->appear(accessory(4));  // held back
    start();
    const auto& lines = testing::logLines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "info kestrix.link: devicename:(Tester 3)"), lines.end());
}

TEST_F(BluetoothConnectTest, AnAccessoryThatAnnouncesAProtocolIsTheTester) {
    source_->appear(accessory(1, {"a", "b"}));
    start();
    EXPECT_EQ(connect_.measuredevice()->connectionId, 1U);
    EXPECT_EQ(connect_.strprotocol(), "a");
}

TEST_F(BluetoothConnectTest, AnAccessoryThatAnnouncesNoProtocolIsNoTester) {
    source_->appear(accessory(1, {}));
    start();
    EXPECT_EQ(connect_.measuredevice(), nullptr);
    EXPECT_EQ(log_, Log{"state 0"});
}

TEST_F(BluetoothConnectTest, AccessoriesWithoutAProtocolAreNoTester) {
    source_->appear(accessory(1, {}));
    start();
    EXPECT_EQ(log_, Log{"state 0"});
    EXPECT_EQ(connect_.measuredevice(), nullptr);
}

TEST_F(BluetoothConnectTest, AConnectEventPublishesOneTwiceAndOpensTheSession) {
    start();
    log_.clear();
    source_->appear(accessory(1));
    EXPECT_EQ(log_, (Log{"state 1", "state 1"}));
    EXPECT_EQ(source_->openedProtocols.size(), 1U);
    EXPECT_TRUE(BluetoothConnect::bConnectNotified);
    EXPECT_FALSE(BluetoothConnect::bDisconnectNotified);
}

TEST_F(BluetoothConnectTest, AConnectEventWhileConnectNotifiedIsIgnored) {
    start();
    source_->appear(accessory(1));
    log_.clear();
    NotificationCenter::defaultCenter().post({platform::kAccessoryDidConnect});
    EXPECT_EQ(log_, Log{});
    EXPECT_EQ(connect_.measuredevice()->connectionId, 1U);
}

TEST_F(BluetoothConnectTest, AConnectEventOfAForeignAccessoryClosesTheLatchToo) {
    start();
    source_->appear(accessory(1, {}));
    log_.clear();
    NotificationCenter::defaultCenter().post({platform::kAccessoryDidConnect});
    EXPECT_EQ(log_, Log{});
    EXPECT_EQ(connect_.measuredevice(), nullptr);
}

TEST_F(BluetoothConnectTest, AnEventWithAnObjectOfAnotherTypeDoesNoHarm) {
    startConnected();
    NotificationCenter& center = NotificationCenter::defaultCenter();
    center.post({EADSessionDataReceivedNotification, std::string("no controller")});
    center.post({EADSessionDataReceivedNotification});
    EXPECT_TRUE(keeper_.records.empty());
    center.post(
        {platform::kAccessoryDidDisconnect, {}, {{platform::kAccessoryKey, std::string("no accessory")}}});
    EXPECT_EQ(log_, Log{"state 0"});
    EXPECT_EQ(connect_.measuredevice(), tester_);
}

TEST_F(BluetoothConnectTest, TheTestersDisconnectPublishesZeroWaitsASecondAndClosesTheSession) {
    startConnected();
    source_->disappear(tester_);
    EXPECT_EQ(log_, (Log{"state 0", "wait 1000"}));
    EXPECT_EQ(storedState(), 0);
    EXPECT_EQ(connect_.measuredevice(), nullptr);
    EXPECT_EQ(source_->line.channel, nullptr);
    EXPECT_FALSE(BluetoothConnect::bBlueConnected);
    EXPECT_TRUE(BluetoothConnect::bDisconnectNotified);
    EXPECT_FALSE(BluetoothConnect::bConnectNotified);
}

TEST_F(BluetoothConnectTest, TheSessionIsStillOpenDuringTheWait) {
    bool openDuringWait = false;
    BluetoothConnect connect(manager_, defaults_, [&](std::chrono::milliseconds) {
        openDuringWait = source_->line.channel != nullptr;
    });
    tester_ = accessory(1);
    source_->appear(tester_);
    connect.initBlue();
    source_->disappear(tester_);
    EXPECT_TRUE(openDuringWait);
}

TEST_F(BluetoothConnectTest, AForeignDisconnectPublishesZeroAndKeepsTheSessionOpen) {
    const AccessoryPtr foreign = accessory(2);
    startConnected();
    NotificationCenter::defaultCenter().post(
        {platform::kAccessoryDidDisconnect, {}, {{platform::kAccessoryKey, foreign}}});
    EXPECT_EQ(log_, Log{"state 0"});
    EXPECT_NE(source_->line.channel, nullptr);
    EXPECT_EQ(connect_.measuredevice(), tester_);
    EXPECT_TRUE(BluetoothConnect::bBlueConnected);
}

TEST_F(BluetoothConnectTest, AfterAForeignDisconnectTheTestersOwnIsIgnoredUntilAConnectWasHandled) {
    const AccessoryPtr foreign = accessory(2);
    startConnected();
    NotificationCenter::defaultCenter().post(
        {platform::kAccessoryDidDisconnect, {}, {{platform::kAccessoryKey, foreign}}});
    log_.clear();
    source_->disappear(tester_);
    EXPECT_EQ(log_, Log{});
    EXPECT_NE(source_->line.channel, nullptr);
    const AccessoryPtr next = accessory(3);
    source_->appear(next);
    EXPECT_EQ(log_, (Log{"state 1", "state 1"}));
    log_.clear();
    source_->disappear(next);
    EXPECT_EQ(log_, (Log{"state 0", "wait 1000"}));
}

TEST_F(BluetoothConnectTest, EachHandledEventLetsTheOtherThroughAgain) {
    start();
    for (std::uint32_t id = 1; id <= 3; ++id) {
        log_.clear();
        const AccessoryPtr tester = accessory(id);
        source_->appear(tester);
        source_->disappear(tester);
        EXPECT_EQ(log_, (Log{"state 1", "state 1", "state 0", "wait 1000"})) << id;
    }
}

TEST_F(BluetoothConnectTest, ADisconnectWithoutATesterClearsTheMirrorWithoutWaiting) {
    start();
    log_.clear();
    BluetoothConnect::bBlueConnected = true;
    connect_.deviceDidDisconnect({platform::kAccessoryDidDisconnect, {}, {}});
    EXPECT_EQ(log_, Log{"state 0"});
    EXPECT_FALSE(BluetoothConnect::bBlueConnected);
}

TEST_F(BluetoothConnectTest, EventsAreLoggedEvenWhenTheyAreIgnored) {
    start();
    source_->appear(accessory(1));
    NotificationCenter::defaultCenter().post({platform::kAccessoryDidConnect});
    const auto& lines = testing::logLines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "info kestrix.link: ====连接===="), 2);
    NotificationCenter::defaultCenter().post({platform::kAccessoryDidDisconnect});
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "info kestrix.link: ====非连接===="), 1);
}

TEST_F(BluetoothConnectTest, ARefusedSessionStillPublishesOne) {
    const AccessoryPtr gone = accessory(1);
    gone->opener = nullptr;
    source_->appear(gone);
    testing::expectWarning("creating session failed");
    start();
    EXPECT_EQ(log_, Log{"state 1"});
}

TEST_F(BluetoothConnectTest, ViewStateTwoIsStoredAndNotPosted) {
    connect_.viewState(2);
    EXPECT_EQ(storedState(), 2);
    EXPECT_EQ(log_, Log{});
    connect_.viewState(-1);
    EXPECT_EQ(storedState(), -1);
    EXPECT_EQ(log_, Log{});
}

TEST_F(BluetoothConnectTest, AllReleaseUnsubscribesAndClosesTheSession) {
    startConnected();
    connect_.allRelease();
    EXPECT_EQ(source_->line.channel, nullptr);
    source_->disappear(tester_);
    source_->appear(accessory(2));
    EXPECT_EQ(log_, Log{});
}

TEST_F(BluetoothConnectTest, TheNumberUtilitiesAnswer) {
    EXPECT_EQ(connect_.decimalTOBinary(0), "");
    EXPECT_EQ(connect_.decimalTOBinary(5), "101");
    EXPECT_EQ(connect_.two_ten(1011), 11);
    EXPECT_EQ(connect_.toDecimalSystemWithBinarySystem(u"1111"), 15);
}

}  // namespace
}  // namespace kestrix::link
