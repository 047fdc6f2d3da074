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
// Posted, also before coming and going is, when the search of a source has changed. Nobody may add or take a
// source inside.
inline constexpr std::string_view kAccessorySearchDidChange = "AccessorySearchDidChange";

// Announces the accessories of its sources, one at a time: while one is announced, the others are held back.
// When it goes, its disconnect is posted, and then the connect of the one that has been there longest. So the
// two events strictly alternate, whatever comes and goes, and in whatever order; also when it happens inside
// one of them.
class AccessoryManager final : private AccessorySourceObserver {
  public:
    explicit AccessoryManager(NotificationCenter& center = NotificationCenter::defaultCenter())
        : center_(center) {}
    ~AccessoryManager() override;

    // Starts the source; its accessory appears from the event loop.
    void addSource(std::unique_ptr<AccessorySource> source);
    // Stops the source and gives it back; its accessory has gone. None when it is not one of this manager's.
    // Inside an event of the source itself it must not be destroyed before the event has returned.
    std::unique_ptr<AccessorySource> takeSource(const AccessorySource& source);
    const std::vector<std::unique_ptr<AccessorySource>>& sources() const { return sources_; }

    // The one that is announced, if it is still there.
    std::vector<AccessoryPtr> connectedAccessories() const;

    // From now on coming and going is posted.
    void registerForLocalNotifications() { notifying_ = true; }

  private:
    void appeared(const AccessoryPtr& accessory) override;
    void disappeared(const AccessoryPtr& accessory) override;
    void searchChanged() override { center_.post({kAccessorySearchDidChange}); }
    bool isPresent(const AccessoryPtr& accessory) const;
    void settle();
    void announceGone(const AccessoryPtr& accessory);
    void post(std::string_view name, const AccessoryPtr& accessory);

    NotificationCenter& center_;
    std::vector<AccessoryPtr> present_;  // in order of appearance, the held back ones too
    AccessoryPtr announced_;             // the last one posted; stays until its disconnect is posted
    std::vector<std::unique_ptr<AccessorySource>> sources_;
    bool notifying_ = false;
    bool settling_ = false;
};

}  // namespace kestrix::platform
