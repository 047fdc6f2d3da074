#include "tests/flow/faults/BluetoothFarEnd.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <QByteArray>

#include <utility>

namespace kestrix::faults {

using testing::FakeBluez;

BluetoothFarEnd::BluetoothFarEnd() {
    EXPECT_TRUE(bus_.start());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(bus_.address()));
    bluez_ = std::make_unique<FakeBluez>(bus_.address());
    bluez_->addAdapter();
    bluez_->addDevice({kTester, "Tester"});
    bluez_->attempted = [this](const std::string&) {
        isSilent_ = behaviour_.way == FakeBluez::Way::IsSilent;
    };
}

BluetoothFarEnd::~BluetoothFarEnd() {
    qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

std::unique_ptr<platform::AccessorySource> BluetoothFarEnd::makeSource(platform::Scheduler& scheduler,
                                                                       platform::ListenerFactory listeners) {
    return sourceOf("bluetooth:", scheduler, std::move(listeners));
}

std::size_t BluetoothFarEnd::send(std::span<const std::uint8_t> bytes) {
    const ssize_t count =
        ::send(bluez_->line(kTester), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void BluetoothFarEnd::leave() {
    becomes({FakeBluez::Way::Fails, "org.bluez.Error.Failed", "br-connection-page-timeout"});
    bluez_->endLine(kTester);
}

// An attempt that the service is still making succeeds.
void BluetoothFarEnd::comeBack() {
    const bool isMade = isSilent_ && behaviour_.way == FakeBluez::Way::IsSilent;
    becomes({});
    if (isMade) bluez_->complete(kTester, {});
    isSilent_ = false;
}

void BluetoothFarEnd::becomes(FakeBluez::Behaviour behaviour) {
    behaviour_ = behaviour;
    bluez_->behave(kTester, behaviour);
}

}  // namespace kestrix::faults
