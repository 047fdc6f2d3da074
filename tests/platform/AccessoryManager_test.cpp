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

TEST_F(AccessoryManagerTest, ListsTheAccessoriesInOrderOfAppearance) {
    const AccessoryPtr first = accessory(1);
    const AccessoryPtr second = accessory(2);
    source_->appear(first);
    source_->appear(second);
    EXPECT_EQ(manager_.connectedAccessories(), (std::vector<AccessoryPtr>{first, second}));
    source_->disappear(first);
    EXPECT_EQ(manager_.connectedAccessories(), std::vector<AccessoryPtr>{second});
}

TEST_F(AccessoryManagerTest, PostsOnlyOnceItWasAskedTo) {
    source_->appear(accessory(1));
    EXPECT_TRUE(log_.empty());
    manager_.registerForLocalNotifications();
    const AccessoryPtr second = accessory(2);
    source_->appear(second);
    source_->disappear(second);
    EXPECT_EQ(log_,
              (std::vector<std::string>{"AccessoryDidConnect 2 of 2", "AccessoryDidDisconnect 2 of 1"}));
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
