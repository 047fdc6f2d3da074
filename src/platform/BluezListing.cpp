#include "platform/BluezListing.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/BluezProblems.h"

namespace kestrix::platform {

BluezListing::BluezListing(std::shared_ptr<BluezService> service) : service_(std::move(service)) {
    observer_ = service_->observe([this](const BluezService::News&) {
        if (changed) changed();
    });
    service_->ask();
    lookAgainLater();
}

void BluezListing::lookAgainLater() {
    again_ = service_->scheduler().callAfter(kLookAgain, [this] {
        service_->ask();
        lookAgainLater();
    });
}

std::vector<SeenAccessory> BluezListing::seen() const {
    std::vector<SeenAccessory> all;
    const BluezObjects& objects = service_->objects();
    if (!problemOfAdapters(objects).text.empty()) return all;
    for (const auto& [path, device] : objects.devices) {
        if (!device.paired || !device.serialPort || device.address.empty()) continue;
        const BluezProblem problem = problemOfDevice(device, objects);
        all.push_back({"bluetooth:" + device.address, device.name, device.connected ? "connected" : "paired",
                       problem.step, problem.text});
    }
    std::sort(all.begin(), all.end(), [](const SeenAccessory& one, const SeenAccessory& other) {
        return std::tie(one.name, one.uri, one.problem) < std::tie(other.name, other.uri, other.problem);
    });
    // A device may be known to several adapters. What one of them can use comes first.
    all.erase(std::unique(all.begin(), all.end(),
                          [](const auto& one, const auto& other) { return one.uri == other.uri; }),
              all.end());
    return all;
}

BluezProblem BluezListing::ownProblem() const {
    // What was wrong before counts until it is known otherwise.
    if (!service_->problem().text.empty()) return service_->problem();
    if (service_->isAsking()) return {};
    if (BluezProblem problem = problemOfAdapters(service_->objects()); !problem.text.empty()) return problem;
    return seen().empty() ? noDevice() : BluezProblem{};
}

}  // namespace kestrix::platform
