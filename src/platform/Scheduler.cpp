#include "platform/Scheduler.h"

#include <QTimer>

#include <utility>

namespace kestrix::platform {
namespace {

// The QTimer is deleted later: the call it makes may be the one that cancels it.
class QtTimerHandle final : public Scheduler::Timer::Handle {
  public:
    QtTimerHandle(Scheduler::Duration delay, std::function<void()> call) : timer_(new QTimer) {
        timer_->setSingleShot(true);
        timer_->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer_, &QTimer::timeout, timer_, [call = std::move(call)] { call(); });
        timer_->start(delay);
    }
    QtTimerHandle(const QtTimerHandle&) = delete;
    QtTimerHandle& operator=(const QtTimerHandle&) = delete;
    ~QtTimerHandle() override {
        timer_->stop();
        timer_->deleteLater();
    }

  private:
    QTimer* timer_;
};

}  // namespace

Scheduler::Timer QtScheduler::callAfter(Duration delay, std::function<void()> call) {
    return Timer(std::make_unique<QtTimerHandle>(delay, std::move(call)));
}

}  // namespace kestrix::platform
