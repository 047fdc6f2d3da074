// The application without its window, on a folder: folder_presses FOLDER [URI]
// For each line on its input it presses the record button once, and answers with a line: "stored 3" with the
// identity of the row, or "failed " and the reason. The line "save" files what is unsaved in a new test
// record instead, as the save form does: "saved 2" with its identity. Says "ready" first, or why it does not
// start.
#include <QGuiApplication>

#include <csignal>
#include <iostream>
#include <string>

#include "shell/AppDelegate.h"
#include "storage/TestRecords.h"

namespace {

kestrix::storage::Outcome save(kestrix::storage::ServiceDao& dao) {
    using namespace kestrix::storage;
    const std::vector<MeasureData> unsaved = dao.findMeasureForm(false);
    if (!dao.lastOutcome().done || unsaved.empty()) return dao.lastOutcome();
    RecordData typed;
    typed.projectName = "window";
    typed.samples = static_cast<std::int64_t>(unsaved.size());
    return fileMeasurements(dao, completed(typed, unsaved.front().dateTime), unsaved);
}

}  // namespace

int main(int count, char** arguments) {
    using namespace kestrix;
    if (count != 2 && count != 3) return 2;
    std::signal(SIGXFSZ, SIG_IGN);  // as the application does
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(count, arguments);
    shell::LaunchOptions options;
    options.documents = QString::fromLocal8Bit(arguments[1]);
    if (count == 3) options.uris = {arguments[2]};
    shell::AppDelegate delegate(options);
    if (!delegate.applicationDidFinishLaunchingWithOptions()) {
        std::cout << delegate.problem() << std::endl;
        return delegate.exitStatus();
    }
    std::cout << "ready " << delegate.unsavedAtStart() << std::endl;
    live::MainViewController& screen = delegate.mainView();
    protocol::MeterReading record;
    record.iFunction = '1';
    record.strfunction = "EARTH";
    screen.didReceive3820Data(record, true);
    for (std::string line; std::getline(std::cin, line);) {
        const bool saves = line == "save";
        if (!saves) screen.pressRecord();
        const storage::Outcome outcome = saves ? save(*screen.dao) : screen.dao->lastOutcome();
        if (outcome.done) {
            std::cout << (saves ? "saved " : "stored ") << outcome.identity << std::endl;
        } else {
            std::cout << "failed " << outcome.reason << std::endl;
        }
    }
    return 0;
}
