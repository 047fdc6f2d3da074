#include "ui/ImageView.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ManualScheduler.h"
#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

using namespace std::chrono_literals;

class ImageViewTest : public ::testing::Test {
  protected:
    // The shown picture after `by` more.
    std::string after(std::chrono::milliseconds by) {
        scheduler_.advance(by);
        return shown();
    }
    std::string shown() const { return view_.shownImage().toStdString(); }
    void animate(int repeatCount = 0) {
        view_.setImage(QStringLiteral("still"));
        view_.setAnimation({"1", "2", "3", "4", "5", "6"}, 1000ms, repeatCount);
        view_.startAnimating();
    }

    testing::ManualScheduler scheduler_;
    TestScreen screen_;
    ImageView view_{screen_, "view", &scheduler_};
};

TEST_F(ImageViewTest, ShowsItsPictureWhileNothingIsAnimated) {
    const SignalCount told(view_, &ImageView::shownImageChanged);
    view_.setImage(QStringLiteral("flash.png"));
    EXPECT_EQ(shown(), "flash.png");
    EXPECT_FALSE(view_.isAnimating());
    tellDisplay();
    view_.setImage(QStringLiteral("flash.png"));
    tellDisplay();
    EXPECT_EQ(told(), 1);
}

TEST_F(ImageViewTest, AnAnimationThatIsSetDoesNotRunYet) {
    view_.setImage(QStringLiteral("still"));
    view_.setAnimation({"1", "2"}, 1000ms, 3);
    EXPECT_EQ(view_.animationImages(), (QStringList{"1", "2"}));
    EXPECT_EQ(view_.animationDuration(), 1000ms);
    EXPECT_EQ(view_.animationRepeatCount(), 3);
    EXPECT_EQ(after(5s), "still");
    EXPECT_FALSE(view_.isAnimating());
    EXPECT_EQ(scheduler_.pending(), 0U);
}

TEST_F(ImageViewTest, ACycleShowsEveryPictureInOrderForASixthOfASecond) {
    animate();
    struct Row {
        int millisecond;
        const char* picture;
    };
    constexpr Row rows[] = {{0, "1"},   {166, "1"}, {167, "2"}, {333, "2"}, {334, "3"},
                            {499, "3"}, {500, "4"}, {666, "4"}, {667, "5"}, {833, "5"},
                            {834, "6"}, {999, "6"}, {1000, "1"}};
    int now = 0;
    for (const Row& row : rows) {
        EXPECT_EQ(after(std::chrono::milliseconds(row.millisecond - now)), row.picture) << row.millisecond;
        now = row.millisecond;
    }
}

TEST_F(ImageViewTest, WithRepeatCountZeroItRunsWithoutEndAndWithoutDrift) {
    animate();
    const SignalCount told(view_, &ImageView::shownImageChanged);
    scheduler_.advance(1h - 1ms);
    EXPECT_EQ(shown(), "6");
    EXPECT_EQ(told(), 0) << "nothing is told before the display asks";
    tellDisplay();
    EXPECT_EQ(told(), 1) << "and then only what is to be seen now";
    EXPECT_EQ(after(1ms), "1");
    EXPECT_TRUE(view_.isAnimating());
    EXPECT_EQ(scheduler_.pending(), 1U);
}

TEST_F(ImageViewTest, EachPictureIsToldAsItsTurnComes) {
    const SignalCount told(view_, &ImageView::shownImageChanged);
    animate();
    tellDisplay();
    EXPECT_EQ(told(), 1);
    scheduler_.advance(166ms);
    tellDisplay();
    EXPECT_EQ(told(), 1);
    scheduler_.advance(1ms);
    tellDisplay();
    EXPECT_EQ(told(), 2);
}

TEST_F(ImageViewTest, WithARepeatCountItEndsOnItsStillPicture) {
    animate(2);
    EXPECT_EQ(after(1999ms), "6");
    EXPECT_TRUE(view_.isAnimating());
    EXPECT_EQ(after(1ms), "still");
    EXPECT_FALSE(view_.isAnimating());
    EXPECT_EQ(scheduler_.pending(), 0U);
}

TEST_F(ImageViewTest, ThatHasEndedCanBeStartedOnceMore) {
    animate(1);
    scheduler_.advance(1s);
    view_.startAnimating();
    EXPECT_EQ(shown(), "1");
    EXPECT_EQ(after(999ms), "6");
    EXPECT_EQ(after(1ms), "still");
}

TEST_F(ImageViewTest, StoppingShowsTheStillPictureAndEndsTheCalls) {
    animate();
    scheduler_.advance(400ms);
    const SignalCount told(view_, &ImageView::shownImageChanged);
    tellDisplay();
    view_.stopAnimating();
    EXPECT_EQ(shown(), "still");
    EXPECT_FALSE(view_.isAnimating());
    EXPECT_EQ(scheduler_.pending(), 0U);
    tellDisplay();
    EXPECT_EQ(told(), 2);
}

TEST_F(ImageViewTest, AStillPictureThatIsSetWhileItRunsIsSeenWhenItStops) {
    animate();
    view_.setImage(QStringLiteral("other"));
    EXPECT_EQ(shown(), "1");
    view_.stopAnimating();
    EXPECT_EQ(shown(), "other");
}

TEST_F(ImageViewTest, StartingBeginsWithTheFirstPicture) {
    animate();
    scheduler_.advance(400ms);
    view_.stopAnimating();
    view_.startAnimating();
    EXPECT_EQ(shown(), "1");
    EXPECT_EQ(after(166ms), "1");
    EXPECT_EQ(after(1ms), "2");
}

TEST_F(ImageViewTest, StartingWhileItRunsChangesNothing) {
    animate();
    scheduler_.advance(400ms);
    view_.startAnimating();
    EXPECT_EQ(shown(), "3");
    EXPECT_EQ(after(100ms), "4");
    EXPECT_EQ(scheduler_.pending(), 1U);
}

TEST_F(ImageViewTest, AnAnimationThatTakesNoTimeDoesNotStart) {
    view_.setImage(QStringLiteral("still"));
    for (const auto duration : {0ms, -1000ms}) {
        view_.setAnimation({"1", "2"}, duration, 0);
        view_.startAnimating();
        EXPECT_FALSE(view_.isAnimating());
        EXPECT_EQ(after(5s), "still");
    }
}

TEST_F(ImageViewTest, ARunningAnimationBeginsAnewWithOtherPictures) {
    animate();
    scheduler_.advance(400ms);
    view_.setAnimation({"a", "b"}, 100ms, 0);
    EXPECT_EQ(shown(), "a");
    EXPECT_EQ(after(50ms), "b");
    EXPECT_EQ(scheduler_.pending(), 1U);
}

TEST_F(ImageViewTest, ARunningAnimationThatLosesItsPicturesStops) {
    animate();
    view_.setAnimation({}, 1000ms, 0);
    EXPECT_FALSE(view_.isAnimating());
    EXPECT_EQ(after(1s), "still");
    animate();
    view_.setAnimation({"1", "2"}, 0ms, 0);
    EXPECT_EQ(after(1s), "still");
}

TEST_F(ImageViewTest, WithoutPicturesOrWithoutASchedulerNothingStarts) {
    view_.setImage(QStringLiteral("still"));
    view_.startAnimating();
    EXPECT_FALSE(view_.isAnimating());
    EXPECT_EQ(shown(), "still");
    screen_.picture.setAnimation({"1", "2"}, 1000ms, 0);
    screen_.picture.startAnimating();
    EXPECT_FALSE(screen_.picture.isAnimating());
}

// Delivers each call as late as the test says.
class LateScheduler final : public platform::Scheduler {
  public:
    TimePoint now() const override { return now_; }
    Timer callAfter(Duration delay, std::function<void()> call) override {
        due_ = now_ + delay;
        call_ = std::move(call);
        return {};
    }
    void call(Duration late) {
        now_ = due_ + late;
        const auto call = std::exchange(call_, nullptr);
        call();
    }

  private:
    TimePoint now_{std::chrono::hours(1)};
    TimePoint due_;
    std::function<void()> call_;
};

TEST(ImageView, ALateCallShowsThePictureOfItsTimeAndTheNextComesOnTime) {
    LateScheduler scheduler;
    TestScreen screen;
    ImageView view(screen, "view", &scheduler);
    view.setAnimation({"1", "2", "3", "4", "5", "6"}, 1000ms, 0);
    view.startAnimating();
    scheduler.call(400ms);  // at 567
    EXPECT_EQ(view.shownImage(), QStringLiteral("4"));
    scheduler.call(0ms);  // at 667
    EXPECT_EQ(view.shownImage(), QStringLiteral("5"));
    scheduler.call(2000ms);  // at 2834
    EXPECT_EQ(view.shownImage(), QStringLiteral("6"));
    scheduler.call(0ms);  // at 3000
    EXPECT_EQ(view.shownImage(), QStringLiteral("1"));
}

TEST(ImageView, ACallThatComesAfterTheEndEndsIt) {
    LateScheduler scheduler;
    TestScreen screen;
    ImageView view(screen, "view", &scheduler);
    view.setImage(QStringLiteral("still"));
    view.setAnimation({"1", "2"}, 1000ms, 1);
    view.startAnimating();
    scheduler.call(10s);
    EXPECT_EQ(view.shownImage(), QStringLiteral("still"));
    EXPECT_FALSE(view.isAnimating());
}

}  // namespace
}  // namespace kestrix::ui
