#pragma once

#include <memory>
#include <vector>

#include "platform/AccessorySource.h"
#include "platform/NotificationCenter.h"

namespace kestrix::platform {

// Posted when an accessory comes and goes; the user info holds it (AccessoryPtr) under kAccessoryKey.
inline constexpr std::string_view kAccessoryDidConnect = "AccessoryDidConnect";
inline constexpr std::string_view kAccessoryDidDisconnect = "AccessoryDidDisconnect";
inline constexpr const char* kAccessoryKey = "accessory";

// The platform's list of connected accessories, fed by the sources that it owns.
class AccessoryManager final : private AccessorySourceObserver {
  public:
    explicit AccessoryManager(NotificationCenter& center = NotificationCenter::defaultCenter())
        : center_(center) {}
    ~AccessoryManager() override;

    // Starts the source; its accessory appears from the event loop.
    void addSource(std::unique_ptr<AccessorySource> source);
    const std::vector<std::unique_ptr<AccessorySource>>& sources() const { return sources_; }

    // In order of appearance.
    std::vector<AccessoryPtr> connectedAccessories() const { return connected_; }

    // From now on coming and going is posted.
    void registerForLocalNotifications() { notifying_ = true; }

  private:
    void appeared(const AccessoryPtr& accessory) override;
    void disappeared(const AccessoryPtr& accessory) override;

    NotificationCenter& center_;
    std::vector<AccessoryPtr> connected_;
    std::vector<std::unique_ptr<AccessorySource>> sources_;
    bool notifying_ = false;
};

}  // namespace kestrix::platform
