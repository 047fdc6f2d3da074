#include "tests/support/FakeBluez.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <utility>

namespace kestrix::testing {
namespace {

constexpr const char* kAdapterFace = "org.bluez.Adapter1";
constexpr const char* kDeviceFace = "org.bluez.Device1";

std::string adapterPath(const std::string& name) {
    return "/org/bluez/" + name;
}

void appendBool(sd_bus_message* message, const char* name, bool value) {
    sd_bus_message_append(message, "{sv}", name, "b", value ? 1 : 0);
}

void appendTexts(sd_bus_message* message, const std::vector<std::string>& texts) {
    sd_bus_message_open_container(message, 'v', "as");
    sd_bus_message_open_container(message, 'a', "s");
    for (const std::string& text : texts) sd_bus_message_append(message, "s", text.c_str());
    sd_bus_message_close_container(message);
    sd_bus_message_close_container(message);
}

void appendAdapter(sd_bus_message* message, bool powered) {
    sd_bus_message_open_container(message, 'a', "{sa{sv}}");
    sd_bus_message_open_container(message, 'e', "sa{sv}");
    sd_bus_message_append(message, "s", kAdapterFace);
    sd_bus_message_open_container(message, 'a', "{sv}");
    sd_bus_message_append(message, "{sv}", "Address", "s", "00:01:02:03:04:05");
    sd_bus_message_append(message, "{sv}", "Class", "u", 0x7c010cU);
    appendBool(message, "Powered", powered);
    for (int i = 0; i < 3; ++i) sd_bus_message_close_container(message);
}

}  // namespace

FakeBluez::FakeBluez(std::string address, const char* name) : busAddress_(std::move(address)), name_(name) {
    come();
}

FakeBluez::~FakeBluez() {
    for (auto& [address, line] : lines_) {
        ::close(line.tester);
        ::close(line.kept);
    }
    silent_.clear();
    unanswered_.clear();
    leave();
}

void FakeBluez::leave() {
    silent_.clear();
    handOvers_.clear();
    notifier_.reset();
    bus_.reset();
    profileOwner_.clear();
    profilePath_.clear();
}

void FakeBluez::come() {
    sd_bus* bus = nullptr;
    ASSERT_GE(sd_bus_new(&bus), 0);
    bus_.reset(bus);
    ASSERT_GE(sd_bus_set_address(bus, busAddress_.c_str()), 0);
    ASSERT_GE(sd_bus_set_bus_client(bus, 1), 0);
    ASSERT_GE(sd_bus_start(bus), 0);
    ASSERT_GE(sd_bus_add_fallback(bus, nullptr, "/", &FakeBluez::called, this), 0);
    ASSERT_GE(sd_bus_match_signal(bus, nullptr, "org.freedesktop.DBus", nullptr, "org.freedesktop.DBus",
                                  "NameOwnerChanged", &FakeBluez::ownerGone, this),
              0);
    if (name_ != nullptr) {
        ASSERT_GE(sd_bus_request_name(bus, name_, 0), 0);
    }
    notifier_ = std::make_unique<QSocketNotifier>(sd_bus_get_fd(bus), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { turn(); });
}

void FakeBluez::turn() {
    while (bus_ && sd_bus_process(bus_.get(), nullptr) > 0) {
    }
    if (bus_) sd_bus_flush(bus_.get());
}

void FakeBluez::hearAgain() {
    deaf_ = false;
    for (const Message& call : std::exchange(unanswered_, {})) answer(call.get());
    sd_bus_flush(bus_.get());
}

int FakeBluez::called(sd_bus_message* call, void* self, sd_bus_error*) {
    auto& bluez = *static_cast<FakeBluez*>(self);
    if (!bluez.deaf_) return bluez.answer(call);
    bluez.unanswered_.emplace_back(sd_bus_message_ref(call));
    return 1;
}

int FakeBluez::answer(sd_bus_message* call) {
    const std::string member = sd_bus_message_get_member(call);
    const std::string path = sd_bus_message_get_path(call);
    if (member == "GetManagedObjects") {
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(call, &reply);
        const Message owned(reply);
        appendObjects(reply);
        sd_bus_send(nullptr, reply, nullptr);
    } else if (member == "RegisterProfile") {
        const char* at = "";
        const char* uuid = "";
        sd_bus_message_read(call, "os", &at, &uuid);
        EXPECT_STREQ(uuid, kSerialPortUuid);
        registerProfile(call, at);
    } else if (member == "ConnectProfile") {
        for (const auto& [address, device] : devices_) {
            if (pathOf(address) != path) continue;
            const std::string asked = address;
            attempts.push_back(asked);
            if (attempted) attempted(asked);
            answerAttempt(Message(sd_bus_message_ref(call)), asked, behaviours_[asked]);
            return 1;
        }
        sd_bus_reply_method_errorf(call, "org.freedesktop.DBus.Error.UnknownObject", "no such object");
    } else {
        sd_bus_reply_method_errorf(call, "org.freedesktop.DBus.Error.UnknownMethod", "no such method");
    }
    return 1;
}

// There is one of each profile.
void FakeBluez::registerProfile(sd_bus_message* call, const char* path) {
    const char* sender = sd_bus_message_get_sender(call);
    if (isRegistered() && profileOwner_ != sender) {
        ++refusedRegistrations;
        sd_bus_reply_method_errorf(call, "org.bluez.Error.NotPermitted", "UUID already registered");
        return;
    }
    profilePath_ = path;
    profileOwner_ = sender;
    ++registrations;
    sd_bus_reply_method_return(call, nullptr);
}

int FakeBluez::ownerGone(sd_bus_message* signal, void* self, sd_bus_error*) {
    auto& bluez = *static_cast<FakeBluez*>(self);
    const char* name = "";
    const char* before = "";
    const char* now = "";
    sd_bus_message_read(signal, "sss", &name, &before, &now);
    if (*now == '\0' && bluez.profileOwner_ == name) {
        bluez.profileOwner_.clear();
        bluez.profilePath_.clear();
    }
    return 0;
}

void FakeBluez::complete(const std::string& address, Behaviour behaviour) {
    for (auto silent = silent_.begin(); silent != silent_.end(); ++silent) {
        if (silent->first != address) continue;
        const Message call = std::move(silent->second);
        silent_.erase(silent);
        answerAttempt(call, address, behaviour);
        sd_bus_flush(bus_.get());
        return;
    }
    ADD_FAILURE() << "no attempt waits for " << address;
}

void FakeBluez::answerAttempt(const Message& call, const std::string& address, const Behaviour& behaviour) {
    switch (behaviour.way) {
        case Way::Connects:
        case Way::WithoutDescriptor:
            if (!isRegistered()) {
                sd_bus_reply_method_errorf(call.get(), "org.bluez.Error.NotAvailable",
                                           "br-connection-profile-unavailable");
                return;
            }
            sendNewConnection(address, Message(sd_bus_message_ref(call.get())),
                              behaviour.way == Way::Connects);
            return;
        case Way::Fails:
            sd_bus_reply_method_errorf(call.get(), behaviour.error, "%s", behaviour.text);
            return;
        case Way::IsSilent:
            silent_.emplace_back(address, Message(sd_bus_message_ref(call.get())));
            return;
        case Way::GoesElsewhere:
            sd_bus_reply_method_return(call.get(), nullptr);
            return;
    }
}

void FakeBluez::handOver(const std::string& address) {
    sendNewConnection(address, nullptr, true);
    sd_bus_flush(bus_.get());
}

void FakeBluez::sendNewConnection(const std::string& address, Message attempt, bool withDescriptor) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    if (lines_.contains(address)) {
        ::close(lines_[address].tester);
        ::close(lines_[address].kept);
    }
    lines_[address] = {ends[0], ends[1]};
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, profileOwner_.c_str(), profilePath_.c_str(),
                                   "org.bluez.Profile1", "NewConnection");
    const Message owned(call);
    sd_bus_message_append(call, "o", pathOf(address).c_str());
    if (withDescriptor) sd_bus_message_append(call, "h", ends[1]);
    sd_bus_message_append(call, "a{sv}", 0);
    handOvers_.push_back(std::make_unique<HandOver>(HandOver{this, address, std::move(attempt)}));
    sd_bus_call_async(bus_.get(), nullptr, call, &FakeBluez::handedOver, handOvers_.back().get(), UINT64_MAX);
}

int FakeBluez::handedOver(sd_bus_message* reply, void* self, sd_bus_error*) {
    auto* handOver = static_cast<HandOver*>(self);
    const Message attempt = std::move(handOver->attempt);
    FakeBluez& bluez = *handOver->bluez;
    const sd_bus_error* error = sd_bus_message_get_error(reply);
    bluez.handOverAnswer = error != nullptr ? error->name : "taken";
    if (error != nullptr) {
        bluez.endLine(handOver->address);
        if (attempt)
            sd_bus_reply_method_errorf(attempt.get(), "org.bluez.Error.Failed",
                                       "br-connection-aborted-by-local");
        return 1;
    }
    if (bluez.greetings_.contains(handOver->address))
        bluez.send(handOver->address, bluez.greetings_[handOver->address]);
    if (bluez.devices_.contains(handOver->address)) bluez.set(handOver->address, "Connected", true);
    if (attempt) sd_bus_reply_method_return(attempt.get(), nullptr);
    return 1;
}

void FakeBluez::askToDisconnect(const std::string& address) {
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, profileOwner_.c_str(), profilePath_.c_str(),
                                   "org.bluez.Profile1", "RequestDisconnection");
    const Message owned(call);
    sd_bus_message_append(call, "o", pathOf(address).c_str());
    send(owned);
}

std::string FakeBluez::pathOf(const std::string& address) const {
    std::string path = "dev_" + address;
    for (char& c : path) {
        if (c == ':') c = '_';
    }
    const auto device = devices_.find(address);
    return adapterPath(device != devices_.end() ? device->second.adapter : "hci0") + "/" + path;
}

void FakeBluez::appendDevice(sd_bus_message* message, const Device& device) const {
    sd_bus_message_open_container(message, 'a', "{sa{sv}}");
    sd_bus_message_append(message, "{sa{sv}}", "org.freedesktop.DBus.Introspectable", 0);
    sd_bus_message_open_container(message, 'e', "sa{sv}");
    sd_bus_message_append(message, "s", kDeviceFace);
    sd_bus_message_open_container(message, 'a', "{sv}");
    sd_bus_message_append(message, "{sv}", "Address", "s", device.address.c_str());
    sd_bus_message_append(message, "{sv}", "Alias", "s", device.alias.c_str());
    sd_bus_message_append(message, "{sv}", "Adapter", "o", adapterPath(device.adapter).c_str());
    sd_bus_message_append(message, "{sv}", "ManufacturerData", "a{qv}", 1, 76, "ay", 2, 1, 2);
    appendBool(message, "Paired", device.paired);
    appendBool(message, "Connected", device.connected);
    appendBool(message, "Blocked", device.blocked);
    sd_bus_message_open_container(message, 'e', "sv");
    sd_bus_message_append(message, "s", "UUIDs");
    appendTexts(message, device.uuids);
    for (int i = 0; i < 4; ++i) sd_bus_message_close_container(message);
}

void FakeBluez::appendObjects(sd_bus_message* message) const {
    sd_bus_message_open_container(message, 'a', "{oa{sa{sv}}}");
    for (const auto& [name, powered] : adapters_) {
        sd_bus_message_open_container(message, 'e', "oa{sa{sv}}");
        sd_bus_message_append(message, "o", adapterPath(name).c_str());
        appendAdapter(message, powered);
        sd_bus_message_close_container(message);
    }
    for (const auto& [address, device] : devices_) {
        sd_bus_message_open_container(message, 'e', "oa{sa{sv}}");
        sd_bus_message_append(message, "o", pathOf(address).c_str());
        appendDevice(message, device);
        sd_bus_message_close_container(message);
    }
    sd_bus_message_close_container(message);
}

FakeBluez::Message FakeBluez::signal(const std::string& path, const char* interface,
                                     const char* member) const {
    sd_bus_message* message = nullptr;
    if (bus_) sd_bus_message_new_signal(bus_.get(), &message, path.c_str(), interface, member);
    return Message(message);
}

void FakeBluez::send(const Message& message) {
    if (!bus_ || !message) return;
    sd_bus_send(bus_.get(), message.get(), nullptr);
    sd_bus_flush(bus_.get());
}

void FakeBluez::tellAdded(const std::string& path, const std::function<void(sd_bus_message*)>& append) {
    const Message message = signal("/", "org.freedesktop.DBus.ObjectManager", "InterfacesAdded");
    if (!message) return;
    sd_bus_message_append(message.get(), "o", path.c_str());
    append(message.get());
    send(message);
}

void FakeBluez::tellRemoved(const std::string& path, const char* interface) {
    const Message message = signal("/", "org.freedesktop.DBus.ObjectManager", "InterfacesRemoved");
    if (!message) return;
    sd_bus_message_append(message.get(), "oas", path.c_str(), 1, interface);
    send(message);
}

void FakeBluez::tellChanged(const std::string& path, const char* interface, const char* property,
                            const std::function<void(sd_bus_message*)>& appendValue) {
    const Message message = signal(path, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    if (!message) return;
    sd_bus_message_append(message.get(), "s", interface);
    sd_bus_message_open_container(message.get(), 'a', "{sv}");
    sd_bus_message_open_container(message.get(), 'e', "sv");
    sd_bus_message_append(message.get(), "s", property);
    appendValue(message.get());
    sd_bus_message_close_container(message.get());
    sd_bus_message_close_container(message.get());
    sd_bus_message_append(message.get(), "as", 0);
    send(message);
}

void FakeBluez::addAdapter(const std::string& name, bool powered) {
    adapters_[name] = powered;
    tellAdded(adapterPath(name), [&](sd_bus_message* message) { appendAdapter(message, powered); });
}

void FakeBluez::removeAdapter(const std::string& name) {
    adapters_.erase(name);
    tellRemoved(adapterPath(name), kAdapterFace);
}

void FakeBluez::setPowered(bool powered, const std::string& name) {
    adapters_[name] = powered;
    if (!powered) {
        for (const auto& [address, device] : std::map(devices_)) endLine(address);
    }
    tellChanged(adapterPath(name), kAdapterFace, "Powered",
                [&](sd_bus_message* message) { sd_bus_message_append(message, "v", "b", powered ? 1 : 0); });
}

void FakeBluez::addDevice(const Device& device) {
    devices_[device.address] = device;
    tellAdded(pathOf(device.address), [&](sd_bus_message* message) { appendDevice(message, device); });
}

void FakeBluez::removeDevice(const std::string& address) {
    const std::string path = pathOf(address);
    devices_.erase(address);
    tellRemoved(path, kDeviceFace);
}

void FakeBluez::set(const std::string& address, const char* property, bool value) {
    Device& device = devices_[address];
    if (std::strcmp(property, "Paired") == 0) device.paired = value;
    if (std::strcmp(property, "Connected") == 0) device.connected = value;
    if (std::strcmp(property, "Blocked") == 0) device.blocked = value;
    tellChanged(pathOf(address), kDeviceFace, property,
                [&](sd_bus_message* message) { sd_bus_message_append(message, "v", "b", value ? 1 : 0); });
}

void FakeBluez::setAlias(const std::string& address, const std::string& alias) {
    devices_[address].alias = alias;
    tellChanged(pathOf(address), kDeviceFace, "Alias",
                [&](sd_bus_message* message) { sd_bus_message_append(message, "v", "s", alias.c_str()); });
}

void FakeBluez::setUuids(const std::string& address, const std::vector<std::string>& uuids) {
    devices_[address].uuids = uuids;
    tellChanged(pathOf(address), kDeviceFace, "UUIDs",
                [&](sd_bus_message* message) { appendTexts(message, uuids); });
}

void FakeBluez::tellStrength(const std::string& address) {
    tellChanged(pathOf(address), kDeviceFace, "RSSI",
                [](sd_bus_message* message) { sd_bus_message_append(message, "v", "n", -60); });
}

}  // namespace kestrix::testing
