#include "shell/AppDelegate.h"

#include <QCoreApplication>

#include <utility>

#include "storage/FirstLaunch.h"

namespace kestrix::shell {
namespace {

QString orStandard(const QString& chosen, const QString& standard) {
    return chosen.isEmpty() ? standard : chosen;
}

}  // namespace

AppDelegate::AppDelegate(LaunchOptions options)
    : options_(std::move(options)),
      defaults_(orStandard(options_.settings, platform::UserDefaults::standardPath())),
      documents_(orStandard(options_.documents, platform::DocumentsFolder::standardPath())),
      timeText_(ui::kTimePattern),
      notice_(scheduler()),
      screens_(options_.slideDuration),
      mainView_(makeServices()) {
    screens_.setMissing([this](ui::ScreenId) {
        notice_.show(QCoreApplication::translate("AppDelegate", "Not available in this version"));
    });
}

bool AppDelegate::applicationDidFinishLaunchingWithOptions() {
    std::optional<Sources> sources = makeSources();
    if (!sources) return false;
    documents_.ensure();
    dataDB_ = storage::createTablesOnFirstLaunch(defaults_, documents_);
    mainView_.loadView();
    mainView_.viewWillAppear();
    mainView_.viewDidAppear();
    for (auto& source : *sources) accessories_.addSource(std::move(source));
    return true;
}

platform::Scheduler& AppDelegate::scheduler() {
    return options_.scheduler != nullptr ? *options_.scheduler : eventLoop_;
}

std::optional<AppDelegate::Sources> AppDelegate::makeSources() {
    Sources sources;
    for (const std::string& uri : options_.uris) {
        platform::SourceOrProblem made = platform::makeAccessorySource(uri, scheduler(), options_.simulator);
        if (!made.source) {
            problem_ = made.problem;
            return std::nullopt;
        }
        sources.push_back(std::move(made.source));
    }
    return sources;
}

ui::Services AppDelegate::makeServices() {
    return {
        .defaults = defaults_,
        .documents = documents_,
        .scheduler = scheduler(),
        .navigation = screens_,
        .notice = notice_,
        .alerts = alerts_,
        .textMeasure = textMeasure_,
        .timeText = timeText_,
        .now = options_.now,
        .accessories = accessories_,
        .wait = options_.wait,
    };
}

}  // namespace kestrix::shell
