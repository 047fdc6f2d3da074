#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kestrix::platform {

struct Accessory;
class ByteChannel;

// Told by the platform that its accessory has gone.
class AccessoryDelegate {
  public:
    virtual ~AccessoryDelegate() = default;
    virtual void accessoryDidDisconnect(const Accessory& accessory) = 0;
};

// Opens the channel of an accessory that is present; none when it refuses.
class ChannelOpener {
  public:
    virtual ~ChannelOpener() = default;
    virtual std::unique_ptr<ByteChannel> openChannel(const Accessory& accessory,
                                                     const std::string& protocol) = 0;
};

// A connected device that may be the tester.
struct Accessory {
    std::uint32_t connectionId = 0;  // never 0 for a real one; new for each appearance
    std::string name;
    std::vector<std::string> protocolStrings;
    AccessoryDelegate* delegate = nullptr;  // not owned
    ChannelOpener* opener = nullptr;        // not owned; none once the accessory has gone
};
using AccessoryPtr = std::shared_ptr<Accessory>;

}  // namespace kestrix::platform
