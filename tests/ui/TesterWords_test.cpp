#include "ui/TesterWords.h"

#include <gtest/gtest.h>

#include "tests/support/FakeSource.h"
#include "tests/support/Printing.h"

namespace kestrix::ui {
namespace {

using platform::FailedStep;
using platform::SearchState;

class TesterWordsTest : public ::testing::Test {
  protected:
    testing::FakeSource& add() {
        auto source = std::make_unique<testing::FakeSource>();
        testing::FakeSource& added = *source;
        accessories_.addSource(std::move(source));
        return added;
    }
    static platform::AccessoryPtr accessory(testing::FakeSource& source) {
        return std::make_shared<platform::Accessory>(platform::Accessory{1, "KX 1", {"p"}, nullptr, &source});
    }
    platform::NotificationCenter center_;
    platform::AccessoryManager accessories_{center_};
};

TEST_F(TesterWordsTest, WithoutAnyPlaceToLookSayHowToChooseOne) {
    const TesterWords words = testerWords(accessories_);
    EXPECT_EQ(words.name, QString());
    EXPECT_EQ(words.state, QStringLiteral("No tester chosen"));
    EXPECT_EQ(whyNotConnected(words), QStringLiteral("Choose the tester: press the title above."));
}

TEST_F(TesterWordsTest, NameThePlaceUntilTheTesterHasSaidItsName) {
    testing::FakeSource& source = add();
    EXPECT_EQ(testerWords(accessories_).name, QStringLiteral("fake:"));
    source.tell({.peerName = "KX 1"});
    EXPECT_EQ(testerWords(accessories_).name, QStringLiteral("KX 1"));
    EXPECT_EQ(testerWords(accessories_).state, QStringLiteral("Looking for it"));
}

TEST_F(TesterWordsTest, OfAnyPairedTesterFitIntoTheSentence) {
    testing::FakeSource& source = add();
    source.place = "bluetooth:";
    source.tell({.step = FailedStep::Adapter, .problem = "Bluetooth is switched off"});
    EXPECT_EQ(testerWords(accessories_).name, QStringLiteral("Any paired tester"));
    EXPECT_EQ(whyNotConnected(testerWords(accessories_)).section(u'\n', 0, 0),
              QStringLiteral("Looking for any paired tester: Bluetooth is switched off"));
}

TEST_F(TesterWordsTest, SayWhyTheTesterIsNotThereAndWhatToDo) {
    add().tell({.step = FailedStep::NoAnswer, .problem = "out of reach"});
    EXPECT_EQ(whyNotConnected(testerWords(accessories_)),
              QStringLiteral("Looking for fake:: out of reach\nSwitch the tester on and bring it near."));
}

TEST_F(TesterWordsTest, OfAConnectedTesterAreItsNameAndNoProblem) {
    testing::FakeSource& source = add();
    source.tell({.step = FailedStep::Ended, .problem = "gone"});
    source.appear(accessory(source));
    const TesterWords words = testerWords(accessories_);
    EXPECT_TRUE(words.connected);
    EXPECT_EQ(words.name, QStringLiteral("KX 1"));
    EXPECT_EQ(words.state, QStringLiteral("Connected"));
    EXPECT_EQ(words.problem, QString());
    EXPECT_EQ(whyNotConnected(words), QString());
}

TEST_F(TesterWordsTest, OfSeveralPlacesAreTheFirstThatFailed) {
    add();
    add().tell({.step = FailedStep::Busy, .problem = "busy", .peerName = "second"});
    const TesterWords words = testerWords(accessories_);
    EXPECT_EQ(words.name, QStringLiteral("second and 1 more"));
    EXPECT_EQ(words.problem, QStringLiteral("busy"));
}

TEST_F(TesterWordsTest, OfATesterThatIsNotAnnouncedDoNotSayConnected) {
    add().tell({.state = SearchState::Present});
    EXPECT_EQ(testerWords(accessories_).state, QStringLiteral("Looking for it"));
}

TEST_F(TesterWordsTest, OfOneSourceTellEachOfItsStates) {
    testing::FakeSource& source = add();
    for (const auto& [state, words] : {std::pair(SearchState::Stopped, "Not looked for"),
                                       {SearchState::Waiting, "Looking for it"},
                                       {SearchState::Dialing, "Looking for it"},
                                       {SearchState::Listening, "Waiting for a reading"},
                                       {SearchState::Present, "Connected"}}) {
        source.tell({.state = state});
        EXPECT_EQ(testerWords(source).state, QLatin1String(words));
    }
}

}  // namespace
}  // namespace kestrix::ui
