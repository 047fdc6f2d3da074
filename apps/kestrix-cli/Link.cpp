#include "apps/kestrix-cli/Link.h"

#include <QFileInfo>
#include <QString>

#include <utility>

#include "apps/common/SimulatorSource.h"
#include "apps/common/TerminationSignals.h"
#include "link/FrameListener.h"
#include "platform/AccessorySources.h"

namespace kestrix::cli {

// Beside the application's settings and not in them: its stored link state is its own.
QString linkSettingsPath(const std::string& given) {
    if (!given.empty()) return QString::fromStdString(given);
    return QFileInfo(platform::UserDefaults::standardPath()).absolutePath() +
           QStringLiteral("/kestrix-cli.ini");
}

// The wait before a lost session is closed ends with the process.
Link::Link(const std::string& settings, platform::Scheduler& timers)
    : scheduler(timers),
      defaults(linkSettingsPath(settings)),
      connect(manager, defaults, app::pauseUnlessEnding) {}

Ending Link::addSource(const std::string& uri) {
    if (!defaults.problem().isEmpty()) return failed(defaults.problem().toStdString());
    platform::SourceOrProblem made = platform::makeAccessorySource(
        uri, scheduler, app::simulatorSource, link::makeFrameListener, platform::lastUsedIn(defaults));
    if (!made.source) return {made.wrongUri ? kWrongUsage : kFailed, made.problem};
    manager.addSource(std::move(made.source));
    return done();
}

std::string Link::problem() const {
    for (const auto& source : manager.sources()) {
        if (!source->problem().empty()) return source->problem();
    }
    return {};
}

}  // namespace kestrix::cli
