#pragma once

#include <QSocketNotifier>

#include <memory>

#include "platform/Reachability.h"

namespace kestrix::platform {

// Other machines can be reached while there is a default route, of IPv4 or IPv6. The kernel is asked at the
// beginning and whenever it tells that routes or links have changed; no packet is sent.
class RouteWatcher final : public Reachability {
  public:
    RouteWatcher();
    RouteWatcher(const RouteWatcher&) = delete;
    RouteWatcher& operator=(const RouteWatcher&) = delete;
    ~RouteWatcher() override;

    bool isReachable() const override { return reachable_; }
    void setChanged(std::function<void()> changed) override { changed_ = std::move(changed); }

  private:
    void look();

    int events_;
    bool reachable_ = false;
    std::function<void()> changed_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrix::platform
