#pragma once

#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/AccessoryManager.h"
#include "platform/AccessorySources.h"
#include "platform/DateText.h"
#include "platform/DocumentsFolder.h"
#include "platform/MailModule.h"
#include "platform/RouteWatcher.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"
#include "shell/FolderClaim.h"
#include "shell/SidebarViewController.h"
#include "shell/TesterChoice.h"
#include "storage/DatabaseLook.h"
#include "storage/FileIdentity.h"
#include "storage/ServiceDao.h"
#include "ui/ScreenStack.h"
#include "ui/Services.h"
#include "ui/TextMeasure.h"

namespace kestrix::shell {

// What the user chose on the command line, and what only the program can supply.
struct LaunchOptions {
    std::vector<std::string>
        uris;                 // where to look for testers; none: where the user chose last in the folder
    std::string choice;       // where the user chose to look in another window; goes before `uris`
    std::string standardUri;  // where to look when he never chose; empty: nowhere
    QString documents;        // folder of the database; empty: one of the standard ones
    QString settings;         // ini file; empty: that of the folder
    bool simulated = false;   // no URI says it, but no tester measures the readings: the tour
    std::string locale;       // whose week rules stored times follow; empty: the user's
    std::string zone;         // of stored times; empty: the machine's, as it is then
    platform::SimulatorFactory simulator;
    link::Wait wait = link::blockingWait;  // before a lost tester's session is closed
    std::chrono::milliseconds slideDuration = ui::ScreenStack::kSlideDuration;
    platform::Scheduler* scheduler = nullptr;  // not owned; none: the event loop's
    std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
    const platform::Reachability* reachability = nullptr;  // not owned; none: the machine's routes
    // What shows where testers can be seen.
    using Listings = std::vector<std::unique_ptr<platform::AccessoryListing>>;
    std::function<Listings(platform::Scheduler& scheduler)> makeListings = [](platform::Scheduler&) {
        return Listings();
    };
    // Opens a window of its own for the tester there; answers why it cannot, in one line, or nothing. ended:
    // called from the event loop when that window has ended for a reason of its own, or never was there.
    using WindowEnded = std::function<void(const std::string& why)>;
    std::function<std::string(const std::string& uri, WindowEnded ended)> openWindow;
    std::function<bool(const QString&)> openAddress;  // none: the desktop's browser
    std::function<platform::MailParts()> loadMail = [] { return platform::loadMail(); };
};

// The application: makes everything, joins it, and starts it. Needs a QGuiApplication, but no window.
class AppDelegate {
  public:
    explicit AppDelegate(LaunchOptions options);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    // Makes the tables at the first launch, loads the live screen, and begins to look for testers. False, and
    // `problem` says why in one line, when it cannot start: a tester's URI is wrong, made-up readings would
    // come among real ones, the settings file is not to be used, the database is another program's, or
    // another window has the folder. Nothing is made or changed then. A database that another program holds
    // locked is hardly waited for: it is taken up before the first row is stored.
    bool applicationDidFinishLaunchingWithOptions();

    const std::string& problem() const { return problem_; }
    // Of a program that ends with the problem: 0 when another window shows itself instead, 1 failed, 2 wrong
    // usage.
    int exitStatus() const { return exitStatus_; }

    // Whether the tester is the simulator, a replay or the tour's. Its readings are kept apart from the
    // user's.
    bool simulated() const { return simulated_; }
    const platform::DocumentsFolder& documents() const { return documents_; }
    // Looks for the tester there from now on (ui::Services). Made-up readings, in a window of measured ones,
    // and measured ones in one of made-up, get a window of their own.
    ui::ChosenTester chooseTester(const std::string& given);
    // How many measurements of earlier sessions belonged to no test record when the application took the
    // database up: at its start, or, when it was locked then, before it stored its first row.
    std::size_t unsavedAtStart() const { return unsavedAtStart_; }
    // Why nothing could be read from the database when it was last taken up, in words; empty: it could.
    const std::string& storageProblem() const { return storageProblem_; }

    // Called while the event loop runs when the application is started once more on its folder.
    void setSecondStart(std::function<void()> call) { claim_.secondStart = std::move(call); }
    // Called before the wait for a lost tester's session to close blocks everything: the last moment to draw.
    void setBeforeWait(std::function<void()> call) { beforeWait_ = std::move(call); }

    // The root of what is shown; made at the launch.
    SidebarViewController& viewController() { return *viewController_; }
    // The live screen in it.
    live::MainViewController& mainView() { return *viewController_->mainView(); }
    ui::ScreenStack& screens() { return screens_; }
    const ui::Services& services() const { return services_; }
    ui::Notice& notice() { return notice_; }
    ui::Alerts& alerts() { return alerts_; }
    platform::UserDefaults& settings() { return defaults_; }
    platform::AccessoryManager& accessories() { return accessories_; }

  private:
    using Sources = std::vector<std::unique_ptr<platform::AccessorySource>>;

    ui::Services makeServices();
    platform::Scheduler& scheduler();
    // None, with the reason in `problem_`, when one cannot be made.
    std::optional<Sources> makeSources();
    platform::SourceOrProblem makeSource(const std::string& uri);
    // No start fails for what the user chose in an earlier one.
    bool dropsChoice(const std::string& why);
    // One that was made in another window.
    void takeOverChoice(const std::string& uri);
    bool mayUseFolder();
    bool hasFolder();
    // Whether anything measures here, a tester or what makes readings up: then their kind counts.
    bool takesReadings() const { return simulated_ || !choice_.uris.empty(); }
    // Whether nobody could look at the database, which another program holds.
    bool isLocked() const { return look_.owner == storage::DatabaseLook::Owner::Locked; }
    // Looks at the folder's database.
    std::string whyDatabaseIsKeptOut(std::chrono::milliseconds patience);
    std::string whyFolderIsKeptOut();
    bool isAnotherDatabase();
    void takeUpDatabase(std::chrono::milliseconds patience);
    void readStorage(std::chrono::milliseconds patience);
    void sayNothingCanBeRecorded(const std::string& why);
    bool fail(const std::string& problem, int exitStatus);
    void wait(std::chrono::milliseconds duration) const;

    LaunchOptions options_;
    std::string problem_;
    int exitStatus_ = 0;
    std::size_t unsavedAtStart_ = 0;
    std::string storageProblem_;
    std::function<void()> beforeWait_;
    platform::QtScheduler eventLoop_;
    storage::DatabaseLook look_;      // the last one
    storage::FileIdentity database_;  // whose unsaved measurements were read
    bool takenUp_ = false;            // false while it was locked at every look so far
    bool willBeMade_ = false;         // by whoever was let open it last, as there was none
    bool lookHolds_ = false;          // whoever opens the file now has just looked at it
    platform::DocumentsFolder documents_;
    platform::UserDefaults defaults_;
    TesterChoice choice_;
    bool simulated_;
    Sources former_;  // of the tester before the chosen one, until no event of theirs is under way
    platform::Scheduler::Timer burial_;
    FolderClaim claim_;
    platform::AccessoryManager accessories_;
    platform::DateText timeText_;
    platform::DateText stampText_;
    platform::RouteWatcher routes_;
    ui::FontTextMeasure textMeasure_;
    std::unique_ptr<storage::ServiceDao> dataDB_;  // at the first launch only
    ui::Notice notice_;
    ui::Alerts alerts_;
    ui::ScreenStack screens_;
    ui::Services services_;
    std::unique_ptr<SidebarViewController> viewController_;
};

}  // namespace kestrix::shell
