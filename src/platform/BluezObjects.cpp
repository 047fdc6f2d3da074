#include "platform/BluezObjects.h"

#include <cstring>
#include <functional>
#include <string_view>

#include "platform/BluetoothAddress.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

constexpr const char* kAdapterInterface = "org.bluez.Adapter1";
constexpr std::size_t kLongestName = 60;  // characters: a name from the air must not push the rest off a line

// What follows the current place in the message, one property after the other.
using Property = std::function<void(std::string_view name, sd_bus_message* value, std::string_view type)>;

// a{sv}: the value stands open for the reader, who reads it whole or not at all.
void eachProperty(sd_bus_message* message, const Property& property) {
    if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) return;
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const char* name = "";
        const char* type = "";
        sd_bus_message_read(message, "s", &name);
        if (sd_bus_message_peek_type(message, nullptr, &type) > 0 &&
            sd_bus_message_enter_container(message, 'v', type) > 0) {
            property(name, message, type);
            while (sd_bus_message_at_end(message, 0) == 0 && sd_bus_message_skip(message, nullptr) > 0) {
            }
            sd_bus_message_exit_container(message);
        }
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
}

bool readBool(sd_bus_message* value, std::string_view type, bool& into) {
    int read = 0;
    if (type != "b" || sd_bus_message_read(value, "b", &read) <= 0) return false;
    const bool came = read != 0 && !into;
    into = read != 0;
    return came;
}

std::string readText(sd_bus_message* value, std::string_view type) {
    const char* text = "";
    if ((type != "s" && type != "o") || sd_bus_message_read_basic(value, type.front(), &text) <= 0) return {};
    return text;
}

bool offersSerialPort(sd_bus_message* value, std::string_view type) {
    bool found = false;
    if (type != "as" || sd_bus_message_enter_container(value, 'a', "s") <= 0) return false;
    const char* uuid = "";
    while (sd_bus_message_read(value, "s", &uuid) > 0) found |= strcasecmp(uuid, kSerialPortProfile) == 0;
    sd_bus_message_exit_container(value);
    return found;
}

std::string shortName(const std::string& alias) {
    std::string name = printableText(alias);
    std::size_t characters = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool begins = (static_cast<unsigned char>(name[i]) & 0xC0U) != 0x80U;
        if (begins && ++characters > kLongestName) return name.substr(0, i) + "\u2026";
    }
    return name;
}

BluezSign readAdapter(sd_bus_message* message, BluezAdapter& adapter) {
    BluezSign sign{true};
    eachProperty(message, [&](std::string_view name, sd_bus_message* value, std::string_view type) {
        if (name == "Powered" && readBool(value, type, adapter.powered)) sign.there = true;
    });
    return sign;
}

BluezSign readDevice(sd_bus_message* message, BluezDevice& device) {
    BluezSign sign{true};
    bool resolved = false;
    eachProperty(message, [&](std::string_view name, sd_bus_message* value, std::string_view type) {
        if (name == "Address") device.address = bluetoothAddress(readText(value, type));
        if (name == "Alias") device.name = shortName(readText(value, type));
        if (name == "Adapter") device.adapter = readText(value, type);
        if (name == "Paired") sign.there |= readBool(value, type, device.paired);
        if (name == "Connected") sign.there |= readBool(value, type, device.connected);
        if (name == "ServicesResolved") sign.there |= readBool(value, type, resolved);
        if (name == "RSSI") sign.heard = true;
        if (name == "Blocked") {
            const bool before = device.blocked;
            readBool(value, type, device.blocked);
            sign.there |= before && !device.blocked;
        }
        if (name == "UUIDs") {
            const bool before = device.serialPort;
            device.serialPort = offersSerialPort(value, type);
            sign.there |= !before && device.serialPort;
        }
    });
    if (device.name.find_first_not_of(' ') == std::string::npos) device.name = device.address;
    return sign;
}

}  // namespace

BluezSign readProperties(sd_bus_message* message, const std::string& path, const std::string& interface,
                         BluezObjects& objects) {
    if (interface == kAdapterInterface) return readAdapter(message, objects.adapters[path]);
    if (interface == kBluezDevice) return readDevice(message, objects.devices[path]);
    sd_bus_message_skip(message, "a{sv}");
    return {};
}

BluezSign readObject(sd_bus_message* message, const std::string& path, BluezObjects& objects) {
    BluezSign all;
    if (sd_bus_message_enter_container(message, 'a', "{sa{sv}}") <= 0) return all;
    while (sd_bus_message_enter_container(message, 'e', "sa{sv}") > 0) {
        const char* interface = "";
        sd_bus_message_read(message, "s", &interface);
        const BluezSign sign = readProperties(message, path, interface, objects);
        all.known |= sign.known;
        all.there |= sign.known;  // what appears is there
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
    return all;
}

BluezObjects readManagedObjects(sd_bus_message* message) {
    BluezObjects objects;
    if (sd_bus_message_enter_container(message, 'a', "{oa{sa{sv}}}") <= 0) return objects;
    while (sd_bus_message_enter_container(message, 'e', "oa{sa{sv}}") > 0) {
        const char* path = "";
        sd_bus_message_read(message, "o", &path);
        readObject(message, path, objects);
        sd_bus_message_exit_container(message);
    }
    return objects;
}

void readRemoved(sd_bus_message* message, const std::string& path, BluezObjects& objects) {
    if (sd_bus_message_enter_container(message, 'a', "s") <= 0) return;
    const char* interface = "";
    while (sd_bus_message_read(message, "s", &interface) > 0) {
        if (std::strcmp(interface, kAdapterInterface) == 0) objects.adapters.erase(path);
        if (std::strcmp(interface, kBluezDevice) == 0) objects.devices.erase(path);
    }
    sd_bus_message_exit_container(message);
}

}  // namespace kestrix::platform
