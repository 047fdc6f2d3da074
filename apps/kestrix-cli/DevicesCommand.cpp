#include "apps/kestrix-cli/DevicesCommand.h"

#include <fmt/format.h>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSerialPortInfo>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "apps/common/SimulatorSource.h"
#include "apps/common/TerminationSignals.h"
#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/TesterProbe.h"
#include "platform/AccessorySources.h"

namespace kestrix::cli {
namespace {

// Ports are listed and not opened: opening one may disturb what is behind it.
ExitStatus listWhatIsThere() {
    Output output;
    output.write("simulator:  the built-in tester\n");
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
        const QString description =
            port.description().isEmpty() ? QStringLiteral("a serial port") : port.description();
        const QFileInfo node(port.systemLocation());
        const bool allowed = node.isReadable() && node.isWritable();
        output.write(fmt::format("serial:{}  {}{}\n", port.systemLocation().toStdString(),
                                 description.toStdString(), allowed ? "" : " (no right to open it)"));
    }
    return output.status();
}

}  // namespace

ExitStatus devices(const DevicesOptions& options) {
    if (options.uris.empty()) return listWhatIsThere();
    QLoggingCategory::setFilterRules(QStringLiteral("kestrix.*.info=false"));  // the report says it

    platform::QtScheduler scheduler;
    std::vector<std::unique_ptr<platform::AccessorySource>> sources;
    sources.reserve(options.uris.size());
    for (const std::string& uri : options.uris) {
        platform::SourceOrProblem made = platform::makeAccessorySource(uri, scheduler, app::simulatorSource);
        if (!made.source) return fail(made.problem, made.wrongUri ? kWrongUsage : kFailed);
        sources.push_back(std::move(made.source));
    }
    std::size_t missing = sources.size();
    std::vector<std::unique_ptr<TesterProbe>> probes;
    probes.reserve(sources.size());
    for (auto& source : sources) {
        probes.push_back(std::make_unique<TesterProbe>(std::move(source), [&missing] {
            if (--missing == 0) QCoreApplication::quit();
        }));
    }
    const app::TerminationSignals signals([] { QCoreApplication::quit(); });
    const auto limit =
        scheduler.callAfter(std::chrono::seconds(options.seconds), [] { QCoreApplication::quit(); });
    QCoreApplication::exec();

    Output output;
    for (const auto& probe : probes) output.write(fmt::format("{}  {}\n", probe->uri(), probe->report()));
    const ExitStatus status = output.status();
    if (missing == 0 || status != kDone) return status;
    return fail(fmt::format("{} of {} not found", missing, probes.size()));
}

}  // namespace kestrix::cli
