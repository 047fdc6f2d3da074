#include "bench/window/Latency.h"

#include <cstdio>
#include <cstdlib>

namespace kestrix::bench {

Latency::Latency(Subject& subject, std::chrono::milliseconds period, int values, int pushes)
    : subject_(subject), period_(period), values_(values), pushes_(pushes) {
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &Latency::pushWhatIsDue);
    connect(&subject.window(), &QQuickWindow::frameSwapped, this, &Latency::pictureDrawn);
}

void Latency::run() {
    start_ = Clock::now();
    timer_.start(period_);
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, this, [] {
        std::fprintf(stderr, "what was pushed is not shown\n");
        std::exit(1);
    });
    limit.start(period_ * pushes_ + std::chrono::seconds(10));
    loop_.exec();
}

double Latency::picturesPerSecond() const {
    return pictures_ / std::chrono::duration<double>(end_ - start_).count();
}

void Latency::pushWhatIsDue() {
    while (static_cast<int>(pushTimes_.size()) < pushes_) {
        const int push = static_cast<int>(pushTimes_.size());
        const Clock::time_point due = start_ + period_ * (push + 1);
        const Clock::time_point now = Clock::now();
        if (due > now) return;
        lateness_.push_back(milliseconds(now - due));
        QMetaObject::invokeMethod(
            this, [this, now] { eventWaits_.push_back(milliseconds(Clock::now() - now)); },
            Qt::QueuedConnection);
        pushTimes_.push_back(now);
        pushOfText_.insert(subject_.push(values_), push);
    }
    timer_.stop();
}

void Latency::pictureDrawn() {
    ++pictures_;
    const auto push = pushOfText_.constFind(subject_.shown());
    if (push == pushOfText_.cend()) return;
    end_ = Clock::now();
    for (auto shown = untilShown_.size(); shown <= static_cast<std::size_t>(*push); ++shown)
        untilShown_.push_back(milliseconds(end_ - pushTimes_[shown]));
    if (static_cast<int>(untilShown_.size()) == pushes_) loop_.quit();
}

}  // namespace kestrix::bench
