#include "tests/support/ManualScheduler.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kestrix::testing {

class ManualScheduler::CallHandle final : public Timer::Handle {
  public:
    explicit CallHandle(std::shared_ptr<Call> call) : call_(std::move(call)) {}
    CallHandle(const CallHandle&) = delete;
    CallHandle& operator=(const CallHandle&) = delete;
    ~CallHandle() override { call_->cancelled = true; }

  private:
    std::shared_ptr<Call> call_;
};

platform::Scheduler::Timer ManualScheduler::callAfter(Duration delay, std::function<void()> call) {
    calls_.push_back(std::make_shared<Call>(Call{now_ + delay, std::move(call)}));
    return Timer(std::make_unique<CallHandle>(calls_.back()));
}

bool ManualScheduler::runNext(TimePoint until) {
    std::erase_if(calls_, [](const auto& call) { return call->cancelled; });
    const auto next = std::min_element(calls_.begin(), calls_.end(),
                                       [](const auto& a, const auto& b) { return a->due < b->due; });
    if (next == calls_.end() || (*next)->due > until) return false;
    const std::shared_ptr<Call> call = *next;
    calls_.erase(next);
    now_ = std::max(now_, call->due);
    call->call();
    return true;
}

void ManualScheduler::runDue() {
    advance(Duration{0});
}

bool ManualScheduler::runTurn() {
    std::vector<std::shared_ptr<Call>> due;
    for (const auto& call : calls_) {
        if (!call->cancelled && call->due <= now_) due.push_back(call);
    }
    std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) { return a->due < b->due; });
    for (const auto& call : due) {
        if (call->cancelled) continue;
        std::erase(calls_, call);
        call->call();
    }
    return !due.empty();
}

void ManualScheduler::advance(Duration by) {
    const TimePoint until = now_ + by;
    for (int calls = 0; runNext(until); ++calls) {
        if (calls > 1'000'000) throw std::runtime_error("calls without end");
    }
    now_ = std::max(now_, until);  // a call may have stalled
}

std::size_t ManualScheduler::pending() const {
    return static_cast<std::size_t>(
        std::count_if(calls_.begin(), calls_.end(), [](const auto& call) { return !call->cancelled; }));
}

}  // namespace kestrix::testing
