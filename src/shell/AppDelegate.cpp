#include "shell/AppDelegate.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QUrl>

#include <algorithm>
#include <utility>

#include "link/FrameListener.h"
#include "platform/AccessoryUri.h"
#include "shell/Screens.h"
#include "storage/FirstLaunch.h"
#include "storage/FolderChoice.h"
#include "storage/FolderReadings.h"
#include "storage/Selection.h"
#include "ui/TesterWords.h"

namespace kestrix::shell {
namespace {

using Owner = storage::DatabaseLook::Owner;
using storage::Readings;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

// For a locked database while nothing is shown yet. At most eight statements ask for it: less than a second.
constexpr std::chrono::milliseconds kPatienceAtStart{100};

bool isMadeUp(const std::string& uri) {
    return storage::readingsOf(uri) == Readings::MadeUp;
}

bool anyMadeUp(const std::vector<std::string>& uris) {
    return std::any_of(uris.begin(), uris.end(), isMadeUp);
}

Readings kindOf(bool simulated) {
    return simulated ? Readings::MadeUp : Readings::Measured;
}

QByteArray purposeOf(std::vector<std::string> uris) {
    std::sort(uris.begin(), uris.end());
    QByteArray all;
    for (const std::string& uri : uris) all += QByteArray::fromStdString(uri) + '\n';
    return all;
}

bool openInBrowser(const QString& address) {
    return QDesktopServices::openUrl(QUrl(address));
}

// A choice is looked for like what the command line names.
// A choice is kept, and handed to other processes: it names the same file in each folder.
std::string choiceOf(const std::string& uri) {
    return platform::withAbsolutePath(uri, QDir::currentPath().toStdString());
}

LaunchOptions withChoice(LaunchOptions options) {
    if (options.choice.empty()) return options;
    options.choice = choiceOf(options.choice);
    options.uris = {options.choice};
    return options;
}

}  // namespace

AppDelegate::AppDelegate(LaunchOptions options)
    : options_(withChoice(std::move(options))),
      documents_(storage::documentsFolderFor(options_.documents,
                                             kindOf(options_.simulated || anyMadeUp(options_.uris)))),
      defaults_(storage::settingsFileFor(options_.settings, documents_),
                platform::UserDefaults::Start::LooksOnly),
      choice_(testerAtStart(options_.uris, defaults_, !options_.documents.isEmpty(), options_.standardUri)),
      simulated_(options_.simulated || anyMadeUp(choice_.uris)),
      timeText_(ui::kTimePattern, options_.locale, options_.zone),
      stampText_(ui::kStampPattern, options_.locale, options_.zone),
      notice_(scheduler()),
      screens_(options_.slideDuration),
      services_(makeServices()) {
    QObject::connect(&alerts_, &ui::Alerts::shownChanged, &notice_,
                     [this] { notice_.setHeld(alerts_.isShown()); });
    for (const ScreenRow& row : shell::screens()) registerScreen(row, screens_, services_);
    screens_.setMissing([this](ui::ScreenId) {
        notice_.show(QCoreApplication::translate("AppDelegate", "Not available in this version"));
    });
}

bool AppDelegate::applicationDidFinishLaunchingWithOptions() {
    std::optional<Sources> sources = makeSources();
    if (!sources || !mayUseFolder() || !hasFolder()) return false;
    {
        const QScopedValueRollback<bool> holds(lookHolds_, true);
        if (isLocked()) {
            storageProblem_ = look_.reason;
            sayNothingCanBeRecorded(storageProblem_);
        } else {
            takeUpDatabase(kPatienceAtStart);
        }
        viewController_ = std::make_unique<SidebarViewController>(services_);
        viewController_->loadView();
        screens_.setRoot(viewController_.get());
        viewController_->viewWillAppear();
        viewController_->viewDidAppear();
    }
    if (choice_.uris.empty()) sources->clear();  // the folder takes no readings of their kind
    for (auto& source : *sources) accessories_.addSource(std::move(source));
    if (!options_.choice.empty()) keepTester(defaults_, options_.choice);
    claim_.chosen = [this](const std::string& uri) { takeOverChoice(uri); };
    return true;
}

bool AppDelegate::fail(const std::string& problem, int exitStatus) {
    problem_ = problem;
    exitStatus_ = exitStatus;
    return false;
}

// No made-up reading gets among real ones, and none of them among the made-up.
bool AppDelegate::mayUseFolder() {
    const bool real = !std::all_of(choice_.uris.begin(), choice_.uris.end(), isMadeUp);
    if (real && simulated_)
        return fail("a tester and made-up readings (simulator:, replay:) need a window each", kWrongUsage);
    const QFileInfo chosen(options_.documents);
    if (!options_.documents.isEmpty() && chosen.exists() && !chosen.isDir())
        return fail(options_.documents.toStdString() + " is no folder", kWrongUsage);
    if (!defaults_.problem().isEmpty()) return fail(defaults_.problem().toStdString(), kFailed);
    const std::string why = whyDatabaseIsKeptOut(kPatienceAtStart);
    return why.empty() || (look_.owner != Owner::Other && dropsChoice(why)) ||
           fail(why, look_.owner == Owner::Other ? kFailed : kWrongUsage);
}

std::string AppDelegate::whyDatabaseIsKeptOut(std::chrono::milliseconds patience) {
    look_ = storage::lookAtDatabase(documents_, patience);
    if (look_.owner == Owner::Other) return storage::whyNotOurs(documents_);
    return takesReadings() ? whyKeptOut(kindOf(simulated_), documents_, look_) : std::string();
}

// The folder may have been away, and come back as somebody else's; its database may be another one by now, or
// was locked, so that nobody could look at it.
std::string AppDelegate::whyFolderIsKeptOut() {
    if (!QFileInfo::exists(documents_.path())) return {};  // whoever opens the file says so
    const bool covered = claim_.covers();
    if (covered && lookHolds_) return look_.reason;
    if (!covered && !claim_.takeAgain())
        return documents_.path().toStdString() + " is in use by " + claim_.holder();
    std::string why = whyDatabaseIsKeptOut(storage::ServiceDao::kPatience);
    if (why.empty()) why = look_.reason;
    const QScopedValueRollback<bool> holds(lookHolds_, true);  // what follows opens the file, and asks again
    if (why.empty() && !takenUp_) {
        takeUpDatabase(storage::ServiceDao::kPatience);
    } else if (why.empty()) {
        const bool another = isAnotherDatabase();
        if (takesReadings()) {
            noteReadings(kindOf(simulated_), documents_);
            markReadings(kindOf(simulated_), documents_, look_, storage::ServiceDao::kPatience);
        }
        if (another) readStorage(storage::ServiceDao::kPatience);
    }
    if (!why.empty() && !covered) claim_.letGo();
    return why;
}

// Whether it was put in the place of the one that is known: what is unsaved in it is of earlier sessions. In
// one that is made because there is none, everything is of this session.
bool AppDelegate::isAnotherDatabase() {
    const storage::FileIdentity now = storage::databaseIdentity(documents_);
    const bool wasMade = std::exchange(willBeMade_, now == storage::FileIdentity{});
    const storage::FileIdentity before = std::exchange(database_, now);
    if (willBeMade_) storage::lastDataIdOfEarlierSessions = 0;
    return before != now && !wasMade && !willBeMade_;
}

// Its guard lets it be opened by now.
void AppDelegate::takeUpDatabase(std::chrono::milliseconds patience) {
    takenUp_ = true;
    const bool kept = takesReadings();
    if (kept) noteReadings(kindOf(simulated_), documents_);
    dataDB_ = storage::createTablesOnFirstLaunch(defaults_, documents_, patience);
    if (kept) markReadings(kindOf(simulated_), documents_, look_, patience);
    readStorage(patience);
    if (dataDB_) dataDB_->setPatience(storage::ServiceDao::kPatience);
}

bool AppDelegate::hasFolder() {
    documents_.ensure();  // the display is live without it
    const std::string folder = documents_.path().toStdString();
    switch (claim_.take(documents_.path(), purposeOf(choice_.uris), options_.choice)) {
        case FolderClaim::Answer::Ours:
            break;
        case FolderClaim::Answer::Shown:
            return fail("a window on " + folder + " is open already, and was brought forward", 0);
        case FolderClaim::Answer::Other:
            return fail("a window on " + folder +
                            " is open already, and was brought forward; it goes on with its own testers",
                        kFailed);
        case FolderClaim::Answer::Held:
            return fail(folder + " is in use by " + claim_.holder(), kFailed);
    }
    // Another window may have been here since it was asked first.
    defaults_.readNow();
    return mayUseFolder();
}

void AppDelegate::sayNothingCanBeRecorded(const std::string& why) {
    notice_.show(QCoreApplication::translate("AppDelegate", "Nothing can be recorded: %1")
                     .replace(QLatin1String("%1"), QString::fromStdString(why)));
}

void AppDelegate::readStorage(std::chrono::milliseconds patience) {
    std::unique_ptr<storage::ServiceDao> own;
    if (!dataDB_) own = std::make_unique<storage::ServiceDao>(documents_, patience);
    storage::ServiceDao& dao = dataDB_ ? *dataDB_ : *own;
    const std::vector<storage::MeasureData> unsaved = dao.findMeasureForm(false);
    unsavedAtStart_ = unsaved.size();
    storage::lastDataIdOfEarlierSessions = unsaved.empty() ? 0 : unsaved.back().dataId;
    storageProblem_ = dao.lastOutcome().reason;
    database_ = storage::databaseIdentity(documents_);
    const auto say = [this](const char* text, const QString& what) {
        notice_.show(QCoreApplication::translate("AppDelegate", text).replace(QLatin1String("%1"), what));
    };
    if (!storageProblem_.empty()) sayNothingCanBeRecorded(storageProblem_);
    // They are in no list, and the next test record takes them in.
    if (unsavedAtStart_ == 1)
        say(QT_TRANSLATE_NOOP("AppDelegate", "A measurement of an earlier session is not saved yet"), {});
    if (unsavedAtStart_ > 1)
        say(QT_TRANSLATE_NOOP("AppDelegate", "%1 measurements of earlier sessions are not saved yet"),
            QString::number(unsavedAtStart_));
}

void AppDelegate::wait(std::chrono::milliseconds duration) const {
    if (beforeWait_) beforeWait_();
    options_.wait(duration);
}

platform::Scheduler& AppDelegate::scheduler() {
    return options_.scheduler != nullptr ? *options_.scheduler : eventLoop_;
}

std::optional<AppDelegate::Sources> AppDelegate::makeSources() {
    Sources sources;
    for (const std::string& uri : std::vector(choice_.uris)) {
        platform::SourceOrProblem made = makeSource(uri);
        if (made.source) {
            sources.push_back(std::move(made.source));
        } else if (!dropsChoice(made.problem)) {
            fail(made.problem, made.wrongUri ? kWrongUsage : kFailed);
            return std::nullopt;
        }
    }
    return sources;
}

platform::SourceOrProblem AppDelegate::makeSource(const std::string& uri) {
    return platform::makeAccessorySource(uri, scheduler(), options_.simulator, link::makeFrameListener,
                                         platform::lastUsedIn(defaults_));
}

bool AppDelegate::dropsChoice(const std::string& why) {
    if (choice_.by == TesterChoice::By::CommandLine || choice_.uris.empty()) return false;
    const char* const text =
        choice_.by == TesterChoice::By::Settings
            ? QT_TRANSLATE_NOOP("AppDelegate", "The tester chosen last is not looked for: %1")
            : QT_TRANSLATE_NOOP("AppDelegate", "No tester is looked for: %1");
    notice_.show(QCoreApplication::translate("AppDelegate", text)
                     .replace(QLatin1String("%1"), QString::fromStdString(why)));
    choice_.uris.clear();
    simulated_ = options_.simulated;
    services_.simulated = simulated_;
    return true;
}

void AppDelegate::takeOverChoice(const std::string& uri) {
    const ui::ChosenTester chosen = chooseTester(uri);
    if (!chosen.problem.empty()) notice_.show(QString::fromStdString(chosen.problem), ui::testerMatter());
}

ui::ChosenTester AppDelegate::chooseTester(const std::string& given) {
    const std::string uri = choiceOf(given);
    platform::SourceOrProblem made = makeSource(uri);
    if (!made.source) return {.problem = made.problem};
    const bool elsewhere =
        isMadeUp(uri) != simulated_ || !whyKeptOut(kindOf(simulated_), documents_, look_).empty();
    if (elsewhere) {
        if (options_.openWindow) {
            const auto ended = [this](const std::string& why) {
                notice_.show(QString::fromStdString(why), ui::testerMatter());
            };
            return {.problem = options_.openWindow(uri, ended), .otherWindow = true};
        }
        return {.problem = "there is no other window here", .otherWindow = true};
    }
    choice_ = {{uri}, TesterChoice::By::Settings};
    keepTester(defaults_, uri);  // before the tester of now is let go, which takes its time
    if (!defaults_.isKept()) {
        notice_.show(
            QCoreApplication::translate("AppDelegate", "The next start looks elsewhere: %1 cannot be written")
                .replace(QLatin1String("%1"), defaults_.path()));
    }
    claim_.setPurpose(purposeOf(choice_.uris));
    while (!accessories_.sources().empty())
        former_.push_back(accessories_.takeSource(*accessories_.sources().back()));
    burial_ = scheduler().callAfter(platform::Scheduler::Duration{0}, [this] { former_.clear(); });
    accessories_.addSource(std::move(made.source));
    return {};
}

ui::Services AppDelegate::makeServices() {
    documents_.setGuard([this] { return whyFolderIsKeptOut(); });
    return {
        .defaults = defaults_,
        .documents = documents_,
        .scheduler = scheduler(),
        .navigation = screens_,
        .notice = notice_,
        .alerts = alerts_,
        .textMeasure = textMeasure_,
        .timeText = timeText_,
        .stampText = stampText_,
        .now = options_.now,
        .accessories = accessories_,
        .chooseTester = [this](const std::string& uri) { return chooseTester(uri); },
        .makeListings = [this] { return options_.makeListings(scheduler()); },
        .reachability = options_.reachability != nullptr ? *options_.reachability : routes_,
        .loadMail = options_.loadMail,
        .openAddress = options_.openAddress ? options_.openAddress : openInBrowser,
        .wait = [this](std::chrono::milliseconds duration) { wait(duration); },
        .slideDuration = options_.slideDuration,
        .simulated = simulated_,
    };
}

}  // namespace kestrix::shell
