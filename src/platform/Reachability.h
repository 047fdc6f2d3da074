#pragma once

#include <functional>

namespace kestrix::platform {

// Whether other machines can be reached at all.
class Reachability {
  public:
    virtual ~Reachability() = default;
    // False also when that cannot be found out.
    virtual bool isReachable() const = 0;
    // Called from the event loop when the answer has become another. One listener; none: nobody hears it.
    virtual void setChanged(std::function<void()> changed) = 0;
};

}  // namespace kestrix::platform
