#include "apps/kestrix-cli/EventLoop.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestrix::cli {

OutputPump::OutputPump(Output& output, std::function<void()> taken)
    : output_(output), taken_(std::move(taken)) {
    output_.waitingChanged = [this] { watch(); };
    watch();
}

OutputPump::~OutputPump() {
    output_.waitingChanged = nullptr;
}

void OutputPump::watch() {
    if (output_.waiting() == 0) {
        if (!notifier_) return;
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();  // it may be its own call that has written the rest
        return;
    }
    auto notifier = std::make_unique<QSocketNotifier>(output_.descriptor(), QSocketNotifier::Write);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] {
        if (output_.push() && taken_) taken_();
    });
    notifier_ = std::move(notifier);
}

EventLoop::EventLoop(Runner& runner)
    : EventLoop(runner, std::make_unique<QCoreApplication>(runner.argc(), runner.argv())) {}

EventLoop::EventLoop(Runner& runner, std::unique_ptr<QCoreApplication> application)
    : runner_(runner), application_(std::move(application)), pump_(runner.output(), [this] {
          if (!runner_.output().good()) return quit();
          if (outputTaken) outputTaken();
      }) {}

EventLoop::~EventLoop() = default;

void EventLoop::run() {
    if (runner_.stopping() || !runner_.output().good()) return;
    QSocketNotifier signalCame(runner_.signals().descriptor(), QSocketNotifier::Read);
    QObject::connect(&signalCame, &QSocketNotifier::activated, &signalCame, [this] {
        if (runner_.stopping()) quit();
    });
    platform::Scheduler::Timer timeIsOver;
    if (const auto limit = runner_.limit()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*limit - Runner::Clock::now());
        timeIsOver = scheduler.callAfter(std::max(left, std::chrono::milliseconds{0}), [] { quit(); });
    }
    QCoreApplication::exec();
}

}  // namespace kestrix::cli
