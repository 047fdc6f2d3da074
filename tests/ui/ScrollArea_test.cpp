#include "ui/ScrollArea.h"

#include <gtest/gtest.h>

#include "tests/ui/TestScreen.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::ui {
namespace {

class ScrollAreaTest : public ::testing::Test {
  protected:
    ScrollAreaTest() {
        area_.setContentHeight(1000);
        area_.setSeen(0, 300);
    }
    // Where it stands behind the press of a key.
    double behind(int key, bool repeated = false) {
        EXPECT_TRUE(area_.pressKey(key, Qt::NoModifier, repeated));
        return area_.position();
    }

    Screen screen_{ScreenId::Help};
    ScrollArea area_{screen_, "area"};
};

TEST_F(ScrollAreaTest, TheArrowsGoOnBy40PointsAndRepeat) {
    EXPECT_EQ(behind(Qt::Key_Down), 40);
    EXPECT_EQ(behind(Qt::Key_Down, true), 80);
    EXPECT_EQ(behind(Qt::Key_Up), 40);
}

TEST_F(ScrollAreaTest, APageLeaves40PointsOfTheOneBefore) {
    EXPECT_EQ(behind(Qt::Key_PageDown), 260);
    EXPECT_EQ(behind(Qt::Key_PageDown), 520);
    EXPECT_EQ(behind(Qt::Key_PageUp), 260);
}

TEST_F(ScrollAreaTest, HomeAndEndGoToTheEndsAndNothingGoesBeyond) {
    EXPECT_EQ(behind(Qt::Key_End), 700);
    EXPECT_EQ(behind(Qt::Key_Down), 700);
    EXPECT_EQ(behind(Qt::Key_Home), 0);
    EXPECT_EQ(behind(Qt::Key_PageUp), 0);
}

TEST_F(ScrollAreaTest, WhatIsSeenWholeDoesNotMove) {
    area_.setSeen(0, 1200);
    EXPECT_EQ(behind(Qt::Key_End), 0);
}

TEST_F(ScrollAreaTest, OtherKeysAndModifiersAreNotItsOwn) {
    EXPECT_FALSE(area_.pressKey(Qt::Key_Space, Qt::NoModifier, false));
    EXPECT_FALSE(area_.pressKey(Qt::Key_End, Qt::ControlModifier, false));
    EXPECT_EQ(area_.position(), 0);
}

TEST_F(ScrollAreaTest, GoesOnFromWhereAFingerLeftIt) {
    area_.setSeen(333, 300);
    EXPECT_EQ(behind(Qt::Key_Down), 373);
}

TEST_F(ScrollAreaTest, TellsItsHeightOnceItDiffers) {
    DisplayUpdates::shared().flush();
    int told = 0;
    QObject::connect(&area_, &ScrollArea::contentHeightChanged, &area_, [&told] { ++told; });
    area_.setContentHeight(900);
    area_.setContentHeight(800);
    DisplayUpdates::shared().flush();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(area_.contentHeight(), 800);
}

}  // namespace
}  // namespace kestrix::ui
