#include "ui/SideBarContainer.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestrix::ui {
namespace {

class LoadedContainer final : public SideBarContainer {
  public:
    LoadedContainer() { becomeShared(); }
    void showSideBarControllerWithDirection(std::int32_t) override {}
};

class UnloadedContainer final : public SideBarContainer {
  public:
    void showSideBarControllerWithDirection(std::int32_t) override {}
};

TEST(SideBarContainer, BothBarsAreClosedAtFirst) {
    EXPECT_EQ(SideBarContainer::sideBarDirection, 0);
}

TEST(SideBarContainer, DirectionsAreZeroClosedOneLeftTwoRight) {
    EXPECT_EQ(SideBarContainer::kClosed, 0);
    EXPECT_EQ(SideBarContainer::kLeft, 1);
    EXPECT_EQ(SideBarContainer::kRight, 2);
}

TEST(SideBarContainer, ThereIsNoneUntilOneHasLoaded) {
    EXPECT_EQ(SideBarContainer::share(), nullptr);
    const UnloadedContainer unloaded;
    EXPECT_EQ(SideBarContainer::share(), nullptr);
}

TEST(SideBarContainer, ThatHasLoadedIsTheSharedOneUntilItIsDestroyed) {
    {
        LoadedContainer container;
        EXPECT_EQ(SideBarContainer::share(), &container);
    }
    EXPECT_EQ(SideBarContainer::share(), nullptr);
}

TEST(SideBarContainer, TheEndOfAnotherLeavesTheSharedOne) {
    auto first = std::make_unique<LoadedContainer>();
    LoadedContainer second;
    first.reset();
    EXPECT_EQ(SideBarContainer::share(), &second);
    { const UnloadedContainer unloaded; }
    EXPECT_EQ(SideBarContainer::share(), &second);
}

}  // namespace
}  // namespace kestrix::ui
