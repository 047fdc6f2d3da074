#pragma once

#include <string>

#include "platform/Accessory.h"
#include "platform/FailedStep.h"

namespace kestrix::platform {

class AccessorySourceObserver {
  public:
    virtual ~AccessorySourceObserver() = default;
    virtual void appeared(const AccessoryPtr& accessory) = 0;
    virtual void disappeared(const AccessoryPtr& accessory) = 0;
    // What a source answers of its search (state, problem, name) has changed. To be shown, not to be acted
    // upon: no source may be started or stopped inside.
    virtual void searchChanged() {}
};

// Where a source stands in its search for the tester.
enum class SearchState {
    Stopped,
    Waiting,  // until it dials again
    Dialing,
    Listening,  // the channel is open, no whole frame has come yet
    Present,
};

// Looks for one tester by one way, for as long as it is started, and reports it as it appears and goes. A
// tester is there with the first whole frame that its source hears. It has gone when its channel ends or
// fails, or when 3 s have passed without another whole frame, whatever else came.
class AccessorySource : public ChannelOpener {
  public:
    // The observer must outlive the source, or be told stop() first.
    virtual void start(AccessorySourceObserver& observer) = 0;
    // Reports a tester that is there as gone, before it returns.
    virtual void stop() = 0;

    virtual std::string uri() const = 0;
    virtual SearchState state() const = 0;
    // Why the tester is not found, as one printable line; empty while nothing is known to be wrong.
    virtual std::string problem() const = 0;
    // The step that failed; None exactly when there is no problem.
    virtual FailedStep failedStep() const = 0;
    // What the other side calls itself, printable, as far as it is known; empty when it has no name.
    virtual std::string peerName() const = 0;
};

}  // namespace kestrix::platform
