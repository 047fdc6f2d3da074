#include "ui/FramedScreen.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestServices.h"
#include "ui/Palette.h"

namespace kestrix::ui {
namespace {

using Asked = std::vector<std::string>;

class FramedScreenTest : public ::testing::Test {
  protected:
    bool press(int key, int modifiers = Qt::NoModifier, bool repeated = false) {
        return screen_.pressKey(key, modifiers, repeated);
    }

    testing::TestServices services_;
    FramedScreen screen_{ScreenId::SaveData, services_.services()};
};

TEST_F(FramedScreenTest, HasATitleAndABackButton) {
    screen_.setTitle(QStringLiteral("Save"));
    EXPECT_EQ(screen_.titleLabel()->text(), QStringLiteral("Save"));
    EXPECT_EQ(screen_.titleLabel()->textColor(), Palette::textOnDark);
    EXPECT_EQ(screen_.backButton()->accessibleName(), QStringLiteral("Back"));
    screen_.backButton()->press();
    EXPECT_EQ(services_.asked, Asked{"dismiss animated"});
}

TEST_F(FramedScreenTest, EscapeAndBackCloseIt) {
    for (const int key : {Qt::Key_Escape, Qt::Key_Back}) {
        services_.asked.clear();
        EXPECT_TRUE(press(key));
        EXPECT_EQ(services_.asked, Asked{"dismiss animated"});
    }
}

TEST_F(FramedScreenTest, AKeyOfTheNumberPadClosesItToo) {
    EXPECT_TRUE(press(Qt::Key_Escape, Qt::KeypadModifier));
    EXPECT_EQ(services_.asked, Asked{"dismiss animated"});
}

TEST_F(FramedScreenTest, HeldDownEscapeClosesOneScreenOnly) {
    EXPECT_TRUE(press(Qt::Key_Escape, Qt::NoModifier, true));
    EXPECT_EQ(services_.asked, Asked{});
}

TEST_F(FramedScreenTest, OtherKeysAndModifiersAreNotItsOwn) {
    EXPECT_FALSE(press(Qt::Key_Space));
    EXPECT_FALSE(press(Qt::Key_Escape, Qt::ControlModifier));
    EXPECT_EQ(services_.asked, Asked{});
}

TEST_F(FramedScreenTest, OneThatCannotBeClosedHasNoWayBack) {
    screen_.setClosable(false);
    EXPECT_FALSE(screen_.isClosable());
    EXPECT_TRUE(screen_.backButton()->hidden());
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_TRUE(press(Qt::Key_Back));
    screen_.backButton()->press();
    EXPECT_EQ(services_.asked, Asked{});
}

}  // namespace
}  // namespace kestrix::ui
