#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

#include "platform/BluezObjects.h"
#include "platform/FailedStep.h"
#include "platform/Scheduler.h"
#include "platform/SystemBus.h"

namespace kestrix::platform {

// Why something of Bluetooth cannot be used: a step, and one line that a user can act on.
struct BluezProblem {
    FailedStep step = FailedStep::None;
    std::string text{};
};

// The Bluetooth service of this computer, as it is now: its adapters and devices, kept up to date, while the
// service and the message bus come and go. One for all who look, made with the first and gone with the last.
class BluezService {
  public:
    static constexpr Scheduler::Duration kAnswerLimit{3000};

    // The one of this scheduler, which must outlive it.
    static std::shared_ptr<BluezService> shared(Scheduler& scheduler);
    explicit BluezService(Scheduler& scheduler);
    BluezService(const BluezService&) = delete;
    BluezService& operator=(const BluezService&) = delete;
    ~BluezService();

    // Begins to ask the service, where it has not answered or there was none to ask. Answers by news.
    void ask();
    // It has not been found out yet whether there is anything to look at.
    bool isAsking() const { return state_ == State::Asking; }
    // Why there is nothing to look at; nothing when there is.
    const BluezProblem& problem() const { return problem_; }
    const BluezObjects& objects() const { return objects_; }
    // Who the service is on the bus now; empty without one.
    const std::string& owner() const { return owner_; }
    SystemBus& bus() { return bus_; }
    Scheduler& scheduler() { return scheduler_; }

    struct News {
        bool mayBeBack = false;   // something has come, was switched on or may be used now
        std::string device = {};  // the path of the device that it is about; empty: of all
        bool wasHeard = false;    // in a search, and nothing else that would make it worth a try
    };
    using Observer = std::function<void(const News&)>;
    // Called from the event loop after anything has changed, for as long as what is returned lives.
    [[nodiscard]] std::shared_ptr<Observer> observe(Observer observer);

  private:
    enum class State { Idle, Asking, Known, Unknown };

    void listen();
    void askOwner();
    void askObjects(const std::string& owner);
    void signalled(sd_bus_message* message);
    void ownerChanged(sd_bus_message* message);
    void lost();
    void settle(BluezProblem problem);
    void tell(const News& news);

    Scheduler& scheduler_;
    State state_ = State::Idle;
    BluezProblem problem_;
    std::string owner_;
    BluezObjects objects_;
    Scheduler::Timer limit_;
    std::list<std::weak_ptr<Observer>> observers_;
    SystemBus bus_;
    SystemBus::HearingPtr signals_[4];
    SystemBus::HearingPtr answer_;
};

}  // namespace kestrix::platform
