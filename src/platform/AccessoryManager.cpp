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
    searchChanged();
}

std::unique_ptr<AccessorySource> AccessoryManager::takeSource(const AccessorySource& source) {
    const auto found = std::find_if(sources_.begin(), sources_.end(),
                                    [&](const auto& candidate) { return candidate.get() == &source; });
    if (found == sources_.end()) return nullptr;
    std::unique_ptr<AccessorySource> taken = std::move(*found);
    sources_.erase(found);
    taken->stop();
    searchChanged();
    return taken;
}

std::vector<AccessoryPtr> AccessoryManager::connectedAccessories() const {
    if (!announced_ || !isPresent(announced_)) return {};
    return {announced_};
}

void AccessoryManager::appeared(const AccessoryPtr& accessory) {
    present_.push_back(accessory);
    settle();
}

void AccessoryManager::disappeared(const AccessoryPtr& accessory) {
    std::erase(present_, accessory);
    settle();
}

bool AccessoryManager::isPresent(const AccessoryPtr& accessory) const {
    return std::find(present_.begin(), present_.end(), accessory) != present_.end();
}

// Posts what has to be posted until what is announced agrees with what is there. A handler that makes an
// accessory come or go only changes what is there: the call that is under way sees to it when the handler has
// returned.
void AccessoryManager::settle() {
    if (settling_) return;
    settling_ = true;
    while (true) {
        if (announced_ && !isPresent(announced_)) {
            announceGone(std::exchange(announced_, nullptr));
        } else if (!announced_ && !present_.empty()) {
            announced_ = present_.front();
            post(kAccessoryDidConnect, announced_);
        } else {
            break;
        }
    }
    settling_ = false;
}

void AccessoryManager::announceGone(const AccessoryPtr& accessory) {
    if (accessory->delegate != nullptr) accessory->delegate->accessoryDidDisconnect(*accessory);
    post(kAccessoryDidDisconnect, accessory);
}

void AccessoryManager::post(std::string_view name, const AccessoryPtr& accessory) {
    if (notifying_) center_.post({name, {}, {{kAccessoryKey, accessory}}});
}

}  // namespace kestrix::platform
