// Presented screens: sliding in front of the live screen and away again, and what reaches whom meanwhile.
#include <QtTest/QTest>

#include <cmath>

#include "tests/shell/Scenarios.h"
#include "tests/shell/TestScreen.h"
#include "tests/support/StepDriver.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

using ui::ScreenId;

constexpr qint64 kFrame = 16;  // an animation begins with the first frame after its start
constexpr qint64 kSlide = 300 + kFrame;

class ModalStack : public testing::WindowFixture {
  protected:
    void openWithReading() {
        start();
        TestScreen::registerAs(ScreenId::SaveData, app().screens(), log_);
        TestScreen::registerAs(ScreenId::BluetoothConnectionHelp, app().screens(), log_);
        open();
        showReading(kEarth);
    }
    ui::ScreenStack& screens() { return app().screens(); }
    void present(bool animated = true) {
        screens().present(ScreenId::SaveData, animated);
        settle();
    }
    void dismiss() {
        screens().dismiss(true);
        settle();
    }
    bool isPresented() {
        return testing::findItem(*window().contentItem(), QStringLiteral("testScreen")) != nullptr;
    }
    double top() { return placeOf("testScreen").top(); }
    void clickInWindow(const char* name) {
        if (QRect({}, window().size()).contains(centreOf(name))) click(name);
    }
    void useEverything() {
        for (const char* name : {"btnRecord", "Leftbtn", "Rightbtn"}) {
            click(name);
            tap(name);
        }
        for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Space, Qt::Key_R})
            pressKey(key);
    }

    TestScreen::Log log_ = std::make_shared<std::string>();
    testing::StepDriver clock_;
};

TEST_F(ModalStack, AScreenSlidesUpIn300Milliseconds) {
    openWithReading();
    present();
    EXPECT_EQ(top(), 568);
    double before = top();
    for (int step = 0; step < 5; ++step) {
        clock_.step(50);
        EXPECT_LT(top(), before) << step;
        EXPECT_GT(top(), 0) << step;
        before = top();
    }
    EXPECT_EQ(*log_, "willAppear ");
    clock_.step(50 + kFrame);
    EXPECT_EQ(top(), 0);
    EXPECT_EQ(*log_, "willAppear didAppear ");
}

TEST_F(ModalStack, TimeAloneDoesNotMoveIt) {
    openWithReading();
    present();
    clock_.step(100);
    const double there = top();
    settle();
    settle();
    EXPECT_EQ(top(), there);
}

TEST_F(ModalStack, ItCoversTheWholeStage) {
    openWithReading();
    present();
    clock_.step(kSlide);
    settle();
    EXPECT_EQ(placeOf("testScreen"), QRectF(0, 0, 320, 568));
    const QImage display = onDisplay();
    for (const QPoint at : {QPoint(1, 1), QPoint(318, 1), QPoint(1, 566), QPoint(318, 566), QPoint(160, 300)})
        EXPECT_EQ(display.pixelColor(at), QColor(69, 94, 149));
}

TEST_F(ModalStack, WhileItSlidesNothingTakesAnInput) {
    openWithReading();
    present();
    for (int step = 0; step < 5; ++step) {
        useEverything();
        clickInWindow("btnFirst");
        clock_.step(50);
    }
    EXPECT_EQ(screen().dataList()->count(), 0);
    EXPECT_EQ(*log_, "willAppear ");
    EXPECT_EQ(screens().count(), 1);
}

TEST_F(ModalStack, InPlaceItTakesMouseFingerAndKeys) {
    openWithReading();
    present();
    clock_.step(kSlide);
    log_->clear();
    click("btnFirst");
    tap("btnSecond");
    EXPECT_EQ(*log_, "first second ");
    log_->clear();
    EXPECT_EQ(focused(), "btnFirst");
    pressKey(Qt::Key_Space);
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Return);
    EXPECT_EQ(*log_, "first second ");
}

TEST_F(ModalStack, NothingBehindItIsReached) {
    openWithReading();
    present();
    clock_.step(kSlide);
    useEverything();
    QTest::mouseClick(&window(), Qt::LeftButton, {}, {160, 400});
    for (int stop = 0; stop < 6; ++stop) {
        pressKey(Qt::Key_Tab);
        EXPECT_TRUE(focused() == "btnFirst" || focused() == "btnSecond") << focused();
    }
    EXPECT_EQ(screen().dataList()->count(), 0);
    EXPECT_EQ(screens().count(), 1);
}

TEST_F(ModalStack, AHeldButtonBehindItIsLetGo) {
    openWithReading();
    pressMouse("Rightbtn");
    present();
    clock_.step(kSlide);
    releaseMouse(centreOf("Rightbtn"));
    EXPECT_EQ(screens().count(), 1);
    EXPECT_EQ(log_->find("first"), std::string::npos);
}

TEST_F(ModalStack, ItSlidesDownAndIsDestroyed) {
    openWithReading();
    present();
    clock_.step(kSlide);
    dismiss();
    EXPECT_EQ(*log_, "willAppear didAppear willDisappear ");
    double before = -1;
    for (int step = 0; step < 5; ++step) {
        clock_.step(50);
        EXPECT_GT(top(), before) << step;
        before = top();
        useEverything();
        clickInWindow("btnFirst");
    }
    EXPECT_EQ(*log_, "willAppear didAppear willDisappear ");
    EXPECT_EQ(screen().dataList()->count(), 0);
    clock_.step(50 + kFrame);
    settle();
    EXPECT_FALSE(isPresented());
    EXPECT_EQ(*log_, "willAppear didAppear willDisappear destroyed ");
}

TEST_F(ModalStack, AfterwardsTheLiveScreenTakesMouseAndKeysAgain) {
    openWithReading();
    item("tableView").forceActiveFocus(Qt::TabFocusReason);
    present();
    clock_.step(kSlide);
    dismiss();
    clock_.step(kSlide);
    settle();
    EXPECT_EQ(focused(), "tableView");
    pressKey(Qt::Key_Space);
    click("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 2);
}

TEST_F(ModalStack, WithoutAnimationItIsThereAndGoneAtOnce) {
    openWithReading();
    present(false);
    EXPECT_EQ(top(), 0);
    EXPECT_EQ(*log_, "willAppear didAppear ");
    click("btnFirst");
    EXPECT_EQ(*log_, "willAppear didAppear first ");
    screens().dismiss(false);
    settle();
    EXPECT_FALSE(isPresented());
    click("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(ModalStack, ADurationOfZeroIsAtOnceToo) {
    options_.slideDuration = std::chrono::milliseconds(0);
    openWithReading();
    present();
    EXPECT_EQ(top(), 0);
    dismiss();
    settle();
    EXPECT_FALSE(isPresented());
    EXPECT_EQ(*log_, "willAppear didAppear willDisappear destroyed ");
}

TEST_F(ModalStack, OneThatIsDismissedWhileItSlidesInTurnsBack) {
    openWithReading();
    present();
    clock_.step(100);
    const double reached = top();
    dismiss();
    clock_.step(100);
    EXPECT_GT(top(), reached);
    clock_.step(200 + kFrame);
    settle();
    EXPECT_FALSE(isPresented());
    EXPECT_EQ(*log_, "willAppear willDisappear destroyed ");
    click("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(ModalStack, OneThatIsTakenAwayWhileItSlidesLeavesTheOthersUsable) {
    openWithReading();
    present(false);
    screens().present(ScreenId::BluetoothConnectionHelp, true);
    settle();
    clock_.step(100);
    screens().dismiss(false);
    settle();
    log_->clear();
    click("btnFirst");
    EXPECT_EQ(*log_, "first ");
    dismiss();
    clock_.step(100);
    screens().dismiss(false);  // nothing is left that is not leaving
    clock_.step(200 + kFrame);
    settle();
    click("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(ModalStack, OfTwoTheUpperTakesTheInputsUntilItHasGone) {
    openWithReading();
    present(false);
    screens().present(ScreenId::BluetoothConnectionHelp, false);
    settle();
    log_->clear();
    const QPoint first = centreOf("btnFirst");
    QTest::mouseClick(&window(), Qt::LeftButton, {}, first);
    pressKey(Qt::Key_Space);
    EXPECT_EQ(*log_, "first first ");
    screens().dismiss(false);
    settle();
    EXPECT_EQ(*log_, "first first willDisappear destroyed ");
    EXPECT_EQ(focused(), "btnFirst");
    pressKey(Qt::Key_Space);
    EXPECT_EQ(*log_, "first first willDisappear destroyed first ");
}

TEST_F(ModalStack, TheLiveScreenGoesOnBehindIt) {
    openWithReading();
    present(false);
    tester().play(kInsulation);
    screens().dismiss(false);
    settle();
    EXPECT_EQ(text("D1Value"), QStringLiteral("186.4"));
}

}  // namespace
}  // namespace kestrix::shell
