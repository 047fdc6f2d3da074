#include "shell/WindowPlace.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <limits>

#include <memory>

namespace kestrix::shell {
namespace {

constexpr QSize kWanted{384, 682};
constexpr QSize kFrameSize{8, 40};
const QList<QRect> kLargeScreen{QRect(0, 0, 1280, 1024)};

TEST(WindowPlace, AtTheFirstStartItHasTheSizeItWantsWhereThereIsRoom) {
    const WindowPlace place = placeOnScreens({.position = {}, .size = kWanted}, kLargeScreen, kFrameSize);
    EXPECT_EQ(place.size, kWanted);
    EXPECT_FALSE(place.position) << "where it stands is for the desktop to say";
}

TEST(WindowPlace, OnASmallScreenItIsAsLowAsTheScreenWithItsFrame) {
    const WindowPlace place =
        placeOnScreens({.position = {}, .size = kWanted}, {QRect(0, 0, 320, 480)}, kFrameSize);
    EXPECT_EQ(place.size, QSize(312, 440));
}

TEST(WindowPlace, ItComesBackToWhereItStood) {
    const WindowPlace wanted{.position = QPoint(100, 50), .size = {400, 700}};
    EXPECT_EQ(placeOnScreens(wanted, kLargeScreen, kFrameSize), wanted);
}

TEST(WindowPlace, ItStaysOnTheScreenWithAllOfItself) {
    const WindowPlace place =
        placeOnScreens({.position = QPoint(1200, -30), .size = {400, 700}}, kLargeScreen, kFrameSize);
    EXPECT_EQ(place.position, QPoint(1280 - 408, 0));
    EXPECT_EQ(place.size, QSize(400, 700));
}

TEST(WindowPlace, ItComesBackToTheSecondScreenWhileThatIsThere) {
    const WindowPlace wanted{.position = QPoint(1500, 50), .size = {400, 700}};
    EXPECT_EQ(placeOnScreens(wanted, {kLargeScreen.first(), QRect(1280, 0, 1024, 768)}, kFrameSize).position,
              QPoint(1500, 28));
    EXPECT_FALSE(placeOnScreens(wanted, kLargeScreen, kFrameSize).position) << "the second screen has gone";
}

class RememberedPlace : public ::testing::Test {
  protected:
    // As the next start reads them.
    std::optional<WindowPlace> remembered() const { return rememberedPlace(platform::UserDefaults(path_)); }
    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("kestrix.ini"));
    platform::UserDefaults settings_{path_};
};

TEST_F(RememberedPlace, ThereIsNoneAtFirst) {
    EXPECT_FALSE(remembered());
}

TEST_F(RememberedPlace, WhatWasRememberedComesBack) {
    for (const WindowPlace& place : {WindowPlace{.position = QPoint(-5, 7), .size = {400, 700}},
                                     WindowPlace{.position = {}, .size = {320, 480}, .fullScreen = true}}) {
        rememberPlace(settings_, place);
        EXPECT_EQ(remembered(), place);
    }
}

// Of an int's greatest number and a frame there is no sum.
TEST_F(RememberedPlace, ALargestNumberIsNoMoreThanFarAway) {
    constexpr int kMost = std::numeric_limits<int>::max();
    rememberPlace(settings_, {.position = QPoint(kMost, -kMost), .size = {kMost, kMost}});
    const auto place = remembered();
    ASSERT_TRUE(place);
    EXPECT_EQ(place->size, QSize(1'000'000, 1'000'000));
    EXPECT_EQ(place->position, QPoint(1'000'000, -1'000'000));
    EXPECT_EQ(placeOnScreens(*place, kLargeScreen, kFrameSize).size,
              kLargeScreen.first().size() - kFrameSize);
}

TEST_F(RememberedPlace, ASizeThatIsNoneIsNotUsed) {
    rememberPlace(settings_, {.position = QPoint(1, 1), .size = {400, 700}});
    settings_.setInteger(QStringLiteral("windowHeight"), -1);
    EXPECT_FALSE(remembered());
}

}  // namespace
}  // namespace kestrix::shell
