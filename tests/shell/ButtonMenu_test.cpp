// The menu that rises over a screen, in the window: where it stands, how it moves, and by what it is used.
#include <QtTest/QTest>

#include "history/HistoryViewController.h"
#include "storage/Selection.h"
#include "tests/support/StepDriver.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

class ButtonMenu : public testing::WindowWalks {
  protected:
    static constexpr QSize kLow{320, 480};

    void openMenu(bool animated = false, const QStringList& titles = {}) {
        options_.slideDuration = std::chrono::milliseconds(animated ? 300 : 0);
        storage::selectedRecordId = 0;
        open(kLow);
        app().screens().present(ui::ScreenId::History, false);
        settle();
        shown().pressShare();
        if (!titles.isEmpty()) shown().menu->setButtonTitles(titles);
        settle();
    }
    history::HistoryViewController& shown() {
        return dynamic_cast<history::HistoryViewController&>(*app().screens().topmost());
    }
    bool isOpen() { return shown().menu->isOnScreen(); }
    double scale() { return item("historyView").scale(); }
    // As the menu's own screen counts.
    QRectF frameOf(const char* name) {
        QQuickItem& which = item(name);
        return which.mapRectToItem(&item("historyView"), QRectF(QPointF(), which.size()));
    }
};

TEST_F(ButtonMenu, WithFourTitlesAt480PointsEachButtonIs40High) {
    openMenu();
    EXPECT_EQ(frameOf("buttonView"), QRectF(0, 320, 320, 160));
    EXPECT_EQ(frameOf("menuButtonEmail"), QRectF(0, 320, 320, 40));
    EXPECT_EQ(frameOf("menuButtonCancel"), QRectF(0, 440, 320, 40));
    EXPECT_NEAR(scale(), 0.9, 1e-9);
}

TEST_F(ButtonMenu, WithTwelveTitlesEachIs24HighAndTheListScrolls) {
    QStringList titles;
    for (int i = 0; i < 12; ++i) titles << QStringLiteral("Title %1").arg(i);
    openMenu(false, titles);
    EXPECT_EQ(frameOf("menuButtonTitle 0"), QRectF(0, 320, 320, 24));
    EXPECT_EQ(frameOf("menuButtonTitle 11").height(), 24);
    EXPECT_GT(frameOf("menuButtonTitle 11").top(), 480) << "beyond what is seen";
    for (int stop = 0; stop < 12; ++stop) pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "menuButtonTitle 11");
    settle();
    EXPECT_EQ(frameOf("menuButtonTitle 11").bottom(), 480) << "the keyboard brings it into sight";
}

TEST_F(ButtonMenu, RisesIn300MillisecondsWhileTheScreenShrinks) {
    testing::StepDriver clock;
    openMenu(true);
    double top = frameOf("buttonView").top();
    EXPECT_EQ(top, 480);
    for (int step = 0; step < 5; ++step) {
        clock.step(50);
        EXPECT_LT(frameOf("buttonView").top(), top) << step;
        EXPECT_LT(scale(), 1) << step;
        top = frameOf("buttonView").top();
    }
    EXPECT_FALSE(shown().menu->isVisible());
    clock.step(50 + 16);
    EXPECT_EQ(frameOf("buttonView").top(), 320);
    EXPECT_TRUE(shown().menu->isVisible());
}

TEST_F(ButtonMenu, NothingIsPressedWhileItRisesOrSinks) {
    testing::StepDriver clock;
    openMenu(true);
    clock.step(150);
    const auto press = [this] {
        for (const char* name : {"menuButtonCancel", "menuButtonEmail"}) {
            if (!QRect({}, window().size()).contains(centreOf(name))) continue;
            click(name);
            tap(name);
        }
        pressByScreenReader("menuButtonCancel");
        pressKey(Qt::Key_Return);
    };
    press();
    clock.step(316);
    ASSERT_TRUE(shown().menu->isVisible()) << "nobody cancelled it";
    click("menuButtonCancel");
    clock.step(150);
    press();
    pressKey(Qt::Key_Escape);
    EXPECT_EQ(app().screens().count(), 1) << "nor closed the screen behind it";
    clock.step(316);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(scale(), 1);
}

TEST_F(ButtonMenu, IsCancelledByMouseFingerKeyAndScreenReader) {
    openMenu();
    const auto cancelled = [this] {
        settle();
        const bool gone = !isOpen();
        if (gone) shown().pressShare();
        settle();
        return gone;
    };
    click("menuButtonCancel");
    EXPECT_TRUE(cancelled()) << "mouse";
    tap("menuButtonCancel");
    EXPECT_TRUE(cancelled()) << "finger";
    pressKey(Qt::Key_Escape);
    EXPECT_TRUE(cancelled()) << "Escape";
    pressByScreenReader("menuButtonCancel");
    EXPECT_TRUE(cancelled()) << "screen reader";
    item("menuButtonCancel").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_FALSE(cancelled()) << "a modifier";
    pressKey(Qt::Key_Space);
    EXPECT_TRUE(cancelled()) << "key";
}

TEST_F(ButtonMenu, AFingerThatLeavesItsButtonPressesNothing) {
    openMenu();
    const QPoint from = centreOf("menuButtonCancel");
    QTest::touchEvent(&window(), touchScreen()).press(0, from);
    QTest::touchEvent(&window(), touchScreen()).move(0, centreOf("menuButtonEmail"));
    QTest::touchEvent(&window(), touchScreen()).release(0, centreOf("menuButtonEmail"));
    EXPECT_TRUE(isOpen());
}

TEST_F(ButtonMenu, WhatLiesBehindIsReachedByNothing) {
    openMenu();
    click("modalView");
    pressByScreenReader("btnBack");
    pressByScreenReader("btnShare");
    for (int stop = 0; stop < 8; ++stop) {
        pressKey(Qt::Key_Tab);
        EXPECT_EQ(focused().rfind("menuButton", 0), 0U) << focused();
    }
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(app().screens().count(), 1);
}

TEST_F(ButtonMenu, CanBeReadAndHeardAndReachedByTheKeyboard) {
    openMenu();
    EXPECT_EQ(testing::inLines(allProblems()), "");
}

}  // namespace
}  // namespace kestrix::shell
