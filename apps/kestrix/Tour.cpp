#include "apps/kestrix/Tour.h"

#include <QCoreApplication>
#include <QDir>

#include <iostream>
#include <utility>

#include "apps/kestrix/TourClock.h"
#include "apps/kestrix/TourConsole.h"
#include "apps/kestrix/TourFolder.h"
#include "apps/kestrix/TourListing.h"
#include "apps/kestrix/TourMoment.h"
#include "apps/kestrix/TourPictures.h"
#include "apps/kestrix/TourRoad.h"
#include "apps/kestrix/TourStops.h"
#include "apps/kestrix/TourTester.h"
#include "shell/AppDelegate.h"
#include "shell/MainWindow.h"

namespace kestrix::tour {
namespace {

constexpr std::chrono::milliseconds kStep{0};  // so that the lightning stands in every picture alike
constexpr int kMostTurns = 10'000;

class Tour {
  public:
    Tour(const QDir& folder, TourClock& clock)
        : folder_(folder),
          clock_(clock),
          application_(launchOptions(folder, clock_)),
          window_(application_) {}

    int run() {
        for (const int scale : kScales) {
            if (!folder_.mkpath(picturesFolder(scale)))
                return failTour("cannot make " + folder_.filePath(picturesFolder(scale)));
        }
        if (!application_.applicationDidFinishLaunchingWithOptions())
            return failTour(QString::fromStdString(application_.problem()));
        auto tester = std::make_unique<TourTester>();
        tester_ = tester.get();
        application_.accessories().addSource(std::move(tester));
        if (!window_.load()) return failTour(QStringLiteral("the views do not load"));
        hideMouse();
        window_.show();
        for (const Stop& stop : stops()) {
            visit(stop);
            if (!save(stop.name)) return 1;
        }
        for (const Step& step : road()) {
            step.take(application_);
            QCoreApplication::processEvents();
            if (!step.name.empty() && !save(step.name.c_str())) return 1;
            goHome(application_);
        }
        return 0;
    }

  private:
    static shell::LaunchOptions launchOptions(const QDir& folder, TourClock& clock) {
        shell::LaunchOptions options;
        options.documents = folder.absolutePath();
        options.simulated = true;
        options.locale = "en_US";
        options.zone = "UTC";
        options.scheduler = &clock;
        options.now = [] { return kNow; };
        options.wait = [](std::chrono::milliseconds) {};
        options.slideDuration = std::chrono::milliseconds(0);
        options.makeListings = [](platform::Scheduler&) { return listings(); };
        options.loadMail = [] { return platform::MailParts{}; };  // it sends nothing
        return options;
    }
    bool save(const char* name) { return savePictures(window_, folder_, name); }

    void visit(const Stop& stop) {
        application_.notice().clear();  // of the stop before
        if (stop.tester == Stop::Tester::On) tester_->switchOn();
        if (stop.tester == Stop::Tester::Off) tester_->switchOff();
        QCoreApplication::processEvents();
        if (stop.scenario != nullptr) tester_->play(stop.scenario);
        for (int turn = 0; turn < kMostTurns && !tester_->allRead(); ++turn) step();
        step();
        pressRecord(stop, application_.mainView());
    }

    void step() {
        clock_.advance(kStep);
        QCoreApplication::processEvents();
    }

    QDir folder_;
    TourClock& clock_;
    shell::AppDelegate application_;
    shell::MainWindow window_;
    TourTester* tester_ = nullptr;  // belongs to the application
};

}  // namespace

int run(const std::string& folder) {
    const QString path = QString::fromStdString(folder);
    const FolderProblem problem = prepareFolder(path);
    if (problem.why.empty()) {
        TourClock clock;
        const int status = Tour(QDir(path), clock).run();
        return status == 0 ? visitConsole(QDir(path), clock) : status;
    }
    std::cerr << "kestrix: " << problem.why << '\n';
    return problem.exitStatus;
}

}  // namespace kestrix::tour
