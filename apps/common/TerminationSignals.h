#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kestrix::app {

// Turns SIGINT, SIGTERM and SIGHUP into a call from the event loop, while it lives. One at a time.
class TerminationSignals {
  public:
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

  private:
    int readEnd_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrix::app
