// A working day in short: the window on a tester that comes and goes, recording, saving, exporting, mailing
// away, deleting, by the user's own buttons. KESTRIX_USE_SECONDS says how long of the application's own time.
#include <QDir>

#include <cstdlib>

#include "history/HistoryViewController.h"
#include "storage/SaveDataViewController.h"
#include "storage/Selection.h"
#include "storage/ServiceDao.h"
#include "storage/TestRecords.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/ProcessState.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

using std::chrono::milliseconds;
using ui::ScreenId;

constexpr int kShortUse = 180;                  // seconds
constexpr std::size_t kTolerance = 512 * 1024;  // bytes that caches of the toolkit may still take
constexpr int kMostRecords = 5;

int secondsOfUse() {
    const char* const given = std::getenv("KESTRIX_USE_SECONDS");
    return given != nullptr ? std::max(kShortUse, std::atoi(given)) : kShortUse;
}

class HourOfUse : public testing::WindowFixture {
  protected:
    HourOfUse() {
        options_.uris = {"simulator:faults"};
        options_.slideDuration = milliseconds(0);
    }
    // One second of the application's time, at the rate of the tester.
    void second() {
        for (int frame = 0; frame < 4; ++frame) {
            scheduler_.advance(milliseconds(250));
            settle();
        }
    }
    void press(const char* name) {
        tap(name);
        settle();
    }
    template <typename S>
    S& shown() {
        return dynamic_cast<S&>(*app().screens().topmost());
    }
    void record() {
        const int before = screen().dataList()->count();
        press("btnRecord");
        recorded_ += static_cast<std::size_t>(screen().dataList()->count() - before);
    }
    void save() {
        if (screen().dataList()->count() == 0) return;
        press("Rightbtn");
        shown<storage::SaveDataViewController>().projectName.setText(QStringLiteral("Harbour Street"));
        press("btnSave");
        ASSERT_EQ(app().screens().count(), 0);
        ++saved_;
    }
    // The newest test record, as a text and as a report; the files go again.
    void exportBothWays() {
        storage::ServiceDao dao(app().documents());
        const auto records = dao.findRecordForm();
        if (records.empty()) return;
        storage::selectedRecordId = records.back().recordId;
        app().screens().present(ScreenId::History, false);
        settle();
        auto& history = shown<history::HistoryViewController>();
        history.ExportCVS();
        app().alerts().cancel();
        history.ExportPDF();
        app().alerts().cancel();
        settle();
        QDir folder(options_.documents);
        for (const QString& file : folder.entryList({QStringLiteral("*.csv"), QStringLiteral("*.pdf")})) {
            EXPECT_TRUE(folder.remove(file));
            ++exported_;
        }
        press("btnBack");
        for (std::size_t more = kMostRecords; more < records.size(); ++more) {
            storage::DeletedRecord deleted;
            EXPECT_TRUE(storage::deleteRecord(dao, records[more - kMostRecords].recordId, deleted).done);
        }
    }
    void useFor(int seconds) {
        for (int now = 0; now < seconds && !HasFailure(); ++now) {
            testing::forgetLogLines();
            second();
            if (now % 2 == 1) record();
            if (now % 30 == 29) save();
            if (now % 60 == 59) exportBothWays();
            if (screen().bluestate == 0) ++secondsWithout_;
        }
    }

    std::size_t recorded_ = 0;
    int saved_ = 0;
    int exported_ = 0;
    int secondsWithout_ = 0;
};

TEST_F(HourOfUse, LosesNothingAndNeedsNoMoreMemoryAtItsEnd) {
    const int seconds = secondsOfUse();
    open();
    useFor(seconds / 3);
    const std::size_t atFirst = testing::allocatedBytes();
    const std::size_t descriptors = testing::openDescriptors();
    useFor(seconds / 3 * 2);
    EXPECT_LE(testing::allocatedBytes(), atFirst + kTolerance);
    EXPECT_EQ(testing::openDescriptors(), descriptors);
    EXPECT_GT(recorded_, static_cast<std::size_t>(seconds) / 4);
    EXPECT_GE(saved_, seconds / 30 - 2);
    EXPECT_EQ(exported_, 2 * (seconds / 3 / 60 + seconds / 3 * 2 / 60));
    EXPECT_GT(secondsWithout_, 0) << "the link never dropped";
    ::testing::Test::RecordProperty("recorded", static_cast<int>(recorded_));
}

}  // namespace
}  // namespace kestrix::shell
