#pragma once

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/BluezService.h"
#include "platform/DescriptorChannel.h"

namespace kestrix::platform {

// The serial port profile, which this program takes the other end of. It is registered once, again whenever
// the service comes back, and shared by all who connect devices.
class BluezProfile {
  public:
    // After a success the line itself may come this much later.
    static constexpr Scheduler::Duration kLineLimit{1000};

    struct Result {
        std::shared_ptr<StreamSocket> line{};  // none when it failed
        BluezProblem problem{};
    };
    // Called once, from the event loop.
    using Done = std::function<void(Result)>;
    using Attempt = std::shared_ptr<Done>;

    // The one of this scheduler's service.
    static std::shared_ptr<BluezProfile> shared(Scheduler& scheduler);
    explicit BluezProfile(std::shared_ptr<BluezService> service);
    BluezProfile(const BluezProfile&) = delete;
    BluezProfile& operator=(const BluezProfile&) = delete;
    ~BluezProfile();

    const std::shared_ptr<BluezService>& service() const { return service_; }

    // Connects the serial port of the device at this path. Who lets go of what is returned is not called any
    // more, and the line is closed if it comes all the same. An attempt that the service is still making is
    // joined: it makes one at a time.
    [[nodiscard]] Attempt connect(const std::string& device, Done done);
    // This program is connecting it, which explains that the device stirs.
    bool isConnecting(const std::string& device) const { return calls_.contains(device); }

  private:
    enum class State { None, Registering, Registered };
    struct Call {
        SystemBus::HearingPtr answer{};
        Scheduler::Timer lineLimit{};
        std::list<std::weak_ptr<Done>> attempts{};
        bool isMade = false;
        bool isAnswered = false;
        bool hasLine = false;  // it has led to one, which was taken or refused
    };

    void serviceChanged();
    void registerAgain();
    void makeCall(const std::string& device);
    void called(sd_bus_message* call);
    void takeLine(sd_bus_message* call);
    Attempt firstWaitingFor(const std::string& device);
    void hangUp(sd_bus_message* call);
    // A call that has led to a line, and to its answer, is over. Who joined it since then needs another.
    void endCall(const std::string& device);
    void finish(const std::string& device, const BluezProblem& problem);
    void finishAll(const BluezProblem& problem);

    std::shared_ptr<BluezService> service_;
    std::shared_ptr<BluezService::Observer> observer_;
    State state_ = State::None;
    std::string registeredWith_;  // the service of then
    SystemBus::HearingPtr object_;
    SystemBus::HearingPtr registering_;
    std::map<std::string, Call> calls_;  // by the device's path
    std::vector<std::pair<std::string, std::weak_ptr<StreamSocket>>> lines_;
};

}  // namespace kestrix::platform
