#pragma once

#include <functional>
#include <string>

#include "platform/UserDefaults.h"

namespace kestrix::platform {

// Where a source that looks at several devices keeps which of them was a tester last. The application
// supplies it; without it the source remembers for as long as it lives.
struct LastUsed {
    std::function<std::string()> read{};  // the device's URI, or empty
    std::function<void(const std::string& uri)> write{};
};

// Keeps it in these settings, which outlive it.
LastUsed lastUsedIn(UserDefaults& settings);

}  // namespace kestrix::platform
