#pragma once

#include <memory>
#include <string_view>

#include "platform/AccessorySource.h"

namespace kestrix::tour {

// The built-in tester as a source that plays what it is told, at once.
class TourTester final : public platform::AccessorySource {
  public:
    TourTester();
    ~TourTester() override;

    void start(platform::AccessorySourceObserver& observer) override { observer_ = &observer; }
    void stop() override {}
    std::string uri() const override { return "simulator:"; }
    platform::SearchState state() const override {
        return accessory_ ? platform::SearchState::Present : platform::SearchState::Waiting;
    }
    std::string problem() const override { return {}; }
    platform::FailedStep failedStep() const override { return platform::FailedStep::None; }
    std::string peerName() const override { return {}; }
    std::unique_ptr<platform::ByteChannel> openChannel(const platform::Accessory& accessory,
                                                       const std::string& protocol) override;

    void switchOn();
    void switchOff();
    // Sends every frame of the scenario. Its text must be right.
    void play(std::string_view scenario);
    // Whether all that was played was read.
    bool allRead() const;

  private:
    struct Line;
    class Channel;
    std::shared_ptr<Line> line_;
    platform::AccessorySourceObserver* observer_ = nullptr;
    platform::AccessoryPtr accessory_;
    std::uint32_t appearances_ = 0;
};

}  // namespace kestrix::tour
