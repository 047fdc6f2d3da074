#pragma once

#include <functional>
#include <memory>

#include "apps/common/TerminationSignals.h"

class QSocketNotifier;

namespace kestrix::app {

// Calls from Qt's event loop, once, when the first signal has come that ends the process. It has to come
// after the application object.
class TerminationNotifier {
  public:
    // signals: outlives it.
    TerminationNotifier(const TerminationSignals& signals, std::function<void()> onSignal);
    TerminationNotifier(const TerminationNotifier&) = delete;
    TerminationNotifier& operator=(const TerminationNotifier&) = delete;
    ~TerminationNotifier();

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrix::app
