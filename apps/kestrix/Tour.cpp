#include "apps/kestrix/Tour.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDir>
#include <QImage>

#include <iostream>
#include <utility>

#include "apps/kestrix/TourClock.h"
#include "apps/kestrix/TourFolder.h"
#include "apps/kestrix/TourListing.h"
#include "apps/kestrix/TourMoment.h"
#include "apps/kestrix/TourRoad.h"
#include "apps/kestrix/TourStops.h"
#include "apps/kestrix/TourTester.h"
#include "shell/AppDelegate.h"
#include "shell/MainWindow.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::tour {
namespace {

constexpr QSize kStage{320, 568};
constexpr QPoint kNoMouse{100'000, 100'000};
constexpr std::chrono::milliseconds kStep{0};  // so that the lightning stands in every picture alike
constexpr int kMostTurns = 10'000;

class Tour {
  public:
    explicit Tour(const QDir& folder)
        : folder_(folder), application_(launchOptions(folder, clock_)), window_(application_) {}

    int run() {
        for (const int scale : kScales) {
            if (!folder_.mkpath(picturesFolder(scale)))
                return fail("cannot make " + folder_.filePath(picturesFolder(scale)));
        }
        if (!application_.applicationDidFinishLaunchingWithOptions())
            return fail(QString::fromStdString(application_.problem()));
        auto tester = std::make_unique<TourTester>();
        tester_ = tester.get();
        application_.accessories().addSource(std::move(tester));
        if (!window_.load()) return fail(QStringLiteral("the views do not load"));
        QCursor::setPos(kNoMouse);  // nothing shows as pointed at
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
    static int fail(const QString& why) {
        std::cerr << "kestrix: " << why.toStdString() << '\n';
        return 1;
    }

    // The picture of this name at every scale. False, with the reason said, when one cannot be written.
    bool save(const char* name) {
        for (const int scale : kScales) {
            const QString file =
                folder_.filePath(picturesFolder(scale) + u'/' + QLatin1String(name) + ".png");
            if (!picture(scale).save(file)) return fail("cannot write " + file) == 0;
            std::cout << file.toStdString() << '\n';
        }
        return true;
    }

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

    QImage picture(int scale) {
        window_.resize(kStage * scale);
        QCoreApplication::processEvents();
        ui::DisplayUpdates::shared().flush();
        return window_.grabWindow();
    }

    QDir folder_;
    TourClock clock_;
    shell::AppDelegate application_;
    shell::MainWindow window_;
    TourTester* tester_ = nullptr;  // belongs to the application
};

}  // namespace

int run(const std::string& folder) {
    const QString path = QString::fromStdString(folder);
    const FolderProblem problem = prepareFolder(path);
    if (problem.why.empty()) return Tour(QDir(path)).run();
    std::cerr << "kestrix: " << problem.why << '\n';
    return problem.exitStatus;
}

}  // namespace kestrix::tour
