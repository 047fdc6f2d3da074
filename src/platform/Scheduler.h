#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <set>

namespace kestrix::platform {

class SleepWatch;

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
    // Goes on while the computer sleeps.
    virtual TimePoint now() const = 0;
    // How long the computer has slept since it was started; 0 for a clock that knows of no sleep.
    virtual Duration asleep() const { return Duration{0}; }

    // Calls `call` once from the event loop, never from inside this call, `delay` from now (0: in the next
    // turn). The call may destroy its own Timer.
    virtual Timer callAfter(Duration delay, std::function<void()> call) = 0;
};

// On Qt's event loop of the calling thread. Qt's own timers end at 24.8 days, so a longer wait is made of
// legs; and they stand still while the computer sleeps, so they are looked at again when it wakes.
class QtScheduler final : public Scheduler {
  public:
    static constexpr Duration kLongestLeg = std::chrono::hours(24);

    // now: its clock.
    explicit QtScheduler(Duration longestLeg = kLongestLeg, std::function<TimePoint()> now = timeSinceStart);
    QtScheduler(const QtScheduler&) = delete;
    QtScheduler& operator=(const QtScheduler&) = delete;
    ~QtScheduler() override;

    TimePoint now() const override { return now_(); }
    Duration asleep() const override;
    Timer callAfter(Duration delay, std::function<void()> call) override;
    // The clock may have gone ahead of the timers: what is due is called in the next turn. Called by itself
    // after each sleep.
    void wakeUp();

    // Since the computer was started, its sleep included.
    static TimePoint timeSinceStart();

  private:
    class Handle;
    using Handles = std::set<Handle*>;

    Duration longestLeg_;
    std::function<TimePoint()> now_;
    std::shared_ptr<Handles> handles_ = std::make_shared<Handles>();  // those that wait
    std::unique_ptr<SleepWatch> sleep_;                               // from the first call on
};

}  // namespace kestrix::platform
