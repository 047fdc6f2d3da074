#include "platform/NotificationCenter.h"

#include <utility>

namespace kestrix::platform {

NotificationCenter::Subscription& NotificationCenter::Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        cancel();
        observer_ = std::move(other.observer_);
    }
    return *this;
}

void NotificationCenter::Subscription::cancel() {
    if (observer_) observer_->subscribed = false;
    observer_.reset();
}

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

NotificationCenter::Subscription NotificationCenter::addObserver(std::string_view name, Handler handler) {
    auto found = observers_.find(name);
    if (found == observers_.end()) found = observers_.emplace(std::string(name), Observers{}).first;
    std::erase_if(found->second, [](const auto& observer) { return observer.expired(); });

    Subscription subscription;
    subscription.observer_ = std::make_shared<Subscription::Observer>();
    subscription.observer_->handler = std::move(handler);
    found->second.push_back(subscription.observer_);
    return subscription;
}

void NotificationCenter::post(const Notification& notification) {
    const auto found = observers_.find(notification.name);
    if (found == observers_.end()) return;
    const Observers observers = found->second;  // a copy: handlers may change the list
    for (const auto& entry : observers) {
        const std::shared_ptr<Subscription::Observer> observer = entry.lock();
        if (observer && observer->subscribed) observer->handler(notification);
    }
}

}  // namespace kestrix::platform
