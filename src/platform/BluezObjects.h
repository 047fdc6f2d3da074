#pragma once

#include <systemd/sd-bus.h>

#include <map>
#include <string>

namespace kestrix::platform {

inline constexpr const char* kBluezService = "org.bluez";
inline constexpr const char* kBluezDevice = "org.bluez.Device1";
inline constexpr const char* kSerialPortProfile = "00001101-0000-1000-8000-00805f9b34fb";

struct BluezAdapter {
    bool powered = false;
};

struct BluezDevice {
    std::string address{};  // "AA:BB:CC:DD:EE:FF"
    std::string name{};     // as the user knows it: printable, of a length for one line, never empty
    std::string adapter{};  // the path of its adapter
    bool paired = false;
    bool connected = false;
    bool blocked = false;
    bool serialPort = false;  // it offers the serial port profile
};

// What the Bluetooth service has, by the paths of its objects.
struct BluezObjects {
    std::map<std::string, BluezAdapter> adapters{};
    std::map<std::string, BluezDevice> devices{};
};

// What a change of an object says.
struct BluezSign {
    bool known = false;  // of an adapter or a device
    bool there = false;  // what it is about has come within reach, or may be used now
    bool heard = false;  // it was heard in a search, which says so again and again
};

// Each reads from where the message stands and goes on behind it. What is not of the expected form is left
// out. readObject: the interfaces of one object (a{sa{sv}}). readProperties: the properties of one interface
// (a{sv}) that has an entry, or gets one.
BluezSign readObject(sd_bus_message* message, const std::string& path, BluezObjects& objects);
BluezSign readProperties(sd_bus_message* message, const std::string& path, const std::string& interface,
                         BluezObjects& objects);
// The answer of GetManagedObjects (a{oa{sa{sv}}}).
BluezObjects readManagedObjects(sd_bus_message* message);
// The interfaces (as) that the object at this path has no more.
void readRemoved(sd_bus_message* message, const std::string& path, BluezObjects& objects);

}  // namespace kestrix::platform
