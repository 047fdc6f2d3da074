#include "platform/BluezProblems.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "platform/BluezLines.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

// What the service says, by the error's name, or by a part of its text where one name stands for many.
struct Row {
    std::string_view error;  // empty: any
    std::string_view text;   // empty: any
    BluezLine line;
};

constexpr Row kConnecting[] = {
    {"", "page-timeout", BluezLine::Away},
    {"", "Page Timeout", BluezLine::Away},
    {"", "Host is down", BluezLine::Away},
    {"", "timed out", BluezLine::Away},
    {"", "br-connection-timeout", BluezLine::Away},
    {"", "No route to host", BluezLine::Away},
    {"", "adapter-not-powered", BluezLine::Off},
    {"", "key-missing", BluezLine::PairAgain},
    {"", "Invalid exchange", BluezLine::PairAgain},
    {"", "uthentication", BluezLine::PairAgain},
    {"", "profile-unavailable", BluezLine::NotSerial},
    {"", "Protocol not available", BluezLine::NotSerial},
    {"", "refused", BluezLine::Refused},
    {"", "aborted-by-remote", BluezLine::Refused},
    {"", "reset by peer", BluezLine::Refused},
    {"", "connection-busy", BluezLine::Busy},
    {"", "resource busy", BluezLine::Busy},
    {"", "already in progress", BluezLine::Busy},
    {"", "already-connected", BluezLine::Busy},
    {"", "concurrent-connection-limit", BluezLine::Busy},
    {"org.bluez.Error.InProgress", "", BluezLine::Busy},
    {"org.bluez.Error.AlreadyConnected", "", BluezLine::Busy},
    {"org.bluez.Error.NotReady", "", BluezLine::Off},
    {"org.bluez.Error.NotAvailable", "", BluezLine::NotSerial},
    {"org.bluez.Error.DoesNotExist", "", BluezLine::NotSerial},
    {"org.freedesktop.DBus.Error.UnknownObject", "", BluezLine::Unknown},
    {"org.freedesktop.DBus.Error.UnknownMethod", "", BluezLine::Unknown},
    {"org.bluez.Error.NotAuthorized", "", BluezLine::NoRights},
    // So it answers whoever comes second for the same profile.
    {"org.bluez.Error.NotPermitted", "already registered", BluezLine::ProfileTaken},
    {"org.bluez.Error.NotPermitted", "", BluezLine::NoRights},
};

// The same for whatever is asked of the service.
constexpr Row kAnyCall[] = {
    {"org.freedesktop.DBus.Error.AccessDenied", "", BluezLine::NoRights},
    {"org.freedesktop.DBus.Error.NameHasNoOwner", "", BluezLine::NoService},
    {"org.freedesktop.DBus.Error.ServiceUnknown", "", BluezLine::NoService},
    {"org.freedesktop.DBus.Error.NoReply", "", BluezLine::StoppedService},
};

template <std::size_t N>
const Row* rowOf(const Row (&rows)[N], std::string_view error, std::string_view text) {
    for (const Row& row : rows) {
        if ((row.error.empty() || row.error == error) && text.find(row.text) != std::string_view::npos)
            return &row;
    }
    return nullptr;
}

// detail: what stands for the '%' of the words.
BluezProblem problemOf(BluezLine line, std::string_view detail = {}) {
    const BluezWords& words = kBluezWords[static_cast<std::size_t>(line)];
    std::string text = std::string(words.what) + ": " + words.toDo;
    if (const std::size_t place = text.find('%'); place != std::string::npos)
        text.replace(place, 1, printableText(detail));
    return {words.step, text};
}

BluezProblem problemOf(const Row* row, BluezLine otherwise, std::string_view error, std::string_view text) {
    return row != nullptr ? problemOf(row->line) : problemOf(otherwise, text.empty() ? error : text);
}

std::string_view viewOf(const char* text) {
    return text != nullptr ? text : std::string_view();
}

}  // namespace

BluezProblem noBus(int error) {
    return problemOf(BluezLine::NoBus, std::generic_category().message(error));
}

BluezProblem silentBus() {
    return problemOf(BluezLine::SilentBus);
}

BluezProblem noService() {
    return problemOf(BluezLine::NoService);
}

BluezProblem silentService() {
    return problemOf(BluezLine::SilentService);
}

BluezProblem problemOfService(const char* error, const char* message) {
    return problemOf(rowOf(kAnyCall, viewOf(error), viewOf(message)), BluezLine::ServiceSays, viewOf(error),
                     viewOf(message));
}

BluezProblem problemOfAdapters(const BluezObjects& objects) {
    if (objects.adapters.empty()) return problemOf(BluezLine::NoAdapter);
    const bool on = std::any_of(objects.adapters.begin(), objects.adapters.end(),
                                [](const auto& adapter) { return adapter.second.powered; });
    return on ? BluezProblem{} : problemOf(BluezLine::Off);
}

BluezProblem problemOfDevice(const BluezDevice& device, const BluezObjects& objects) {
    const auto adapter = objects.adapters.find(device.adapter);
    if (adapter == objects.adapters.end() || !adapter->second.powered)
        return problemOf(BluezLine::AdapterOff);
    if (!device.paired) return unpairedDevice();
    if (device.blocked) return problemOf(BluezLine::Blocked, device.address);
    if (!device.serialPort) return problemOf(BluezLine::NotSerial);
    return {};
}

BluezProblem noDevice() {
    return problemOf(BluezLine::NoDevice);
}

BluezProblem unknownDevice() {
    return problemOf(BluezLine::Unknown);
}

BluezProblem unpairedDevice() {
    return problemOf(BluezLine::Unpaired);
}

BluezProblem problemOfConnecting(const char* error, const char* message) {
    const Row* row = rowOf(kAnyCall, viewOf(error), viewOf(message));
    if (row == nullptr) row = rowOf(kConnecting, viewOf(error), viewOf(message));
    return problemOf(row, BluezLine::NotConnected, viewOf(error), viewOf(message));
}

BluezProblem takenElsewhere() {
    return problemOf(BluezLine::TakenElsewhere);
}

BluezProblem noAnswerWithin(Scheduler::Duration limit) {
    return problemOf(BluezLine::NoAnswer,
                     std::to_string(std::chrono::duration_cast<std::chrono::seconds>(limit).count()));
}

BluezProblem openedButNoTester() {
    return problemOf(BluezLine::NoTester);
}

}  // namespace kestrix::platform
