#pragma once

#include <memory>
#include <vector>

#include "platform/Scheduler.h"

namespace kestrix::testing {

// Time that stands still until the test moves it.
class ManualScheduler final : public platform::Scheduler {
  public:
    TimePoint now() const override { return now_; }
    Duration asleep() const override { return asleep_; }
    Timer callAfter(Duration delay, std::function<void()> call) override;

    // Makes the calls that are due, in order, and those that they add with no delay, up to a bound.
    void runDue();
    // Moves the time, call by call.
    void advance(Duration by);
    // Moves the time while nothing is called, as if the main thread were busy.
    void stall(Duration by) { now_ += by; }
    // The same, as the computer sleeps.
    void sleep(Duration by) {
        now_ += by;
        asleep_ += by;
    }
    // Makes the next call, moving the time to it. False when there is none.
    bool runOne() { return runNext(TimePoint::max()); }
    // Makes the calls that are due, in order, but not those that they add: one turn of an event loop. False
    // when there are none.
    bool runTurn();
    std::size_t pending() const;

  private:
    struct Call {
        TimePoint due;
        std::function<void()> call;
        bool cancelled = false;
    };
    class CallHandle;
    bool runNext(TimePoint until);

    TimePoint now_{std::chrono::hours(1)};
    Duration asleep_{0};
    std::vector<std::shared_ptr<Call>> calls_;  // in the order they were made
};

}  // namespace kestrix::testing
