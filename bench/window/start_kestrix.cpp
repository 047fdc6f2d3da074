// The application until its first picture, as its own program starts it: start_kestrix NANOSECONDS FOLDER.
// The folder holds its database and settings.
#include <QGuiApplication>
#include <QLoggingCategory>

#include "apps/common/SimulatorSource.h"
#include "bench/window/StartFigures.h"
#include "bench/window/WindowWithoutDisplay.h"
#include "platform/Log.h"
#include "shell/AppDelegate.h"
#include "shell/MainWindow.h"
#include "ui/SystemFont.h"

int main(int argc, char** argv) {
    using namespace kestrix;
    if (argc != 3) return 2;
    bench::drawWithoutDisplay();
    platform::installLogFormat();
    QLoggingCategory::setFilterRules(QStringLiteral("kestrix.*.info=false"));
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("kestrix"));
    const QString folder = QString::fromLocal8Bit(argv[2]);
    shell::LaunchOptions options;
    options.uris = {"simulator:"};
    options.documents = folder;
    options.settings = folder + QStringLiteral("/kestrix.ini");
    options.simulator = app::simulatorSource;
    shell::AppDelegate delegate(options);
    shell::MainWindow window(delegate);
    ui::installSystemFont();
    if (!delegate.applicationDidFinishLaunchingWithOptions()) return 1;
    if (!window.load()) return 1;
    bench::reportFirstPicture(window, bench::timeOf(bench::numberOf(argv[1])));
    window.show();
    return QGuiApplication::exec();
}
