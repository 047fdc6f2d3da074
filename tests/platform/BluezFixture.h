#pragma once

#include <gtest/gtest.h>

#include <QByteArray>

#include <memory>
#include <string>

#include "platform/BluezService.h"
#include "tests/support/EventLoop.h"
#include "tests/support/FakeBluez.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/PrivateBus.h"

namespace kestrix::platform {

inline constexpr const char* kOne = "AA:BB:CC:00:00:01";
inline constexpr const char* kTwo = "AA:BB:CC:00:00:02";
inline constexpr const char* kThree = "AA:BB:CC:00:00:03";

// A message bus of the test's own, which everything in it takes for the system's, with a Bluetooth service
// that has an adapter.
class BluezTest : public ::testing::Test {
  protected:
    BluezTest() { useBusAt("unix:path=/nowhere/bus"); }
    ~BluezTest() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    static void useBusAt(const std::string& address) {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(address));
    }
    void startBus(const QByteArray& rules = testing::PrivateBus::kEverybodyMayDoAll) {
        ASSERT_TRUE(bus_.start(QProcessEnvironment::systemEnvironment(), rules));
        useBusAt(bus_.address());
    }
    // With one adapter that is on.
    void startBluez() {
        if (bus_.address().empty()) startBus();
        bluez_ = std::make_unique<testing::FakeBluez>(bus_.address());
        bluez_->addAdapter();
    }

    testing::ManualScheduler scheduler_;
    testing::PrivateBus bus_;
    std::unique_ptr<testing::FakeBluez> bluez_;
};

}  // namespace kestrix::platform
