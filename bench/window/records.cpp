// The screens of test records with 10,000 rows: from what the user does to the first picture of them, and how
// many pictures a second they are scrolled at: records [--quick]. `lists` has a bare list of as many rows.
#include <QGuiApplication>
#include <QQuickItem>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <vector>

#include "bench/window/Application.h"
#include "bench/window/Figures.h"
#include "bench/window/Scrolling.h"
#include "bench/window/WindowWithoutDisplay.h"
#include "storage/Selection.h"
#include "storage/Transaction.h"
#include "tests/support/Items.h"

namespace {

using namespace kestrix;
using bench::Clock;

using bench::kByFinger;
using bench::kByPage;
using bench::kRows;

// 10,000 test records, of which the first one has 10,000 measurements.
void fill(const platform::DocumentsFolder& folder) {
    storage::ServiceDao dao(folder);
    storage::Transaction transaction(dao);
    storage::RecordData record{.projectName = "Harbour Street 12",
                               .company = "---",
                               .operators = "---",
                               .addres = "---",
                               .startTime = "2026-01-15 10:00:00",
                               .endTime = "2026-01-15 ",
                               .dates = "10:00:00",
                               .samples = 3,
                               .serial = "---"};
    storage::MeasureData measure{.recordId = 1,
                                 .dataName = "",
                                 .function = "RCD",
                                 .parameters = "Trip current=30mA,Type Of RCD=AC G",
                                 .result = "24.3ms,0.4V,L-PE=230V,N-PE=0V,L-N=230V,UL:50V",
                                 .dateTime = "2026-01-15 10:00:00",
                                 .comments = " ",
                                 .recordName = record.projectName};
    for (int row = 1; row <= kRows; ++row) {
        dao.addRecordForm(record);
        measure.dataName = "S_" + std::to_string(row);
        dao.addMeasureForm(measure);
    }
    if (!transaction.commit()) std::exit(1);
}

class Window {
  public:
    Window() : application_({}) {
        QObject::connect(&application_.window(), &QQuickWindow::frameSwapped, &application_.window(),
                         [this] { ++pictures_; });
        fill(application_.delegate().documents());
        draw();
    }
    shell::AppDelegate& application() { return application_.delegate(); }

    // Of what `act` makes to be shown.
    double msToPicture(const std::function<void()>& act) {
        const Clock::time_point begun = Clock::now();
        act();
        draw();
        return bench::milliseconds(Clock::now() - begun);
    }
    // list: on the screen of that name.
    double picturesASecond(const char* screen, const char* list, double step, int count) {
        QQuickItem* const shown =
            testing::findItem(*application_.window().contentItem(), QString::fromLatin1(screen));
        QQuickItem* const found =
            shown != nullptr ? testing::findItem(*shown, QString::fromLatin1(list)) : nullptr;
        if (found == nullptr || !found->isVisible()) std::exit(1);
        const Clock::time_point begun = Clock::now();
        for (int picture = 0; picture < count; ++picture) {
            found->setProperty("contentY", found->property("contentY").toDouble() + step);
            draw();
        }
        return count * 1000 / bench::milliseconds(Clock::now() - begun);
    }

  private:
    void draw() {
        const int before = pictures_;
        application_.window().update();
        while (pictures_ == before) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    bench::Application application_;
    int pictures_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    const bool quick = argc > 1 && std::string_view(argv[1]) == "--quick";
    bench::drawWithoutDisplay();
    const QGuiApplication application(argc, argv);
    bench::prepareApplication();
    Window window;
    shell::AppDelegate& delegate = window.application();
    shell::SidebarViewController& bars = delegate.viewController();
    const int count = quick ? 20 : 300;
    std::vector<double> lists;
    std::vector<double> histories;
    std::vector<double> listScrolls[2];
    std::vector<double> historyScrolls[2];
    for (int run = quick ? 1 : 9; run > 0; --run) {
        lists.push_back(window.msToPicture([&bars] {
            bars.moveAnimationWithDirection(ui::SideBarContainer::kRight, std::chrono::milliseconds(0));
            bars.rightSideBarViewController().AddDataToTable();
        }));
        listScrolls[0].push_back(window.picturesASecond("rightSideBarView", "myTableView", kByFinger, count));
        listScrolls[1].push_back(
            window.picturesASecond("rightSideBarView", "myTableView", kByPage, count / 2));
        storage::selectedRecordId = 1;
        histories.push_back(
            window.msToPicture([&delegate] { delegate.screens().present(ui::ScreenId::History, false); }));
        historyScrolls[0].push_back(window.picturesASecond("historyView", "tableView", kByFinger, count));
        historyScrolls[1].push_back(window.picturesASecond("historyView", "tableView", kByPage, count / 4));
        delegate.screens().dismiss(false);
        bars.moveAnimationWithDirection(ui::SideBarContainer::kClosed, std::chrono::milliseconds(0));
    }
    std::printf(
        "== %d test records, and one of %d measurements, medians; goals: 150 ms, 60 pictures a second\n",
        kRows, kRows);
    std::printf("test records  open in %6.1f ms, %5.0f pictures a second by finger, %5.0f by page\n",
                bench::median(lists), bench::median(listScrolls[0]), bench::median(listScrolls[1]));
    std::printf("measurements  open in %6.1f ms, %5.0f pictures a second by finger, %5.0f by page\n",
                bench::median(histories), bench::median(historyScrolls[0]), bench::median(historyScrolls[1]));
    return 0;
}
