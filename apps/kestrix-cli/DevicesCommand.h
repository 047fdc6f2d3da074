#pragma once

#include <string>
#include <vector>

#include "apps/kestrix-cli/ExitStatus.h"

namespace kestrix::cli {

struct DevicesOptions {
    std::vector<std::string> uris;  // empty: what this machine has
    int seconds = 5;                // how long each is looked at
};

// What each source sees; for a tester that is not found, which step fails. kFailed when a named one is not
// found.
ExitStatus devices(const DevicesOptions& options);

}  // namespace kestrix::cli
