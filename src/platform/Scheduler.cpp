#include "platform/Scheduler.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace kestrix::platform {
namespace {

// The QTimer is deleted later: the call it makes may be the one that cancels it.
class QtTimerHandle final : public Scheduler::Timer::Handle {
  public:
    QtTimerHandle(Scheduler::Duration delay, Scheduler::Duration longestLeg, std::function<void()> call)
        : timer_(new QTimer), rest_(delay), longestLeg_(longestLeg), call_(std::move(call)) {
        timer_->setSingleShot(true);
        timer_->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer_, &QTimer::timeout, timer_, [this] { legIsOver(); });
        startLeg();
    }
    QtTimerHandle(const QtTimerHandle&) = delete;
    QtTimerHandle& operator=(const QtTimerHandle&) = delete;
    ~QtTimerHandle() override {
        timer_->stop();
        timer_->disconnect();
        timer_->deleteLater();
    }

  private:
    void startLeg() {
        const Scheduler::Duration leg = std::clamp(rest_, Scheduler::Duration{0}, longestLeg_);
        rest_ -= leg;
        timer_->start(leg);
    }
    void legIsOver() {
        if (rest_ > Scheduler::Duration{0}) {
            startLeg();
            return;
        }
        const auto call = std::move(call_);  // it may destroy this handle
        call();
    }

    QTimer* timer_;
    Scheduler::Duration rest_;  // behind the leg that runs
    Scheduler::Duration longestLeg_;
    std::function<void()> call_;
};

}  // namespace

Scheduler::Timer QtScheduler::callAfter(Duration delay, std::function<void()> call) {
    return Timer(std::make_unique<QtTimerHandle>(delay, longestLeg_, std::move(call)));
}

}  // namespace kestrix::platform
