#include "ui/MBButtonMenuViewController.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/Palette.h"
#include "ui/StageMetrics.h"

namespace kestrix::ui {
namespace {

class Chosen final : public MBButtonMenuViewControllerDelegate {
  public:
    void buttonMenuViewController(MBButtonMenuViewController&, std::uint64_t buttonTappedAtIndex) override {
        heard.push_back(std::to_string(buttonTappedAtIndex));
    }
    void buttonMenuViewControllerDidCancel(MBButtonMenuViewController&) override {
        heard.push_back("cancel");
    }
    std::vector<std::string> heard;
};

class MBButtonMenu : public ::testing::Test {
  protected:
    static QStringList exportTitles() {
        return {QStringLiteral("Email"), QStringLiteral("Export to CSV"), QStringLiteral("Export to PDF"),
                QStringLiteral("Cancel")};
    }
    static QStringList twelveTitles() {
        QStringList titles;
        for (int i = 0; i < 12; ++i) titles << QStringLiteral("Title %1").arg(i);
        return titles;
    }
    void SetUp() override { StageMetrics::shared().fit({320, 480}, 1); }
    void show(MBButtonMenuViewController& menu) {
        menu.setDelegate(&chosen_);
        menu.showInView(screen_);
    }

    Chosen chosen_;
    Screen screen_{ScreenId::History};
    MBButtonMenuViewController menu_{exportTitles(), std::chrono::milliseconds(0)};
};

TEST_F(MBButtonMenu, TheExportMenuTellsItsCancelAndTheIndexOfItsOthers) {
    menu_.setCancelButtonIndex(3);
    show(menu_);
    menu_.buttonTapped(QStringLiteral("Cancel"));
    menu_.buttonTapped(QStringLiteral("Export to PDF"));
    menu_.buttonTapped(QStringLiteral("Email"));
    EXPECT_EQ(chosen_.heard, (std::vector<std::string>{"cancel", "2", "0"}));
    EXPECT_TRUE(menu_.isVisible()) << "it does not hide itself";
}

TEST_F(MBButtonMenu, WithFourTitlesIn480PointsThePanelIs160HighAndEachButton40) {
    menu_.setCancelButtonIndex(3);
    show(menu_);
    EXPECT_EQ(menu_.panel(), QRectF(0, 320, 320, 160));
    EXPECT_EQ(menu_.buttonHeight(), 40);
    EXPECT_EQ(menu_.contentHeight(), 160);
    EXPECT_EQ(menu_.verticalSpacingBetweenButtons(), 0);
    const auto& buttons = menu_.renderedButtons();
    ASSERT_EQ(buttons.size(), 8U);  // four of before it was shown, without a width, beneath
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(buttons[i].frame.width(), 0);
        EXPECT_FALSE(buttons[i].current);
        EXPECT_EQ(buttons[i + 4].frame, QRectF(0, 40.0 * static_cast<double>(i), 320, 40));
        EXPECT_TRUE(buttons[i + 4].current);
    }
}

TEST_F(MBButtonMenu, WithTwelveTitlesEachButtonIs24HighAndTheListScrolls) {
    MBButtonMenuViewController menu(twelveTitles(), std::chrono::milliseconds(0));
    show(menu);
    EXPECT_EQ(menu.buttonHeight(), 24);
    EXPECT_EQ(menu.contentHeight(), 288);
    EXPECT_GT(menu.contentHeight(), menu.panel().height());
    EXPECT_EQ(menu.renderedButtons().back().frame, QRectF(0, 264, 320, 24));
}

TEST_F(MBButtonMenu, MinusOneIsRefusedOnAMenuWithTitles) {
    menu_.setCancelButtonIndex(2);
    menu_.setCancelButtonIndex(-1);
    EXPECT_EQ(menu_.cancelButtonIndex(), 2);
}

TEST_F(MBButtonMenu, FourIsRefusedOnAMenuOfFourTitlesAndThreeIsAccepted) {
    menu_.setCancelButtonIndex(4);
    EXPECT_EQ(menu_.cancelButtonIndex(), -1);
    menu_.setCancelButtonIndex(3);
    EXPECT_EQ(menu_.cancelButtonIndex(), 3);
}

TEST_F(MBButtonMenu, LessThanMinusOneIsRefusedAlsoWithoutTitles) {
    MBButtonMenuViewController empty(QStringList{});
    empty.setCancelButtonIndex(-2);
    EXPECT_EQ(empty.cancelButtonIndex(), -1);
    empty.setCancelButtonIndex(7);
    EXPECT_EQ(empty.cancelButtonIndex(), 7);
}

TEST_F(MBButtonMenu, ARefusedIndexRendersNothing) {
    menu_.setCancelButtonIndex(9);
    EXPECT_TRUE(menu_.renderedButtons().empty());
    menu_.setCancelButtonIndex(0);
    EXPECT_EQ(menu_.renderedButtons().size(), 4U);
}

TEST_F(MBButtonMenu, TitlesAreStoredWithoutRenderingAndRenderedAgainBeneathTheNewOnes) {
    EXPECT_TRUE(menu_.renderedButtons().empty());
    show(menu_);
    menu_.setButtonTitles({QStringLiteral("One"), QStringLiteral("Two")});
    const auto& buttons = menu_.renderedButtons();
    ASSERT_EQ(buttons.size(), 6U);
    EXPECT_EQ(buttons[0].title, QStringLiteral("Email"));
    EXPECT_FALSE(buttons[0].current);
    EXPECT_EQ(buttons[4].title, QStringLiteral("One"));
    EXPECT_EQ(buttons[5].frame, QRectF(0, 80, 320, 80));
    EXPECT_EQ(menu_.contentHeight(), 160);
}

TEST_F(MBButtonMenu, TheCancelButtonStandsOutFromTheOthers) {
    menu_.setCancelButtonIndex(1);
    const MenuButton normal = menu_.buttonWithTitle(QStringLiteral("a"), 0);
    const MenuButton cancel = menu_.buttonWithTitle(QStringLiteral("b"), 1);
    EXPECT_NEAR(normal.background.alphaF(), 0.3, 0.005);
    EXPECT_NEAR(cancel.background.alphaF(), 0.5, 0.005);
    EXPECT_EQ(normal.titleColor, Palette::textOnDark);
    EXPECT_EQ(cancel.titleColor, Palette::menuCancelTitle);
}

TEST_F(MBButtonMenu, ATitleThatIsThereTwiceTellsTheFirst) {
    menu_.setButtonTitles({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("b")});
    menu_.setCancelButtonIndex(2);
    show(menu_);
    menu_.buttonTapped(QStringLiteral("b"));
    EXPECT_EQ(chosen_.heard, std::vector<std::string>{"1"}) << "so this one never cancels";
}

TEST_F(MBButtonMenu, WithoutADelegateATapIsLost) {
    menu_.showInView(screen_);
    menu_.buttonTapped(QStringLiteral("Email"));
    EXPECT_TRUE(menu_.isVisible());
}

TEST_F(MBButtonMenu, IsVisibleFromTheEndOfRisingToTheEndOfSinking) {
    MBButtonMenuViewController menu(exportTitles());
    show(menu);
    EXPECT_FALSE(menu.isVisible());
    EXPECT_TRUE(menu.isOnScreen());
    menu.movementDone();
    EXPECT_TRUE(menu.isVisible());
    menu.hide();
    EXPECT_TRUE(menu.isVisible());
    EXPECT_TRUE(menu.isOnScreen());
    menu.movementDone();
    EXPECT_FALSE(menu.isVisible());
    EXPECT_FALSE(menu.isOnScreen());
}

TEST_F(MBButtonMenu, IsShownAgainAsItWas) {
    show(menu_);
    menu_.hide();
    EXPECT_FALSE(menu_.isOnScreen());
    show(menu_);
    EXPECT_TRUE(menu_.isVisible());
    EXPECT_EQ(menu_.renderedButtons().size(), 4U) << "its view is built once";
}

TEST_F(MBButtonMenu, HidingWhatIsNotShownDoesNothing) {
    menu_.hide();
    EXPECT_FALSE(menu_.isOnScreen());
}

TEST_F(MBButtonMenu, TheKeysThatLeadBackPressTheCancelButtonAndNoKeyGoesThrough) {
    menu_.setCancelButtonIndex(3);
    show(menu_);
    EXPECT_TRUE(menu_.pressKey(Qt::Key_Escape, Qt::NoModifier, false));
    EXPECT_TRUE(menu_.pressKey(Qt::Key_Escape, Qt::NoModifier, true));  // held
    EXPECT_TRUE(menu_.pressKey(Qt::Key_Escape, Qt::ControlModifier, false));
    EXPECT_TRUE(menu_.pressKey(Qt::Key_Back, Qt::NoModifier, false));
    EXPECT_TRUE(menu_.pressKey(Qt::Key_R, Qt::NoModifier, false));
    EXPECT_FALSE(menu_.pressKey(Qt::Key_Tab, Qt::NoModifier, false));
    EXPECT_EQ(chosen_.heard, (std::vector<std::string>{"cancel", "cancel"}));
}

TEST_F(MBButtonMenu, WithoutACancelButtonEscapeTellsNothing) {
    show(menu_);
    EXPECT_TRUE(menu_.pressKey(Qt::Key_Escape, Qt::NoModifier, false));
    EXPECT_TRUE(chosen_.heard.empty());
}

TEST_F(MBButtonMenu, ComesWithItsGivenValues) {
    const MBButtonMenuViewController fresh(exportTitles());
    EXPECT_EQ(fresh.cancelButtonIndex(), -1);
    EXPECT_EQ(fresh.minimumButtonHeight, 24);
    EXPECT_EQ(fresh.maximumButtonWidth, 320);
    EXPECT_FALSE(fresh.shrinksParentView);
    EXPECT_EQ(fresh.backgroundColor, QStringLiteral("background.PNG"));
    EXPECT_FALSE(fresh.isVisible());
}

}  // namespace
}  // namespace kestrix::ui
