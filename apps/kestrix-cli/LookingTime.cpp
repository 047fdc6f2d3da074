#include "apps/kestrix-cli/LookingTime.h"

#include <algorithm>

#include "platform/AccessoryUri.h"

namespace kestrix::cli {
namespace {

constexpr int kSecondsToLook = 5;
// That a device is out of reach is known after five seconds, and only then the next of several is tried.
constexpr int kSecondsToLookByBluetooth = 15;

bool isBluetooth(const std::string& uri) {
    const auto parsed = platform::parseAccessoryUri(uri);
    return parsed && parsed->scheme == "bluetooth";
}

}  // namespace

int secondsToLookAt(const std::vector<std::string>& uris) {
    return std::any_of(uris.begin(), uris.end(), isBluetooth) ? kSecondsToLookByBluetooth : kSecondsToLook;
}

}  // namespace kestrix::cli
