#include "ui/StageMetrics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

class StageMetricsTest : public ::testing::Test {
  protected:
    void SetUp() override { metrics_.fit({320, 480}, 1); }
    void TearDown() override { metrics_.fit({320, 480}, 1); }
    StageMetrics& metrics_ = StageMetrics::shared();
};

TEST_F(StageMetricsTest, AWindowFitsTheStageAsItIs) {
    struct Row {
        double windowWidth, windowHeight;
        double factor, left, height;
    };
    constexpr Row rows[] = {
        {320, 480, 1, 0, 480},                                // the least stage
        {320, 568, 1, 0, 568},                                // higher: the stage grows
        {640, 960, 2, 0, 480},                                // twice as large
        {480, 960, 1.5, 0, 640},                              // higher than three halves of its width
        {960, 480, 1, 320, 480},                              // wide: in the middle
        {1000, 720, 1.5, 260, 480}, {160, 240, 0.5, 0, 480},  // smaller than the stage
        {160, 1000, 0.5, 0, 2000},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.windowWidth << " x " << row.windowHeight);
        metrics_.fit({row.windowWidth, row.windowHeight}, 1);
        EXPECT_DOUBLE_EQ(metrics_.factor(), row.factor);
        EXPECT_DOUBLE_EQ(metrics_.left(), row.left);
        EXPECT_DOUBLE_EQ(metrics_.height(), row.height);
    }
}

TEST_F(StageMetricsTest, InAnyWindowTheStageIsAsLargeAsBothSidesAllowAndInTheMiddle) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> side(1, 4000);
    constexpr double kRatios[] = {1, 1.25, 1.5, 2, 3};
    for (int i = 0; i < 5000; ++i) {
        const QSizeF window(side(random), side(random));
        const double ratio = kRatios[i % 5];
        SCOPED_TRACE(::testing::Message() << window.width() << " x " << window.height() << " at " << ratio);
        metrics_.fit(window, ratio);
        const double width = metrics_.factor() * 320;
        const double least = metrics_.factor() * 480;
        ASSERT_LE(width, window.width() + 1e-9);
        ASSERT_LE(least, window.height() + 1e-9);
        ASSERT_TRUE(std::abs(width - window.width()) < 1e-9 || std::abs(least - window.height()) < 1e-9);
        ASSERT_GE(metrics_.height(), 480 - 1e-9);
        ASSERT_NEAR(metrics_.height() * metrics_.factor(), window.height(), 1e-9);
        const double middle = (window.width() - width) / 2;
        ASSERT_LE(metrics_.left(), middle + 1e-9);
        ASSERT_GT(metrics_.left(), middle - 1 / ratio - 1e-9);
        ASSERT_NEAR(metrics_.left() * ratio, std::round(metrics_.left() * ratio), 1e-9);  // a whole pixel
        ASSERT_GE(metrics_.pictureScale(), 1);
        ASSERT_LE(metrics_.pictureScale(), StageMetrics::kLargestPictureScale);
    }
}

TEST_F(StageMetricsTest, PicturesAreThoseOfTheNextScaleUnlessTheyAreATenthTooSmall) {
    struct Row {
        double windowWidth, ratio;
        int scale;
    };
    constexpr Row rows[] = {{320, 1, 1}, {160, 1, 1}, {344, 1, 1}, {368, 1, 2}, {320, 2, 2},  {640, 1, 2},
                            {640, 2, 4}, {700, 1, 3}, {960, 1, 3}, {320, 3, 3}, {1280, 1, 4}, {3200, 2, 4}};
    for (const Row& row : rows) {
        metrics_.fit({row.windowWidth, row.windowWidth * 1.5}, row.ratio);
        EXPECT_EQ(metrics_.pictureScale(), row.scale) << row.windowWidth << " at " << row.ratio;
    }
}

TEST_F(StageMetricsTest, AFitIsTold) {
    const SignalCount told(metrics_, &StageMetrics::changed);
    metrics_.fit({640, 960}, 1);
    EXPECT_EQ(told(), 1);
}

TEST_F(StageMetricsTest, AWindowWithoutAreaChangesNothing) {
    metrics_.fit({640, 960}, 1);
    const SignalCount told(metrics_, &StageMetrics::changed);
    for (const QSizeF& window : {QSizeF(0, 0), QSizeF(0, 480), QSizeF(320, 0), QSizeF()})
        metrics_.fit(window, 1);
    EXPECT_EQ(told(), 0);
    EXPECT_DOUBLE_EQ(metrics_.factor(), 2);
    EXPECT_DOUBLE_EQ(metrics_.height(), 480);
}

TEST_F(StageMetricsTest, APictureIsFoundByScaleAndName) {
    EXPECT_EQ(metrics_.picture(QStringLiteral("flash.png"), 3),
              QUrl(QStringLiteral("image://artwork/3/flash.png")));
    EXPECT_TRUE(metrics_.picture({}, 1).isEmpty());
}

}  // namespace
}  // namespace kestrix::ui
