#include "platform/SystemBus.h"

#include <poll.h>

#include <utility>

namespace kestrix::platform {
namespace {

constexpr int kMostMessagesInATurn = 64;
constexpr std::uint64_t kNoLimit = UINT64_MAX;

}  // namespace

int SystemBus::open() {
    close();
    sd_bus* bus = nullptr;
    const int result = sd_bus_open_system(&bus);
    if (result < 0) return result;
    bus_.reset(bus);
    const int descriptor = sd_bus_get_fd(bus);
    if (descriptor < 0) {
        bus_.reset();
        return descriptor;
    }
    readable_.reset(new QSocketNotifier(descriptor, QSocketNotifier::Read));
    writable_.reset(new QSocketNotifier(descriptor, QSocketNotifier::Write));
    for (QSocketNotifier* notifier : {readable_.get(), writable_.get()})
        QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this] { turn(); });
    more_.setSingleShot(true);
    more_.disconnect();
    QObject::connect(&more_, &QTimer::timeout, &more_, [this] { turn(); });
    arm();
    return 0;
}

void SystemBus::close() {
    more_.stop();
    readable_.reset();
    writable_.reset();
    bus_.reset();
}

SystemBus::Message SystemBus::methodCall(const char* service, const char* path, const char* interface,
                                         const char* member) {
    sd_bus_message* message = nullptr;
    if (!bus_ || sd_bus_message_new_method_call(bus_.get(), &message, service, path, interface, member) < 0)
        return nullptr;
    sd_bus_message_set_auto_start(message, 0);
    return Message(message);
}

SystemBus::HearingPtr SystemBus::call(const Message& message, Handler reply) {
    auto hearing = std::make_unique<Hearing>(std::move(reply), true);
    if (bus_ && message)
        sd_bus_call_async(bus_.get(), &hearing->slot, message.get(), &SystemBus::heard, hearing.get(),
                          kNoLimit);
    arm();
    return hearing;
}

SystemBus::HearingPtr SystemBus::listen(const char* rule, Handler signal) {
    auto hearing = std::make_unique<Hearing>(std::move(signal), false);
    if (bus_)
        sd_bus_add_match_async(bus_.get(), &hearing->slot, rule, &SystemBus::heard, nullptr, hearing.get());
    arm();
    return hearing;
}

SystemBus::HearingPtr SystemBus::offer(const char* path, Handler call) {
    auto hearing = std::make_unique<Hearing>(std::move(call), false);
    if (bus_) sd_bus_add_object(bus_.get(), &hearing->slot, path, &SystemBus::heard, hearing.get());
    return hearing;
}

void SystemBus::send(const Message& message) {
    if (bus_ && message) sd_bus_send(bus_.get(), message.get(), nullptr);
    arm();
}

void SystemBus::answer(sd_bus_message* call) {
    sd_bus_reply_method_return(call, nullptr);
    arm();
}

void SystemBus::refuse(sd_bus_message* call, const char* error, const char* why) {
    sd_bus_reply_method_errorf(call, error, "%s", why);
    arm();
}

// 1: nobody else needs to hear it.
int SystemBus::heard(sd_bus_message* message, void* hearing, sd_bus_error*) {
    auto* self = static_cast<Hearing*>(hearing);
    // The function may destroy the hearing that holds it.
    const Handler handler = self->once ? std::exchange(self->handler, nullptr) : self->handler;
    const bool isCall = sd_bus_message_get_type(message, nullptr) >= 0 &&
                        sd_bus_message_is_method_call(message, nullptr, nullptr) > 0;
    if (handler) handler(message);
    return isCall ? 1 : 0;
}

void SystemBus::turn() {
    const std::weak_ptr<bool> alive = alive_;
    for (int i = 0; i < kMostMessagesInATurn && bus_; ++i) {
        sd_bus* bus = bus_.get();
        const std::unique_ptr<sd_bus, decltype(&sd_bus_unref)> keep(sd_bus_ref(bus), sd_bus_unref);
        const int result = sd_bus_process(bus, nullptr);
        if (alive.expired() || bus_.get() != bus) return;
        if (result < 0 || sd_bus_is_open(bus) <= 0) {
            close();
            const auto lost = lost_;  // who is told may destroy this
            return lost();
        }
        if (result == 0) return arm();
    }
    arm();
    if (bus_) more_.start(0);
}

void SystemBus::arm() {
    if (!bus_ || !readable_) return;
    const int events = sd_bus_get_events(bus_.get());
    // What this connection does not find out by itself, the next turn does.
    if (events < 0) return more_.start(0);
    readable_->setEnabled((events & POLLIN) != 0);
    writable_->setEnabled((events & POLLOUT) != 0);
}

}  // namespace kestrix::platform
