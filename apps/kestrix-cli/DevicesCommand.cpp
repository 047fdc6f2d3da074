// What each source sees; for a tester that is not found, which step fails.

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/common/SimulatorSource.h"
#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/Link.h"
#include "apps/kestrix-cli/LookingTime.h"
#include "apps/kestrix-cli/TesterProbe.h"
#include "apps/kestrix-cli/UriHelp.h"
#include "link/FrameListener.h"
#include "platform/AccessoryListings.h"
#include "platform/AccessorySources.h"

namespace kestrix::cli {
namespace {

// What can be seen of it is known, or why nothing can.
bool isKnown(const platform::AccessoryListing& listing) {
    return !listing.seen().empty() || !listing.problem().empty();
}

void show(Runner& runner, const char* scheme, const platform::AccessoryListing& listing) {
    for (const platform::SeenAccessory& seen : listing.seen()) {
        const std::string problem = seen.problem.empty() ? "" : fmt::format(" ({})", seen.problem);
        runner.output().line(fmt::format("{}  {}, {}{}", seen.uri, seen.name, seen.state, problem));
    }
    if (!listing.seen().empty()) return;
    const std::string problem = listing.problem();
    runner.output().line(
        fmt::format("{}  none ({})", scheme, problem.empty() ? std::string("no answer yet") : problem));
}

// Nothing is opened or connected: that may disturb what is there.
Ending listWhatIsThere(Runner& runner) {
    runner.limitUnlessGiven(secondsToLookAt({}));
    EventLoop loop(runner);
    const auto bluetooth = platform::makeBluetoothListing(loop.scheduler);
    const auto serial = platform::makeSerialListing();
    if (!isKnown(*bluetooth)) {
        bluetooth->changed = [&] {
            if (isKnown(*bluetooth)) EventLoop::quit();
        };
        loop.run();
    }
    show(runner, "bluetooth:", *bluetooth);
    show(runner, "serial:", *serial);
    runner.output().line("simulator:  the built-in tester");
    return done();
}

Ending devices(Runner& runner, const std::vector<std::string>& uris) {
    if (uris.empty()) return listWhatIsThere(runner);
    runner.limitUnlessGiven(secondsToLookAt(uris));

    EventLoop loop(runner);
    // Which one is looked at first is read, and who only looks changes nothing in it.
    platform::UserDefaults settings(linkSettingsPath({}), platform::UserDefaults::Start::LooksOnly);
    platform::LastUsed lastUsed = platform::lastUsedIn(settings);
    lastUsed.write = {};
    std::vector<std::unique_ptr<platform::AccessorySource>> sources;
    sources.reserve(uris.size());
    for (const std::string& uri : uris) {
        platform::SourceOrProblem made = platform::makeAccessorySource(
            uri, loop.scheduler, app::simulatorSource, link::makeFrameListener, lastUsed);
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
