#include "apps/kestrix/TourClock.h"

#include <algorithm>
#include <utility>

namespace kestrix::tour {

class TourClock::Handle final : public Timer::Handle {
  public:
    explicit Handle(std::shared_ptr<Call> call) : call_(std::move(call)) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() override { call_->cancelled = true; }

  private:
    std::shared_ptr<Call> call_;
};

platform::Scheduler::Timer TourClock::callAfter(Duration delay, std::function<void()> call) {
    calls_.push_back(std::make_shared<Call>(Call{now_ + delay, std::move(call)}));
    return Timer(std::make_unique<Handle>(calls_.back()));
}

void TourClock::advance(Duration by) {
    now_ += by;
    std::vector<std::shared_ptr<Call>> due;
    std::erase_if(calls_, [&](const std::shared_ptr<Call>& call) {
        if (call->due <= now_) due.push_back(call);
        return call->due <= now_ || call->cancelled;
    });
    std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) { return a->due < b->due; });
    for (const std::shared_ptr<Call>& call : due) {
        if (!call->cancelled) call->call();
    }
}

}  // namespace kestrix::tour
