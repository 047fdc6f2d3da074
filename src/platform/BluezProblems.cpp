#include "platform/BluezProblems.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

constexpr const char* kOff = "Bluetooth is switched off: switch it on";
constexpr const char* kNoService =
    "the Bluetooth service does not run: start it with 'systemctl start bluetooth'";
constexpr const char* kNoRights =
    "no right to use Bluetooth: the computer's rules do not let this user speak to the Bluetooth service";
constexpr const char* kUnknown = "not known to this computer: switch the tester on and pair it";
constexpr const char* kNotSerial = "it offers no serial port, as a tester does";
constexpr const char* kAway = "switched off, asleep or out of reach";
constexpr const char* kBusy = "it is busy: another program or computer is connected to it";
constexpr const char* kRefused = "it refused the connection: switch it off and on again";
constexpr const char* kPairAgain =
    "it refused the pairing: remove it from the Bluetooth settings and pair it again";

// What the service says, by the error's name, or by a part of its text where one name stands for many.
struct Row {
    std::string_view error;  // empty: any
    std::string_view text;   // empty: any
    FailedStep step;
    const char* line;
};

constexpr Row kConnecting[] = {
    {"", "page-timeout", FailedStep::NoAnswer, kAway},
    {"", "Page Timeout", FailedStep::NoAnswer, kAway},
    {"", "Host is down", FailedStep::NoAnswer, kAway},
    {"", "timed out", FailedStep::NoAnswer, kAway},
    {"", "br-connection-timeout", FailedStep::NoAnswer, kAway},
    {"", "No route to host", FailedStep::NoAnswer, kAway},
    {"", "adapter-not-powered", FailedStep::Adapter, kOff},
    {"", "key-missing", FailedStep::Pairing, kPairAgain},
    {"", "Invalid exchange", FailedStep::Pairing, kPairAgain},
    {"", "uthentication", FailedStep::Pairing, kPairAgain},
    {"", "profile-unavailable", FailedStep::Missing, kNotSerial},
    {"", "Protocol not available", FailedStep::Missing, kNotSerial},
    {"", "refused", FailedStep::Refused, kRefused},
    {"", "aborted-by-remote", FailedStep::Refused, kRefused},
    {"", "reset by peer", FailedStep::Refused, kRefused},
    {"", "connection-busy", FailedStep::Busy, kBusy},
    {"", "resource busy", FailedStep::Busy, kBusy},
    {"", "already in progress", FailedStep::Busy, kBusy},
    {"", "already-connected", FailedStep::Busy, kBusy},
    {"", "concurrent-connection-limit", FailedStep::Busy, kBusy},
    {"org.bluez.Error.InProgress", "", FailedStep::Busy, kBusy},
    {"org.bluez.Error.AlreadyConnected", "", FailedStep::Busy, kBusy},
    {"org.bluez.Error.NotReady", "", FailedStep::Adapter, kOff},
    {"org.bluez.Error.NotAvailable", "", FailedStep::Missing, kNotSerial},
    {"org.bluez.Error.DoesNotExist", "", FailedStep::Missing, kNotSerial},
    {"org.freedesktop.DBus.Error.UnknownObject", "", FailedStep::Missing, kUnknown},
    {"org.freedesktop.DBus.Error.UnknownMethod", "", FailedStep::Missing, kUnknown},
    {"org.bluez.Error.NotAuthorized", "", FailedStep::Rights, kNoRights},
    {"org.bluez.Error.NotPermitted", "", FailedStep::Rights, kNoRights},
};

// The same for whatever is asked of the service.
constexpr Row kAnyCall[] = {
    {"org.freedesktop.DBus.Error.AccessDenied", "", FailedStep::Rights, kNoRights},
    {"org.freedesktop.DBus.Error.NameHasNoOwner", "", FailedStep::Adapter, kNoService},
    {"org.freedesktop.DBus.Error.ServiceUnknown", "", FailedStep::Adapter, kNoService},
    {"org.freedesktop.DBus.Error.NoReply", "", FailedStep::Adapter, "the Bluetooth service has stopped"},
};

template <std::size_t N>
const Row* rowOf(const Row (&rows)[N], std::string_view error, std::string_view text) {
    for (const Row& row : rows) {
        if ((row.error.empty() || row.error == error) && text.find(row.text) != std::string_view::npos)
            return &row;
    }
    return nullptr;
}

BluezProblem problemOf(const Row* row, const char* otherwise, std::string_view error, std::string_view text) {
    if (row != nullptr) return {row->step, row->line};
    return {FailedStep::Other, otherwise + printableText(text.empty() ? error : text)};
}

std::string_view viewOf(const char* text) {
    return text != nullptr ? text : std::string_view();
}

}  // namespace

BluezProblem noBus(int error) {
    return {FailedStep::Adapter, "no Bluetooth without the system's message bus, which cannot be reached: " +
                                     std::generic_category().message(error)};
}

BluezProblem silentBus() {
    return {FailedStep::NoAnswer, "no Bluetooth without the system's message bus, which does not answer"};
}

BluezProblem noService() {
    return {FailedStep::Adapter, kNoService};
}

BluezProblem silentService() {
    return {FailedStep::NoAnswer,
            "the Bluetooth service does not answer: restart it with 'systemctl restart bluetooth'"};
}

BluezProblem problemOfService(const char* error, const char* message) {
    return problemOf(rowOf(kAnyCall, viewOf(error), viewOf(message)),
                     "the Bluetooth service says: ", viewOf(error), viewOf(message));
}

BluezProblem problemOfAdapters(const BluezObjects& objects) {
    if (objects.adapters.empty()) return {FailedStep::Adapter, "this computer has no Bluetooth adapter"};
    const bool on = std::any_of(objects.adapters.begin(), objects.adapters.end(),
                                [](const auto& adapter) { return adapter.second.powered; });
    return on ? BluezProblem{} : BluezProblem{FailedStep::Adapter, kOff};
}

BluezProblem problemOfDevice(const BluezDevice& device, const BluezObjects& objects) {
    const auto adapter = objects.adapters.find(device.adapter);
    if (adapter == objects.adapters.end() || !adapter->second.powered)
        return {FailedStep::Adapter, "the Bluetooth adapter that it is paired with is switched off"};
    if (!device.paired) return unpairedDevice();
    if (device.blocked)
        return {FailedStep::Rights,
                "it is blocked on this computer: 'bluetoothctl unblock " + device.address + "' lets it in"};
    if (!device.serialPort) return {FailedStep::Missing, kNotSerial};
    return {};
}

BluezProblem noDevice() {
    return {FailedStep::Pairing, "no paired device offers a serial port: switch the tester on and pair it"};
}

BluezProblem unknownDevice() {
    return {FailedStep::Missing, kUnknown};
}

BluezProblem unpairedDevice() {
    return {FailedStep::Pairing, "it is not paired with this computer: pair it in the Bluetooth settings"};
}

BluezProblem problemOfConnecting(const char* error, const char* message) {
    const Row* row = rowOf(kAnyCall, viewOf(error), viewOf(message));
    if (row == nullptr) row = rowOf(kConnecting, viewOf(error), viewOf(message));
    return problemOf(row, "it could not be connected: ", viewOf(error), viewOf(message));
}

BluezProblem takenElsewhere() {
    return {FailedStep::Busy, "another program on this computer took the connection: end that program"};
}

BluezProblem noAnswerWithin(Scheduler::Duration limit) {
    return {FailedStep::NoAnswer,
            "no answer within " +
                std::to_string(std::chrono::duration_cast<std::chrono::seconds>(limit).count()) + " s"};
}

BluezProblem openedButNoTester() {
    return {FailedStep::NoFrames, "connected, but nothing of a tester came"};
}

}  // namespace kestrix::platform
