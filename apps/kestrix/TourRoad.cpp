#include "apps/kestrix/TourRoad.h"

#include <utility>

#include "history/HistoryViewController.h"
#include "storage/SaveDataViewController.h"
#include "storage/Selection.h"
#include "ui/SideBarContainer.h"

namespace kestrix::tour {
namespace {

using shell::AppDelegate;
using ui::ScreenId;
using ui::SideBarContainer;

storage::RightSideBarViewController& records(AppDelegate& application) {
    return application.viewController().rightSideBarViewController();
}

void showMenu(AppDelegate& application) {
    application.viewController().showSideBarControllerWithDirection(SideBarContainer::kLeft);
}

// As the button of the live screen does while its list is empty.
void showRecords(AppDelegate& application) {
    application.viewController().showSideBarControllerWithDirection(SideBarContainer::kRight);
    records(application).AddDataToTable();
}

void save(AppDelegate& application, const char* project, const char* company) {
    application.screens().present(ScreenId::SaveData, false);
    auto& form = dynamic_cast<storage::SaveDataViewController&>(*application.screens().topmost());
    form.projectName.setText(QString::fromUtf8(project));
    form.company.setText(QString::fromUtf8(company));
    form.pressSaveBack();
}

void saveTwice(AppDelegate& application) {
    storage::lastDataIdOfEarlierSessions = 0;  // a picture of the form may have told otherwise
    save(application, "Harbour Street 12", "O'Neill & Sons");
    for (int press = 0; press < 3; ++press) application.mainView().btnRecord.press();
    save(application, "Mill Lane 4", "");
}

void deleteLast(AppDelegate& application) {
    showRecords(application);
    records(application).commitDelete(records(application).dataList()->count() - 1);
}

void openFirstRecord(AppDelegate& application) {
    records(application).AddDataToTable();
    records(application).didSelectRow(0);
}

history::HistoryViewController& openHistory(AppDelegate& application) {
    openFirstRecord(application);
    return dynamic_cast<history::HistoryViewController&>(*application.screens().topmost());
}

void openFirstMeasurement(AppDelegate& application) {
    openHistory(application).didSelectRow(0);
}

// Both files stay in the folder. Where that is, each tour would show otherwise.
void exportBothWays(AppDelegate& application) {
    history::HistoryViewController& screen = openHistory(application);
    screen.ExportCVS();
    application.alerts().cancel();
    screen.ExportPDF();
    application.notice().clear();
}

// How the user comes to a screen; those that are not named are presented from anywhere.
void open(ScreenId id, AppDelegate& application) {
    if (id == ScreenId::History) return openFirstRecord(application);
    if (id == ScreenId::HistoryCell) return openFirstMeasurement(application);
    if (id == ScreenId::MailCompose) return openHistory(application).SendMail();
    application.screens().present(id, false);
}

void addStops(std::vector<Step>& steps, const shell::ScreenRow& row) {
    for (const shell::ScreenStop& stop : row.stops) {
        steps.push_back({stop.name, [id = row.id, stop](AppDelegate& application) {
                             open(id, application);
                             if (stop.prepare != nullptr) stop.prepare(*application.screens().topmost());
                         }});
    }
}

}  // namespace

std::vector<Step> road(const std::vector<shell::ScreenRow>& rows) {
    std::vector<Step> steps{{"19-menu", showMenu}, {"20-no-test-records", showRecords}};
    for (const shell::ScreenRow& row : rows) {
        if (row.id == ScreenId::SaveData) addStops(steps, row);
    }
    steps.push_back({"", saveTwice});
    steps.push_back({"24-test-records", showRecords});
    steps.push_back({"25-test-record-deleted", deleteLast});
    for (const shell::ScreenRow& row : rows) {
        if (row.id != ScreenId::SaveData) addStops(steps, row);
    }
    steps.push_back({"36-exported", exportBothWays});
    return steps;
}

void goHome(AppDelegate& application) {
    while (application.screens().topmost() != nullptr) application.screens().dismiss(false);
    if (application.viewController().sideBarShowing())
        application.viewController().showSideBarControllerWithDirection(SideBarContainer::kClosed);
    application.notice().clear();
    while (application.alerts().isShown()) application.alerts().cancel();
}

}  // namespace kestrix::tour
