#include "platform/BluezProfile.h"

#include <fcntl.h>

#include <cstring>
#include <utility>

#include "platform/BluezProblems.h"

namespace kestrix::platform {
namespace {

constexpr const char* kObjectPath = "/kestrix/serial_port";
constexpr const char* kProfileInterface = "org.bluez.Profile1";
constexpr const char* kRejected = "org.bluez.Error.Rejected";
constexpr const char* kAlreadyExists = "org.bluez.Error.AlreadyExists";

}  // namespace

std::shared_ptr<BluezProfile> BluezProfile::shared(Scheduler& scheduler) {
    static std::map<Scheduler*, std::weak_ptr<BluezProfile>> all;
    std::erase_if(all, [](const auto& one) { return one.second.expired(); });
    std::shared_ptr<BluezProfile> profile = all[&scheduler].lock();
    if (!profile) all[&scheduler] = profile = std::make_shared<BluezProfile>(BluezService::shared(scheduler));
    return profile;
}

BluezProfile::BluezProfile(std::shared_ptr<BluezService> service) : service_(std::move(service)) {
    observer_ = service_->observe([this](const BluezService::News& news) {
        if (news.device.empty()) serviceChanged();
    });
    serviceChanged();
}

BluezProfile::~BluezProfile() = default;

// The service of now may be another one than that which knows the profile.
void BluezProfile::serviceChanged() {
    const bool usable = !service_->isAsking() && service_->problem().text.empty();
    if (usable && registeredWith_ == service_->owner()) return;
    state_ = State::None;
    registeredWith_.clear();
    registering_.reset();
    if (!usable) {
        object_.reset();
        if (!service_->isAsking()) finishAll(service_->problem());
        return;
    }
    registerAgain();
}

void BluezProfile::registerAgain() {
    SystemBus& bus = service_->bus();
    if (!object_) object_ = bus.offer(kObjectPath, [this](sd_bus_message* call) { called(call); });
    state_ = State::Registering;
    registeredWith_ = service_->owner();
    const auto call =
        bus.methodCall(registeredWith_.c_str(), "/org/bluez", "org.bluez.ProfileManager1", "RegisterProfile");
    if (call)
        sd_bus_message_append(call.get(), "osa{sv}", kObjectPath, kSerialPortProfile, 3, "Name", "s",
                              "Kestrix", "Role", "s", "client", "AutoConnect", "b", 0);
    registering_ = bus.call(call, [this](sd_bus_message* reply) {
        const sd_bus_error* error = sd_bus_message_get_error(reply);
        if (error != nullptr && std::strcmp(error->name, kAlreadyExists) != 0) {
            state_ = State::None;
            registeredWith_.clear();
            return finishAll(problemOfConnecting(error->name, error->message));
        }
        state_ = State::Registered;
        std::vector<std::string> waiting;
        for (const auto& [device, waits] : calls_) waiting.push_back(device);
        for (const std::string& device : waiting) makeCall(device);
    });
}

BluezProfile::Attempt BluezProfile::connect(const std::string& device, Done done) {
    auto attempt = std::make_shared<Done>(std::move(done));
    calls_[device].attempts.push_back(attempt);
    if (state_ == State::None) registerAgain();
    if (state_ == State::Registered) makeCall(device);
    return attempt;
}

void BluezProfile::makeCall(const std::string& device) {
    const auto call = calls_.find(device);
    if (call == calls_.end() || std::exchange(call->second.isMade, true)) return;
    SystemBus& bus = service_->bus();
    const auto message =
        bus.methodCall(service_->owner().c_str(), device.c_str(), kBluezDevice, "ConnectProfile");
    if (message) sd_bus_message_append(message.get(), "s", kSerialPortProfile);
    call->second.answer = bus.call(message, [this, device = std::string(device)](sd_bus_message* reply) {
        Call& made = calls_[device];
        made.isAnswered = true;
        if (made.hasLine) return endCall(device);
        if (const sd_bus_error* error = sd_bus_message_get_error(reply))
            return finish(device, problemOfConnecting(error->name, error->message));
        made.lineLimit =
            service_->scheduler().callAfter(kLineLimit, [this, device] { finish(device, takenElsewhere()); });
    });
}

void BluezProfile::endCall(const std::string& device) {
    Call& ended = calls_[device];
    std::list<std::weak_ptr<Done>> attempts = std::move(ended.attempts);
    std::erase_if(attempts, [](const auto& one) { return one.expired(); });
    calls_.erase(device);
    if (attempts.empty()) return;
    calls_[device].attempts = std::move(attempts);
    makeCall(device);
}

// Who is told may connect again, or let go of this.
void BluezProfile::finish(const std::string& device, const BluezProblem& problem) {
    const auto call = calls_.find(device);
    if (call == calls_.end()) return;
    const std::list<std::weak_ptr<Done>> attempts = std::move(call->second.attempts);
    calls_.erase(call);
    for (const auto& one : attempts) {
        if (const Attempt attempt = one.lock()) (*attempt)({nullptr, problem});
    }
}

void BluezProfile::finishAll(const BluezProblem& problem) {
    for (const auto& [device, call] : std::exchange(calls_, {})) {
        for (const auto& one : call.attempts) {
            if (const Attempt attempt = one.lock()) (*attempt)({nullptr, problem});
        }
    }
}

void BluezProfile::called(sd_bus_message* call) {
    const char* sender = sd_bus_message_get_sender(call);
    if (sender == nullptr || service_->owner() != sender)
        return service_->bus().refuse(call, kRejected, "only for the Bluetooth service");
    if (sd_bus_message_is_method_call(call, kProfileInterface, "NewConnection") > 0) return takeLine(call);
    if (sd_bus_message_is_method_call(call, kProfileInterface, "RequestDisconnection") > 0)
        return hangUp(call);
    if (sd_bus_message_is_method_call(call, kProfileInterface, "Release") > 0) {
        state_ = State::None;
        registeredWith_.clear();
        return service_->bus().answer(call);
    }
    service_->bus().refuse(call, SD_BUS_ERROR_UNKNOWN_METHOD, "no such method");
}

// Whoever of them it is, the call has led to its line. Without anybody it is refused, and who comes later
// needs another.
BluezProfile::Attempt BluezProfile::firstWaitingFor(const std::string& device) {
    const auto made = calls_.find(device);
    if (made == calls_.end()) return nullptr;
    Attempt first;
    auto& attempts = made->second.attempts;
    while (!attempts.empty() && !first) {
        first = attempts.front().lock();
        attempts.pop_front();
    }
    made->second.hasLine = true;
    if (made->second.isAnswered) endCall(device);
    return first;
}

// The message closes its descriptor; a line that nobody waits for goes down at once.
void BluezProfile::takeLine(sd_bus_message* call) {
    SystemBus& bus = service_->bus();
    const char* path = "";
    int descriptor = -1;
    if (sd_bus_message_read(call, "oh", &path, &descriptor) <= 0)
        return bus.refuse(call, SD_BUS_ERROR_INVALID_ARGS, "a device and its descriptor are expected");
    const std::string device = path;
    const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) return bus.refuse(call, kRejected, "the descriptor cannot be kept");
    auto line = std::make_shared<StreamSocket>(copy);
    const Attempt first = firstWaitingFor(device);
    if (!first) return bus.refuse(call, kRejected, "nobody waits for this device");
    bus.answer(call);
    std::erase_if(lines_, [](const auto& one) { return one.second.expired(); });
    lines_.emplace_back(device, line);
    (*first)({std::move(line), {}});
}

void BluezProfile::hangUp(sd_bus_message* call) {
    const char* device = "";
    sd_bus_message_read(call, "o", &device);
    for (const auto& [path, one] : lines_) {
        if (const auto line = one.lock(); line && path == device) line->hangUp();
    }
    service_->bus().answer(call);
}

}  // namespace kestrix::platform
