#pragma once

#include <optional>
#include <string>

#include "apps/kestrix-cli/ExitStatus.h"

namespace kestrix::cli {

struct MonitorOptions {
    std::string uri;
    std::string settings;        // empty: the command line's own file
    std::optional<int> seconds;  // 0: until it is interrupted; none: so in a terminal, 20 elsewhere
};

// The tester's display, live: redrawn in place in a terminal, elsewhere one line for each change.
ExitStatus monitor(const MonitorOptions& options);

}  // namespace kestrix::cli
