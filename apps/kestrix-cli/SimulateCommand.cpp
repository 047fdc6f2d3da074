#include "apps/kestrix-cli/SimulateCommand.h"

#include <fmt/format.h>
#include <QCoreApplication>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "apps/common/SimulatorSource.h"
#include "apps/common/TerminationSignals.h"
#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/PtyLine.h"
#include "apps/kestrix-cli/TcpLine.h"
#include "platform/AccessoryUri.h"
#include "simulator/BuiltinScenarios.h"

namespace kestrix::cli {

ExitStatus listScenarios() {
    Output output;
    for (const std::string_view name : simulator::builtinScenarioNames())
        output.write(std::string(name) + "\n");
    return output.status();
}

namespace {

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
    return {std::move(pty), "serial:" + link, {}};
}

}  // namespace

ExitStatus simulate(const SimulateOptions& options) {
    const auto speed = platform::parsePlaySpeed(options.speed);
    if (!speed) return fail("the speed is neither \"max\" nor a number from 0.001 to 100000", kWrongUsage);
    const auto seed = platform::parseNumber(options.seed, 0, std::numeric_limits<int>::max());
    if (!seed) return fail("the seed is not a whole number from 0 on", kWrongUsage);
    std::string problem;
    auto producers =
        app::simulatorProducers(options.scenario, static_cast<std::uint64_t>(*seed), *speed, problem);
    if (!producers) return fail(options.scenario + ": " + problem);

    platform::QtScheduler scheduler;
    const Place place = options.tcp ? openTcp(*options.tcp, std::move(producers), scheduler)
                                    : openPty(*options.pty, std::move(producers), scheduler);
    if (!place.line)
        return fail(options.tcp.value_or(options.pty.value_or("")) + ": " + place.problem,
                    place.wrongUsage ? kWrongUsage : kFailed);

    // Before it says that it is there: whoever reads that may end it at once.
    const app::TerminationSignals signals([] { QCoreApplication::quit(); });
    Output output;
    output.write("the tester is at " + place.uri + "\n");
    if (output.good()) QCoreApplication::exec();
    return output.status();
}

}  // namespace kestrix::cli
