// What the module shows of itself.
#include <type_traits>

#include "platform/BluetoothModule.h"
#include "platform/BluezDialer.h"
#include "platform/BluezListing.h"

namespace {

using namespace kestrix::platform;

std::unique_ptr<Dialer> makeDialer(const std::string& address, const LastUsed& lastUsed,
                                   Scheduler& scheduler) {
    return std::make_unique<BluezDialer>(address, lastUsed, BluezProfile::shared(scheduler));
}

std::unique_ptr<AccessoryListing> makeListing(Scheduler& scheduler) {
    return std::make_unique<BluezListing>(BluezService::shared(scheduler));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void kestrixMakeBluetoothParts(BluetoothParts& parts) {
    parts.makeDialer = makeDialer;
    parts.makeListing = makeListing;
}

static_assert(std::is_same_v<MakeBluetoothParts, decltype(&kestrixMakeBluetoothParts)>);
