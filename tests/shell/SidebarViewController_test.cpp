#include "shell/SidebarViewController.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/NotificationCenter.h"
#include "tests/support/TestServices.h"
#include "ui/ScreenNotifications.h"

namespace kestrix::shell {
namespace {

using platform::NotificationCenter;
using ui::SideBarContainer;
using Texts = std::vector<std::string>;

constexpr std::chrono::milliseconds kNoTime{0};
constexpr std::chrono::milliseconds kOverTime{300};

// A screen that says what is told to it.
class ContentScreen final : public ui::Screen {
  public:
    explicit ContentScreen(Texts& log) : Screen(ui::ScreenId::MainView), log_(log) {}
    void viewDidLoad() override { log_.emplace_back("load"); }
    void viewWillAppear() override { log_.emplace_back("willAppear"); }
    void viewDidAppear() override { log_.emplace_back("didAppear"); }
    void viewWillDisappear() override { log_.emplace_back("willDisappear"); }

  private:
    Texts& log_;
};

class Sidebar : public ::testing::Test {
  protected:
    SidebarViewController& open(std::chrono::milliseconds duration = kOverTime) {
        ui::Services services = services_.services();
        services.slideDuration = duration;
        link::BluetoothConnect::bConnectNotified = false;
        link::BluetoothConnect::bDisconnectNotified = false;
        container_.emplace(services);
        container_->loadView();
        slides_ = NotificationCenter::defaultCenter().addObserver(
            ui::NSHomeBackBg, [this](const platform::Notification&) {
                told_.push_back(std::to_string(SideBarContainer::sideBarDirection));
            });
        return *container_;
    }

    testing::TestServices services_;
    std::optional<SidebarViewController> container_;
    Texts told_;  // the direction at each notification
    NotificationCenter::Subscription slides_;
};

TEST_F(Sidebar, IsTheSharedContainerFromItsLoadToItsEnd) {
    EXPECT_EQ(SidebarViewController::share(), nullptr);
    const SidebarViewController* const opened = &open();
    EXPECT_EQ(SidebarViewController::share(), opened);
    EXPECT_EQ(SideBarContainer::share(), &*container_);
    container_.reset();
    EXPECT_EQ(SidebarViewController::share(), nullptr);
    EXPECT_EQ(SideBarContainer::share(), nullptr);
}

TEST_F(Sidebar, ComesClosedWithTheLiveScreenInItsContentArea) {
    SidebarViewController& container = open();
    ASSERT_NE(container.mainView(), nullptr);
    EXPECT_TRUE(container.mainView()->isViewLoaded());
    EXPECT_EQ(container.mainView()->index, 1);
    EXPECT_FALSE(container.sideBarShowing());
    EXPECT_EQ(container.currentTranslate(), 0);
    EXPECT_TRUE(container.isUserInteractionEnabled());
    EXPECT_FALSE(container.hasTapGestureRecognizer());
    EXPECT_TRUE(container.hasPanGestureReconginzer());
    EXPECT_TRUE(container.isRightInFront()) << "it is added last";
}

TEST_F(Sidebar, TheRightButtonOfTheLiveScreenUncoversTheListAndATapCoversItAgain) {
    SidebarViewController& container = open();
    container.mainView()->Rightbtn.press();
    EXPECT_EQ(told_, Texts{"2"});
    EXPECT_EQ(container.target(), -270);
    EXPECT_TRUE(container.isRightInFront());
    EXPECT_FALSE(container.isUserInteractionEnabled());
    container.slid();
    EXPECT_EQ(container.currentTranslate(), -270);
    EXPECT_TRUE(container.sideBarShowing());
    container.tapOnContentView();
    EXPECT_EQ(told_, (Texts{"2", "0"}));
    EXPECT_EQ(container.target(), 0);
    container.slid();
    EXPECT_FALSE(container.sideBarShowing());
    EXPECT_FALSE(container.hasTapGestureRecognizer());
    EXPECT_EQ(container.currentTranslate(), 0);
}

TEST_F(Sidebar, TheLeftButtonUncoversTheMenu) {
    SidebarViewController& container = open();
    container.mainView()->Leftbtn.press();
    container.slid();
    EXPECT_FALSE(container.isRightInFront());
    EXPECT_EQ(container.currentTranslate(), 270);
    EXPECT_EQ(told_, Texts{"1"});
}

TEST_F(Sidebar, NothingIsTappedWhileItSlides) {
    SidebarViewController& container = open();
    container.showSideBarControllerWithDirection(1);
    container.tapOnContentView();
    EXPECT_EQ(told_, Texts{"1"});
    container.slid();
    container.tapOnContentView();
    container.tapOnContentView();  // it slides back
    EXPECT_EQ(told_, (Texts{"1", "0"}));
}

TEST_F(Sidebar, WhileNothingIsUncoveredATapDoesNothing) {
    open().tapOnContentView();
    EXPECT_TRUE(told_.empty());
}

TEST_F(Sidebar, TheOtherSideBarIsUncoveredStraightFromAnOpenOne) {
    SidebarViewController& container = open();
    container.showSideBarControllerWithDirection(1);
    container.slid();
    container.showSideBarControllerWithDirection(2);
    EXPECT_EQ(container.target(), -270);
    container.slid();
    EXPECT_EQ(container.currentTranslate(), -270);
    EXPECT_TRUE(container.hasTapGestureRecognizer());
}

TEST_F(Sidebar, Direction3BringsTheRightBarToTheFrontMovesNothingAndStillShows) {
    SidebarViewController& container = open();
    container.showSideBarControllerWithDirection(1);
    container.slid();
    container.tapOnContentView();
    container.slid();
    container.showSideBarControllerWithDirection(3);
    EXPECT_EQ(SideBarContainer::sideBarDirection, 3);
    EXPECT_TRUE(container.isRightInFront());
    EXPECT_EQ(container.currentTranslate(), 0);
    EXPECT_TRUE(container.hasTapGestureRecognizer());
    EXPECT_TRUE(container.sideBarShowing());
    EXPECT_TRUE(container.isUserInteractionEnabled()) << "what moves nothing is over at once";
}

TEST_F(Sidebar, Direction3LeavesAnUncoveredBarWhereItIs) {
    SidebarViewController& container = open(kNoTime);
    container.showSideBarControllerWithDirection(1);
    container.showSideBarControllerWithDirection(3);
    EXPECT_EQ(container.currentTranslate(), 270);
}

TEST_F(Sidebar, SelectingTheCurrentScreenClosesTheSideBarAndChangesNothingElse) {
    SidebarViewController& container = open(kNoTime);
    container.showSideBarControllerWithDirection(1);
    ui::Screen* const current = container.currentMainController();
    container.leftSideBarSelectWithController(current);
    EXPECT_EQ(container.currentMainController(), current);
    EXPECT_FALSE(container.sideBarShowing());
    EXPECT_EQ(told_, (Texts{"1", "0"}));
}

TEST_F(Sidebar, SelectingNoScreenOnlyCloses) {
    SidebarViewController& container = open(kNoTime);
    container.showSideBarControllerWithDirection(2);
    container.leftSideBarSelectWithController(nullptr);
    EXPECT_NE(container.mainView(), nullptr);
    EXPECT_FALSE(container.sideBarShowing());
}

TEST_F(Sidebar, AnotherScreenReplacesTheCurrentOne) {
    SidebarViewController& container = open(kNoTime);
    ui::Screen* const live = container.currentMainController();
    Texts log;
    ContentScreen other(log);
    container.showSideBarControllerWithDirection(1);
    container.leftSideBarSelectWithController(&other);
    EXPECT_EQ(container.currentMainController(), &other);
    EXPECT_EQ(log, (Texts{"load", "willAppear", "didAppear"}));
    EXPECT_TRUE(live->isCovered());
    EXPECT_EQ(container.mainView(), nullptr);
    EXPECT_FALSE(container.sideBarShowing());
    container.leftSideBarSelectWithController(live);
    EXPECT_EQ(log.back(), "willDisappear");
    EXPECT_FALSE(live->isCovered());
}

TEST_F(Sidebar, ThePanRecogniserIsThereWhileTheNavigationStackHasOneScreen) {
    SidebarViewController& container = open();
    auto* const navigation = dynamic_cast<NavigationContainer*>(container.currentMainController());
    ASSERT_NE(navigation, nullptr);
    Texts log;
    navigation->pushViewController(std::make_unique<ContentScreen>(log), false);
    EXPECT_FALSE(container.hasPanGestureReconginzer());
    EXPECT_TRUE(navigation->rootViewController().isCovered());
    navigation->pushViewController(std::make_unique<ContentScreen>(log), false);
    navigation->popViewController(false);
    EXPECT_FALSE(container.hasPanGestureReconginzer());
    navigation->popViewController(false);
    EXPECT_TRUE(container.hasPanGestureReconginzer());
    navigation->popViewController(false);
    EXPECT_EQ(navigation->count(), 1U) << "the root stays";
    EXPECT_FALSE(navigation->rootViewController().isCovered());
}

TEST_F(Sidebar, NSAboutFromAnywherePresentsTheAboutScreenWhetherASideBarIsOpenOrNot) {
    SidebarViewController& container = open(kNoTime);
    NotificationCenter::defaultCenter().post({"NSAbout"});
    container.showSideBarControllerWithDirection(1);
    NotificationCenter::defaultCenter().post({"NSAbout"});
    EXPECT_EQ(services_.asked, (Texts{"present About animated", "present About animated"}));
    EXPECT_TRUE(container.sideBarShowing());
}

TEST_F(Sidebar, NSHelpAndNSMoreAppPresentTheirScreens) {
    open();
    NotificationCenter::defaultCenter().post({"NSHelp"});
    NotificationCenter::defaultCenter().post({"NSMoreApp"});
    EXPECT_EQ(services_.asked, (Texts{"present Help animated", "present MoreApps animated"}));
}

TEST_F(Sidebar, AfterItsEndNobodyIsAsked) {
    open();
    container_.reset();
    NotificationCenter::defaultCenter().post({"NSHelp"});
    EXPECT_TRUE(services_.asked.empty());
}

TEST_F(Sidebar, TheKeysThatLeadBackCloseAnOpenSideBarAndOnlyThose) {
    SidebarViewController& container = open(kNoTime);
    EXPECT_FALSE(container.pressKey(Qt::Key_Escape, Qt::NoModifier, false)) << "closed, it is not its key";
    container.showSideBarControllerWithDirection(2);
    EXPECT_FALSE(container.pressKey(Qt::Key_Escape, Qt::ControlModifier, false));
    EXPECT_FALSE(container.pressKey(Qt::Key_R, Qt::NoModifier, false));
    EXPECT_TRUE(container.sideBarShowing());
    EXPECT_TRUE(container.pressKey(Qt::Key_Back, Qt::NoModifier, false));
    EXPECT_FALSE(container.sideBarShowing());
}

TEST_F(Sidebar, OnlyWhatCanBeSeenIsNotCovered) {
    SidebarViewController& container = open(kNoTime);
    const auto covered = [&container] {
        return std::vector<bool>{container.mainView()->isCovered(),
                                 container.leftSideBarViewController().isCovered(),
                                 container.rightSideBarViewController().isCovered()};
    };
    EXPECT_EQ(covered(), (std::vector<bool>{false, true, true}));
    container.showSideBarControllerWithDirection(1);
    EXPECT_EQ(covered(), (std::vector<bool>{false, false, true}));
    container.showSideBarControllerWithDirection(2);
    EXPECT_EQ(covered(), (std::vector<bool>{false, true, false}));
    container.setCovered(true);
    EXPECT_EQ(covered(), (std::vector<bool>{true, true, true}));
    container.setCovered(false);
    container.tapOnContentView();
    EXPECT_EQ(covered(), (std::vector<bool>{false, true, true}));
}

TEST(LeftSideBar, Row0PostsNSHelpAndRow1PostsNSAbout) {
    testing::TestServices services;
    LeftSideBarViewController menu(ui::ScreenId::Menu, services.services());
    menu.loadView();
    EXPECT_EQ(menu.dataList(), (QStringList{QStringLiteral("Help"), QStringLiteral("About")}));
    Texts posted;
    std::vector<NotificationCenter::Subscription> subscriptions;
    for (const char* name : {"NSHelp", "NSAbout", "NSMoreApp"}) {
        subscriptions.push_back(NotificationCenter::defaultCenter().addObserver(
            name, [&posted, name](const platform::Notification&) { posted.emplace_back(name); }));
    }
    for (const int row : {0, 1, 2, 3, -1}) menu.didSelectRow(row);
    EXPECT_EQ(posted, (Texts{"NSHelp", "NSAbout", "NSMoreApp"}));
}

TEST(LeftSideBar, WithoutADelegateNoContentIsMade) {
    testing::TestServices services;
    LeftSideBarViewController menu(ui::ScreenId::Menu, services.services());
    menu.loadView();
    EXPECT_FALSE(menu.hasContent());
    EXPECT_EQ(menu.menuTitle.text(), QStringLiteral("Informations"));
    const auto content = menu.subConWithIndex(4);
    EXPECT_EQ(dynamic_cast<live::MainViewController&>(content->topViewController()).index, 5);
}

}  // namespace
}  // namespace kestrix::shell
