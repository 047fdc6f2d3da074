#include "history/HistoryViewController.h"

#include "tests/history/HistoryFixture.h"
#include "tests/support/LogExpectations.h"
#include "ui/Palette.h"

namespace kestrix::history {
namespace {

using ui::ScreenId;
using Asked = std::vector<std::string>;

class HistoryViewControllerTest : public HistoryFixture {
  protected:
    HistoryViewController& open(std::int64_t record) {
        storage::selectedRecordId = record;
        screen_ = std::make_unique<HistoryViewController>(ScreenId::History, surroundings_.services());
        screen_->setName(QStringLiteral("History"));
        screen_->loadView();
        screen_->viewWillAppear();
        screen_->viewDidAppear();
        return *screen_;
    }
    std::unique_ptr<HistoryViewController> screen_;
};

TEST_F(HistoryViewControllerTest, ShowsTheMeasurementsOfTheChosenRecordInTheirOrder) {
    const std::int64_t other = addRecord("Other");
    const std::int64_t record = addRecord("Plant A");
    addMeasure(record, "Plant A", measureNamed("S_1"));
    addMeasure(other, "Other", measureNamed("S_9"));
    addMeasure(record, "Plant A", measureNamed("S_2"));
    const HistoryViewController& screen = open(record);
    ASSERT_EQ(screen.array.count(), 2);
    EXPECT_EQ(screen.array.at(0).texts,
              (QStringList{"S_1", "INSULATION", "VISO=500V", QStringLiteral("186.4MΩ,524V"),
                           "2026-03-04 05:06:07", ""}))
        << "the column of the comments stays empty";
    EXPECT_EQ(screen.array.text(1, QStringLiteral("DataName")), QStringLiteral("S_2"));
    EXPECT_EQ(screen.recordNames, "Plant A");
    EXPECT_EQ(screen.historyTitle.text(), QStringLiteral("Plant A"));
    EXPECT_EQ(screen.historyTitle.objectName(), QStringLiteral("historyTitle"));
}

TEST_F(HistoryViewControllerTest, ItsColumnsStandWhereTheyAreTold) {
    const HistoryViewController& screen = open(addRecord("Plant A"));
    struct Place {
        const char* title;
        double x;
        double width;
    };
    const Place places[] = {{"Data Name", 0, 50}, {"Function", 51, 44},   {"Parameters", 96, 61},
                            {"Result", 158, 60},  {"Date Time", 219, 50}, {"Comments", 270, 50}};
    ASSERT_EQ(screen.array.columns().size(), 6);
    for (int column = 0; column < 6; ++column) {
        const ui::Column& is = screen.array.columns()[column];
        EXPECT_EQ(is.title, QLatin1String(places[column].title));
        EXPECT_EQ(is.x, places[column].x);
        EXPECT_EQ(is.width, places[column].width);
        EXPECT_EQ(is.fontSize, 8);
        const ui::Label& header = *screen.tableView.headers()[column];
        EXPECT_EQ(header.text(), is.title);
        EXPECT_EQ(header.backgroundColor(), QColor(69, 94, 149));
        EXPECT_EQ(header.fontFamily(), QStringLiteral("Arial"));
        EXPECT_EQ(header.fontSize(), 9);
        EXPECT_EQ(header.textColor(), QColor(Qt::white));
    }
}

TEST_F(HistoryViewControllerTest, ALabelHasOneOfFourStyles) {
    const HistoryViewController& screen = open(addRecord("Plant A"));
    const int sizes[] = {14, 12, 9, 20};
    for (int style = 0; style < 4; ++style) {
        ui::Label label(*screen_, "label");
        screen.setUILabelView(label, style, {});
        EXPECT_EQ(label.fontSize(), sizes[style]);
        EXPECT_EQ(label.backgroundColor(), style == 2 ? ui::Palette::header : ui::Palette::clear);
        EXPECT_EQ(label.alignment(), Qt::AlignHCenter);
        EXPECT_EQ(label.text(), QString());
    }
}

TEST_F(HistoryViewControllerTest, ARecordWithoutMeasurementsShowsTheTitlesAnEmptyTableAndAnUnchangedTitle) {
    const HistoryViewController& screen = open(addRecord("Plant A"));
    EXPECT_EQ(screen.array.count(), 0);
    EXPECT_EQ(screen.tableView.headers().size(), 6);
    EXPECT_EQ(screen.historyTitle.text(), QStringLiteral("History"));
    EXPECT_EQ(screen.tableView.emptyText(),
              QStringLiteral("This test record has no measurements.\nGo back to choose another one."));
}

TEST_F(HistoryViewControllerTest, ItReadsOnceAndAgainOnlyWhileItIsEmpty) {
    const std::int64_t record = addRecord("Plant A");
    HistoryViewController& screen = open(record);
    addMeasure(record, "Plant A", measureNamed("S_1"));
    screen.viewDidAppear();
    EXPECT_EQ(screen.array.count(), 1);
    addMeasure(record, "Plant A", measureNamed("S_2"));
    screen.viewDidAppear();
    EXPECT_EQ(screen.array.count(), 1) << "as when one comes back from a measurement";
}

TEST_F(HistoryViewControllerTest, ARowIsAsHighAsTheLongerOfItsTwoTextsButNeverBelowTwenty) {
    const std::int64_t record = addRecord("Plant A");
    addMeasure(record, "Plant A", measureNamed("S_1"));
    surroundings_.textHeight = 9;
    EXPECT_EQ(open(record).array.height(0), 20);
    surroundings_.textHeight = 47;
    EXPECT_EQ(open(record).array.height(0), 47);
}

// With the fonts of the system.
class HistoryRowHeight : public HistoryViewControllerTest {
  protected:
    double heightOf(const std::string& parameters, const std::string& result) {
        surroundings_.fonts = &fonts_;
        const std::int64_t record = addRecord("Plant A");
        addMeasure(record, "Plant A", measureNamed("S_1", parameters, result));
        return open(record).array.height(0);
    }

  private:
    const ui::FontTextMeasure fonts_{};
};

TEST_F(HistoryRowHeight, AVeryLongResultGivesATallerRowUpToFourHundredAndAShortOneTwenty) {
    EXPECT_EQ(heightOf("", ""), 20);
    EXPECT_EQ(heightOf("VISO=500V", "0.2Ω"), 20);
    EXPECT_GT(heightOf("", std::string(80, '8')), 40);
    EXPECT_LT(heightOf("", std::string(80, '8')), 100);
    EXPECT_EQ(heightOf("", std::string(100'000, '8')), 400);
    EXPECT_EQ(heightOf(std::string(100'000, '8'), ""), 400);
}

TEST_F(HistoryRowHeight, OfTwoTextsOfEqualLengthTheResultCounts) {
    EXPECT_GT(heightOf(std::string(40, 'i'), std::string(40, 'W')),
              heightOf(std::string(40, 'W'), std::string(40, 'i')));
}

TEST_F(HistoryViewControllerTest, ChoosingARowOpensItsMeasurement) {
    const std::int64_t record = addRecord("Plant A");
    addMeasure(record, "Plant A", measureNamed("S_1"));
    const std::int64_t second = addMeasure(record, "Plant A", measureNamed("S_2"));
    HistoryViewController& screen = open(record);
    screen.tableView.choose(1);
    EXPECT_EQ(storage::selectedDataId, second);
    EXPECT_EQ(surroundings_.asked, Asked{"present HistoryCell animated"});
    screen.tableView.choose(2);
    screen.tableView.choose(-1);
    EXPECT_EQ(surroundings_.asked.size(), 1U);
}

TEST_F(HistoryViewControllerTest, BackDismissesItAnimated) {
    open(addRecord("Plant A")).btnBack.press();
    EXPECT_EQ(surroundings_.asked, Asked{"dismiss animated"});
}

TEST_F(HistoryViewControllerTest, ShareOpensTheExportMenuWhichIsMadeOnceAndKept) {
    HistoryViewController& screen = open(addRecord("Plant A"));
    EXPECT_EQ(screen.exportMenu(), nullptr);
    screen.btnShare.press();
    ui::MBButtonMenuViewController* const menu = screen.exportMenu();
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->isOnScreen());
    EXPECT_EQ(menu->buttonTitles(), (QStringList{"Email", "Export to CSV", "Export to PDF", "Cancel"}));
    EXPECT_EQ(menu->cancelButtonIndex(), 3);
    menu->buttonTapped(QStringLiteral("Cancel"));
    EXPECT_FALSE(menu->isRising());
    EXPECT_FALSE(surroundings_.notice.isShown());
    menu->movementDone();
    screen.btnShare.press();
    EXPECT_EQ(screen.exportMenu(), menu);
    EXPECT_TRUE(menu->isOnScreen());
}

TEST_F(HistoryViewControllerTest, TextsOfAnyKindComeBackAsTheyWereStored) {
    const std::string name = "O'Neill \"בדיקה\" 👷🏽";
    const std::int64_t record = addRecord(name);
    addMeasure(record, name, measureNamed("S_1", std::string(100'000, 'x'), "מדידה, %1 'a'"));
    const HistoryViewController& screen = open(record);
    EXPECT_EQ(screen.historyTitle.text().toStdString(), name);
    EXPECT_EQ(screen.array.at(0).texts[2].size(), 100'000);
    EXPECT_EQ(screen.array.at(0).texts[3].toStdString(), "מדידה, %1 'a'");
}

TEST_F(HistoryViewControllerTest, WhatCannotBeReadIsSaid) {
    dao_.execSql("DROP TABLE measurefrom");
    const HistoryViewController& screen = open(1);
    EXPECT_EQ(screen.array.count(), 0);
    EXPECT_TRUE(screen.tableView.emptyText().startsWith(
        QStringLiteral("Not all measurements could be read: the database in ")));
    EXPECT_EQ(surroundings_.notice.text(), screen.tableView.emptyText());
}

TEST_F(HistoryViewControllerTest, ItChangesNothing) {
    const std::int64_t record = addRecord("Plant A");
    addMeasure(record, "Plant A", measureNamed("S_1"));
    const auto records = dao_.findRecordForm();
    const auto measures = dao_.findMeasureForm(true);
    HistoryViewController& screen = open(record);
    screen.tableView.choose(0);
    screen.btnShare.press();
    EXPECT_EQ(dao_.findRecordForm(), records);
    EXPECT_EQ(dao_.findMeasureForm(true), measures);
}

}  // namespace
}  // namespace kestrix::history
