// How a process ends that gets a signal; in children, which may do what a program never should.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <functional>
#include <string>
#include <utility>

#include "apps/common/TerminationSignals.h"
#include "tests/cli/Program.h"

namespace kestrix::app {
namespace {

using cli::Descriptor;

// A child that runs `work` with the descriptor of a pipe that the test reads.
class Child {
  public:
    explicit Child(const std::function<void(int say)>& work) {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        heard_ = Descriptor(ends[0]);
        child_ = fork();
        if (child_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (const int number : {SIGINT, SIGTERM, SIGHUP}) std::signal(number, SIG_DFL);
            work(ends[1]);
            _exit(0);
        }
        close(ends[1]);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (child_ <= 0) return;
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }

    void signal(int number) const { EXPECT_EQ(kill(child_, number), 0); }
    // What it says next, as many characters as `text` has.
    void expect(const std::string& text) const {
        std::string said(text.size(), '\0');
        pollfd ready{heard_.get(), POLLIN, 0};
        ASSERT_EQ(poll(&ready, 1, 60'000), 1) << "it hangs";
        EXPECT_EQ(read(heard_.get(), said.data(), said.size()), static_cast<ssize_t>(said.size()));
        EXPECT_EQ(said, text);
    }
    // The exit status, or minus the signal that killed it.
    int wait() {
        int status = 0;
        EXPECT_GT(waitpid(std::exchange(child_, -1), &status, 0), 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    pid_t child_ = -1;
    Descriptor heard_;
};

void tell(int say, const char* text) {
    if (write(say, text, std::strlen(text)) < 0) _exit(99);
}

[[noreturn]] void never() {
    while (true) pause();
}

TEST(TerminationSignals, AProcessThatNeverNoticesDiesOfIt) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        Child child([](int say) {
            const TerminationSignals signals;
            tell(say, "ready");
            never();
        });
        child.expect("ready");
        child.signal(number);
        EXPECT_EQ(child.wait(), -number);
    }
}

TEST(TerminationSignals, ItStillSaysItsLastWords) {
    Child child([](int say) {
        const TerminationSignals signals;
        TerminationSignals::setLastWords(say, "cursor");
        tell(say, "ready");
        never();
    });
    child.expect("ready");
    child.signal(SIGTERM);
    child.expect("cursor");
    EXPECT_EQ(child.wait(), -SIGTERM);
}

void notice(const TerminationSignals& signals, int say) {
    pollfd came{signals.descriptor(), POLLIN, 0};
    while (poll(&came, 1, -1) != 1) {
    }
    tell(say, signals.signal() == SIGTERM ? "noticed" : "other  ");
}

TEST(TerminationSignals, ASecondOneOfTheSameKindEndsItAtOnce) {
    Child child([](int say) {
        const TerminationSignals signals;
        tell(say, "ready");
        notice(signals, say);
        never();
    });
    child.expect("ready");
    child.signal(SIGTERM);
    child.expect("noticed");
    child.signal(SIGTERM);
    EXPECT_EQ(child.wait(), -SIGTERM);
}

TEST(TerminationSignals, AWaitEndsWithTheProcess) {
    Child child([](int say) {
        const TerminationSignals signals;
        tell(say, "ready");
        pauseUnlessEnding(std::chrono::hours(100));
        tell(say, signals.signal() == SIGTERM ? "over" : "why?");
    });
    child.expect("ready");
    child.signal(SIGTERM);
    child.expect("over");
    EXPECT_EQ(child.wait(), 0);
}

TEST(TerminationSignals, AWaitIsNoShorterWithoutOne) {
    const auto begin = std::chrono::steady_clock::now();
    pauseUnlessEnding(std::chrono::milliseconds(20));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
}

TEST(TerminationSignals, TheHandlerLeavesErrnoAsItWas) {
    Child child([](int say) {
        const TerminationSignals signals;
        // A full pipe: telling of the signal fails, and sets errno.
        const int end =
            open(("/proc/self/fd/" + std::to_string(signals.descriptor())).c_str(), O_WRONLY | O_NONBLOCK);
        while (write(end, "x", 1) == 1) {
        }
        errno = ENOTTY;
        raise(SIGTERM);
        tell(say, errno == ENOTTY ? "kept" : "lost");
    });
    child.expect("kept");
    EXPECT_EQ(child.wait(), 0);
}

TEST(TerminationSignals, AnIgnoredOneStaysIgnored) {
    Child child([](int say) {
        std::signal(SIGHUP, SIG_IGN);
        {
            const TerminationSignals signals;
            raise(SIGHUP);
            tell(say, signals.signal() == 0 ? "nothing" : "came   ");
        }
        raise(SIGHUP);
        tell(say, "alive");
    });
    child.expect("nothing");
    child.expect("alive");
    EXPECT_EQ(child.wait(), 0);
}

}  // namespace
}  // namespace kestrix::app
