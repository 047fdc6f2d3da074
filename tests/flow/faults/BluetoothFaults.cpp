// What can happen to a Bluetooth tester, its adapter and the service.
#include <gtest/gtest.h>

#include "tests/flow/faults/BluetoothFarEnd.h"
#include "tests/flow/faults/Fault.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;
using platform::FailedStep;
using testing::FakeBluez;
using Way = FakeBluez::Way;

constexpr const char* kTester = BluetoothFarEnd::kTester;

// Something is taken away, and after a while put back.
void losesAndGetsBack(FaultWorld& world, FailedStep step, const std::function<void(FakeBluez&)>& take,
                      const std::function<void(FakeBluez&)>& giveBack) {
    FakeBluez& bluez = world.as<BluetoothFarEnd>().bluez();
    world.drops([&] {
        world.farEnd().leave();
        take(bluez);
    });
    world.passes(20s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), step);
    world.farEnd().comeBack();
    giveBack(bluez);
    world.comesBack(Return::AtOnce);
}

void adapterIsSwitchedOffAndOn(FaultWorld& world) {
    losesAndGetsBack(
        world, FailedStep::Adapter, [](FakeBluez& bluez) { bluez.setPowered(false); },
        [](FakeBluez& bluez) { bluez.setPowered(true); });
}

void adapterIsPulledAndPluggedIn(FaultWorld& world) {
    losesAndGetsBack(
        world, FailedStep::Adapter, [](FakeBluez& bluez) { bluez.removeAdapter(); },
        [](FakeBluez& bluez) { bluez.addAdapter(); });
}

void isUnpairedAndPaired(FaultWorld& world) {
    losesAndGetsBack(
        world, FailedStep::Pairing, [](FakeBluez& bluez) { bluez.set(kTester, "Paired", false); },
        [](FakeBluez& bluez) { bluez.set(kTester, "Paired", true); });
}

void isForgottenAndPaired(FaultWorld& world) {
    losesAndGetsBack(
        world, FailedStep::Pairing, [](FakeBluez& bluez) { bluez.removeDevice(kTester); },
        [](FakeBluez& bluez) {
            bluez.addDevice({kTester, "Tester"});
        });
}

// The service ends, and its lines stay. They are testers as before for as long as they last.
void serviceEndsAndIsStarted(FaultWorld& world) {
    auto& tester = world.as<BluetoothFarEnd>();
    tester.bluez().leave();
    world.passes(2s);
    const Bytes next = world.frame();
    world.hears(next);
    world.expect(Link::Connected, next);
    world.ends();
    world.passes(20s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::Adapter);
    tester.bluez().come();
    world.comesBack(Return::AtOnce);
}

void serviceEndsTheConnection(FaultWorld& world) {
    world.drops([&] { world.as<BluetoothFarEnd>().bluez().askToDisconnect(kTester); });
    world.expect(Link::Gone);
    world.comesBack();
}

void isBarred(FaultWorld& world, FakeBluez::Behaviour behaviour, FailedStep step) {
    auto& tester = world.as<BluetoothFarEnd>();
    tester.becomes(behaviour);
    world.ends();
    const std::size_t before = tester.attempts();
    world.passes(1min);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), step);
    EXPECT_GE(tester.attempts() - before, 5U);
    world.comesBack();
}

void pageTimesOut(FaultWorld& world) {
    isBarred(world, {Way::Fails, "org.bluez.Error.Failed", "br-connection-page-timeout"},
             FailedStep::NoAnswer);
}

void refuses(FaultWorld& world) {
    isBarred(world, {Way::Fails, "org.bluez.Error.Failed", "br-connection-refused"}, FailedStep::Refused);
}

void isBusyElsewhere(FaultWorld& world) {
    isBarred(world, {Way::Fails, "org.bluez.Error.Failed", "br-connection-busy"}, FailedStep::Busy);
}

void mayNotBeUsed(FaultWorld& world) {
    isBarred(world, {Way::Fails, "org.bluez.Error.NotPermitted", "not permitted"}, FailedStep::Rights);
}

// The service tries for as long as it likes, and makes one attempt at a time.
void answersNoAttempt(FaultWorld& world) {
    auto& tester = world.as<BluetoothFarEnd>();
    tester.becomes({Way::IsSilent});
    world.ends();
    const std::size_t before = tester.attempts();
    world.passes(1min);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::NoAnswer);
    EXPECT_EQ(tester.attempts() - before, 1U);
    world.comesBack();
}

// The service takes what it is asked, and says nothing.
void serviceIsSilent(FaultWorld& world) {
    auto& tester = world.as<BluetoothFarEnd>();
    tester.serviceBecomesSilent();
    world.ends();
    world.passes(1min);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::NoAnswer);
    tester.serviceAnswersAgain();
    world.comesBack();
}

constexpr Fault kBluetoothFaults[] = {
    {"AdapterOffAndOn", kBluetooth, adapterIsSwitchedOffAndOn},
    {"AdapterPulledAndPluggedIn", kBluetooth, adapterIsPulledAndPluggedIn},
    {"UnpairedMeanwhile", kBluetooth, isUnpairedAndPaired},
    {"DeviceGone", kBluetooth, isForgottenAndPaired},
    {"ServiceGone", kBluetooth, serviceEndsAndIsStarted},
    {"ServiceEndsTheConnection", kBluetooth, serviceEndsTheConnection},
    {"PageTimeout", kBluetooth, pageTimesOut},
    {"RefusedForAMinute", kBluetooth, refuses},
    {"PortBusy", kBluetooth, isBusyElsewhere},
    {"NoRights", kBluetooth, mayNotBeUsed},
    {"NoAnswer", kBluetooth, answersNoAttempt},
    {"ServiceIsSilent", kBluetooth, serviceIsSilent},
};

}  // namespace

std::span<const Fault> bluetoothFaults() {
    return kBluetoothFaults;
}

}  // namespace kestrix::faults
