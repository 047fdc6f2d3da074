#pragma once

#include <string>

namespace kestrix::cli {

enum ExitStatus : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// Writes "kestrix-cli: why" to standard error, on one line, and answers the status.
ExitStatus fail(const std::string& why, ExitStatus status = kFailed);

// The same for what is no failure.
inline ExitStatus say(const std::string& what) {
    return fail(what, kDone);
}

}  // namespace kestrix::cli
