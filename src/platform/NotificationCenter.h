#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kestrix::platform {

struct Notification {
    std::string_view name;  // valid during the post
    std::any object{};      // what the poster names; may be empty
    std::map<std::string, std::any> userInfo{};
};

// What a notification carries, when it is of this type; none otherwise. Anybody may post under any name, so
// no observer may rely on the type.
template <typename T>
const T* objectOf(const Notification& notification) {
    return std::any_cast<T>(&notification.object);
}
template <typename T>
const T* userInfoOf(const Notification& notification, const std::string& key) {
    const auto found = notification.userInfo.find(key);
    return found == notification.userInfo.end() ? nullptr : std::any_cast<T>(&found->second);
}

// Delivers notifications by name: at once, on the posting thread, in the order of subscription.
// A handler may post, subscribe and unsubscribe (itself too): one that is unsubscribed is not called any
// more, one that is added is called from the next post on. Main thread only.
class NotificationCenter {
  public:
    using Handler = std::function<void(const Notification&)>;

    // Unsubscribes when destroyed. May outlive the centre.
    class [[nodiscard]] Subscription {
      public:
        Subscription() = default;
        Subscription(Subscription&&) noexcept = default;
        Subscription& operator=(Subscription&& other) noexcept;
        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;
        ~Subscription() { cancel(); }
        void cancel();

      private:
        friend class NotificationCenter;
        struct Observer {
            Handler handler;
            bool subscribed = true;
        };
        std::shared_ptr<Observer> observer_;
    };

    // The application's one centre.
    static NotificationCenter& defaultCenter();

    Subscription addObserver(std::string_view name, Handler handler);
    void post(const Notification& notification);

  private:
    using Observers = std::vector<std::weak_ptr<Subscription::Observer>>;
    std::map<std::string, Observers, std::less<>> observers_;
};

}  // namespace kestrix::platform
