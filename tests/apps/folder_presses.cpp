// The application without its window, on a folder: folder_presses FOLDER [URI]
// For each line on its input it presses the record button once, and answers with a line: "stored 3" with the
// identity of the row, or "failed " and the reason. The line "save" saves it in the save form
// instead: "saved 2" with the identity of the test record. "earlier" asks for the last row of
// an earlier session: "earlier 7". Says "ready" first, or why it does not
// start.
#include <QGuiApplication>

#include <chrono>
#include <csignal>
#include <iostream>
#include <string>

#include "shell/AppDelegate.h"
#include "storage/SaveDataViewController.h"
#include "storage/Selection.h"

namespace {

using namespace kestrix;

// As the user does, in the form.
storage::Outcome save(shell::AppDelegate& application) {
    application.screens().present(ui::ScreenId::SaveData, false);
    auto& form = dynamic_cast<storage::SaveDataViewController&>(*application.screens().topmost());
    form.projectName.setText(QStringLiteral("window"));
    form.pressSaveBack();
    if (application.screens().topmost() == &form)
        return {false, application.alerts().text().toStdString(), 0};
    storage::ServiceDao dao(application.documents());
    return {true, "", dao.findRecordForm().back().recordId};
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2 && count != 3) return 2;
    std::signal(SIGXFSZ, SIG_IGN);  // as the application does
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(count, arguments);
    shell::LaunchOptions options;
    options.slideDuration = std::chrono::milliseconds(0);
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
        if (line == "earlier") {
            const storage::ServiceDao another(delegate.documents());  // as any screen opens one
            std::cout << "earlier " << storage::lastDataIdOfEarlierSessions << std::endl;
            continue;
        }
        const bool saves = line == "save";
        if (!saves) screen.pressRecord();
        const storage::Outcome outcome = saves ? save(delegate) : screen.dao->lastOutcome();
        if (outcome.done) {
            std::cout << (saves ? "saved " : "stored ") << outcome.identity << std::endl;
        } else {
            std::cout << "failed " << outcome.reason << std::endl;
        }
    }
    return 0;
}
