#include "apps/common/TerminationNotifier.h"

#include <QSocketNotifier>

#include <utility>

namespace kestrix::app {

TerminationNotifier::TerminationNotifier(const TerminationSignals& signals, std::function<void()> onSignal) {
    if (signals.descriptor() < 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(signals.descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, &signals, onSignal = std::move(onSignal)] {
                         notifier_->setEnabled(false);  // the pipe stays readable
                         if (signals.signal() != 0) onSignal();
                     });
}

TerminationNotifier::~TerminationNotifier() = default;

}  // namespace kestrix::app
