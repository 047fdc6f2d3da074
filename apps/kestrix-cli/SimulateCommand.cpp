// A tester in software for other programs, until it is interrupted. Says on standard output where it is.

#include <fmt/core.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "apps/common/SimulatorSource.h"
#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/PtyLine.h"
#include "apps/kestrix-cli/TcpLine.h"
#include "platform/AccessoryUri.h"
#include "simulator/BuiltinScenarios.h"

namespace kestrix::cli {
namespace {

struct SimulateOptions {
    std::optional<std::string> tcp;  // HOST:PORT; port 0 takes a free one
    std::optional<std::string> pty;  // name of the serial port to make
    bool list = false;
    std::string scenario;
    std::string seed = "1";
    std::string speed = "1";
};

Ending listScenarios(Runner& runner) {
    for (const std::string_view name : simulator::builtinScenarioNames()) runner.output().line(name);
    return done();
}

// A line, ready to play, and where it is; or why there is none.
struct Place {
    std::unique_ptr<LineEnd> line;
    std::string uri;
    std::string problem;
    bool wrongUsage = false;
};

Place openTcp(const std::string& text, platform::GeneratedDialer::MakeProducer producers,
              platform::Scheduler& scheduler) {
    const auto address = platform::parseHostAndPort(text, 0);
    if (!address) return {nullptr, {}, "expected HOST:PORT with a port from 0 to 65535", true};
    auto tcp = std::make_unique<TcpLine>(std::move(producers), scheduler);
    if (std::string problem = tcp->listen(address->host, address->port); !problem.empty())
        return {nullptr, {}, problem};
    std::string uri = fmt::format("tcp://{}:{}", text.substr(0, text.rfind(':')), tcp->port());
    return {std::move(tcp), std::move(uri), {}};
}

Place openPty(const std::string& link, platform::GeneratedDialer::MakeProducer producers,
              platform::Scheduler& scheduler) {
    if (link.empty()) return {nullptr, {}, "expected a name for the serial port", true};
    auto pty = std::make_unique<PtyLine>(std::move(producers), scheduler);
    if (std::string problem = pty->open(link); !problem.empty()) return {nullptr, {}, problem};
    std::string uri = "serial:" + pty->name();
    return {std::move(pty), std::move(uri), {}};
}

Ending simulate(Runner& runner, const SimulateOptions& options) {
    const auto speed = platform::parsePlaySpeed(options.speed);
    if (!speed) return wrongUsage(platform::kWrongPlaySpeed);
    const auto seed = platform::parseNumber(options.seed, 0, std::numeric_limits<int>::max());
    if (!seed) return wrongUsage("the seed is not a whole number from 0 on");
    std::string problem;
    auto producers =
        app::simulatorProducers(options.scenario, static_cast<std::uint64_t>(*seed), *speed, problem);
    if (!producers) return failed(options.scenario + ": " + problem);

    runner.limitUnlessGiven(0);
    EventLoop loop(runner);
    const Place place = options.tcp ? openTcp(*options.tcp, std::move(producers), loop.scheduler)
                                    : openPty(*options.pty, std::move(producers), loop.scheduler);
    if (!place.line)
        return {place.wrongUsage ? kWrongUsage : kFailed,
                options.tcp.value_or(options.pty.value_or("")) + ": " + place.problem};

    runner.output().line("the tester is at " + place.uri);
    loop.run();
    return done();
}

Action describeSimulate(CommandOptions& options) {
    auto given = std::make_shared<SimulateOptions>();
    options.text("--tcp", "HOST:PORT", given->tcp, "Serve it at this address");
    options.text("--pty", "LINK", given->pty, "Make a serial port of this name");
    options.flag("--list", given->list, "Name the built-in scenarios");
    options.exactlyOneOf({"--tcp", "--pty", "--list"});
    options.text("--scenario", "NAME|FILE", given->scenario, "Built-in scenario or scenario file");
    options.text("--seed", "N", given->seed, "Seed of all that happens by chance");
    options.text("--speed", "N|max", given->speed, "Times real time, or max");
    return [given](Runner& runner) { return given->list ? listScenarios(runner) : simulate(runner, *given); };
}

}  // namespace

extern const Command simulateCommand;
const Command simulateCommand{"simulate", "A tester in software for other programs", AtSignal::EndsIt,
                              describeSimulate};

}  // namespace kestrix::cli
