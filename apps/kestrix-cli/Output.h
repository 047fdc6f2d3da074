#pragma once

#include <string>
#include <string_view>

#include "apps/kestrix-cli/ExitStatus.h"

namespace kestrix::cli {

// Standard output (or another descriptor, not owned), written through at once. A pipe whose reader has gone
// is no failure: the command ends quietly.
class Output {
  public:
    explicit Output(int descriptor = 1) : descriptor_(descriptor) {}

    // False once nothing can be written any more.
    bool write(std::string_view text);
    bool good() const { return error_ == 0; }
    // The status for the end of the command; says why when the output failed.
    ExitStatus status() const;

  private:
    int descriptor_;
    int error_ = 0;  // errno
};

// Gives standard input, output and error a place where the caller closed them: the next file opened would
// take it, and receive what is meant for the terminal. Must be called before anything is opened.
void fillClosedDescriptors();

// Must be called before the first write: a closed pipe then answers instead of killing the process.
void ignoreClosedPipes();

}  // namespace kestrix::cli
