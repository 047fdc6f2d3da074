#include "ui/Button.h"

#include <gtest/gtest.h>

#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

TEST(Button, APressActs) {
    TestScreen screen;
    int presses = 0;
    screen.help.setAction([&] { ++presses; });
    screen.help.press();
    screen.help.press();
    EXPECT_EQ(presses, 2);
}

TEST(Button, ThatIsHiddenDoesNotActUntilItIsShownAgain) {
    TestScreen screen;
    int presses = 0;
    screen.help.setAction([&] { ++presses; });
    screen.help.setHidden(true);
    screen.help.press();
    EXPECT_EQ(presses, 0);
    screen.help.setHidden(false);
    screen.help.press();
    EXPECT_EQ(presses, 1);
}

TEST(Button, WithoutAnActionCanBePressed) {
    TestScreen screen;
    const SignalCount images(screen.help, &Button::imageChanged);
    screen.help.press();
    tellDisplay();
    EXPECT_EQ(images(), 0);
}

TEST(Button, SpaceAndEnterPressItOnceHoweverLongTheyAreHeld) {
    TestScreen screen;
    int presses = 0;
    screen.help.setAction([&] { ++presses; });
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        EXPECT_TRUE(screen.help.pressKey(key, Qt::NoModifier, false));
        EXPECT_TRUE(screen.help.pressKey(key, Qt::NoModifier, true));
    }
    EXPECT_TRUE(screen.help.pressKey(Qt::Key_Enter, Qt::KeypadModifier, false));
    EXPECT_EQ(presses, 4);
}

TEST(Button, OtherKeysAndKeysWithModifiersAreNotItsOwn) {
    TestScreen screen;
    int presses = 0;
    screen.help.setAction([&] { ++presses; });
    EXPECT_FALSE(screen.help.pressKey(Qt::Key_R, Qt::NoModifier, false));
    for (const int modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier, Qt::MetaModifier})
        EXPECT_FALSE(screen.help.pressKey(Qt::Key_Space, modifier, false)) << modifier;
    EXPECT_EQ(presses, 0);
}

TEST(Button, SaysWhetherItActsWhenTheFingerLands) {
    TestScreen screen;
    EXPECT_FALSE(screen.help.actsOnTouchDown());
    const Button landing(screen, "landing", Button::Event::TouchDown);
    EXPECT_TRUE(landing.actsOnTouchDown());
}

TEST(Button, ANewTitleIsToldOnce) {
    TestScreen screen;
    const SignalCount titles(screen.help, &Button::titleChanged);
    const SignalCount images(screen.help, &Button::imageChanged);
    screen.help.setTitle(QStringLiteral("Help"));
    EXPECT_EQ(screen.help.title(), QStringLiteral("Help"));
    EXPECT_EQ(titles(), 0);
    tellDisplay();
    screen.help.setTitle(QStringLiteral("Help"));
    tellDisplay();
    EXPECT_EQ(titles(), 1);
    EXPECT_EQ(images(), 0);
}

TEST(Button, EachOfItsTwoImagesIsTold) {
    TestScreen screen;
    const SignalCount images(screen.help, &Button::imageChanged);
    screen.help.setImage(QStringLiteral("front.png"));
    tellDisplay();
    EXPECT_EQ(images(), 1);
    screen.help.setBackgroundImage(QStringLiteral("back.png"));
    tellDisplay();
    EXPECT_EQ(images(), 2);
    EXPECT_EQ(screen.help.image(), QStringLiteral("front.png"));
    EXPECT_EQ(screen.help.backgroundImage(), QStringLiteral("back.png"));
    screen.help.setImage(QStringLiteral("front.png"));
    tellDisplay();
    EXPECT_EQ(images(), 2);
}

}  // namespace
}  // namespace kestrix::ui
