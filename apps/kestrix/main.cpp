#include <QDir>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <csignal>
#include <iostream>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/common/PrintableLog.h"
#include "apps/common/SimulatorSource.h"
#include "apps/common/TerminationNotifier.h"
#include "apps/common/TerminationSignals.h"
#include "apps/kestrix/Options.h"
#include "apps/kestrix/Tour.h"
#include "apps/kestrix/TourFolder.h"
#include "apps/kestrix/UsableDisplay.h"
#include "platform/AccessoryListings.h"
#include "platform/DetachedProgram.h"
#include "platform/Log.h"
#include "shell/AppDelegate.h"
#include "shell/ConsoleApplication.h"
#include "shell/ConsoleWindow.h"
#include "shell/MainWindow.h"
#include "ui/SystemFont.h"

namespace {

using kestrix::Options;

constexpr int kFailed = 1;
constexpr std::string_view kSays = "kestrix: ";  // before what one start of this program says
constexpr const char* kStandardUri = "bluetooth:";

// Without a graphics processor the software renderer is several times as quick as an emulated one.
bool hasGraphicsProcessor() {
    return !QDir(QStringLiteral("/dev/dri")).entryList({QStringLiteral("renderD*")}, QDir::System).isEmpty();
}

void chooseRenderer() {
    // A change is drawn in the next turn of the event loop, not some milliseconds later.
    if (!qEnvironmentVariableIsSet("QT_QPA_UPDATE_IDLE_TIME")) qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    const bool chosen =
        qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    if (!chosen && !hasGraphicsProcessor()) QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

// The renderer tears what it draws where a point of the stage is less than a pixel.
void keepScaleFromShrinking() {
    for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS"}) {
        for (const QByteArray& factor : qgetenv(name).split(';')) {
            const double scale = factor.mid(factor.indexOf('=') + 1).toDouble();
            if (scale > 0 && scale < 1) qunsetenv(name);
        }
    }
}

int fail(const std::string& why, int status) {
    std::cerr << kSays << why << '\n';
    return status;
}

kestrix::shell::LaunchOptions::Listings makeListings(kestrix::platform::Scheduler& scheduler) {
    kestrix::shell::LaunchOptions::Listings listings;
    listings.push_back(kestrix::platform::makeBluetoothListing(scheduler));
    listings.push_back(kestrix::platform::makeSerialListing());
    return listings;
}

// Others of this program, which go on when this one ends.
class OtherWindows {
  public:
    std::string open(const std::string& uri, const kestrix::shell::LaunchOptions::WindowEnded& ended) {
        const QStringList arguments{QStringLiteral("--choose"), QString::fromStdString(uri)};
        windows_.push_back(std::make_unique<kestrix::platform::DetachedProgram>(
            QCoreApplication::applicationFilePath(), arguments, [ended](const std::string& lastLine) {
                if (lastLine.starts_with(kSays)) ended(lastLine.substr(kSays.size()));
            }));
        return windows_.back()->isStarted() ? "" : "no other window can be opened";
    }

  private:
    std::vector<std::unique_ptr<kestrix::platform::DetachedProgram>> windows_;
};

// A signal that comes before the event loop runs is noticed between the steps.
int showWindow(const Options& options, const kestrix::app::TerminationSignals& signals) {
    OtherWindows others;
    kestrix::shell::LaunchOptions launch;
    launch.uris = options.uris;
    launch.choice = options.choice;
    launch.standardUri = kStandardUri;
    launch.openWindow = [&others](const std::string& uri, const auto& ended) {
        return others.open(uri, ended);
    };
    launch.makeListings = makeListings;
    launch.documents = QString::fromStdString(options.documents);
    launch.settings = QString::fromStdString(options.settings);
    launch.simulator = kestrix::app::simulatorSource;
    launch.wait = kestrix::app::pauseUnlessEnding;
    if (!launch.documents.isEmpty() && kestrix::tour::isTourFolder(launch.documents))
        return fail(options.documents + " is a tour's: the next tour replaces what is in it", kFailed);
    kestrix::shell::AppDelegate application(std::move(launch));
    kestrix::shell::MainWindow window(application);  // reads its views during what comes now
    kestrix::ui::installSystemFont();
    if (!application.applicationDidFinishLaunchingWithOptions())
        return fail(application.problem(), application.exitStatus());
    if (signals.signal() != 0) return 0;
    if (!window.load()) return fail("the views do not load", kFailed);
    const kestrix::app::TerminationNotifier notifier(signals, [] { QCoreApplication::quit(); });
    window.show();
    return QGuiApplication::exec();
}

int showConsole(const Options& options, const kestrix::app::TerminationSignals& signals) {
    kestrix::shell::ConsoleOptions console;
    console.uris = options.uris.empty() ? std::vector<std::string>{kStandardUri} : options.uris;
    console.simulator = kestrix::app::simulatorSource;
    kestrix::shell::ConsoleApplication application(std::move(console));
    kestrix::shell::ConsoleWindow window(application);
    kestrix::ui::installSystemFont();
    if (!application.start()) return fail(application.problem(), application.exitStatus());
    if (signals.signal() != 0) return 0;
    if (!window.load()) return fail("the views do not load", kFailed);
    const kestrix::app::TerminationNotifier notifier(signals, [] { QCoreApplication::quit(); });
    window.show();
    return QGuiApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    int exitStatus = 0;
    const std::optional<Options> options = kestrix::readOptions(argc, argv, exitStatus);
    if (!options) return exitStatus;
    const bool tour = !options->tour.empty();
    if (tour) {
        // The same pictures everywhere.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }
    std::optional<kestrix::app::TerminationSignals> signals;
    std::optional<kestrix::UsableDisplay> display;
    if (!tour) {
        signals.emplace();
        display.emplace();
        if (signals->signal() != 0) return 0;
        if (!display->problem().empty())
            return fail(
                display->problem() + "; --tour DIR writes pictures, and kestrix-cli works in a terminal",
                kFailed);
    }
    chooseRenderer();
    keepScaleFromShrinking();
    kestrix::platform::installLogFormat(options->verbose);
    kestrix::app::installPrintableLog();
    std::signal(SIGPIPE, SIG_IGN);  // nobody may read the log to its end
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a write that fails
    const QGuiApplication application(argc, argv);
    display.reset();
    QGuiApplication::setApplicationName(QStringLiteral("kestrix"));
    if (signals) return options->console ? showConsole(*options, *signals) : showWindow(*options, *signals);
    kestrix::ui::installSystemFont();
    return kestrix::tour::run(options->tour);
}
