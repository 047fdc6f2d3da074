#pragma once

#include <systemd/sd-bus.h>
#include <QSocketNotifier>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrix::testing {

inline constexpr const char* kSerialPortUuid = "00001101-0000-1000-8000-00805f9b34fb";
inline constexpr const char* kHeadsetUuid = "0000110b-0000-1000-8000-00805f9b34fb";

// A Bluetooth service on a private bus, as far as its users see one: adapters, devices, profiles, and lines
// that are pairs of sockets. It lives in the event loop of the thread that made it.
class FakeBluez {
  public:
    struct Device {
        std::string address = "AA:BB:CC:00:00:01";
        std::string alias = "Tester 1";
        bool paired = true;
        bool connected = false;
        bool blocked = false;
        std::vector<std::string> uuids{kSerialPortUuid};
        std::string adapter = "hci0";
    };
    // What becomes of an attempt to connect.
    enum class Way {
        Connects,
        Fails,              // with the error
        IsSilent,           // until the test completes it
        GoesElsewhere,      // it succeeds, but the line is another program's
        WithoutDescriptor,  // a connection without what is connected
    };
    struct Behaviour {
        Way way = Way::Connects;
        const char* error = "org.bluez.Error.Failed";
        const char* text = "br-connection-page-timeout";
    };

    // Comes at once, with no adapter. name: none for a program that is not the service and says what it
    // would.
    explicit FakeBluez(std::string address, const char* name = "org.bluez");
    FakeBluez(const FakeBluez&) = delete;
    FakeBluez& operator=(const FakeBluez&) = delete;
    ~FakeBluez();

    // The service ends, and is started. Adapters, devices and open lines stay; whoever has registered is
    // forgotten.
    void leave();
    void come();
    // It does not answer any more what comes from now on.
    void becomeDeaf() { deaf_ = true; }
    void hearAgain();

    void addAdapter(const std::string& name = "hci0", bool powered = true);
    void removeAdapter(const std::string& name = "hci0");
    void setPowered(bool powered, const std::string& name = "hci0");
    void addDevice(const Device& device);
    void removeDevice(const std::string& address);
    void set(const std::string& address, const char* property, bool value);
    void setAlias(const std::string& address, const std::string& alias);
    void setUuids(const std::string& address, const std::vector<std::string>& uuids);
    // It was heard in a search.
    void tellStrength(const std::string& address);
    void behave(const std::string& address, Behaviour behaviour) { behaviours_[address] = behaviour; }

    // The attempt that this device has been silent to goes on.
    void complete(const std::string& address, Behaviour behaviour);
    // Hands a line over that nobody has asked for, or late.
    void handOver(const std::string& address);
    void askToDisconnect(const std::string& address);

    // The tester's end of the line that was handed over last; -1 without one.
    int line(const std::string& address) const;
    bool send(const std::string& address, std::string_view bytes);
    // What has come from the other end and was not received yet.
    std::string receive(const std::string& address);
    // Whether the other end has closed its line.
    bool lineHasEnded(const std::string& address) const;
    // The tester ends the connection.
    void endLine(const std::string& address);
    // Sends these bytes on each line as soon as it is there.
    void greet(const std::string& address, std::string bytes) { greetings_[address] = std::move(bytes); }

    // The addresses of the attempts to connect, in their order.
    std::vector<std::string> attempts;
    int registrations = 0;
    int refusedRegistrations = 0;  // of other programs, while one has registered the profile
    void pretendRegistered(const FakeBluez& elsewhere) {
        profileOwner_ = elsewhere.profileOwner_;
        profilePath_ = elsewhere.profilePath_;
    }
    // Who has registered the profile, as the bus calls it.
    const std::string& profileOwner() const { return profileOwner_; }
    bool isRegistered() const { return !profileOwner_.empty(); }
    // How the last line that was handed over was answered: "taken", or the error's name.
    std::string handOverAnswer;
    // Called after each attempt to connect has been noted.
    std::function<void(const std::string& address)> attempted;

  private:
    struct BusEnd {
        void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    };
    struct MessageEnd {
        void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
    };
    using Message = std::unique_ptr<sd_bus_message, MessageEnd>;
    struct Line {
        int tester = -1;
        int kept = -1;  // the real service keeps the other end open, too
    };

    // What is handed over, until the profile has answered.
    struct HandOver {
        FakeBluez* bluez;
        std::string address;
        Message attempt;  // that led to it; none for a line that nobody asked for
    };

    static int called(sd_bus_message* call, void* self, sd_bus_error* error);
    static int handedOver(sd_bus_message* reply, void* self, sd_bus_error* error);
    static int ownerGone(sd_bus_message* signal, void* self, sd_bus_error* error);
    int answer(sd_bus_message* call);
    void registerProfile(sd_bus_message* call, const char* path);
    void answerAttempt(const Message& call, const std::string& address, const Behaviour& behaviour);
    void sendNewConnection(const std::string& address, Message attempt, bool withDescriptor);
    void appendObjects(sd_bus_message* message) const;
    void appendDevice(sd_bus_message* message, const Device& device) const;
    void tellAdded(const std::string& path, const std::function<void(sd_bus_message*)>& append);
    void tellRemoved(const std::string& path, const char* interface);
    void tellChanged(const std::string& path, const char* interface, const char* property,
                     const std::function<void(sd_bus_message*)>& appendValue);
    Message signal(const std::string& path, const char* interface, const char* member) const;
    void send(const Message& message);
    std::string pathOf(const std::string& address) const;
    void turn();

    std::string busAddress_;
    const char* name_;
    std::unique_ptr<sd_bus, BusEnd> bus_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::map<std::string, bool> adapters_;  // powered
    std::map<std::string, Device> devices_;
    std::map<std::string, Behaviour> behaviours_;
    std::map<std::string, std::string> greetings_;
    std::map<std::string, Line> lines_;
    std::string profileOwner_;
    std::string profilePath_;
    bool deaf_ = false;
    std::vector<Message> unanswered_;
    std::vector<std::pair<std::string, Message>> silent_;
    std::vector<std::unique_ptr<HandOver>> handOvers_;
};

}  // namespace kestrix::testing
