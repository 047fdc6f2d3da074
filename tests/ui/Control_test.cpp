#include "ui/Control.h"

#include <gtest/gtest.h>

#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

TEST(Control, IsNamedShownAndSaysWhatItShowsAtFirst) {
    const TestScreen screen;
    EXPECT_EQ(screen.text.objectName(), QStringLiteral("text"));
    EXPECT_FALSE(screen.text.hidden());
    EXPECT_TRUE(screen.text.accessibleName().isEmpty());
}

TEST(Control, HidingIsKeptAtOnceAndToldWithTheNextRound) {
    TestScreen screen;
    const SignalCount told(screen.text, &Control::hiddenChanged);
    screen.text.setHidden(true);
    EXPECT_TRUE(screen.text.hidden());
    EXPECT_EQ(told(), 0);
    tellDisplay();
    EXPECT_EQ(told(), 1);
    screen.text.setHidden(false);
    EXPECT_FALSE(screen.text.hidden());
    tellDisplay();
    EXPECT_EQ(told(), 2);
}

TEST(Control, TheAccessibleNameIsToldLikewise) {
    TestScreen screen;
    const SignalCount told(screen.help, &Control::accessibleNameChanged);
    screen.help.setAccessibleName(QStringLiteral("Record"));
    EXPECT_EQ(screen.help.accessibleName(), QStringLiteral("Record"));
    EXPECT_EQ(told(), 0);
    tellDisplay();
    EXPECT_EQ(told(), 1);
}

TEST(Control, ThatIsSetToWhatItIsLeavesTheDisplayIdle) {
    TestScreen screen;
    tellDisplay();
    screen.text.setHidden(false);
    screen.text.setAccessibleName({});
    EXPECT_TRUE(DisplayUpdates::shared().idle());
}

}  // namespace
}  // namespace kestrix::ui
