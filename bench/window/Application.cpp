#include "bench/window/Application.h"

#include <QLoggingCategory>

#include <cstdlib>

#include "apps/common/SimulatorSource.h"
#include "platform/Log.h"
#include "ui/SystemFont.h"

namespace kestrix::bench {

Application::Application(const std::vector<std::string>& uris, platform::Scheduler* scheduler)
    : delegate_(options(uris, scheduler)), window_(delegate_) {
    if (!delegate_.applicationDidFinishLaunchingWithOptions() || !window_.load()) std::exit(1);
    window_.show();
}

shell::LaunchOptions Application::options(const std::vector<std::string>& uris,
                                          platform::Scheduler* scheduler) const {
    shell::LaunchOptions options;
    options.uris = uris;
    options.documents = folder_.path();
    options.settings = folder_.filePath(QStringLiteral("kestrix.ini"));
    options.simulator = app::simulatorSource;
    options.scheduler = scheduler;
    return options;
}

void prepareApplication() {
    platform::installLogFormat();
    QLoggingCategory::setFilterRules(QStringLiteral("kestrix.*.info=false"));
    ui::installSystemFont();
}

}  // namespace kestrix::bench
