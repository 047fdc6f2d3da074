// A tester behind Bluetooth, from the service's line to the records.
#include <gtest/gtest.h>

#include <sys/socket.h>

#include <memory>
#include <string>

#include "tests/flow/LinkFixture.h"
#include "tests/support/EventLoop.h"
#include "tests/support/FakeBluez.h"
#include "tests/support/FrameBuilder.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/ProcessState.h"

namespace kestrix {
namespace {

using testing::FakeBluez;
using testing::FrameBuilder;
using testing::spinUntil;

constexpr const char* kTester = "AA:BB:CC:00:00:01";
constexpr const char* kPrinter = "AA:BB:CC:00:00:00";

class BluetoothRoad : public testing::LinkFixture {
  protected:
    BluetoothRoad() {
        EXPECT_TRUE(bus_.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(bus_.address()));
        bluez_ = std::make_unique<FakeBluez>(bus_.address());
        bluez_->addAdapter();
        bluez_->addDevice({kTester, "Tester"});
    }
    ~BluetoothRoad() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    static std::string frame(int reading) {
        const auto bytes = FrameBuilder('1').reading(1, static_cast<std::uint16_t>(reading), 0).bytes();
        return {bytes.begin(), bytes.end()};
    }
    bool recordsAre(std::size_t count) {
        return spinUntil([&] {
            scheduler_.runDue();
            return records_ == count;
        });
    }

    testing::PrivateBus bus_;
    std::unique_ptr<FakeBluez> bluez_;
};

TEST_F(BluetoothRoad, FramesBecomeRecordsAndTheNameIsTheAccessorys) {
    start("bluetooth:");
    ASSERT_TRUE(spinUntil([&] { return bluez_->line(kTester) >= 0; }));
    EXPECT_FALSE(connected());  // it is heard with its first whole frame
    const std::string sent = frame(123);
    bluez_->send(kTester, sent.substr(0, 20));
    bluez_->send(kTester, sent.substr(20));
    ASSERT_TRUE(recordsAre(1));
    EXPECT_EQ(last_.strValue1, "123");
    EXPECT_TRUE(connected());
    ASSERT_EQ(manager_.connectedAccessories().size(), 1U);
    EXPECT_EQ(manager_.connectedAccessories().front()->name, "Tester");
}

TEST_F(BluetoothRoad, AFloodArrivesWhole) {
    constexpr int kFrames = 20'000;
    start("bluetooth:");
    ASSERT_TRUE(spinUntil([&] { return bluez_->line(kTester) >= 0; }));
    std::string flood;
    for (int i = 0; i < kFrames; ++i) flood += frame(i % 60'000);
    std::size_t sent = 0;
    ASSERT_TRUE(spinUntil([&] {
        const ssize_t count = ::send(bluez_->line(kTester), flood.data() + sent, flood.size() - sent,
                                     MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) sent += static_cast<std::size_t>(count);
        scheduler_.runDue();
        QMetaObject::invokeMethod(
            qApp, [] {}, Qt::QueuedConnection);
        return records_ == kFrames;
    })) << records_;
    EXPECT_EQ(last_.strValue1, std::to_string(kFrames - 1));
}

TEST_F(BluetoothRoad, AfterADropTheLinkComesBackAHundredTimesWithoutALeak) {
    start("bluetooth:AA:BB:CC:00:00:01");
    std::size_t descriptors = 0;
    for (int round = 0; round < 100; ++round) {
        testing::forgetLogLines();
        ASSERT_TRUE(spinUntil([&] { return bluez_->line(kTester) >= 0; })) << round;
        bluez_->send(kTester, frame(round + 1));
        ASSERT_TRUE(recordsAre(static_cast<std::size_t>(round) + 1)) << round;
        ASSERT_EQ(last_.strValue1, std::to_string(round + 1));
        ASSERT_TRUE(connected());
        if (round == 10) descriptors = testing::openDescriptors();
        if (round > 10) {
            ASSERT_EQ(testing::openDescriptors(), descriptors) << round;
        }
        bluez_->endLine(kTester);
        ASSERT_TRUE(spinUntil([&] { return !connected(); })) << round;
        scheduler_.advance(std::chrono::milliseconds(500));
    }
}

// Silence closes the printer's line, and the tester's turn comes.
TEST_F(BluetoothRoad, APrinterBesideTheTesterIsNotTakenForIt) {
    bluez_->addDevice({kPrinter, "Printer"});
    bluez_->greet(kPrinter, "PRINTER READY\r\n");
    start("bluetooth:");
    ASSERT_TRUE(spinUntil([&] { return bluez_->line(kPrinter) >= 0; }));
    const platform::AccessorySource& source = *manager_.sources().front();
    ASSERT_TRUE(spinUntil([&] { return source.state() == platform::SearchState::Listening; }));
    scheduler_.advance(std::chrono::milliseconds(1000));
    ASSERT_TRUE(spinUntil([&] { return source.failedStep() == platform::FailedStep::NoFrames; }));
    scheduler_.advance(std::chrono::milliseconds(2600));
    ASSERT_TRUE(spinUntil([&] { return bluez_->line(kTester) >= 0; }));
    EXPECT_TRUE(bluez_->lineHasEnded(kPrinter));
    bluez_->send(kTester, frame(7));
    ASSERT_TRUE(recordsAre(1));
    EXPECT_EQ(last_.strValue1, "7");
}

}  // namespace
}  // namespace kestrix
