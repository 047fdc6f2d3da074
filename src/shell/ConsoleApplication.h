#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/AccessoryManager.h"
#include "platform/AccessorySources.h"
#include "platform/DateText.h"
#include "platform/NotificationCenter.h"
#include "platform/Reachability.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"
#include "shell/ConsoleSearchViewController.h"
#include "ui/ScreenStack.h"
#include "ui/Services.h"
#include "ui/TextMeasure.h"

namespace kestrix::shell {

struct ConsoleOptions {
    std::vector<std::string> uris;  // where to look for testers
    platform::SimulatorFactory simulator;
    std::chrono::milliseconds slideDuration = ui::ScreenStack::kSlideDuration;
    platform::Scheduler* scheduler = nullptr;  // not owned; none: the event loop's
};

// The diagnostics console as an application of its own: it looks for a tester, of which any byte is a sign,
// and shows the console for as long as that is there. Nothing else takes the bytes, and nothing is kept: it
// has no database, no settings and no folder. Needs a QGuiApplication, but no window.
class ConsoleApplication {
  public:
    explicit ConsoleApplication(ConsoleOptions options);
    ConsoleApplication(const ConsoleApplication&) = delete;
    ConsoleApplication& operator=(const ConsoleApplication&) = delete;
    ~ConsoleApplication();

    // Begins to look for testers. False, and `problem` says why in one line, when one cannot be looked for.
    bool start();
    const std::string& problem() const { return problem_; }
    // Of a program that ends with the problem: 1 failed, 2 wrong usage.
    int exitStatus() const { return exitStatus_; }

    // What lies behind the console.
    ConsoleSearchViewController& search() { return *search_; }
    ui::ScreenStack& screens() { return screens_; }
    platform::AccessoryManager& accessories() { return accessories_; }

  private:
    // Nobody mails from here.
    class Unreachable final : public platform::Reachability {
        bool isReachable() const override { return false; }
        void setChanged(std::function<void()>) override {}
    };

    ui::Services makeServices();
    platform::Scheduler& scheduler();
    void accessoryDidConnect(const platform::AccessoryPtr& accessory);

    ConsoleOptions options_;
    std::string problem_;
    int exitStatus_ = 0;
    platform::QtScheduler eventLoop_;
    // What every screen is handed, and this one does not use.
    platform::UserDefaults defaults_{QString(), platform::UserDefaults::Start::LooksOnly};
    platform::DateText timeText_{ui::kTimePattern};
    platform::DateText stampText_{ui::kStampPattern};
    ui::FontTextMeasure textMeasure_;
    Unreachable network_;
    ui::Notice notice_;
    ui::Alerts alerts_;
    platform::AccessoryManager accessories_;
    ui::ScreenStack screens_;
    ui::Services services_;
    std::unique_ptr<ConsoleSearchViewController> search_;
    platform::NotificationCenter::Subscription connectSubscription_;
};

}  // namespace kestrix::shell
