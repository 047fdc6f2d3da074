#pragma once

#include <string>

#include "platform/Accessory.h"

namespace kestrix::platform {

class AccessorySourceObserver {
  public:
    virtual ~AccessorySourceObserver() = default;
    virtual void appeared(const AccessoryPtr& accessory) = 0;
    virtual void disappeared(const AccessoryPtr& accessory) = 0;
};

// Where a source stands in its search for the tester.
enum class SearchState {
    Stopped,
    Waiting,  // until it dials again
    Dialing,
    Listening,  // the channel is open, no byte has come yet
    Present,
};

// Looks for one tester by one way, for as long as it is started, and reports it as it appears and goes. A
// tester is there when its bytes come; it has gone when its channel ends or fails, or has been silent for 3
// s.
class AccessorySource : public ChannelOpener {
  public:
    // The observer must outlive the source, or be told stop() first.
    virtual void start(AccessorySourceObserver& observer) = 0;
    virtual void stop() = 0;

    virtual std::string uri() const = 0;
    virtual SearchState state() const = 0;
    // Why the tester was not found at the last try, as one line; empty when nothing went wrong yet.
    virtual std::string problem() const = 0;
};

}  // namespace kestrix::platform
