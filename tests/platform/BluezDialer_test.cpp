// One device: from a dial to its line.
#include "platform/BluezDialer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "platform/DialingSource.h"
#include "tests/platform/BluezDialerFixture.h"

namespace kestrix::platform {
namespace {

using testing::FakeBluez;
using ::testing::HasSubstr;
using testing::spinUntil;
using Way = FakeBluez::Way;

class NobodyLooks final : public AccessorySourceObserver {
    void appeared(const AccessoryPtr&) override {}
    void disappeared(const AccessoryPtr&) override {}
};

TEST_F(BluezDialerTest, BytesGoBothWaysOverTheLineThatTheServiceHandsOver) {
    startBluez();
    bluez_->addDevice({});
    ASSERT_TRUE(dial()) << problem();
    EXPECT_EQ(outcome_->peerName, "Tester 1");
    EXPECT_EQ(bluez_->registrations, 1);
    EXPECT_TRUE(spinUntil([&] { return bluez_->handOverAnswer == "taken"; }));
    bluez_->send(kOne, "hello");
    EXPECT_TRUE(spinUntil([&] { return outcome_->channel->bytesAvailable() == 5; }));
    EXPECT_EQ(readAll(), "hello");
    EXPECT_EQ(outcome_->channel->write(std::vector<std::uint8_t>{'o', 'k'}), 2);
    std::string received;
    EXPECT_TRUE(spinUntil([&] { return (received += bluez_->receive(kOne)) == "ok"; }));
}

TEST_F(BluezDialerTest, ANameFromTheAirIsPrintable) {
    startBluez();
    bluez_->addDevice({kOne, "Tes\nter\x1b[2J"});
    ASSERT_TRUE(dial()) << problem();
    EXPECT_EQ(outcome_->peerName, "Tes\ufffdter\ufffd[2J");
}

// The service keeps a copy of the descriptor, which would keep the line up.
TEST_F(BluezDialerTest, AChannelThatIsClosedTakesTheLineDown) {
    startBluez();
    bluez_->addDevice({});
    ASSERT_TRUE(dial()) << problem();
    EXPECT_FALSE(bluez_->lineHasEnded(kOne));
    outcome_->channel->close();
    EXPECT_TRUE(bluez_->lineHasEnded(kOne));
}

TEST_F(BluezDialerTest, AServiceThatAsksForTheEndGetsIt) {
    startBluez();
    bluez_->addDevice({});
    ASSERT_TRUE(dial()) << problem();
    std::string closed;
    outcome_->channel->events.closed = [&](const std::string& why) { closed = why; };
    bluez_->askToDisconnect(kTwo);
    bluez_->askToDisconnect(kOne);
    EXPECT_TRUE(spinUntil([&] { return !closed.empty(); }));
    EXPECT_TRUE(bluez_->lineHasEnded(kOne));
}

TEST_F(BluezDialerTest, AfterTheTesterHasEndedTheConnectionTheNextDialConnectsAgain) {
    startBluez();
    bluez_->addDevice({});
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(dial()) << problem();
        std::string closed;
        outcome_->channel->events.closed = [&](const std::string& why) { closed = why; };
        bluez_->endLine(kOne);
        ASSERT_TRUE(spinUntil([&] { return !closed.empty(); }));
        EXPECT_EQ(closed, "the tester has ended the connection");
    }
    EXPECT_EQ(bluez_->registrations, 1);
    EXPECT_EQ(bluez_->attempts.size(), 3U);
}

TEST_F(BluezDialerTest, ALineThatComesBehindTheSuccessIsTaken) {
    startBluez();
    bluez_->addDevice({});
    bluez_->behave(kOne, {Way::GoesElsewhere});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return scheduler_.pending() == 2; }));
    bluez_->handOver(kOne);
    ASSERT_TRUE(answered());
    EXPECT_NE(outcome_->channel, nullptr);
    bluez_->behave(kOne, {});
    bluez_->endLine(kOne);
    EXPECT_TRUE(dial()) << problem();
    EXPECT_EQ(bluez_->attempts.size(), 2U);
}

TEST_F(BluezDialerTest, ALineThatComesTooLateIsClosed) {
    startBluez();
    bluez_->addDevice({});
    bluez_->behave(kOne, {Way::GoesElsewhere});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return scheduler_.pending() == 2; }));
    scheduler_.advance(BluezProfile::kLineLimit);
    ASSERT_TRUE(answered());
    bluez_->handOver(kOne);
    EXPECT_TRUE(spinUntil([&] { return bluez_->handOverAnswer == "org.bluez.Error.Rejected"; }));
}

TEST_F(BluezDialerTest, ALineThatNobodyAskedForIsClosedAndDisturbsNone) {
    startBluez();
    bluez_->addDevice({});
    bluez_->addDevice({kTwo, "Other"});
    ASSERT_TRUE(dial()) << problem();
    bluez_->handOver(kTwo);
    EXPECT_TRUE(spinUntil([&] { return bluez_->handOverAnswer == "org.bluez.Error.Rejected"; }));
    bluez_->send(kOne, "still here");
    EXPECT_TRUE(spinUntil([&] { return outcome_->channel->bytesAvailable() == 10; }));
}

TEST_F(BluezDialerTest, AConnectionWithoutADescriptorIsNone) {
    startBluez();
    bluez_->addDevice({kOne, "T"});
    bluez_->behave(kOne, {Way::WithoutDescriptor});
    EXPECT_EQ(failedDial(),
              "T: it could not be connected (br-connection-aborted-by-local): switch it off and on again");
    EXPECT_EQ(bluez_->handOverAnswer, "org.freedesktop.DBus.Error.InvalidArgs");
    bluez_->behave(kOne, {});
    EXPECT_TRUE(dial()) << problem();
}

// Anybody on the bus could hand over a made-up tester.
TEST_F(BluezDialerTest, ALineFromAnotherProgramIsRefused) {
    startBluez();
    bluez_->addDevice({});
    bluez_->behave(kOne, {Way::IsSilent});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return !bluez_->attempts.empty(); }));
    FakeBluez liar(bus_.address(), nullptr);
    liar.addDevice({});
    liar.pretendRegistered(*bluez_);
    liar.handOver(kOne);
    EXPECT_TRUE(spinUntil([&] { return liar.handOverAnswer == "org.bluez.Error.Rejected"; }));
    EXPECT_FALSE(outcome_.has_value());
    bluez_->complete(kOne, {});
    EXPECT_TRUE(answered());
    EXPECT_NE(outcome_->channel, nullptr) << problem();
}

TEST_F(BluezDialerTest, ADialThatIsCancelledAnswersNoMoreAndItsLineIsClosed) {
    startBluez();
    bluez_->addDevice({});
    bluez_->behave(kOne, {Way::IsSilent});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return !bluez_->attempts.empty(); }));
    dialer_->cancel();
    bluez_->complete(kOne, {});
    EXPECT_TRUE(spinUntil([&] { return bluez_->handOverAnswer == "org.bluez.Error.Rejected"; }));
    EXPECT_FALSE(outcome_.has_value());
    bluez_->behave(kOne, {});
    EXPECT_TRUE(dial()) << problem();
}

TEST_F(BluezDialerTest, ADeviceThatDoesNotAnswerIsGivenUpAndTheNextDialJoinsTheAttempt) {
    startBluez();
    bluez_->addDevice({kOne, "T"});
    bluez_->behave(kOne, {Way::IsSilent});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return !bluez_->attempts.empty(); }));
    EXPECT_LT(BluezDialer::kDeviceLimit, dialer_->timeLimit());
    scheduler_.advance(BluezDialer::kDeviceLimit);
    ASSERT_TRUE(outcome_.has_value());
    EXPECT_EQ(problem(), "T: no answer within 8 s: switch it on and bring it near");
    EXPECT_EQ(outcome_->step, FailedStep::NoAnswer);
    startDial();
    bluez_->complete(kOne, {});
    EXPECT_TRUE(answered());
    EXPECT_NE(outcome_->channel, nullptr) << problem();
    EXPECT_EQ(bluez_->attempts.size(), 1U);
}

TEST_F(BluezDialerTest, AServiceThatStopsDuringADialIsToldAndDialledAgainWhenItIsBack) {
    startBluez();
    bluez_->addDevice({});
    bluez_->behave(kOne, {Way::IsSilent});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return !bluez_->attempts.empty(); }));
    bluez_->leave();
    ASSERT_TRUE(answered());
    EXPECT_EQ(outcome_->step, FailedStep::Adapter);
    EXPECT_THAT(problem(), HasSubstr("the Bluetooth service "));  // stopped, or does not run by now
    EXPECT_EQ(failedDial(), "the Bluetooth service does not run: start it with 'systemctl start bluetooth'");
    back_ = 0;
    bluez_->behave(kOne, {});
    bluez_->come();
    EXPECT_TRUE(spinUntil([&] { return back_ > 0; }));
    EXPECT_TRUE(dial()) << problem();
    EXPECT_EQ(bluez_->registrations, 2);
}

TEST_F(BluezDialerTest, AServiceThatStopsAndComesLeavesAnOpenLineAlone) {
    startBluez();
    bluez_->addDevice({});
    ASSERT_TRUE(dial()) << problem();
    bluez_->leave();
    bluez_->send(kOne, "without");
    EXPECT_TRUE(spinUntil([&] { return outcome_->channel->bytesAvailable() == 7; }));
    bluez_->come();
    EXPECT_TRUE(spinUntil([&] { return bluez_->registrations == 2; }));
    bluez_->send(kOne, "with");
    EXPECT_TRUE(spinUntil([&] { return outcome_->channel->bytesAvailable() == 11; }));
}

TEST_F(BluezDialerTest, TwoDialsOfTwoDevicesGoOnAtOnce) {
    startBluez();
    bluez_->addDevice({});
    bluez_->addDevice({kTwo, "Tester 2"});
    bluez_->behave(kOne, {Way::IsSilent});
    bluez_->behave(kTwo, {Way::IsSilent});
    startDial();
    const auto other = makeDialer(kTwo);
    std::optional<Dialer::Outcome> second;
    other->dial([&](Dialer::Outcome outcome) { second = std::move(outcome); });
    ASSERT_TRUE(spinUntil([&] { return bluez_->attempts.size() == 2; }));
    bluez_->complete(kTwo, {});
    ASSERT_TRUE(spinUntil([&] { return second.has_value(); }));
    EXPECT_EQ(second->peerName, "Tester 2");
    EXPECT_FALSE(outcome_.has_value());
    bluez_->complete(kOne, {});
    ASSERT_TRUE(answered());
    EXPECT_EQ(outcome_->peerName, "Tester 1");
    EXPECT_EQ(bluez_->registrations, 1);
    bluez_->send(kOne, "1");
    bluez_->send(kTwo, "22");
    EXPECT_TRUE(spinUntil(
        [&] { return outcome_->channel->bytesAvailable() == 1 && second->channel->bytesAvailable() == 2; }));
}

TEST_F(BluezDialerTest, WhileAnotherProgramHasTheProfileItIsBusyAndThenItGetsThrough) {
    startBluez();
    bluez_->addDevice({});
    // Each has a connection to the bus of its own, as two programs have.
    testing::ManualScheduler elsewhere;
    auto first = std::make_unique<BluezDialer>(kOne, LastUsed{}, BluezProfile::shared(elsewhere));
    std::optional<Dialer::Outcome> firsts;
    first->dial([&](Dialer::Outcome outcome) { firsts = std::move(outcome); });
    ASSERT_TRUE(spinUntil([&] { return firsts.has_value(); }));
    ASSERT_NE(firsts->channel, nullptr) << firsts->problem;
    const std::string owner = bluez_->profileOwner();

    DialingSource source("bluetooth:", std::move(dialer_), makeAnyByteListener, scheduler_);
    NobodyLooks nobody;
    source.start(nobody);
    const auto retryUntil = [&](const std::function<bool()>& isSo) {
        return spinUntil([&] {
            if (source.state() == SearchState::Waiting) scheduler_.advance(DialingSource::kLastRetry);
            return isSo();
        });
    };
    ASSERT_TRUE(retryUntil([&] { return bluez_->refusedRegistrations == 3; }));
    EXPECT_EQ(source.problem(),
              "Tester 1: another program on this computer uses the tester's profile: end that program");
    EXPECT_EQ(source.failedStep(), FailedStep::Busy);
    EXPECT_EQ(bluez_->profileOwner(), owner);

    firsts.reset();
    first.reset();
    bluez_->greet(kOne, "a frame");
    EXPECT_TRUE(retryUntil([&] { return source.state() == SearchState::Present; })) << source.problem();
    EXPECT_NE(bluez_->profileOwner(), owner);
    source.stop();
}

TEST_F(BluezDialerTest, WhatASearchHearsOfADeviceThatSaysNoIsNoReasonToDialIt) {
    startBluez();
    bluez_->addDevice({kOne, "T"});
    bluez_->behave(kOne, {Way::Fails, "org.bluez.Error.Failed", "br-connection-refused"});
    EXPECT_EQ(failedDial(), "T: it refused the connection: switch it off and on again");
    const auto service = BluezService::shared(scheduler_);
    back_ = 0;
    int heard = 0;
    const auto observer = service->observe([&](const BluezService::News& news) { heard += news.wasHeard; });
    for (int times = 1; times <= 5; ++times) {
        bluez_->tellStrength(kOne);
        ASSERT_TRUE(spinUntil([&] { return heard == times; }));
        scheduler_.advance(BluezDialer::kHeardPause);
    }
    EXPECT_EQ(back_, 0);
}

TEST_F(BluezDialerTest, WhatSaysThatTheDeviceIsThereIsToldAndNothingElse) {
    startBluez();
    bluez_->addDevice({});
    bluez_->addDevice({kTwo, "Other"});
    bluez_->behave(kOne, {Way::Fails});
    EXPECT_EQ(failedDial(), "Tester 1: switched off, asleep or out of reach: switch it on and bring it near");
    const auto service = BluezService::shared(scheduler_);
    int names = 0;
    const auto stirs = [&](const std::function<void()>& stir) {
        back_ = 0;
        stir();
        // What was said before the new name has come when that has.
        const std::string name = "Name " + std::to_string(++names);
        bluez_->setAlias(kTwo, name);
        EXPECT_TRUE(spinUntil([&] {
            const auto& devices = service->objects().devices;
            return std::any_of(devices.begin(), devices.end(),
                               [&](const auto& device) { return device.second.name == name; });
        }));
        return back_ > 0;
    };
    EXPECT_TRUE(stirs([&] { bluez_->set(kOne, "Connected", true); }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Connected", false); }));
    EXPECT_TRUE(stirs([&] { bluez_->tellStrength(kOne); }));
    scheduler_.advance(BluezDialer::kHeardPause);
    EXPECT_FALSE(stirs([&] { bluez_->tellStrength(kTwo); }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Paired", false); }));
    EXPECT_FALSE(stirs([&] { bluez_->tellStrength(kOne); }));
    EXPECT_TRUE(stirs([&] { bluez_->set(kOne, "Paired", true); }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Blocked", true); }));
    EXPECT_TRUE(stirs([&] { bluez_->set(kOne, "Blocked", false); }));
    // A search hears it again and again.
    EXPECT_TRUE(stirs([&] { bluez_->tellStrength(kOne); }));
    scheduler_.advance(BluezDialer::kHeardPause - std::chrono::milliseconds(1));
    EXPECT_FALSE(stirs([&] { bluez_->tellStrength(kOne); }));
    EXPECT_TRUE(stirs([&] { bluez_->set(kOne, "Connected", true); }));
    bluez_->set(kOne, "Connected", false);
    scheduler_.advance(std::chrono::milliseconds(1));
    EXPECT_TRUE(stirs([&] { bluez_->tellStrength(kOne); }));
    // A device that this program is connecting stirs because of that.
    bluez_->behave(kOne, {Way::IsSilent});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return bluez_->attempts.size() == 2; }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Connected", true); }));
}

}  // namespace
}  // namespace kestrix::platform
