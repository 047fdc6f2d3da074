#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/ByteChannel.h"
#include "platform/FailedStep.h"

namespace kestrix::platform {

// One way to reach a tester: opens a channel to it.
//
// The contract, which tests/platform/ChannelConformance_test.cpp holds every dialer to:
// - Main thread only. No call blocks, and none throws.
// - One dial at a time: dial() is called again only after `done` was called or cancel() has returned.
// - `done` is called once for each dial(): inside the call or later from the event loop.
// - After cancel() `done` is not called for that dial any more. A channel that is opened all the same is the
// dialer's, which
//   closes it. (The caller does not rely on it: it destroys a channel that comes too late.)
// - An open channel is the caller's alone. It works on after its dialer was cancelled, dialled again or
// destroyed.
// - No event of the new channel comes before `done` has returned.
class Dialer {
  public:
    struct Outcome {
        std::unique_ptr<ByteChannel> channel;  // none when the dial failed
        FailedStep step = FailedStep::None;    // where it failed
        std::string problem = {};              // and why, in one line
        // What the other side calls itself; empty when it has no name. A dial that failed may know it, too.
        std::string peerName = {};
    };
    using Done = std::function<void(Outcome)>;

    virtual ~Dialer() = default;
    virtual void dial(Done done) = 0;
    // Gives the dial that is under way up. Harmless without one.
    virtual void cancel() = 0;
    // A whole frame was heard on the channel that the last dial opened: its far end is a tester. Called once
    // for each such channel. A dialer that tries several devices remembers the one.
    virtual void heard() {}
    // After this long without an answer the caller gives the dial up.
    virtual std::chrono::milliseconds timeLimit() const { return std::chrono::seconds(5); }

    // Called from the event loop when a dial is worth trying at once: a port has appeared, its rights have
    // come. It may be called at any time, and once too often.
    std::function<void()> peerMayBeBack;
};

}  // namespace kestrix::platform
