#include "apps/kestrix/TourConsole.h"

#include <QCoreApplication>

#include "apps/kestrix/TourPictures.h"
#include "apps/kestrix/TourTester.h"
#include "link/EADSessionTransferViewController.h"
#include "shell/ConsoleWindow.h"

namespace kestrix::tour {
namespace {

constexpr const char* kSearch = "50-console-search";
constexpr const char* kConsole = "51-console";

constexpr const char* kFrame = R"(
function earth
reading 1 18.5 ohm
reading 2 2.5 mA
show 1 frames
)";

}  // namespace

std::vector<std::string> consolePictures() {
    return {kSearch, kConsole};
}

int visitConsole(const QDir& folder, TourClock& clock) {
    shell::ConsoleOptions options;
    options.slideDuration = std::chrono::milliseconds(0);
    options.scheduler = &clock;
    shell::ConsoleApplication application(std::move(options));
    shell::ConsoleWindow window(application);
    auto made = std::make_unique<TourTester>();
    TourTester& tester = *made;
    application.accessories().addSource(std::move(made));
    if (!application.start()) return failTour(QString::fromStdString(application.problem()));
    if (!window.load()) return failTour(QStringLiteral("the views do not load"));
    hideMouse();
    window.show();
    QCoreApplication::processEvents();
    if (!savePictures(window, folder, kSearch)) return 1;
    tester.switchOn();
    tester.play(kFrame);
    auto& console = dynamic_cast<link::EADSessionTransferViewController&>(*application.screens().topmost());
    console._hexToSendTextField.setText(QStringLiteral("7e0d1e"));
    QCoreApplication::processEvents();
    return savePictures(window, folder, kConsole) ? 0 : 1;
}

}  // namespace kestrix::tour
