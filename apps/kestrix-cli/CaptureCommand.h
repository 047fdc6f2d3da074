#pragma once

#include <string>

#include "apps/kestrix-cli/ExitStatus.h"

namespace kestrix::cli {

struct CaptureOptions {
    std::string uri;
    std::string file;
    int seconds = 0;     // 0: until it is interrupted
    bool force = false;  // overwrite
};

// Keeps a tester's raw bytes in a file, behind a header line. Each piece is in the file before the next is
// read.
ExitStatus capture(const CaptureOptions& options);

}  // namespace kestrix::cli
