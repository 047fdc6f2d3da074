#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "platform/AccessoryManager.h"
#include "tests/support/FakeSource.h"

namespace kestrix::testing {

// A tester in the test's hand, one of any number. It comes, sends and goes at once, inside the call.
class FakeTester {
  public:
    explicit FakeTester(platform::AccessoryManager& accessories);

    void appear();
    void send(std::span<const std::uint8_t> bytes) { source_->line.receive(bytes); }
    // Every frame of a scenario, flat out.
    void play(std::string_view scenario);
    void leave();
    // That the next session is opened on, or that is open.
    FakeLine& line() { return source_->line; }
    void tell(FakeSource::Search search) { source_->tell(std::move(search)); }

  private:
    FakeSource* source_;
    platform::AccessoryPtr accessory_;
};

}  // namespace kestrix::testing
