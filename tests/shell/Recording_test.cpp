// Record and the other buttons: real presses on the window, by mouse, finger, key and screen reader.
#include <QAccessible>
#include <QtTest/QTest>

#include "tests/shell/Scenarios.h"
#include "tests/shell/TestScreen.h"
#include "tests/support/StepDriver.h"
#include "tests/support/WindowFixture.h"
#include "ui/SideBarContainer.h"

namespace kestrix::shell {
namespace {

// The frame around the live screen; keeps what it is asked for.
class Recording : public testing::WindowFixture {
  protected:
    void openWithReading() {
        start();
        TestScreen::registerAs(ui::ScreenId::SaveData, app().screens(), log_);
        TestScreen::registerAs(ui::ScreenId::BluetoothConnectionHelp, app().screens(), helpLog_);
        open();
        showReading(kInsulation);
    }
    int rows() { return screen().dataList()->count(); }
    void keyDown(bool repeated) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), repeated);
        QCoreApplication::sendEvent(&window(), &event);
    }

    TestScreen::Log log_ = std::make_shared<std::string>();      // of the screen that saves
    TestScreen::Log helpLog_ = std::make_shared<std::string>();  // of the screen that helps
};

TEST_F(Recording, TheMouseRecordsWhenItGoesDown) {
    openWithReading();
    pressMouse("btnRecord");
    EXPECT_EQ(rows(), 1);
    releaseMouse(centreOf("btnRecord"));
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, AFingerRecordsWhenItLands) {
    openWithReading();
    const QPoint at = centreOf("btnRecord");
    QTest::touchEvent(&window(), touchScreen()).press(0, at);
    EXPECT_EQ(rows(), 1);
    QTest::touchEvent(&window(), touchScreen()).release(0, at);
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, AFingerRecordsWhileAnotherOneRestsOnTheList) {
    openWithReading();
    const QPoint list = centreOf("tableView");
    const QPoint button = centreOf("btnRecord");
    QTest::touchEvent(&window(), touchScreen()).press(0, list);
    QTest::touchEvent(&window(), touchScreen()).stationary(0).press(1, button);
    EXPECT_EQ(rows(), 1);
    QTest::touchEvent(&window(), touchScreen()).stationary(0).release(1, button);
    QTest::touchEvent(&window(), touchScreen()).stationary(0).press(1, button);
    EXPECT_EQ(rows(), 2);
    QTest::touchEvent(&window(), touchScreen()).release(0, list).release(1, button);
    EXPECT_EQ(rows(), 2);
}

TEST_F(Recording, EveryPressRecords) {
    openWithReading();
    for (int i = 0; i < 3; ++i) click("btnRecord");
    tap("btnRecord");
    tap("btnRecord");
    EXPECT_EQ(rows(), 5);
}

TEST_F(Recording, ANoticeHidesNothingOfTheRowsThatWereJustRecorded) {
    openWithReading();
    for (int i = 0; i < 12; ++i) click("btnRecord");
    settle();
    const double before = placeOf("sessionRow11").bottom();
    app().notice().show("a line\nand another");
    settle();
    ASSERT_TRUE(isShown("notice"));
    EXPECT_FALSE(placeOf("sessionRow11").intersects(placeOf("notice")));
    click("btnRecord");
    settle();
    EXPECT_FALSE(placeOf("sessionRow12").intersects(placeOf("notice")));
    EXPECT_TRUE(placeOf("tableView").contains(placeOf("sessionRow12")));
    scheduler_.advance(ui::Notice::kDuration);
    settle();
    ASSERT_FALSE(isShown("notice"));
    EXPECT_EQ(placeOf("sessionRow12").bottom(), before);
}

// Rows of different heights, of which the first ones have room beside the notice.
TEST_F(Recording, ANoticeLeavesNoGapBeforeTheRows) {
    openWithReading();
    int row = 0;
    for (const char* scenario : {kEarth, kLoop, kLoop, kInsulation, kEarth, kLoop, kLoop}) {
        tester().play(scenario);
        settle();
        click("btnRecord");
        app().notice().show("a line\nand another");
        settle();
        const QRectF list = placeOf("tableView");
        QRectF rows;
        for (QQuickItem* each : testing::itemsUnder(item("tableView"))) {
            if (each->objectName().startsWith(QLatin1String("sessionRow")) && each->isVisible())
                rows |= placeOf(*each);
        }
        EXPECT_LE(rows.top(), list.top()) << row;
        EXPECT_TRUE(rows.contains(placeOf(item(QStringLiteral("sessionRow%1").arg(row))))) << row;
        EXPECT_LE(rows.bottom(), placeOf("notice").top()) << row;
        scheduler_.advance(ui::Notice::kDuration);
        settle();
        ++row;
    }
}

TEST_F(Recording, ANoticeMovesNothingForOneWhoLooksAtTheBeginning) {
    openWithReading();
    for (int i = 0; i < 12; ++i) click("btnRecord");
    item("tableView").setProperty("contentY", 0.0);
    settle();
    const QRectF first = placeOf("sessionRow0");
    app().notice().show("a line");
    settle();
    EXPECT_EQ(placeOf("sessionRow0"), first);
    scheduler_.advance(ui::Notice::kDuration);
    settle();
    EXPECT_EQ(placeOf("sessionRow0"), first);
}

TEST_F(Recording, APressBesideTheButtonDoesNotRecord) {
    openWithReading();
    const QPoint left = pointIn(item("btnRecord"), {-0.05, 0.5});
    QTest::mouseClick(&window(), Qt::LeftButton, {}, left);
    EXPECT_EQ(rows(), 0);
}

TEST_F(Recording, SpaceRecordsOnceHoweverLongItIsHeld) {
    openWithReading();
    keyDown(false);
    EXPECT_EQ(rows(), 1);
    keyDown(true);
    keyDown(true);
    EXPECT_EQ(rows(), 1);
}

// As a display server may tell it: released and pressed again in the same moment.
TEST_F(Recording, AKeyThatIsHeldRecordsOnceAlsoWhenEachRepeatIsToldAsAPress) {
    openWithReading();
    window().setRepeatsArePresses(true);
    const auto send = [this](QEvent::Type type, quint64 milliseconds) {
        QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
        event.setTimestamp(milliseconds);
        QCoreApplication::sendEvent(&window(), &event);
    };
    for (const char* focus : {"mainView", "btnRecord"}) {
        item(focus).forceActiveFocus(Qt::TabFocusReason);
        const int before = rows();
        send(QEvent::KeyPress, 1000);
        for (const quint64 repeat : {1500U, 1540U, 1580U}) {
            send(QEvent::KeyRelease, repeat);
            send(QEvent::KeyPress, repeat);
        }
        send(QEvent::KeyRelease, 1600);
        EXPECT_EQ(rows(), before + 1) << focus;
        send(QEvent::KeyPress, 1700);
        send(QEvent::KeyRelease, 1750);
        EXPECT_EQ(rows(), before + 2) << focus;
    }
}

TEST_F(Recording, OtherMouseButtonsRecordNothingWhileTheLeftOneIsHeld) {
    openWithReading();
    const QPoint at = centreOf("btnRecord");
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held) {
        QMouseEvent event(type, at, window().mapToGlobal(at), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&window(), &event);
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton, Qt::RightButton}) {
        send(QEvent::MouseButtonPress, other, Qt::LeftButton | other);
        send(QEvent::MouseButtonRelease, other, Qt::LeftButton);
    }
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(rows(), 1);
    send(QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton);
    send(QEvent::MouseButtonRelease, Qt::RightButton, Qt::NoButton);
    EXPECT_EQ(rows(), 1);
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(rows(), 2);
}

TEST_F(Recording, TheFocusedRecordButtonTakesSpaceAndEnterOnce) {
    openWithReading();
    item("btnRecord").forceActiveFocus(Qt::TabFocusReason);
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) pressKey(key);
    EXPECT_EQ(rows(), 3);
    keyDown(true);
    EXPECT_EQ(rows(), 3);
}

TEST_F(Recording, AScreenReaderRecords) {
    openWithReading();
    QAccessibleInterface* const button = QAccessible::queryAccessibleInterface(&item("btnRecord"));
    ASSERT_NE(button, nullptr);
    ASSERT_NE(button->actionInterface(), nullptr);
    ASSERT_TRUE(button->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, BeforeTheFirstReadingNothingIsRecorded) {
    open();
    tester().appear();
    settle();
    click("btnRecord");
    pressKey(Qt::Key_Space);
    EXPECT_EQ(rows(), 0);
}

TEST_F(Recording, AHeldRecordButtonLooksPressed) {
    openWithReading();
    QTest::mouseMove(&window(), centreOf("btnRecord"));
    settle();
    const QRect where = pixelsOf(placeOf("btnRecord"));
    const QImage released = onDisplay().copy(where);
    pressMouse("btnRecord");
    settle();
    EXPECT_NE(onDisplay().copy(where), released);
    std::string pictures;
    for (const QQuickItem* inside : testing::itemsUnder(item("btnRecord"))) {
        const std::string file = inside->property("source").toUrl().fileName().toStdString();
        if (file.ends_with(".png")) pictures += file;
    }
    EXPECT_EQ(pictures, "orvo_home_button_record_pressed.png");
    releaseMouse(centreOf("btnRecord"));
    settle();
    EXPECT_EQ(onDisplay().copy(where), released);
}

TEST_F(Recording, AToolbarButtonActsWhenTheFingerLands) {
    options_.slideDuration = std::chrono::milliseconds(0);
    openWithReading();
    const QPoint left = centreOf("Leftbtn");
    pressMouse("Leftbtn");
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, ui::SideBarContainer::kLeft);
    app().viewController().tapOnContentView();
    settle();
    releaseMouse(left);
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, ui::SideBarContainer::kClosed)
        << "letting go is no second press";
    const QPoint at = centreOf("Rightbtn");
    QTest::touchEvent(&window(), touchScreen()).press(0, at);
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, ui::SideBarContainer::kRight);
    QTest::touchEvent(&window(), touchScreen()).release(0, at);
}

TEST_F(Recording, TwoFingersPressTwoButtonsAtOnce) {
    openWithReading();
    const QPoint menu = centreOf("Leftbtn");
    const QPoint button = centreOf("btnRecord");
    QTest::touchEvent(&window(), touchScreen()).press(0, button).press(1, menu);
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, ui::SideBarContainer::kLeft);
    QTest::touchEvent(&window(), touchScreen()).release(0, button).release(1, menu);
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, AFingerRecordsWhileTheMouseIsHeldElsewhere) {
    openWithReading();
    const QPoint button = centreOf("btnRecord");
    pressMouse("spokenReading");
    QTest::touchEvent(&window(), touchScreen()).press(0, button);
    EXPECT_EQ(rows(), 1);
    QTest::touchEvent(&window(), touchScreen()).release(0, button);
    releaseMouse(centreOf("spokenReading"));
    EXPECT_EQ(rows(), 1);
    click("btnRecord");
    EXPECT_EQ(rows(), 2);
}

TEST_F(Recording, KeysWithModifiersDoNotRecord) {
    openWithReading();
    for (const char* focus : {"mainView", "btnRecord", "tableView"}) {
        item(focus).forceActiveFocus(Qt::TabFocusReason);
        for (const auto modifier :
             {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier, Qt::MetaModifier}) {
            pressKey(Qt::Key_Space, modifier);
            pressKey(Qt::Key_R, modifier);
            EXPECT_EQ(rows(), 0) << focus;
            EXPECT_EQ(focused(), focus);
        }
    }
}

TEST_F(Recording, AButtonUnderTheMouseSaysWhatItDoes) {
    testing::StepDriver driver;
    openWithReading();
    QTest::mouseMove(&window(), centreOf("btnRecord"));  // a test before may have left it where it is to go
    QTest::mouseMove(&window(), centreOf("Leftbtn"));
    driver.step(100);
    ASSERT_TRUE(testing::spinUntil([this] {
        const QQuickItem* const shade = testing::findItem(item("Leftbtn"), QStringLiteral("hoverShade"));
        return shade != nullptr && shade->isVisible();
    }));
    driver.step(700);
    EXPECT_TRUE(isShown("LeftbtnTip"));
    EXPECT_EQ(testing::textOf(item("LeftbtnTip")).property("text").toString(), QStringLiteral("Menu"));
    EXPECT_TRUE(placeOf("points").contains(placeOf("LeftbtnTip")));
}

TEST_F(Recording, WithARowTheRightButtonSaves) {
    openWithReading();
    click("btnRecord");
    click("Rightbtn");
    EXPECT_EQ(app().screens().count(), 1);
    EXPECT_EQ(*log_, "willAppear ");
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, ui::SideBarContainer::kClosed);
}

TEST_F(Recording, HelpActsWhenTheFingerLands) {
    openWithReading();
    tester().leave();
    settle();
    pressMouse("btnHelp");
    EXPECT_EQ(*helpLog_, "willAppear ");
    releaseMouse(centreOf("btnHelp"));
    EXPECT_EQ(app().screens().count(), 1);
}

TEST_F(Recording, AFingerAFewPointsBesideHelpStillMeansIt) {
    openWithReading();
    tester().leave();
    settle();
    const QPoint above = pointIn(item("btnHelp"), {0.5, -0.3});
    QTest::touchEvent(&window(), touchScreen()).press(0, above);
    EXPECT_EQ(app().screens().count(), 1);
    QTest::touchEvent(&window(), touchScreen()).release(0, above);
}

TEST_F(Recording, AHiddenHelpButtonIsNotPressed) {
    openWithReading();
    click("btnHelp");
    EXPECT_EQ(app().screens().count(), 0);
}

}  // namespace
}  // namespace kestrix::shell
