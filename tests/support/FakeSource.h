#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/AccessorySource.h"
#include "tests/support/FakeChannel.h"

namespace kestrix::testing {

// A source whose accessories come and go as the test says. Its channels are FakeChannels: on the line that
// the test has asked for by lineOf(), or else on the one that all others share.
class FakeSource final : public platform::AccessorySource {
  public:
    void start(platform::AccessorySourceObserver& observer) override { observer_ = &observer; }
    void stop() override {
        while (!present_.empty()) disappear(present_.back());
    }
    std::string uri() const override { return place; }
    platform::SearchState state() const override {
        return present_.empty() ? search.state : platform::SearchState::Present;
    }
    std::string problem() const override { return search.problem; }
    platform::FailedStep failedStep() const override { return search.step; }
    std::string peerName() const override { return search.peerName; }
    std::unique_ptr<platform::ByteChannel> openChannel(const platform::Accessory& accessory,
                                                       const std::string& protocol) override {
        openedProtocols.push_back(protocol);
        const auto own = lines_.find(accessory.connectionId);
        return std::make_unique<FakeChannel>(own == lines_.end() ? line : own->second);
    }

    std::string place = "fake:";
    // What it answers of its search.
    struct Search {
        platform::SearchState state = platform::SearchState::Waiting;
        platform::FailedStep step = platform::FailedStep::None;
        std::string problem{};
        std::string peerName{};
    };
    void tell(Search told) {
        search = std::move(told);
        observer_->searchChanged();
    }

    void appear(const platform::AccessoryPtr& accessory) {
        present_.push_back(accessory);
        observer_->appeared(accessory);
    }
    void disappear(const platform::AccessoryPtr& gone) {
        const platform::AccessoryPtr accessory = gone;  // it may be the list's own
        std::erase(present_, accessory);
        observer_->disappeared(accessory);
    }
    // The line of this accessory alone.
    FakeLine& lineOf(std::uint32_t connectionId) { return lines_[connectionId]; }

    Search search;
    FakeLine line;
    std::vector<std::string> openedProtocols;

  private:
    platform::AccessorySourceObserver* observer_ = nullptr;
    std::vector<platform::AccessoryPtr> present_;
    std::map<std::uint32_t, FakeLine> lines_;
};

}  // namespace kestrix::testing
