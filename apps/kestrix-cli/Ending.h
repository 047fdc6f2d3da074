#pragma once

#include <string>
#include <utility>

namespace kestrix::cli {

enum ExitStatus : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// How a command ends: the status, and the one line about it for standard error, which may be empty.
struct Ending {
    ExitStatus status = kDone;
    std::string line;
    bool holdsUnread = false;  // also when nobody read what the command wrote: that was not its work
};

inline Ending done(std::string remark = {}) {
    return {kDone, std::move(remark)};
}
inline Ending failed(std::string why) {
    return {kFailed, std::move(why)};
}
inline Ending wrongUsage(std::string what) {
    return {kWrongUsage, std::move(what)};
}

}  // namespace kestrix::cli
