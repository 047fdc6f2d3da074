// The toolbar's title tells of the tester, and opens the screen on which it is chosen: by finger, mouse and
// keys.
#include "shell/TesterViewController.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/FakeListing.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

using platform::FailedStep;
using ui::ScreenId;

class TesterScreen : public testing::WindowWalks {
  protected:
    void SetUp() override {
        seen_.accessories = {{"tcp://127.0.0.1:1", "KX 1", "paired"},
                             {"tcp://127.0.0.1:2", "KX 2", "paired"}};
        options_.makeListings = [this](platform::Scheduler&) {
            std::vector<std::unique_ptr<platform::AccessoryListing>> listings;
            listings.push_back(std::make_unique<testing::FakeListing>("bluetooth", seen_));
            return listings;
        };
        options_.uris = {"tcp://127.0.0.1:9"};
        options_.slideDuration = std::chrono::milliseconds(0);
    }
    ScreenId shown() { return app().screens().topmost()->id(); }
    std::string lookedFor() { return app().accessories().sources().front()->uri(); }

    testing::Seen seen_;
};

TEST_F(TesterScreen, IsOpenedByTheToolbarsTitle) {
    open();
    tap("btnTester");
    settle();
    ASSERT_EQ(shown(), ScreenId::Tester);
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_EQ(app().screens().topmost(), nullptr);
    click("btnTester");
    settle();
    EXPECT_EQ(shown(), ScreenId::Tester);
}

TEST_F(TesterScreen, IsOpenedByKeysAlone) {
    open();
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "btnTester");
    pressKey(Qt::Key_Return);
    settle();
    EXPECT_EQ(shown(), ScreenId::Tester);
}

TEST_F(TesterScreen, TakesTheRowThatIsTapped) {
    open();
    tap("btnTester");
    settle();
    tap("testerRow2");
    settle();
    EXPECT_EQ(lookedFor(), "tcp://127.0.0.1:2");
    EXPECT_EQ(shown(), ScreenId::Tester) << "until its tester answers";
    EXPECT_EQ(text("lblTesterName"), QStringLiteral("127.0.0.1:2"));
}

TEST_F(TesterScreen, TakesTheRowThatKeysChoose) {
    open();
    tap("btnTester");
    settle();
    item("testers").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Return);
    settle();
    EXPECT_EQ(lookedFor(), "tcp://127.0.0.1:1");
}

TEST_F(TesterScreen, GoesBackToTheDisplayOnceTheChosenTesterIsThere) {
    open();
    tap("btnTester");
    settle();
    tap("testerRow1");
    settle();
    // In place of the tester that does not answer there.
    app().accessories().addSource(std::make_unique<testing::FakeSource>());
    auto& source = dynamic_cast<testing::FakeSource&>(*app().accessories().sources().back());
    source.appear(
        std::make_shared<platform::Accessory>(platform::Accessory{77, "KX 1", {"p"}, nullptr, &source}));
    settle();
    EXPECT_EQ(app().screens().topmost(), nullptr);
    EXPECT_EQ(app().notice().text(), QString()) << "what stands there for seconds may be over";
    EXPECT_EQ(text("lblTester"), QStringLiteral("KX 1"));
}

TEST_F(TesterScreen, TheTitleTellsNameAndState) {
    options_.uris.clear();
    open();
    EXPECT_EQ(text("lblTester"), QStringLiteral("fake:"));
    EXPECT_EQ(text("lblTesterState"), QStringLiteral("Looking for it"));
    showReading(kEarth);
    EXPECT_EQ(text("lblTesterState"), QStringLiteral("Connected"));
    EXPECT_EQ(screen().btnTester.accessibleName(), QStringLiteral("Tester: Tester, Connected"));
    tester().leave();
    settle();
    EXPECT_EQ(text("lblTesterState"), QStringLiteral("Looking for it"));
}

TEST_F(TesterScreen, NotConnectedSaysWhichTesterIsLookedForAndWhyItIsNotThere) {
    options_.uris.clear();
    open();
    EXPECT_EQ(text("lblNoCon"), QStringLiteral("Not Connected"));
    EXPECT_TRUE(isShown("lblWhyNotConnected"));
    tester().tell({.step = FailedStep::NoAnswer, .problem = "out of reach", .peerName = "KX 1"});
    settle();
    EXPECT_EQ(screen().lblWhyNotConnected.text(),
              QStringLiteral("Looking for KX 1: out of reach\nSwitch the tester on and bring it near."));
    EXPECT_EQ(testing::inLines(allProblems()), "");
    showReading(kEarth);
    EXPECT_FALSE(isShown("lblWhyNotConnected")) << "it would stand over the reading";
}

// However long a name is, and a reason: nothing is cut without a sign, and nothing stands over the rest.
TEST_F(TesterScreen, LongNamesAndReasonsStayInTheirPlaces) {
    options_.uris.clear();
    open();
    tester().tell({.step = FailedStep::Missing,
                   .problem = std::string(300, 'w') + " and so on",
                   .peerName = std::string(200, 'M')});
    settle();
    for (const int scale : {1, 3}) {
        resize(kSmall * scale);
        EXPECT_EQ(testing::inLines(allProblems()), "");
    }
    tap("btnTester");
    settle();
    EXPECT_EQ(testing::inLines(allProblems()), "");
}

}  // namespace
}  // namespace kestrix::shell
