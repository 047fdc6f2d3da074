#include "apps/kestrix/TourListing.h"

#include <string>
#include <utility>

namespace kestrix::tour {
namespace {

using platform::FailedStep;
using platform::SeenAccessory;

class Listing final : public platform::AccessoryListing {
  public:
    Listing(std::string scheme, std::vector<SeenAccessory> seen)
        : scheme_(std::move(scheme)), seen_(std::move(seen)) {}
    std::string scheme() const override { return scheme_; }
    std::vector<SeenAccessory> seen() const override { return seen_; }

  private:
    std::string scheme_;
    std::vector<SeenAccessory> seen_;
};

}  // namespace

std::vector<std::unique_ptr<platform::AccessoryListing>> listings() {
    std::vector<std::unique_ptr<platform::AccessoryListing>> all;
    all.push_back(std::make_unique<Listing>(
        "bluetooth",
        std::vector<SeenAccessory>{{"bluetooth:00:00:5E:00:53:01", "Tester 0421", "paired"},
                                   {"bluetooth:00:00:5E:00:53:02", "Tester of the workshop", "connected"}}));
    all.push_back(std::make_unique<Listing>(
        "serial", std::vector<SeenAccessory>{{"serial:/dev/ttyUSB0", "/dev/ttyUSB0", "USB serial adapter",
                                              FailedStep::Rights, "no right to open it"}}));
    return all;
}

}  // namespace kestrix::tour
