#include "platform/AccessoryManager.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/FakeSource.h"

namespace kestrix::platform {
namespace {

using testing::FakeSource;

struct DelegateLog final : AccessoryDelegate {
    void accessoryDidDisconnect(const Accessory& accessory) override {
        gone.push_back(accessory.connectionId);
    }
    std::vector<std::uint32_t> gone;
};

TEST(AccessorySearch, IsPostedWhenASourceComesGoesOrSaysSomethingNew) {
    NotificationCenter center;
    AccessoryManager manager(center);
    int posts = 0;
    const auto subscription =
        center.addObserver(kAccessorySearchDidChange, [&](const Notification&) { ++posts; });
    auto source = std::make_unique<FakeSource>();
    FakeSource& added = *source;
    manager.addSource(std::move(source));
    EXPECT_EQ(posts, 1);
    added.tell({.step = FailedStep::Busy, .problem = "busy"});
    EXPECT_EQ(posts, 2);
    const auto taken = manager.takeSource(added);
    EXPECT_EQ(posts, 3);
}

class AccessoryManagerTest : public ::testing::Test {
  protected:
    AccessoryManagerTest() {
        auto source = std::make_unique<FakeSource>();
        source_ = source.get();
        manager_.addSource(std::move(source));
        const auto note = [this](const Notification& event) {
            const auto accessory = std::any_cast<AccessoryPtr>(event.userInfo.at(kAccessoryKey));
            log_.push_back(std::string(event.name) + " " + std::to_string(accessory->connectionId) + " of " +
                           std::to_string(manager_.connectedAccessories().size()));
        };
        connected_ = center_.addObserver(kAccessoryDidConnect, note);
        disconnected_ = center_.addObserver(kAccessoryDidDisconnect, note);
    }
    static AccessoryPtr accessory(std::uint32_t id) {
        return std::make_shared<Accessory>(Accessory{id, "Tester", {"p"}});
    }

    NotificationCenter center_;
    AccessoryManager manager_{center_};
    FakeSource* source_ = nullptr;
    NotificationCenter::Subscription connected_;
    NotificationCenter::Subscription disconnected_;
    std::vector<std::string> log_;
};

using Log = std::vector<std::string>;

TEST_F(AccessoryManagerTest, AnnouncesOneAndHoldsTheOthersBackUntilItGoes) {
    manager_.registerForLocalNotifications();
    const AccessoryPtr first = accessory(1);
    const AccessoryPtr second = accessory(2);
    source_->appear(first);
    source_->appear(second);
    EXPECT_EQ(manager_.connectedAccessories(), std::vector<AccessoryPtr>{first});
    EXPECT_EQ(log_, Log{"AccessoryDidConnect 1 of 1"});
    source_->disappear(first);
    EXPECT_EQ(manager_.connectedAccessories(), std::vector<AccessoryPtr>{second});
    EXPECT_EQ(log_, (Log{"AccessoryDidConnect 1 of 1", "AccessoryDidDisconnect 1 of 0",
                         "AccessoryDidConnect 2 of 1"}));
}

TEST_F(AccessoryManagerTest, OneThatGoesWhileItIsHeldBackIsNeverHeardOf) {
    manager_.registerForLocalNotifications();
    const AccessoryPtr first = accessory(1);
    const AccessoryPtr second = accessory(2);
    source_->appear(first);
    source_->appear(second);
    source_->disappear(second);
    source_->disappear(first);
    EXPECT_EQ(log_, (Log{"AccessoryDidConnect 1 of 1", "AccessoryDidDisconnect 1 of 0"}));
}

TEST_F(AccessoryManagerTest, TheOneThatHasBeenThereLongestIsNext) {
    manager_.registerForLocalNotifications();
    std::vector<AccessoryPtr> all;
    for (std::uint32_t id = 1; id <= 3; ++id) all.push_back(accessory(id));
    for (const AccessoryPtr& one : all) source_->appear(one);
    for (const AccessoryPtr& one : all) source_->disappear(one);
    EXPECT_EQ(log_, (Log{"AccessoryDidConnect 1 of 1", "AccessoryDidDisconnect 1 of 0",
                         "AccessoryDidConnect 2 of 1", "AccessoryDidDisconnect 2 of 0",
                         "AccessoryDidConnect 3 of 1", "AccessoryDidDisconnect 3 of 0"}));
}

TEST_F(AccessoryManagerTest, PostsOnlyOnceItWasAskedTo) {
    const AccessoryPtr first = accessory(1);
    source_->appear(first);
    EXPECT_TRUE(log_.empty());
    EXPECT_EQ(manager_.connectedAccessories(), std::vector<AccessoryPtr>{first});
    manager_.registerForLocalNotifications();
    EXPECT_TRUE(log_.empty());
    source_->disappear(first);
    EXPECT_EQ(log_, Log{"AccessoryDidDisconnect 1 of 0"});
}

// An event inside an event: the two kinds alternate all the same.
TEST_F(AccessoryManagerTest, AHandlerMayMakeAccessoriesComeAndGo) {
    manager_.registerForLocalNotifications();
    const AccessoryPtr first = accessory(1);
    const AccessoryPtr second = accessory(2);
    const AccessoryPtr third = accessory(3);
    const auto onConnect = center_.addObserver(kAccessoryDidConnect, [&](const Notification& event) {
        if (*userInfoOf<AccessoryPtr>(event, kAccessoryKey) != first) return;
        source_->appear(second);
        source_->disappear(first);
        EXPECT_TRUE(manager_.connectedAccessories().empty());
    });
    const auto onDisconnect = center_.addObserver(kAccessoryDidDisconnect, [&](const Notification& event) {
        if (*userInfoOf<AccessoryPtr>(event, kAccessoryKey) != first) return;
        source_->disappear(second);
        source_->appear(third);
    });
    source_->appear(first);
    EXPECT_EQ(log_, (Log{"AccessoryDidConnect 1 of 1", "AccessoryDidDisconnect 1 of 0",
                         "AccessoryDidConnect 3 of 1"}));
}

TEST_F(AccessoryManagerTest, ASourceThatIsTakenAwayTakesItsAccessoryAlong) {
    manager_.registerForLocalNotifications();
    source_->appear(accessory(1));
    const auto taken = manager_.takeSource(*source_);
    EXPECT_EQ(taken.get(), source_);
    EXPECT_TRUE(manager_.sources().empty());
    EXPECT_EQ(log_, (Log{"AccessoryDidConnect 1 of 1", "AccessoryDidDisconnect 1 of 0"}));
    EXPECT_EQ(manager_.takeSource(*source_), nullptr);
}

TEST_F(AccessoryManagerTest, ASourceMayBeTakenAwayInsideItsOwnEvent) {
    manager_.registerForLocalNotifications();
    auto other = std::make_unique<FakeSource>();
    FakeSource* otherSource = other.get();
    manager_.addSource(std::move(other));
    std::unique_ptr<AccessorySource> taken;
    const auto onConnect = center_.addObserver(kAccessoryDidConnect, [&](const Notification&) {
        if (!taken) taken = manager_.takeSource(*source_);
    });
    source_->appear(accessory(1));
    otherSource->appear(accessory(2));
    EXPECT_EQ(log_, (Log{"AccessoryDidConnect 1 of 1", "AccessoryDidDisconnect 1 of 0",
                         "AccessoryDidConnect 2 of 1"}));
}

TEST_F(AccessoryManagerTest, TellsTheDelegateOfAnAccessoryThatHasGone) {
    DelegateLog delegate;
    const AccessoryPtr tester = accessory(5);
    tester->delegate = &delegate;
    source_->appear(tester);
    source_->disappear(tester);
    EXPECT_EQ(delegate.gone, std::vector<std::uint32_t>{5});
}

}  // namespace
}  // namespace kestrix::platform
