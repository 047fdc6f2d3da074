#pragma once

#include <QString>

#include <memory>
#include <string>

#include "platform/AccessoryListing.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// What reaches testers by Bluetooth. Each of the functions is there, or none is and the problem says why.
struct BluetoothParts {
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
