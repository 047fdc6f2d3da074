#pragma once

#include <cstddef>
#include <string>

#include "history/ExportedRecord.h"

namespace kestrix::history {

// Bytes on their way to a sink, which gets them in pieces.
class ExportPieces {
  public:
    explicit ExportPieces(const ExportSink& sink) : sink_(sink) {}

    // To be appended to.
    std::string& bytes() { return bytes_; }
    // Hands them on when there are many. False: the sink has failed.
    bool pass() { return bytes_.size() < kPiece || flush(); }
    storage::Outcome end() {
        flush();
        return outcome_;
    }

  private:
    static constexpr std::size_t kPiece = std::size_t{64} * 1024;

    bool flush() {
        if (outcome_.done && !bytes_.empty()) outcome_ = sink_(bytes_);
        bytes_.clear();
        return outcome_.done;
    }

    const ExportSink& sink_;
    std::string bytes_;
    storage::Outcome outcome_;
};

}  // namespace kestrix::history
