#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/DialingSource.h"
#include "tests/support/FakeDialer.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {

// A source over a dialer of the test's own, for which any byte counts, and who hears of its tester.
class DialingSourceTest : public ::testing::Test, public AccessorySourceObserver {
  protected:
    using Bytes = std::vector<std::uint8_t>;
    using Log = std::vector<std::string>;

    void appeared(const AccessoryPtr& accessory) override {
        log_.push_back("appeared");
        accessory_ = accessory;
        if (opensSession_)
            session_ = accessory->opener->openChannel(*accessory, accessory->protocolStrings.front());
        if (session_)
            session_->events = {[this] { readSession(); }, [this] { ++spaces_; },
                                [this](const std::string& why) { log_.push_back("closed: " + why); }};
    }
    void disappeared(const AccessoryPtr& accessory) override {
        EXPECT_EQ(accessory, accessory_);
        log_.push_back("disappeared");
    }
    void searchChanged() override { searches_.emplace_back(source_.state(), source_.problem()); }
    void readSession() {
        std::array<std::uint8_t, 16> buffer;
        std::ptrdiff_t count = 0;
        while ((count = session_->read(buffer.data(), buffer.size())) > 0)
            received_.insert(received_.end(), buffer.begin(), buffer.begin() + count);
    }
    void start() {
        source_.start(*this);
        scheduler_.runDue();
    }

    testing::ManualScheduler scheduler_;
    std::vector<std::pair<SearchState, std::string>> searches_;  // state and problem, each time they changed
    testing::FakeLine line_;
    testing::FakeDialer* dialer_ = new testing::FakeDialer;
    DialingSource source_{"fake:tester", std::unique_ptr<Dialer>(dialer_), makeAnyByteListener, scheduler_};
    Log log_;
    AccessoryPtr accessory_;
    bool opensSession_ = true;
    std::unique_ptr<ByteChannel> session_;
    Bytes received_;
    int spaces_ = 0;
};

}  // namespace kestrix::platform
