#include "apps/kestrix-cli/Link.h"

#include <QFileInfo>
#include <QString>

#include <utility>

#include "apps/common/SimulatorSource.h"
#include "platform/AccessorySources.h"

namespace kestrix::cli {
namespace {

// Beside the application's settings and not in them: its stored link state is its own.
QString settingsPath(const std::string& given) {
    if (!given.empty()) return QString::fromStdString(given);
    return QFileInfo(platform::UserDefaults::standardPath()).absolutePath() +
           QStringLiteral("/kestrix-cli.ini");
}

}  // namespace

Link::Link(const std::string& settings) : defaults(settingsPath(settings)), connect(manager, defaults) {}

ExitStatus Link::addSource(const std::string& uri) {
    platform::SourceOrProblem made = platform::makeAccessorySource(uri, scheduler, app::simulatorSource);
    if (!made.source) return fail(made.problem, made.wrongUri ? kWrongUsage : kFailed);
    manager.addSource(std::move(made.source));
    return kDone;
}

std::string Link::problem() const {
    for (const auto& source : manager.sources()) {
        if (!source->problem().empty()) return source->problem();
    }
    return {};
}

}  // namespace kestrix::cli
