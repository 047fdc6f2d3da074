#include "platform/SleepWatch.h"

#include <sys/timerfd.h>
#include <unistd.h>
#include <QSocketNotifier>

#include <cstdint>
#include <limits>
#include <utility>

namespace kestrix::platform {

// A timer on the user's clock that never ends, and is cancelled when that clock jumps: also after each sleep,
// during which it has gone on without the system's.
SleepWatch::SleepWatch(std::function<void()> over)
    : timer_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {
    if (timer_ < 0) return;  // nothing is told
    watch();
    notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, told = std::move(over)] {
                         std::uint64_t times = 0;
                         if (::read(timer_, &times, sizeof times) < 0) watch();
                         told();
                     });
}

SleepWatch::~SleepWatch() {
    notifier_.reset();
    if (timer_ >= 0) close(timer_);
}

void SleepWatch::watch() const {
    itimerspec never{};
    never.it_value.tv_sec = std::numeric_limits<std::int32_t>::max() * 2LL;
    timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

}  // namespace kestrix::platform
