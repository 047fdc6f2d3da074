#pragma once

#include <functional>
#include <utility>

#include "platform/Reachability.h"

namespace kestrix::testing {

// A network that is there or not, as the test says.
class FakeNetwork final : public platform::Reachability {
  public:
    bool isReachable() const override { return reachable; }
    void setChanged(std::function<void()> changed) override { changed_ = std::move(changed); }

    bool reachable = true;

  private:
    std::function<void()> changed_;
};

}  // namespace kestrix::testing
