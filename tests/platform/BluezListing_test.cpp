#include "platform/BluezListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QLocalServer>
#include <QTemporaryDir>

#include <memory>
#include <string>

#include "platform/BluezProfile.h"
#include "tests/platform/BluezFixture.h"
#include "tests/support/SystemText.h"

namespace kestrix::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::spinUntil;
using ::testing::StartsWith;

class BluezListingTest : public BluezTest {
  protected:
    void look() {
        listing_ = std::make_unique<BluezListing>(BluezService::shared(scheduler_));
        listing_->changed = [this] { ++changes_; };
    }
    // Each as "uri name state problem".
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (const SeenAccessory& one : listing_->seen()) {
            EXPECT_EQ(one.step == FailedStep::None, one.problem.empty());
            all.push_back(one.uri + " " + one.name + " " + one.state +
                          (one.problem.empty() ? "" : " " + one.problem));
        }
        return all;
    }
    bool linesBecome(const std::vector<std::string>& expected) {
        return spinUntil([&] { return lines() == expected; });
    }
    bool problemBecomes(const std::string& problem) {
        return spinUntil([&] { return listing_->problem() == problem; });
    }

    std::unique_ptr<BluezListing> listing_;
    int changes_ = 0;
};

TEST_F(BluezListingTest, PairedDevicesWithASerialPortAreListedByName) {
    startBluez();
    bluez_->addDevice({"AA:BB:CC:00:00:02", "Tester B"});
    bluez_->addDevice({"AA:BB:CC:00:00:01", "Tester A", true, true});
    bluez_->addDevice({"AA:BB:CC:00:00:03", "Headset", true, true, false, {testing::kHeadsetUuid}});
    bluez_->addDevice({"AA:BB:CC:00:00:04", "Stranger", false});
    look();
    EXPECT_EQ(listing_->problem(), "");  // not known yet
    EXPECT_TRUE(listing_->seen().empty());
    EXPECT_TRUE(linesBecome(
        {"bluetooth:AA:BB:CC:00:00:01 Tester A connected", "bluetooth:AA:BB:CC:00:00:02 Tester B paired"}));
    EXPECT_EQ(listing_->problem(), "");
    EXPECT_EQ(listing_->step(), FailedStep::None);
    EXPECT_GT(changes_, 0);
}

TEST_F(BluezListingTest, WhatChangesIsFollowed) {
    startBluez();
    bluez_->addDevice({});
    look();
    ASSERT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    bluez_->set("AA:BB:CC:00:00:01", "Connected", true);
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 connected"}));
    bluez_->setAlias("AA:BB:CC:00:00:01", "Mine");
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Mine connected"}));
    bluez_->set("AA:BB:CC:00:00:01", "Blocked", true);
    EXPECT_TRUE(
        linesBecome({"bluetooth:AA:BB:CC:00:00:01 Mine connected it is blocked on this computer: "
                     "'bluetoothctl unblock AA:BB:CC:00:00:01' lets it in"}));
    bluez_->set("AA:BB:CC:00:00:01", "Paired", false);
    EXPECT_TRUE(linesBecome({}));
    EXPECT_THAT(listing_->problem(), StartsWith("no paired device offers a serial port"));
    EXPECT_EQ(listing_->step(), FailedStep::Pairing);
    bluez_->addDevice({"AA:BB:CC:00:00:02", "Other"});
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:02 Other paired"}));
    bluez_->removeDevice("AA:BB:CC:00:00:02");
    EXPECT_TRUE(linesBecome({}));
    bluez_->addDevice({"AA:BB:CC:00:00:03", "Late", true, false, false, {}});
    bluez_->setUuids("AA:BB:CC:00:00:03", {testing::kHeadsetUuid, "00001101-0000-1000-8000-00805F9B34FB"});
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:03 Late paired"}));
}

TEST_F(BluezListingTest, AnAdapterThatIsOffOrGoneIsToldOnceForAll) {
    startBluez();
    bluez_->addDevice({});
    look();
    ASSERT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    bluez_->setPowered(false);
    EXPECT_TRUE(problemBecomes("Bluetooth is switched off: switch it on"));
    EXPECT_EQ(listing_->step(), FailedStep::Adapter);
    EXPECT_THAT(lines(), ElementsAre());
    bluez_->setPowered(true);
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    bluez_->removeAdapter();
    EXPECT_TRUE(
        problemBecomes("this computer has no Bluetooth adapter: plug one in, or use the tester's cable"));
    EXPECT_EQ(listing_->step(), FailedStep::Adapter);
    bluez_->addAdapter();
    EXPECT_TRUE(problemBecomes(""));
}

TEST_F(BluezListingTest, ADeviceOfAnotherAdapterThatIsOffSaysSo) {
    startBluez();
    bluez_->addAdapter("hci1", false);
    testing::FakeBluez::Device device;
    device.adapter = "hci1";
    bluez_->addDevice(device);
    look();
    EXPECT_TRUE(
        linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired the Bluetooth adapter that it is "
                     "paired with is switched off: switch it on"}));
}

TEST_F(BluezListingTest, AServiceThatGoesAndComesIsFollowed) {
    startBluez();
    bluez_->addDevice({});
    look();
    ASSERT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    bluez_->leave();
    EXPECT_TRUE(
        problemBecomes("the Bluetooth service does not run: start it with 'systemctl start bluetooth'"));
    EXPECT_EQ(listing_->step(), FailedStep::Adapter);
    EXPECT_THAT(lines(), ElementsAre());
    bluez_->come();
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    EXPECT_EQ(listing_->problem(), "");
}

TEST_F(BluezListingTest, WithoutAServiceItSaysSo) {
    startBus();
    look();
    EXPECT_TRUE(
        problemBecomes("the Bluetooth service does not run: start it with 'systemctl start bluetooth'"));
}

// Who has switched the service off wants it off.
TEST_F(BluezListingTest, LookingStartsNoService) {
    const QByteArray started = bus_.path("started").toUtf8();
    bus_.write("bluez.service",
               "[D-BUS Service]\nName=org.bluez\nExec=/bin/sh -c 'touch " + started + "; sleep 60'\n");
    startBus();
    look();
    EXPECT_TRUE(
        problemBecomes("the Bluetooth service does not run: start it with 'systemctl start bluetooth'"));
    EXPECT_FALSE(QFile::exists(QString::fromUtf8(started)));
}

TEST_F(BluezListingTest, WithoutABusItSaysSoAndLooksAgain) {
    look();
    scheduler_.runDue();
    EXPECT_EQ(listing_->problem(),
              "no Bluetooth without the system's message bus, which cannot be reached (" +
                  testing::systemText(ENOENT) + "): choose a serial port, or restart the computer");
    EXPECT_EQ(listing_->step(), FailedStep::Adapter);
    startBluez();
    bluez_->addDevice({});
    scheduler_.advance(BluezListing::kLookAgain);
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
}

TEST_F(BluezListingTest, ABusThatGoesIsTold) {
    startBluez();
    bluez_->addDevice({});
    look();
    ASSERT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    bus_.kill();
    EXPECT_TRUE(spinUntil([&] { return !listing_->problem().empty(); }));
    EXPECT_THAT(listing_->problem(), StartsWith("no Bluetooth without the system's message bus"));
    EXPECT_THAT(lines(), ElementsAre());
}

TEST_F(BluezListingTest, ABusThatNeverAnswersHoldsNothingUpAndIsTold) {
    const QTemporaryDir folder;
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder.filePath(QStringLiteral("bus"))));
    useBusAt("unix:path=" + silent.fullServerName().toStdString());
    look();
    EXPECT_TRUE(spinUntil([&] { return silent.hasPendingConnections(); }));
    EXPECT_EQ(listing_->problem(), "");
    scheduler_.advance(BluezService::kAnswerLimit);
    EXPECT_EQ(listing_->problem(),
              "no Bluetooth without the system's message bus, which does not answer: choose a serial port, "
              "or restart the computer");
    EXPECT_EQ(listing_->step(), FailedStep::NoAnswer);
}

TEST_F(BluezListingTest, AServiceThatDoesNotAnswerIsToldAndHeardLater) {
    startBluez();
    bluez_->addDevice({});
    bluez_->becomeDeaf();
    look();
    const auto service = BluezService::shared(scheduler_);
    ASSERT_TRUE(spinUntil([&] { return !service->owner().empty(); }));
    scheduler_.advance(BluezService::kAnswerLimit);
    EXPECT_EQ(listing_->problem(),
              "the Bluetooth service does not answer: restart it with 'systemctl restart bluetooth'");
    EXPECT_EQ(listing_->step(), FailedStep::NoAnswer);
    scheduler_.advance(BluezListing::kLookAgain);
    bluez_->hearAgain();
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    EXPECT_EQ(listing_->problem(), "");
}

TEST_F(BluezListingTest, ARuleOfTheBusThatForbidsItIsTold) {
    startBus(QByteArray(testing::PrivateBus::kEverybodyMayDoAll) +
             "<deny send_destination=\"org.bluez\" send_interface=\"org.freedesktop.DBus.ObjectManager\"/>");
    startBluez();
    look();
    EXPECT_TRUE(spinUntil([&] { return !listing_->problem().empty(); }));
    EXPECT_EQ(listing_->problem(),
              "no right to use Bluetooth on this computer: log in at the computer itself, or ask who looks "
              "after it");
    EXPECT_EQ(listing_->step(), FailedStep::Rights);
}

TEST_F(BluezListingTest, ANameFromTheAirIsOneShortPrintableLine) {
    startBluez();
    bluez_->addDevice({"AA:BB:CC:00:00:01", "A\x1b[31m\n\u202e" + std::string(300, 'x')});
    bluez_->addDevice({"AA:BB:CC:00:00:02", " "});
    look();
    ASSERT_TRUE(spinUntil([&] { return listing_->seen().size() == 2; }));
    const std::vector<SeenAccessory> seen = listing_->seen();
    EXPECT_EQ(seen.front().name, "AA:BB:CC:00:00:02");
    EXPECT_EQ(seen.back().name, "A\ufffd[31m\ufffd\ufffd" + std::string(52, 'x') + "\u2026");
}

// Only the service itself is believed.
TEST_F(BluezListingTest, WhatAnotherProgramSaysInItsPlaceIsNotHeard) {
    startBluez();
    bluez_->addDevice({});
    look();
    ASSERT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 paired"}));
    const auto profile = BluezProfile::shared(scheduler_);
    ASSERT_TRUE(spinUntil([&] { return bluez_->isRegistered(); }));
    sd_bus* liar = nullptr;
    ASSERT_GE(sd_bus_open_system(&liar), 0);
    sd_bus_message* message = nullptr;
    sd_bus_message_new_signal(liar, &message, "/", "org.freedesktop.DBus.ObjectManager", "InterfacesRemoved");
    sd_bus_message_append(message, "oas", "/org/bluez/hci0/dev_AA_BB_CC_00_00_01", 1, "org.bluez.Device1");
    sd_bus_message_set_destination(message, bluez_->profileOwner().c_str());  // past the bus's own filter
    sd_bus_send(liar, message, nullptr);
    sd_bus_flush(liar);
    sd_bus_message_unref(message);
    sd_bus_close_unref(liar);
    bluez_->set("AA:BB:CC:00:00:01", "Connected", true);
    EXPECT_TRUE(linesBecome({"bluetooth:AA:BB:CC:00:00:01 Tester 1 connected"}));
}

}  // namespace
}  // namespace kestrix::platform
