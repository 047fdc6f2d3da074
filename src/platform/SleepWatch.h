#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace kestrix::platform {

// Tells that the computer has slept. That its clock was set is told, too: the system does not tell them
// apart.
class SleepWatch {
  public:
    // over: called from the event loop of the thread that makes this.
    explicit SleepWatch(std::function<void()> over);
    SleepWatch(const SleepWatch&) = delete;
    SleepWatch& operator=(const SleepWatch&) = delete;
    ~SleepWatch();

  private:
    void watch() const;

    int timer_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrix::platform
