#include "ui/Screen.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/LogExpectations.h"
#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

class LoadedScreen final : public Screen {
  public:
    LoadedScreen() : Screen(ScreenId::SaveData) {}
    void viewDidLoad() override {
        ++loads;
        loadedWithin = isViewLoaded();
    }
    int loads = 0;
    bool loadedWithin = false;
};

TEST(Screen, FindsEachControlUnderItsName) {
    const TestScreen screen;
    EXPECT_EQ(screen.label(QStringLiteral("text")), &screen.text);
    EXPECT_EQ(screen.imageView(QStringLiteral("picture")), &screen.picture);
    EXPECT_EQ(screen.button(QStringLiteral("help")), &screen.help);
}

TEST(Screen, WarnsOfANameThatNobodyHas) {
    const TestScreen screen;
    testing::expectWarning("'missing'");
    EXPECT_EQ(screen.label(QStringLiteral("missing")), nullptr);
    testing::expectWarning("'missing'");
    EXPECT_EQ(screen.imageView(QStringLiteral("missing")), nullptr);
    testing::expectWarning("'missing'");
    EXPECT_EQ(screen.button(QStringLiteral("missing")), nullptr);
}

TEST(Screen, WarnsOfANameThatAControlOfAnotherKindHas) {
    const TestScreen screen;
    testing::expectWarning("no kestrix::ui::Label named 'help'");
    EXPECT_EQ(screen.label(QStringLiteral("help")), nullptr);
    testing::expectWarning("no kestrix::ui::ImageView named 'text'");
    EXPECT_EQ(screen.imageView(QStringLiteral("text")), nullptr);
    testing::expectWarning("no kestrix::ui::Button named 'picture'");
    EXPECT_EQ(screen.button(QStringLiteral("picture")), nullptr);
}

TEST(Screen, LooksAmongItsOwnControlsOnly) {
    const TestScreen one;
    const TestScreen other;
    EXPECT_EQ(one.label(QStringLiteral("text")), &one.text);
    EXPECT_EQ(other.label(QStringLiteral("text")), &other.text);
}

TEST(Screen, ForgetsAControlThatIsDestroyed) {
    TestScreen screen;
    auto gone = std::make_unique<Label>(screen, "gone");
    EXPECT_EQ(screen.label(QStringLiteral("gone")), gone.get());
    gone.reset();
    testing::expectWarning("'gone'");
    EXPECT_EQ(screen.label(QStringLiteral("gone")), nullptr);
    screen.setCovered(true);
    screen.setCovered(false);  // asks every control
}

TEST(Screen, ACoveredOneTellsTheDisplayNothingUntilItCanBeSeen) {
    TestScreen screen;
    tellDisplay();
    const SignalCount texts(screen.text, &Label::textChanged);
    int coveredTold = 0;
    QObject::connect(&screen, &Screen::coveredChanged, &screen, [&] {
        ++coveredTold;
        EXPECT_EQ(texts(), screen.isCovered() ? 0 : 1);  // told before it can be seen
    });
    screen.setCovered(true);
    screen.setCovered(true);
    screen.text.setText(QStringLiteral("1"));
    screen.text.setText(QStringLiteral("2"));
    tellDisplay();
    EXPECT_EQ(texts(), 0);
    EXPECT_EQ(screen.text.text(), QStringLiteral("2"));
    screen.setCovered(false);
    EXPECT_EQ(texts(), 1);
    EXPECT_EQ(coveredTold, 2);
}

TEST(Screen, LoadsItsViewOnce) {
    LoadedScreen screen;
    EXPECT_FALSE(screen.isViewLoaded());
    EXPECT_EQ(screen.loads, 0);
    screen.loadView();
    screen.loadView();
    EXPECT_TRUE(screen.isViewLoaded());
    EXPECT_TRUE(screen.loadedWithin);
    EXPECT_EQ(screen.loads, 1);
}

TEST(Screen, KnowsWhichOneItIs) {
    EXPECT_EQ(LoadedScreen().id(), ScreenId::SaveData);
    EXPECT_EQ(TestScreen().id(), ScreenId::MainView);
}

}  // namespace
}  // namespace kestrix::ui
