#include "platform/Scheduler.h"

#include <QTimer>

#include <algorithm>
#include <ctime>
#include <utility>

#include "platform/SleepWatch.h"

namespace kestrix::platform {
namespace {

Scheduler::TimePoint read(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return Scheduler::TimePoint(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace

// The QTimer is deleted later: the call it makes may be the one that cancels it.
class QtScheduler::Handle final : public Scheduler::Timer::Handle {
  public:
    Handle(const QtScheduler& scheduler, Duration delay, std::function<void()> call)
        : timer_(new QTimer),
          handles_(scheduler.handles_),
          now_(scheduler.now_),
          longestLeg_(scheduler.longestLeg_),
          due_(now_() + delay),
          call_(std::move(call)) {
        handles_->insert(this);
        timer_->setSingleShot(true);
        timer_->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer_, &QTimer::timeout, timer_, [this] { legIsOver(); });
        startLeg(delay);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() override {
        handles_->erase(this);
        timer_->stop();
        timer_->disconnect();
        timer_->deleteLater();
    }
    void wakeUp() {
        if (timer_->isActive()) startLeg(rest());
    }

  private:
    Duration rest() const { return std::chrono::ceil<Duration>(due_ - now_()); }
    void startLeg(Duration rest) { timer_->start(std::clamp(rest, Duration{0}, longestLeg_)); }
    void legIsOver() {
        if (rest() > Duration{0}) return startLeg(rest());
        const auto call = std::move(call_);  // it may destroy this handle
        call();
    }

    QTimer* timer_;
    std::shared_ptr<Handles> handles_;
    std::function<TimePoint()> now_;
    Duration longestLeg_;
    TimePoint due_;
    std::function<void()> call_;
};

QtScheduler::QtScheduler(Duration longestLeg, std::function<TimePoint()> now)
    : longestLeg_(longestLeg), now_(std::move(now)) {}

QtScheduler::~QtScheduler() = default;

Scheduler::TimePoint QtScheduler::timeSinceStart() {
    return read(CLOCK_BOOTTIME);
}

Scheduler::Duration QtScheduler::asleep() const {
    return std::chrono::duration_cast<Duration>(read(CLOCK_BOOTTIME) - read(CLOCK_MONOTONIC));
}

Scheduler::Timer QtScheduler::callAfter(Duration delay, std::function<void()> call) {
    if (!sleep_) sleep_ = std::make_unique<SleepWatch>([this] { wakeUp(); });
    return Timer(std::make_unique<Handle>(*this, delay, std::move(call)));
}

void QtScheduler::wakeUp() {
    for (Handle* const handle : *handles_) handle->wakeUp();
}

}  // namespace kestrix::platform
