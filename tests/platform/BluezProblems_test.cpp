// Every reason for which there is no line.
#include "platform/BluezProblems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLocalServer>
#include <QTemporaryDir>

#include <cerrno>
#include <fstream>
#include <string_view>

#include "platform/BluezLines.h"
#include "tests/platform/BluezDialerFixture.h"

namespace kestrix::platform {
namespace {

using ::testing::ElementsAre;
using testing::FakeBluez;
using testing::spinUntil;
using ::testing::StartsWith;
using Way = FakeBluez::Way;

constexpr const char* kNoRight =
    "no right to use Bluetooth on this computer: log in at the computer itself, or ask who looks after it";

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
         "T: it offers no serial port, as a tester does: choose another device"},
        {{kOne, "T", true, false, false, {testing::kSerialPortUuid}, "hci1"},
         FailedStep::Adapter,
         "T: the Bluetooth adapter that it is paired with is switched off: switch it on"},
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
    const char* const away = "T: switched off, asleep or out of reach: switch it on and bring it near";
    const char* const busy = "T: it is busy with another program or computer: end that connection";
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
         "T: it offers no serial port, as a tester does: choose another device"},
        {"org.bluez.Error.Failed", "br-connection-adapter-not-powered", FailedStep::Adapter,
         "T: Bluetooth is switched off: switch it on"},
        {"org.bluez.Error.NotReady", "Resource Not Ready", FailedStep::Adapter,
         "T: Bluetooth is switched off: switch it on"},
        {"org.freedesktop.DBus.Error.UnknownObject", "gone", FailedStep::Missing,
         "T: not known to this computer: switch the tester on and pair it"},
        {"org.bluez.Error.NotAuthorized", "Not Authorized", FailedStep::Rights, nullptr},
        {"org.bluez.Error.NotPermitted", "Not Permitted", FailedStep::Rights, nullptr},
        {"org.bluez.Error.NotPermitted", "UUID already registered", FailedStep::Busy,
         "T: another program on this computer uses the tester's profile: end that program"},
        {"org.freedesktop.DBus.Error.NoReply", "", FailedStep::Adapter,
         "T: the Bluetooth service has stopped: start it with 'systemctl start bluetooth'"},
        {"org.freedesktop.DBus.Error.AccessDenied", "Rejected", FailedStep::Rights, nullptr},
        {"org.bluez.Error.Failed", "some\nnew reason", FailedStep::Other,
         "T: it could not be connected (some\ufffdnew reason): switch it off and on again"},
        {"org.bluez.Error.Failed", "", FailedStep::Other,
         "T: it could not be connected (org.bluez.Error.Failed): switch it off and on again"},
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
    EXPECT_EQ(failedDial(), "this computer has no Bluetooth adapter: plug one in, or use the tester's cable");
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
    EXPECT_EQ(problem(),
              "no Bluetooth without the system's message bus, which does not answer: choose a serial port, "
              "or restart the computer");
    EXPECT_EQ(outcome_->step, FailedStep::NoAnswer);
    // The next dial finds one that does.
    startBluez();
    bluez_->addDevice({});
    EXPECT_TRUE(dial()) << problem();
}

TEST(BluezWords, EachSaysWhatIsWrongAndWhatToDo) {
    for (const BluezWords& words : kBluezWords) {
        EXPECT_NE(words.step, FailedStep::None) << words.what;
        EXPECT_GT(std::string_view(words.what).size(), 5U);
        EXPECT_GT(std::string_view(words.toDo).size(), 5U) << words.what;
        EXPECT_EQ(std::string_view(words.what).find(':'), std::string_view::npos) << words.what;
    }
}

// By what the line begins with, up to where it depends on the moment or goes into detail.
TEST(BluezWords, AreInTheUsersGuide) {
    std::ifstream file(KESTRIX_SOURCE_DIR "/docs/users-guide.md");
    std::string table;
    bool isInTable = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) isInTable = line == "## When it does not connect";
        // The left column, with each of its lines behind a mark.
        if (isInTable && line.starts_with("| "))
            table += "; " + line.substr(2, line.find(" |", 2) - 2) + "; ";
    }
    for (std::size_t at = 0; (at = table.find(", or: ", at)) != std::string::npos;)
        table.replace(at, 6, "; ");
    ASSERT_NE(table.find("; Bluetooth is switched off; "), std::string::npos) << table;
    for (const BluezWords& words : kBluezWords) {
        const std::string what = words.what;
        std::string beginning = what.substr(0, what.find_first_of(",%("));
        if (words.line == BluezLine::NoAnswer) beginning = "no answer";
        while (beginning.ends_with(' ')) beginning.pop_back();
        EXPECT_NE(table.find("; " + beginning), std::string::npos) << beginning;
    }
}

// What a caller is told is of those words.
TEST(BluezWords, AreInEveryProblem) {
    const BluezProblem all[] = {
        noBus(ENOENT),
        silentBus(),
        noService(),
        silentService(),
        noDevice(),
        unknownDevice(),
        unpairedDevice(),
        takenElsewhere(),
        openedButNoTester(),
        noAnswerWithin(std::chrono::seconds(6)),
        problemOfAdapters({}),
        problemOfService("any", "reason"),
        problemOfConnecting("any", "reason"),
    };
    for (const BluezProblem& one : all) {
        const std::size_t colon = one.text.find(": ");
        ASSERT_NE(colon, std::string::npos) << one.text;
        EXPECT_GT(one.text.size(), colon + 5) << one.text;
        EXPECT_EQ(one.text.find('%'), std::string::npos) << one.text;
    }
    EXPECT_EQ(noAnswerWithin(std::chrono::seconds(6)).text,
              "no answer within 6 s: switch it on and bring it near");
    EXPECT_EQ(
        problemOfService("any", "50% of a reason").text,
        "the Bluetooth service refuses (50% of a reason): restart it with 'systemctl restart bluetooth'");
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
