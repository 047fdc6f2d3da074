#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/ByteChannel.h"

namespace kestrix::platform {

// One way to reach a tester: opens a channel to it without blocking.
class Dialer {
  public:
    struct Outcome {
        std::unique_ptr<ByteChannel> channel;  // none when the dial failed
        std::string problem;                   // why it failed, in one line
    };
    using Done = std::function<void(Outcome)>;

    virtual ~Dialer() = default;
    // Calls `done` once, at once or from the event loop, unless cancelled. One dial at a time.
    virtual void dial(Done done) = 0;
    virtual void cancel() = 0;

    // Called when a dial is worth trying at once, such as when a port comes back.
    std::function<void()> peerMayBeBack;
};

}  // namespace kestrix::platform
