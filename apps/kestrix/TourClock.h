#pragma once

#include <memory>
#include <vector>

#include "platform/Scheduler.h"

namespace kestrix::tour {

// The tour's time: it stands still but where the tour moves it, so that the same is seen on every run.
class TourClock final : public platform::Scheduler {
  public:
    TimePoint now() const override { return now_; }
    Timer callAfter(Duration delay, std::function<void()> call) override;

    // Moves the time, and makes the calls that are due until then, in their order. Calls that are added
    // meanwhile wait for the next move.
    void advance(Duration by);

  private:
    struct Call {
        TimePoint due;
        std::function<void()> call;
        bool cancelled = false;
    };
    class Handle;

    TimePoint now_{};
    std::vector<std::shared_ptr<Call>> calls_;
};

}  // namespace kestrix::tour
