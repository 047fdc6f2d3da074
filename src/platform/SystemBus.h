#pragma once

#include <systemd/sd-bus.h>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>

namespace kestrix::platform {

// A connection to the system's message bus on Qt's event loop. Nothing of it waits: also connecting, and the
// bus's own greeting, go on from the event loop, so a bus that does not answer holds nobody up.
class SystemBus {
  public:
    // Hears a message. It may destroy what it was given for, and the bus.
    using Handler = std::function<void(sd_bus_message* message)>;
    // What listens, for as long as it lives: for a reply, to signals, to calls of an object.
    struct Hearing {
        Hearing(Handler heard, bool heardOnce) : handler(std::move(heard)), once(heardOnce) {}
        Hearing(const Hearing&) = delete;
        Hearing& operator=(const Hearing&) = delete;
        ~Hearing() { sd_bus_slot_unref(slot); }
        Handler handler;
        bool once;
        sd_bus_slot* slot = nullptr;
    };
    using HearingPtr = std::unique_ptr<Hearing>;

    struct MessageEnd {
        void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
    };
    using Message = std::unique_ptr<sd_bus_message, MessageEnd>;

    // lost: called from the event loop when an open connection has ended.
    explicit SystemBus(std::function<void()> lost) : lost_(std::move(lost)) {}
    SystemBus(const SystemBus&) = delete;
    SystemBus& operator=(const SystemBus&) = delete;
    ~SystemBus() { close(); }

    // Begins to connect. Answers 0, or a negative error number. What is sent from now on is kept until the
    // bus has answered.
    int open();
    void close();
    bool isOpen() const { return bus_ != nullptr; }
    // Whether the bus has answered.
    bool isReady() const { return bus_ != nullptr && sd_bus_is_ready(bus_.get()) > 0; }

    // A call that does not start the service which it is for. None where memory or an argument fails.
    Message methodCall(const char* service, const char* path, const char* interface, const char* member);
    // Sends it; `reply` hears the answer or the error, once, without a time limit.
    HearingPtr call(const Message& message, Handler reply);
    HearingPtr listen(const char* rule, Handler signal);
    // Every call for this object.
    HearingPtr offer(const char* path, Handler call);
    void send(const Message& message);
    void answer(sd_bus_message* call);
    void refuse(sd_bus_message* call, const char* error, const char* why);

  private:
    struct BusEnd {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };
    struct Later {
        void operator()(QSocketNotifier* notifier) const {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    };
    using Notifier = std::unique_ptr<QSocketNotifier, Later>;

    static int heard(sd_bus_message* message, void* hearing, sd_bus_error* error);
    void turn();
    // Waits for what the connection waits for.
    void arm();

    std::function<void()> lost_;
    std::unique_ptr<sd_bus, BusEnd> bus_;
    Notifier readable_;
    Notifier writable_;
    QTimer more_;  // messages wait that have been read already
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kestrix::platform
