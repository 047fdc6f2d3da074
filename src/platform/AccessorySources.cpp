#include "platform/AccessorySources.h"

#include <QFileInfo>

#include <utility>

#include "platform/DialingSource.h"
#include "platform/ReplayDialer.h"
#include "platform/SerialDialer.h"
#include "platform/TcpDialer.h"

namespace kestrix::platform {
namespace {

struct DialerOrProblem {
    std::unique_ptr<Dialer> dialer;
    std::string problem;
    bool wrongUri = true;
};

constexpr int kDefaultBaud = 9600;
constexpr int kHighestBaud = 4'000'000;

DialerOrProblem makeTcp(AccessoryUri& uri) {
    const std::optional<HostAndPort> address = parseHostAndPort(uri.target);
    if (!address) return {nullptr, "expected tcp://host:port with a port from 1 to 65535"};
    return {std::make_unique<TcpDialer>(QString::fromStdString(address->host), address->port), {}};
}

DialerOrProblem makeSerial(AccessoryUri& uri) {
    if (uri.target.empty()) return {nullptr, "expected serial:PORT, as in serial:/dev/rfcomm0?baud=9600"};
    const std::optional<std::string> text = takeOption(uri, "baud");
    const std::optional<int> baud = text ? parseNumber(*text, 1, kHighestBaud) : kDefaultBaud;
    if (!baud) return {nullptr, "the baud rate is not a number from 1 to " + std::to_string(kHighestBaud)};
    return {std::make_unique<SerialDialer>(QString::fromStdString(uri.target), *baud), {}};
}

DialerOrProblem makeReplay(AccessoryUri& uri, Scheduler& scheduler) {
    if (uri.target.empty()) return {nullptr, "expected replay:FILE, as in replay:house.kxc?speed=max"};
    const std::optional<double> speed = parsePlaySpeed(takeOption(uri, "speed").value_or("1"));
    if (!speed) return {nullptr, "the speed is neither \"max\" nor a number from 0.001 to 100000"};
    const QString path = QString::fromStdString(uri.target);
    std::string problem;
    if (!makeReplayProducer(path, *speed, problem)) return {nullptr, problem, false};
    auto make = [path, speed = *speed](std::string& why) { return makeReplayProducer(path, speed, why); };
    return {std::make_unique<GeneratedDialer>(std::move(make), scheduler), {}};
}

DialerOrProblem makeSimulator(AccessoryUri& uri, Scheduler& scheduler, const SimulatorFactory& simulator) {
    std::string problem;
    GeneratedDialer::MakeProducer make = simulator ? simulator(uri, problem) : nullptr;
    if (!make) return {nullptr, simulator ? problem : "there is no simulator in this program", false};
    return {std::make_unique<GeneratedDialer>(std::move(make), scheduler), {}};
}

DialerOrProblem makeDialer(AccessoryUri& uri, Scheduler& scheduler, const SimulatorFactory& simulator) {
    if (uri.scheme == "tcp") return makeTcp(uri);
    if (uri.scheme == "serial") return makeSerial(uri);
    if (uri.scheme == "replay") return makeReplay(uri, scheduler);
    if (uri.scheme == "simulator") return makeSimulator(uri, scheduler, simulator);
    return {nullptr, "unknown kind of source; known are tcp, serial, replay and simulator"};
}

}  // namespace

SourceOrProblem makeAccessorySource(const std::string& text, Scheduler& scheduler,
                                    const SimulatorFactory& simulator) {
    std::optional<AccessoryUri> uri = parseAccessoryUri(text);
    if (!uri)
        return {
            nullptr,
            "'" + text + "' is not a source; expected something like tcp://host:port or simulator:", true};
    DialerOrProblem made = makeDialer(*uri, scheduler, simulator);
    if (made.dialer && !uri->options.empty())
        made = {nullptr, "unknown option '" + uri->options.begin()->first + "'"};
    if (!made.dialer) return {nullptr, text + ": " + made.problem, made.wrongUri};
    return {std::make_unique<DialingSource>(text, text, std::move(made.dialer), scheduler), {}, false};
}

}  // namespace kestrix::platform
