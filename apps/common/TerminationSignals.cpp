#include "apps/common/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace kestrix::app {
namespace {

// A handler may do little more than write to a pipe; the pipe's end has to stand where the handler finds it.
volatile std::sig_atomic_t writeEnd = -1;

extern "C" void tellPipe(int) {
    const char byte = 0;
    // A full pipe already says it.
    if (write(static_cast<int>(writeEnd), &byte, 1) < 0) return;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd_ = ends[0];
    writeEnd = ends[1];
    notifier_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [fd = readEnd_, onSignal = std::move(onSignal)] {
                         std::array<char, 16> waste;
                         while (read(fd, waste.data(), waste.size()) > 0) {
                         }
                         onSignal();
                     });
    std::signal(SIGINT, tellPipe);
    std::signal(SIGTERM, tellPipe);
    std::signal(SIGHUP, tellPipe);
}

TerminationSignals::~TerminationSignals() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    std::signal(SIGHUP, SIG_DFL);
    notifier_.reset();
    if (readEnd_ >= 0) close(readEnd_);
    if (writeEnd >= 0) close(static_cast<int>(writeEnd));
    writeEnd = -1;
}

}  // namespace kestrix::app
