#include "apps/kestrix-cli/Runner.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <csignal>

namespace kestrix::cli {
namespace {

// What a reader has who has not yet taken everything when a signal or the time limit ends the command. It may
// be needed three times: for a capture's file, standard output and standard error.
constexpr std::chrono::milliseconds kLastChance{250};
// A command ends within a second of its signal.
static_assert(kLastChance < app::TerminationSignals::kPatience &&
              app::TerminationSignals::kPatience < std::chrono::seconds(1));

}  // namespace

void Runner::limitUnlessGiven(int otherwise) {
    const int limit = seconds.value_or(otherwise);
    if (limit > 0) limit_ = Clock::now() + std::chrono::seconds(limit);
}

bool Runner::stopping() const {
    return signals_.signal() != 0 || (limit_ && Clock::now() >= *limit_);
}

// False at the signal or at the end of the time, whichever is first.
bool Runner::waitUntil(int descriptor, short events, std::optional<Clock::time_point> end) const {
    while (signals_.signal() == 0) {
        int milliseconds = -1;
        if (end) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now()).count();
            if (left <= 0) return false;
            milliseconds = static_cast<int>(std::min<decltype(left)>(left, 1'000'000'000));
        }
        std::array<pollfd, 2> wanted{{{descriptor, events, 0}, {signals_.descriptor(), POLLIN, 0}}};
        if (poll(wanted.data(), wanted.size(), milliseconds) > 0 && wanted[0].revents != 0) return true;
    }
    return false;
}

bool Runner::waitFor(int descriptor, short events) const {
    return waitUntil(descriptor, events, limit_) && !stopping();
}

bool Runner::pause(std::chrono::milliseconds duration) const {
    waitUntil(-1, 0, std::min(Clock::now() + duration, limit_.value_or(Clock::time_point::max())));
    return !stopping();
}

bool Runner::flush(Output& output) const {
    while (!output.push()) {
        if (!waitFor(output.descriptor(), POLLOUT)) return false;
    }
    return true;
}

void Runner::giveLastChance(Output& output, Clock::time_point end) const {
    while (!output.push()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd ready{output.descriptor(), POLLOUT, 0};
        if (left <= 0 || poll(&ready, 1, static_cast<int>(left)) == 0) return;
    }
}

void Runner::finish(Output& output) const {
    if (!flush(output)) giveLastChance(output, Clock::now() + kLastChance);
}

int Runner::run(const Command& command, const Action& action) {
    const Ending ending = action(*this);
    const int signal = signals_.signal();
    if (signal == 0 || command.atSignal == AtSignal::EndsIt) return end(ending);
    giveLastChance(output_, Clock::now() + kLastChance);
    std::signal(signal, SIG_DFL);
    raise(signal);
    return kFailed;  // where the signal is blocked
}

int Runner::end(const Ending& ending) {
    finish(output_);
    Ending told = ending;
    if (output_.closed() && !ending.holdsUnread) told = done();
    if (const std::string problem = output_.problem(); !problem.empty() && !ending.holdsUnread)
        told = failed("the output cannot be written: " + problem);
    if (!told.line.empty()) standardError().line("kestrix-cli: " + told.line);
    finish(standardError().output());
    return told.status;
}

}  // namespace kestrix::cli
