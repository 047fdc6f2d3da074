// What each source sees; for a tester that is not found, which step fails.

#include <fmt/format.h>
#include <QFileInfo>
#include <QSerialPortInfo>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/common/SimulatorSource.h"
#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/TesterProbe.h"
#include "apps/kestrix-cli/UriHelp.h"
#include "link/FrameListener.h"
#include "platform/AccessorySources.h"

namespace kestrix::cli {
namespace {

constexpr int kSecondsToLook = 5;

// Ports are listed and not opened: opening one may disturb what is behind it.
Ending listWhatIsThere(Runner& runner) {
    runner.output().line("simulator:  the built-in tester");
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
        const QString description =
            port.description().isEmpty() ? QStringLiteral("a serial port") : port.description();
        const QFileInfo node(port.systemLocation());
        const bool allowed = node.isReadable() && node.isWritable();
        runner.output().line(fmt::format("serial:{}  {}{}", port.systemLocation().toStdString(),
                                         description.toStdString(), allowed ? "" : " (no right to open it)"));
    }
    return done();
}

Ending devices(Runner& runner, const std::vector<std::string>& uris) {
    if (uris.empty()) return listWhatIsThere(runner);
    runner.limitUnlessGiven(kSecondsToLook);

    EventLoop loop(runner);
    std::vector<std::unique_ptr<platform::AccessorySource>> sources;
    sources.reserve(uris.size());
    for (const std::string& uri : uris) {
        platform::SourceOrProblem made =
            platform::makeAccessorySource(uri, loop.scheduler, app::simulatorSource, link::makeFrameListener);
        if (!made.source) return {made.wrongUri ? kWrongUsage : kFailed, made.problem};
        sources.push_back(std::move(made.source));
    }
    std::size_t missing = sources.size();
    std::vector<std::unique_ptr<TesterProbe>> probes;
    probes.reserve(sources.size());
    for (auto& source : sources) {
        probes.push_back(std::make_unique<TesterProbe>(std::move(source), [&missing] {
            if (--missing == 0) EventLoop::quit();
        }));
    }
    loop.run();

    for (const auto& probe : probes)
        runner.output().line(fmt::format("{}  {}", probe->uri(), probe->report()));
    if (missing == 0) return done();
    return failed(fmt::format("{} of {} not found", missing, probes.size()));
}

Action describeDevices(CommandOptions& options) {
    auto uris = std::make_shared<std::vector<std::string>>();
    options.words("uri", *uris, kUriHelp);
    return [uris](Runner& runner) { return devices(runner, *uris); };
}

}  // namespace

extern const Command devicesCommand;
const Command devicesCommand{"devices", "What each source sees, or which step fails", AtSignal::CutsItShort,
                             describeDevices};

}  // namespace kestrix::cli
