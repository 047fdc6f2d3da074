#pragma once

#include <memory>
#include <vector>

#include "platform/AccessoryListing.h"
#include "platform/BluezService.h"

namespace kestrix::platform {

// The paired devices that offer a serial port, as the Bluetooth service knows them.
class BluezListing final : public AccessoryListing {
  public:
    // While there is no bus it is looked for again after this long.
    static constexpr Scheduler::Duration kLookAgain{2000};

    explicit BluezListing(std::shared_ptr<BluezService> service);

    std::string scheme() const override { return "bluetooth"; }
    std::vector<SeenAccessory> seen() const override;
    FailedStep step() const override { return ownProblem().step; }
    std::string problem() const override { return ownProblem().text; }

  private:
    BluezProblem ownProblem() const;
    void lookAgainLater();

    std::shared_ptr<BluezService> service_;
    std::shared_ptr<BluezService::Observer> observer_;
    Scheduler::Timer again_;
};

}  // namespace kestrix::platform
