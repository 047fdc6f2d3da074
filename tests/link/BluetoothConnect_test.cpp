#include "link/BluetoothConnect.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <any>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"
#include "tests/support/FakeSource.h"
#include "tests/support/FrameBuilder.h"
#include "tests/support/LiteralExtraction.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::link {
namespace {

using platform::Accessory;
using platform::AccessoryPtr;
using platform::Notification;
using platform::NotificationCenter;
using protocol::MeterReading;
using testing::FakeSource;
using testing::FrameBuilder;
using Bytes = std::vector<std::uint8_t>;

class RecordKeeper final : public BusinessCommunicationDelegate {
  public:
    void didReceive3820Data(const MeterReading& record, bool success) override {
        records.push_back(record);
        successes.push_back(success);
    }
    std::vector<MeterReading> records;
    std::vector<bool> successes;
};

// A frame that can be told from others by its reading.
FrameBuilder::Bytes frameOf(std::uint16_t magnitude) {
    return FrameBuilder('1').reading(1, magnitude, 0x01).bytes();
}

Bytes joined(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
    return all;
}

Bytes bytesOf(const FrameBuilder::Bytes& frame, std::size_t from = 0, std::size_t to = FrameBuilder::kSize) {
    return {frame.begin() + static_cast<std::ptrdiff_t>(from),
            frame.begin() + static_cast<std::ptrdiff_t>(to)};
}

class BluetoothConnectTest : public ::testing::Test {
  protected:
    void SetUp() override {
        BluetoothConnect::bConnectNotified = false;
        BluetoothConnect::bDisconnectNotified = false;
        BluetoothConnect::bBlueConnected = false;
        auto source = std::make_unique<FakeSource>();
        source_ = source.get();
        manager_.addSource(std::move(source));
        states_ = NotificationCenter::defaultCenter().addObserver(
            Orvoblueviewnotification, [this](const Notification& event) {
                log_.push_back("state " + std::any_cast<std::string>(event.object));
            });
    }
    void TearDown() override { EADSessionController::sharedController().closeSession(); }

    AccessoryPtr accessory(std::uint32_t id, std::vector<std::string> protocols = {"tester"}) {
        return std::make_shared<Accessory>(
            Accessory{id, "Tester " + std::to_string(id), std::move(protocols), nullptr, source_});
    }
    void start() {
        connect_.initBlue();
        connect_.setDelegate(&keeper_);
    }
    void startConnected() {
        tester_ = accessory(1);
        source_->appear(tester_);
        start();
        log_.clear();
    }
    std::vector<std::string> readings() const {
        std::vector<std::string> texts;
        for (const MeterReading& record : keeper_.records) texts.push_back(record.strValue1);
        return texts;
    }
    int storedState() const { return defaults_.integerForKey(QStringLiteral("bluestate")); }

    using Log = std::vector<std::string>;

    QTemporaryDir folder_;
    platform::UserDefaults defaults_{folder_.filePath(QStringLiteral("kestrix.ini"))};
    platform::AccessoryManager manager_;
    FakeSource* source_ = nullptr;
    AccessoryPtr tester_;
    Log log_;  // link states and waits, in order
    BluetoothConnect connect_{manager_, defaults_, [this](std::chrono::milliseconds duration) {
                                  log_.push_back("wait " + std::to_string(duration.count()));
                              }};
    RecordKeeper keeper_;
    NotificationCenter::Subscription states_;
};

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

TEST_F(BluetoothConnectTest, OneFrameInOneNotificationIsOneRecordWithSuccess) {
    startConnected();
    source_->line.receive(frameOf(123));
    EXPECT_EQ(readings(), Log{"12.3"});
    EXPECT_EQ(keeper_.successes, std::vector<bool>{true});
    EXPECT_EQ(connect_.receiveDataString(), "");
    EXPECT_EQ(connect_.totalBytesRead(), 36U);
}

TEST_F(BluetoothConnectTest, AFrameSplitAfterByteTenComesWithTheSecondPart) {
    startConnected();
    source_->line.receive(bytesOf(frameOf(5), 0, 10));
    EXPECT_EQ(readings(), Log{});
    EXPECT_EQ(connect_.receiveDataString().size(), 20U);
    source_->line.receive(bytesOf(frameOf(5), 10));
    EXPECT_EQ(readings(), Log{"0.5"});
}

TEST_F(BluetoothConnectTest, TwoFramesBackToBackAreTwoRecordsInOrder) {
    startConnected();
    source_->line.receive(joined({bytesOf(frameOf(1)), bytesOf(frameOf(2))}));
    EXPECT_EQ(readings(), (Log{"0.1", "0.2"}));
}

TEST_F(BluetoothConnectTest, AMarkerAcrossTheNotificationBoundaryIsFound) {
    startConnected();
    source_->line.receive(Bytes{0xAA, 0xBB, 0x7E});
    EXPECT_EQ(readings(), Log{});
    EXPECT_EQ(connect_.receiveDataString(), "aabb7e");
    source_->line.receive(bytesOf(frameOf(77), 1));
    EXPECT_EQ(readings(), Log{"7.7"});
    EXPECT_EQ(connect_.receiveDataString(), "");
}

TEST_F(BluetoothConnectTest, APartialFrameFromBeforeADropIsContinuedAfterIt) {
    startConnected();
    source_->line.receive(bytesOf(frameOf(8), 0, 20));
    source_->disappear(tester_);
    source_->appear(accessory(2));
    source_->line.receive(bytesOf(frameOf(8), 20));
    EXPECT_EQ(readings(), Log{"0.8"});
}

TEST_F(BluetoothConnectTest, AFrameThatIsNotUnderstoodIsDeliveredAsTheZeroRecord) {
    startConnected();
    source_->line.receive(FrameBuilder('9').bytes());
    ASSERT_EQ(keeper_.records.size(), 1U);
    EXPECT_EQ(keeper_.records[0], MeterReading{});
    EXPECT_TRUE(keeper_.successes[0]);
}

TEST_F(BluetoothConnectTest, WithoutADelegateTheFrameIsConsumed) {
    startConnected();
    connect_.setDelegate(nullptr);
    source_->line.receive(frameOf(1));
    EXPECT_EQ(connect_.receiveDataString(), "");
    connect_.setDelegate(&keeper_);
    source_->line.receive(frameOf(2));
    EXPECT_EQ(readings(), Log{"0.2"});
}

TEST_F(BluetoothConnectTest, Parse3820DataDecodesOneFrameText) {
    const MeterReading record = connect_.parse3820Data(FrameBuilder('2').setting(1, 1).hexText());
    EXPECT_EQ(record.strfunction, "INSULATION");
    EXPECT_EQ(record.strF1Value, "250v");
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

// Any bytes, in any pieces, give the records of the literal extraction of the whole.
TEST_F(BluetoothConnectTest, AnyBytesInAnyFragmentationGiveTheSameRecords) {
    startConnected();
    std::mt19937 random(5);  // NOLINT(cert-msc51-cpp): the same bytes in every run
    for (int round = 0; round < 200; ++round) {
        Bytes stream;
        for (int piece = 0; piece < 10; ++piece) {
            Bytes frame = bytesOf(frameOf(static_cast<std::uint16_t>(random())));
            if (random() % 3 == 0)
                frame.erase(frame.begin() + static_cast<std::ptrdiff_t>(random() % frame.size()));
            if (random() % 3 == 0) frame[random() % frame.size()] = static_cast<std::uint8_t>(random());
            stream.insert(stream.end(), frame.begin(), frame.end());
        }
        std::string text(connect_.receiveDataString());
        protocol::appendHexText(text, stream);
        testing::LiteralExtraction literal;
        std::vector<MeterReading> expected;
        for (const std::string& frame : literal.receive(text))
            expected.push_back(protocol::KV3820protocal().initFromString(frame).return3820data());

        keeper_.records.clear();
        for (std::size_t at = 0; at < stream.size();) {
            const std::size_t length = std::min<std::size_t>(1 + random() % 90, stream.size() - at);
            source_->line.receive(std::span(stream).subspan(at, length));
            at += length;
        }
        ASSERT_EQ(keeper_.records, expected) << "round " << round;
    }
}

}  // namespace
}  // namespace kestrix::link
