#pragma once

#include <QString>

#include <memory>
#include <string>

#include "platform/AccessoryListing.h"
#include "platform/Dialer.h"
#include "platform/LastUsed.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// What reaches testers by Bluetooth. Each of the functions is there, or none is and the problem says why.
struct BluetoothParts {
    // address: empty for whichever paired device is a tester. The scheduler must outlive what is made.
    std::unique_ptr<Dialer> (*makeDialer)(const std::string& address, const LastUsed& lastUsed,
                                          Scheduler& scheduler) = nullptr;
    std::unique_ptr<AccessoryListing> (*makeListing)(Scheduler& scheduler) = nullptr;
    std::string problem{};
};

QString bluetoothModulePath();

// What is called Bluetooth here comes from a module (Module.h).
BluetoothParts loadBluetooth(const QString& module = bluetoothModulePath());

// The one function that the module has to show, of this name.
inline constexpr const char* kBluetoothModuleEntry = "kestrixMakeBluetoothParts";
using MakeBluetoothParts = void (*)(BluetoothParts& parts);

}  // namespace kestrix::platform
