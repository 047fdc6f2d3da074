#include "apps/common/TerminationSignals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <utility>

namespace kestrix::app {
namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// A handler finds only what stands in static memory. All of it is set before the handlers are installed.
volatile std::sig_atomic_t came = 0;
std::array<volatile std::sig_atomic_t, NSIG> cameBefore{};  // by number
volatile std::sig_atomic_t writeEnd = -1;
volatile std::sig_atomic_t pauseEnd = -1;  // the end that reads, for those who wait
timer_t impatience;
bool hasImpatience = false;
std::atomic<const char*> lastWords{nullptr};
volatile std::sig_atomic_t lastWordsEnd = -1;
std::array<bool, kSignals.size()> installed{};

void setImpatience(std::chrono::milliseconds delay) {
    if (!hasImpatience) return;
    itimerspec when{};
    when.it_value.tv_nsec = std::chrono::nanoseconds(delay).count();
    timer_settime(impatience, 0, &when, nullptr);
}

// In a handler. The signal's own action ends the process, here or when the handler returns.
void dieOf(int number) {
    if (const char* words = lastWords.load()) {
        if (write(static_cast<int>(lastWordsEnd), words, std::strlen(words)) < 0) errno = 0;
    }
    std::signal(number, SIG_DFL);
    raise(number);
}

extern "C" void signalCame(int number) {
    const int kept = errno;
    const auto index = static_cast<std::size_t>(number);
    if (cameBefore[index] != 0) dieOf(number);
    cameBefore[index] = 1;
    if (came == 0) {
        came = number;
        const char byte = 0;
        if (write(static_cast<int>(writeEnd), &byte, 1) < 0) errno = 0;  // a full pipe already says it
        setImpatience(TerminationSignals::kPatience);
    }
    errno = kept;
}

extern "C" void patienceEnded(int) {
    dieOf(static_cast<int>(came));
}

void handle(int number, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

bool isIgnored(int number) {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

TerminationSignals::TerminationSignals() {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd_ = ends[0];
    pauseEnd = ends[0];
    writeEnd = ends[1];
    came = 0;
    for (auto& before : cameBefore) before = 0;
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    hasImpatience = timer_create(CLOCK_MONOTONIC, &event, &impatience) == 0;
    if (hasImpatience) handle(SIGALRM, patienceEnded);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        installed[i] = !isIgnored(kSignals[i]);
        if (installed[i]) handle(kSignals[i], signalCame);
    }
}

TerminationSignals::~TerminationSignals() {
    if (readEnd_ < 0) return;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        if (std::exchange(installed[i], false)) std::signal(kSignals[i], SIG_DFL);
    }
    if (std::exchange(hasImpatience, false)) timer_delete(impatience);
    std::signal(SIGALRM, SIG_DFL);
    close(static_cast<int>(writeEnd));
    writeEnd = -1;
    pauseEnd = -1;
    close(readEnd_);
}

int TerminationSignals::signal() const {
    const int number = static_cast<int>(came);
    if (number != 0) setImpatience(std::chrono::milliseconds{0});
    return number;
}

void TerminationSignals::setLastWords(int descriptor, const char* text) {
    lastWords.store(nullptr);
    lastWordsEnd = descriptor;
    lastWords.store(text);
}

void pauseUnlessEnding(std::chrono::milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    while (came == 0) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) return;
        pollfd signal{static_cast<int>(pauseEnd), POLLIN, 0};
        poll(&signal, 1, static_cast<int>(left.count()));
    }
}

}  // namespace kestrix::app
