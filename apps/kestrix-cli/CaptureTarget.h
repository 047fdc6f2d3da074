#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/Runner.h"

namespace kestrix::cli {

// The file of a capture, or standard output, by the name "-". A file stays as it was, or does not come to be,
// until the tester's first bytes are written.
class CaptureTarget {
  public:
    // force: what exists may be replaced: a pipe, a device, an empty file, and one that begins with a
    // capture's header line. No other file is.
    CaptureTarget(std::string path, bool force) : path_(std::move(path)), force_(force) {}
    CaptureTarget(const CaptureTarget&) = delete;
    CaptureTarget& operator=(const CaptureTarget&) = delete;
    ~CaptureTarget();

    // Opens the file. A pipe is waited for until somebody reads it. Empty, or why it cannot be written; empty
    // too when the command is to stop, and then there is no output.
    std::string open(const Runner& runner);
    bool isFile(const std::string& path) const;
    // For messages.
    std::string name() const { return isOutput() ? "standard output" : path_; }

    // None before open().
    Output* output() { return output_.get(); }

    // The first call replaces what the file held by the header line. False once nothing can be written any
    // more.
    bool write(const std::string& headerLine, std::string_view bytes);
    // The tester's bytes that are in the file.
    std::uint64_t kept() const;

  private:
    bool openOnce();
    bool isOutput() const { return path_ == "-"; }
    std::string openOutput();

    std::string path_;
    bool force_;
    int descriptor_ = -1;
    bool made_ = false;   // by us
    bool begun_ = false;  // the header line is written
    std::size_t headerBytes_ = 0;
    std::unique_ptr<Output> output_;
};

}  // namespace kestrix::cli
