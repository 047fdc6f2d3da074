#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "apps/kestrix-cli/Output.h"

namespace kestrix::cli {

// The file of a capture. It stays as it was, or does not come to be, until the tester's first bytes are
// written.
class CaptureTarget {
  public:
    // force: an existing file may be replaced. problem() tells why it cannot be written.
    CaptureTarget(std::string path, bool force);
    CaptureTarget(const CaptureTarget&) = delete;
    CaptureTarget& operator=(const CaptureTarget&) = delete;
    ~CaptureTarget();

    const std::string& problem() const { return problem_; }
    bool isFile(const std::string& path) const;

    // The first call replaces what the file held by the header line. False once nothing can be written any
    // more.
    bool write(const std::string& headerLine, std::string_view bytes);
    bool good() const { return output_ == nullptr || output_->good(); }

  private:
    std::string path_;
    std::string problem_;
    int descriptor_ = -1;
    bool made_ = false;               // by us, and empty so far
    std::unique_ptr<Output> output_;  // none before the first bytes
};

}  // namespace kestrix::cli
