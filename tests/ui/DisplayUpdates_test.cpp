#include "ui/DisplayUpdates.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <memory>

#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

class DisplayUpdatesTest : public ::testing::Test {
  protected:
    void SetUp() override { settle(); }
    void TearDown() override {
        updates_.pace(nullptr);
        settle();
    }
    void settle() {
        updates_.flush();
        turn();
    }
    // One turn of the event loop.
    static void turn() { QCoreApplication::processEvents(); }
    // The display takes a frame whenever it is asked for one.
    void paceByFrames() {
        updates_.pace([this] {
            ++requests_;
            return framesCome_;
        });
    }
    void show(const char* text) { screen_.text.setText(QLatin1String(text)); }

    DisplayUpdates& updates_ = DisplayUpdates::shared();
    TestScreen screen_;
    SignalCount texts_{screen_.text, &Label::textChanged};
    SignalCount hides_{screen_.text, &Label::hiddenChanged};
    bool framesCome_ = true;
    int requests_ = 0;
};

TEST_F(DisplayUpdatesTest, StateIsKeptAtOnceAndToldInTheNextTurnOfTheEventLoop) {
    show("1");
    EXPECT_EQ(screen_.text.text(), QStringLiteral("1"));
    EXPECT_EQ(texts_(), 0);
    EXPECT_FALSE(updates_.idle());
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_TRUE(updates_.idle());
}

TEST_F(DisplayUpdatesTest, ManyChangesAreToldOnce) {
    for (const char* text : {"1", "2", "3"}) show(text);
    turn();
    EXPECT_EQ(texts_(), 1);
}

TEST_F(DisplayUpdatesTest, OnlyWhatDiffersIsTold) {
    show("1");
    turn();
    show("2");
    show("1");
    screen_.text.setHidden(true);
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(hides_(), 1);
}

TEST_F(DisplayUpdatesTest, EveryControlThatChangedIsTold) {
    const SignalCount titles(screen_.help, &Button::titleChanged);
    const SignalCount pictures(screen_.picture, &ImageView::shownImageChanged);
    show("1");
    screen_.help.setTitle(QStringLiteral("Help"));
    screen_.picture.setImage(QStringLiteral("flash.png"));
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(titles(), 1);
    EXPECT_EQ(pictures(), 1);
}

TEST_F(DisplayUpdatesTest, FlushTellsNowAndTheTurnThatWasComingNothingMore) {
    paceByFrames();
    show("1");
    updates_.flush();
    EXPECT_EQ(texts_(), 1);
    EXPECT_TRUE(updates_.idle());
    updates_.frameDone();
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(requests_, 1);
}

TEST_F(DisplayUpdatesTest, TheTurnThatWasComingWaitsForTheFrameOfAFlushToo) {
    paceByFrames();
    show("1");
    updates_.flush();
    show("2");
    turn();
    EXPECT_EQ(texts_(), 1);
    updates_.frameDone();
    turn();
    EXPECT_EQ(texts_(), 2);
}

TEST_F(DisplayUpdatesTest, PacedByFramesTheNextRoundWaitsForTheFrameOfTheOneBefore) {
    paceByFrames();
    show("1");
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(requests_, 1);
    for (int i = 0; i < 1000; ++i) {
        screen_.text.setText(QString::number(i));
        turn();
    }
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(requests_, 1);
    updates_.frameDone();
    EXPECT_EQ(texts_(), 1);
    turn();
    EXPECT_EQ(texts_(), 2);
    EXPECT_EQ(requests_, 2);
    EXPECT_EQ(screen_.text.text(), QStringLiteral("999"));
}

TEST_F(DisplayUpdatesTest, AFrameThatIsDoneBetweenTwoChangesDelaysNothing) {
    paceByFrames();
    for (int frame = 1; frame <= 3; ++frame) {
        screen_.text.setText(QString::number(frame));
        turn();
        EXPECT_EQ(texts_(), frame);
        updates_.frameDone();
        turn();
    }
    EXPECT_EQ(requests_, 3);
}

TEST_F(DisplayUpdatesTest, WhereNoFrameWillComeEveryTurnTells) {
    framesCome_ = false;
    paceByFrames();
    show("1");
    turn();
    show("2");
    turn();
    EXPECT_EQ(texts_(), 2);
    EXPECT_EQ(requests_, 2);
}

TEST_F(DisplayUpdatesTest, AFrameThatIsOutstandingIsForgottenWithThePace) {
    paceByFrames();
    show("1");
    turn();
    show("2");
    updates_.pace(nullptr);
    turn();
    EXPECT_EQ(texts_(), 2);
    show("3");
    turn();
    EXPECT_EQ(texts_(), 3);
    EXPECT_EQ(requests_, 1);
}

TEST_F(DisplayUpdatesTest, WithNothingToTellNoFrameIsAskedFor) {
    paceByFrames();
    turn();
    updates_.flush();
    updates_.frameDone();
    turn();
    EXPECT_EQ(requests_, 0);
}

TEST_F(DisplayUpdatesTest, WhatIsAsItWasToldNeedsNoFrame) {
    show("1");
    turn();
    paceByFrames();
    show("2");
    show("1");
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(requests_, 0);
    show("3");
    turn();
    EXPECT_EQ(texts_(), 2);
    EXPECT_EQ(requests_, 1);
}

TEST_F(DisplayUpdatesTest, AFrameIsAskedForBehindAllThatIsTold) {
    int toldBefore = 0;
    updates_.pace([&] {
        toldBefore = texts_() + hides_();
        return true;
    });
    show("1");
    screen_.text.setHidden(true);
    turn();
    EXPECT_EQ(toldBefore, 2);
}

TEST_F(DisplayUpdatesTest, WhatChangesWhileItIsToldIsToldWithTheNextRound) {
    paceByFrames();
    QObject::connect(&screen_.text, &Label::textChanged, &screen_.text,
                     [this] { screen_.text.setHidden(true); });
    show("1");
    turn();
    EXPECT_EQ(hides_(), 0);
    updates_.frameDone();
    turn();
    EXPECT_EQ(hides_(), 1);
}

TEST_F(DisplayUpdatesTest, ASignalThatTellsNowLeavesNothingUntold) {
    const SignalCount titles(screen_.help, &Button::titleChanged);
    QObject::connect(&screen_.text, &Label::textChanged, &screen_.text, [this] {
        screen_.text.setHidden(true);
        updates_.flush();
    });
    show("1");
    screen_.help.setTitle(QStringLiteral("Help"));
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(hides_(), 1);
    EXPECT_EQ(titles(), 1);
    EXPECT_TRUE(updates_.idle());
}

TEST_F(DisplayUpdatesTest, AControlThatIsDestroyedBeforeTheRoundIsForgotten) {
    auto gone = std::make_unique<Label>(screen_, "gone");
    const SignalCount told(*gone, &Label::textChanged);
    gone->setText(QStringLiteral("1"));
    gone.reset();
    EXPECT_TRUE(updates_.idle());
    turn();
    EXPECT_EQ(told(), 0);
}

TEST_F(DisplayUpdatesTest, AControlThatIsDestroyedByWhatAnotherTellsIsForgotten) {
    auto gone = std::make_unique<Label>(screen_, "gone");
    const SignalCount told(*gone, &Label::textChanged);
    QObject::connect(&screen_.text, &Label::textChanged, &screen_.text, [&] { gone.reset(); });
    show("1");
    gone->setText(QStringLiteral("1"));
    turn();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(gone, nullptr);
    EXPECT_EQ(told(), 0);
}

// With the sanitizers this is a use after free, without them a count too many.
TEST_F(DisplayUpdatesTest, AControlThatIsDestroyedByItsOwnSignalTellsNothingMore) {
    auto gone = std::make_unique<Label>(screen_, "gone");
    const SignalCount told(*gone, &Label::textChanged);
    QObject::connect(gone.get(), &Control::hiddenChanged, &screen_, [&] { gone.reset(); });
    gone->setHidden(true);
    gone->setText(QStringLiteral("1"));
    turn();
    EXPECT_EQ(gone, nullptr);
    EXPECT_EQ(told(), 0);
    show("1");
    turn();
    EXPECT_EQ(texts_(), 1) << "the others go on";
}

TEST_F(DisplayUpdatesTest, WhenItsFirstSignalComesAControlHasNotedAllThatDiffers) {
    const SignalCount told(screen_.text, &Label::textChanged);
    QObject::connect(&screen_.text, &Control::hiddenChanged, &screen_.text, [this] { updates_.flush(); });
    screen_.text.setHidden(true);
    show("1");
    turn();
    EXPECT_EQ(told(), 1);
}

}  // namespace
}  // namespace kestrix::ui
