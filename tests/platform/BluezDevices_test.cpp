// Several paired devices with a serial port: which is tried when, until the tester among them is heard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "platform/BluezDialer.h"
#include "platform/DialingSource.h"
#include "tests/platform/BluezFixture.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using testing::FakeBluez;
using testing::spinUntil;
using Way = FakeBluez::Way;

// BlueZ's page timeout, what a device that is there takes until its port is open, and the longest that one
// which comes back during a page takes to be found by it (two rounds of the page's frequencies).
constexpr milliseconds kPageTimeout{5120};
constexpr milliseconds kConnectTime{1500};
constexpr milliseconds kFoundByPage{2560};

class BluezDevices : public BluezTest, public AccessorySourceObserver {
  protected:
    void SetUp() override { startBluez(); }
    ~BluezDevices() override {
        if (source_) source_->stop();
    }
    void appeared(const AccessoryPtr& accessory) override { present_ = accessory->name; }
    void disappeared(const AccessoryPtr&) override { present_.clear(); }

    void start(const std::string& lastUsed = {}) {
        lastUsed_ = lastUsed.empty() ? "" : "bluetooth:" + lastUsed;
        auto dialer = std::make_unique<BluezDialer>(
            "", LastUsed{[this] { return lastUsed_; }, [this](const std::string& uri) { lastUsed_ = uri; }},
            BluezProfile::shared(scheduler_));
        source_ =
            std::make_unique<DialingSource>("bluetooth:", std::move(dialer), makeAnyByteListener, scheduler_);
        source_->start(*this);
        pass(milliseconds(0));
    }
    // Everything on its way over the bus has arrived, and what follows from it.
    void settle() {
        SystemBus& bus = BluezService::shared(scheduler_)->bus();
        for (int i = 0; i < 4; ++i) {
            bool back = false;
            const auto call = bus.methodCall("org.bluez", "/", "kestrix.Test", "Fence");
            const auto reply = bus.call(call, [&](sd_bus_message*) { back = true; });
            ASSERT_TRUE(spinUntil([&] { return back; }));
        }
    }
    void pass(milliseconds time) {
        constexpr milliseconds kStep{100};
        scheduler_.runDue();
        settle();
        for (milliseconds left = time; left > milliseconds(0); left -= kStep) {
            scheduler_.advance(std::min(left, kStep));
            settle();
        }
    }
    // From now on attempts take their time, which is the adapter's as well: it pages one device after the
    // other.
    void followReach() {
        bluez_->attempted = [this](const std::string& address) {
            bluez_->behave(address, {Way::IsSilent});
            answerIn(address, inReach_.contains(address) ? kConnectTime : kPageTimeout);
        };
    }
    void answerIn(const std::string& address, milliseconds time) {
        due_ = scheduler_.now() + time;
        answer_ = scheduler_.callAfter(time, [this, address] {
            const bool there = inReach_.contains(address) && due_ >= comesToBeFound_;
            if (there) bluez_->greet(address, "a frame");
            bluez_->complete(address, {there ? Way::Connects : Way::Fails});
        });
    }
    void comeBack(const std::string& address) {
        inReach_ = {address};
        comesToBeFound_ = scheduler_.now() + kFoundByPage;
    }

    std::string lastUsed_;
    std::unique_ptr<DialingSource> source_;
    std::string present_;
    std::set<std::string> inReach_;
    Scheduler::Timer answer_;
    Scheduler::TimePoint due_{};
    Scheduler::TimePoint comesToBeFound_{};
};

TEST_F(BluezDevices, TheOneThatIsHeardIsTheTesterAndIsRemembered) {
    bluez_->addDevice({kOne, "Printer"});
    bluez_->addDevice({kTwo, "Tester"});
    bluez_->greet(kTwo, "a frame");
    start();
    EXPECT_THAT(bluez_->attempts, ElementsAre(kOne));  // it connects, and is silent
    EXPECT_EQ(source_->state(), SearchState::Listening);
    EXPECT_EQ(source_->failedStep(), FailedStep::None);
    pass(DialingSource::kSilenceLimit + milliseconds(100));
    EXPECT_TRUE(bluez_->lineHasEnded(kOne));
    pass(DialingSource::kFirstRetry);
    EXPECT_THAT(bluez_->attempts, ElementsAre(kOne, kTwo));
    EXPECT_TRUE(spinUntil([&] { return present_ == "Tester"; }));
    EXPECT_EQ(lastUsed_, "bluetooth:AA:BB:CC:00:00:02");
}

TEST_F(BluezDevices, TheLastUsedIsTriedFirst) {
    for (const char* address : {kOne, kTwo, kThree}) {
        bluez_->addDevice({address, address});
        bluez_->greet(address, "a frame");
    }
    start(kTwo);
    EXPECT_THAT(bluez_->attempts, ElementsAre(kTwo));
    EXPECT_TRUE(spinUntil([&] { return present_ == kTwo; }));
}

TEST_F(BluezDevices, WhileTheLastUsedIsAwayTheOthersAreTriedInTurnBesideIt) {
    for (const char* address : {kOne, kTwo, kThree}) {
        bluez_->addDevice({address, address});
        bluez_->behave(address, {Way::Fails});
    }
    start(kTwo);
    for (int dials = 0; dials < 3; ++dials) {
        const std::size_t before = bluez_->attempts.size();
        while (bluez_->attempts.size() == before) pass(milliseconds(500));
    }
    EXPECT_THAT(bluez_->attempts, ElementsAre(kTwo, kOne, kTwo, kThree, kTwo, kOne, kTwo, kThree));
}

TEST_F(BluezDevices, AnotherOneThatSaysNothingIsGivenUpForTheLastUsed) {
    bluez_->addDevice({kOne, "Mute"});
    bluez_->addDevice({kTwo, "Tester"});
    bluez_->behave(kOne, {Way::IsSilent});
    bluez_->behave(kTwo, {Way::Fails});
    start(kTwo);
    pass(BluezDialer::kOtherLimit);
    EXPECT_THAT(bluez_->attempts, ElementsAre(kTwo, kOne));
    EXPECT_EQ(source_->problem(),
              "Tester: switched off, asleep or out of reach: switch it on and bring it near; Mute: no answer "
              "within 6 s: switch it on and bring it near");
    pass(DialingSource::kFirstRetry);
    EXPECT_THAT(bluez_->attempts, ElementsAre(kTwo, kOne, kTwo));
}

TEST_F(BluezDevices, AsLongAsNoneIsKnownAllAreTriedInTurn) {
    for (const char* address : {kOne, kTwo, kThree}) {
        bluez_->addDevice({address, address});
        bluez_->behave(address, {Way::Fails});
    }
    start();
    for (int dials = 0; dials < 2; ++dials) {
        const std::size_t before = bluez_->attempts.size();
        while (bluez_->attempts.size() == before) pass(milliseconds(500));
    }
    EXPECT_THAT(bluez_->attempts, ElementsAre(kOne, kTwo, kThree, kOne, kTwo, kThree));
}

TEST_F(BluezDevices, APrinterIsLeftAloneForAMinuteWhileTheTesterIsAway) {
    bluez_->addDevice({kOne, "Printer"});
    bluez_->addDevice({kTwo, "Tester"});
    bluez_->behave(kTwo, {Way::Fails});
    start(kTwo);
    pass(milliseconds(55'000));
    EXPECT_EQ(std::count(bluez_->attempts.begin(), bluez_->attempts.end(), kOne), 1);
    EXPECT_GT(std::count(bluez_->attempts.begin(), bluez_->attempts.end(), kTwo), 5);
    EXPECT_EQ(source_->problem(),
              "Tester: switched off, asleep or out of reach: switch it on and bring it near; Printer: "
              "connected, but nothing of a tester came: switch the tester on, or choose another device");
    EXPECT_EQ(source_->failedStep(), FailedStep::NoAnswer);
    pass(milliseconds(20'000));
    EXPECT_EQ(std::count(bluez_->attempts.begin(), bluez_->attempts.end(), kOne), 2);
}

TEST_F(BluezDevices, ALastUsedOneThatIsConnectedButSilentLeavesTheOthersTheirTurn) {
    bluez_->addDevice({kOne, "Silent"});
    bluez_->addDevice({kTwo, "Tester"});
    start(kOne);
    pass(milliseconds(8000));
    EXPECT_THAT(bluez_->attempts, ::testing::ElementsAre(kOne, kTwo, kOne));
    bluez_->greet(kTwo, "a frame");
    pass(milliseconds(70'000));
    EXPECT_EQ(present_, "Tester");
}

TEST_F(BluezDevices, OneThatIsSilentAndAloneIsTriedAgain) {
    bluez_->addDevice({kOne, "Quiet"});
    start();
    pass(milliseconds(12'000));
    EXPECT_GE(bluez_->attempts.size(), 3U);
}

TEST_F(BluezDevices, WhatIsNoCandidateIsNeverDialled) {
    bluez_->addDevice({kOne, "Headset", true, true, false, {testing::kHeadsetUuid}});
    bluez_->addDevice({kTwo, "Stranger", false});
    bluez_->addDevice({kThree, "Blocked", true, false, true});
    start();
    pass(milliseconds(30'000));
    EXPECT_THAT(bluez_->attempts, ElementsAre());
    EXPECT_EQ(source_->problem(),
              "Blocked: it is blocked on this computer: 'bluetoothctl unblock AA:BB:CC:00:00:03' lets it in");
    EXPECT_EQ(source_->failedStep(), FailedStep::Rights);
    bluez_->removeDevice(kThree);
    pass(milliseconds(10'000));
    EXPECT_EQ(source_->problem(), "no paired device offers a serial port: switch the tester on and pair it");
    EXPECT_EQ(source_->failedStep(), FailedStep::Pairing);
}

TEST_F(BluezDevices, AllThatAreNotFoundAreNamedInOneBoundedLine) {
    for (int i = 1; i <= 9; ++i) {
        const std::string address = "AA:BB:CC:00:00:0" + std::to_string(i);
        bluez_->addDevice({address, "Tester " + std::to_string(i) + std::string(200, 'x')});
        bluez_->behave(address, {Way::Fails, "org.bluez.Error.Failed", "br-connection-refused"});
    }
    start();
    pass(milliseconds(30'000));
    const std::string line = source_->problem();
    EXPECT_LE(line.size(), 600U);
    for (int i = 1; i <= 4; ++i)
        EXPECT_NE(line.find("Tester " + std::to_string(i)), std::string::npos) << line;
    EXPECT_NE(line.find("; and 5 more"), std::string::npos) << line;
    EXPECT_EQ(source_->failedStep(), FailedStep::Refused);
}

TEST_F(BluezDevices, AnAdapterThatIsSwitchedOffAndOnBringsTheTesterBackAtOnce) {
    bluez_->addDevice({kOne, "Tester"});
    bluez_->greet(kOne, "a frame");
    start();
    ASSERT_TRUE(spinUntil([&] { return present_ == "Tester"; }));
    bluez_->setPowered(false);
    ASSERT_TRUE(spinUntil([&] { return present_.empty(); }));
    pass(milliseconds(60'000));
    EXPECT_EQ(source_->problem(), "Bluetooth is switched off: switch it on");
    EXPECT_EQ(source_->failedStep(), FailedStep::Adapter);
    bluez_->setPowered(true);
    EXPECT_TRUE(spinUntil([&] { return present_ == "Tester"; }));  // the time stands still
}

TEST_F(BluezDevices, AServiceThatIsStartedAgainBringsTheTesterBackAtOnce) {
    bluez_->addDevice({kOne, "Tester"});
    bluez_->greet(kOne, "a frame");
    bluez_->leave();
    start();
    ASSERT_TRUE(spinUntil([&] { return source_->state() == SearchState::Waiting; }));
    EXPECT_EQ(source_->failedStep(), FailedStep::Adapter);
    bluez_->come();
    EXPECT_TRUE(spinUntil([&] { return present_ == "Tester"; }));
}

// The worst moments to return are those right after it was tried: half a minute of them, with two more
// devices that are out of reach and take the adapter's time.
TEST_F(BluezDevices, TheTesterIsBackWithinTenSecondsOfItsReturnWhateverElseIsOutOfReach) {
    for (const char* address : {kOne, kTwo, kThree}) bluez_->addDevice({address, address});
    followReach();
    for (const char* address : {kOne, kTwo, kThree}) bluez_->behave(address, {Way::IsSilent});
    start(kTwo);
    milliseconds longest{0};
    for (milliseconds away{20'000}; away < milliseconds(33'000); away += milliseconds(500)) {
        pass(away);
        ASSERT_EQ(present_, "");
        comeBack(kTwo);
        const auto back = scheduler_.now();
        while (present_.empty()) {
            pass(milliseconds(100));
            ASSERT_LE(scheduler_.now() - back, milliseconds(10'000)) << away.count();
        }
        longest = std::max(longest, std::chrono::duration_cast<milliseconds>(scheduler_.now() - back));
        inReach_.clear();
        bluez_->endLine(kTwo);
        ASSERT_TRUE(spinUntil([&] { return present_.empty(); }));
    }
    // The test has met moments at which both others were in its way.
    EXPECT_GE(longest, kPageTimeout + kConnectTime);
    RecordProperty("longest", static_cast<int>(longest.count()));
}

}  // namespace
}  // namespace kestrix::platform
