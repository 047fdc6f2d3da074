#include "platform/AccessoryManager.h"

#include <algorithm>
#include <utility>

namespace kestrix::platform {

AccessoryManager::~AccessoryManager() {
    notifying_ = false;
    for (const auto& source : sources_) source->stop();
}

void AccessoryManager::addSource(std::unique_ptr<AccessorySource> source) {
    sources_.push_back(std::move(source));
    sources_.back()->start(*this);
}

void AccessoryManager::appeared(const AccessoryPtr& accessory) {
    connected_.push_back(accessory);
    if (notifying_) center_.post({kAccessoryDidConnect, {}, {{kAccessoryKey, accessory}}});
}

void AccessoryManager::disappeared(const AccessoryPtr& accessory) {
    std::erase(connected_, accessory);
    if (accessory->delegate != nullptr) accessory->delegate->accessoryDidDisconnect(*accessory);
    if (notifying_) center_.post({kAccessoryDidDisconnect, {}, {{kAccessoryKey, accessory}}});
}

}  // namespace kestrix::platform
