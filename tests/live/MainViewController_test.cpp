// How the screen is put together and started.
#include "live/MainViewController.h"

#include <gtest/gtest.h>

#include <QVariant>

#include <algorithm>
#include <string>

#include "tests/live/MainViewFixture.h"

namespace kestrix::live {
namespace {

class MainViewControllerTest : public MainViewFixture {
  protected:
    // The states that the screen has logged.
    static Log loggedStates() {
        Log states;
        for (const std::string& line : testing::logLines()) {
            if (line.starts_with("info kestrix.live: ")) states.push_back(line.substr(19));
        }
        return states;
    }
};

TEST_F(MainViewControllerTest, BeforeItIsLoadedNothingIsMade) {
    screen_ = makeScreen();
    EXPECT_EQ(screen_->med, nullptr);
    EXPECT_EQ(screen_->red, nullptr);
    EXPECT_EQ(screen_->dao, nullptr);
    EXPECT_EQ(screen_->blueConnect, nullptr);
    EXPECT_EQ(loggedStates(), Log{});
}

TEST_F(MainViewControllerTest, LoadingMakesWhatTheScreenOwns) {
    start();
    EXPECT_NE(screen_->med, nullptr);
    EXPECT_NE(screen_->red, nullptr);
    EXPECT_NE(screen_->dao, nullptr);
    ASSERT_NE(screen_->blueConnect, nullptr);
    EXPECT_EQ(screen_->blueConnect->delegate(), screen_.get());
    EXPECT_EQ(screen_->dataList(), &screen_->array);
    EXPECT_EQ(screen_->array.count(), 0);
}

TEST_F(MainViewControllerTest, TheHelpButtonTheNoticeAndTheWarningImageAreAsTheyShouldBe) {
    start();
    EXPECT_EQ(screen_->btnHelp.title(), QStringLiteral("Help"));
    EXPECT_EQ(screen_->btnHelp.backgroundImage(), QStringLiteral("orvo_scenario_details_button.png"));
    EXPECT_TRUE(screen_->btnHelp.actsOnTouchDown());
    EXPECT_EQ(screen_->lblNoCon.text(), QStringLiteral("Not Connected"));
    EXPECT_EQ(screen_->lblNoCon.textColor(), QColor(Qt::white));
    EXPECT_EQ(screen_->lblNoCon.alignment(), Qt::AlignHCenter);
    EXPECT_TRUE(screen_->lblNoCon.shrinksToFit());
    EXPECT_EQ(screen_->blueImage.image(), QStringLiteral("flash.png"));
    EXPECT_TRUE(screen_->blueImage.hidden());
    startConnected();
    EXPECT_TRUE(screen_->blueImage.hidden());
}

TEST_F(MainViewControllerTest, EveryButtonActsOnTouchDown) {
    start();
    EXPECT_EQ(screen_->btnRecord.image(), QStringLiteral("orvo_home_button_record.png"));
    EXPECT_TRUE(screen_->btnRecord.actsOnTouchDown());
    EXPECT_TRUE(screen_->Leftbtn.actsOnTouchDown());
    EXPECT_TRUE(screen_->Rightbtn.actsOnTouchDown());
    EXPECT_EQ(leftImage(), "orvo_home_button_information.png");
    EXPECT_EQ(rightImage(), "orvo_home_button_history.png");
}

TEST_F(MainViewControllerTest, TheLightningsCycleThroughTheirSixImagesInASecondWithoutEnd) {
    start();
    struct Row {
        const ui::ImageView& view;
        const char* side;
    };
    for (const Row& row : {Row{screen_->leftAnimaImg, "l"}, Row{screen_->rightAnimaImg, "r"}}) {
        QStringList images;
        for (const char* number : {"1", "2", "3", "4", "5", "6"})
            images << QStringLiteral("orvo_home_lightning_%1%2.png").arg(row.side, number);
        EXPECT_EQ(row.view.animationImages(), images);
        EXPECT_EQ(row.view.animationDuration(), std::chrono::seconds(1));
        EXPECT_EQ(row.view.animationRepeatCount(), 0);
    }
}

// QML reads every control as a property of its name; a name that is mistyped is then found by the tools.
TEST_F(MainViewControllerTest, EveryControlIsAPropertyOfItsOwnName) {
    start();
    int controls = 0;
    const QList<ui::Label*> headers = screen_->tableView.headers();
    for (const QObject* child : screen_->children()) {
        const auto* const label = qobject_cast<const ui::Label*>(child);
        const bool isHeader =
            label != nullptr && headers.contains(label);  // the table's, in its columns' order
        if (isHeader || qobject_cast<const ui::Control*>(child) == nullptr) continue;
        const QVariant value = screen_->property(child->objectName().toLatin1());
        EXPECT_EQ(value.value<QObject*>(), child) << child->objectName().toStdString();
        ++controls;
    }
    EXPECT_EQ(headers.size(), 6);
    EXPECT_EQ(controls, 35 + 14);  // the meter's, and the rest of the screen with the display in words
}

TEST_F(MainViewControllerTest, TheListHeadersHaveTheHeadersStyle) {
    start();
    struct Row {
        const char* name;
        const char* text;
    };
    for (const Row& row : {Row{"headerDataName", "Data Name"}, Row{"headerFunction", "Function"},
                           Row{"headerParameters", "Parameters"}, Row{"headerResult", "Result"},
                           Row{"headerDateTime", "Date Time"}, Row{"headerComments", "Comments"}}) {
        const ui::Label* header = screen_->label(QLatin1String(row.name));
        ASSERT_NE(header, nullptr);
        EXPECT_EQ(header->text().toStdString(), row.text);
        EXPECT_EQ(header->backgroundColor(), QColor(69, 94, 149));
        EXPECT_EQ(header->fontSize(), 8);
        EXPECT_EQ(header->textColor(), QColor(Qt::white));
    }
}

TEST_F(MainViewControllerTest, EverythingStandsBeforeTheLinkIsMade) {
    bool checked = false;
    whenTheLinkIsMade_ = [&] {
        checked = true;
        EXPECT_NE(screen_->med, nullptr);
        EXPECT_NE(screen_->red, nullptr);
        EXPECT_NE(screen_->dao, nullptr);
        EXPECT_EQ(screen_->btnHelp.title(), QStringLiteral("Help"));
        EXPECT_EQ(screen_->leftAnimaImg.animationImages().size(), 6);
        EXPECT_EQ(screen_->D1Value.fontSize(), 20);
        EXPECT_EQ(screen_->rcdRows[5].Unit.text(), QStringLiteral("ms"));
        EXPECT_FALSE(screen_->btnRecord.image().isEmpty());
        EXPECT_EQ(screen_->fun6.text(), QStringLiteral("RCD"));
        EXPECT_EQ(tripTimes(*screen_), kNoTripTimes);
        EXPECT_EQ(screen_->blueConnect, nullptr);
        EXPECT_EQ(loggedStates(), Log{});
    };
    start();
    EXPECT_TRUE(checked);
}

TEST_F(MainViewControllerTest, TheListAndTheToolbarAreObservedBehindTheStartOfTheLink) {
    whenTheLinkIsMade_ = [&] {
        screen_->array.append({}, 20);
        ui::SideBarContainer::sideBarDirection = 1;
        post(ui::NSClearTable);
        post(ui::NSHomeBackBg);
        EXPECT_EQ(screen_->array.count(), 1);
        EXPECT_EQ(leftImage(), "orvo_home_button_information.png");
    };
    start();
    post(ui::NSClearTable);
    post(ui::NSHomeBackBg);
    EXPECT_EQ(screen_->array.count(), 0);
    EXPECT_EQ(leftImage(), "orvo_home_left_back.png");
}

// What was stored holds until the link reports; this one has a store of its own, so that its report is not
// seen.
TEST_F(MainViewControllerTest,
       AStartWithBluestateStoredAs1ShowsTheAnimationsRunningAndNoNoticeBeforeAnyDeviceIsSeen) {
    platform::UserDefaults unheard{folder_.filePath(QStringLiteral("unheard.ini"))};
    defaults_.setInteger(QStringLiteral("bluestate"), 1);
    screen_ = makeScreen(unheard);
    screen_->loadView();
    EXPECT_EQ(loggedStates(), Log{"状态:1"});
    EXPECT_TRUE(screen_->leftAnimaImg.isAnimating());
    EXPECT_TRUE(screen_->rightAnimaImg.isAnimating());
    EXPECT_TRUE(screen_->lblNoCon.hidden());
    EXPECT_TRUE(screen_->btnHelp.hidden());
    EXPECT_EQ(screen_->bluestate, 0);
    EXPECT_TRUE(manager_.connectedAccessories().empty());
    screen_.reset();  // before its link's store
}

TEST_F(MainViewControllerTest, AStartWithBluestateStoredAs1AndNoTesterIsNotConnected) {
    defaults_.setInteger(QStringLiteral("bluestate"), 1);
    start();
    EXPECT_EQ(loggedStates(), Log{"状态:0"});
    EXPECT_FALSE(screen_->leftAnimaImg.isAnimating());
    EXPECT_FALSE(screen_->lblNoCon.hidden());
    EXPECT_FALSE(screen_->btnHelp.hidden());
    EXPECT_EQ(storedState(), 0);
}

// The link publishes what it finds before the screen listens; what it stored is what the screen reads.
TEST_F(MainViewControllerTest, AStartWithATesterThereShowsTheAnimationsRunningAndNoNotice) {
    startConnected();
    EXPECT_EQ(loggedStates(), Log{"状态:1"});
    EXPECT_EQ(screen_->bluestate, 0);
    EXPECT_TRUE(screen_->leftAnimaImg.isAnimating());
    EXPECT_TRUE(screen_->rightAnimaImg.isAnimating());
    EXPECT_TRUE(screen_->lblNoCon.hidden());
    EXPECT_TRUE(screen_->btnHelp.hidden());
    EXPECT_EQ(storedState(), 1);
}

TEST_F(MainViewControllerTest, AFirstStartShowsThatNothingIsConnected) {
    start();
    EXPECT_EQ(loggedStates(), Log{"状态:0"});
    EXPECT_FALSE(screen_->lblNoCon.hidden());
    EXPECT_FALSE(screen_->btnHelp.hidden());
    EXPECT_EQ(shownLabels(*screen_), "values1-6");
    EXPECT_EQ(tripTimes(*screen_), kNoTripTimes);
}

TEST_F(MainViewControllerTest, EveryStateOfTheLinkIsFollowed) {
    start();
    testing::forgetLogLines();
    const auto accessory = tester(1);
    source_->appear(accessory);
    EXPECT_EQ(loggedStates(), (Log{"状态:1", "状态:1"}));  // by the selection, and by its handler
    EXPECT_EQ(screen_->bluestate, 1);
    source_->disappear(accessory);
    EXPECT_EQ(loggedStates().back(), "状态:0");
    EXPECT_EQ(screen_->bluestate, 0);
    EXPECT_FALSE(screen_->lblNoCon.hidden());
}

TEST_F(MainViewControllerTest, ADestroyedScreenListensToNothingAndHasClosedItsSession) {
    source_->appear(tester(1));
    start();
    EXPECT_NE(source_->line.channel, nullptr);
    screen_.reset();
    EXPECT_EQ(source_->line.channel, nullptr);
    testing::forgetLogLines();
    postState("1");
    post(ui::NSClearTable);
    post(ui::NSHomeBackBg);
    source_->appear(tester(2));
    EXPECT_EQ(testing::logLines(), Log{});
}

}  // namespace
}  // namespace kestrix::live
