#include "platform/AccessorySources.h"

#include <QTcpSocket>

#include <iterator>
#include <utility>

#include "platform/BluetoothAddress.h"
#include "platform/BluetoothModule.h"
#include "platform/DialingSource.h"
#include "platform/PrintableText.h"
#include "platform/ReplayDialer.h"
#include "platform/SerialDialer.h"
#include "platform/StreamSocketDialer.h"

namespace kestrix::platform {
namespace {

struct Surroundings {
    Scheduler& scheduler;
    const SimulatorFactory& simulator;
    const LastUsed& lastUsed;
};

struct DialerOrProblem {
    std::unique_ptr<Dialer> dialer;
    std::string problem;
    bool wrongUri = true;
};

// A maker takes the options that it knows out of the URI.
using Maker = DialerOrProblem (*)(AccessoryUri& uri, const Surroundings& surroundings);

constexpr int kDefaultBaud = 9600;
constexpr int kHighestBaud = 4'000'000;

DialerOrProblem makeBluetooth(AccessoryUri& uri, const Surroundings& surroundings) {
    const std::string address = bluetoothAddress(uri.target);
    if (address.empty() && !uri.target.empty())
        return {nullptr, "expected bluetooth: or an address, as in bluetooth:AA:BB:CC:DD:EE:FF"};
    const BluetoothParts parts = loadBluetooth();
    if (parts.makeDialer == nullptr) return {nullptr, parts.problem, false};
    return {parts.makeDialer(address, surroundings.lastUsed, surroundings.scheduler), {}};
}

DialerOrProblem makeTcp(AccessoryUri& uri, const Surroundings&) {
    const std::optional<HostAndPort> address = parseHostAndPort(uri.target);
    if (!address) return {nullptr, "expected tcp://host:port with a port from 1 to 65535"};
    return {std::make_unique<StreamSocketDialer<QTcpSocket>>([address = *address](QTcpSocket& socket) {
                socket.connectToHost(QString::fromStdString(address.host), address.port);
            }),
            {}};
}

DialerOrProblem makeSerial(AccessoryUri& uri, const Surroundings&) {
    if (uri.target.empty()) return {nullptr, "expected serial:PORT, as in serial:/dev/rfcomm0?baud=9600"};
    const std::optional<std::string> text = takeOption(uri, "baud");
    const std::optional<int> baud = text ? parseNumber(*text, 1, kHighestBaud) : kDefaultBaud;
    if (!baud) return {nullptr, "the baud rate is not a number from 1 to " + std::to_string(kHighestBaud)};
    return {std::make_unique<SerialDialer>(QString::fromStdString(uri.target), *baud), {}};
}

DialerOrProblem makeReplay(AccessoryUri& uri, const Surroundings& surroundings) {
    if (uri.target.empty()) return {nullptr, "expected replay:FILE, as in replay:house.kxc?speed=max"};
    const std::optional<double> speed = parsePlaySpeed(takeOption(uri, "speed").value_or("1"));
    if (!speed) return {nullptr, kWrongPlaySpeed};
    const QString path = QString::fromStdString(uri.target);
    std::string problem;
    if (!makeReplayProducer(path, *speed, problem)) return {nullptr, problem, false};
    auto make = [path, speed = *speed](std::string& why) { return makeReplayProducer(path, speed, why); };
    return {std::make_unique<GeneratedDialer>(std::move(make), surroundings.scheduler), {}};
}

DialerOrProblem makeSimulator(AccessoryUri& uri, const Surroundings& surroundings) {
    if (!surroundings.simulator) return {nullptr, "there is no simulator in this program", false};
    SimulatorOrProblem made = surroundings.simulator(uri);
    if (!made.producers) return {nullptr, made.problem, made.wrongUri};
    return {std::make_unique<GeneratedDialer>(std::move(made.producers), surroundings.scheduler), {}};
}

struct Row {
    SourceKind kind;
    Maker make;
};

// The one list of kinds: help texts, errors and tests read it.
constexpr Row kRows[] = {
    {{"bluetooth", "bluetooth:ADDRESS", "bluetooth:"}, makeBluetooth},
    {{"tcp", "tcp://host:port", "tcp://192.168.1.20:4000"}, makeTcp},
    {{"serial", "serial:PORT?baud=9600", "serial:/dev/rfcomm0"}, makeSerial},
    {{"replay", "replay:FILE?speed=1", "replay:site.kxc"}, makeReplay},
    {{"simulator", "simulator:SCENARIO", "simulator:"}, makeSimulator},
};

// "a, b and c"
std::string listed(std::string_view SourceKind::*text, const char* lastJoint) {
    std::string list;
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        if (i > 0) list += i + 1 < std::size(kRows) ? ", " : lastJoint;
        list += kRows[i].kind.*text;
    }
    return list;
}

DialerOrProblem makeDialer(AccessoryUri& uri, const Surroundings& surroundings) {
    for (const Row& row : kRows) {
        if (row.kind.scheme != uri.scheme) continue;
        DialerOrProblem made = row.make(uri, surroundings);
        if (made.dialer && !uri.options.empty())
            return {nullptr, "unknown option '" + uri.options.begin()->first + "'"};
        return made;
    }
    return {nullptr, "unknown kind of source; known are " + listed(&SourceKind::scheme, " and ")};
}

}  // namespace

std::vector<SourceKind> sourceKinds() {
    std::vector<SourceKind> kinds;
    for (const Row& row : kRows) kinds.push_back(row.kind);
    return kinds;
}

std::string sourceForms() {
    return listed(&SourceKind::form, " or ");
}

SourceOrProblem makeAccessorySource(const std::string& text, Scheduler& scheduler,
                                    const SimulatorFactory& simulator, ListenerFactory listeners,
                                    const LastUsed& lastUsed) {
    std::optional<AccessoryUri> uri = parseAccessoryUri(text);
    if (!uri)
        return {nullptr, "'" + printableText(text) + "' is not a source; expected " + sourceForms(), true};
    DialerOrProblem made = makeDialer(*uri, {scheduler, simulator, lastUsed});
    if (!made.dialer)
        return {nullptr, printableText(text) + ": " + printableText(made.problem), made.wrongUri};
    return {std::make_unique<DialingSource>(text, std::move(made.dialer), std::move(listeners), scheduler),
            {},
            false};
}

}  // namespace kestrix::platform
