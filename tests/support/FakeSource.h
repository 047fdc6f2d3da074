#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/AccessorySource.h"
#include "tests/support/FakeChannel.h"

namespace kestrix::testing {

// A source whose accessories come and go as the test says. Its channels are FakeChannels on one line.
class FakeSource final : public platform::AccessorySource {
  public:
    void start(platform::AccessorySourceObserver& observer) override { observer_ = &observer; }
    void stop() override {}
    std::string uri() const override { return "fake:"; }
    platform::SearchState state() const override { return platform::SearchState::Waiting; }
    std::string problem() const override { return {}; }
    std::unique_ptr<platform::ByteChannel> openChannel(const platform::Accessory&,
                                                       const std::string& protocol) override {
        openedProtocols.push_back(protocol);
        return std::make_unique<FakeChannel>(line);
    }

    void appear(const platform::AccessoryPtr& accessory) { observer_->appeared(accessory); }
    void disappear(const platform::AccessoryPtr& accessory) { observer_->disappeared(accessory); }

    FakeLine line;
    std::vector<std::string> openedProtocols;

  private:
    platform::AccessorySourceObserver* observer_ = nullptr;
};

}  // namespace kestrix::testing
