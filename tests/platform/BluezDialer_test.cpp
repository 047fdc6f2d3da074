// One device: from a dial to its line, and every reason for which there is none.
#include "platform/BluezDialer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocalServer>
#include <QTemporaryDir>

#include <optional>

#include "platform/BluezProblems.h"
#include "tests/platform/BluezFixture.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using testing::FakeBluez;
using ::testing::HasSubstr;
using testing::spinUntil;
using ::testing::StartsWith;
using Way = FakeBluez::Way;

constexpr const char* kNoRight =
    "no right to use Bluetooth: the computer's rules do not let this user speak to the Bluetooth service";

class BluezDialerTest : public BluezTest {
  protected:
    std::unique_ptr<BluezDialer> makeDialer(const std::string& address = kOne) {
        auto dialer = std::make_unique<BluezDialer>(address, LastUsed{}, BluezProfile::shared(scheduler_));
        dialer->peerMayBeBack = [this] { ++back_; };
        return dialer;
    }
    void startDial() {
        outcome_.reset();
        dialer_->dial([this](Dialer::Outcome outcome) { outcome_ = std::move(outcome); });
    }
    bool answered() {
        return spinUntil([this] { return outcome_.has_value(); });
    }
    bool dial() {
        startDial();
        return answered() && outcome_->channel != nullptr;
    }
    std::string problem() const { return outcome_ ? outcome_->problem : "no outcome"; }
    // A dial that comes to nothing: why.
    std::string failedDial() {
        EXPECT_FALSE(dial());
        return problem();
    }
    std::string readAll() {
        std::uint8_t buffer[4096];
        std::string all;
        std::ptrdiff_t count = 0;
        while ((count = outcome_->channel->read(buffer, sizeof buffer)) > 0)
            all.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(count));
        return all;
    }
    static void turns() {
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    }

    std::unique_ptr<BluezDialer> dialer_ = makeDialer();
    std::optional<Dialer::Outcome> outcome_;
    int back_ = 0;
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

TEST_F(BluezDialerTest, WhyADeviceIsNotEvenDialled) {
    startBluez();
    bluez_->addAdapter("hci1", false);
    EXPECT_EQ(failedDial(), "not known to this computer: switch the tester on and pair it");
    EXPECT_EQ(outcome_->step, FailedStep::Missing);
    struct Row {
        FakeBluez::Device device;
        FailedStep step;
        const char* problem;
    };
    const Row rows[] = {
        {{kOne, "T", false},
         FailedStep::Pairing,
         "T: it is not paired with this computer: pair it in the Bluetooth settings"},
        {{kOne, "T", true, false, true},
         FailedStep::Rights,
         "T: it is blocked on this computer: 'bluetoothctl unblock AA:BB:CC:00:00:01' lets it in"},
        {{kOne, "T", true, false, false, {testing::kHeadsetUuid}},
         FailedStep::Missing,
         "T: it offers no serial port, as a tester does"},
        {{kOne, "T", true, false, false, {testing::kSerialPortUuid}, "hci1"},
         FailedStep::Adapter,
         "T: the Bluetooth adapter that it is paired with is switched off"},
    };
    for (const Row& row : rows) {
        bluez_->addDevice(row.device);
        const auto service = BluezService::shared(scheduler_);
        ASSERT_TRUE(spinUntil([&] { return service->objects().devices.size() == 1; }));
        EXPECT_EQ(failedDial(), row.problem);
        EXPECT_EQ(outcome_->step, row.step) << row.problem;
        bluez_->removeDevice(kOne);
        ASSERT_TRUE(spinUntil([&] { return service->objects().devices.empty(); }));
    }
    EXPECT_THAT(bluez_->attempts, ElementsAre());
}

TEST_F(BluezDialerTest, WhyADeviceCouldNotBeConnected) {
    startBluez();
    bluez_->addDevice({kOne, "T"});
    struct Row {
        const char* error;
        const char* text;
        FailedStep step;
        const char* problem;
    };
    const char* const away = "T: switched off, asleep or out of reach";
    const char* const busy = "T: it is busy: another program or computer is connected to it";
    const char* const refused = "T: it refused the connection: switch it off and on again";
    const char* const pairing =
        "T: it refused the pairing: remove it from the Bluetooth settings and pair it again";
    const Row rows[] = {
        {"org.bluez.Error.Failed", "br-connection-page-timeout", FailedStep::NoAnswer, away},
        {"org.bluez.Error.Failed", "Host is down", FailedStep::NoAnswer, away},
        {"org.bluez.Error.ConnectionAttemptFailed", "Page Timeout", FailedStep::NoAnswer, away},
        {"org.bluez.Error.Failed", "Connection timed out", FailedStep::NoAnswer, away},
        {"org.bluez.Error.Failed", "br-connection-refused", FailedStep::Refused, refused},
        {"org.bluez.Error.Failed", "Connection refused", FailedStep::Refused, refused},
        {"org.bluez.Error.Failed", "Connection reset by peer", FailedStep::Refused, refused},
        {"org.bluez.Error.Failed", "br-connection-busy", FailedStep::Busy, busy},
        {"org.bluez.Error.Failed", "Device or resource busy", FailedStep::Busy, busy},
        {"org.bluez.Error.InProgress", "In Progress", FailedStep::Busy, busy},
        {"org.bluez.Error.AlreadyConnected", "Already Connected", FailedStep::Busy, busy},
        {"org.bluez.Error.Failed", "br-connection-key-missing", FailedStep::Pairing, pairing},
        {"org.bluez.Error.AuthenticationFailed", "Authentication Failed", FailedStep::Pairing, pairing},
        {"org.bluez.Error.NotAvailable", "br-connection-profile-unavailable", FailedStep::Missing,
         "T: it offers no serial port, as a tester does"},
        {"org.bluez.Error.Failed", "br-connection-adapter-not-powered", FailedStep::Adapter,
         "T: Bluetooth is switched off: switch it on"},
        {"org.bluez.Error.NotReady", "Resource Not Ready", FailedStep::Adapter,
         "T: Bluetooth is switched off: switch it on"},
        {"org.freedesktop.DBus.Error.UnknownObject", "gone", FailedStep::Missing,
         "T: not known to this computer: switch the tester on and pair it"},
        {"org.bluez.Error.NotAuthorized", "Not Authorized", FailedStep::Rights, nullptr},
        {"org.bluez.Error.NotPermitted", "Not Permitted", FailedStep::Rights, nullptr},
        {"org.freedesktop.DBus.Error.AccessDenied", "Rejected", FailedStep::Rights, nullptr},
        {"org.bluez.Error.Failed", "some\nnew reason", FailedStep::Other,
         "T: it could not be connected: some\ufffdnew reason"},
        {"org.bluez.Error.Failed", "", FailedStep::Other,
         "T: it could not be connected: org.bluez.Error.Failed"},
    };
    for (const Row& row : rows) {
        bluez_->behave(kOne, {Way::Fails, row.error, row.text});
        EXPECT_EQ(failedDial(), row.problem != nullptr ? row.problem : std::string("T: ") + kNoRight)
            << row.text;
        EXPECT_EQ(outcome_->step, row.step) << row.text;
    }
}

TEST_F(BluezDialerTest, ALineThatAnotherProgramGetsIsBusy) {
    startBluez();
    bluez_->addDevice({kOne, "T"});
    bluez_->behave(kOne, {Way::GoesElsewhere});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return scheduler_.pending() == 2; }));  // the dial's limit, the line's limit
    scheduler_.advance(BluezProfile::kLineLimit);
    ASSERT_TRUE(answered());
    EXPECT_EQ(outcome_->step, FailedStep::Busy);
    EXPECT_EQ(problem(), "T: another program on this computer took the connection: end that program");
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
    EXPECT_EQ(failedDial(), "T: it could not be connected: br-connection-aborted-by-local");
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
    EXPECT_EQ(problem(), "T: no answer within 8 s");
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

TEST_F(BluezDialerTest, WithoutAServiceABusOrAnAdapterEachHasItsLine) {
    startDial();
    scheduler_.runDue();
    ASSERT_TRUE(answered());
    EXPECT_THAT(problem(),
                StartsWith("no Bluetooth without the system's message bus, which cannot be reached"));
    EXPECT_EQ(outcome_->step, FailedStep::Adapter);
    startBus();
    EXPECT_EQ(failedDial(), "the Bluetooth service does not run: start it with 'systemctl start bluetooth'");
    EXPECT_EQ(outcome_->step, FailedStep::Adapter);
    bluez_ = std::make_unique<FakeBluez>(bus_.address());
    bluez_->addDevice({});
    EXPECT_TRUE(spinUntil([&] { return back_ > 0; }));
    EXPECT_EQ(failedDial(), "this computer has no Bluetooth adapter");
    EXPECT_EQ(outcome_->step, FailedStep::Adapter);
    back_ = 0;
    bluez_->addAdapter("hci0", false);
    EXPECT_TRUE(spinUntil([&] { return back_ > 0; }));
    EXPECT_EQ(failedDial(), "Bluetooth is switched off: switch it on");
    EXPECT_EQ(outcome_->step, FailedStep::Adapter);
    back_ = 0;
    bluez_->setPowered(true);
    EXPECT_TRUE(spinUntil([&] { return back_ > 0; }));
    EXPECT_TRUE(dial()) << problem();
}

TEST_F(BluezDialerTest, ABusThatNeverAnswersIsGivenUp) {
    const QTemporaryDir folder;
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder.filePath(QStringLiteral("bus"))));
    useBusAt("unix:path=" + silent.fullServerName().toStdString());
    startDial();
    EXPECT_FALSE(outcome_.has_value());
    scheduler_.advance(BluezService::kAnswerLimit);
    ASSERT_TRUE(outcome_.has_value());
    EXPECT_EQ(problem(), "no Bluetooth without the system's message bus, which does not answer");
    EXPECT_EQ(outcome_->step, FailedStep::NoAnswer);
    // The next dial finds one that does.
    startBluez();
    bluez_->addDevice({});
    EXPECT_TRUE(dial()) << problem();
}

TEST_F(BluezDialerTest, RulesOfTheBusThatForbidItAreTold) {
    const char* const rules[] = {
        "<deny send_destination=\"org.bluez\"/>",
        "<deny send_destination=\"org.bluez\" send_interface=\"org.bluez.ProfileManager1\"/>",
        "<deny send_destination=\"org.bluez\" send_interface=\"org.bluez.Device1\"/>",
    };
    for (const char* rule : rules) {
        dialer_.reset();
        bluez_.reset();
        testing::PrivateBus bus;
        ASSERT_TRUE(bus.start(QProcessEnvironment::systemEnvironment(),
                              QByteArray(testing::PrivateBus::kEverybodyMayDoAll) + rule));
        useBusAt(bus.address());
        FakeBluez bluez(bus.address());
        bluez.addAdapter();
        bluez.addDevice({kOne, "T"});
        dialer_ = makeDialer();
        EXPECT_THAT(failedDial(), ::testing::EndsWith(kNoRight)) << rule;
        EXPECT_EQ(outcome_->step, FailedStep::Rights) << rule;
        dialer_.reset();
    }
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

TEST_F(BluezDialerTest, WhatSaysThatTheDeviceIsThereIsToldAndNothingElse) {
    startBluez();
    bluez_->addDevice({});
    bluez_->addDevice({kTwo, "Other"});
    bluez_->behave(kOne, {Way::Fails});
    EXPECT_EQ(failedDial(), "Tester 1: switched off, asleep or out of reach");
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
    EXPECT_FALSE(stirs([&] { bluez_->tellStrength(kTwo); }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Paired", false); }));
    EXPECT_FALSE(stirs([&] { bluez_->tellStrength(kOne); }));
    EXPECT_TRUE(stirs([&] { bluez_->set(kOne, "Paired", true); }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Blocked", true); }));
    EXPECT_TRUE(stirs([&] { bluez_->set(kOne, "Blocked", false); }));
    // A device that this program is connecting stirs because of that.
    bluez_->behave(kOne, {Way::IsSilent});
    startDial();
    ASSERT_TRUE(spinUntil([&] { return bluez_->attempts.size() == 2; }));
    EXPECT_FALSE(stirs([&] { bluez_->set(kOne, "Connected", true); }));
}

}  // namespace
}  // namespace kestrix::platform
