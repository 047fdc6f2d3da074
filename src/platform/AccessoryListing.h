#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/FailedStep.h"

namespace kestrix::platform {

// One place where a tester may be, as far as can be seen without opening it.
struct SeenAccessory {
    std::string uri;                     // of the source that looks there
    std::string name;                    // what the user knows it by, printable; never empty
    std::string state;                   // "paired", "connected", "a serial port": one printable line
    FailedStep step = FailedStep::None;  // why it cannot be reached as things are
    std::string problem = {};            // the same in words; empty exactly when nothing is known to be wrong
};

// What can be seen of one kind of testers, kept up to date from the event loop. Looking disturbs nothing: no
// port is opened, no device connected.
class AccessoryListing {
  public:
    virtual ~AccessoryListing() = default;

    // Of the sources that look at these places: "bluetooth", "serial".
    virtual std::string scheme() const = 0;

    // In the order in which it is shown. Of a kind that cannot be looked for at all (no adapter, no service),
    // it is empty, and step() and problem() say why.
    virtual std::vector<SeenAccessory> seen() const = 0;
    virtual FailedStep step() const { return FailedStep::None; }
    virtual std::string problem() const { return {}; }

    // Called from the event loop after anything of this has changed.
    std::function<void()> changed;
};

}  // namespace kestrix::platform
