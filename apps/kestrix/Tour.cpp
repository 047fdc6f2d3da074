#include "apps/kestrix/Tour.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>

#include <iostream>
#include <utility>

#include "apps/kestrix/TourStops.h"
#include "apps/kestrix/TourTester.h"
#include "shell/AppDelegate.h"
#include "shell/MainWindow.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::tour {
namespace {

constexpr int kScales[] = {1, 3};
constexpr QSize kStage{320, 568};

class Tour {
  public:
    explicit Tour(const QDir& folder)
        : folder_(folder), application_(launchOptions(folder)), window_(application_) {}

    int run() {
        for (const int scale : kScales) {
            if (!folder_.mkpath(subfolder(scale)))
                return fail("cannot make " + folder_.filePath(subfolder(scale)));
        }
        application_.applicationDidFinishLaunchingWithOptions();
        auto tester = std::make_unique<TourTester>();
        tester_ = tester.get();
        application_.accessories().addSource(std::move(tester));
        if (!window_.load()) return fail(QStringLiteral("the views do not load"));
        window_.show();
        for (const Stop& stop : stops()) {
            visit(stop);
            for (const int scale : kScales) {
                const QString file =
                    folder_.filePath(subfolder(scale) + u'/' + QLatin1String(stop.name) + ".png");
                if (!picture(scale).save(file)) return fail("cannot write " + file);
                std::cout << file.toStdString() << '\n';
            }
        }
        return 0;
    }

  private:
    static shell::LaunchOptions launchOptions(const QDir& folder) {
        shell::LaunchOptions options;
        options.documents = folder.absolutePath();
        options.settings = folder.absoluteFilePath(QStringLiteral("settings.ini"));
        options.wait = [](std::chrono::milliseconds) {};
        options.slideDuration = std::chrono::milliseconds(0);
        return options;
    }
    static QString subfolder(int scale) { return QString::number(scale) + u'x'; }
    static int fail(const QString& why) {
        std::cerr << "kestrix: " << why.toStdString() << '\n';
        return 1;
    }

    void visit(const Stop& stop) {
        if (stop.tester == Stop::Tester::On) tester_->switchOn();
        if (stop.tester == Stop::Tester::Off) tester_->switchOff();
        QCoreApplication::processEvents();
        if (stop.scenario != nullptr) tester_->play(stop.scenario);
        while (!tester_->allRead()) QCoreApplication::processEvents();
        for (int press = 0; press < stop.presses; ++press) application_.mainView().btnRecord.press();
    }

    QImage picture(int scale) {
        window_.resize(kStage * scale);
        QCoreApplication::processEvents();
        ui::DisplayUpdates::shared().flush();
        return window_.grabWindow();
    }

    QDir folder_;
    shell::AppDelegate application_;
    shell::MainWindow window_;
    TourTester* tester_ = nullptr;  // belongs to the application
};

}  // namespace

int run(const std::string& folder) {
    const QDir directory(QString::fromStdString(folder));
    // What an earlier tour recorded is not this one's.
    for (const char* file : {"kestrix.sqlite", "settings.ini"})
        QFile::remove(directory.filePath(QLatin1String(file)));
    return Tour(directory).run();
}

}  // namespace kestrix::tour
