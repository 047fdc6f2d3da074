// Every reason for which there is no line.
#include "platform/BluezProblems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLocalServer>
#include <QTemporaryDir>

#include "tests/platform/BluezDialerFixture.h"

namespace kestrix::platform {
namespace {

using ::testing::ElementsAre;
using testing::FakeBluez;
using testing::spinUntil;
using ::testing::StartsWith;
using Way = FakeBluez::Way;

constexpr const char* kNoRight =
    "no right to use Bluetooth: the computer's rules do not let this user speak to the Bluetooth service";

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

}  // namespace
}  // namespace kestrix::platform
