#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "platform/FailedStep.h"

namespace kestrix::platform {

// Everything that can be wrong with Bluetooth.
enum class BluezLine : std::uint8_t {
    NoBus,
    SilentBus,
    NoService,
    StoppedService,
    SilentService,
    ServiceSays,
    NoAdapter,
    Off,
    AdapterOff,
    NoRights,
    NoDevice,
    Unknown,
    Unpaired,
    Blocked,
    NotSerial,
    Away,
    NoAnswer,
    Busy,
    TakenElsewhere,
    ProfileTaken,
    Refused,
    PairAgain,
    NotConnected,
    NoTester,
};

// One line of the user's: "what: toDo". A '%' stands for what only the moment knows: an address, a reason.
struct BluezWords {
    BluezLine line;
    FailedStep step;
    const char* what;
    const char* toDo;
};

// In the order of BluezLine.
inline constexpr BluezWords kBluezWords[] = {
    {BluezLine::NoBus, FailedStep::Adapter,
     "no Bluetooth without the system's message bus, which cannot be reached (%)",
     "choose a serial port, or restart the computer"},
    {BluezLine::SilentBus, FailedStep::NoAnswer,
     "no Bluetooth without the system's message bus, which does not answer",
     "choose a serial port, or restart the computer"},
    {BluezLine::NoService, FailedStep::Adapter, "the Bluetooth service does not run",
     "start it with 'systemctl start bluetooth'"},
    {BluezLine::StoppedService, FailedStep::Adapter, "the Bluetooth service has stopped",
     "start it with 'systemctl start bluetooth'"},
    {BluezLine::SilentService, FailedStep::NoAnswer, "the Bluetooth service does not answer",
     "restart it with 'systemctl restart bluetooth'"},
    {BluezLine::ServiceSays, FailedStep::Other, "the Bluetooth service refuses (%)",
     "restart it with 'systemctl restart bluetooth'"},
    {BluezLine::NoAdapter, FailedStep::Adapter, "this computer has no Bluetooth adapter",
     "plug one in, or use the tester's cable"},
    {BluezLine::Off, FailedStep::Adapter, "Bluetooth is switched off", "switch it on"},
    {BluezLine::AdapterOff, FailedStep::Adapter,
     "the Bluetooth adapter that it is paired with is switched off", "switch it on"},
    {BluezLine::NoRights, FailedStep::Rights, "no right to use Bluetooth on this computer",
     "log in at the computer itself, or ask who looks after it"},
    {BluezLine::NoDevice, FailedStep::Pairing, "no paired device offers a serial port",
     "switch the tester on and pair it"},
    {BluezLine::Unknown, FailedStep::Missing, "not known to this computer",
     "switch the tester on and pair it"},
    {BluezLine::Unpaired, FailedStep::Pairing, "it is not paired with this computer",
     "pair it in the Bluetooth settings"},
    {BluezLine::Blocked, FailedStep::Rights, "it is blocked on this computer",
     "'bluetoothctl unblock %' lets it in"},
    {BluezLine::NotSerial, FailedStep::Missing, "it offers no serial port, as a tester does",
     "choose another device"},
    {BluezLine::Away, FailedStep::NoAnswer, "switched off, asleep or out of reach",
     "switch it on and bring it near"},
    {BluezLine::NoAnswer, FailedStep::NoAnswer, "no answer within % s", "switch it on and bring it near"},
    {BluezLine::Busy, FailedStep::Busy, "it is busy with another program or computer", "end that connection"},
    {BluezLine::TakenElsewhere, FailedStep::Busy, "another program on this computer took the connection",
     "end that program"},
    {BluezLine::ProfileTaken, FailedStep::Busy, "another program on this computer uses the tester's profile",
     "end that program"},
    {BluezLine::Refused, FailedStep::Refused, "it refused the connection", "switch it off and on again"},
    {BluezLine::PairAgain, FailedStep::Pairing, "it refused the pairing",
     "remove it from the Bluetooth settings and pair it again"},
    {BluezLine::NotConnected, FailedStep::Other, "it could not be connected (%)",
     "switch it off and on again"},
    {BluezLine::NoTester, FailedStep::NoFrames, "connected, but nothing of a tester came",
     "switch the tester on, or choose another device"},
};

constexpr bool bluezWordsAreInOrder() {
    for (std::size_t i = 0; i < std::size(kBluezWords); ++i) {
        if (static_cast<std::size_t>(kBluezWords[i].line) != i) return false;
    }
    return static_cast<std::size_t>(BluezLine::NoTester) + 1 == std::size(kBluezWords);
}
static_assert(bluezWordsAreInOrder());

}  // namespace kestrix::platform
