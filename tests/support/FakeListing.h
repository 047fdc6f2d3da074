#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/AccessoryListing.h"

namespace kestrix::testing {

// What can be seen, as the test says. It outlives its listing, which a screen owns.
struct Seen {
    std::vector<platform::SeenAccessory> accessories{};
    platform::FailedStep step = platform::FailedStep::None;
    std::string problem{};
    std::function<void()>* changed = nullptr;  // of the listing, while there is one

    void tell() const {
        if (changed != nullptr && *changed) (*changed)();
    }
};

class FakeListing final : public platform::AccessoryListing {
  public:
    FakeListing(std::string scheme, Seen& seen) : scheme_(std::move(scheme)), seen_(seen) {
        seen_.changed = &changed;
    }
    FakeListing(const FakeListing&) = delete;
    FakeListing& operator=(const FakeListing&) = delete;
    ~FakeListing() override { seen_.changed = nullptr; }

    std::string scheme() const override { return scheme_; }
    std::vector<platform::SeenAccessory> seen() const override { return seen_.accessories; }
    platform::FailedStep step() const override { return seen_.step; }
    std::string problem() const override { return seen_.problem; }

  private:
    std::string scheme_;
    Seen& seen_;
};

}  // namespace kestrix::testing
