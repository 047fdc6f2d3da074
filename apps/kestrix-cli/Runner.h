#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "apps/common/TerminationSignals.h"
#include "apps/kestrix-cli/Command.h"
#include "apps/kestrix-cli/Output.h"

namespace kestrix::cli {

// What every command is run with: signals, the time limit, an output that never makes it deaf, and its end. A
// command that waits for anything waits through the runner, or in an EventLoop.
class Runner {
  public:
    using Clock = std::chrono::steady_clock;

    Runner(int argc, char** argv) : argc_(argc), argv_(argv) {}

    Output& output() { return output_; }
    const app::TerminationSignals& signals() const { return signals_; }

    // --settings; empty: the command line's own file.
    std::string settings;

    // The time limit: --seconds, or what the command takes where it is not given. 0 is none.
    std::optional<int> seconds;
    void limitUnlessGiven(int otherwise);
    std::optional<Clock::time_point> limit() const { return limit_; }

    // True once a signal has come or the time is over.
    bool stopping() const;
    // Waits until the descriptor is ready for `events` (as of poll); false when the command is to stop.
    bool waitFor(int descriptor, short events) const;
    // Waits so long; false when the command is to stop.
    bool pause(std::chrono::milliseconds duration) const;
    // Waits until the reader has taken all; false when the command is to stop first.
    bool flush(Output& output) const;

    // The end of an output that is not standard output: its reader has some time more to take the rest.
    void finish(Output& output) const;

    // Runs the command and answers the exit status of the program. Where the signal cut it short it does not
    // return.
    int run(const Command& command, const Action& action);
    // The same for what is no command: the help, wrong usage.
    int end(const Ending& ending);

    // For the event loop, which wants those of main.
    int& argc() { return argc_; }
    char** argv() { return argv_; }

  private:
    bool waitUntil(int descriptor, short events, std::optional<Clock::time_point> end) const;
    void giveLastChance(Output& output, Clock::time_point end) const;

    int argc_;
    char** argv_;
    app::TerminationSignals signals_;
    Output output_;
    std::optional<Clock::time_point> limit_;
};

}  // namespace kestrix::cli
