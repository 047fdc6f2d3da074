// The side bars in the window: by mouse, finger, keys and screen reader, and what reaches whom while they
// move.
#include <QtTest/QTest>

#include "tests/shell/Scenarios.h"
#include "tests/shell/TestScreen.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/StepDriver.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

constexpr qint64 kSlideMs = 300 + 16;  // an animation begins with the first frame after its start

class SideBars : public testing::WindowWalks {
  protected:
    void openAtOnce() {
        options_.slideDuration = std::chrono::milliseconds(0);
        openWithReading();
    }
    void openWithReading() {
        start();
        TestScreen::registerAs(ui::ScreenId::Help, app().screens(), log_);
        open();
        showReading(kEarth);
    }
    SidebarViewController& container() { return app().viewController(); }
    double contentX() { return placeOf("contentView").x(); }
    // On what is left of the content area.
    QPoint edge() {
        return pointIn(item("contentView"), {container().currentTranslate() > 0 ? 0.08 : 0.92, 0.5});
    }
    void tapEdge() { QTest::mouseClick(&window(), Qt::LeftButton, {}, edge()); }
    void show(std::int32_t direction) {
        container().showSideBarControllerWithDirection(direction);
        settle();
    }

    TestScreen::Log log_ = std::make_shared<std::string>();
};

TEST_F(SideBars, TheRightButtonSlidesTheContentAsideIn300Milliseconds) {
    testing::StepDriver clock;
    openWithReading();
    click("Rightbtn");
    settle();
    double before = 0;
    for (int step = 0; step < 5; ++step) {
        clock.step(50);
        EXPECT_LT(contentX(), before) << step;
        EXPECT_GT(contentX(), -270) << step;
        before = contentX();
    }
    EXPECT_FALSE(container().sideBarShowing());
    clock.step(50 + 16);
    EXPECT_EQ(contentX(), -270);
    EXPECT_TRUE(container().sideBarShowing());
}

TEST_F(SideBars, WhatMovesNothingAndWhatTakesNoTimeIsOverInTheViewAsWell) {
    testing::StepDriver clock;
    openWithReading();
    show(3);
    EXPECT_FALSE(isShown("navBackView")) << "nothing slides";
    container().moveAnimationWithDirection(2, std::chrono::milliseconds(0));
    EXPECT_EQ(contentX(), -270);
}

TEST_F(SideBars, ATapOnWhatIsLeftOfTheContentSlidesItBack) {
    testing::StepDriver clock;
    openWithReading();
    click("Rightbtn");
    clock.step(kSlideMs);
    tapEdge();
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, 0);
    clock.step(kSlideMs);
    EXPECT_EQ(contentX(), 0);
    EXPECT_FALSE(isShown("navBackView"));
}

TEST_F(SideBars, DraggingTheContentMovesNothing) {
    openAtOnce();
    for (const int direction : {0, 1}) {
        show(direction);
        const double before = contentX();
        const QPoint from(300, 400);
        for (const int by : {-200, 200}) {
            QTest::touchEvent(&window(), touchScreen()).press(0, from);
            for (int step = 1; step <= 10; ++step)
                QTest::touchEvent(&window(), touchScreen())
                    .move(0, from + QPoint(by * step / 10, 0) - QPoint(150, 0));
            QTest::touchEvent(&window(), touchScreen()).release(0, from + QPoint(by - 150, 0));
            settle();
            EXPECT_EQ(contentX(), before) << direction;
        }
    }
}

TEST_F(SideBars, TapsDuringASlideReachNobody) {
    testing::StepDriver clock;
    openWithReading();
    click("Leftbtn");
    clock.step(100);
    const QPoint record = centreOf("btnRecord");
    const QPoint row = centreOf("menuRow0");
    for (const QPoint at : {record, row, pointIn(item("contentView"), {0.02, 0.5})}) {
        if (!QRect({}, window().size()).contains(at)) continue;
        QTest::mouseClick(&window(), Qt::LeftButton, {}, at);
        QTest::touchEvent(&window(), touchScreen()).press(0, at);
        QTest::touchEvent(&window(), touchScreen()).release(0, at);
    }
    for (const int key : {Qt::Key_Space, Qt::Key_R, Qt::Key_Escape, Qt::Key_Return}) pressKey(key);
    EXPECT_EQ(screen().dataList()->count(), 0);
    EXPECT_EQ(*log_, "");
    clock.step(kSlideMs);
    EXPECT_EQ(contentX(), 270) << "none of them was a second slide";
}

TEST_F(SideBars, WhatIsUncoveredLooksAndReadsWell) {
    openAtOnce();
    for (const int direction : {1, 2}) {
        show(direction);
        keepPictures(direction == 1 ? "menu" : "record-list");
        EXPECT_EQ(testing::inLines(allProblems()), "") << direction;
    }
}

TEST_F(SideBars, TheMenuStandsWhereItShould) {
    openAtOnce();
    show(1);
    EXPECT_EQ(placeOf("menuTitle"), QRectF(80, 0, 120, 44));
    EXPECT_EQ(text("menuTitle"), QStringLiteral("Informations"));
    EXPECT_EQ(placeOf("menuRow0").height(), 44);
    EXPECT_EQ(placeOf("menuRow1").top(), placeOf("menuRow0").bottom());
}

TEST_F(SideBars, ARowOfTheMenuOpensItsScreenByMouseFingerKeyAndScreenReader) {
    openAtOnce();
    show(1);
    const auto helpOpened = [this] {
        settle();
        const int presented = app().screens().count();
        if (presented > 0) app().screens().dismiss(false);
        settle();
        return presented == 1;
    };
    click("menuRow0");
    EXPECT_TRUE(helpOpened()) << "mouse";
    tap("menuRow0");
    EXPECT_TRUE(helpOpened()) << "finger";
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "menuRow0");
    pressKey(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(helpOpened()) << "a modifier";
    pressKey(Qt::Key_Return);
    EXPECT_TRUE(helpOpened()) << "key";
    pressByScreenReader("menuRow0");
    EXPECT_TRUE(helpOpened()) << "screen reader";
    click("menuRow1");
    ASSERT_EQ(app().screens().count(), 1);
    EXPECT_EQ(app().screens().topmost()->id(), ui::ScreenId::About);
}

TEST_F(SideBars, NothingOfTheLiveScreenIsPressedWhileASideBarIsOpen) {
    openAtOnce();
    show(1);
    pressByScreenReader("btnRecord");
    pressKey(Qt::Key_Space);
    pressKey(Qt::Key_F1);
    EXPECT_EQ(screen().dataList()->count(), 0);
    EXPECT_EQ(app().screens().count(), 0);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, centreOf("Leftbtn"));
    EXPECT_EQ(contentX(), 0) << "it closes, whatever lies there";
}

TEST_F(SideBars, EscapeClosesAnOpenOneAndTheLiveScreenHasTheKeyboardAgain) {
    openAtOnce();
    show(2);
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_EQ(contentX(), 0);
    pressKey(Qt::Key_Space);
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(SideBars, ClosedTheyAreFoundByNobody) {
    openAtOnce();
    show(1);
    show(0);
    for (int stop = 0; stop < 12; ++stop) {
        pressKey(Qt::Key_Tab);
        EXPECT_NE(focused().rfind("menuRow", 0), 0U);
    }
    EXPECT_FALSE(isShown("menuRow0"));
    EXPECT_FALSE(isShown("contentTap"));
}

TEST_F(SideBars, TheReadingGoesOnAtTheEdgeOfTheScreen) {
    openAtOnce();
    show(2);
    tester().play(kInsulation);
    settle();
    EXPECT_EQ(text("D1Value"), QStringLiteral("186.4"));
}

}  // namespace
}  // namespace kestrix::shell
