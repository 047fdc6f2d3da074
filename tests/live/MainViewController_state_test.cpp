// The states of the link on the screen.
#include <gtest/gtest.h>

#include <any>
#include <string>

#include "tests/live/MainViewFixture.h"

namespace kestrix::live {
namespace {

class LinkStateTest : public MainViewFixture {
  protected:
    // All that a state could change.
    std::string screenAsText() const {
        std::string text = shownLabels(*screen_) + "|" + tripTimes(*screen_);
        for (const ui::Control* control : {static_cast<const ui::Control*>(&screen_->lblNoCon),
                                           static_cast<const ui::Control*>(&screen_->btnHelp),
                                           static_cast<const ui::Control*>(&screen_->blueImage)})
            text += control->hidden() ? "|hidden" : "|shown";
        for (const ui::ImageView* view : {&screen_->leftAnimaImg, &screen_->rightAnimaImg})
            text += "|" + view->shownImage().toStdString() + (view->isAnimating() ? " runs" : " stands");
        const ui::Label* lit = screen_->litTitle();
        text += "|" + (lit != nullptr ? lit->objectName().toStdString() : "unlit");
        return text + "|" + screen_->D1Value.text().toStdString() + "|" + leftImage() + "|" + rightImage();
    }
    static protocol::MeterReading alarmed(std::uint8_t function) {
        protocol::MeterReading record = recordOf(function);
        record.bAlarmFlag = 1;
        return record;
    }
};

TEST_F(LinkStateTest, State1HidesTheNoticeAndTheHelpAndStartsBothAnimations) {
    start();
    screen_->viewStatus(1);
    EXPECT_TRUE(screen_->lblNoCon.hidden());
    EXPECT_TRUE(screen_->btnHelp.hidden());
    EXPECT_TRUE(screen_->leftAnimaImg.isAnimating());
    EXPECT_TRUE(screen_->rightAnimaImg.isAnimating());
    EXPECT_EQ(screen_->leftAnimaImg.shownImage(), QStringLiteral("orvo_home_lightning_l1.png"));
    scheduler_.advance(std::chrono::milliseconds(500));
    EXPECT_EQ(screen_->leftAnimaImg.shownImage(), QStringLiteral("orvo_home_lightning_l4.png"));
    EXPECT_EQ(screen_->rightAnimaImg.shownImage(), QStringLiteral("orvo_home_lightning_r4.png"));
    EXPECT_EQ(storedState(), 1);
}

TEST_F(LinkStateTest, State1ShowsNoReadingOfBefore) {
    start();
    receive(recordOf('1'));
    screen_->viewStatus(0);
    screen_->viewStatus(1);
    EXPECT_EQ(shownLabels(*screen_), "values1-6");
    EXPECT_EQ(screen_->litTitle(), nullptr);
    EXPECT_TRUE(screen_->blueImage.hidden());
}

TEST_F(LinkStateTest, State0ShowsTheNoticeAndTheHelpAndStopsOnTheFourthImages) {
    startConnected();
    screen_->viewStatus(0);
    EXPECT_FALSE(screen_->lblNoCon.hidden());
    EXPECT_FALSE(screen_->btnHelp.hidden());
    EXPECT_FALSE(screen_->leftAnimaImg.isAnimating());
    EXPECT_FALSE(screen_->rightAnimaImg.isAnimating());
    EXPECT_EQ(screen_->leftAnimaImg.shownImage(), QStringLiteral("orvo_home_lightning_l4.png"));
    EXPECT_EQ(screen_->rightAnimaImg.shownImage(), QStringLiteral("orvo_home_lightning_r4.png"));
    EXPECT_EQ(storedState(), 0);
    EXPECT_EQ(scheduler_.pending(), 0U);
}

TEST_F(LinkStateTest, State0EmptiesTheDisplay) {
    for (const std::uint8_t function : {'1', '2', '3', '4', '5', '6', '7'}) {
        SCOPED_TRACE(int{function});
        startConnected();
        receive(alarmed(function));
        EXPECT_NE(screen_->litTitle(), nullptr);
        EXPECT_FALSE(screen_->blueImage.hidden());
        screen_->viewStatus(0);
        EXPECT_EQ(screen_->litTitle(), nullptr);
        EXPECT_TRUE(screen_->blueImage.hidden());
        EXPECT_EQ(shownLabels(*screen_), function == '6' ? "" : "values1-6");
    }
}

TEST_F(LinkStateTest, ADisconnectWhileAnRcdSequenceIsShownHidesTheRowsButLeavesTheVisibleRcdValueLabel) {
    start();
    postState("1");
    for (int i = 0; i < 5; ++i) receive(sequenceRecord(1, "18"));
    EXPECT_EQ(shownLabels(*screen_), "rows1-4 rows5-6 value2");
    postState("0");
    EXPECT_EQ(shownLabels(*screen_), "value2");
    EXPECT_EQ(tripTimes(*screen_), "[18][18][ ][ ][ ][ ]");
    EXPECT_EQ(MeterDisplay::counters.rcdStep, 5);
}

TEST_F(LinkStateTest, AStateOf2IsStoredUnderBluestateButChangesNothingOnTheScreen) {
    for (const bool connected : {false, true}) {
        for (const std::int32_t state : {2, 3, -1, 100}) {
            SCOPED_TRACE(state);
            start();
            screen_->viewStatus(connected ? 1 : 0);
            receive(alarmed('1'));
            const std::string before = screenAsText();
            testing::forgetLogLines();
            screen_->viewStatus(state);
            EXPECT_EQ(screenAsText(), before);
            EXPECT_EQ(storedState(), state);
            EXPECT_EQ(testing::logLines(), Log{"info kestrix.live: 状态:" + std::to_string(state)});
        }
    }
}

TEST_F(LinkStateTest, EveryStateIsLoggedAndStored) {
    start();
    for (const std::int32_t state : {1, 0, 2}) {
        testing::forgetLogLines();
        screen_->viewStatus(state);
        EXPECT_EQ(testing::logLines(), Log{"info kestrix.live: 状态:" + std::to_string(state)});
        EXPECT_EQ(storedState(), state);
    }
}

TEST_F(LinkStateTest, TheStateStaysStoredUntilTheLinkOfTheNextStartReports) {
    start();
    screen_->viewStatus(1);
    screen_.reset();
    EXPECT_EQ(storedState(), 1);
    int beforeTheReport = -1;
    whenTheLinkIsMade_ = [&] { beforeTheReport = storedState(); };
    start();
    EXPECT_EQ(beforeTheReport, 1);
    EXPECT_EQ(storedState(), 0);
    EXPECT_FALSE(screen_->lblNoCon.hidden());
}

TEST_F(LinkStateTest, APostedStateIsKeptAndShown) {
    start();
    postState("1");
    EXPECT_EQ(screen_->bluestate, 1);
    EXPECT_TRUE(screen_->lblNoCon.hidden());
    EXPECT_EQ(storedState(), 1);
    screen_->getblueView({link::Orvoblueviewnotification, std::string("0"), {}});
    EXPECT_EQ(screen_->bluestate, 0);
    EXPECT_FALSE(screen_->lblNoCon.hidden());
    EXPECT_EQ(storedState(), 0);
}

TEST_F(LinkStateTest, ATextThatIsNoNumberCounts0) {
    start();
    postState("1");
    postState("x");
    EXPECT_EQ(screen_->bluestate, 0);
    EXPECT_FALSE(screen_->lblNoCon.hidden());
    EXPECT_EQ(storedState(), 0);
}

TEST_F(LinkStateTest, AnObjectOfAnotherTypeAndNoneCount0) {
    for (const std::any& foreign : {std::any(1), std::any("1"), std::any()}) {
        start();
        postState("1");
        platform::NotificationCenter::defaultCenter().post({link::Orvoblueviewnotification, foreign, {}});
        EXPECT_EQ(screen_->bluestate, 0);
        EXPECT_FALSE(screen_->lblNoCon.hidden());
        EXPECT_EQ(storedState(), 0);
    }
}

TEST_F(LinkStateTest, ShowingAStateDoesNotMakeItThePublishedOne) {
    start();
    screen_->viewStatus(1);
    EXPECT_EQ(screen_->bluestate, 0);
}

TEST_F(LinkStateTest, TheListSurvivesADropOfTheLink) {
    start();
    postState("1");
    receive(recordOf('1'));
    screen_->pressRecord();
    postState("0");
    postState("1");
    EXPECT_EQ(screen_->array.count(), 1);
    screen_->pressRecord();
    EXPECT_EQ(screen_->array.row(1).Result, "1.23MΩ,45.6V");
}

// A screen that starts connected shows every label until a record or a disconnect switches groups.
TEST_F(LinkStateTest, AStartInState1HidesNoLabel) {
    startConnected();
    EXPECT_EQ(shownLabels(*screen_), "D1 D2 rows1-4 rows5-6 values1-6");
    receive(recordOf('1'));
    EXPECT_EQ(shownLabels(*screen_), "D1 D2 rows1-4 rows5-6 values1-6");
    receive(recordOf('6'));
    EXPECT_EQ(shownLabels(*screen_), "D1");
}

}  // namespace
}  // namespace kestrix::live
