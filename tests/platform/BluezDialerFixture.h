#pragma once

#include <QCoreApplication>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/BluezDialer.h"
#include "tests/platform/BluezFixture.h"

namespace kestrix::platform {

// A dialer of one device, and what its last dial has come to.
class BluezDialerTest : public BluezTest {
  protected:
    std::unique_ptr<BluezDialer> makeDialer(const std::string& address = kOne) {
        auto dialer = std::make_unique<BluezDialer>(address, LastUsed{}, BluezProfile::shared(scheduler_));
        dialer->peerMayBeBack = [this] { ++back_; };
        return dialer;
    }
    void startDial() {
        outcome_.reset();
        dialer_->dial([this](Dialer::Outcome outcome) { outcome_ = std::move(outcome); });
    }
    bool answered() {
        return testing::spinUntil([this] { return outcome_.has_value(); });
    }
    bool dial() {
        startDial();
        return answered() && outcome_->channel != nullptr;
    }
    std::string problem() const { return outcome_ ? outcome_->problem : "no outcome"; }
    // A dial that comes to nothing: why.
    std::string failedDial() {
        EXPECT_FALSE(dial());
        return problem();
    }
    std::string readAll() {
        std::uint8_t buffer[4096];
        std::string all;
        std::ptrdiff_t count = 0;
        while ((count = outcome_->channel->read(buffer, sizeof buffer)) > 0)
            all.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(count));
        return all;
    }
    static void turns() {
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    }

    std::unique_ptr<BluezDialer> dialer_ = makeDialer();
    std::optional<Dialer::Outcome> outcome_;
    int back_ = 0;
};

}  // namespace kestrix::platform
