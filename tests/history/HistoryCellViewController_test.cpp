#include "history/HistoryCellViewController.h"

#include "tests/history/HistoryFixture.h"
#include "ui/StageMetrics.h"

namespace kestrix::history {
namespace {

class HistoryCellViewControllerTest : public HistoryFixture {
  protected:
    ~HistoryCellViewControllerTest() override { fit(480); }
    static void fit(double height) { ui::StageMetrics::shared().fit({320, height}, 1); }
    HistoryCellViewController& open(std::int64_t measurement) {
        storage::selectedDataId = measurement;
        screen_ =
            std::make_unique<HistoryCellViewController>(ui::ScreenId::HistoryCell, surroundings_.services());
        screen_->setName(QStringLiteral("Measurement"));
        screen_->loadView();
        EXPECT_EQ(screen_->screenTitle.text(), QStringLiteral(" ")) << "until it is loaded";
        screen_->viewWillAppear();
        screen_->viewDidAppear();
        return *screen_;
    }
    std::unique_ptr<HistoryCellViewController> screen_;
};

TEST_F(HistoryCellViewControllerTest, ShowsTheMeasurementAsSixRowsOfATitleAndAValue) {
    addMeasure(1, "Plant A", measureNamed("S_1"));
    const std::int64_t chosen = addMeasure(1, "Plant A", measureNamed("S_2"));
    const HistoryCellViewController& screen = open(chosen);
    const QStringList expected[] = {{"Data Name", "S_2"},
                                    {"Function", "INSULATION"},
                                    {"Parameters", "VISO=500V"},
                                    {"Result", QStringLiteral("186.4MΩ,524V")},
                                    {"Date Time", "2026-03-04 05:06:07"},
                                    {"Comments", " "}};
    ASSERT_EQ(screen.array.count(), 6);
    for (int row = 0; row < 6; ++row) EXPECT_EQ(screen.array.at(row).texts, expected[row]);
    EXPECT_EQ(screen.screenTitle.text(), QStringLiteral("Plant A"));
}

TEST_F(HistoryCellViewControllerTest, TheRowOfTheCommentsAlwaysShowsABlank) {
    storage::MeasureData measure = measureNamed("S_1");
    measure.comments = "wet";
    EXPECT_EQ(open(addMeasure(1, "Plant A", measure)).array.text(5, QStringLiteral("DataName")),
              QStringLiteral(" "));
}

TEST_F(HistoryCellViewControllerTest, OnAScreenOf480PointsItsRowsAre72High) {
    fit(480);
    const HistoryCellViewController& screen = open(addMeasure(1, "Plant A", measureNamed("S_1")));
    for (int row = 0; row < 6; ++row) EXPECT_EQ(screen.array.height(row), 72);
}

TEST_F(HistoryCellViewControllerTest, ItsRowsFollowTheScreensHeightInWholePoints) {
    fit(568);
    const HistoryCellViewController& screen = open(addMeasure(1, "Plant A", measureNamed("S_1")));
    EXPECT_EQ(screen.array.height(0), 87);
    fit(650);
    EXPECT_EQ(screen.array.height(5), 101) << "100.67 rounded";
    fit(646);
    EXPECT_EQ(screen.array.height(5), 100);
}

TEST_F(HistoryCellViewControllerTest, ItReadsOnce) {
    const std::int64_t chosen = addMeasure(1, "Plant A", measureNamed("S_1"));
    HistoryCellViewController& screen = open(chosen);
    dao_.DeleteMeasureFormData(chosen);
    screen.viewDidAppear();
    EXPECT_EQ(screen.array.count(), 6);
}

TEST_F(HistoryCellViewControllerTest, AMeasurementThatHasGoneIsSaid) {
    const HistoryCellViewController& screen = open(12345);
    EXPECT_EQ(screen.array.count(), 0);
    EXPECT_EQ(screen.screenTitle.text(), QStringLiteral(" "));
    EXPECT_EQ(screen.name(), QStringLiteral("Measurement")) << "for a screen reader";
    EXPECT_EQ(screen.tableView.emptyText(),
              QStringLiteral("This measurement is no longer there.\nGo back to choose another one."));
}

TEST_F(HistoryCellViewControllerTest, WhatCannotBeReadIsSaid) {
    dao_.execSql("DROP TABLE measurefrom");
    EXPECT_TRUE(
        open(1).tableView.emptyText().startsWith(QStringLiteral("The measurement could not be read: ")));
}

TEST_F(HistoryCellViewControllerTest, BackDismissesItAnimated) {
    open(addMeasure(1, "Plant A", measureNamed("S_1"))).btnBack.press();
    EXPECT_EQ(surroundings_.asked, std::vector<std::string>{"dismiss animated"});
}

}  // namespace
}  // namespace kestrix::history
