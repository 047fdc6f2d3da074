#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kestrix::platform {

// The clock and the timers of the main thread, as a seam: tests hand in one whose time they move themselves.
class Scheduler {
  public:
    using Duration = std::chrono::milliseconds;
    using TimePoint = std::chrono::steady_clock::time_point;

    // A call to come. Destroying it (or assigning over it) cancels the call.
    class [[nodiscard]] Timer {
      public:
        class Handle {
          public:
            virtual ~Handle() = default;
        };
        Timer() = default;
        explicit Timer(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}
        void cancel() { handle_.reset(); }

      private:
        std::unique_ptr<Handle> handle_;
    };

    virtual ~Scheduler() = default;
    virtual TimePoint now() const = 0;

    // Calls `call` once from the event loop, never from inside this call, `delay` from now (0: in the next
    // turn). The call may destroy its own Timer.
    virtual Timer callAfter(Duration delay, std::function<void()> call) = 0;
};

// On Qt's event loop of the calling thread. Qt's own timers end at 24.8 days: a longer wait is made of legs.
class QtScheduler final : public Scheduler {
  public:
    static constexpr Duration kLongestLeg = std::chrono::hours(24);

    explicit QtScheduler(Duration longestLeg = kLongestLeg) : longestLeg_(longestLeg) {}
    TimePoint now() const override { return std::chrono::steady_clock::now(); }
    Timer callAfter(Duration delay, std::function<void()> call) override;

  private:
    Duration longestLeg_;
};

}  // namespace kestrix::platform
