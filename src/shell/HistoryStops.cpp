#include "shell/HistoryStops.h"

#include <limits>

#include "history/HistoryViewController.h"
#include "storage/Selection.h"

namespace kestrix::shell {
namespace {

// No record of any tour.
constexpr std::int64_t kNoRecord = std::numeric_limits<std::int32_t>::max();

}  // namespace

void showEmptyRecord(ui::Screen& presented) {
    auto& screen = dynamic_cast<history::HistoryViewController&>(presented);
    storage::selectedRecordId = kNoRecord;
    screen.getMeasureData();
    screen.setTitle(screen.name());  // it came with another record
}

void showExportMenu(ui::Screen& presented) {
    dynamic_cast<history::HistoryViewController&>(presented).pressShare();
}

}  // namespace kestrix::shell
