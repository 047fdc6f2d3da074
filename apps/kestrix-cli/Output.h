#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kestrix::cli {

// Standard output or another descriptor, which is not owned. Writing never waits for a reader: what he does
// not take now waits here, in order, until push() offers it again. Who writes without end looks at waiting()
// before he writes more.
class Output {
  public:
    explicit Output(int descriptor = 1) : given_(descriptor) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output();

    // Both are false once nothing can be written any more; then nothing is kept.
    bool write(std::string_view bytes);
    // A text for people, in a line of its own. Only what is printable reaches a terminal.
    bool line(std::string_view text);

    // Bytes that the reader has not taken yet.
    std::size_t waiting() const { return unsent_.size() - sent_; }
    // Bytes that he has taken, of all that was written.
    std::uint64_t taken() const { return taken_; }
    // Offers the reader what waits. True when nothing waits any more, also because it failed.
    bool push();
    // For poll() and POLLOUT, when something waits.
    int descriptor() const { return own_ >= 0 ? own_ : given_; }

    bool good() const { return error_ == 0; }
    // The reader of a pipe has gone, which is no failure.
    bool closed() const;
    // Why nothing can be written any more; empty while it can, and when the reader has gone.
    std::string problem() const;
    void fail(int error) { error_ = error; }

    // Called when something begins to wait, and when nothing does any more.
    std::function<void()> waitingChanged;

  private:
    void prepare();
    std::size_t send(std::string_view bytes);

    enum class Way { Unknown, Plain, Socket };

    int given_;
    int own_ = -1;                  // opened anew, so that only we do not wait; the given one may be shared
    bool madeNonBlocking_ = false;  // the given one, where it could not be opened anew
    Way way_ = Way::Unknown;
    int error_ = 0;  // errno
    std::string unsent_;
    std::size_t sent_ = 0;  // of unsent_
    std::uint64_t taken_ = 0;
};

// Standard error. What a reader who has stopped reading does not take is bounded: further lines are dropped.
class ErrorOutput {
  public:
    void line(std::string_view text);
    Output& output() { return output_; }

  private:
    static constexpr std::size_t kMostWaiting = 65'536;
    Output output_{2};
};

ErrorOutput& standardError();

// Gives standard input, output and error a place where the caller closed them: the next file opened would
// take it, and receive what is meant for the terminal. What is written to an output that was closed fails.
// Must be called before anything is opened.
void fillClosedDescriptors();

// Must be called before the first write: a closed pipe, and a file that may not grow, then answer instead of
// killing the process.
void letFailedWritesAnswer();

}  // namespace kestrix::cli
