#pragma once

#include <chrono>

namespace kestrix::app {

// Notices SIGINT, SIGTERM and SIGHUP while it lives, so that the process can end in order. There is one at a
// time. A signal that was ignored when the process started (nohup, or & in a script) stays ignored.
//
// A process that does not notice the signal within kPatience, because something in it never returns, dies of
// it; so does one that gets the same signal a second time.
class TerminationSignals {
  public:
    static constexpr std::chrono::milliseconds kPatience{800};

    // For who looks for himself, with signal() or by waiting for descriptor(). TerminationNotifier calls.
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

    // The first signal that has come, 0 before. Who asks and gets one has noticed it.
    int signal() const;
    // Readable from the first signal on; -1 when the system gave none.
    int descriptor() const { return readEnd_; }

    // What a process that dies of a signal without having noticed it still writes, and where: something that
    // leaves the terminal in order. The text must stay where it is; null takes it back.
    static void setLastWords(int descriptor, const char* text);

  private:
    int readEnd_ = -1;
};

// Blocks so long, or until a signal has come that ends the process.
void pauseUnlessEnding(std::chrono::milliseconds duration);

}  // namespace kestrix::app
