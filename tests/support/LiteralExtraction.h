#pragma once

#include <string>
#include <vector>

namespace kestrix::testing {

// The frame extraction step by step as it is defined, without a thought for speed or memory: what the real
// one must equal. The scan ends where fewer than six characters remain.
class LiteralExtraction {
  public:
    // The frames that this piece of text completes, in order.
    std::vector<std::string> receive(const std::string& text);
    const std::string& kept() const { return buffer_; }

  private:
    std::string buffer_;
};

}  // namespace kestrix::testing
