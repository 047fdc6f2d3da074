#include "apps/kestrix-cli/SimulateCommand.h"

#include <fmt/format.h>
#include <QCoreApplication>

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

ExitStatus simulate(const SimulateOptions& options) {
    const auto speed = platform::parsePlaySpeed(options.speed);
    if (!speed) return fail("the speed is neither \"max\" nor a number from 0.001 to 100000", kWrongUsage);
    std::string problem;
    auto producers = app::simulatorProducers(options.scenario, options.seed, *speed, problem);
    if (!producers) return fail(options.scenario + ": " + problem);

    platform::QtScheduler scheduler;
    std::unique_ptr<LineEnd> line;
    std::string place;
    if (!options.tcp.empty()) {
        const auto address = platform::parseHostAndPort(options.tcp, 0);
        if (!address)
            return fail(options.tcp + ": expected HOST:PORT with a port from 0 to 65535", kWrongUsage);
        auto tcp = std::make_unique<TcpLine>(std::move(producers), scheduler);
        problem = tcp->listen(address->host, address->port);
        place = fmt::format("tcp://{}:{}", options.tcp.substr(0, options.tcp.rfind(':')), tcp->port());
        line = std::move(tcp);
    } else {
        auto pty = std::make_unique<PtyLine>(std::move(producers), scheduler);
        problem = pty->open(options.pty);
        place = "serial:" + options.pty;
        line = std::move(pty);
    }
    if (!problem.empty()) return fail((options.tcp.empty() ? options.pty : options.tcp) + ": " + problem);

    Output output;
    output.write("the tester is at " + place + "\n");
    const app::TerminationSignals signals([] { QCoreApplication::quit(); });
    if (output.good()) QCoreApplication::exec();
    return output.status();
}

}  // namespace kestrix::cli
