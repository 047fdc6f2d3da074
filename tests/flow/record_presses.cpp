// Presses the record button again and again until it is killed: record_presses FOLDER FIRST
// A press's number, which the reading shows, stands on the output, in a line, once the press has returned.
#include <unistd.h>
#include <QCoreApplication>
#include <QString>

#include <cstdlib>
#include <string>

#include "live/MainViewController.h"
#include "tests/support/FakeNetwork.h"
#include "tests/support/ManualScheduler.h"

namespace {

using namespace kestrix;

// The row's height is of no interest here, and fonts would need a display.
class NoMeasure final : public ui::TextMeasure {
    double wrappedHeight(const QString&, const QString&, int, double, double) const override { return 0; }
};

class NoNavigation final : public ui::Navigation {
    bool has(ui::ScreenId) const override { return false; }
    void present(ui::ScreenId, bool) override {}
    void dismiss(bool) override {}
};

protocol::MeterReading reading(long number) {
    protocol::MeterReading record;
    record.iFunction = '1';
    record.strfunction = "EARTH";
    record.strValue1 = std::to_string(number);
    record.strUnit1 = "Ω";
    return record;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const QCoreApplication application(count, arguments);
    qputenv("QT_LOGGING_RULES", "*.info=false");
    const platform::DocumentsFolder folder(QString::fromLocal8Bit(arguments[1]));
    platform::UserDefaults defaults(folder.filePath(QStringLiteral("settings.ini")));
    platform::AccessoryManager accessories;
    testing::ManualScheduler scheduler;
    NoNavigation navigation;
    const NoMeasure measure;
    ui::Notice notice(scheduler);
    ui::Alerts alerts;
    const testing::FakeNetwork network;
    const platform::DateText timeText(ui::kTimePattern);
    live::MainViewController screen(ui::Services{
        .defaults = defaults,
        .documents = folder,
        .scheduler = scheduler,
        .navigation = navigation,
        .notice = notice,
        .alerts = alerts,
        .textMeasure = measure,
        .timeText = timeText,
        .stampText = timeText,
        .now = [] { return std::chrono::system_clock::now(); },
        .accessories = accessories,
        .reachability = network,
        .loadMail = {},
        .openAddress = {},
        .wait = link::blockingWait,
    });
    screen.loadView();
    for (long number = std::strtol(arguments[2], nullptr, 10);; ++number) {
        screen.didReceive3820Data(reading(number), true);
        screen.btnRecord.press();
        const std::string line = std::to_string(number) + "\n";
        if (write(STDOUT_FILENO, line.data(), line.size()) < 0) return 1;
    }
}
