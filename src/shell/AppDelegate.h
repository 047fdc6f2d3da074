#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "live/MainViewController.h"
#include "platform/AccessoryManager.h"
#include "platform/AccessorySources.h"
#include "platform/DateText.h"
#include "platform/DocumentsFolder.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"
#include "storage/ServiceDao.h"
#include "ui/ScreenStack.h"
#include "ui/Services.h"
#include "ui/TextMeasure.h"

namespace kestrix::shell {

// What the user chose on the command line, and what only the program can supply.
struct LaunchOptions {
    std::vector<std::string> uris;  // where to look for testers
    QString documents;              // folder of the database; empty: the user's own
    QString settings;               // ini file; empty: the user's own
    platform::SimulatorFactory simulator;
    link::Wait wait = link::blockingWait;  // before a lost tester's session is closed
    std::chrono::milliseconds slideDuration = ui::ScreenStack::kSlideDuration;
    platform::Scheduler* scheduler = nullptr;  // not owned; none: the event loop's
    std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
};

// The application: makes everything, joins it, and starts it. Needs a QGuiApplication, but no window.
class AppDelegate {
  public:
    explicit AppDelegate(LaunchOptions options);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    // Makes the tables at the first launch, loads the live screen, and begins to look for testers. False, and
    // `problem` says why in one line, when a tester's URI is wrong; nothing is made then.
    bool applicationDidFinishLaunchingWithOptions();

    const std::string& problem() const { return problem_; }

    live::MainViewController& mainView() { return mainView_; }
    ui::ScreenStack& screens() { return screens_; }
    ui::Notice& notice() { return notice_; }
    ui::Alerts& alerts() { return alerts_; }
    platform::AccessoryManager& accessories() { return accessories_; }

  private:
    using Sources = std::vector<std::unique_ptr<platform::AccessorySource>>;

    ui::Services makeServices();
    platform::Scheduler& scheduler();
    // None, with the reason in `problem_`, when one cannot be made.
    std::optional<Sources> makeSources();

    LaunchOptions options_;
    std::string problem_;
    platform::QtScheduler eventLoop_;
    platform::UserDefaults defaults_;
    platform::DocumentsFolder documents_;
    platform::AccessoryManager accessories_;
    platform::DateText timeText_;
    ui::FontTextMeasure textMeasure_;
    std::unique_ptr<storage::ServiceDao> dataDB_;  // at the first launch only
    ui::Notice notice_;
    ui::Alerts alerts_;
    ui::ScreenStack screens_;
    live::MainViewController mainView_;
};

}  // namespace kestrix::shell
