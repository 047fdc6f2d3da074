// The parts that screens are made of, on a screen that shows each: by mouse, fingers, keys and screen reader.
#include "tests/shell/madeup/MadeUpViewController.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QQmlIncubator>
#include <QtTest/QTest>

#include <atomic>

#include "shell/Screens.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/EventLoop.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/StepDriver.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

using madeup::MadeUpViewController;
using ui::ScreenId;
using Heard = std::vector<std::string>;

class MadeUpScreen : public testing::WindowWalks {
  protected:
    void openMadeUp(bool animated = false) {
        if (!animated) options_.slideDuration = std::chrono::milliseconds(0);
        start();
        const ScreenRow row{
            ScreenId::SaveData, "Made up", make<MadeUpViewController>, "Madeup/MadeUpView.qml", {}};
        registerScreen(row, app().screens(), app().services());
        open();
        showReading(kEarth);
        app().screens().present(ScreenId::SaveData, animated);
        settle();
    }
    MadeUpViewController& made() { return dynamic_cast<MadeUpViewController&>(*app().screens().topmost()); }
    int presented() { return app().screens().count(); }
    bool isFound(const QString& name) {
        for (QAccessibleInterface* one : found()) {
            if (one->object()->objectName() == name) return true;
        }
        return false;
    }
    int framesShown() {
        int shown = 0;
        for (const QQuickItem* one : testing::itemsUnder(item("stage")))
            shown += one->objectName() == QStringLiteral("focusFrame") && one->isVisible() ? 1 : 0;
        return shown;
    }
    void type(const QString& text) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
};

TEST_F(MadeUpScreen, HasItsTitleAndABackButton) {
    openMadeUp();
    EXPECT_EQ(text("screenTitle"), QStringLiteral("Made up"));
    click("btnBack");
    settle();
    EXPECT_EQ(presented(), 0);
}

TEST_F(MadeUpScreen, EscapeAndBackCloseItFromWhereverTheKeyboardIs) {
    openMadeUp();
    for (const int key : {Qt::Key_Escape, Qt::Key_Back}) {
        for (const char* at : {"madeUpView", "projectName", "btnAsk"}) {
            if (presented() == 0) app().screens().present(ScreenId::SaveData, false);
            settle();
            item(at).forceActiveFocus(Qt::TabFocusReason);
            pressKey(key, Qt::ControlModifier);
            EXPECT_EQ(presented(), 1) << at;
            pressKey(key);
            settle();
            EXPECT_EQ(presented(), 0) << at;
        }
    }
}

TEST_F(MadeUpScreen, OneThatCannotBeClosedStays) {
    openMadeUp();
    made().setClosable(false);
    settle();
    EXPECT_FALSE(isShown("btnBack"));
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_EQ(presented(), 1);
}

// The rule: a screen comes with the keyboard on none of its controls, so that nothing is framed; Tab begins
// at its top.
TEST_F(MadeUpScreen, ComesWithoutAFrameAndTabBeginsAtItsTop) {
    openMadeUp();
    EXPECT_EQ(framesShown(), 0);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "btnBack");
    EXPECT_EQ(framesShown(), 1);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "projectName");
}

TEST_F(MadeUpScreen, WhatLiesBehindItIsNeitherDrawnNorFoundNorPressed) {
    openMadeUp();
    EXPECT_FALSE(item("mainView").isVisible());
    for (const char* name : {"mainView", "btnRecord", "D1Value", "spokenReading", "tableView", "Leftbtn"})
        EXPECT_FALSE(isFound(QString::fromLatin1(name))) << name;
    pressByScreenReader("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 0);
    app().screens().dismiss(false);
    settle();
    EXPECT_TRUE(isFound(QStringLiteral("btnRecord")));
    pressByScreenReader("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(MadeUpScreen, BehindItTheLightningCostsNoFrameAndAReadingIsThereAtOnceAfterwards) {
    openMadeUp();
    const int before = frames();
    for (int i = 0; i < 12; ++i) {
        scheduler_.advance(std::chrono::milliseconds(170));
        tester().play(kInsulation);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(frames(), before);
    app().screens().dismiss(false);
    EXPECT_EQ(text("D1Value"), QStringLiteral("186.4"));  // before anything is drawn
}

TEST_F(MadeUpScreen, WhileItSlidesAScreenReaderPressesNothing) {
    testing::StepDriver clock;
    openMadeUp(true);
    clock.step(100);
    pressByScreenReader("btnRecord");
    pressByScreenReader("btnAsk");
    EXPECT_EQ(screen().dataList()->count(), 0);
    EXPECT_FALSE(app().alerts().isShown());
    clock.step(300);
    settle();
    pressByScreenReader("btnAsk");
    EXPECT_TRUE(app().alerts().isShown());
}

TEST_F(MadeUpScreen, AFieldTakesWhatIsTypedQuotesScriptsAndAll) {
    openMadeUp();
    click("projectName");
    EXPECT_TRUE(made().projectName.isEditing());
    QTest::keyClick(&window(), 'a');
    type(QStringLiteral("'\"👷🏽"));
    type(QStringLiteral("שלום"));
    EXPECT_EQ(made().projectName.text(), QStringLiteral("a'\"👷🏽שלום"));
    EXPECT_FALSE(isShown("projectNamePlaceholder"));
    EXPECT_TRUE(isShown("operatorsPlaceholder"));
}

TEST_F(MadeUpScreen, AFieldShowsWhatTheScreenSetsAndASelectionIsReplaced) {
    openMadeUp();
    made().projectName.setText(QStringLiteral("old"));
    settle();
    EXPECT_EQ(item("projectName").property("text").toString(), QStringLiteral("old"));
    click("projectName");
    pressKey(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("new"));
    EXPECT_EQ(made().projectName.text(), QStringLiteral("new"));
    QGuiApplication::clipboard()->setText(QStringLiteral(" 'x'"));
    pressKey(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(made().projectName.text(), QStringLiteral("new 'x'"));
}

TEST_F(MadeUpScreen, ItsTableIsReachedAndScrolledByKeysAndCopied) {
    openMadeUp();
    item("btnTell").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Tab);
    EXPECT_TRUE(item("records").hasActiveFocus());
    pressKey(Qt::Key_End);
    settle();
    EXPECT_GT(item("records").property("contentY").toDouble(), 0);
    EXPECT_TRUE(isFound(QStringLiteral("row11")));
    pressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Record 12\t0.2Ω"));
}

// No row is left unfinished, which the log would say when the window goes.
TEST_F(MadeUpScreen, ItsTableMayGoAtAnyMoment) {
    std::atomic<bool> goOn = false;
    for (int steps = 0; steps < 12; ++steps) {
        openMadeUp();
        for (int step = 0; step < steps; ++step) window().incubationController()->incubateWhile(&goOn);
        app().screens().dismiss(false);
        stop();
    }
}

TEST_F(MadeUpScreen, AScreenReaderNamesItsRowsAndPressesTheMenu) {
    openMadeUp();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&item("records"))->text(QAccessible::Name),
              QStringLiteral("Records: 12"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&item("row1"))->text(QAccessible::Name),
              QStringLiteral("Not stored, Record 2, 0.2Ω"));
    EXPECT_FALSE(isFound(QStringLiteral("recordsCopyRow")));
    QTest::mouseClick(&window(), Qt::RightButton, {}, centreOf("row1"));
    settle();
    EXPECT_TRUE(isFound(QStringLiteral("recordsCopyRow")));
    pressByScreenReader("recordsCopyRow");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Record 2\t0.2Ω"));
    EXPECT_FALSE(isShown("recordsRowMenu"));
}

TEST_F(MadeUpScreen, APressOnItsBarOfTitleClosesTheMenuOfARow) {
    openMadeUp();
    QTest::mouseClick(&window(), Qt::RightButton, {}, centreOf("row1"));
    EXPECT_TRUE(isShown("recordsRowMenu"));
    click("screenTitle");
    EXPECT_FALSE(isShown("recordsRowMenu"));
}

TEST_F(MadeUpScreen, EscapeAndBackCloseTheMenuOfARowFromWhereverTheKeyboardIsAndNothingElse) {
    openMadeUp();
    for (const int key : {Qt::Key_Escape, Qt::Key_Back}) {
        for (const char* at : {"madeUpView", "projectName", "btnAsk", "records"}) {
            item(at).forceActiveFocus(Qt::TabFocusReason);
            const std::string before = focused();
            QTest::mouseClick(&window(), Qt::RightButton, {}, centreOf("row1"));
            EXPECT_TRUE(isShown("recordsRowMenu")) << at;
            pressKey(key);
            settle();
            EXPECT_FALSE(isShown("recordsRowMenu")) << at;
            EXPECT_EQ(presented(), 1) << at;
            EXPECT_EQ(focused(), before);
        }
    }
}

TEST_F(MadeUpScreen, ReturnEndsEditingOfTheField) {
    openMadeUp();
    item("operators").forceActiveFocus(Qt::TabFocusReason);
    type(QStringLiteral("Ann"));
    pressKey(Qt::Key_Return);
    EXPECT_EQ(made().heard, Heard{"return"});
    EXPECT_FALSE(made().operators.isEditing());
    EXPECT_EQ(presented(), 1);
}

TEST_F(MadeUpScreen, AnAlertTakesKeysAndTouchesUntilItIsAnswered) {
    openMadeUp();
    made().pressAsk();
    settle();
    EXPECT_EQ(focused(), "alertButton1");
    EXPECT_EQ(framesShown(), 1);  // what Enter presses is shown
    click("btnTell");
    tap("btnBack");
    EXPECT_FALSE(isFound(QStringLiteral("btnTell")));
    pressByScreenReader("btnTell");
    EXPECT_FALSE(app().notice().isShown());
    EXPECT_EQ(presented(), 1);
    for (const char* stop : {"alertButton0", "alertButton1"}) {
        pressKey(Qt::Key_Tab);
        EXPECT_EQ(focused(), stop);
    }
    pressKey(Qt::Key_Backtab, Qt::ShiftModifier);
    pressKey(Qt::Key_Return);
    EXPECT_EQ(made().heard, Heard{"answer 0"});
    settle();
    EXPECT_TRUE(isFound(QStringLiteral("btnTell")));
}

TEST_F(MadeUpScreen, EscapeAnswersAnAlertWithItsCancelButtonAndClosesNothingElse) {
    openMadeUp();
    item("projectName").forceActiveFocus(Qt::TabFocusReason);
    made().pressAsk();
    settle();
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_EQ(made().heard, Heard{"answer 1"});
    EXPECT_EQ(presented(), 1);
    EXPECT_EQ(focused(), "projectName");  // where it was
}

TEST_F(MadeUpScreen, EscapeWithAModifierAnswersNoAlert) {
    openMadeUp();
    made().pressAsk();
    settle();
    pressKey(Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_TRUE(app().alerts().isShown());
    pressKey(Qt::Key_Escape, Qt::KeypadModifier);
    EXPECT_EQ(made().heard, Heard{"answer 1"});
    EXPECT_EQ(presented(), 1);
}

TEST_F(MadeUpScreen, EnterOfTheNumberPadPressesTheButtonsOfAnAlertAndOfANotice) {
    openMadeUp();
    made().pressAsk();
    settle();
    pressKey(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_EQ(made().heard, Heard{});
    pressKey(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(made().heard, Heard{"answer 1"});
    made().pressTell();
    settle();
    item("noticeAction").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(made().heard.size(), 2U);
    EXPECT_FALSE(app().notice().isShown());
}

TEST_F(MadeUpScreen, AnAlertIsAnsweredByMouseFingerAndScreenReader) {
    openMadeUp();
    for (const int way : {0, 1, 2}) {
        made().pressAsk();
        settle();
        if (way == 0) click("alertButton0");
        if (way == 1) tap("alertButton0");
        if (way == 2) pressByScreenReader("alertButton0");
        EXPECT_EQ(made().heard.size(), static_cast<std::size_t>(way) + 1) << way;
        settle();
    }
}

TEST_F(MadeUpScreen, AnAlertGoesWithItsScreen) {
    openMadeUp();
    made().pressAsk();
    settle();
    app().screens().dismiss(false);
    settle();
    EXPECT_FALSE(app().alerts().isShown());
    EXPECT_EQ(focused(), "mainView");
}

TEST_F(MadeUpScreen, ANoticeComesAndGoesAndHoldsNothingUp) {
    openMadeUp();
    item("projectName").forceActiveFocus(Qt::TabFocusReason);
    made().pressTell();
    settle();
    EXPECT_TRUE(isShown("notice"));
    EXPECT_EQ(focused(), "projectName");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&item("notice"))->role(), QAccessible::AlertMessage);
    type(QStringLiteral("on"));
    EXPECT_EQ(made().projectName.text(), QStringLiteral("on"));
    scheduler_.advance(ui::Notice::kDuration);
    settle();
    EXPECT_FALSE(isShown("notice"));
}

TEST_F(MadeUpScreen, TheActionOfANoticeIsPressedByMouseKeyAndScreenReader) {
    openMadeUp();
    for (const int way : {0, 1, 2}) {
        made().pressTell();
        settle();
        if (way == 0) click("noticeAction");
        if (way == 1) {
            item("noticeAction").forceActiveFocus(Qt::TabFocusReason);
            pressKey(Qt::Key_Space);
        }
        if (way == 2) pressByScreenReader("noticeAction");
        EXPECT_EQ(made().heard.size(), static_cast<std::size_t>(way) + 1) << way;
        EXPECT_FALSE(app().notice().isShown());
        settle();
    }
}

TEST_F(MadeUpScreen, ButtonsArePressedByTwoFingersAtOnceAndByAScreenReader) {
    openMadeUp();
    const QPoint field = centreOf("lblProject");
    const QPoint tell = centreOf("btnTell");
    QTest::touchEvent(&window(), touchScreen()).press(0, field);
    QTest::touchEvent(&window(), touchScreen()).stationary(0).press(1, tell);
    EXPECT_TRUE(app().notice().isShown());
    QTest::touchEvent(&window(), touchScreen()).release(0, field).release(1, tell);
    pressByScreenReader("btnAsk");
    EXPECT_TRUE(app().alerts().isShown());
}

TEST_F(MadeUpScreen, SeveralScreensAlertsAndNoticesGoInAnyOrder) {
    openMadeUp(true);
    app().screens().present(ScreenId::SaveData, true);
    made().pressAsk();
    made().pressTell();
    app().screens().present(ScreenId::SaveData, true);
    made().pressAsk();
    settle();
    app().screens().dismiss(false);
    app().screens().dismiss(true);
    app().screens().dismiss(false);
    settle();
    app().notice().pressAction();  // its screen may have gone
    EXPECT_TRUE(testing::spinUntil([this] { return presented() == 0; }));
    settle();
    EXPECT_FALSE(app().alerts().isShown());
    click("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(MadeUpScreen, AScreenThatIsNotThereIsSaidInANotice) {
    open();
    testing::expectWarning("no screen is registered for RecordList");
    app().screens().present(ScreenId::RecordList, true);
    settle();
    EXPECT_EQ(app().notice().text(), QStringLiteral("Not available in this version"));
    EXPECT_TRUE(isShown("notice"));
}

}  // namespace
}  // namespace kestrix::shell
