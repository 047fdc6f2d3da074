#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/Dialer.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {

// One kind of channel, with its far end in the test's hand.
class ChannelRig {
  public:
    using Bytes = std::vector<std::uint8_t>;

    virtual ~ChannelRig() = default;

    // What the far end will send once a channel is open: about `count` bytes, which are returned. ends: it
    // ends behind them, at the latest when the test says end().
    virtual Bytes plan(std::size_t count, bool ends) = 0;
    // To this far end. Valid until the rig is destroyed or forgetDialer() is called.
    virtual Dialer& dialer() = 0;
    virtual void forgetDialer() = 0;
    // One turn of everything: the event loop, the scheduler, the far end.
    virtual void turn() = 0;
    virtual void end() {}
    // The far end begins to read what is written to it.
    virtual void drain() {}

    // Time that passes while the main thread is busy.
    void stall(std::chrono::milliseconds duration) { scheduler.stall(duration); }

    testing::ManualScheduler scheduler;
};

struct ChannelKind {
    const char* name;
    std::unique_ptr<ChannelRig> (*make)();
    bool swallows;  // it takes whatever is written, without end
};

inline void PrintTo(const ChannelKind& kind, std::ostream* out) {
    *out << kind.name;
}

// Every kind of channel there is. A new transport adds its row.
extern const std::vector<ChannelKind> kChannelKinds;

}  // namespace kestrix::platform
