// The buttons of the toolbar, the side bars and the screens that are opened from here.
#include <gtest/gtest.h>

#include <string>

#include "tests/live/MainViewFixture.h"

namespace kestrix::live {
namespace {

class ToolbarTest : public MainViewFixture {
  protected:
    ToolbarTest() {
        start();
        recordData_ = platform::NotificationCenter::defaultCenter().addObserver(
            ui::NSRecordData, [this](const platform::Notification& notification) {
                EXPECT_FALSE(notification.object.has_value());
                log_.emplace_back("NSRecordData");
            });
    }
    void recordOne() {
        receive(recordOf('1'));
        screen_->pressRecord();
    }
    void slideTo(std::int32_t direction) {
        ui::SideBarContainer::sideBarDirection = direction;
        post(ui::NSHomeBackBg);
    }

    platform::NotificationCenter::Subscription recordData_;
};

TEST_F(ToolbarTest, WithAnEmptyListTheRightButtonOpensTheSideBarAndPostsNSRecordData) {
    LoggedContainer container(log_);
    screen_->Rightbtn.press();
    EXPECT_EQ(takenLog(), (Log{"side bar 2", "NSRecordData"}));
}

TEST_F(ToolbarTest, WithOneRowTheRightButtonOpensTheSaveScreenInsteadAndPostsNothing) {
    LoggedContainer container(log_);
    recordOne();
    screen_->Rightbtn.press();
    EXPECT_EQ(takenLog(), Log{"present SaveData animated"});
}

TEST_F(ToolbarTest, WithTheListEmptiedTheRightButtonOpensTheSideBarAgain) {
    LoggedContainer container(log_);
    recordOne();
    post(ui::NSClearTable);
    screen_->showRightSideBar();
    EXPECT_EQ(takenLog(), (Log{"side bar 2", "NSRecordData"}));
}

TEST_F(ToolbarTest, WithoutAContainerTheRightButtonStillAsksForTheRecordData) {
    screen_->showRightSideBar();
    EXPECT_EQ(takenLog(), Log{"NSRecordData"});
}

TEST_F(ToolbarTest, TheLeftButtonOpensTheLeftSideBar) {
    LoggedContainer container(log_);
    screen_->Leftbtn.press();
    EXPECT_EQ(takenLog(), Log{"side bar 1"});
    recordOne();
    screen_->showLeftSideBar();
    EXPECT_EQ(takenLog(), Log{"side bar 1"});
}

TEST_F(ToolbarTest, WithoutAContainerTheLeftButtonDoesNothing) {
    screen_->Leftbtn.press();
    EXPECT_EQ(takenLog(), Log{});
}

TEST_F(ToolbarTest, TheHelpButtonPresentsTheConnectionHelp) {
    screen_->btnHelp.press();
    EXPECT_EQ(takenLog(), Log{"present BluetoothConnectionHelp animated"});
    screen_->pressBCH();
    EXPECT_EQ(takenLog(), Log{"present BluetoothConnectionHelp animated"});
    screen_->viewStatus(1);
    screen_->btnHelp.press();  // hidden
    EXPECT_EQ(takenLog(), Log{});
}

TEST_F(ToolbarTest, TheImagesFollowTheSideBars) {
    struct Row {
        std::int32_t direction;
        const char* left;
        const char* right;
    };
    constexpr Row rows[] = {
        {0, "orvo_home_button_information.png", "orvo_home_button_history.png"},
        {1, "orvo_home_left_back.png", "right as it was"},
        {2, "left as it was", "orvo_home_button_back.png"},
        {3, "left as it was", "right as it was"},
        {-1, "left as it was", "right as it was"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.direction);
        screen_->Leftbtn.setImage(QStringLiteral("left as it was"));
        screen_->Rightbtn.setImage(QStringLiteral("right as it was"));
        slideTo(row.direction);
        EXPECT_EQ(leftImage(), row.left);
        EXPECT_EQ(rightImage(), row.right);
    }
}

TEST_F(ToolbarTest, OpeningAndClosingTheRightSideBarBehindARecordingLeavesTheHistoryImage) {
    recordOne();
    EXPECT_EQ(rightImage(), "orvo_home_button_save.png");
    slideTo(2);
    EXPECT_EQ(rightImage(), "orvo_home_button_back.png");
    slideTo(0);
    EXPECT_EQ(rightImage(), "orvo_home_button_history.png");
    EXPECT_EQ(screen_->array.count(), 1);
    screen_->Rightbtn.press();  // the rows decide, not the image
    EXPECT_EQ(takenLog(), Log{"present SaveData animated"});
}

TEST_F(ToolbarTest, EveryButtonIsNamedByWhatItDoes) {
    const auto name = [](const ui::Button& button) { return button.accessibleName().toStdString(); };
    EXPECT_EQ(name(screen_->Leftbtn), "Menu");
    EXPECT_EQ(name(screen_->btnRecord), "Record");
    EXPECT_EQ(name(screen_->Rightbtn), "Saved test records");
    recordOne();
    EXPECT_EQ(name(screen_->Rightbtn), "Save test record");
    slideTo(2);
    slideTo(0);
    EXPECT_EQ(name(screen_->Rightbtn), "Save test record");
    post(ui::NSClearTable);
    EXPECT_EQ(name(screen_->Rightbtn), "Saved test records");
}

}  // namespace
}  // namespace kestrix::live
