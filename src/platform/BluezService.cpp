#include "platform/BluezService.h"

#include <cerrno>
#include <iterator>
#include <map>
#include <utility>

#include "platform/BluezProblems.h"

namespace kestrix::platform {
namespace {

constexpr const char* kBus = "org.freedesktop.DBus";
constexpr const char* kManager = "org.freedesktop.DBus.ObjectManager";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

constexpr const char* kRules[] = {
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',member='NameOwnerChanged',"
    "arg0='org.bluez'",
    "type='signal',sender='org.bluez',interface='org.freedesktop.DBus.ObjectManager',"
    "member='InterfacesAdded'",
    "type='signal',sender='org.bluez',interface='org.freedesktop.DBus.ObjectManager',"
    "member='InterfacesRemoved'",
    "type='signal',sender='org.bluez',interface='org.freedesktop.DBus.Properties',"
    "member='PropertiesChanged'",
};

}  // namespace

std::shared_ptr<BluezService> BluezService::shared(Scheduler& scheduler) {
    static std::map<Scheduler*, std::weak_ptr<BluezService>> all;
    std::erase_if(all, [](const auto& one) { return one.second.expired(); });
    std::shared_ptr<BluezService> service = all[&scheduler].lock();
    if (!service) all[&scheduler] = service = std::make_shared<BluezService>(scheduler);
    return service;
}

BluezService::BluezService(Scheduler& scheduler) : scheduler_(scheduler), bus_([this] { lost(); }) {}

BluezService::~BluezService() = default;

std::shared_ptr<BluezService::Observer> BluezService::observe(Observer observer) {
    auto kept = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(kept);
    return kept;
}

// Who is told may look away, and destroy this service with it.
void BluezService::tell(const News& news) {
    observers_.remove_if([](const auto& one) { return one.expired(); });
    const std::list<std::weak_ptr<Observer>> now = observers_;
    for (const std::weak_ptr<Observer>& one : now) {
        if (const std::shared_ptr<Observer> observer = one.lock()) (*observer)(news);
    }
}

void BluezService::ask() {
    if (state_ == State::Asking || (state_ == State::Known && problem_.text.empty())) return;
    const bool answerIsDue = state_ == State::Unknown && bus_.isReady();
    state_ = State::Asking;
    limit_ = scheduler_.callAfter(kAnswerLimit,
                                  [this] { settle(bus_.isReady() ? silentService() : silentBus()); });
    if (answerIsDue) return;
    if (bus_.isReady()) return askOwner();
    // A bus that has not answered yet may never do so: another attempt.
    if (const int error = bus_.open(); error < 0) {
        limit_ = scheduler_.callAfter(Scheduler::Duration{0}, [this, error] { settle(noBus(-error)); });
        return;
    }
    listen();
    askOwner();
}

void BluezService::listen() {
    signals_[0] = bus_.listen(kRules[0], [this](sd_bus_message* message) { ownerChanged(message); });
    for (std::size_t i = 1; i < std::size(kRules); ++i)
        signals_[i] = bus_.listen(kRules[i], [this](sd_bus_message* message) { signalled(message); });
}

void BluezService::askOwner() {
    const auto call = bus_.methodCall(kBus, "/org/freedesktop/DBus", kBus, "GetNameOwner");
    if (call) sd_bus_message_append(call.get(), "s", kBluezService);
    answer_ = bus_.call(call, [this](sd_bus_message* reply) {
        const char* owner = nullptr;
        if (const sd_bus_error* error = sd_bus_message_get_error(reply)) {
            settle(problemOfService(error->name, error->message));
        } else if (sd_bus_message_read(reply, "s", &owner) > 0) {
            askObjects(owner);
        }
    });
}

void BluezService::askObjects(const std::string& owner) {
    owner_ = owner;
    const auto call = bus_.methodCall(owner.c_str(), "/", kManager, "GetManagedObjects");
    answer_ = bus_.call(call, [this](sd_bus_message* reply) {
        if (const sd_bus_error* error = sd_bus_message_get_error(reply))
            return settle(problemOfService(error->name, error->message));
        objects_ = readManagedObjects(reply);
        settle({});
    });
}

// Signals that come before the first answer are in that answer.
void BluezService::signalled(sd_bus_message* message) {
    const char* sender = sd_bus_message_get_sender(message);
    if (state_ != State::Known || !problem_.text.empty() || sender == nullptr || owner_ != sender) return;
    const std::string member = sd_bus_message_get_member(message);
    const char* at = sd_bus_message_get_path(message);
    BluezSign sign;
    std::string path = at != nullptr ? at : "";
    if (member == "PropertiesChanged") {
        const char* interface = "";
        if (sd_bus_message_read(message, "s", &interface) <= 0) return;
        if (!objects_.adapters.contains(path) && !objects_.devices.contains(path)) return;
        sign = readProperties(message, path, interface, objects_);
    } else {
        if (sd_bus_message_read(message, "o", &at) <= 0) return;
        path = at;
        if (member == "InterfacesAdded") sign = readObject(message, path, objects_);
        if (member == "InterfacesRemoved") {
            readRemoved(message, path, objects_);
            sign.known = true;
        }
    }
    if (sign.known)
        tell({sign.there || sign.heard, objects_.devices.contains(path) ? path : std::string(),
              sign.heard && !sign.there});
}

void BluezService::ownerChanged(sd_bus_message* message) {
    const char* name = "";
    const char* before = "";
    const char* now = "";
    if (sd_bus_message_read(message, "sss", &name, &before, &now) <= 0 || owner_ == now) return;
    owner_.clear();
    objects_ = {};
    if (*now == '\0') {
        answer_.reset();
        return settle(noService());
    }
    state_ = State::Asking;
    problem_ = {};
    limit_ = scheduler_.callAfter(kAnswerLimit, [this] { settle(silentService()); });
    askObjects(now);
    tell({});
}

// The bus has gone, and with it all that was known.
void BluezService::lost() {
    answer_.reset();
    for (SystemBus::HearingPtr& hearing : signals_) hearing.reset();
    owner_.clear();
    objects_ = {};
    settle(noBus(ECONNRESET));
}

void BluezService::settle(BluezProblem problem) {
    limit_.cancel();
    // A service or a bus that is only late may answer yet.
    state_ = problem.step == FailedStep::NoAnswer ? State::Unknown : State::Known;
    const bool back = problem.text.empty();
    problem_ = std::move(problem);
    tell({back, {}});
}

}  // namespace kestrix::platform
